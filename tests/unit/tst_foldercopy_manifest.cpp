// SPDX-License-Identifier: MIT
#include "copysandbox.h"

#include "testprogram.h"

#include <QtTest>

/// What a copy writes down, and in which order.
class tst_FolderCopyManifest : public QObject {
    Q_OBJECT

private slots:
    void manifestIsUtf8WithLineFeeds();
    void manifestIsInTheOrderOfTheFileSystem();
    void filesStandBeforeThoseOfSubfolders();
    void manifestIsWrittenFromScratch();
    void pathsStandAsTheyWereBuilt();
    void shippedManifestTakesTheManifestsPlace();
    void folderCopiedOntoItselfDoesNotTakeItsManifestAlong();

    void uninstallScriptsAreCopiedButNotListed_data();
    void uninstallScriptsAreCopiedButNotListed();

    void mayaShelfIsListedOnceAFolder();
    void mayaShelfIsCutAtTheLastScriptsFolder_data();
    void mayaShelfIsCutAtTheLastScriptsFolder();
    void mayaShelfNeedsTheMayaSource_data();
    void mayaShelfNeedsTheMayaSource();

    void logNamesTheManifestBefore();
    void logNamesAManifestThatCouldNotBeOpened();
    void earlyReturnLeavesTheManifestOpen();
    void finishedCopyClosesTheManifest();
};

namespace {

/// How many files of the sandbox this process holds open.
int openFilesOf(const test::Sandbox &sandbox)
{
    int count = 0;
    QDirIterator files("/proc/self/fd", QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    while (files.hasNext()) {
        files.next();
        count += files.fileInfo().symLinkTarget().startsWith(sandbox.path()) ? 1 : 0;
    }
    return count;
}

} // namespace

void tst_FolderCopyManifest::manifestIsUtf8WithLineFeeds()
{
    test::CopySandbox sandbox;
    const QByteArray name = "\xc3\xa9\xe6\x97\xa5.py";
    sandbox.write("plugin/" + QString::fromUtf8(name), "a");

    QCOMPARE(sandbox.copy(), 0);

    QCOMPARE(sandbox.read("host/drask/uninstall.ini"),
             sandbox.path("host/drask").toUtf8() + '/' + name + '\n');
}

void tst_FolderCopyManifest::manifestIsInTheOrderOfTheFileSystem()
{
    test::CopySandbox sandbox;
    for (int number = 0; number < 60; ++number) {
        const QString name = QString::number(number * 37 % 60);
        sandbox.write("plugin/" + name + ".py", "a");
        sandbox.write("plugin/folder " + name + "/a.py", "a");
    }
    const QStringList files = test::filesInCopyOrder(sandbox.path("plugin"));
    QStringList sorted = files;
    sorted.sort();
    if (files == sorted) {
        QSKIP("This file system lists its files in the order of their names.");
    }

    QCOMPARE(sandbox.copy(), 0);

    QStringList listed = sandbox.manifest();
    QCOMPARE(listed.replaceInStrings("host/drask/", QString()), files);
}

void tst_FolderCopyManifest::filesStandBeforeThoseOfSubfolders()
{
    test::CopySandbox sandbox;
    sandbox.write("plugin/a/b/deep.py", "a");
    sandbox.write("plugin/a/middle.py", "a");
    sandbox.write("plugin/z.py", "a");

    QCOMPARE(sandbox.copy(), 0);

    QCOMPARE(sandbox.manifest(),
             QStringList({"host/drask/z.py", "host/drask/a/middle.py", "host/drask/a/b/deep.py"}));
}

void tst_FolderCopyManifest::manifestIsWrittenFromScratch()
{
    test::CopySandbox sandbox;
    sandbox.write("plugin/a.py", "a");
    sandbox.write("host/drask/uninstall.ini", QByteArray(10000, 'x') + '\n');

    QCOMPARE(sandbox.copy(), 0);
    QCOMPARE(sandbox.copy(), 0);

    QCOMPARE(sandbox.manifest(), QStringList("host/drask/a.py"));
}

void tst_FolderCopyManifest::pathsStandAsTheyWereBuilt()
{
    test::CopySandbox sandbox;
    sandbox.write("plugin/a.py", "a");
    const QString workingFolder = QDir::currentPath();
    QVERIFY(QDir::setCurrent(sandbox.path()));

    const int result = sandbox.installer().copyFolder("plugin", "host/..//host", false);
    QVERIFY(QDir::setCurrent(workingFolder));

    QCOMPARE(result, 0);
    QCOMPARE(sandbox.read("host/uninstall.ini"), QByteArray("host/..//host/a.py\n"));
}

void tst_FolderCopyManifest::shippedManifestTakesTheManifestsPlace()
{
    test::CopySandbox sandbox;
    sandbox.write("plugin/a.py", "a");
    sandbox.write("plugin/uninstall.ini", "shipped\n");

    QCOMPARE(sandbox.copy(), 0);

    QCOMPARE(sandbox.read("host/drask/uninstall.ini"), QByteArray("shipped\n"));
}

void tst_FolderCopyManifest::folderCopiedOntoItselfDoesNotTakeItsManifestAlong()
{
    test::CopySandbox sandbox;
    sandbox.write("plugin/a.py", "a");

    QCOMPARE(sandbox.copy("plugin", "plugin"), 0);

    QCOMPARE(sandbox.log(),
             QStringList({"Debug: open file:  \"\"",
                          "Debug: Could not copy file  \"plugin/a.py\"  to  \"plugin/a.py\""}));
    QCOMPARE(
        test::treeDifference(sandbox.tree(),
                             {{"plugin/", ""}, {"plugin/a.py", ""}, {"plugin/uninstall.ini", ""}}),
        QString());
}

void tst_FolderCopyManifest::uninstallScriptsAreCopiedButNotListed_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("isListed");

    QTest::newRow("the script itself") << "drask_uninstall" << false;
    QTest::newRow("a name that holds it") << "my_drask_uninstaller.py" << false;
    QTest::newRow("a file in a folder of that name") << "drask_uninstall/a.py" << false;
    QTest::newRow("another letter case") << "Drask_uninstall.py" << true;
    QTest::newRow("another hyphen") << "drask-uninstall.py" << true;
}

void tst_FolderCopyManifest::uninstallScriptsAreCopiedButNotListed()
{
    QFETCH(QString, file);
    QFETCH(bool, isListed);
    test::CopySandbox sandbox;
    sandbox.write("plugin/" + file, "script");

    QCOMPARE(sandbox.copy(), 0);

    QCOMPARE(sandbox.read("host/drask/" + file), QByteArray("script"));
    QCOMPARE(sandbox.manifest(), isListed ? QStringList("host/drask/" + file) : QStringList());
}

void tst_FolderCopyManifest::mayaShelfIsListedOnceAFolder()
{
    test::CopySandbox sandbox;
    sandbox.write("plugins/maya/drask.py", "a");
    sandbox.write("plugins/maya/one/a.py", "a");
    sandbox.makeFolder("plugins/maya/one/two");
    const QString shelf = "maya 2020/prefs/shelves/shelf_DraskGrex.mel";

    QCOMPARE(sandbox.copy("plugins/maya", "maya 2020/scripts/drask"), 0);

    QCOMPARE(sandbox.manifest("maya 2020/scripts/drask"),
             QStringList({"maya 2020/scripts/drask/drask.py", shelf,
                          "maya 2020/scripts/drask/one/a.py", shelf, shelf}));
    QVERIFY(!sandbox.exists(shelf));
}

void tst_FolderCopyManifest::mayaShelfIsCutAtTheLastScriptsFolder_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("shelfFolder");

    QTest::newRow("two folders of that name") << "m/scripts/maya/scripts/drask"
                                              << "m/scripts/maya";
    QTest::newRow("a name that begins so") << "maya/scripts_old/drask"
                                           << "maya";
    QTest::newRow("no such folder") << "maya/python/drask"
                                    << "maya/python/drask";
    QTest::newRow("another letter case") << "maya/Scripts/drask"
                                         << "maya/Scripts/drask";
    QTest::newRow("a plug-in folder whose files are not listed") << "maya/scripts/drask_uninstall"
                                                                 << "maya";
}

void tst_FolderCopyManifest::mayaShelfIsCutAtTheLastScriptsFolder()
{
    QFETCH(QString, target);
    QFETCH(QString, shelfFolder);
    test::CopySandbox sandbox;
    sandbox.makeFolder("plugins/maya");

    QCOMPARE(sandbox.copy("plugins/maya", target), 0);

    QCOMPARE(sandbox.manifest(target),
             QStringList(shelfFolder + "/prefs/shelves/shelf_DraskGrex.mel"));
}

void tst_FolderCopyManifest::mayaShelfNeedsTheMayaSource_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<bool>("isListed");

    QTest::newRow("the Maya plug-in") << "tool/plugins/maya" << true;
    QTest::newRow("a name that begins so") << "tool/plugins/maya2020" << true;
    QTest::newRow("a folder below") << "tool/plugins/maya/sub" << true;
    QTest::newRow("another letter case") << "tool/plugins/Maya" << false;
    QTest::newRow("another folder above") << "tool/addons/maya" << false;
}

void tst_FolderCopyManifest::mayaShelfNeedsTheMayaSource()
{
    QFETCH(QString, source);
    QFETCH(bool, isListed);
    test::CopySandbox sandbox;
    sandbox.makeFolder(source);

    QCOMPARE(sandbox.copy(source, "maya/scripts/drask"), 0);

    QCOMPARE(sandbox.manifest("maya/scripts/drask").size(), isListed ? 1 : 0);
}

void tst_FolderCopyManifest::logNamesTheManifestBefore()
{
    test::CopySandbox sandbox;
    sandbox.write("plugin/a.py", "a");

    QCOMPARE(sandbox.copy("plugin", "one"), 0);
    QCOMPARE(sandbox.copy("plugin", "two"), 0);
    QCOMPARE(sandbox.copy("plugin", "two"), 0);

    QCOMPARE(sandbox.log(),
             QStringList({"Debug: open file:  \"\"", "Debug: open file:  \"one/uninstall.ini\"",
                          "Debug: open file:  \"two/uninstall.ini\""}));
}

void tst_FolderCopyManifest::logNamesAManifestThatCouldNotBeOpened()
{
    test::CopySandbox sandbox;
    sandbox.makeFolder("plugin");
    sandbox.makeFolder("one/uninstall.ini");

    QCOMPARE(sandbox.copy("plugin", "one"), 1);
    QCOMPARE(sandbox.copy("plugin", "two"), 0);

    QCOMPARE(sandbox.log(),
             QStringList({"Debug: open file:  \"\"",
                          "Debug: cannot open  \"one/uninstall.ini\"  for writing",
                          "Debug: open file:  \"one/uninstall.ini\""}));
}

void tst_FolderCopyManifest::earlyReturnLeavesTheManifestOpen()
{
    test::CopySandbox sandbox;
    sandbox.write("plugin/a.py", "a");
    sandbox.write("plugin/sub/b.py", "b");
    sandbox.makeFolder("host/drask/sub/b.py");
    sandbox.write("other/c.py", "c");

    QCOMPARE(sandbox.copy(), 2);
    QCOMPARE(sandbox.manifest(), QStringList("host/drask/a.py"));
    QCOMPARE(sandbox.copy("other", "next"), 0);

    QCOMPARE(QStringList(sandbox.log().mid(3)),
             QStringList({"Debug: open file:  \"host/drask/uninstall.ini\"",
                          "Warning: QFile::setFileName: File (host/drask/uninstall.ini) already "
                          "open"}));
    QCOMPARE(sandbox.manifest("next"), QStringList("next/c.py"));
    QCOMPARE(sandbox.manifest(), QStringList("host/drask/a.py"));
}

void tst_FolderCopyManifest::finishedCopyClosesTheManifest()
{
    if (!QFileInfo::exists("/proc/self/fd")) {
        QSKIP("The open files are looked up in /proc.");
    }
    test::CopySandbox sandbox;
    sandbox.write("plugin/a.py", "a");
    sandbox.write("broken/sub/b.py", "b");
    sandbox.makeFolder("host/drask/sub/b.py");

    QCOMPARE(sandbox.copy(), 0);
    QCOMPARE(openFilesOf(sandbox), 0);

    QCOMPARE(sandbox.copy("broken"), 2);
    QCOMPARE(openFilesOf(sandbox), 1);
    {
        PluginInstaller installer("/opt/drask", "ann", "/projects", false, true);
        QCOMPARE(installer.copyFolder(sandbox.path("broken"), sandbox.path("host/drask"), false),
                 2);
        QCOMPARE(openFilesOf(sandbox), 2);
    }
    QCOMPARE(openFilesOf(sandbox), 1);
}

DRASK_TEST(tst_FolderCopyManifest)
#include "tst_foldercopy_manifest.moc"
