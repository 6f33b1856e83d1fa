// SPDX-License-Identifier: MIT
#pragma once

#include "workstation.h"

#include <QMap>
#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace test {

/// What befalls the calls of one kind that a run makes to the system.
struct Disturbance {
    QByteArray call;         ///< such as "openat"
    QByteArray effect;       ///< such as "error=EIO" or "signal=KILL"
    bool fromThenOn = false; ///< befalls every later call too
    QByteArray besides = {}; ///< another kind of call that it befalls throughout
    QString file = {};       ///< if given, only calls upon this file count; an absolute path

    bool isSignal() const;
};

/// The calls of one kind that a run makes.
struct CallCount {
    int startUp = 0; ///< those before the program's own first step, of the system's loader
    int all = 0;
    /// The number of the one that wakes the companion's process up, which no disk is asked about:
    /// it always succeeds, and both processes would wait for ever if it did not. 0 for other kinds.
    int wakeUp = 0;
};

/// Runs programs through strace and disturbs them.
class Tracer {
public:
    /// Why runs cannot be traced here; empty when they can.
    static QString obstacle();

    /// The environment of programs that are traced.
    static QProcessEnvironment environment();

    /// The words before the program that make it suffer \a disturbance at its call \a number.
    QStringList disturb(const Disturbance &disturbance, int number) const;
    /// The line of the trace that shows how \a disturbance befell the latest run; empty when the
    /// run made fewer calls.
    QByteArray hit(const Disturbance &disturbance) const;

    /// The words before a program that is to stand still before its call \a number of the kind.
    QStringList standStill(const QByteArray &call, int number) const;
    /// The program of the latest run if it stands still, to be sent on with SIGCONT; otherwise 0.
    int standingProgram() const;

    /// The words before a program whose calls are to be counted.
    QStringList watch() const;
    /// The calls of the run that was watched.
    QMap<QByteArray, CallCount> calls() const;

private:
    QByteArrayList trace(const QString &file) const;

    QTemporaryDir folder;
    QString traceFile = folder.filePath("trace");
};

} // namespace test

/// Skips the case where runs cannot be traced.
#define TRACE_OR_SKIP()                                                                            \
    if (const QString obstacle = test::Tracer::obstacle(); !obstacle.isEmpty())                    \
    QSKIP(qPrintable(obstacle))
