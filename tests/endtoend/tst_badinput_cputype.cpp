// SPDX-License-Identifier: MIT
#include "expectedpass.h"
#include "testprogram.h"
#include "workstation.h"

#include <QtTest>

#include <csignal>

/// Runs beside a "cputype" that misbehaves: the host is served each time.
class tst_BadInputCpuType : public QObject {
    Q_OBJECT

private slots:
    void hostIsServedWhateverItDoes_data();
    void hostIsServedWhateverItDoes();
    void hostIsServedWhenItCannotStart_data();
    void hostIsServedWhenItCannotStart();
    void hangingProgramIsEndedAndItsOutputKept();
};

namespace {

/// A workstation with one host, whose plug-in is installed already.
class OneHost : public test::Workstation {
public:
    OneHost()
    {
        write("modo/Scripts/drask/version.txt", "7");
        addHost("modo", path("modo"));
        addSetting("plugins", "versionModo=7");
        writeSettings();
    }

    /// The tree that a run makes of \a before when \a cpuType is what was printed, in base64.
    test::Tree served(test::Tree before, const QByteArray &cpuType) const
    {
        before["tool/version.txt"] = "2.3.10";
        before["modo/Scripts/drask/manager.cfg"] = test::configOf(*this, "", "", "1", cpuType);
        return before;
    }

    QStringList logOfFirstRun(const QStringList &warnings = {}) const
    {
        return logWith(warnings, test::linesOfNewConfig());
    }

    QStringList logOfSecondRun(const QStringList &warnings = {}) const
    {
        return logWith(warnings, test::linesOfKeptConfig());
    }

private:
    QStringList logWith(const QStringList &warnings, const QStringList &configLines) const
    {
        return test::logOfPass(
            test::linesOfLookUp("modo", path("modo")),
            warnings + test::linesOfAlreadyInstalled(path("modo/Scripts/drask")) + configLines, 0);
    }
};

} // namespace

void tst_BadInputCpuType::hostIsServedWhateverItDoes_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("it prints zero bytes and bytes that are no text")
        << QByteArray("printf '\\000\\377\\000\\376'") << QByteArray("AP8A_g==");
    QTest::newRow("it prints line ends") << QByteArray("printf '\\r\\n\\n'") << QByteArray("DQoK");
    QTest::newRow("it prints nothing") << QByteArray("true") << QByteArray("");
    QTest::newRow("it complains and fails") << QByteArray("echo no >&2; exit 1") << QByteArray("");
    QTest::newRow("it fails after printing")
        << QByteArray("printf abc; exit 255") << QByteArray("YWJj");
    QTest::newRow("it kills itself after printing")
        << QByteArray("printf abc; kill -SEGV $$") << QByteArray("YWJj");
    QTest::newRow("it closes its output and goes on")
        << QByteArray("printf abc; exec >&-; sleep 1") << QByteArray("YWJj");
    QTest::newRow("it prints a megabyte")
        << QByteArray("head -c 1048575 /dev/zero") << QByteArray(1398100, 'A');
}

void tst_BadInputCpuType::hostIsServedWhateverItDoes()
{
    QFETCH(QByteArray, script);
    QFETCH(QByteArray, line);
    const OneHost workstation;
    workstation.addCpuType(script + '\n');
    const test::Tree expected = workstation.served(workstation.tree(), line);

    const test::RunResult first = workstation.run();

    VERIFY_RUN(first, 0);
    VERIFY_LEFT(workstation, expected, workstation.logOfFirstRun(), QByteArray());

    workstation.age("modo/Scripts/drask/manager.cfg");
    const test::RunResult second = workstation.run();

    VERIFY_RUN(second, 0);
    VERIFY_LEFT(workstation, expected, workstation.logOfSecondRun(), QByteArray());
    QVERIFY(workstation.isAged("modo/Scripts/drask/manager.cfg"));
}

void tst_BadInputCpuType::hostIsServedWhenItCannotStart_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isExecutable");

    QTest::newRow("it is no program") << QByteArray("\x7f"
                                                    "ELF broken")
                                      << true;
    QTest::newRow("its interpreter is missing") << QByteArray("#!/nowhere/at/all\n") << true;
    QTest::newRow("it is empty") << QByteArray("") << true;
    QTest::newRow("it is not executable") << QByteArray("#!/bin/sh\nprintf abc\n") << false;
    QTest::newRow("it is a folder") << QByteArray() << false;
}

void tst_BadInputCpuType::hostIsServedWhenItCannotStart()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isExecutable);
    const OneHost workstation;
    if (content.isNull()) {
        workstation.makeFolder("tool/cputype");
    } else {
        workstation.write("tool/cputype", content);
    }
    if (isExecutable) {
        QVERIFY(
            QFile::setPermissions(workstation.tool("cputype"), QFile::ReadOwner | QFile::ExeOwner));
    }

    const test::Tree expected = workstation.served(workstation.tree(), "");

    const test::RunResult first = workstation.run();

    VERIFY_RUN(first, 0);
    VERIFY_LEFT(workstation, expected, workstation.logOfFirstRun(), QByteArray());

    const test::RunResult second = workstation.run();

    VERIFY_RUN(second, 0);
    VERIFY_LEFT(workstation, expected, workstation.logOfSecondRun(), QByteArray());
}

void tst_BadInputCpuType::hangingProgramIsEndedAndItsOutputKept()
{
    const OneHost workstation;
    // What it prints after 20 seconds is waited for, what it prints after 45 is not.
    workstation.addCpuType("echo $$ > \"${0%/*}/number\"; printf half; sleep 20; printf more; "
                           "sleep 25; printf late; exec sleep 1000\n");

    test::Tree expected = workstation.served(workstation.tree(), QByteArray("halfmore").toBase64());
    const QStringList warning("Warning: QProcess: Destroyed while process (\""
                              + workstation.tool("cputype") + "\") is still running.");

    // Run once: a second run would wait for half a minute more, to show the same.
    const test::RunResult result = workstation.run();

    VERIFY_RUN(result, 0);
    expected["tool/number"] = workstation.read("tool/number");
    VERIFY_LEFT(workstation, expected, workstation.logOfFirstRun(warning), QByteArray());
    const int number = expected["tool/number"].trimmed().toInt();
    QVERIFY(number > 0);
    QVERIFY2(kill(number, 0) != 0, "the program is still there");
}

DRASK_TEST(tst_BadInputCpuType)
#include "tst_badinput_cputype.moc"
