// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace test {

/// While it lives, collects what is logged ("Debug: …", "Warning: …") instead of printing it. A
/// line that docs/integration.md does not explain fails the case. One at a time.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    /// What was logged since the object was made.
    QStringList lines() const;
};

} // namespace test
