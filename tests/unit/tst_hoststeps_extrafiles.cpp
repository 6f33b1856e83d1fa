// SPDX-License-Identifier: MIT
#include "hoststeps.h"

#include "hostsetup.h"
#include "unitcase.h"

#ifdef Q_OS_LINUX
#include <sched.h>
#endif
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>

namespace {

constexpr int rootNotChanged = 77;

bool changeRoot(const QByteArray &folder)
{
#ifdef Q_OS_LINUX
    // In a name space of their own, other users may do what only root may.
    if (geteuid() != 0 && unshare(CLONE_NEWUSER) != 0) {
        return false;
    }
#endif
    return chroot(folder.constData()) == 0 && chdir("/") == 0;
}

/// Runs \a steps in a child process for which the folder \a folder is the root of the file system
/// and the working directory. Returns false where that is not possible: skip the case, and say so.
bool runWithOwnRoot(const QString &folder, const std::function<void()> &steps)
{
    const QByteArray name = QFile::encodeName(folder);
    const pid_t child = fork();
    if (child == 0) {
        if (!changeRoot(name)) {
            _exit(rootNotChanged);
        }
        steps();
        _exit(0);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        qFatal("The child process could not be made or awaited");
    }
    if (WIFEXITED(status) && WEXITSTATUS(status) == rootNotChanged) {
        return false;
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        qFatal("The child process did not end in order");
    }
    return true;
}

const char noOwnRoot[] = "A child process cannot be given a root of its own here";

const PluginPathStruct rhino = test::rhinoAt("/host");
const PluginPathStruct revit = test::revitAt("/host");

/// What lies in \a root now, without the stores in which Rhino is registered.
test::Tree treeWithoutStores(const test::Sandbox &root)
{
    test::Tree tree = root.tree();
    tree.remove("HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\5.0x64\\Plug-ins");
    tree.remove("HKEY_CURRENT_USER\\Software\\McNeel\\Rhinoceros\\5.0x64\\Plug-ins");
    return tree;
}

/// The extra files in \a root, and in it the folders of a host with that plug-in folder.
void fillRoot(const test::Sandbox &root, const QString &pluginFolder)
{
    for (const char *name :
         {"Drask.rhp", "Drask_tb.rui", "DraskRevitUpload.addin", "DraskRevitUpload.dll"}) {
        root.write(name, QByteArray("new ") + name);
    }
    root.makeFolder("host" + pluginFolder);
}

/// Runs the steps of \a host with \a root as the root of the file system, silently.
bool runBelow(const test::Sandbox &root, const PluginPathStruct &host)
{
    return runWithOwnRoot(root.path(), [&host] {
        const test::LogCapture log;
        if (runHostSteps(host) != 0 || log.lines() != QStringList(test::installedLine(host))) {
            std::abort();
        }
    });
}

} // namespace

/// The files that Rhino and Revit get from the root of the file system. A program of its own: Qt
/// finds out once whether there is a /proc to place new files with, and a child with a root of its
/// own has none. Nothing here may copy a file before the child does.
class tst_HostStepsExtraFiles : public QObject {
    Q_OBJECT
private slots:
    void extraFilesComeFromTheRoot_data()
    {
        const test::Table<QString, bool, QStringList, QStringList> table("key", "folderWithDots",
                                                                         "present", "placed");
        const QStringList none;
        const QStringList ofRhino = {"/Drask.rhp", "/Drask_tb.rui"};
        const QString dll = "/DraskRevitUpload.dll";
        const QStringList ofRevit = {"../DraskRevitUpload.addin", dll};
        table.row("Rhino", "rhino", false, none, ofRhino);
        table.row("Rhino, with files that stay", "rhino", false, ofRhino, none);
        table.row("Revit, with the folder with dots", "revit", true, none, ofRevit);
        table.row("Revit, without it", "revit", false, none, QStringList(dll));
        table.row("Revit, with files that stay", "revit", true, ofRevit, none);
    }

    void extraFilesComeFromTheRoot()
    {
        QFETCH(QString, key);
        QFETCH(bool, folderWithDots);
        QFETCH(QStringList, present);
        QFETCH(QStringList, placed);
        const test::Sandbox root;
        const PluginPathStruct host = key == "rhino" ? rhino : revit;
        const QString target = "host" + host.pluginSubFolder;
        fillRoot(root, host.pluginSubFolder);
        if (folderWithDots) {
            root.makeFolder(target + "..");
        }
        for (const QString &name : present) {
            root.write(target + name, "older");
        }
        test::Tree expected = root.tree();
        for (const QString &name : placed) {
            expected[target + name] = "new " + name.section('/', -1).toUtf8();
        }

        if (!runBelow(root, host)) {
            QSKIP(noOwnRoot);
        }

        QCOMPARE(test::treeDifference(treeWithoutStores(root), expected), QString());
    }
};

DRASK_TEST(tst_HostStepsExtraFiles)
#include "tst_hoststeps_extrafiles.moc"
