// SPDX-License-Identifier: MIT
#include "copysandbox.h"
#include "unitcase.h"

namespace {

const char firstManifest[] = "Debug: open file:  \"\"";

QString couldNotRemove(const QString &file)
{
    return "Debug: Could not remove file \"" + file + '"';
}

QString couldNotCopy(const QString &source, const QString &target)
{
    return "Debug: Could not copy file  \"" + source + "\"  to  \"" + target + '"';
}

QString rightsProblem(const QString &file)
{
    return "Debug: exist check failed - rights problem \"" + file + '"';
}

/// Makes \a name a file of the host that an ordinary user may write, but not replace once the
/// folder is read-only.
void giveWritableFile(const test::Sandbox &sandbox, const QString &name)
{
    sandbox.write(name, "old");
    test::giveToOrdinaryUser(sandbox.path(name));
}

} // namespace

/// What a copy that cannot do its work leaves, says and returns.
class tst_FolderCopyFailures : public QObject {
    Q_OBJECT
private slots:
    void missingSourceTouchesNothing_data()
    {
        const test::Table<QString> table("source");
        table.row("nothing of that name", "nowhere");
        table.row("a file", "plugin/a.py");
        table.row("a dangling link", "gone");
        table.row("a name too long", QString(256, 'x'));
    }

    void missingSourceTouchesNothing()
    {
        QFETCH(QString, source);
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        sandbox.makeLink("/nowhere/at/all", "gone");
        sandbox.write("host/uninstall.ini", "list\n");
        const test::Tree before = sandbox.tree();

        QCOMPARE(sandbox.copy(source, "host"), 4);
        QCOMPARE(sandbox.copy(source, "new/folder"), 4);
        // So does a call for a subfolder.
        const QString host = sandbox.path("host");
        QCOMPARE(sandbox.installer().copyFolder(sandbox.path(source), host, true), 4);
        VERIFY_TREE(sandbox, before);
        QCOMPARE(sandbox.log(), QStringList());
    }

    void emptySourceNameIsNotTheWorkingFolder()
    {
        test::CopySandbox sandbox;
        sandbox.write("home/private.txt", "mine");
        const test::Tree before = sandbox.tree();
        const test::WorkingFolder workingFolder(sandbox.path("home"));
        QCOMPARE(sandbox.installer().copyFolder(QString(), sandbox.path("host"), false), 4);
        VERIFY_TREE(sandbox, before);
        QCOMPARE(sandbox.log(), QStringList());
    }

    void manifestThatCannotBeOpenedStopsTheCopy_data()
    {
        const test::Table<QString, QString> table("obstacle", "target");
        const QString tooLong = "host/" + QString(256, 'x');
        table.row("a folder in its place", "host/uninstall.ini/own.txt", "host");
        table.row("a file in the target's place", "host", "host");
        table.row("a file above the target", "host", "host/scripts/drask");
        table.row("a target whose name is too long", "host/own.txt", tooLong);
    }

    void manifestThatCannotBeOpenedStopsTheCopy()
    {
        QFETCH(QString, obstacle);
        QFETCH(QString, target);
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        sandbox.write(obstacle, "mine");
        const test::Tree before = sandbox.tree();

        QCOMPARE(sandbox.copy("plugin", target), 1);
        VERIFY_TREE(sandbox, before);
        VERIFY_LINES(sandbox.log(), firstManifest,
                     "Debug: cannot open  \"" + target + "/uninstall.ini\"  for writing");
    }

    void manifestThatCannotBeWrittenIsAFailure_data()
    {
        const test::Table<QString, QString, QString, QStringList, bool> table(
            "source", "file", "subFolder", "listed", "isEndReached");
        const QString shelf = "prefs/shelves/shelf_DraskGrex.mel";
        table.row("a folder of files", "plugin", "a.py", "", QStringList("a.py"), true);
        table.row("a file of a subfolder", "plugin", "sub/a.py", "sub", QStringList("sub/a.py"),
                  false);
        table.row("a file beside a subfolder", "plugin", "a.py", "sub", QStringList("a.py"), true);
        table.row("the shelf of Maya", "plugins/maya", "drask_uninstall.py", "sub",
                  QStringList({shelf, "sub/" + shelf}), false);
    }

    void manifestThatCannotBeWrittenIsAFailure()
    {
        QFETCH(QString, source);
        QFETCH(QString, file);
        QFETCH(QString, subFolder);
        QFETCH(QStringList, listed);
        QFETCH(bool, isEndReached);
        if (!QFile::exists("/dev/full")) {
            QSKIP("There is no /dev/full here.");
        }
        test::CopySandbox sandbox;
        sandbox.makeFolder(source + '/' + subFolder);
        sandbox.write(source + '/' + file, "a");
        sandbox.makeFolder("host");
        sandbox.makeLink("/dev/full", "host/uninstall.ini");
        QStringList log(firstManifest);
        for (const QString &name : listed) {
            log << "Debug: Could not list file \"host/" + name + '"';
        }
        if (isEndReached) {
            log << "Debug: Could not write manifest to the disk \"host/uninstall.ini\"";
        }

        QCOMPARE(sandbox.copy(source, "host"), 1);
        QCOMPARE(sandbox.read("host/" + file), QByteArray("a"));
        QCOMPARE(sandbox.log(), log);
    }

    void folderInTheFilesPlaceIsARightsProblem()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        sandbox.write("host/drask/a.py/own.txt", "mine");
        QCOMPARE(sandbox.copy(), 2);
        VERIFY_LINES(sandbox.log(), firstManifest, couldNotRemove("host/drask/a.py"),
                     rightsProblem("host/drask/a.py"));
        QCOMPARE(sandbox.read("host/drask/a.py/own.txt"), QByteArray("mine"));
        QCOMPARE(sandbox.manifest(), QStringList());
    }

    void writableFileInAReadOnlyFolderIsNotReplaced()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "new");
        giveWritableFile(sandbox, "host/drask/a.py");
        giveWritableFile(sandbox, "host/drask/uninstall.ini");
        const test::ReadOnly readOnly(sandbox.path("host/drask"));
        BECOME_ORDINARY_USER_OR_SKIP();

        QCOMPARE(sandbox.copy(), 1);
        VERIFY_LINES(sandbox.log(), firstManifest, couldNotRemove("host/drask/a.py"));
        QCOMPARE(sandbox.read("host/drask/a.py"), QByteArray("old"));
        QCOMPARE(sandbox.manifest(), QStringList());
    }

    void lastFailureOfAFolderDecides_data()
    {
        const test::Table<QString, QString> table("folder", "file");
        // File systems list names in an order of their own: one row has the folder last, one the
        // file.
        table.row("a folder in the place of one file", "a.py", "b.py");
        table.row("a folder in the place of the other file", "b.py", "a.py");
    }

    void lastFailureOfAFolderDecides()
    {
        QFETCH(QString, folder);
        QFETCH(QString, file);
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "new");
        sandbox.write("plugin/b.py", "new");
        sandbox.makeFolder("host/drask/" + folder);
        giveWritableFile(sandbox, "host/drask/" + file);
        giveWritableFile(sandbox, "host/drask/uninstall.ini");
        const QString last = test::filesInCopyOrder(sandbox.path("plugin")).constLast();
        const test::ReadOnly readOnly(sandbox.path("host/drask"));
        BECOME_ORDINARY_USER_OR_SKIP();

        QCOMPARE(sandbox.copy(), last == folder ? 2 : 1);
    }

    void readOnlyFileIsPlacedButARightsProblem()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        sandbox.makeFolder("host/drask");
        test::giveToOrdinaryUser(sandbox.path("host/drask"));
        const test::ReadOnly readOnly(sandbox.path("plugin/a.py"));
        BECOME_ORDINARY_USER_OR_SKIP();

        QCOMPARE(sandbox.copy(), 2);
        VERIFY_LINES(sandbox.log(), firstManifest, rightsProblem("host/drask/a.py"));
        QCOMPARE(sandbox.read("host/drask/a.py"), QByteArray("a"));
        QCOMPARE(sandbox.manifest(), QStringList("host/drask/a.py"));
    }

    void failedCopyLeavesAnEmptyFileAndNoError()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        sandbox.write("host/drask/a.py", "old");
        test::giveToOrdinaryUser(sandbox.path("host/drask"));
        QVERIFY(QFile::setPermissions(sandbox.path("plugin/a.py"), QFile::WriteOwner));
        BECOME_ORDINARY_USER_OR_SKIP();

        QCOMPARE(sandbox.copy(), 0);
        VERIFY_LINES(sandbox.log(), firstManifest, couldNotCopy("plugin/a.py", "host/drask/a.py"));
        QCOMPARE(sandbox.read("host/drask/a.py"), QByteArray(""));
        QCOMPARE(sandbox.manifest(), QStringList());
    }

    void failedCopyOntoADanglingLinkMakesItsTarget()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        sandbox.makeLink(sandbox.path("gone.py"), "host/drask/a.py");
        QCOMPARE(sandbox.copy(), 0);
        VERIFY_LINES(sandbox.log(), firstManifest, couldNotCopy("plugin/a.py", "host/drask/a.py"));
        QCOMPARE(sandbox.read("gone.py"), QByteArray(""));
        QCOMPARE(sandbox.manifest(), QStringList());
    }

    void failureOfAFolderWithSubfoldersIsForgotten()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        sandbox.write("plugin/sub/b.py", "b");
        sandbox.makeFolder("host/drask/a.py");
        QCOMPARE(sandbox.copy(), 0);
        VERIFY_LINES(sandbox.log(), firstManifest, couldNotRemove("host/drask/a.py"),
                     rightsProblem("host/drask/a.py"));
        QCOMPARE(sandbox.manifest(), QStringList("host/drask/sub/b.py"));
    }

    void failureOfASubfolderIsReturnedAtOnce_data()
    {
        const test::Table<int> table("result");
        table.row("a file that is not replaced", 1);
        table.row("a rights problem", 2);
    }

    void failureOfASubfolderIsReturnedAtOnce()
    {
        QFETCH(int, result);
        test::CopySandbox sandbox;
        sandbox.write("plugin/one/a.py", "a");
        sandbox.write("plugin/two/a.py", "a");
        sandbox.write("plugin/three/a.py", "a");
        const QStringList order = test::filesInCopyOrder(sandbox.path("plugin"));
        const QString obstacle = "host/drask/" + order.at(1);
        if (result == 1) {
            giveWritableFile(sandbox, obstacle);
        } else {
            sandbox.makeFolder(obstacle);
        }
        test::giveToOrdinaryUser(sandbox.path("host/drask"));
        const test::ReadOnly readOnly(QFileInfo(sandbox.path(obstacle)).path());
        BECOME_ORDINARY_USER_OR_SKIP();

        QCOMPARE(sandbox.copy(), result);
        QCOMPARE(sandbox.manifest(), QStringList("host/drask/" + order.at(0)));
        QVERIFY(!sandbox.exists("host/drask/" + order.at(2)));
        // The next copy meets a manifest that is still open.
        sandbox.copy();
        QVERIFY(
            sandbox.log().contains("Warning: QFile::setFileName: File (host/drask/uninstall.ini) "
                                   "already open"));
    }

    void fileInASubfoldersPlaceIsARightsProblem()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/sub/a.py", "a");
        sandbox.write("host/drask/sub", "mine");
        QCOMPARE(sandbox.copy(), 2);
        VERIFY_LINES(sandbox.log(), firstManifest,
                     couldNotCopy("plugin/sub/a.py", "host/drask/sub/a.py"),
                     rightsProblem("host/drask/sub/a.py"));
        QCOMPARE(sandbox.read("host/drask/sub"), QByteArray("mine"));
    }

    void tooLongTargetIsARightsProblem()
    {
        // The target's name is longer than the source's, so that only its deepest paths are too
        // long.
        constexpr int longestPath = 4095;
        constexpr int longestName = 255;
        test::CopySandbox sandbox;
        QString folder = "plugin";
        while (sandbox.path(folder).toUtf8().size() < longestPath - longestName) {
            folder += QLatin1Char('/') + QString(100, 'x');
        }
        sandbox.write(folder + "/a.py", "a");
        sandbox.write("plugin/first.py", "a");
        const QString target(longestName, 'y');

        QCOMPARE(sandbox.copy("plugin", target), 2);
        QCOMPARE(sandbox.manifest(target), QStringList(target + "/first.py"));
        const QString file = target + folder.mid(QString("plugin").size()) + "/a.py";
        VERIFY_LINES(sandbox.log(), firstManifest, couldNotCopy(folder + "/a.py", file),
                     rightsProblem(file));
    }
};

DRASK_TEST(tst_FolderCopyFailures)
#include "tst_foldercopy_failures.moc"
