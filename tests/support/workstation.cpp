// SPDX-License-Identifier: MIT
#include "workstation.h"

#include <QFile>

namespace test {

Workstation::Workstation()
{
    makeFolder("tool");
    const QString program = tool("drask-installer");
    if (!QFile::copy(QStringLiteral(DRASK_PROGRAM), program)) {
        qFatal("The program could not be copied to %s", qPrintable(program));
    }
}

QString Workstation::tool(const QString &relative) const
{
    return path(relative.isEmpty() ? "tool" : "tool/" + relative);
}

void Workstation::addPlugin(const QString &sourceName, const Tree &files) const
{
    const QString folder = "tool/plugins/" + sourceName;
    makeFolder(folder);
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        write(folder + QLatin1Char('/') + file.key(), file.value());
    }
}

void Workstation::addHost(const QString &key, const QString &folder)
{
    hosts.append({key, folder});
}

void Workstation::addSetting(const QString &section, const QString &line)
{
    settings[section].append(line);
}

void Workstation::writeSettings() const
{
    QString text;
    for (auto section = settings.cbegin(); section != settings.cend(); ++section) {
        text += QStringLiteral("[%1]\n%2\n\n")
                    .arg(section.key(), section.value().join(QLatin1Char('\n')));
    }
    text += QStringLiteral("[pluginpaths]\nsize=%1\n").arg(hosts.size());
    for (int index = 0; index < hosts.size(); ++index) {
        const QString number = QString::number(index + 1);
        text += number + "\\application=" + hosts.at(index).first + QLatin1Char('\n');
        text += number + QStringLiteral("\\path=\"") + hosts.at(index).second
            + QStringLiteral("\"\n");
    }
    write("tool/settings.ini", text.toUtf8());
}

void Workstation::addCpuType(const QByteArray &body) const
{
    write("tool/cputype", "#!/bin/sh\n" + body);
    QFile::setPermissions(tool("cputype"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup
                              | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther);
}

RunResult Workstation::run(const QStringList &arguments, const RunOptions &options) const
{
    ProgramProcess process(options);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setProcessEnvironment(options.environment);
    process.setWorkingDirectory(options.workingFolder.isEmpty() ? tool() : options.workingFolder);
    QStringList words = QString::fromLocal8Bit(qgetenv("DRASK_RUN_THROUGH"))
                            .split(QLatin1Char(' '), Qt::SkipEmptyParts);
    words << options.through << tool("drask-installer") << arguments;
    process.start(words.takeFirst(), words);

    RunResult result;
    result.ended = process.waitForFinished(options.timeoutMs);
    if (!result.ended) {
        process.kill();
        process.waitForFinished();
    }
    result.crashed = process.exitStatus() != QProcess::NormalExit;
    result.exitCode = process.exitCode();
    result.console = process.readAllStandardOutput();
    return result;
}

QStringList Workstation::log() const
{
    QStringList lines = QString::fromUtf8(read("tool/plugin.log")).split(QLatin1Char('\n'));
    lines.removeLast();
    return lines;
}

QByteArray Workstation::errors() const
{
    return read("tool/pluginError.txt");
}

} // namespace test
