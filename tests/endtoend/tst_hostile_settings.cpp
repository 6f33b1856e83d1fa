// SPDX-License-Identifier: MIT
#include "expectedlog.h"
#include "inmemory.h"
#include "workstation.h"

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
    void valuesOfAHostsFolder_data();
    void valuesOfAHostsFolder();
    void hugeHostIsReported_data();
    void hugeHostIsReported();
    void hostFolderWithAZeroCharacterIsReported();
    void hostFolderWithALineFeedListsFilesOfTheWorkingFolder();
    void tenThousandHosts();
    void oneHostTenThousandTimes();
};

namespace {

const int megabyte = 1 << 20;

/// A workstation with one SketchUp in the folder "host", whose plug-in is a version file.
class OneHost : public test::Workstation {
public:
    OneHost()
    {
        addPlugin("sketchup", {{"version.txt", "3"}});
        write("own.txt", "mine");
        write("work/own.txt", "mine");
    }

    /// "~" stands for the folder of the host.
    void writeSettings(const QByteArray &before, const QByteArray &pathLine = "path=\"~\"") const
    {
        const QByteArray entry = QByteArray(pathLine).replace('~', path("host").toUtf8());
        write("tool/settings.ini",
              before
                  + "[plugins]\nversionSketchup=3\n[pluginpaths]\nsize=1\n1\\application="
                    "sketchup\n1\\"
                  + entry + '\n');
    }

    QByteArray config(const QByteArray &user = "", const QByteArray &projects = "") const
    {
        return user + '\n' + projects + '\n' + tool("DraskDrop").toUtf8() + "\n2.3.10\n\n1\n1";
    }

    /// The tree of now with the plug-in in the folder \a host.
    test::Tree installed(const QByteArray &user = "", const QString &host = "host") const
    {
        test::Tree tree = this->tree();
        tree.insert("tool/version.txt", "2.3.10");
        tree.insert(host + '/', "");
        tree.insert(host + "/version.txt", "3");
        tree.insert(host + "/uninstall.ini", path(host + "/version.txt\n").toUtf8());
        tree.insert(host + "/manager.cfg", config(user));
        return tree;
    }
};

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
    const OneHost workstation;
    workstation.writeSettings("[UserData]\nusername=" + written + '\n');
    const test::Tree expected = workstation.installed(user);

    for (int run = 0; run < 2; ++run) {
        VERIFY_RUN(workstation.run(), 0);

        QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
        QVERIFY(workstation.errors().isNull());
        const bool wasWritten = workstation.log().contains("Debug: 161 write cfg file...");
        QCOMPARE(wasWritten, run == 0 || writtenByEachRun);
        QCOMPARE(workstation.isAged("host/manager.cfg"), !wasWritten);
        workstation.age("host/manager.cfg");
    }
}

void tst_HostileSettings::valuesOfTheProjectsFolderAreLogged_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QByteArray>("projects");
    const auto row = [](const char *name, const QByteArray &written, const QString &shown,
                        const QByteArray &projects) {
        QTest::newRow(name) << written << shown << projects;
    };

    row("a line feed and quotes", "\"/a\\n\\\"b\\\"\"", "QVariant(QString, \"/a\\n\\\"b\\\"\")",
        "/a\n\"b\"");
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
    const OneHost workstation;
    workstation.writeSettings("[PathOptions]\nlocalProjectsFolder=" + written + '\n');

    VERIFY_RUN(workstation.run(), 0);

    QCOMPARE(workstation.log().filter("!!!settings local"),
             QStringList("Debug: !!!settings local:  " + shown));
    QCOMPARE(workstation.read("host/manager.cfg"), workstation.config("", projects));
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
    const OneHost workstation;
    workstation.writeSettings(settings);
    workstation.age("tool/settings.ini");
    const test::Tree expected = workstation.installed(user);

    VERIFY_RUN(workstation.run(), 0);

    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
    QVERIFY(workstation.isAged("tool/settings.ini"));
}

void tst_HostileSettings::valuesOfAHostsFolder_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("served");
    const auto row = [](const char *name, const QByteArray &line, const QString &shown,
                        bool served) { QTest::newRow(name) << line << shown << served; };

    row("a plain text", "path=~", "~", true);
    row("bytes without a slash", "path=@ByteArray(host)", "host", false);
    row("two folders, which make a list", "path=~, ~", "", false);
    row("nothing at all", "path=@Invalid()", "", false);
    row("a point", "path=@Point(1 2)", "", false);
    row("the key twice, first the folder", "path=~\n1\\path=", "", false);
    row("the key twice, last the folder", "path=/nowhere\n1\\path=~", "~", true);
    row("a number with a zero before it", "x=1\n01\\path=~", "", false);
    row("a number with a sign", "x=1\n+1\\path=~", "", false);
}

void tst_HostileSettings::valuesOfAHostsFolder()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, shown);
    QFETCH(bool, served);
    const OneHost workstation;
    workstation.writeSettings("", line);
    test::Tree expected = workstation.tree();
    expected.insert("tool/version.txt", "2.3.10");
    if (served) {
        expected = workstation.installed();
    }

    VERIFY_RUN(workstation.run(), 0);

    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
    QCOMPARE(workstation.log().mid(1, 2),
             test::linesOfLookUp("sketchup", shown.replace('~', workstation.path("host"))));
    QCOMPARE(workstation.log().contains("Debug: nothing to copy for  \"sketchup\""), !served);
}

void tst_HostileSettings::hugeHostIsReported_data()
{
    QTest::addColumn<QByteArray>("folder");

    QTest::newRow("a megabyte's name") << '/' + QByteArray(megabyte, 'x');
    QTest::newRow("a megabyte of folders") << QByteArray("/x").repeated(megabyte / 2);
    QTest::newRow("a megabyte of dots that lead up and down")
        << QByteArray("/../host").repeated(megabyte / 8);
    QTest::newRow("a name of 256 bytes") << '/' + QByteArray(256, 'x');
}

void tst_HostileSettings::hugeHostIsReported()
{
    QFETCH(QByteArray, folder);
    const OneHost workstation;
    workstation.makeFolder("host");
    workstation.writeSettings("", "path=\"~" + folder + '"');
    test::Tree expected = workstation.tree();
    expected.insert("tool/version.txt", "2.3.10");

    VERIFY_RUN(workstation.run(), 3);

    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
    const QByteArray target = workstation.path("host").toUtf8() + folder;
    QVERIFY(workstation.errors()
            == "Could not copy file to: \n" + target + "\nCould not write config file in: \n"
                + target + "manager.cfg\n");
}

void tst_HostileSettings::hostFolderWithAZeroCharacterIsReported()
{
    const OneHost workstation;
    workstation.makeFolder("host");
    workstation.writeSettings("", "path=\"~\\0/x\"");
    test::Tree expected = workstation.tree();
    expected.insert("tool/version.txt", "2.3.10");

    VERIFY_RUN(workstation.run(), 3);

    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
    QVERIFY(workstation.log().contains("Warning: Broken filename passed to function"));
}

void tst_HostileSettings::hostFolderWithALineFeedListsFilesOfTheWorkingFolder()
{
    const OneHost workstation;
    workstation.write("work/own/version.txt", "mine");
    workstation.writeSettings("", "path=\"~\\nown\"");
    const test::Tree installed = workstation.installed("", "host\nown");
    VERIFY_RUN(workstation.run(), 0);
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), installed), QString());
    test::RunOptions options;
    options.workingFolder = workstation.path("work");

    VERIFY_RUN(workstation.run({"uninstallPlugin", "(sketchup) " + workstation.path("host\nown")},
                               options),
               0);

    test::Tree rest = installed;
    rest.remove("host\nown/uninstall.ini");
    rest.remove("host\nown/manager.cfg");
    rest.remove("work/own/version.txt");
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), rest), QString());
}

void tst_HostileSettings::tenThousandHosts()
{
    const test::InMemory memory;
    test::Workstation workstation;
    workstation.addPlugin("sketchup", {});
    const int hosts = 10000;
    for (int host = 0; host < hosts; ++host) {
        workstation.addHost("sketchup", workstation.path(QStringLiteral("h/%1").arg(host)));
    }
    workstation.addSetting("plugins", "versionSketchup=3");
    workstation.writeSettings();
    test::Tree expected = workstation.tree();
    expected.insert("tool/version.txt", "2.3.10");
    expected.insert("h/", "");
    for (int host = 0; host < hosts; ++host) {
        const QString folder = QStringLiteral("h/%1/").arg(host);
        expected.insert(folder, "");
        expected.insert(folder + "uninstall.ini", "");
        expected.insert(folder + "manager.cfg",
                        "\n\n" + workstation.tool("DraskDrop").toUtf8() + "\n2.3.10\n\n1\n1");
    }

    VERIFY_RUN(workstation.run(), 0);

    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
    QCOMPARE(workstation.log().filter(" plugin installed in: ").size(), hosts);
}

void tst_HostileSettings::oneHostTenThousandTimes()
{
    test::Workstation workstation;
    workstation.addPlugin("sketchup", {{"version.txt", "3"}});
    const QString folder = workstation.path("host");
    const int times = 10000;
    for (int time = 0; time < times; ++time) {
        workstation.addHost("sketchup", folder);
    }
    workstation.addSetting("plugins", "versionSketchup=3");
    workstation.writeSettings();

    VERIFY_RUN(workstation.run(), 0);

    const QStringList log = workstation.log();
    QCOMPARE(log.count(test::installedLine("sketchup", folder)), 1);
    QCOMPARE(log.count(test::alreadyInstalledLine(folder)), times - 1);
    QCOMPARE(log.count("Debug: not necessary to write cfg"), times - 1);
}

QTEST_GUILESS_MAIN(tst_HostileSettings)
#include "tst_hostile_settings.moc"
