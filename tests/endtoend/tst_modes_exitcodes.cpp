// SPDX-License-Identifier: MIT
#include "expectedlog.h"
#include "workstation.h"

#include <QtTest>

using test::linesOfLookUp;
using test::linesOfUninstall;
using test::linesWithoutManifest;

/// Every row of the exit-code table, and what the user is told.
class tst_ModesExitCodes : public QObject {
    Q_OBJECT

private slots:
    void lastFailureOfThePassDecides_data();
    void lastFailureOfThePassDecides();
    void failedUninstallationIsReturned();
    void lastFailedUninstallationIsReturned();
    void uninstallAllReturnsItsLastFailure_data();
    void uninstallAllReturnsItsLastFailure();
    void reinstallCarriesTheCodeOver_data();
    void reinstallCarriesTheCodeOver();
    void legacyRemovalAlwaysSucceeds_data();
    void legacyRemovalAlwaysSucceeds();
};

namespace {

const char modoFolder[] = "modo/Scripts/drask";

/// Adds a host that will fail as \a failure says, or not at all. Returns the message to the user.
QByteArray addHost(test::Workstation &workstation, const QString &failure, int number)
{
    const QString name = QStringLiteral("host %1").arg(number);
    const QByteArray folder = workstation.path(name).toUtf8();
    workstation.makeFolder(name);
    if (failure == "copy") {
        workstation.addHost("clarisse", folder);
        return "Could not copy file to: \n" + folder + "/drask\n";
    }
    if (failure == "config") {
        workstation.makeFolder(name + "/Scripts/drask/manager.cfg");
        workstation.addHost("modo", folder);
        return "Could not write config file in: \n" + folder + "/Scripts/draskmanager.cfg\n";
    }
    if (failure == "maya") {
        workstation.addHost("maya", folder);
        return "Could not copy userSetup.py file to: " + folder + "/scripts/drask\n";
    }
    if (failure == "unknown") {
        workstation.addHost("nuke", folder);
        return "Could not copy file to: \n" + folder + "\n";
    }
    workstation.addHost("modo", folder);
    return QByteArray();
}

/// Makes an installed plug-in whose uninstallation fails with 2: a folder is listed.
void installUndeletable(const test::Workstation &workstation, const QString &folder)
{
    workstation.makeFolder(folder + "/a.py");
    workstation.write(folder + "/manager.cfg", "b");
    workstation.write(folder + "/uninstall.ini", workstation.path(folder + "/a.py\n").toUtf8());
}

/// Makes a folder of the working directory \a desk bear the name that key and folder of a host make
/// together, so that the uninstallation of all hosts has something to fail with.
void installUndeletableByName(const test::Workstation &workstation, const QString &key,
                              const QString &folder)
{
    installUndeletable(workstation, "desk/(" + key + ") " + workstation.path(folder));
}

test::RunOptions atTheDesk(const test::Workstation &workstation)
{
    workstation.makeFolder("desk");
    test::RunOptions options;
    options.workingFolder = workstation.path("desk");
    return options;
}

} // namespace

void tst_ModesExitCodes::lastFailureOfThePassDecides_data()
{
    QTest::addColumn<QStringList>("failures");
    QTest::addColumn<int>("exitCode");

    QTest::newRow("no host") << QStringList() << 0;
    QTest::newRow("all is well") << QStringList({"none", "none"}) << 0;
    QTest::newRow("a copy") << QStringList("copy") << 2;
    QTest::newRow("an unknown host") << QStringList("unknown") << 2;
    QTest::newRow("a configuration") << QStringList("config") << 3;
    QTest::newRow("a Maya script") << QStringList("maya") << 3;
    QTest::newRow("a copy, then a configuration") << QStringList({"copy", "config"}) << 3;
    QTest::newRow("a configuration, then a copy") << QStringList({"config", "copy"}) << 2;
    QTest::newRow("a Maya script, then an unknown host") << QStringList({"maya", "unknown"}) << 2;
    QTest::newRow("a failure, then none") << QStringList({"config", "none"}) << 3;
}

void tst_ModesExitCodes::lastFailureOfThePassDecides()
{
    QFETCH(QStringList, failures);
    QFETCH(int, exitCode);
    test::Workstation workstation;
    workstation.addPlugin("modo", {});
    workstation.addPlugin("maya", {});
    QByteArray messages;
    int number = 0;
    for (const QString &failure : failures) {
        messages += addHost(workstation, failure, number++);
    }
    workstation.writeSettings();

    VERIFY_RUN(workstation.run(), exitCode);
    const test::Tree once = workstation.treeWithoutLogs();
    QCOMPARE(workstation.errors(), messages);
    QCOMPARE(workstation.log().last(), QStringLiteral("Debug: %1").arg(exitCode));

    VERIFY_RUN(workstation.run(), exitCode);
    QCOMPARE(workstation.errors(), messages);
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), once), QString());
}

void tst_ModesExitCodes::failedUninstallationIsReturned()
{
    const test::Workstation workstation;
    installUndeletable(workstation, modoFolder);
    test::Tree expected = workstation.tree();
    expected.remove("modo/Scripts/drask/manager.cfg");
    expected.remove("modo/Scripts/drask/uninstall.ini");
    const QString host = workstation.path("modo");

    VERIFY_RUN(workstation.run({"uninstallPlugin", "(modo) " + host}), 2);

    QCOMPARE(workstation.log(),
             linesOfLookUp("modo", host) + linesOfUninstall(workstation.path(modoFolder), 2));
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
    QCOMPARE(workstation.errors(), QByteArray());
}

void tst_ModesExitCodes::lastFailedUninstallationIsReturned()
{
    const test::Workstation workstation;
    installUndeletable(workstation, "max/CHS/scripts/startup/drask");

    // The languages behind it have nothing to uninstall, which is no success to be returned.
    VERIFY_RUN(workstation.run({"uninstallPlugin", "(3dsmax) " + workstation.path("max")}), 2);

    QCOMPARE(workstation.log().last(), QString("Debug: uninstallPlugin  0"));
}

void tst_ModesExitCodes::uninstallAllReturnsItsLastFailure_data()
{
    QTest::addColumn<QStringList>("failing");
    QTest::addColumn<int>("exitCode");

    QTest::newRow("none fails") << QStringList() << 0;
    QTest::newRow("the first fails") << QStringList("modo") << 2;
    QTest::newRow("the last fails") << QStringList("clarisse") << 2;
    QTest::newRow("both fail") << QStringList({"modo", "clarisse"}) << 2;
}

void tst_ModesExitCodes::uninstallAllReturnsItsLastFailure()
{
    QFETCH(QStringList, failing);
    QFETCH(int, exitCode);
    test::Workstation workstation;
    workstation.addPlugin("modo", {{"a.py", "a"}});
    workstation.addHost("modo", workstation.path("modo"));
    workstation.addHost("clarisse", workstation.path("clarisse"));
    workstation.writeSettings();
    QStringList log = QStringList("Debug: settings loaded")
        + linesOfLookUp("modo", workstation.path("modo"))
        + linesOfLookUp("clarisse", workstation.path("clarisse"));
    for (const QString &key : {QString("modo"), QString("clarisse")}) {
        const QString folder = key == "modo" ? modoFolder : "clarisse/drask";
        const QString named = "(" + key + ") " + workstation.path(folder);
        if (failing.contains(key)) {
            installUndeletableByName(workstation, key, folder);
            log += linesOfUninstall(named, 2);
        } else {
            log += linesWithoutManifest(named);
        }
    }

    VERIFY_RUN(workstation.run({"uninstallAllPlugins"}, atTheDesk(workstation)), exitCode);

    // Nothing behind the uninstallation runs: no installation, no exit code in the log.
    QCOMPARE(workstation.log(), log);
    QCOMPARE(workstation.errors(), QByteArray());
    QVERIFY(!workstation.exists("modo"));
    QVERIFY(!workstation.exists("tool/version.txt"));
}

void tst_ModesExitCodes::reinstallCarriesTheCodeOver_data()
{
    QTest::addColumn<bool>("uninstallFails");
    QTest::addColumn<bool>("configFails");
    QTest::addColumn<int>("exitCode");

    QTest::newRow("neither half fails") << false << false << 0;
    QTest::newRow("only the uninstallation fails") << true << false << 2;
    QTest::newRow("only the installation fails") << false << true << 3;
    QTest::newRow("both halves fail: the installation decides") << true << true << 3;
}

void tst_ModesExitCodes::reinstallCarriesTheCodeOver()
{
    QFETCH(bool, uninstallFails);
    QFETCH(bool, configFails);
    QFETCH(int, exitCode);
    test::Workstation workstation;
    workstation.addPlugin("modo", {{"a.py", "new"}});
    workstation.addHost("modo", workstation.path("modo"));
    workstation.writeSettings();
    if (uninstallFails) {
        installUndeletableByName(workstation, "modo", modoFolder);
    }
    if (configFails) {
        workstation.makeFolder(QString(modoFolder) + "/manager.cfg");
    }

    VERIFY_RUN(workstation.run({"reinstall"}, atTheDesk(workstation)), exitCode);

    QCOMPARE(workstation.read(QString(modoFolder) + "/a.py"), QByteArray("new"));
    QCOMPARE(workstation.log().last(), QStringLiteral("Debug: %1").arg(exitCode));
    QCOMPARE(workstation.errors().isEmpty(), !configFails);
}

void tst_ModesExitCodes::legacyRemovalAlwaysSucceeds_data()
{
    QTest::addColumn<QString>("list"); // in the sandbox

    QTest::newRow("a list that names a plug-in") << QString("list.txt");
    QTest::newRow("no such list") << QString("missing.txt");
    QTest::newRow("a folder in the list's place") << QString("modo");
}

void tst_ModesExitCodes::legacyRemovalAlwaysSucceeds()
{
    QFETCH(QString, list);
    test::Workstation workstation;
    workstation.addPlugin("modo", {{"a.py", "a"}});
    workstation.addHost("modo", workstation.path("modo"));
    workstation.writeSettings();
    workstation.write("list.txt", "path=" + workstation.path("modo/modo.bin").toUtf8() + "\n");
    workstation.write("modo/drask/logo.jpg", "legacy");
    workstation.makeFolder("modo/drask/manager.cfg");
    test::Tree expected = workstation.tree();
    if (list == "list.txt") {
        expected.remove("modo/drask/logo.jpg");
    }

    VERIFY_RUN(workstation.run({"ov3uninstall", workstation.path(list)}), 0);

    QCOMPARE(workstation.log(), QStringList("Debug: 0"));
    QCOMPARE(workstation.errors(), QByteArray());
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
}

QTEST_GUILESS_MAIN(tst_ModesExitCodes)
#include "tst_modes_exitcodes.moc"
