// SPDX-License-Identifier: MIT
#include "settingsofonehost.h"

#include "testprogram.h"

#include <QtTest>

/// Settings that are well-formed and absurd. Those that are none are elsewhere.
class tst_HostileSettings : public QObject {
    Q_OBJECT

private slots:
    void valuesOfTheUserName_data();
    void valuesOfTheUserName();
    void valuesOfTheProjectsFolderAreLogged_data();
    void valuesOfTheProjectsFolderAreLogged();
    void formsOfTheFile_data();
    void formsOfTheFile();
    void hostFolderWithALineFeedListsFilesOfTheWorkingFolder();
};

namespace {

const int megabyte = 1 << 20;

void addUserName(const char *name, const QByteArray &written, const QByteArray &user,
                 bool writtenByEachRun = false)
{
    QTest::newRow(name) << written << user << writtenByEachRun;
}

void addUserNamesWithOddLetters()
{
    // What is read back line by line is not what was written, so it differs in every run.
    addUserName("a line feed", "a\\nb", "a\nb", true);
    addUserName("line feeds alone", "\\n\\n\\n\\n\\n\\n\\n", "\n\n\n\n\n\n\n", true);
    addUserName("a configuration of its own", "eve\\n/p\\n/drop\\n2.3.10\\n\\n1\\n0",
                "eve\n/p\n/drop\n2.3.10\n\n1\n0", true);
    addUserName("a carriage return", "a\\rb", "a\rb", true);
    addUserName("half of a letter", "\\xd83d", "?", true);
    addUserName("a byte-order mark, escaped", "\\xfeff Ann", "\xef\xbb\xbf Ann", true);
    addUserName("a byte-order mark in the file",
                "\xef\xbb\xbf"
                "Ann",
                "Ann");
    addUserName("a zero character", "a\\x0", QByteArray("a\0", 2));
    addUserName("a bell and a form feed", "a\\a\\f", "a\a\f");
    addUserName("a letter in two halves", "\\xd83d\\xde00", "\xf0\x9f\x98\x80");
    addUserName("the line separator of Unicode",
                "a\xe2\x80\xa8"
                "b",
                "a\xe2\x80\xa8"
                "b");
    addUserName("bytes that are no UTF-8", "a\xff\xe9", "a\xef\xbf\xbd\xef\xbf\xbd");
}

} // namespace

void tst_HostileSettings::valuesOfTheUserName_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QByteArray>("user");
    QTest::addColumn<bool>("writtenByEachRun");

    addUserNamesWithOddLetters();
    addUserName("place-holders", "%1 %2 %s %n", "%1 %2 %s %n");
    addUserName("a comma, which makes a list", "Lee, Ann", "");
    addUserName("a comma in quotes", "\"Lee, Ann\"", "Lee, Ann");
    addUserName("a semicolon, which makes a remark", "Ann ; Lee", "Ann");
    addUserName("blanks around it", "   Ann   ", "Ann");
    addUserName("blanks in quotes", "\"  Ann  \"", "  Ann  ");
    addUserName("nothing at all", "@Invalid()", "");
    addUserName("bytes", "@ByteArray(Ann)", "Ann");
    addUserName("bytes that are no text", "@ByteArray(A\\xff)", "A\xef\xbf\xbd");
    addUserName("a rectangle", "@Rect(1 2 3 4)", "");
    addUserName("half a rectangle", "@Rect(1 2)", "@Rect(1 2)");
    addUserName("a packed number", "@Variant(\\0\\0\\0\\x2\\0\\0\\0\\x5)", "5");
    addUserName("a packed value that is none", "@Variant(\\x7f\\x7f)", "");
    addUserName("a packed list of lists",
                "@Variant(" + QByteArray("\\0\\0\\0\\x9\\0\\0\\0\\x1").repeated(100) + ")", "");
    addUserName("two at signs", "@@Invalid()", "@Invalid()");
    addUserName("a megabyte", QByteArray(megabyte, 'x'), QByteArray(megabyte, 'x'));
}

void tst_HostileSettings::valuesOfTheUserName()
{
    QFETCH(QByteArray, written);
    QFETCH(QByteArray, user);
    QFETCH(bool, writtenByEachRun);
    const test::SettingsOfOneHost workstation;
    workstation.writeSettings("[UserData]\nusername=" + written + '\n');
    const test::Tree expected = workstation.installed(workstation.config(user));
    QStringList secondLog = workstation.logOfSecondInstall();
    if (writtenByEachRun) {
        secondLog = test::withConfigWritten(secondLog);
    }

    VERIFY_RUN(workstation.run(), 0);
    VERIFY_LEFT(workstation, expected, workstation.logOfInstall(), QByteArray());
    workstation.age("host/manager.cfg");

    VERIFY_RUN(workstation.run(), 0);
    VERIFY_LEFT(workstation, expected, secondLog, QByteArray());
    QCOMPARE(workstation.isAged("host/manager.cfg"), !writtenByEachRun);
}

void tst_HostileSettings::valuesOfTheProjectsFolderAreLogged_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QByteArray>("projects");
    QTest::addColumn<bool>("writtenByEachRun");
    const auto row = [](const char *name, const QByteArray &written, const QString &shown,
                        const QByteArray &projects, bool writtenByEachRun = false) {
        QTest::newRow(name) << written << shown << projects << writtenByEachRun;
    };

    row("a line feed and quotes", "\"/a\\n\\\"b\\\"\"", "QVariant(QString, \"/a\\n\\\"b\\\"\")",
        "/a\n\"b\"", true);
    row("a comma, which makes a list", "/a, /b", "QVariant(QStringList, (\"/a\", \"/b\"))", "");
    row("nothing at all", "@Invalid()", "QVariant(Invalid)", "");
    row("nothing", "", "QVariant(QString, \"\")", "");
    row("bytes", "@ByteArray(/a)", "QVariant(QByteArray, \"/a\")", "/a");
    row("a size", "@Size(1 2)", "QVariant(QSize, QSize(1, 2))", "");
    row("a zero character", "a\\x0", "QVariant(QString, \"a\\u0000\")", QByteArray("a\0", 2));
    row("place-holders", "%1 %2", "QVariant(QString, \"%1 %2\")", "%1 %2");
}

void tst_HostileSettings::valuesOfTheProjectsFolderAreLogged()
{
    QFETCH(QByteArray, written);
    QFETCH(QString, shown);
    QFETCH(QByteArray, projects);
    QFETCH(bool, writtenByEachRun);
    const test::SettingsOfOneHost workstation;
    workstation.writeSettings("[PathOptions]\nlocalProjectsFolder=" + written + '\n');
    const test::Tree expected = workstation.installed(workstation.config("", projects));
    QStringList secondLog = workstation.logOfSecondInstall(shown);
    if (writtenByEachRun) {
        secondLog = test::withConfigWritten(secondLog);
    }

    for (const QStringList &log : {workstation.logOfInstall(shown), secondLog}) {
        VERIFY_RUN(workstation.run(), 0);
        VERIFY_LEFT(workstation, expected, log, QByteArray());
    }
}

void tst_HostileSettings::formsOfTheFile_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QByteArray>("user");
    const auto row = [](const char *name, const QByteArray &settings, const QByteArray &user) {
        QTest::newRow(name) << settings << user;
    };
    const QByteArray ann = "[UserData]\nusername=Ann\n";

    row("a byte-order mark", "\xef\xbb\xbf" + ann, "Ann");
    row("Windows' line ends", "[UserData]\r\nusername=Ann\r\nloggedOut=false\r\n", "Ann");
    row("old line ends", "[UserData]\rusername=Ann\rloggedOut=false\r", "Ann");
    row("a key twice", ann + "username=Eve\n", "Eve");
    row("a section twice", ann + "[Settings]\n[UserData]\nusername=Eve\n", "Eve");
    row("a section twice, the key once", ann + "[Settings]\n[UserData]\nx=1\n", "Ann");
    row("a section in capital letters", "[USERDATA]\nusername=Ann\n", "");
    row("a section in small letters", "[userdata]\nusername=Ann\n", "");
    row("both", ann + "[userdata]\nusername=Eve\n", "Ann");
    row("a key in capital letters", "[UserData]\nUSERNAME=Ann\n", "");
    row("a section in percent signs", "[%55serData]\nusername=Ann\n", "Ann");
    row("a key in percent signs", "[UserData]\n%75sername=Ann\n", "Ann");
    row("blanks around everything", "  [ UserData ]  \n   username   =   Ann   \n", "Ann");
    row("remarks", ";username=Eve\n" + ann + "; username=Eve\n", "Ann");
    row("a line that goes on", "[UserData]\nusername=A\\\nnn\n", "Ann");
    row("a key below itself", "[UserData]\nusername=Ann\nusername\\username=Eve\n", "Ann");
    row("zero bytes between the sections", QByteArray("[x]\ny=1\0\0\n", 10) + ann, "Ann");
    row("no to being logged out, in words", ann + "loggedOut=no\n", "");
    row("false in capital letters", ann + "loggedOut=FALSE\n", "Ann");
    row("logged out, nothing at all", ann + "loggedOut=@Invalid()\n", "Ann");
    row("logged out, a list", ann + "loggedOut=true, true\n", "Ann");
    row("logged out, bytes", ann + "loggedOut=@ByteArray(true)\n", "");
    row("logged out twice", ann + "loggedOut=true\nloggedOut=false\n", "Ann");
    row("a hundred thousand other keys", QByteArray("x=1\n").repeated(100000) + ann, "Ann");
    row("a megabyte's remark", ';' + QByteArray(megabyte, 'x') + '\n' + ann, "Ann");
    row("a megabyte's key", "[UserData]\n" + QByteArray(megabyte, 'x') + "=1\nusername=Ann\n",
        "Ann");
}

void tst_HostileSettings::formsOfTheFile()
{
    QFETCH(QByteArray, settings);
    QFETCH(QByteArray, user);
    const test::SettingsOfOneHost workstation;
    workstation.writeSettings(settings);
    workstation.age("tool/settings.ini");
    const test::Tree expected = workstation.installed(workstation.config(user));

    for (const QStringList &log : {workstation.logOfInstall(), workstation.logOfSecondInstall()}) {
        VERIFY_RUN(workstation.run(), 0);
        VERIFY_LEFT(workstation, expected, log, QByteArray());
        QVERIFY(workstation.isAged("tool/settings.ini"));
    }
}

void tst_HostileSettings::hostFolderWithALineFeedListsFilesOfTheWorkingFolder()
{
    const test::SettingsOfOneHost workstation;
    workstation.write("work/own/version.txt", "mine");
    workstation.writeSettings("", "path=\"~\\nown\"");
    const QString host = "host\nown";
    const test::Tree installed = workstation.installed(workstation.config(), host);
    const QString noProjects = "QVariant(Invalid)";
    const QStringList secondLog = workstation.logOfSecondInstall(noProjects, host);

    for (const QStringList &log : {workstation.logOfInstall(noProjects, host), secondLog}) {
        VERIFY_RUN(workstation.run(), 0);
        VERIFY_LEFT(workstation, installed, log, QByteArray());
    }

    test::RunOptions options;
    options.workingFolder = workstation.path("work");
    VERIFY_RUN(
        workstation.run({"uninstallPlugin", "(sketchup) " + workstation.path(host)}, options), 0);

    test::Tree rest = installed;
    rest.remove("host\nown/uninstall.ini");
    rest.remove("host\nown/manager.cfg");
    rest.remove("work/own/version.txt");
    const QString shown = test::escaped(workstation.path(host));
    VERIFY_LEFT(workstation, rest, secondLog + test::logOfRemoval("sketchup", shown, shown),
                QByteArray());
}

DRASK_TEST(tst_HostileSettings)
#include "tst_hostile_settings.moc"
