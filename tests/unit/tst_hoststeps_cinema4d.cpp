// SPDX-License-Identifier: MIT
#include "hoststeps.h"

#include "hostsetup.h"
#include "logcapture.h"
#include "ordinaryuser.h"
#include "sandbox.h"
#include "testprogram.h"

#include <QtTest>

class tst_HostStepsCinema4d : public QObject {
    Q_OBJECT

private slots:
    void legacyFilesGoAndTheNewestOfR21Stay_data();
    void legacyFilesGoAndTheNewestOfR21Stay();
    void otherKeysKeepTheirFiles_data();
    void otherKeysKeepTheirFiles();
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

PluginPathStruct cinema4d(const QString &folder)
{
    return test::hostAt(folder, "c4d", "/plugins/drask");
}

} // namespace

void tst_HostStepsCinema4d::legacyFilesGoAndTheNewestOfR21Stay_data()
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

void tst_HostStepsCinema4d::legacyFilesGoAndTheNewestOfR21Stay()
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

    removeLegacyCinema4dFiles(cinema4d(sandbox.path(folder)));

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

    removeLegacyCinema4dFiles(test::hostAt(sandbox.path("c4d"), key, "/plugins/drask"));

    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

void tst_HostStepsCinema4d::foldersInTheirPlaceStay()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("c4d/plugins/Grex.cdl");
    sandbox.makeFolder("c4d/plugins/drask/grex21.xlib");
    test::Tree expected = sandbox.tree();
    // Most files are missing, which stops nothing either.
    sandbox.write("c4d/plugins/grex21.xlib", "removed all the same");
    const test::LogCapture log;

    removeLegacyCinema4dFiles(cinema4d(sandbox.path("c4d")));

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
    BECOME_ORDINARY_USER_OR_SKIP();
    const test::LogCapture log;

    removeLegacyCinema4dFiles(cinema4d(sandbox.path("c4d")));

    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

DRASK_TEST(tst_HostStepsCinema4d)
#include "tst_hoststeps_cinema4d.moc"
