// SPDX-License-Identifier: MIT
#include "hoststeps.h"

#include "hostsetup.h"
#include "loggedsandbox.h"
#include "unitcase.h"

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

class tst_HostStepsCinema4d : public QObject {
    Q_OBJECT
private slots:
    void legacyFilesGoAndTheNewestOfR21Stay_data()
    {
        const test::Table<QString, bool> table("folder", "stay");
        table.row("R21 in the host's folder", "Cinema 4D R21", true);
        table.row("R21 within a longer name", "C4D_R210x", true);
        table.row("R21 in a folder above", "R21/c4d", true);
        table.row("another release", "Cinema 4D R20", false);
        table.row("a small letter", "Cinema 4D r21", false);
        table.row("a blank within", "Cinema 4D R 21", false);
        table.row("the number alone", "Cinema 4D 21", false);
    }

    void legacyFilesGoAndTheNewestOfR21Stay()
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

        VERIFY_TREE(sandbox, expected);
    }

    void otherKeysKeepTheirFiles_data()
    {
        const test::Table<QString> table("key");
        for (const char *key : {"c4d14", "c4d21", "C4D", "maya", "blender", "unknown"}) {
            table.row(key, QString(key));
        }
        table.row("an empty key", "");
    }

    void otherKeysKeepTheirFiles()
    {
        QFETCH(QString, key);
        const test::Sandbox sandbox;
        fill(sandbox, "c4d");
        const test::Tree before = sandbox.tree();
        removeLegacyCinema4dFiles(test::hostAt(sandbox.path("c4d"), key, "/plugins/drask"));
        VERIFY_TREE(sandbox, before);
    }

    void foldersInTheirPlaceStay()
    {
        const test::LoggedSandbox sandbox;
        sandbox.makeFolder("c4d/plugins/Grex.cdl");
        sandbox.makeFolder("c4d/plugins/drask/grex21.xlib");
        test::Tree expected = sandbox.tree();
        // Most files are missing, which stops nothing either.
        sandbox.write("c4d/plugins/grex21.xlib", "removed all the same");

        removeLegacyCinema4dFiles(cinema4d(sandbox.path("c4d")));

        QCOMPARE(sandbox.log.lines(), QStringList());
        VERIFY_TREE(sandbox, expected);
    }
};

DRASK_TEST(tst_HostStepsCinema4d)
#include "tst_hoststeps_cinema4d.moc"
