// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"
#include "logcapture.h"
#include "ordinaryuser.h"
#include "sandbox.h"
#include "testprogram.h"
#include "versionfile.h"

#include <QtTest>

class tst_PluginInstaller : public QObject {
    Q_OBJECT

private slots:
    void cleanup();

    void constructorLogsThePluginGeneration();
    void constructorTakesTheProgramsFolderBeforeTheUser();

    void versionFileHoldsTheTextAlone_data();
    void versionFileHoldsTheTextAlone();
    void versionFileThatCannotBeOpenedFails_data();
    void versionFileThatCannotBeOpenedFails();
    void versionFileThatMayNotBeWrittenFails();

    void cpuTypeIsWhatTheProgramPrinted_data();
    void cpuTypeIsWhatTheProgramPrinted();
    void cpuTypeIsEmptyWhenTheProgramCannotStart_data();
    void cpuTypeIsEmptyWhenTheProgramCannotStart();
    void cpuTypeOfALaterRunReplacesTheEarlierOne();
    void cpuTypeProgramLiesBesideTheRunningProgram();
};

namespace {

QString cpuTypeProgram()
{
    return QCoreApplication::applicationDirPath() + "/cputype";
}

void writeScript(const QString &path, const QByteArray &body)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\n" + body);
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

PluginInstaller makeInstaller()
{
    return {"/opt/drask", "ann", "/projects", false, true};
}

/// The bytes that \a installer holds, as line 5 of a manager.cfg shows them.
QByteArray cpuTypeOf(const PluginInstaller &installer)
{
    const test::Sandbox sandbox;
    installer.writeConfig(sandbox.path("manager.cfg"), "1", false);
    const QByteArray line = sandbox.read("manager.cfg").split('\n').value(4);
    return QByteArray::fromBase64(line, QByteArray::Base64UrlEncoding);
}

} // namespace

void tst_PluginInstaller::cleanup()
{
    const QFileInfo program(cpuTypeProgram());
    if (program.isDir()) {
        QVERIFY(QDir().rmdir(program.filePath()));
    } else if (program.exists() || program.isSymLink()) {
        QVERIFY(QFile::remove(program.filePath()));
    }
}

void tst_PluginInstaller::constructorLogsThePluginGeneration()
{
    const test::LogCapture log;

    const PluginInstaller installer = makeInstaller();

    QCOMPARE(log.lines(), QStringList("Debug: version:  24"));
}

void tst_PluginInstaller::constructorTakesTheProgramsFolderBeforeTheUser()
{
    const test::Sandbox sandbox;
    const test::LogCapture log;
    const PluginInstaller installer("first", "second", "third", false, true);

    QCOMPARE(installer.writeConfig(sandbox.path("manager.cfg"), "9", false), 0);

    QCOMPARE(sandbox.read("manager.cfg"), QByteArray("second\nthird\nfirst/DraskDrop\n9\n\n1\n1"));
}

void tst_PluginInstaller::versionFileHoldsTheTextAlone_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("readBack");

    QTest::newRow("a version with dots") << "1.2.3" << QByteArray("1.2.3") << -1;
    QTest::newRow("a number") << "17" << QByteArray("17") << 17;
    QTest::newRow("an empty text") << "" << QByteArray("") << -1;
    QTest::newRow("non-ASCII letters")
        << "2.3 \u03b2\u00e9" << QByteArray("2.3 \xce\xb2\xc3\xa9") << -1;
}

void tst_PluginInstaller::versionFileHoldsTheTextAlone()
{
    QFETCH(QString, version);
    QFETCH(QByteArray, content);
    const test::Sandbox sandbox;
    sandbox.write("version.txt", "a longer text of an earlier version\n");
    const test::LogCapture log;

    QCOMPARE(PluginInstaller::writeVersionFile(sandbox.path(), version), 0);

    QCOMPARE(test::treeDifference(sandbox.tree(), {{"version.txt", content}}), QString());
    QCOMPARE(log.lines(), QStringList());
    QTEST(readVersionTxt(sandbox.path()), "readBack");
}

void tst_PluginInstaller::versionFileThatCannotBeOpenedFails_data()
{
    QTest::addColumn<QString>("folder");

    QTest::newRow("a missing folder") << "nowhere";
    QTest::newRow("a folder in its place") << "host";
    QTest::newRow("a name that is too long") << QString(256, 'x');
}

void tst_PluginInstaller::versionFileThatCannotBeOpenedFails()
{
    QFETCH(QString, folder);
    const test::Sandbox sandbox;
    sandbox.write("host/version.txt/own.txt", "mine");
    const test::Tree before = sandbox.tree();
    folder = sandbox.path(folder);
    const test::LogCapture log;

    QCOMPARE(PluginInstaller::writeVersionFile(folder, "17"), 3);

    QCOMPARE(log.lines(), QStringList("Debug: error writing version file:  \"" + folder + '"'));
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

void tst_PluginInstaller::versionFileThatMayNotBeWrittenFails()
{
    const test::Sandbox sandbox;
    sandbox.write("version.txt", "12");
    const test::ReadOnly readOnly(sandbox.path("version.txt"));
    const test::LogCapture log;
    BECOME_ORDINARY_USER_OR_SKIP();

    QCOMPARE(PluginInstaller::writeVersionFile(sandbox.path(), "17"), 3);

    QCOMPARE(sandbox.read("version.txt"), QByteArray("12"));
}

void tst_PluginInstaller::cpuTypeIsWhatTheProgramPrinted_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("a line is not trimmed")
        << QByteArray("echo ' 8 cores '") << QByteArray(" 8 cores \n");
    QTest::newRow("bytes of every kind") << QByteArray("printf 'a\\000\\377\\200\\r\\nb\\373'")
                                         << QByteArray("a\0\xff\x80\r\nb\xfb", 8);
    QTest::newRow("nothing") << QByteArray("exit 0") << QByteArray();
    QTest::newRow("a text before it fails")
        << QByteArray("printf half; exit 3") << QByteArray("half");
    QTest::newRow("a text before a signal ends it")
        << QByteArray("printf half; kill -9 $$") << QByteArray("half");
    QTest::newRow("a text beside complaints")
        << QByteArray("echo trouble >&2; printf i7; echo trouble >&2") << QByteArray("i7");
    QTest::newRow("complaints alone") << QByteArray("echo trouble >&2") << QByteArray();
    QTest::newRow("more than a pipe holds")
        << QByteArray("head -c 300000 /dev/zero") << QByteArray(300000, '\0');
    QTest::newRow("how many arguments it was given") << QByteArray("printf $#") << QByteArray("0");
}

void tst_PluginInstaller::cpuTypeIsWhatTheProgramPrinted()
{
    QFETCH(QByteArray, script);
    QFETCH(QByteArray, bytes);
    writeScript(cpuTypeProgram(), script);
    const test::LogCapture log;
    PluginInstaller installer = makeInstaller();

    installer.readCPUinfo();

    QCOMPARE(log.lines(), QStringList("Debug: version:  24"));
    QCOMPARE(cpuTypeOf(installer), bytes);
}

void tst_PluginInstaller::cpuTypeIsEmptyWhenTheProgramCannotStart_data()
{
    QTest::addColumn<QString>("obstacle");

    QTest::newRow("there is none") << "missing";
    QTest::newRow("it is not executable") << "not executable";
    QTest::newRow("it is a folder") << "folder";
    QTest::newRow("it is a link to nowhere") << "link";
    QTest::newRow("its interpreter is missing") << "interpreter";
}

void tst_PluginInstaller::cpuTypeIsEmptyWhenTheProgramCannotStart()
{
    QFETCH(QString, obstacle);
    const QString program = cpuTypeProgram();
    if (obstacle == "folder") {
        QVERIFY(QDir().mkdir(program));
    } else if (obstacle == "link") {
        QVERIFY(QFile::link("/nowhere/at/all", program));
    } else if (obstacle == "not executable") {
        writeScript(program, "printf i7");
        QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner));
    } else if (obstacle == "interpreter") {
        writeScript(program, "");
        QFile file(program);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("#!/nowhere/at/all\n") > 0);
    }
    const test::LogCapture log;
    PluginInstaller installer = makeInstaller();

    installer.readCPUinfo();

    QCOMPARE(log.lines(), QStringList("Debug: version:  24"));
    QCOMPARE(cpuTypeOf(installer), QByteArray());
}

void tst_PluginInstaller::cpuTypeOfALaterRunReplacesTheEarlierOne()
{
    const test::LogCapture log;
    PluginInstaller installer = makeInstaller();
    writeScript(cpuTypeProgram(), "printf one");
    installer.readCPUinfo();
    QCOMPARE(cpuTypeOf(installer), QByteArray("one"));

    writeScript(cpuTypeProgram(), "printf 2");
    installer.readCPUinfo();
    QCOMPARE(cpuTypeOf(installer), QByteArray("2"));

    QVERIFY(QFile::remove(cpuTypeProgram()));
    installer.readCPUinfo();
    QCOMPARE(cpuTypeOf(installer), QByteArray());
}

void tst_PluginInstaller::cpuTypeProgramLiesBesideTheRunningProgram()
{
    const test::Sandbox sandbox;
    writeScript(sandbox.path("cputype"), "printf elsewhere");
    const test::WorkingFolder workingFolder(sandbox.path());
    const test::LogCapture log;
    PluginInstaller installer(sandbox.path(), "ann", "/projects", false, true);

    installer.readCPUinfo();

    QCOMPARE(cpuTypeOf(installer), QByteArray());
}

DRASK_TEST_IN_OWN_FOLDER(tst_PluginInstaller)
#include "tst_plugininstaller.moc"
