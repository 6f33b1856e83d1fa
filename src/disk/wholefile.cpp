// SPDX-License-Identifier: MIT
#include "disk/wholefile.h"

#include <QFile>

bool writeWhole(const QString &path, QIODevice::OpenMode mode, const QByteArray &content,
                QString *reason)
{
    QFile file(path);
    if (!file.open(mode)) {
        if (reason != nullptr) {
            *reason = file.errorString();
        }
        return false;
    }
    static_cast<void>(file.write(content));
    return true;
}
