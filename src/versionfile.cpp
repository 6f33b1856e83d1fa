// SPDX-License-Identifier: MIT
#include "versionfile.h"

#include "literals.h"
#include "textfile.h"

namespace {

constexpr int unknownVersion = -1;

int toVersion(const QString &line)
{
    bool isNumber = false;
    const int version = line.toInt(&isNumber);
    // toInt() skips surrounding white space; a version file has none.
    return isNumber && line.trimmed() == line ? version : unknownVersion;
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
