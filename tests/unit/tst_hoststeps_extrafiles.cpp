// SPDX-License-Identifier: MIT
#include "hoststeps.h"

#include "logcapture.h"
#include "sandbox.h"

#include <QtTest>

#ifdef Q_OS_LINUX
#include <sched.h>
#endif
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>

/// The files that Rhino and Revit get from the root of the file system. A program of its own: Qt
/// finds out once whether there is a /proc to place new files with, and a child with a root of its
/// own has none. Nothing here may copy a file before the child does.
class tst_HostStepsExtraFiles : public QObject {
    Q_OBJECT

private slots:
    void rhinoExtraFilesComeFromTheRoot();
    void revitExtraFilesComeFromTheRoot();
    void revitManifestNeedsTheFolderWithDots();
    void presentExtraFilesStay_data();
    void presentExtraFilesStay();
};

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

PluginPathStruct rhino()
{
    PluginPathStruct host;
    host.applicationName = "rhino";
    host.path = "/host";
    host.pluginSubFolder = "/Plug-ins/Drask";
    return host;
}

PluginPathStruct revit()
{
    PluginPathStruct host;
    host.applicationName = "revit";
    host.path = "/host";
    host.pluginSubFolder = "/Plugins/drask";
    return host;
}

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
        const QString installed = QStringLiteral("Debug: \"%1 plugin installed in: \" \"%2\"")
                                      .arg(host.applicationName, host.targetFolder());
        if (runHostSteps(host) != 0 || log.lines() != QStringList(installed)) {
            std::abort();
        }
    });
}

} // namespace

void tst_HostStepsExtraFiles::rhinoExtraFilesComeFromTheRoot()
{
    const test::Sandbox root;
    const PluginPathStruct host = rhino();
    fillRoot(root, host.pluginSubFolder);
    test::Tree expected = root.tree();
    expected["host/Plug-ins/Drask/Drask.rhp"] = "new Drask.rhp";
    expected["host/Plug-ins/Drask/Drask_tb.rui"] = "new Drask_tb.rui";

    if (!runBelow(root, host)) {
        QSKIP(noOwnRoot);
    }

    QCOMPARE(test::treeDifference(treeWithoutStores(root), expected), QString());
}

void tst_HostStepsExtraFiles::revitExtraFilesComeFromTheRoot()
{
    const test::Sandbox root;
    const PluginPathStruct host = revit();
    fillRoot(root, host.pluginSubFolder);
    root.makeFolder("host/Plugins/drask..");
    test::Tree expected = root.tree();
    expected["host/Plugins/drask../DraskRevitUpload.addin"] = "new DraskRevitUpload.addin";
    expected["host/Plugins/drask/DraskRevitUpload.dll"] = "new DraskRevitUpload.dll";

    if (!runBelow(root, host)) {
        QSKIP(noOwnRoot);
    }

    QCOMPARE(test::treeDifference(treeWithoutStores(root), expected), QString());
}

void tst_HostStepsExtraFiles::revitManifestNeedsTheFolderWithDots()
{
    const test::Sandbox root;
    const PluginPathStruct host = revit();
    fillRoot(root, host.pluginSubFolder);
    test::Tree expected = root.tree();
    expected["host/Plugins/drask/DraskRevitUpload.dll"] = "new DraskRevitUpload.dll";

    if (!runBelow(root, host)) {
        QSKIP(noOwnRoot);
    }

    QCOMPARE(test::treeDifference(treeWithoutStores(root), expected), QString());
}

void tst_HostStepsExtraFiles::presentExtraFilesStay_data()
{
    QTest::addColumn<bool>("isRhino");
    QTest::addColumn<QStringList>("present");

    QTest::newRow("Rhino") << true << QStringList({"/Drask.rhp", "/Drask_tb.rui"});
    QTest::newRow("Revit") << false
                           << QStringList({"../DraskRevitUpload.addin", "/DraskRevitUpload.dll"});
}

void tst_HostStepsExtraFiles::presentExtraFilesStay()
{
    QFETCH(bool, isRhino);
    QFETCH(QStringList, present);
    const test::Sandbox root;
    const PluginPathStruct host = isRhino ? rhino() : revit();
    fillRoot(root, host.pluginSubFolder);
    for (const QString &name : present) {
        root.write("host" + host.pluginSubFolder + name, "older");
    }
    const test::Tree before = root.tree();

    if (!runBelow(root, host)) {
        QSKIP(noOwnRoot);
    }

    QCOMPARE(test::treeDifference(treeWithoutStores(root), before), QString());
}

QTEST_GUILESS_MAIN(tst_HostStepsExtraFiles)
#include "tst_hoststeps_extrafiles.moc"
