// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"
#include "logcapture.h"
#include "ordinaryuser.h"
#include "sandbox.h"
#include "testprogram.h"

#include <QtTest>

namespace {

QByteArray wanted()
{
    return "ann\n/home/ann/projects\n/opt/drask/DraskDrop\n1.2.3\n\n1\n1";
}

const char newFile[] = "Debug: cannot read config file, create new";
const char writes[] = "Debug: 161 write cfg file...";
const char upToDate[] = "Debug: not necessary to write cfg";

/// An installer whose file says \a wanted.
PluginInstaller makeInstaller(bool copyTexFiles = true)
{
    return {"/opt/drask", "ann", "/home/ann/projects", false, copyTexFiles};
}

/// Writes the sandbox's manager.cfg and returns what was logged besides.
QStringList logOfWriting(const test::Sandbox &sandbox, int expectedResult,
                         bool windowsLineEnds = false)
{
    const PluginInstaller installer = makeInstaller();
    const test::LogCapture log;
    const int result = installer.writeConfig(sandbox.path("manager.cfg"), "1.2.3", windowsLineEnds);
    QStringList lines = log.lines();
    if (result != expectedResult) {
        lines << QStringLiteral("the result was %1").arg(result);
    }
    return lines;
}

} // namespace

class tst_ManagerConfig : public QObject {
    Q_OBJECT

private slots:
    void sevenLinesAreWritten_data();
    void sevenLinesAreWritten();
    void emptyValuesGiveEmptyLines();
    void nonAsciiValuesAreWrittenAsUtf8();
    void cpuTypeIsWrittenWithTheUrlSafeAlphabet_data();
    void cpuTypeIsWrittenWithTheUrlSafeAlphabet();

    void equalFileIsNotWritten_data();
    void equalFileIsNotWritten();
    void differentFileIsWrittenAnew_data();
    void differentFileIsWrittenAnew();
    void texturesAloneChangeTheLastLine();
    void lineFeedInAValueHasTheFileWrittenEachTime_data();
    void lineFeedInAValueHasTheFileWrittenEachTime();

    void missingFolderFailsAndIsNotMade();
    void folderInTheFilesPlaceFails();
    void readOnlyFileFailsWhenItDiffers();
    void unreadableFileIsTakenForMissing();
};

void tst_ManagerConfig::sevenLinesAreWritten_data()
{
    QTest::addColumn<bool>("windowsLineEnds");
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("with line feeds") << false << wanted();
    QTest::newRow("with Windows line ends") << true << wanted().replace("\n", "\r\n");
}

void tst_ManagerConfig::sevenLinesAreWritten()
{
    QFETCH(bool, windowsLineEnds);
    QFETCH(QByteArray, content);
    const test::Sandbox sandbox;

    QCOMPARE(logOfWriting(sandbox, 0, windowsLineEnds), QStringList({newFile, writes}));

    QCOMPARE(test::treeDifference(sandbox.tree(), {{"manager.cfg", content}}), QString());
}

void tst_ManagerConfig::emptyValuesGiveEmptyLines()
{
    const test::Sandbox sandbox;
    const PluginInstaller installer("/opt/drask/", "", "", false, false);

    QCOMPARE(installer.writeConfig(sandbox.path("manager.cfg"), "", false), 0);

    QCOMPARE(sandbox.read("manager.cfg"), QByteArray("\n\n/opt/drask//DraskDrop\n\n\n1\n0"));
}

void tst_ManagerConfig::nonAsciiValuesAreWrittenAsUtf8()
{
    const test::Sandbox sandbox;
    const PluginInstaller installer("/opt/dr\u00e4sk", "J\u00fcrgen \U0001F40D", "/\u65e5\u672c",
                                    false, true);

    QCOMPARE(installer.writeConfig(sandbox.path("manager.cfg"), "1.2.3", false), 0);
    sandbox.age("manager.cfg");
    QCOMPARE(installer.writeConfig(sandbox.path("manager.cfg"), "1.2.3", false), 0);

    QCOMPARE(sandbox.read("manager.cfg"),
             QByteArray("J\xc3\xbcrgen \xf0\x9f\x90\x8d\n/\xe6\x97\xa5\xe6\x9c\xac\n"
                        "/opt/dr\xc3\xa4sk/DraskDrop\n1.2.3\n\n1\n1"));
    QVERIFY(sandbox.isAged("manager.cfg"));
}

void tst_ManagerConfig::cpuTypeIsWrittenWithTheUrlSafeAlphabet_data()
{
    QTest::addColumn<QByteArray>("octal");
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("no byte") << QByteArray() << QByteArray();
    QTest::newRow("one byte and two signs of padding") << QByteArray("\\373") << QByteArray("-w==");
    QTest::newRow("two bytes and one sign of padding")
        << QByteArray("\\373\\377") << QByteArray("-_8=");
    QTest::newRow("three bytes without padding")
        << QByteArray("\\373\\377\\276") << QByteArray("-_--");
    QTest::newRow("a zero byte in between") << QByteArray("i\\0007") << QByteArray("aQA3");
}

void tst_ManagerConfig::cpuTypeIsWrittenWithTheUrlSafeAlphabet()
{
    QFETCH(QByteArray, octal);
    QFETCH(QByteArray, line);
    const test::Sandbox sandbox;
    QFile program(QCoreApplication::applicationDirPath() + "/cputype");
    QVERIFY(program.open(QIODevice::WriteOnly));
    program.write("#!/bin/sh\nprintf '" + octal + "'\n");
    QVERIFY(program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    program.close();
    PluginInstaller installer = makeInstaller();

    installer.readCPUinfo();
    QVERIFY(program.remove());
    QCOMPARE(installer.writeConfig(sandbox.path("manager.cfg"), "1.2.3", false), 0);

    QCOMPARE(sandbox.read("manager.cfg").split('\n').value(4), line);
}

void tst_ManagerConfig::equalFileIsNotWritten_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("windowsLineEnds");

    const QByteArray windows = wanted().replace("\n", "\r\n");
    QTest::newRow("the same bytes") << wanted() << false;
    QTest::newRow("the same bytes with Windows line ends") << windows << true;
    QTest::newRow("Windows line ends where line feeds are wanted") << windows << false;
    QTest::newRow("line feeds where Windows line ends are wanted") << wanted() << true;
    QTest::newRow("mixed line ends") << QByteArray(windows).replace("10\r\n", "10\n") << false;
    QTest::newRow("a line end behind the last line") << wanted() + '\n' << false;
    QTest::newRow("a carriage return within a line") << wanted().replace("ann", "a\rnn") << false;
    QTest::newRow("an eighth line") << wanted() + "\nnotes of the plug-in\n" << false;
}

void tst_ManagerConfig::equalFileIsNotWritten()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, windowsLineEnds);
    const test::Sandbox sandbox;
    sandbox.write("manager.cfg", content);
    sandbox.age("manager.cfg");

    QCOMPARE(logOfWriting(sandbox, 0, windowsLineEnds), QStringList(upToDate));

    QCOMPARE(sandbox.read("manager.cfg"), content);
    QVERIFY(sandbox.isAged("manager.cfg"));
}

void tst_ManagerConfig::differentFileIsWrittenAnew_data()
{
    QTest::addColumn<QByteArray>("content");

    const QList<QByteArray> lines = wanted().split('\n');
    for (int index = 0; index < lines.size(); ++index) {
        QList<QByteArray> others = lines;
        others[index] += 'x';
        QTest::newRow("line " + QByteArray::number(index + 1) + " is another") << others.join('\n');
    }
    QTest::newRow("a capital letter") << wanted().replace("ann\n", "Ann\n");
    QTest::newRow("a blank behind a line") << wanted().replace("ann\n", "ann \n");
    QTest::newRow("a blank before a line") << wanted().replace("1.2.3", " 1.2.3");
    QTest::newRow("the last line is missing") << wanted().chopped(2);
    QTest::newRow("the empty line is missing") << wanted().replace("\n\n", "\n");
    QTest::newRow("another padding of the same CPU type") << wanted().replace("\n\n", "\n=\n");
    QTest::newRow("nothing") << QByteArray("");
    QTest::newRow("a longer file") << "x" + wanted() + QByteArray(5000, '\n');
    QTest::newRow("random bytes") << QByteArray("\xff\xfe\0\r\n\x80\n\n\n\n\n", 11);
}

void tst_ManagerConfig::differentFileIsWrittenAnew()
{
    QFETCH(QByteArray, content);
    const test::Sandbox sandbox;
    sandbox.write("manager.cfg", content);

    QCOMPARE(logOfWriting(sandbox, 0), QStringList(writes));

    QCOMPARE(sandbox.read("manager.cfg"), wanted());
}

void tst_ManagerConfig::texturesAloneChangeTheLastLine()
{
    const test::Sandbox sandbox;
    sandbox.write("manager.cfg", wanted());
    const PluginInstaller installer = makeInstaller(false);

    QCOMPARE(installer.writeConfig(sandbox.path("manager.cfg"), "1.2.3", false), 0);

    QCOMPARE(sandbox.read("manager.cfg"), wanted().chopped(1) + '0');
}

void tst_ManagerConfig::lineFeedInAValueHasTheFileWrittenEachTime_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("projects");

    QTest::newRow("the user name") << "ann\nbob"
                                   << "/projects";
    QTest::newRow("a line feed behind the user name") << "ann\n"
                                                      << "/projects";
    QTest::newRow("the projects folder") << "ann"
                                         << "/pro\njects";
}

void tst_ManagerConfig::lineFeedInAValueHasTheFileWrittenEachTime()
{
    QFETCH(QString, user);
    QFETCH(QString, projects);
    const test::Sandbox sandbox;
    const PluginInstaller installer("/opt/drask", user, projects, false, true);
    const QByteArray content = (user + '\n' + projects).toUtf8()
        + "\n/opt/drask/DraskDrop\n1.2.3\n\n1\n1";
    QCOMPARE(installer.writeConfig(sandbox.path("manager.cfg"), "1.2.3", false), 0);
    QCOMPARE(sandbox.read("manager.cfg"), content);
    sandbox.age("manager.cfg");
    const test::LogCapture log;

    QCOMPARE(installer.writeConfig(sandbox.path("manager.cfg"), "1.2.3", false), 0);

    QVERIFY(!sandbox.isAged("manager.cfg"));
    QCOMPARE(sandbox.read("manager.cfg"), content);
    QCOMPARE(log.lines(), QStringList(writes));
}

void tst_ManagerConfig::missingFolderFailsAndIsNotMade()
{
    const test::Sandbox sandbox;
    const PluginInstaller installer = makeInstaller();
    const test::LogCapture log;

    QCOMPARE(installer.writeConfig(sandbox.path("nowhere/manager.cfg"), "1.2.3", false), 3);

    QCOMPARE(log.lines(), QStringList({newFile, writes}));
    QCOMPARE(test::treeDifference(sandbox.tree(), test::Tree()), QString());
}

void tst_ManagerConfig::folderInTheFilesPlaceFails()
{
    const test::Sandbox sandbox;
    sandbox.write("manager.cfg/own.txt", "mine");
    const test::Tree before = sandbox.tree();

    QCOMPARE(logOfWriting(sandbox, 3), QStringList({newFile, writes}));

    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

void tst_ManagerConfig::readOnlyFileFailsWhenItDiffers()
{
    const test::Sandbox sandbox;
    sandbox.write("manager.cfg", "bob");
    const test::ReadOnly readOnly(sandbox.path("manager.cfg"));
    BECOME_ORDINARY_USER_OR_SKIP();

    QCOMPARE(logOfWriting(sandbox, 3), QStringList(writes));

    QCOMPARE(sandbox.read("manager.cfg"), QByteArray("bob"));
}

void tst_ManagerConfig::unreadableFileIsTakenForMissing()
{
    const test::Sandbox sandbox;
    sandbox.write("manager.cfg", wanted());
    test::giveToOrdinaryUser(sandbox.path("manager.cfg"));
    sandbox.age("manager.cfg");
    QVERIFY(QFile::setPermissions(sandbox.path("manager.cfg"), QFile::WriteOwner));
    {
        BECOME_ORDINARY_USER_OR_SKIP();
        QCOMPARE(logOfWriting(sandbox, 0), QStringList({newFile, writes}));
    }
    QVERIFY(!sandbox.isAged("manager.cfg"));
}

DRASK_TEST_IN_OWN_FOLDER(tst_ManagerConfig)
#include "tst_managerconfig.moc"
