// SPDX-License-Identifier: MIT
#include "fuzzsandbox.h"
#include "installer/plugininstaller.h"
#include "promisedtext.h"
#include "versionfile.h"

#include <limits>

namespace {

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

/// Qt takes the typographic minus sign for one, too.
bool isMinus(QChar character)
{
    return character == QLatin1Char('-') || character == QChar(0x2212);
}

/// The whole decimal number that \a line is, or -1.
int numberIn(const QString &line)
{
    const bool isNegative = !line.isEmpty() && isMinus(line.at(0));
    const bool isSigned = isNegative || line.startsWith(QLatin1Char('+'));
    const QString digits = isSigned ? line.mid(1) : line;
    const qint64 largest = std::numeric_limits<int>::max();
    qint64 number = 0;
    for (const QChar digit : digits) {
        if (!isDigit(digit) || number > largest) {
            return -1;
        }
        number = number * 10 + (digit.unicode() - u'0');
    }
    if (isNegative) {
        number = -number;
    }
    const bool fits = number <= largest && number >= -largest - 1;
    return digits.isEmpty() || !fits ? -1 : int(number);
}

int promisedVersion(const QByteArray &content)
{
    const QStringList lines = fuzz::linesOf(content);
    return lines.isEmpty() ? -1 : numberIn(lines.first());
}

/// The input is a plug-in's version.txt; its text is a version to be written, too.
void check(const fuzz::Sandbox &sandbox, const fuzz::Input &input)
{
    sandbox.write("plugin/version.txt", input.whole());
    sandbox.write("plugin/other.txt", "12");
    sandbox.makeFolder("tool");
    fuzz::Tree expected = sandbox.tree();

    fuzz::promise(readVersionTxt(sandbox.path("plugin")) == promisedVersion(input.whole()),
                  "the version is the whole number on the first line, or -1");
    sandbox.promiseTree(expected, "reading the version changes nothing");

    const QString version = fuzz::textOf(input.whole());
    fuzz::promise(PluginInstaller::writeVersionFile(sandbox.path("tool"), version) == 0,
                  "a version file in a writable folder can be written");
    expected.insert("tool/version.txt", fuzz::utf8Of(version));
    sandbox.promiseTree(expected, "the version file holds the version and nothing else");
    fuzz::promise(readVersionTxt(sandbox.path("tool")) == promisedVersion(fuzz::utf8Of(version)),
                  "a version that was written reads back");
}

} // namespace

DRASK_FUZZ_TARGET(check)
