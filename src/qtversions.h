// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QString>
#include <QTextStream>
#include <QtGlobal>

#if QT_VERSION_MAJOR < 6
#include <QTextCodec>
#endif

/// \file
/// What Qt 5 and Qt 6 call differently or do differently. Nothing else asks for the version of Qt.
/// Where the two differ in what they write or read, the form of Qt 5 is the one to keep: managers
/// in the field read it.

/// A position in a text, or a length.
using TextPosition = decltype(QString().size());

/// QFile::copy(). What is at \a target stays, also a dangling link, through which newer versions of
/// Qt 6 write.
inline bool copyToFreeName(const QString &source, const QString &target)
{
    return !QFileInfo(target).isSymLink() && QFile::copy(source, target);
}

/// The same of an open \a file, which that closes unless something is at \a target, links followed.
inline void copyOpenFile(QFile &file, const QString &target)
{
    const QFileInfo there(target);
    if (there.isSymLink() && !there.exists()) {
        file.close();
    } else {
        static_cast<void>(file.copy(target));
    }
}

/// Has \a stream read and write UTF-8, without a byte-order mark.
inline void useUtf8(QTextStream &stream)
{
#if QT_VERSION_MAJOR < 6
    // Looked up once: every file makes a stream.
    static QTextCodec *const utf8 = QTextCodec::codecForName("UTF-8");
    stream.setCodec(utf8);
#else
    stream.setEncoding(QStringConverter::Utf8);
#endif
}

/// Has \a stream read and write the encoding of the machine, as Qt takes it to be: UTF-8 on macOS
/// and Linux.
inline void useLocalEncoding(QTextStream &stream)
{
#if QT_VERSION_MAJOR < 6
    stream.setCodec(QTextCodec::codecForLocale());
#else
    stream.setEncoding(QStringConverter::System);
#endif
}

/// Has \a settings, an INI file, be read as UTF-8.
inline void useUtf8(QSettings &settings)
{
#if QT_VERSION_MAJOR < 6
    settings.setIniCodec("UTF-8");
#else
    // Qt 6 knows no other encoding.
    static_cast<void>(settings);
#endif
}
