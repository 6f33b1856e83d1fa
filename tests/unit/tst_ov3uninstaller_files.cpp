// SPDX-License-Identifier: MIT
#include "uninstaller/legacyfiles.h"
#include "uninstaller/ov3uninstaller.h"
#include "unitcase.h"

#include <sys/stat.h>

namespace {

QStringList legacyNames()
{
    QStringList names = QString(legacyFileList).split(',');
    names.removeDuplicates();
    return names;
}

/// Maya with its old plug-in folder, and a list file that names it.
struct OldMaya : test::Sandbox {
    OldMaya()
    {
        makeFolder(plugin);
        write("list", "path=" + path("maya/Maya.app").toLocal8Bit() + "\n");
    }

    /// What is found, relative to the plug-in folder and sorted.
    QStringList found() const
    {
        QStringList names;
        const QStringList files = Ov3Uninstaller::findPluginFiles(path(plugin));
        for (const QString &file : files) {
            names << QString(file).remove(path(plugin) + '/');
        }
        names.sort();
        return names;
    }

    int deleteAll() const
    {
        return Ov3Uninstaller::deleteOldPlugins(path("list"));
    }

    /// The tree without \a names in the plug-in folder.
    test::Tree treeWithout(const QStringList &names) const
    {
        test::Tree rest = tree();
        for (const QString &name : names) {
            rest.remove(plugin + '/' + name);
        }
        return rest;
    }

    const QString plugin = "maya/scripts/Drask";
    const test::LogCapture log;
};

} // namespace

/// Which files are found below a plug-in folder, and which of them go.
class tst_Ov3UninstallerFiles : public QObject {
    Q_OBJECT
private slots:
    void everyNameOfTheListIsFoundAndDeleted()
    {
        const OldMaya maya;
        for (const QString &name : legacyNames()) {
            maya.write(maya.plugin + '/' + name, "old");
        }
        QStringList expected = legacyNames();
        expected.sort();
        QCOMPARE(expected.size(), 77);
        const test::Tree rest = maya.treeWithout(expected);

        QCOMPARE(maya.found(), expected);
        QCOMPARE(maya.deleteAll(), 0);
        VERIFY_TREE(maya, rest);
        QCOMPARE(maya.log.lines(), QStringList());
    }

    void otherNamesStay_data()
    {
        const test::Table<QString> table("name");
        table.row("a capital letter", "Manager.cfg");
        table.row("an ending in capitals", "manager.CFG");
        table.row("a small letter for a capital", "grex.cdl");
        table.row("a longer name", "manager.cfg.bak");
        table.row("a name before it", "my_manager.cfg");
        table.row("a blank behind it", "manager.cfg ");
        table.row("a name with an extra ending", "val_tex.pyc");
        table.row("both halves of the parted name", "val_tex,ure_old2.pyc");
        table.row("a place-holder", "*.pyc");
        table.row("the user's own file", "userSetup.py");
        table.row("a hidden file", ".manager.cfg");
    }

    void otherNamesStay()
    {
        QFETCH(QString, name);
        const OldMaya maya;
        maya.write(maya.plugin + '/' + name, "mine");
        maya.write(maya.plugin + "/manager.cfg.d/" + name, "mine");
        const test::Tree before = maya.tree();
        QCOMPARE(maya.found(), QStringList());
        QCOMPARE(maya.deleteAll(), 0);
        VERIFY_TREE(maya, before);
    }

    void filesInSubfoldersAreFoundAndFoldersStay()
    {
        const OldMaya maya;
        const QStringList names = {"a/b/c/grex.js", "a/manager.cfg", "manager.cfg",
                                   "with blank \xc3\xa9/manager.cfg"};
        for (const QString &name : names) {
            maya.write(maya.plugin + '/' + name, "old");
        }
        maya.write(maya.plugin + "/a/b/mine.txt", "mine");
        maya.makeFolder(maya.plugin + "/empty");
        const test::Tree rest = maya.treeWithout(names);

        QCOMPARE(maya.found(), names);
        QCOMPARE(maya.deleteAll(), 0);
        VERIFY_TREE(maya, rest);
    }

    void filesComeInTheOrderOfTheWalk()
    {
        const OldMaya maya;
        for (int number = 0; number < 20; ++number) {
            const QString folder = maya.plugin + '/' + QString::number(number * 7 % 20);
            maya.write(folder + "/manager.cfg", "old");
            maya.write(folder + "/a/grex.js", "old");
        }
        QStringList walk;
        QDirIterator entries(maya.path(maya.plugin), QDir::Files, QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            walk << entries.next();
        }
        QStringList sorted = walk;
        sorted.sort();
        if (walk == sorted) {
            QSKIP("This file system lists its files in the order of their names.");
        }

        QCOMPARE(Ov3Uninstaller::findPluginFiles(maya.path(maya.plugin)), QList<QString>(walk));
    }

    void hiddenAndLinkedFoldersAreNotEntered()
    {
        const OldMaya maya;
        maya.write("elsewhere/manager.cfg", "mine");
        maya.write(maya.plugin + "/.hidden/manager.cfg", "mine");
        maya.write(maya.plugin + "/a/.hidden/manager.cfg", "mine");
        maya.makeFolder(maya.plugin + "/grex.js");
        maya.write(maya.plugin + "/manager.cfg/grex.js", "old");
        maya.makeLink(maya.path("elsewhere"), maya.plugin + "/a/linked");
        maya.makeLink(maya.path("elsewhere"), maya.plugin + "/a/drask.js");
        maya.makeLink(maya.path(maya.plugin), maya.plugin + "/a/again");
        maya.makeLink(maya.path("nowhere"), maya.plugin + "/a/modo.jpg");
        // A link to a file goes like a file.
        maya.makeLink(maya.path("elsewhere/manager.cfg"), maya.plugin + "/b/manager.cfg");
        const test::Tree rest = maya.treeWithout({"b/manager.cfg@", "manager.cfg/grex.js"});

        VERIFY_LINES(maya.found(), "b/manager.cfg", "manager.cfg/grex.js");
        QCOMPARE(maya.deleteAll(), 0);
        VERIFY_TREE(maya, rest);
    }

    void linkedPluginFolderIsEntered()
    {
        const OldMaya maya;
        maya.remove(maya.plugin);
        maya.write("elsewhere/a/manager.cfg", "old");
        maya.write("elsewhere/mine", "mine");
        maya.makeLink(maya.path("elsewhere"), maya.plugin);
        test::Tree rest = maya.tree();
        rest.remove("elsewhere/a/manager.cfg");

        QCOMPARE(maya.found(), QStringList("a/manager.cfg"));
        QCOMPARE(maya.deleteAll(), 0);
        VERIFY_TREE(maya, rest);
    }

    void pipeWithAListedNameStays()
    {
        const OldMaya maya;
        const QString pipe = maya.path(maya.plugin + "/manager.cfg");
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QCOMPARE(maya.found(), QStringList());
        QCOMPARE(maya.deleteAll(), 0);
        QVERIFY(QFile::exists(pipe));
    }

    void filesOutsideThePluginFolderStay()
    {
        const OldMaya maya;
        maya.write("maya/manager.cfg", "mine");
        maya.write("maya/scripts/manager.cfg", "mine");
        maya.write("maya/scripts/Drask2/manager.cfg", "mine");
        maya.write("maya/scripts/drask/manager.cfg", "mine");
        maya.write("manager.cfg", "mine");
        const test::Tree before = maya.tree();

        QCOMPARE(maya.deleteAll(), 0);
        VERIFY_TREE(maya, before);
    }

    void everyListedHostIsCleaned()
    {
        const OldMaya machine;
        const QStringList files = {"Cinema/Plugins/Drask/Grex.cdl",
                                   "3dsmax/scripts/startup/drask/drask.mse",
                                   "maya/scripts/Drask/drask.xpm",
                                   "lightwave/Plugins/Drask/grex64.p",
                                   "modo/drask/modo.jpg",
                                   "XSI/Plugins/Others/drask.js",
                                   "blender/2.79/scripts/startup/adrask/__init__.py"};
        QByteArray list;
        for (const QString &file : files) {
            machine.write(file, "old");
            const QString host = machine.path(file.section('/', 0, 0));
            list += "path=" + host.toLocal8Bit() + "/program\n";
        }
        machine.write("list", list);

        QCOMPARE(machine.deleteAll(), 0);
        for (const QString &file : files) {
            QVERIFY2(!machine.exists(file), qPrintable(file));
            QVERIFY2(machine.exists(QFileInfo(file).path()), qPrintable(file));
        }
    }

    void fileThatCannotBeDeletedStopsNothing()
    {
        const OldMaya maya;
        maya.write(maya.plugin + "/locked/manager.cfg", "old");
        maya.write(maya.plugin + "/open/manager.cfg", "old");
        maya.write(maya.plugin + "/grex.js", "old");
        test::giveToOrdinaryUser(maya.path(maya.plugin));
        test::giveToOrdinaryUser(maya.path(maya.plugin + "/open"));
        const test::Tree rest = maya.treeWithout({"open/manager.cfg", "grex.js"});
        const test::ReadOnly lock(maya.path(maya.plugin + "/locked"));
        {
            BECOME_ORDINARY_USER_OR_SKIP();
            QCOMPARE(maya.deleteAll(), 0);
        }

        VERIFY_TREE(maya, rest);
        QCOMPARE(maya.log.lines(), QStringList());
    }
};

DRASK_TEST(tst_Ov3UninstallerFiles)
#include "tst_ov3uninstaller_files.moc"
