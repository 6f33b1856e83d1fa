// SPDX-License-Identifier: MIT
#pragma once

#include <QTextCodec>

namespace test {

/// While it lives, the local 8-bit encoding of this process is ISO 8859-1, for file names too on
/// Linux. Tests run where it is UTF-8, so that text in the local encoding and text in UTF-8 are
/// told apart only here. Make it before the sandbox, whose name must be read as it was written.
class Latin1Locale {
public:
    Latin1Locale()
        : before(QTextCodec::codecForLocale())
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    }
    ~Latin1Locale()
    {
        QTextCodec::setCodecForLocale(before);
    }
    Latin1Locale(const Latin1Locale &) = delete;
    Latin1Locale &operator=(const Latin1Locale &) = delete;

private:
    QTextCodec *before;
};

} // namespace test
