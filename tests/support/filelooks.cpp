// SPDX-License-Identifier: MIT
#include "filelooks.h"

#include <QFile>
#include <QStringList>

#include <sys/stat.h>
#include <unistd.h>

#ifdef Q_OS_LINUX
#include <sys/xattr.h>
#endif

namespace test {

namespace {

struct stat lookAt(const QString &path)
{
    struct stat found = {};
    if (stat(QFile::encodeName(path).constData(), &found) != 0) {
        qFatal("%s cannot be looked at", qPrintable(path));
    }
    return found;
}

QStringList attributesOf(const QString &path)
{
    QStringList attributes;
#ifdef Q_OS_LINUX
    const QByteArray file = QFile::encodeName(path);
    QByteArray names(4096, '\0');
    const ssize_t size = listxattr(file.constData(), names.data(), std::size_t(names.size()));
    names.truncate(int(qMax(ssize_t(0), size)));
    const QByteArrayList list = names.split('\0');
    for (const QByteArray &name : list) {
        QByteArray value(4096, '\0');
        const ssize_t length = getxattr(file.constData(), name.constData(), value.data(),
                                        std::size_t(value.size()));
        value.truncate(int(qMax(ssize_t(0), length)));
        if (!name.isEmpty()) {
            attributes << QString::fromLatin1(name + '=' + value.toHex());
        }
    }
    attributes.sort();
#endif
    return attributes;
}

/// The entries: the owner, the user 4321, the group, the mask, all others.
QByteArray accessList()
{
    return QByteArray::fromHex("02000000"
                               "01000600ffffffff"
                               "02000400e1100000"
                               "04000000ffffffff"
                               "10000400ffffffff"
                               "20000000ffffffff");
}

} // namespace

QString looksOf(const QString &path)
{
    const struct stat found = lookAt(path);
    return QStringLiteral("%1 of %2:%3 %4")
        .arg(found.st_mode, 0, 8)
        .arg(found.st_uid)
        .arg(found.st_gid)
        .arg(attributesOf(path).join(' '));
}

void giveTo(const QString &path, unsigned user, unsigned group)
{
    if (chown(QFile::encodeName(path).constData(), user, group) != 0) {
        qFatal("The owner of %s could not be changed", qPrintable(path));
    }
}

void setRights(const QString &path, unsigned rights)
{
    if (chmod(QFile::encodeName(path).constData(), rights) != 0) {
        qFatal("The rights of %s could not be changed", qPrintable(path));
    }
}

bool setAttribute(const QString &path, const QByteArray &name, const QByteArray &value)
{
#ifdef Q_OS_LINUX
    return setxattr(QFile::encodeName(path).constData(), name.constData(), value.constData(),
                    std::size_t(value.size()), 0)
        == 0;
#else
    Q_UNUSED(path)
    Q_UNUSED(name)
    Q_UNUSED(value)
    return false;
#endif
}

bool setAccessList(const QString &path)
{
    return setAttribute(path, "system.posix_acl_access", accessList());
}

bool setAccessListOfNewFiles(const QString &folder)
{
    return setAttribute(folder, "system.posix_acl_default", accessList());
}

void addName(const QString &path, const QString &name)
{
    if (link(QFile::encodeName(path).constData(), QFile::encodeName(name).constData()) != 0) {
        qFatal("%s could not get another name", qPrintable(path));
    }
}

} // namespace test
