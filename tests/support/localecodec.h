// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#if QT_VERSION_MAJOR < 6
#include <QTextCodec>
#endif

namespace test {

/// While it lives, the local 8-bit encoding of this process is ISO 8859-1, for file names too on
/// Linux. Tests run where it is UTF-8, so that text in the local encoding and text in UTF-8 are
/// told apart only here. Make it before the sandbox, whose name must be read as it was written.
/// With Qt 6 the local encoding is always UTF-8, and this changes nothing.
class Latin1Locale {
public:
#if QT_VERSION_MAJOR < 6
    Latin1Locale()
        : before(QTextCodec::codecForLocale())
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    }
    ~Latin1Locale()
    {
        QTextCodec::setCodecForLocale(before);
    }
    static constexpr bool isPossible = true;
#else
    Latin1Locale()
    {
    }
    ~Latin1Locale()
    {
    }
    static constexpr bool isPossible = false;
#endif
    Latin1Locale(const Latin1Locale &) = delete;
    Latin1Locale &operator=(const Latin1Locale &) = delete;

#if QT_VERSION_MAJOR < 6
private:
    QTextCodec *before;
#endif
};

/// \a text as a settings store that is a file has it, where its only letter beyond ASCII is the
/// "\u00e9" of a sandbox: escaped with Qt 5, UTF-8 with Qt 6.
inline QString inStoreOfSettings(QString text)
{
    return QT_VERSION_MAJOR < 6 ? text.replace(QChar(0xe9), "\\xe9") : text;
}

} // namespace test

/// From here to the end of the block the local encoding is ISO 8859-1; the case is skipped where
/// that cannot be.
#define USE_LATIN1_LOCALE_OR_SKIP()                                                                \
    if (!test::Latin1Locale::isPossible)                                                           \
        QSKIP("With this Qt the local encoding is always UTF-8");                                  \
    const test::Latin1Locale latin1Locale
