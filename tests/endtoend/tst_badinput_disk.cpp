// SPDX-License-Identifier: MIT
#include "expectedpass.h"
#include "smalldisk.h"
#include "testprogram.h"
#include "workstation.h"

#include <QtTest>

/// Runs that meet a full disk.
class tst_BadInputDisk : public QObject {
    Q_OBJECT

private slots:
    void fullHostDiskIsServedOnceThereIsRoom();
    void fileTooLargeForTheHostDiskIsLeftOut();
    void hostDiskWithoutRoomForNamesIsReported();
    void fullToolDiskLosesTheLogAlone();
};

namespace {

const char noDisk[] = "Only root may mount a disk, and only on Linux.";

const char target[] = "modo/Scripts/drask";

test::Tree plugin()
{
    return {{"version.txt", "7"}, {"a.py", "import sys\n"}, {"sub/b.py", "pass\n"}};
}

/// A workstation with one host.
class OneHost : public test::Workstation {
public:
    OneHost()
    {
        makeFolder("modo");
        addPlugin("modo", plugin());
        addHost("modo", path("modo"));
        addSetting("plugins", "versionModo=7");
        writeSettings();
    }

    QString shipped(const QString &file = QString()) const
    {
        return tool("plugins/modo" + (file.isEmpty() ? file : '/' + file));
    }

    QString placed(const QString &file = QString()) const
    {
        return path(target + (file.isEmpty() ? file : '/' + file));
    }

    /// The tree that a run makes of \a before where there is room for all but the files \a missing.
    test::Tree served(test::Tree before, const QStringList &missing = {}) const
    {
        before["tool/version.txt"] = "2.3.10";
        test::put(before, target, plugin());
        test::put(before, target,
                  {{"manager.cfg", test::configOf(*this)},
                   {"uninstall.ini", test::manifestOf(shipped(), placed(), missing)}});
        return before;
    }

    /// The lines of files that did not fit, in the order of the copy.
    QStringList linesOfMissing(const QStringList &missing) const
    {
        QStringList lines;
        for (const QString &file : missing) {
            lines << test::notCopiedLine(shipped(file), placed(file));
        }
        return lines;
    }

    QStringList logOfCopy(const QStringList &troubles, const QStringList &configLines,
                          int code = 0) const
    {
        return test::logOfPass(test::linesOfLookUp("modo", path("modo")),
                               test::linesOfCopy() + troubles + configLines
                                   + test::linesOfInstalled("modo", placed()),
                               code);
    }

    QStringList logOfInstalled() const
    {
        return test::logOfPass(test::linesOfLookUp("modo", path("modo")),
                               test::linesOfAlreadyInstalled(placed()) + test::linesOfKeptConfig(),
                               0);
    }

    QStringList logOfReinstall() const
    {
        return QStringList("Debug: forceReinstall")
            + test::logOfPass(test::linesOfLookUp("modo", path("modo"))
                                  + test::linesWithoutManifest("(modo) " + placed()),
                              test::linesOfCopy() + test::linesOfKeptConfig()
                                  + test::linesOfInstalled("modo", placed()),
                              0);
    }
};

} // namespace

void tst_BadInputDisk::fullHostDiskIsServedOnceThereIsRoom()
{
    const OneHost workstation;
    const test::SmallDisk disk(workstation.path("modo"), "size=64k");
    if (!disk.isMounted()) {
        QSKIP(noDisk);
    }
    const test::Tree complete = workstation.served(workstation.tree());
    disk.fill();
    test::Tree empty = complete;
    empty["modo/filler"] = workstation.read("modo/filler");
    empty.remove(QString(target) + "/manager.cfg");
    for (const char *file : {"version.txt", "a.py", "sub/b.py", "uninstall.ini"}) {
        empty[QString(target) + '/' + file] = "";
    }
    const QStringList troubles = workstation.linesOfMissing(
        test::filesInCopyOrder(workstation.shipped()));

    const test::RunResult full = workstation.run();

    // Files that could not be copied are no failure; they stay behind empty. The configuration that
    // could not be written is one.
    VERIFY_RUN(full, 3);
    VERIFY_LEFT(workstation, empty, workstation.logOfCopy(troubles, test::linesOfNewConfig(), 3),
                test::configMessage(workstation.placed()));

    disk.makeRoom();
    const test::RunResult roomy = workstation.run();

    VERIFY_RUN(roomy, 0);
    VERIFY_LEFT(workstation, complete, workstation.logOfCopy({}, test::linesOfNewConfig()),
                QByteArray());

    const test::RunResult again = workstation.run();

    VERIFY_RUN(again, 0);
    VERIFY_LEFT(workstation, complete, workstation.logOfInstalled(), QByteArray());
}

void tst_BadInputDisk::fileTooLargeForTheHostDiskIsLeftOut()
{
    const OneHost workstation;
    const QByteArray large(200000, 'x');
    const QStringList missing("sub/large.bin");
    workstation.addPlugin("modo", {{missing.first(), large}});
    const test::SmallDisk disk(workstation.path("modo"), "size=64k");
    if (!disk.isMounted()) {
        QSKIP(noDisk);
    }
    test::Tree complete = workstation.served(workstation.tree());
    test::Tree incomplete = workstation.served(workstation.tree(), missing);
    test::put(complete, target, {{missing.first(), large}});
    test::put(incomplete, target, {{missing.first(), ""}});

    const test::RunResult small = workstation.run();

    VERIFY_RUN(small, 0);
    VERIFY_LEFT(
        workstation, incomplete,
        workstation.logOfCopy(workstation.linesOfMissing(missing), test::linesOfNewConfig()),
        QByteArray());

    disk.change("size=1m");
    const test::RunResult later = workstation.run();

    // The version file arrived, so only a reinstallation brings what is missing.
    VERIFY_RUN(later, 0);
    VERIFY_LEFT(workstation, incomplete, workstation.logOfInstalled(), QByteArray());

    for (int run = 0; run < 2; ++run) {
        const test::RunResult again = workstation.run({"reinstall"});

        VERIFY_RUN(again, 0);
        VERIFY_LEFT(workstation, complete, workstation.logOfReinstall(), QByteArray());
    }
}

void tst_BadInputDisk::hostDiskWithoutRoomForNamesIsReported()
{
    const OneHost workstation;
    const test::SmallDisk disk(workstation.path("modo"), "size=64k,nr_inodes=2");
    if (!disk.isMounted()) {
        QSKIP(noDisk);
    }
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";
    expected["modo/Scripts/"] = "";
    const QString folder = workstation.placed();
    const QStringList log = workstation.logOfCopy({test::manifestNotOpenedLine(folder)},
                                                  test::linesOfNewConfig(), 3);

    for (int run = 0; run < 2; ++run) {
        const test::RunResult result = workstation.run();

        VERIFY_RUN(result, 3);
        VERIFY_LEFT(workstation, expected, log,
                    test::copyMessage(folder) + test::configMessage(folder));
    }
}

void tst_BadInputDisk::fullToolDiskLosesTheLogAlone()
{
    const OneHost workstation;
    const test::Tree tool = test::readTree(workstation.tool());
    const test::SmallDisk disk(workstation.tool(), "size=64m");
    if (!disk.isMounted()) {
        QSKIP(noDisk);
    }
    for (auto file = tool.cbegin(); file != tool.cend(); ++file) {
        if (!file.key().endsWith('/')) {
            workstation.write("tool/" + file.key(), file.value());
        }
    }
    QVERIFY(QFile::setPermissions(workstation.tool("drask-installer"),
                                  QFile::ReadOwner | QFile::ExeOwner));
    disk.fill();

    test::Tree expected = workstation.served(workstation.tree());
    expected.remove("tool/version.txt");

    for (int run = 0; run < 2; ++run) {
        const test::RunResult result = workstation.run();

        VERIFY_RUN(result, 0);
        VERIFY_LEFT(workstation, expected, QStringList(), QByteArray());
        QVERIFY(workstation.exists("tool/plugin.log"));
    }
}

DRASK_TEST(tst_BadInputDisk)
#include "tst_badinput_disk.moc"
