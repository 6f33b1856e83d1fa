// SPDX-License-Identifier: MIT
#include "expectedlog.h"
#include "ordinaryuser.h"
#include "studio.h"

#include <QtTest>

/// Settings that are none, that lie, or that name strange hosts and folders.
class tst_BadInput : public QObject {
    Q_OBJECT

private slots:
    void settingsThatAreNoneServeNobody_data();
    void settingsThatAreNoneServeNobody();
    void settingsThatMayNotBeReadServeNobody();
    void sizeOfTheHostListIsBelieved_data();
    void sizeOfTheHostListIsBelieved();

    void unknownHostsGetNothingOfTheWorkingFolder_data();
    void unknownHostsGetNothingOfTheWorkingFolder();
    void hostsWithoutAFolderArePassedOver_data();
    void hostsWithoutAFolderArePassedOver();
    void relativeFolderBelongsToTheWorkingFolder();

    void strangeFoldersAreServedAndCleared_data();
    void strangeFoldersAreServedAndCleared();
};

namespace {

QByteArray randomBytes(quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray bytes;
    while (bytes.size() < 5000) {
        bytes += static_cast<char>(random.bounded(256));
    }
    return bytes;
}

QStringList logOfAnEmptyPass()
{
    return {"Debug: settings loaded", "Debug: !!!settings local:  QVariant(Invalid)",
            "Debug: version:  24", "Debug: 0"};
}

/// How a value is shown in the log when it holds characters with a meaning of their own.
QString shown(const QString &text)
{
    return test::quoted(
        QString(text).replace("\\", "\\\\").replace("\"", "\\\"").replace("\t", "\\t"));
}

/// How a value stands between the quotes of a settings file.
QString escaped(const QString &text)
{
    return QString(text).replace("\\", "\\\\").replace("\"", "\\\"").replace("\t", "\\t");
}

} // namespace

void tst_BadInput::settingsThatAreNoneServeNobody_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("there are none") << "missing" << QByteArray();
    QTest::newRow("a folder in their place") << "folder" << QByteArray();
    QTest::newRow("a dangling link in their place") << "link" << QByteArray();
    QTest::newRow("an empty file") << "file" << QByteArray("");
    QTest::newRow("zero bytes") << "file" << QByteArray(5000, '\0');
    QTest::newRow("random bytes") << "file" << randomBytes(1);
    QTest::newRow("other random bytes") << "file" << randomBytes(20200401);
    QTest::newRow("sections that never end") << "file" << QByteArray("[[[\n]\n=\n[\n\\\n");
    QTest::newRow("another section")
        << "file" << QByteArray("[Pluginpaths2]\nsize=1\n1\\path=/a\n");
    QTest::newRow("a value without an end")
        << "file" << QByteArray("[a]\nb=\"" + QByteArray(9999, 'x'));
}

void tst_BadInput::settingsThatAreNoneServeNobody()
{
    QFETCH(QString, kind);
    QFETCH(QByteArray, content);
    const test::Studio studio;
    studio.remove("tool/settings.ini");
    if (kind == "folder") {
        studio.write("tool/settings.ini/own.txt", "mine");
    } else if (kind == "link") {
        studio.makeLink("/nowhere/at/all", "tool/settings.ini");
    } else if (kind == "file") {
        studio.write("tool/settings.ini", content);
    }
    test::Tree expected = studio.tree();
    expected["tool/version.txt"] = "2.3.10";

    for (int run = 0; run < 2; ++run) {
        const test::RunResult result = studio.run();

        VERIFY_RUN(result, 0);
        QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), expected), QString());
        QCOMPARE(studio.log(), logOfAnEmptyPass());
        QCOMPARE(studio.errors(), QByteArray());
    }
}

void tst_BadInput::settingsThatMayNotBeReadServeNobody()
{
    const test::Studio studio;
    test::giveToOrdinaryUser(studio.tool());
    QVERIFY(QFile::setPermissions(studio.tool("settings.ini"), QFile::WriteOwner));
    test::Tree expected = studio.tree();
    expected["tool/version.txt"] = "2.3.10";
    test::RunOptions options;
    options.asOrdinaryUser = true;

    const test::RunResult result = studio.run({}, options);

    VERIFY_RUN(result, 0);
    QVERIFY(
        QFile::setPermissions(studio.tool("settings.ini"), QFile::ReadOwner | QFile::WriteOwner));
    expected["tool/settings.ini"] = studio.read("tool/settings.ini");
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), expected), QString());
    QCOMPARE(studio.log(), logOfAnEmptyPass());
}

void tst_BadInput::sizeOfTheHostListIsBelieved_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("records");

    QTest::newRow("the truth") << QByteArray("size=2") << 2;
    QTest::newRow("fewer than there are") << QByteArray("size=1") << 1;
    QTest::newRow("more than there are") << QByteArray("size=5") << 5;
    QTest::newRow("many more than there are") << QByteArray("size=1000") << 1000;
    QTest::newRow("none") << QByteArray("size=0") << 0;
    QTest::newRow("fewer than none") << QByteArray("size=-3") << 0;
    QTest::newRow("no number") << QByteArray("size=two") << 0;
    QTest::newRow("an empty number") << QByteArray("size=") << 0;
    QTest::newRow("a number whose low 32 bits are 2") << QByteArray("size=4294967298") << 2;
    QTest::newRow("a number beyond 64 bits") << QByteArray("size=99999999999999999999") << 0;
    QTest::newRow("no size at all") << QByteArray("length=2") << 0;
}

void tst_BadInput::sizeOfTheHostListIsBelieved()
{
    QFETCH(QByteArray, line);
    QFETCH(int, records);
    test::Workstation workstation;
    QStringList expected{"Debug: settings loaded"};
    QStringList pass{"Debug: !!!settings local:  QVariant(Invalid)", "Debug: version:  24"};
    for (int index = 0; index < records; ++index) {
        const QString target = workstation.path(QString::number(index) + "/drask");
        expected += index < 2
            ? test::linesOfLookUp("clarisse", workstation.path(QString::number(index)))
            : test::linesOfLookUp("", "");
        pass << (index < 2 ? test::alreadyInstalledLine(target)
                           : "Debug: nothing to copy for  \"\"");
        if (index < 2) {
            pass << "Debug: cannot read config file, create new"
                 << "Debug: 161 write cfg file...";
        }
    }
    for (const char *folder : {"0", "1"}) {
        workstation.write(QString(folder) + "/drask/version.txt", "0");
        workstation.addHost("clarisse", workstation.path(folder));
    }
    workstation.writeSettings();
    workstation.write("tool/settings.ini",
                      workstation.read("tool/settings.ini").replace("size=2", line));

    const test::RunResult result = workstation.run();

    VERIFY_RUN(result, 0);
    QCOMPARE(workstation.log(), expected + pass + QStringList("Debug: 0"));
}

void tst_BadInput::unknownHostsGetNothingOfTheWorkingFolder_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("a host of which nobody heard") << "paint";
    QTest::newRow("a known host in capital letters") << "C4D";
    QTest::newRow("a known host with more behind it") << "maya2020";
    QTest::newRow("no key") << "";
}

void tst_BadInput::unknownHostsGetNothingOfTheWorkingFolder()
{
    QFETCH(QString, key);
    test::Workstation workstation;
    workstation.write("home/private.txt", "mine");
    workstation.write("home/sub/private.txt", "mine");
    workstation.write("paint/own.txt", "mine");
    workstation.addHost(key, workstation.path("paint"));
    workstation.writeSettings();
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";
    expected["paint/manager.cfg"] = "\n\n" + workstation.tool("DraskDrop").toUtf8()
        + "\n2.3.10\n\n1\n1";
    test::RunOptions options;
    options.workingFolder = workstation.path("home");

    for (int run = 0; run < 2; ++run) {
        const test::RunResult result = workstation.run({}, options);

        VERIFY_RUN(result, 2);
        QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
        QVERIFY(workstation.errors().endsWith("Could not copy file to: \n"
                                              + workstation.path("paint").toUtf8() + '\n'));
    }
}

void tst_BadInput::hostsWithoutAFolderArePassedOver_data()
{
    QTest::addColumn<QString>("folder");

    QTest::newRow("an empty folder") << "";
    QTest::newRow("a bare name") << "modo";
    QTest::newRow("a Windows folder") << "C:\\\\Program Files\\\\Modo";
}

void tst_BadInput::hostsWithoutAFolderArePassedOver()
{
    QFETCH(QString, folder);
    test::Workstation workstation;
    workstation.addPlugin("modo", {{"a.py", "a"}});
    workstation.addHost("modo", folder);
    workstation.writeSettings();
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";

    const test::RunResult result = workstation.run();

    VERIFY_RUN(result, 0);
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
    QVERIFY(workstation.log().contains("Debug: nothing to copy for  \"modo\""));
}

void tst_BadInput::relativeFolderBelongsToTheWorkingFolder()
{
    test::Workstation workstation;
    workstation.addPlugin("modo", {{"a.py", "a"}});
    workstation.addHost("modo", "hosts/modo");
    workstation.writeSettings();
    workstation.makeFolder("home");
    test::RunOptions options;
    options.workingFolder = workstation.path("home");

    const test::RunResult result = workstation.run({}, options);

    VERIFY_RUN(result, 0);
    QCOMPARE(workstation.read("home/hosts/modo/Scripts/drask/uninstall.ini"),
             QByteArray("hosts/modo/Scripts/drask/a.py\n"));
}

void tst_BadInput::strangeFoldersAreServedAndCleared_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("letters with accents") << QString::fromUtf8("M\xc3\xb6"
                                                               "do \xc3\xa9t\xc3\xa9");
    QTest::newRow("letters of another script") << QString::fromUtf8("\xe6\x97\xa5\xe6\x9c\xac");
    QTest::newRow("a sign beyond the basic plane") << QString::fromUtf8("\xf0\x9f\x90\x8d");
    QTest::newRow("a single quote") << "O'Neil";
    QTest::newRow("double quotes") << "the \"good\" one";
    QTest::newRow("a backslash") << "back\\slash";
    QTest::newRow("a tab") << "tab\tbed";
    QTest::newRow("blanks around it") << " x ";
    QTest::newRow("signs of the settings' own") << "a;b,c=d[e]#%20%1&$HOME";
    QTest::newRow("an opening bracket") << "a (b";
    QTest::newRow("a name of 255 bytes") << QString(255, 'x');
}

void tst_BadInput::strangeFoldersAreServedAndCleared()
{
    QFETCH(QString, name);
    test::Workstation workstation;
    const QString folder = workstation.path(name);
    const QString target = folder + "/Scripts/drask";
    workstation.addPlugin("modo", {{"version.txt", "7"}});
    workstation.addSetting("plugins", "versionModo=7");
    workstation.addHost("modo", escaped(folder));
    workstation.writeSettings();

    const test::RunResult first = workstation.run();

    VERIFY_RUN(first, 0);
    const test::Tree expected = {
        {"version.txt", "7"},
        {"uninstall.ini", (target + "/version.txt\n").toUtf8()},
        {"manager.cfg", "\n\n" + workstation.tool("DraskDrop").toUtf8() + "\n2.3.10\n\n1\n1"},
    };
    QCOMPARE(test::treeDifference(test::readTree(target), expected), QString());
    QVERIFY(workstation.log().contains("Debug: \"modo plugin installed in: \" " + shown(target)));

    const test::RunResult removal = workstation.run({"uninstallPlugin", "(modo) " + folder});

    VERIFY_RUN(removal, 0);
    QCOMPARE(
        test::treeDifference(test::readTree(folder), {{"Scripts/", ""}, {"Scripts/drask/", ""}}),
        QString());
}

QTEST_GUILESS_MAIN(tst_BadInput)
#include "tst_badinput.moc"
