// SPDX-License-Identifier: MIT
#include "status/settingscheck.h"

#include <cstdint>
#include <cstdlib>

/// Whatever the bytes are, each finding has a sentence, and a second look finds the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QList<Problem> problems = checkSettings(bytes, QStringLiteral("settings.ini"));
    const QList<Problem> again = checkSettings(bytes, QStringLiteral("settings.ini"));
    if (problems.size() != again.size()) {
        std::abort();
    }
    for (const Problem &problem : problems) {
        if (problem.text.isEmpty() || problem.path.isEmpty()) {
            std::abort();
        }
    }
    return 0;
}
