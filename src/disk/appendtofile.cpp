// SPDX-License-Identifier: MIT
#include "disk/appendtofile.h"

#include "disk/descriptor.h"
#include "disk/otherdisk.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

bool appendToFile(const QString &path, const QByteArray &bytes)
{
    if (OtherDisk *const other = OtherDisk::inPlace()) {
        return other->appendTo(path, bytes);
    }
    constexpr mode_t anyNewFile = 0666;
    const Descriptor file(open(QFile::encodeName(path).constData(),
                               O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, anyNewFile));
    return file.isOpen()
        && writeBytes(file.number(), bytes.constData(), static_cast<std::size_t>(bytes.size()));
}
