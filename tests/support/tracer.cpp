// SPDX-License-Identifier: MIT
#include "tracer.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

namespace test {

bool Disturbance::isSignal() const
{
    return effect.startsWith("signal=");
}

QString Tracer::obstacle()
{
    if (QStandardPaths::findExecutable("strace").isEmpty()) {
        return "strace is not installed";
    }
    if (qEnvironmentVariableIsSet("DRASK_RUN_THROUGH")) {
        return "a run through another tool cannot be traced as well";
    }
    QProcess probe;
    probe.setProcessChannelMode(QProcess::MergedChannels);
    probe.start("strace",
                {"-f", "--seccomp-bpf", "-qq", "-o", "/dev/null", "-e",
                 "inject=close:error=EIO:when=1000", "true"});
    if (!probe.waitForFinished() || probe.exitCode() != 0) {
        return "strace cannot trace here: " + QString::fromLocal8Bit(probe.readAll()).trimmed();
    }
    return QString();
}

QProcessEnvironment Tracer::environment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // A traced program cannot be searched for leaks; it would say so on the console.
    environment.insert("ASAN_OPTIONS", environment.value("ASAN_OPTIONS") + ":detect_leaks=0");
    return environment;
}

QStringList Tracer::disturb(const Disturbance &disturbance, int number) const
{
    QStringList words{"strace", "-qq", "-o", traceFile, "-e", "signal=none"};
    // Stopping at the traced kind of calls only makes the runs several times faster; a signal
    // would come after the call then, and not instead of it.
    if (!disturbance.isSignal()) {
        words << "-f"
              << "--seccomp-bpf";
    }
    words << "-e"
          << "trace=" + disturbance.call;
    if (!disturbance.besides.isEmpty()) {
        words.last() += ',' + disturbance.besides;
        words << "-e"
              << "inject=" + disturbance.besides + ':' + disturbance.effect;
    }
    if (!disturbance.file.isEmpty()) {
        words << "-P" << disturbance.file;
    }
    words << "-e"
          << QStringLiteral("inject=%1:%2:when=%3%4")
                 .arg(disturbance.call, disturbance.effect)
                 .arg(number)
                 .arg(disturbance.fromThenOn ? "+" : "");
    return words;
}

QByteArrayList Tracer::trace(const QString &file) const
{
    QFile lines(file);
    if (!lines.open(QIODevice::ReadOnly)) {
        qFatal("There is no trace");
    }
    return lines.readAll().split('\n');
}

QByteArray Tracer::hit(const Disturbance &disturbance) const
{
    const QByteArray whole = ' ' + disturbance.call + '(';
    const QByteArray rest = "<... " + disturbance.call + " resumed>";
    const QByteArrayList lines = trace(traceFile);
    // Each line begins with a process; the first one is the program's, the others its children's.
    const QByteArray program = lines.first().left(lines.first().indexOf(' ') + 1);
    for (const QByteArray &line : lines) {
        if (line.startsWith(program) && line.endsWith("(INJECTED)")
            && (line.contains(whole) || line.contains(rest))) {
            return line;
        }
    }
    return QByteArray();
}

QStringList Tracer::standStill(const QByteArray &call, int number) const
{
    const QStringList earlier = QDir(folder.path()).entryList(QDir::Files);
    for (const QString &file : earlier) {
        QFile::remove(folder.filePath(file));
    }
    // The trace of each process goes to a file of its own, which ends in the process's number.
    return {"strace",
            "-qq",
            "--output-separately",
            "-o",
            traceFile,
            "-e",
            "trace=" + call,
            "-e",
            "inject=" + call + ":signal=STOP:when=" + QByteArray::number(number)};
}

int Tracer::standingProgram() const
{
    const QFileInfoList files = QDir(folder.path()).entryInfoList({"trace.*"}, QDir::Files);
    for (const QFileInfo &file : files) {
        if (trace(file.filePath()).contains("--- stopped by SIGSTOP ---")) {
            return file.suffix().toInt();
        }
    }
    return 0;
}

QStringList Tracer::watch() const
{
    return {"strace", "-qq", "-o", traceFile, "-e", "signal=none"};
}

QMap<QByteArray, CallCount> Tracer::calls() const
{
    QMap<QByteArray, CallCount> counts;
    bool isOwn = false;
    const QByteArrayList lines = trace(traceFile);
    for (const QByteArray &line : lines) {
        // The first thing that the program does is to look for the log of the run before.
        isOwn = isOwn || line.contains("\"plugin.log\"");
        CallCount &count = counts[line.left(line.indexOf('('))];
        ++count.all;
        count.startUp += isOwn ? 0 : 1;
        if (line.startsWith("write(") && line.contains(", \"*\\0\\0\\0\\0\\0\\0\\0\", 8)")) {
            count.wakeUp = count.all;
        }
    }
    return counts;
}

} // namespace test
