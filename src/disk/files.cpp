// SPDX-License-Identifier: MIT
#include "disk/files.h"

#include "disk/otherdisk.h"
#include "qtversions.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>

QString toolFolder()
{
    OtherDisk *const other = OtherDisk::inPlace();
    return other != nullptr ? other->toolFolder() : QCoreApplication::applicationDirPath();
}

bool fileExists(const QString &path)
{
    OtherDisk *const other = OtherDisk::inPlace();
    return other != nullptr ? other->exists(path) : QFile::exists(path);
}

bool isFolder(const QString &path)
{
    OtherDisk *const other = OtherDisk::inPlace();
    return other != nullptr ? other->isFolder(path) : QDir(path).exists();
}

bool makePath(const QString &path)
{
    OtherDisk *const other = OtherDisk::inPlace();
    return other != nullptr ? other->makePath(path) : QDir().mkpath(path);
}

bool removeFile(const QString &path)
{
    OtherDisk *const other = OtherDisk::inPlace();
    return other != nullptr ? other->removeFile(path) : QFile::remove(path);
}

bool copyFile(const QString &source, const QString &target)
{
    OtherDisk *const other = OtherDisk::inPlace();
    return other != nullptr ? other->copyFile(source, target) : copyToFreeName(source, target);
}

bool visitFolder(const QString &path, const EntryVisitor &visit)
{
    OtherDisk *const other = OtherDisk::inPlace();
    return other != nullptr ? other->visitEntries(path, visit)
                            : visitEntries(QFile::encodeName(path), visit);
}

bool openAnew(QFile &file)
{
    OtherDisk *const other = OtherDisk::inPlace();
    return other != nullptr ? other->openAnew(file)
                            : file.open(QIODevice::WriteOnly | QIODevice::Truncate);
}

bool addTo(QFile &file, const QByteArray &text)
{
    if (OtherDisk *const other = OtherDisk::inPlace()) {
        return other->addTo(file, text);
    }
    return file.write(text) == text.size() && file.flush();
}

std::unique_ptr<QIODevice> openToRead(const QString &path, QIODevice::OpenMode mode,
                                      QString *reason)
{
    if (OtherDisk *const other = OtherDisk::inPlace()) {
        QByteArray bytes;
        if (!other->readBytes(path, bytes)) {
            return nullptr;
        }
        auto buffer = std::make_unique<QBuffer>();
        buffer->setData(bytes);
        static_cast<void>(buffer->open(mode));
        return buffer;
    }
    auto file = std::make_unique<QFile>(path);
    if (!file->open(mode)) {
        if (reason != nullptr) {
            *reason = file->errorString();
        }
        return nullptr;
    }
    return file;
}

NativeSettings::NativeSettings(const QString &name)
    : file(name)
    , settings(OtherDisk::inPlace() == nullptr
                   ? std::make_unique<QSettings>(name, QSettings::NativeFormat)
                   : nullptr)
{
}

NativeSettings::~NativeSettings()
{
    if (OtherDisk *const other = OtherDisk::inPlace()) {
        other->storeNative(file, values);
    }
}

void NativeSettings::set(const QString &key, const QString &value)
{
    if (settings) {
        settings->setValue(key, value);
    } else {
        values.append({key, value});
    }
}
