// SPDX-License-Identifier: MIT
#include "logcapture.h"

#include <QtGlobal>

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
}

QStringList LogCapture::lines() const
{
    return captured;
}

} // namespace test
