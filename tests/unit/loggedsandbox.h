// SPDX-License-Identifier: MIT
#pragma once

#include "logcapture.h"
#include "sandbox.h"

namespace test {

/// A sandbox, and what is logged while it lives.
struct LoggedSandbox : Sandbox {
    const LogCapture log;
};

} // namespace test
