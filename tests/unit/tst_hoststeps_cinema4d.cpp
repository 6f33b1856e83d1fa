// SPDX-License-Identifier: MIT
#include "hoststeps.h"

#include "logcapture.h"
#include "ordinaryuser.h"
#include "sandbox.h"

#include <QtTest>

class tst_HostStepsCinema4d : public QObject {
    Q_OBJECT

private slots:
    void everyLegacyFileIsRemoved_data();
    void everyLegacyFileIsRemoved();
    void nothingElseIsRemoved();
    void newestFilesOfR21Stay_data();
    void newestFilesOfR21Stay();
    void otherKeysKeepTheirFiles_data();
    void otherKeysKeepTheirFiles();
    void missingFilesArePassedOver();
    void foldersInTheirPlaceStay();
    void writeProtectedFolderIsPassedOver();
};

namespace {

// clang-format off
const char *const legacyNames[] = {
    "Grex.cdl",     "Grex.cfl64",
    "Grex10.dylib",
    "Grex11.cdl",   "Grex11.cdl64", "Grex11.dylib",
    "Grex12.cdl",   "Grex12.cdl64", "Grex12.dylib",
    "Grex15.cdl64", "Grex15.dylib",
    "Grex18.cdl64", "Grex18.dylib",
    "grex20.xdl64", "grex20.xlib",
    "grex21.xdl64", "grex21.xlib",
};

/// Names near those above that are nobody's legacy.
const char *const otherNames[] = {
    "Grex.cdl64",   "Grex.dylib",   "Grex10.cdl",   "Grex10.cdl64", "Grex15.cdl", "Grex18.cdl",
    "Grex20.xlib",  "Grex21.xlib",  "grex.cdl",     "grex19.xlib",  "grex22.xlib", "grex21.dylib",
    "Grex.cdl.bak", "grex",
};
// clang-format on

const char *const newestNames[] = {"grex21.xlib", "grex21.xdl64"};

PluginPathStruct cinema4d(const test::Sandbox &sandbox, const QString &folder = "c4d",
                          const QString &key = "c4d")
{
    PluginPathStruct host;
    host.applicationName = key;
    host.path = sandbox.path(folder);
    host.pluginSubFolder = "/plugins/drask";
    return host;
}

/// Fills \a folder and the plug-in folder in it with all names, legacy or not.
void fill(const test::Sandbox &sandbox, const QString &folder)
{
    for (const QString &place : {QString("/"), QString("/plugins/"), QString("/plugins/drask/")}) {
        for (const char *name : legacyNames) {
            sandbox.write(folder + place + name, name);
        }
        for (const char *name : otherNames) {
            sandbox.write(folder + place + name, name);
        }
    }
}

} // namespace

void tst_HostStepsCinema4d::everyLegacyFileIsRemoved_data()
{
    QTest::addColumn<QString>("file");

    for (const char *name : legacyNames) {
        QTest::newRow(name) << QString("c4d/plugins/") + name;
    }
    for (const char *name : newestNames) {
        QTest::addRow("%s in the plug-in's own folder", name)
            << QString("c4d/plugins/drask/") + name;
    }
}

void tst_HostStepsCinema4d::everyLegacyFileIsRemoved()
{
    QFETCH(QString, file);
    const test::Sandbox sandbox;
    sandbox.makeFolder("c4d/plugins/drask");
    test::Tree expected = sandbox.tree();
    sandbox.write(file, "old");
    const test::LogCapture log;

    removeLegacyCinema4dFiles(cinema4d(sandbox));

    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_HostStepsCinema4d::nothingElseIsRemoved()
{
    const test::Sandbox sandbox;
    fill(sandbox, "c4d");
    test::Tree expected = sandbox.tree();
    for (const char *name : legacyNames) {
        expected.remove(QString("c4d/plugins/") + name);
    }
    for (const char *name : newestNames) {
        expected.remove(QString("c4d/plugins/drask/") + name);
    }

    removeLegacyCinema4dFiles(cinema4d(sandbox));

    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
}

void tst_HostStepsCinema4d::newestFilesOfR21Stay_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("stay");

    QTest::newRow("R21 in the host's folder") << QString("Cinema 4D R21") << true;
    QTest::newRow("R21 within a longer name") << QString("C4D_R210x") << true;
    QTest::newRow("R21 in a folder above") << QString("R21/c4d") << true;
    QTest::newRow("another release") << QString("Cinema 4D R20") << false;
    QTest::newRow("a small letter") << QString("Cinema 4D r21") << false;
    QTest::newRow("a blank within") << QString("Cinema 4D R 21") << false;
    QTest::newRow("the number alone") << QString("Cinema 4D 21") << false;
}

void tst_HostStepsCinema4d::newestFilesOfR21Stay()
{
    QFETCH(QString, folder);
    QFETCH(bool, stay);
    const test::Sandbox sandbox;
    fill(sandbox, folder);
    test::Tree expected = sandbox.tree();
    for (const char *name : legacyNames) {
        // Those in the host's common folder go in any case.
        expected.remove(folder + "/plugins/" + name);
    }
    for (const char *name : newestNames) {
        if (!stay) {
            expected.remove(folder + "/plugins/drask/" + name);
        }
    }

    removeLegacyCinema4dFiles(cinema4d(sandbox, folder));

    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
}

void tst_HostStepsCinema4d::otherKeysKeepTheirFiles_data()
{
    QTest::addColumn<QString>("key");

    for (const char *key : {"c4d14", "c4d21", "C4D", "maya", "blender", "unknown"}) {
        QTest::newRow(key) << QString(key);
    }
    QTest::newRow("an empty key") << QString("");
}

void tst_HostStepsCinema4d::otherKeysKeepTheirFiles()
{
    QFETCH(QString, key);
    const test::Sandbox sandbox;
    fill(sandbox, "c4d");
    const test::Tree before = sandbox.tree();

    removeLegacyCinema4dFiles(cinema4d(sandbox, "c4d", key));

    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

void tst_HostStepsCinema4d::missingFilesArePassedOver()
{
    const test::Sandbox sandbox;
    const test::LogCapture log;

    removeLegacyCinema4dFiles(cinema4d(sandbox));

    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(test::treeDifference(sandbox.tree(), {}), QString());
}

void tst_HostStepsCinema4d::foldersInTheirPlaceStay()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("c4d/plugins/Grex.cdl");
    sandbox.makeFolder("c4d/plugins/drask/grex21.xlib");
    test::Tree expected = sandbox.tree();
    sandbox.write("c4d/plugins/grex21.xlib", "removed all the same");
    const test::LogCapture log;

    removeLegacyCinema4dFiles(cinema4d(sandbox));

    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
}

void tst_HostStepsCinema4d::writeProtectedFolderIsPassedOver()
{
    const test::Sandbox sandbox;
    fill(sandbox, "c4d");
    const test::Tree before = sandbox.tree();
    const test::ReadOnly plugins(sandbox.path("c4d/plugins"));
    const test::ReadOnly drask(sandbox.path("c4d/plugins/drask"));
    const test::OrdinaryUser user;
    if (!user.isActive()) {
        QSKIP("The rights of root cannot be given up here");
    }
    const test::LogCapture log;

    removeLegacyCinema4dFiles(cinema4d(sandbox));

    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

QTEST_GUILESS_MAIN(tst_HostStepsCinema4d)
#include "tst_hoststeps_cinema4d.moc"
