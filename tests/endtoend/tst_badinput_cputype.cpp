// SPDX-License-Identifier: MIT
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

    QByteArray cpuTypeLine() const
    {
        return read("modo/Scripts/drask/manager.cfg").split('\n').value(4, "no such line");
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

    const test::RunResult first = workstation.run();

    VERIFY_RUN(first, 0);
    QVERIFY(workstation.cpuTypeLine() == line);
    QCOMPARE(workstation.errors(), QByteArray());

    workstation.age("modo/Scripts/drask/manager.cfg");
    const test::RunResult second = workstation.run();

    VERIFY_RUN(second, 0);
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

    const test::RunResult result = workstation.run();

    VERIFY_RUN(result, 0);
    QCOMPARE(workstation.cpuTypeLine(), QByteArray(""));
    QCOMPARE(workstation.errors(), QByteArray());
}

void tst_BadInputCpuType::hangingProgramIsEndedAndItsOutputKept()
{
    const OneHost workstation;
    // What it prints after 20 seconds is waited for, what it prints after 45 is not.
    workstation.addCpuType("echo $$ > \"${0%/*}/number\"; printf half; sleep 20; printf more; "
                           "sleep 25; printf late; exec sleep 1000\n");

    const test::RunResult result = workstation.run();

    VERIFY_RUN(result, 0);
    QCOMPARE(workstation.cpuTypeLine(), QByteArray("halfmore").toBase64());
    QCOMPARE(workstation.log().filter("Warning: "),
             QStringList("Warning: QProcess: Destroyed while process (\""
                         + workstation.tool("cputype") + "\") is still running."));
    const int number = workstation.read("tool/number").trimmed().toInt();
    QVERIFY(number > 0);
    QVERIFY2(kill(number, 0) != 0, "the program is still there");
}

QTEST_GUILESS_MAIN(tst_BadInputCpuType)
#include "tst_badinput_cputype.moc"
