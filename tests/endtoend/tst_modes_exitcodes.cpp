// SPDX-License-Identifier: MIT
#include "expectedpass.h"
#include "failinghosts.h"
#include "testprogram.h"

#include <QtTest>

using test::installedLine;
using test::linesOfConfig;
using test::linesOfLookUp;
using test::linesOfNewConfig;
using test::linesOfRun;
using test::linesOfUninstall;
using test::linesWithoutManifest;
using test::openFileLine;
using test::Run;

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

/// Makes an installed plug-in whose uninstallation fails with 2: a folder is listed.
void installUndeletable(const test::Workstation &workstation, const QString &folder)
{
    workstation.makeFolder(folder + "/a.py");
    workstation.write(folder + "/manager.cfg", "b");
    workstation.write(folder + "/uninstall.ini", workstation.path(folder + "/a.py\n").toUtf8());
}

/// What its uninstallation leaves of it.
void removeAllButUndeletable(test::Tree &tree, const QString &folder)
{
    tree.remove(folder + "/manager.cfg");
    tree.remove(folder + "/uninstall.ini");
}

/// A folder of the working directory that bears the name that key and folder of a host make
/// together, so that the uninstallation of all hosts has something to fail with.
QString undeletableByName(const test::Workstation &workstation, const QString &key,
                          const QString &folder)
{
    return "desk/(" + key + ") " + workstation.path(folder);
}

test::RunOptions atTheDesk(const test::Workstation &workstation)
{
    workstation.makeFolder("desk");
    test::RunOptions options;
    options.workingFolder = workstation.path("desk");
    return options;
}

/// A host to be reinstalled from the desk, where either half of it may fail.
class OneModo : public test::Workstation {
public:
    OneModo(bool uninstallFails, bool configFails)
        : failsToUninstall(uninstallFails)
        , failsToConfigure(configFails)
    {
        addPlugin("modo", {{"a.py", "new"}});
        addHost("modo", path("modo"));
        writeSettings();
        if (uninstallFails) {
            installUndeletable(*this, undeletableByName(*this, "modo", modoFolder));
        }
        if (configFails) {
            makeFolder(QString(modoFolder) + "/manager.cfg");
        }
    }

    QByteArray expectedErrors() const
    {
        return failsToConfigure
            ? "Could not write config file in: \n" + path(modoFolder).toUtf8() + "manager.cfg\n"
            : QByteArray();
    }

    test::Tree expectedTree() const
    {
        const QString place = QString(modoFolder) + '/';
        test::Tree expected = tree();
        removeAllButUndeletable(expected, undeletableByName(*this, "modo", modoFolder));
        expected["tool/version.txt"] = "2.3.10";
        test::addWithFolders(expected, place + "a.py", "new");
        expected[place + "uninstall.ini"] = path(place + "a.py\n").toUtf8();
        if (!failsToConfigure) {
            expected[place + "manager.cfg"] = test::configOf(*this);
        }
        return expected;
    }

    QStringList expectedLog(Run run, int exitCode) const
    {
        const QString named = "(modo) " + path(modoFolder);
        const QStringList pass = QStringList(openFileLine())
            + (failsToConfigure ? linesOfNewConfig() : linesOfConfig(run))
            + QStringList({installedLine("modo", path(modoFolder)),
                           QStringLiteral("Debug: %1").arg(exitCode)});
        return linesOfRun(RunMode::Reinstall, linesOfLookUp("modo", path("modo")),
                          failsToUninstall && run == Run::First ? linesOfUninstall(named, 2)
                                                                : linesWithoutManifest(named),
                          pass);
    }

private:
    bool failsToUninstall;
    bool failsToConfigure;
};

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
    const test::FailingHosts workstation(failures);
    const test::Tree expected = workstation.expectedTree();

    for (const Run run : {Run::First, Run::Second}) {
        VERIFY_RUN(workstation.run(), exitCode);
        VERIFY_LEFT(workstation, expected, workstation.expectedLog(run, exitCode),
                    workstation.expectedErrors());
    }
}

void tst_ModesExitCodes::failedUninstallationIsReturned()
{
    const test::Workstation workstation;
    installUndeletable(workstation, modoFolder);
    test::Tree expected = workstation.tree();
    removeAllButUndeletable(expected, modoFolder);
    const QString host = workstation.path("modo");
    const QString target = workstation.path(modoFolder);

    VERIFY_RUN(workstation.run({"uninstallPlugin", "(modo) " + host}), 2);
    VERIFY_LEFT(workstation, expected, linesOfLookUp("modo", host) + linesOfUninstall(target, 2),
                QByteArray());

    VERIFY_RUN(workstation.run({"uninstallPlugin", "(modo) " + host}), 0);
    VERIFY_LEFT(workstation, expected, linesOfLookUp("modo", host) + linesWithoutManifest(target),
                QByteArray());
}

void tst_ModesExitCodes::lastFailedUninstallationIsReturned()
{
    const test::Workstation workstation;
    const QString host = workstation.path("max");
    installUndeletable(workstation, "max/CHS/scripts/startup/drask");
    test::Tree expected = workstation.tree();
    removeAllButUndeletable(expected, "max/CHS/scripts/startup/drask");
    QStringList log = linesOfLookUp("3dsmax", host)
        + linesOfUninstall(host + "/CHS/scripts/startup/drask", 2);
    for (const char *language : {"DEU", "ENU", "FRA", "JPN", "KOR"}) {
        log += linesWithoutManifest(host + '/' + language + "/scripts/startup/drask");
    }

    const QStringList arguments{"uninstallPlugin", "(3dsmax) " + host};

    // The languages behind it have nothing to uninstall, which is no success to be returned.
    VERIFY_RUN(workstation.run(arguments), 2);
    VERIFY_LEFT(workstation, expected, log, QByteArray());

    VERIFY_RERUN(workstation, arguments, test::RunOptions(), 0);
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
    const test::RunOptions options = atTheDesk(workstation);
    QStringList removals;
    QStringList failed;
    for (const QString &key : {QString("modo"), QString("clarisse")}) {
        const QString folder = key == "modo" ? modoFolder : "clarisse/drask";
        const QString named = "(" + key + ") " + workstation.path(folder);
        if (failing.contains(key)) {
            failed << undeletableByName(workstation, key, folder);
            installUndeletable(workstation, failed.last());
            removals += linesOfUninstall(named, 2);
        } else {
            removals += linesWithoutManifest(named);
        }
    }
    test::Tree expected = workstation.tree();
    for (const QString &folder : failed) {
        removeAllButUndeletable(expected, folder);
    }

    VERIFY_RUN(workstation.run({"uninstallAllPlugins"}, options), exitCode);

    // Nothing behind the uninstallation runs: no installation, no exit code in the log.
    const QStringList lookUps = linesOfLookUp("modo", workstation.path("modo"))
        + linesOfLookUp("clarisse", workstation.path("clarisse"));
    VERIFY_LEFT(workstation, expected, linesOfRun(RunMode::UninstallAll, lookUps, removals, {}),
                QByteArray());

    VERIFY_RERUN(workstation, QStringList("uninstallAllPlugins"), options, 0);
}

void tst_ModesExitCodes::reinstallCarriesTheCodeOver_data()
{
    QTest::addColumn<bool>("uninstallFails");
    QTest::addColumn<bool>("configFails");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<int>("laterExitCode"); // a failed uninstallation leaves nothing to fail with

    QTest::newRow("neither half fails") << false << false << 0 << 0;
    QTest::newRow("only the uninstallation fails") << true << false << 2 << 0;
    QTest::newRow("only the installation fails") << false << true << 3 << 3;
    QTest::newRow("both halves fail: the installation decides") << true << true << 3 << 3;
}

void tst_ModesExitCodes::reinstallCarriesTheCodeOver()
{
    QFETCH(bool, uninstallFails);
    QFETCH(bool, configFails);
    QFETCH(int, exitCode);
    QFETCH(int, laterExitCode);
    const OneModo workstation(uninstallFails, configFails);
    const test::RunOptions options = atTheDesk(workstation);
    const test::Tree expected = workstation.expectedTree();
    const QByteArray errors = workstation.expectedErrors();
    const QStringList log = workstation.expectedLog(Run::First, exitCode);

    VERIFY_RUN(workstation.run({"reinstall"}, options), exitCode);
    VERIFY_LEFT(workstation, expected, log, errors);

    // Run from elsewhere, the program adds to its logs.
    VERIFY_RUN(workstation.run({"reinstall"}, options), laterExitCode);
    VERIFY_LEFT(workstation, expected, log + workstation.expectedLog(Run::Second, laterExitCode),
                errors + errors);
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

    const QStringList arguments{"ov3uninstall", workstation.path(list)};

    VERIFY_RUN(workstation.run(arguments), 0);
    VERIFY_LEFT(workstation, expected, QStringList("Debug: 0"), QByteArray());

    VERIFY_RERUN(workstation, arguments, test::RunOptions(), 0);
}

DRASK_TEST(tst_ModesExitCodes)
#include "tst_modes_exitcodes.moc"
