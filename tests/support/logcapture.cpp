// SPDX-License-Identifier: MIT
#include "logcapture.h"

#include "pages.h"

#include <QtTest>

#include <utility>

namespace test {

namespace {

QStringList captured;
QtMessageHandler handlerBefore = nullptr;

void capture(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    captured << (type == QtDebugMsg ? QStringLiteral("Debug: ") : QStringLiteral("Warning: "))
            + message;
}

} // namespace

LogCapture::LogCapture()
{
    captured.clear();
    handlerBefore = qInstallMessageHandler(capture);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(handlerBefore);
    for (const QString &line : std::as_const(captured)) {
        QVERIFY2(isExplained(line), qPrintable("not in docs/integration.md: " + line));
    }
}

QStringList LogCapture::lines() const
{
    return captured;
}

} // namespace test
