// SPDX-License-Identifier: MIT
#include "expectedlog.h"
#include "studio.h"

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

void tst_Install::emptyHostListWritesOnlyTheVersionFile()
{
    const test::Workstation workstation;
    workstation.writeSettings();
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";

    const test::RunResult result = workstation.run();

    VERIFY_RUN(result, 0);
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
    QCOMPARE(workstation.log(),
             QStringList({"Debug: settings loaded", "Debug: !!!settings local:  QVariant(Invalid)",
                          "Debug: version:  24", "Debug: 0"}));
    QCOMPARE(workstation.errors(), QByteArray());
}

void tst_Install::fifteenHostsAreServed()
{
#ifndef Q_OS_LINUX
    QSKIP("Rhino's registry has another form on this platform.");
#endif
    const test::Studio studio;
    const test::Tree before = studio.tree();

    const test::RunResult result = studio.run();

    VERIFY_RUN(result, 0);
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), studio.installed(before)), QString());
    QCOMPARE(studio.log(), studio.logOfFirstRun());
    QCOMPARE(studio.errors(), QByteArray());
}

void tst_Install::secondRunChangesNothing()
{
    const test::Studio studio;
    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    const test::Tree installed = studio.treeWithoutLogs();
    studio.ageHosts();

    const test::RunResult second = studio.run();

    VERIFY_RUN(second, 0);
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), installed), QString());
    QCOMPARE(studio.writtenFiles(), QStringList());
    QCOMPARE(studio.log(), studio.logOfLaterRun());
    QCOMPARE(studio.errors(), QByteArray());
}

void tst_Install::hostListedTwiceIsInstalledOnce()
{
    test::Workstation workstation;
    workstation.addPlugin("modo", {{"version.txt", "3"}});
    workstation.addSetting("plugins", "versionModo=3");
    workstation.addHost("modo", workstation.path("modo"));
    workstation.addHost("modo", workstation.path("modo"));
    workstation.writeSettings();

    const test::RunResult result = workstation.run();

    VERIFY_RUN(result, 0);
    const QString target = workstation.path("modo/Scripts/drask");
    QStringList expected{"Debug: open file:  \"\""};
    expected += test::linesOfNewConfig();
    expected << test::installedLine("modo", target) << test::alreadyInstalledLine(target)
             << "Debug: not necessary to write cfg"
             << "Debug: 0";
    QCOMPARE(QStringList(workstation.log().mid(7)), expected);
}

void tst_Install::hostWithoutItsPluginIsReportedAndTheRestServed()
{
    const test::Studio studio;
    studio.remove("tool/plugins/modo");

    const test::RunResult result = studio.run();

    VERIFY_RUN(result, 2);
    QCOMPARE(studio.errors(), "Could not copy file to: \n" + studio.target("modo").toUtf8() + '\n');
    QCOMPARE(test::readTree(studio.target("modo")).keys(), QStringList("manager.cfg"));
    QCOMPARE(studio.log().constLast(), QString("Debug: 2"));
    for (const test::StudioHost &host : test::Studio::hosts()) {
        const bool isServed = QFile::exists(studio.target(host.key, "uninstall.ini"));
        QCOMPARE(isServed, host.key != "modo");
    }
}

QTEST_GUILESS_MAIN(tst_Install)
#include "tst_install.moc"
