// SPDX-License-Identifier: MIT
#pragma once

#include "ordinaryuser.h"
#include "sandbox.h"

#include <QList>
#include <QPair>
#include <QProcess>
#include <QStringList>

namespace test {

/// What a run of the program left behind in the process table and on the console.
struct RunResult {
    bool ended = false; ///< by itself, in time
    bool crashed = false;
    int exitCode = -1;
    QByteArray console; ///< standard output and standard error together
};

/// How a run is started.
struct RunOptions {
    QString workingFolder;       ///< absolute; empty: the tool's folder
    bool asOrdinaryUser = false; ///< drops the rights of root first
    int timeoutMs = 60000;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    QStringList through; ///< words of a command to run it through, such as a tracer
};

/// A child process that is made ready before it becomes the program.
class ProgramProcess : public QProcess {
public:
    explicit ProgramProcess(const RunOptions &howToRun)
        : options(howToRun)
    {
#if QT_VERSION_MAJOR >= 6
        setChildProcessModifier([this] { prepare(); });
    }

private:
#else
    }

protected:
    void setupChildProcess() override
    {
        prepare();
    }

private:
#endif
    void prepare() const
    {
        if (options.asOrdinaryUser) {
            becomeOrdinaryUser();
        }
    }

    const RunOptions &options;
};

/// An artist's machine in a sandbox: the tool's folder "tool" with the built program in it, its
/// plug-ins and settings, and whatever hosts a case needs.
class Workstation : public Sandbox {
public:
    Workstation();

    /// Path of something in the tool's folder; of that folder itself for an empty text.
    QString tool(const QString &relative = QString()) const;

    /// Ships a plug-in: files (relative path -> content) in tool/plugins/\a sourceName.
    void addPlugin(const QString &sourceName, const Tree &files) const;

    /// Adds an entry to the array "pluginpaths"; \a folder is taken as it stands. writeSettings()
    /// puts it into the file.
    void addHost(const QString &key, const QString &folder);

    /// Sets a line of settings.ini, such as ("UserData", "username=Ann").
    void addSetting(const QString &section, const QString &line);

    /// Writes tool/settings.ini from what was added.
    void writeSettings() const;

    /// Makes an executable shell script tool/cputype from \a body.
    void addCpuType(const QByteArray &body) const;

    /// Starts the program as the manager does and waits for its end. The environment variable
    /// DRASK_RUN_THROUGH may hold the words of a command to run it through, such as valgrind.
    RunResult run(const QStringList &arguments = {}, const RunOptions &options = {}) const;

    /// The lines of plugin.log.
    QStringList log() const;
    /// The bytes of pluginError.txt; null when there is none.
    QByteArray errors() const;

private:
    QList<QPair<QString, QString>> hosts;
    QMap<QString, QStringList> settings;
};

} // namespace test

/// Every run ends by itself, in time and in order, with an empty console and the exit code \a code.
#define VERIFY_RUN(result, code)                                                                   \
    do {                                                                                           \
        const test::RunResult verifiedRun = (result);                                              \
        QVERIFY2(verifiedRun.ended, "the program did not end by itself");                          \
        QVERIFY2(!verifiedRun.crashed, "the program crashed");                                     \
        QCOMPARE(verifiedRun.console, QByteArray());                                               \
        QCOMPARE(verifiedRun.exitCode, (code));                                                    \
    } while (false)
