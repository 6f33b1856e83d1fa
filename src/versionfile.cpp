// SPDX-License-Identifier: MIT
#include "versionfile.h"

#include "literals.h"
#include "textfile.h"
#include "wholenumber.h"

namespace {

constexpr int unknownVersion = -1;

int toVersion(const QString &line)
{
    const std::optional<qint64> number = wholeNumber(line);
    // White space may surround a number elsewhere; in a version file it does not.
    if (!number || line.trimmed() != line || *number != static_cast<int>(*number)) {
        return unknownVersion;
    }
    return static_cast<int>(*number);
}

} // namespace

int readVersionTxt(const QString &folder)
{
    int version = unknownVersion;
    visitLines(folder + "/version.txt"_l1, [&version](const QString &line) {
        version = toVersion(line);
        return false;
    });
    return version;
}
