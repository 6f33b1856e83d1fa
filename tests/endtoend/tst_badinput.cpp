// SPDX-License-Identifier: MIT
#include "expectedpass.h"
#include "ordinaryuser.h"
#include "studio.h"
#include "testprogram.h"

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

/// The log of a pass over \a records hosts, of which two are there and have their plug-ins.
QStringList logOfRecords(const test::Workstation &workstation, int records,
                         const QStringList &configLines)
{
    QStringList lookUps;
    QStringList served;
    for (int index = 0; index < records; ++index) {
        const QString folder = workstation.path(QString::number(index));
        if (index < 2) {
            lookUps += test::linesOfLookUp("clarisse", folder);
            served << test::alreadyInstalledLine(folder + "/drask");
            served += configLines;
        } else {
            lookUps += test::linesOfLookUp("", "");
            served << "Debug: nothing to copy for  \"\"";
        }
    }
    return test::logOfPass(lookUps, served, 0);
}

/// How a value stands between the quotes of a settings file, and between those of the log.
QString escaped(const QString &text)
{
    return QString(text).replace("\\", "\\\\").replace("\"", "\\\"").replace("\t", "\\t");
}

/// The tree after Modo's plug-in, of a version file alone, came into the folder \a name and went.
test::Tree clearedModo(test::Tree tree, const QString &name)
{
    tree["tool/version.txt"] = "2.3.10";
    for (const char *folder : {"/", "/Scripts/", "/Scripts/drask/"}) {
        tree[name + folder] = "";
    }
    return tree;
}

/// The tree while that plug-in is there.
test::Tree servedModo(const test::Workstation &workstation, test::Tree cleared, const QString &name)
{
    const QString folder = name + "/Scripts/drask";
    test::put(cleared, folder,
              {{"version.txt", "7"},
               {"uninstall.ini", workstation.path(folder).toUtf8() + "/version.txt\n"},
               {"manager.cfg", test::configOf(workstation)}});
    return cleared;
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
        VERIFY_LEFT(studio, expected, test::logOfPass({}, {}, 0), QByteArray());
    }
}

void tst_BadInput::settingsThatMayNotBeReadServeNobody()
{
    const test::Studio studio;
    test::giveToOrdinaryUser(studio.tool());
    test::Tree expected = studio.tree();
    expected["tool/version.txt"] = "2.3.10";
    const QString settings = studio.tool("settings.ini");
    test::RunOptions options;
    options.asOrdinaryUser = true;

    for (int run = 0; run < 2; ++run) {
        QVERIFY(QFile::setPermissions(settings, QFile::WriteOwner));
        const test::RunResult result = studio.run({}, options);
        QVERIFY(QFile::setPermissions(settings, QFile::ReadOwner | QFile::WriteOwner));

        VERIFY_RUN(result, 0);
        VERIFY_LEFT(studio, expected, test::logOfPass({}, {}, 0), QByteArray());
    }
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
    for (const char *folder : {"0", "1"}) {
        workstation.write(QString(folder) + "/drask/version.txt", "0");
        workstation.addHost("clarisse", workstation.path(folder));
    }
    workstation.writeSettings();
    workstation.write("tool/settings.ini",
                      workstation.read("tool/settings.ini").replace("size=2", line));
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";
    for (int index = 0; index < qMin(records, 2); ++index) {
        expected[QString::number(index) + "/drask/manager.cfg"] = test::configOf(workstation);
    }

    const test::RunResult first = workstation.run();

    VERIFY_RUN(first, 0);
    VERIFY_LEFT(workstation, expected, logOfRecords(workstation, records, test::linesOfNewConfig()),
                QByteArray());

    const test::RunResult second = workstation.run();

    VERIFY_RUN(second, 0);
    VERIFY_LEFT(workstation, expected,
                logOfRecords(workstation, records, test::linesOfKeptConfig()), QByteArray());
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
    expected["paint/manager.cfg"] = test::configOf(workstation);
    const QString folder = workstation.path("paint");
    const QStringList lookUp = test::linesOfLookUp(key, folder);
    const QStringList installed = test::linesOfInstalled(key, folder);
    test::RunOptions options;
    options.workingFolder = workstation.path("home");

    const test::RunResult first = workstation.run({}, options);

    VERIFY_RUN(first, 2);
    const QStringList log = test::logOfPass(lookUp, test::linesOfNewConfig() + installed, 2);
    VERIFY_LEFT(workstation, expected, log, test::copyMessage(folder));

    const test::RunResult second = workstation.run({}, options);

    VERIFY_RUN(second, 2);
    VERIFY_LEFT(workstation, expected,
                log + test::logOfPass(lookUp, test::linesOfKeptConfig() + installed, 2),
                test::copyMessage(folder) + test::copyMessage(folder));
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

    // A backslash is doubled in the settings and in the log alike.
    const QStringList log = test::logOfPass(test::linesOfLookUp("modo", folder),
                                            {"Debug: nothing to copy for  \"modo\""}, 0);

    for (int run = 0; run < 2; ++run) {
        const test::RunResult result = workstation.run();

        VERIFY_RUN(result, 0);
        VERIFY_LEFT(workstation, expected, log, QByteArray());
    }
}

void tst_BadInput::relativeFolderBelongsToTheWorkingFolder()
{
    test::Workstation workstation;
    workstation.addPlugin("modo", {{"a.py", "a"}});
    workstation.addHost("modo", "hosts/modo");
    workstation.writeSettings();
    workstation.makeFolder("home");
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";
    const QString folder = "hosts/modo/Scripts/drask";
    test::put(expected, "home/" + folder,
              {{"a.py", "a"},
               {"uninstall.ini", "hosts/modo/Scripts/drask/a.py\n"},
               {"manager.cfg", test::configOf(workstation)}});
    const QStringList lookUp = test::linesOfLookUp("modo", "hosts/modo");
    const QStringList copied = test::linesOfCopy();
    const QStringList installed = test::linesOfInstalled("modo", folder);
    test::RunOptions options;
    options.workingFolder = workstation.path("home");

    const test::RunResult first = workstation.run({}, options);

    VERIFY_RUN(first, 0);
    const QStringList log = test::logOfPass(lookUp, copied + test::linesOfNewConfig() + installed,
                                            0);
    VERIFY_LEFT(workstation, expected, log, QByteArray());

    const test::RunResult second = workstation.run({}, options);

    VERIFY_RUN(second, 0);
    VERIFY_LEFT(workstation, expected,
                log + test::logOfPass(lookUp, copied + test::linesOfKeptConfig() + installed, 0),
                QByteArray());
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
    workstation.addPlugin("modo", {{"version.txt", "7"}});
    workstation.addSetting("plugins", "versionModo=7");
    workstation.addHost("modo", escaped(folder));
    workstation.writeSettings();
    const test::Tree cleared = clearedModo(workstation.tree(), name);
    const test::Tree served = servedModo(workstation, cleared, name);
    const QStringList lookUp = test::linesOfLookUp("modo", escaped(folder));
    const QString target = escaped(folder + "/Scripts/drask");

    const test::RunResult first = workstation.run();

    VERIFY_RUN(first, 0);
    const QStringList copied = test::linesOfCopy() + test::linesOfNewConfig()
        + test::linesOfInstalled("modo", target);
    VERIFY_LEFT(workstation, served, test::logOfPass(lookUp, copied, 0), QByteArray());

    const test::RunResult second = workstation.run();

    VERIFY_RUN(second, 0);
    const QStringList kept = test::linesOfAlreadyInstalled(target) + test::linesOfKeptConfig();
    VERIFY_LEFT(workstation, served, test::logOfPass(lookUp, kept, 0), QByteArray());

    const test::RunResult removal = workstation.run({"uninstallPlugin", "(modo) " + folder});

    // A second removal would find nothing.
    VERIFY_RUN(removal, 0);
    VERIFY_LEFT(workstation, cleared, lookUp + test::linesOfUninstall(target, 0), QByteArray());
}

DRASK_TEST(tst_BadInput)
#include "tst_badinput.moc"
