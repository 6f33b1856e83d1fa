// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"
#include "unitcase.h"

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
    void sevenLinesAreWritten_data()
    {
        const test::Table<bool, QByteArray> table("windowsLineEnds", "content");
        table.row("with line feeds", false, wanted());
        table.row("with Windows line ends", true, wanted().replace("\n", "\r\n"));
    }

    void sevenLinesAreWritten()
    {
        QFETCH(bool, windowsLineEnds);
        QFETCH(QByteArray, content);
        const test::Sandbox sandbox;
        VERIFY_LINES(logOfWriting(sandbox, 0, windowsLineEnds), newFile, writes);
        VERIFY_TREE(sandbox, {{"manager.cfg", content}});
    }

    void emptyValuesGiveEmptyLines()
    {
        const test::Sandbox sandbox;
        const PluginInstaller installer("/opt/drask/", "", "", false, false);
        QCOMPARE(installer.writeConfig(sandbox.path("manager.cfg"), "", false), 0);
        QCOMPARE(sandbox.read("manager.cfg"), QByteArray("\n\n/opt/drask//DraskDrop\n\n\n1\n0"));
    }

    void nonAsciiValuesAreWrittenAsUtf8()
    {
        const test::Sandbox sandbox;
        const PluginInstaller installer("/opt/dr\u00e4sk", "J\u00fcrgen \U0001F40D",
                                        "/\u65e5\u672c", false, true);

        QCOMPARE(installer.writeConfig(sandbox.path("manager.cfg"), "1.2.3", false), 0);
        sandbox.age("manager.cfg");
        QCOMPARE(installer.writeConfig(sandbox.path("manager.cfg"), "1.2.3", false), 0);
        QCOMPARE(sandbox.read("manager.cfg"),
                 QByteArray("J\xc3\xbcrgen \xf0\x9f\x90\x8d\n/\xe6\x97\xa5\xe6\x9c\xac\n"
                            "/opt/dr\xc3\xa4sk/DraskDrop\n1.2.3\n\n1\n1"));
        QVERIFY(sandbox.isAged("manager.cfg"));
    }

    void cpuTypeIsWrittenWithTheUrlSafeAlphabet_data()
    {
        const test::Table<QByteArray, QByteArray> table("octal", "line");
        table.row("no byte", QByteArray(), QByteArray());
        table.row("one byte and two signs of padding", "\\373", "-w==");
        table.row("two bytes and one sign of padding", "\\373\\377", "-_8=");
        table.row("three bytes without padding", "\\373\\377\\276", "-_--");
        table.row("a zero byte in between", "i\\0007", "aQA3");
    }

    void cpuTypeIsWrittenWithTheUrlSafeAlphabet()
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

    void equalFileIsNotWritten_data()
    {
        const test::Table<QByteArray, bool> table("content", "windowsLineEnds");
        const QByteArray windows = wanted().replace("\n", "\r\n");
        table.row("the same bytes", wanted(), false);
        table.row("the same bytes with Windows line ends", windows, true);
        table.row("Windows line ends where line feeds are wanted", windows, false);
        table.row("line feeds where Windows line ends are wanted", wanted(), true);
        table.row("mixed line ends", QByteArray(windows).replace("10\r\n", "10\n"), false);
        table.row("a line end behind the last line", wanted() + '\n', false);
        table.row("a carriage return within a line", wanted().replace("ann", "a\rnn"), false);
        table.row("an eighth line", wanted() + "\nnotes of the plug-in\n", false);
    }

    void equalFileIsNotWritten()
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

    void differentFileIsWrittenAnew_data()
    {
        const test::Table<QByteArray> table("content");
        const QList<QByteArray> lines = wanted().split('\n');
        for (int index = 0; index < lines.size(); ++index) {
            QList<QByteArray> others = lines;
            others[index] += 'x';
            table.row("line " + QByteArray::number(index + 1) + " is another", others.join('\n'));
        }
        table.row("a capital letter", wanted().replace("ann\n", "Ann\n"));
        table.row("a blank behind a line", wanted().replace("ann\n", "ann \n"));
        table.row("a blank before a line", wanted().replace("1.2.3", " 1.2.3"));
        table.row("the last line is missing", wanted().chopped(2));
        table.row("the empty line is missing", wanted().replace("\n\n", "\n"));
        table.row("another padding of the same CPU type", wanted().replace("\n\n", "\n=\n"));
        table.row("nothing", "");
        table.row("a longer file", "x" + wanted() + QByteArray(5000, '\n'));
        table.row("random bytes", QByteArray("\xff\xfe\0\r\n\x80\n\n\n\n\n", 11));
    }

    void differentFileIsWrittenAnew()
    {
        QFETCH(QByteArray, content);
        const test::Sandbox sandbox;
        sandbox.write("manager.cfg", content);
        QCOMPARE(logOfWriting(sandbox, 0), QStringList(writes));
        QCOMPARE(sandbox.read("manager.cfg"), wanted());
    }

    void texturesAloneChangeTheLastLine()
    {
        const test::Sandbox sandbox;
        sandbox.write("manager.cfg", wanted());
        const PluginInstaller installer = makeInstaller(false);
        QCOMPARE(installer.writeConfig(sandbox.path("manager.cfg"), "1.2.3", false), 0);
        QCOMPARE(sandbox.read("manager.cfg"), wanted().chopped(1) + '0');
    }

    void lineFeedInAValueHasTheFileWrittenEachTime_data()
    {
        const test::Table<QString, QString> table("user", "projects");
        table.row("the user name", "ann\nbob", "/projects");
        table.row("a line feed behind the user name", "ann\n", "/projects");
        table.row("the projects folder", "ann", "/pro\njects");
    }

    void lineFeedInAValueHasTheFileWrittenEachTime()
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

    void fileThatCannotBeOpenedFails_data()
    {
        const test::Table<QString> table("name");
        table.row("a missing folder", "nowhere/manager.cfg");
        table.row("a folder in its place", "folder");
    }

    void fileThatCannotBeOpenedFails()
    {
        QFETCH(QString, name);
        const test::Sandbox sandbox;
        sandbox.write("folder/own.txt", "mine");
        const test::Tree before = sandbox.tree();
        const PluginInstaller installer = makeInstaller();
        const test::LogCapture log;

        QCOMPARE(installer.writeConfig(sandbox.path(name), "1.2.3", false), 3);
        VERIFY_LINES(log.lines(), newFile, writes);
        VERIFY_TREE(sandbox, before);
    }

    void unreadableFileIsTakenForMissing()
    {
        const test::Sandbox sandbox;
        sandbox.write("manager.cfg", wanted());
        test::giveToOrdinaryUser(sandbox.path("manager.cfg"));
        sandbox.age("manager.cfg");
        QVERIFY(QFile::setPermissions(sandbox.path("manager.cfg"), QFile::WriteOwner));
        {
            BECOME_ORDINARY_USER_OR_SKIP();
            VERIFY_LINES(logOfWriting(sandbox, 0), newFile, writes);
        }
        QVERIFY(!sandbox.isAged("manager.cfg"));
    }
};

DRASK_TEST_IN_OWN_FOLDER(tst_ManagerConfig)
#include "tst_managerconfig.moc"
