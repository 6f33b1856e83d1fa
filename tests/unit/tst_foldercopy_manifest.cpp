// SPDX-License-Identifier: MIT
#include "copysandbox.h"
#include "unitcase.h"

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

/// What a copy writes down, and in which order.
class tst_FolderCopyManifest : public QObject {
    Q_OBJECT
private slots:
    void manifestIsUtf8WithLineFeeds()
    {
        test::CopySandbox sandbox;
        const QByteArray name = "\xc3\xa9\xe6\x97\xa5.py";
        sandbox.write("plugin/" + QString::fromUtf8(name), "a");
        QCOMPARE(sandbox.copy(), 0);
        QCOMPARE(sandbox.read("host/drask/uninstall.ini"),
                 sandbox.path("host/drask").toUtf8() + '/' + name + '\n');
    }

    void manifestIsInTheOrderOfTheFileSystem()
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

    void filesStandBeforeThoseOfSubfolders()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a/b/deep.py", "a");
        sandbox.write("plugin/a/middle.py", "a");
        sandbox.write("plugin/z.py", "a");
        QCOMPARE(sandbox.copy(), 0);
        VERIFY_LINES(sandbox.manifest(), "host/drask/z.py", "host/drask/a/middle.py",
                     "host/drask/a/b/deep.py");
    }

    void manifestIsWrittenFromScratch()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        sandbox.write("host/drask/uninstall.ini", QByteArray(10000, 'x') + '\n');
        QCOMPARE(sandbox.copy(), 0);
        QCOMPARE(sandbox.copy(), 0);
        QCOMPARE(sandbox.manifest(), QStringList("host/drask/a.py"));
    }

    void pathsStandAsTheyWereBuilt()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        const test::WorkingFolder workingFolder(sandbox.path());
        QCOMPARE(sandbox.installer().copyFolder("plugin", "host/..//host", false), 0);
        QCOMPARE(sandbox.read("host/uninstall.ini"), QByteArray("host/..//host/a.py\n"));
    }

    void shippedManifestTakesTheManifestsPlace()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        sandbox.write("plugin/uninstall.ini", "shipped\n");
        QCOMPARE(sandbox.copy(), 0);
        QCOMPARE(sandbox.read("host/drask/uninstall.ini"), QByteArray("shipped\n"));
    }

    void folderCopiedOntoItselfDoesNotTakeItsManifestAlong()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        QCOMPARE(sandbox.copy("plugin", "plugin"), 0);
        VERIFY_LINES(sandbox.log(), "Debug: open file:  \"\"",
                     "Debug: Could not copy file  \"plugin/a.py\"  to  \"plugin/a.py\"");
        VERIFY_TREE(sandbox, {{"plugin/", ""}, {"plugin/a.py", ""}, {"plugin/uninstall.ini", ""}});
    }

    void uninstallScriptsAreCopiedButNotListed_data()
    {
        const test::Table<QString, bool> table("file", "isListed");
        table.row("the script itself", "drask_uninstall", false);
        table.row("a name that holds it", "my_drask_uninstaller.py", false);
        table.row("a file in a folder of that name", "drask_uninstall/a.py", false);
        table.row("another letter case", "Drask_uninstall.py", true);
        table.row("another hyphen", "drask-uninstall.py", true);
    }

    void uninstallScriptsAreCopiedButNotListed()
    {
        QFETCH(QString, file);
        QFETCH(bool, isListed);
        test::CopySandbox sandbox;
        sandbox.write("plugin/" + file, "script");
        QCOMPARE(sandbox.copy(), 0);
        QCOMPARE(sandbox.read("host/drask/" + file), QByteArray("script"));
        QCOMPARE(sandbox.manifest(), isListed ? QStringList("host/drask/" + file) : QStringList());
    }

    void mayaShelfIsListedOnceAFolder()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugins/maya/drask.py", "a");
        sandbox.write("plugins/maya/one/a.py", "a");
        sandbox.makeFolder("plugins/maya/one/two");
        const QString shelf = "maya 2020/prefs/shelves/shelf_DraskGrex.mel";

        QCOMPARE(sandbox.copy("plugins/maya", "maya 2020/scripts/drask"), 0);
        VERIFY_LINES(sandbox.manifest("maya 2020/scripts/drask"),
                     "maya 2020/scripts/drask/drask.py", shelf, "maya 2020/scripts/drask/one/a.py",
                     shelf, shelf);
        QVERIFY(!sandbox.exists(shelf));
    }

    void mayaShelfIsCutAtTheLastScriptsFolder_data()
    {
        const test::Table<QString, QString> table("target", "shelfFolder");
        table.row("two folders of that name", "m/scripts/maya/scripts/drask", "m/scripts/maya");
        table.row("a name that begins so", "maya/scripts_old/drask", "maya");
        table.row("no such folder", "maya/python/drask", "maya/python/drask");
        table.row("another letter case", "maya/Scripts/drask", "maya/Scripts/drask");
        table.row("a plug-in folder whose files are not listed", "maya/scripts/drask_uninstall",
                  "maya");
    }

    void mayaShelfIsCutAtTheLastScriptsFolder()
    {
        QFETCH(QString, target);
        QFETCH(QString, shelfFolder);
        test::CopySandbox sandbox;
        sandbox.makeFolder("plugins/maya");
        QCOMPARE(sandbox.copy("plugins/maya", target), 0);
        VERIFY_LINES(sandbox.manifest(target), shelfFolder + "/prefs/shelves/shelf_DraskGrex.mel");
    }

    void mayaShelfNeedsTheMayaSource_data()
    {
        const test::Table<QString, bool> table("source", "isListed");
        table.row("the Maya plug-in", "tool/plugins/maya", true);
        table.row("a name that begins so", "tool/plugins/maya2020", true);
        table.row("a folder below", "tool/plugins/maya/sub", true);
        table.row("another letter case", "tool/plugins/Maya", false);
        table.row("another folder above", "tool/addons/maya", false);
    }

    void mayaShelfNeedsTheMayaSource()
    {
        QFETCH(QString, source);
        QFETCH(bool, isListed);
        test::CopySandbox sandbox;
        sandbox.makeFolder(source);
        QCOMPARE(sandbox.copy(source, "maya/scripts/drask"), 0);
        QCOMPARE(sandbox.manifest("maya/scripts/drask").size(), isListed ? 1 : 0);
    }

    void logNamesTheManifestBefore()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        QCOMPARE(sandbox.copy("plugin", "one"), 0);
        QCOMPARE(sandbox.copy("plugin", "two"), 0);
        QCOMPARE(sandbox.copy("plugin", "two"), 0);
        VERIFY_LINES(sandbox.log(), "Debug: open file:  \"\"",
                     "Debug: open file:  \"one/uninstall.ini\"",
                     "Debug: open file:  \"two/uninstall.ini\"");
    }

    void logNamesAManifestThatCouldNotBeOpened()
    {
        test::CopySandbox sandbox;
        sandbox.makeFolder("plugin");
        sandbox.makeFolder("one/uninstall.ini");
        QCOMPARE(sandbox.copy("plugin", "one"), 1);
        QCOMPARE(sandbox.copy("plugin", "two"), 0);
        VERIFY_LINES(sandbox.log(), "Debug: open file:  \"\"",
                     "Debug: cannot open  \"one/uninstall.ini\"  for writing",
                     "Debug: open file:  \"one/uninstall.ini\"");
    }

    void earlyReturnLeavesTheManifestOpen()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        sandbox.write("plugin/sub/b.py", "b");
        sandbox.makeFolder("host/drask/sub/b.py");
        sandbox.write("other/c.py", "c");

        QCOMPARE(sandbox.copy(), 2);
        QCOMPARE(sandbox.manifest(), QStringList("host/drask/a.py"));
        QCOMPARE(sandbox.copy("other", "next"), 0);
        QCOMPARE(
            QStringList(sandbox.log().mid(3)),
            QStringList({"Debug: open file:  \"host/drask/uninstall.ini\"",
                         "Warning: QFile::setFileName: File (host/drask/uninstall.ini) already "
                         "open"}));
        QCOMPARE(sandbox.manifest("next"), QStringList("next/c.py"));
        QCOMPARE(sandbox.manifest(), QStringList("host/drask/a.py"));
    }

    void finishedCopyClosesTheManifest()
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
            QCOMPARE(
                installer.copyFolder(sandbox.path("broken"), sandbox.path("host/drask"), false), 2);
            QCOMPARE(openFilesOf(sandbox), 2);
        }
        QCOMPARE(openFilesOf(sandbox), 1);
    }
};

DRASK_TEST(tst_FolderCopyManifest)
#include "tst_foldercopy_manifest.moc"
