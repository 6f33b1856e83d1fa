// SPDX-License-Identifier: MIT
#include "expectedlog.h"
#include "studio.h"
#include "testprogram.h"

#include <QtTest>

/// The first and the second installation of everything that an artist has.
class tst_Install : public QObject {
    Q_OBJECT

private slots:
    void emptyHostListWritesOnlyTheVersionFile();
    void fifteenHostsAreServed();
    void secondRunChangesNothing();
    void hostListedTwiceIsInstalledOnce();
    void hostWithoutItsPluginIsReportedAndTheRestServed();
};

namespace {

/// The log of an install that lists Modo in \a folder twice, where it does \a first and then finds
/// that there is nothing left to do.
QStringList logWithModoListedTwice(const QString &folder, const QStringList &first)
{
    QStringList log{"Debug: settings loaded"};
    log += test::linesOfLookUp("modo", folder) + test::linesOfLookUp("modo", folder);
    log << "Debug: !!!settings local:  QVariant(Invalid)"
        << "Debug: version:  24";
    return log << first << test::alreadyInstalledLine(folder + "/Scripts/drask")
               << "Debug: not necessary to write cfg"
               << "Debug: 0";
}

} // namespace

void tst_Install::emptyHostListWritesOnlyTheVersionFile()
{
    const test::Workstation workstation;
    workstation.writeSettings();
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";
    const QStringList log{"Debug: settings loaded", "Debug: !!!settings local:  QVariant(Invalid)",
                          "Debug: version:  24", "Debug: 0"};

    for (int run = 0; run < 2; ++run) {
        VERIFY_RUN(workstation.run(), 0);
        VERIFY_LEFT(workstation, expected, log, QByteArray());
    }
}

void tst_Install::fifteenHostsAreServed()
{
#ifndef Q_OS_LINUX
    QSKIP("Rhino's registry has another form on this platform.");
#endif
    const test::Studio studio;
    const test::Tree expected = studio.installed(studio.tree());

    const test::RunResult result = studio.run();

    VERIFY_RUN(result, 0);
    VERIFY_LEFT(studio, expected, studio.logOfFirstRun(), QByteArray());
    VERIFY_LATER_RUN(studio, expected);
}

void tst_Install::secondRunChangesNothing()
{
    const test::Studio studio;
    const test::Tree before = studio.tree();
    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    const test::Tree installed = studio.installed(before);
    VERIFY_LEFT(studio, installed, studio.logOfFirstRun(), QByteArray());
    studio.ageHosts();

    const test::RunResult second = studio.run();

    VERIFY_RUN(second, 0);
    VERIFY_LEFT(studio, installed, studio.logOfLaterRun(), QByteArray());
    QCOMPARE(studio.writtenFiles(), QStringList());
}

void tst_Install::hostListedTwiceIsInstalledOnce()
{
    test::Workstation workstation;
    workstation.addPlugin("modo", {{"version.txt", "3"}});
    workstation.addSetting("plugins", "versionModo=3");
    const QString folder = workstation.path("modo");
    workstation.addHost("modo", folder);
    workstation.addHost("modo", folder);
    workstation.writeSettings();
    const QString target = folder + "/Scripts/drask";
    test::Tree expected = workstation.tree();
    expected["modo/"] = "";
    expected["modo/Scripts/"] = "";
    expected["modo/Scripts/drask/"] = "";
    expected["modo/Scripts/drask/version.txt"] = "3";
    expected["modo/Scripts/drask/uninstall.ini"] = target.toUtf8() + "/version.txt\n";
    expected["modo/Scripts/drask/manager.cfg"] = "\n\n" + workstation.tool("DraskDrop").toUtf8()
        + "\n2.3.10\n\n1\n1";
    expected["tool/version.txt"] = "2.3.10";

    VERIFY_RUN(workstation.run(), 0);
    const QStringList copied = QStringList("Debug: open file:  \"\"") + test::linesOfNewConfig()
        + QStringList(test::installedLine("modo", target));
    VERIFY_LEFT(workstation, expected, logWithModoListedTwice(folder, copied), QByteArray());

    VERIFY_RUN(workstation.run(), 0);
    const QStringList found{test::alreadyInstalledLine(target),
                            "Debug: not necessary to write cfg"};
    VERIFY_LEFT(workstation, expected, logWithModoListedTwice(folder, found), QByteArray());
}

void tst_Install::hostWithoutItsPluginIsReportedAndTheRestServed()
{
    using test::Served;
    const test::Studio studio;
    studio.remove("tool/plugins/modo");
    const test::Tree before = studio.tree();
    const QByteArray errors = "Could not copy file to: \n" + studio.target("modo").toUtf8() + '\n';

    VERIFY_RUN(studio.run(), 2);
    test::Tree expected = studio.installed(before);
    expected.remove(test::Studio::host("modo").targets().first() + "/uninstall.ini");
    VERIFY_LEFT(studio, expected,
                studio.logOfInstall({Served::Copied, Served::ConfigMade},
                                    {{"modo", {Served::NotShipped, Served::ConfigMade}}}, 2),
                errors);

    VERIFY_RUN(studio.run(), 2);
    VERIFY_LEFT(studio, expected,
                studio.logOfInstall({Served::FoundInstalled, Served::ConfigKept},
                                    {{"modo", {Served::NotShipped, Served::ConfigKept}}}, 2),
                errors);
}

DRASK_TEST(tst_Install)
#include "tst_install.moc"
