// SPDX-License-Identifier: MIT
#include "loggedsandbox.h"
#include "uninstaller/pluginuninstaller.h"
#include "unitcase.h"

namespace {

/// Installs \a lines as the manifest of the sandbox's folder "drask", each ended by a line feed.
void writeManifest(const test::Sandbox &sandbox, const QStringList &lines)
{
    sandbox.write("drask/uninstall.ini", lines.join(QLatin1Char('\n')).toUtf8() + '\n');
    sandbox.write("drask/manager.cfg", "ann\n");
}

int uninstall(const test::Sandbox &sandbox)
{
    return PluginUninstaller().uninstallPlugin(sandbox.path("drask"));
}

QStringList relativeLog(const test::LoggedSandbox &sandbox)
{
    QStringList lines = sandbox.log.lines();
    return lines.replaceInStrings(sandbox.path() + QLatin1Char('/'), QString());
}

const char begins[] = "Debug: begin uninstall";
const char manifestName[] = "Debug: \"drask/uninstall.ini\"";
const char noManifest[] = "Debug: cannot open  \"drask/uninstall.ini\"  for reading, ignore";
const char manifestStays[] = "Debug: could not delete  \"drask/uninstall.ini\"";
const char configStays[] = "Debug: could not delete  \"drask/manager.cfg\"";

} // namespace

class tst_PluginUninstaller : public QObject {
    Q_OBJECT
private slots:
    void metaObjectHoldsTheNameAlone()
    {
        PluginUninstaller uninstaller;
        const QMetaObject *meta = uninstaller.metaObject();

        QCOMPARE(meta->className(), "PluginUninstaller");
        QCOMPARE(meta->superClass(), &QObject::staticMetaObject);
        QCOMPARE(meta->methodCount(), QObject::staticMetaObject.methodCount());
        QCOMPARE(meta->propertyCount(), QObject::staticMetaObject.propertyCount());
        QCOMPARE(meta->constructorCount(), 0);
        QCOMPARE(meta->enumeratorCount(), 0);
        QCOMPARE(meta->classInfoCount(), 0);
        QCOMPARE(uninstaller.qt_metacast("PluginUninstaller"), static_cast<void *>(&uninstaller));
        QCOMPARE(uninstaller.qt_metacast("QObject"), static_cast<void *>(&uninstaller));
        QCOMPARE(uninstaller.qt_metacast("Other"), nullptr);
    }

    void parentTakesTheObjectAlong()
    {
        QPointer<PluginUninstaller> child;
        {
            QObject parent;
            child = new PluginUninstaller(&parent);
            QCOMPARE(child->parent(), &parent);
        }
        QVERIFY(child.isNull());
        QCOMPARE(PluginUninstaller().parent(), nullptr);
    }

    void listedFilesAloneAreDeleted()
    {
        const test::LoggedSandbox sandbox;
        sandbox.write("drask/sub/a.py", "a");
        sandbox.write("drask/own.py", "mine");
        sandbox.write("drask/version.txt", "12");
        sandbox.write("elsewhere/shelf.mel", "s");
        test::Tree expected = sandbox.tree();
        expected.remove("drask/sub/a.py");
        expected.remove("elsewhere/shelf.mel");
        const QString shelf = sandbox.path("elsewhere/shelf.mel");
        writeManifest(sandbox, {shelf, sandbox.path("drask/sub/a.py"), shelf});

        QCOMPARE(uninstall(sandbox), 0);
        VERIFY_TREE(sandbox, expected);
        VERIFY_LINES(relativeLog(sandbox), begins, manifestName);
    }

    void missingListedFilesAreSkipped()
    {
        const test::LoggedSandbox sandbox;
        sandbox.write("drask/b.py", "b");
        writeManifest(sandbox,
                      {sandbox.path("drask/a.py"), QString(), sandbox.path("nowhere/c.py"),
                       sandbox.path("drask/b.py")});
        QCOMPARE(uninstall(sandbox), 0);
        QVERIFY(!sandbox.exists("drask/b.py"));
        VERIFY_LINES(relativeLog(sandbox), begins, manifestName);
    }

    void windowsLineEndsAreNoPartOfTheNames()
    {
        const test::Sandbox sandbox;
        sandbox.write("drask/a.py", "a");
        sandbox.write("drask/b.py", "b");
        // The last line needs no line end at all.
        sandbox.write("drask/uninstall.ini",
                      (sandbox.path("drask/a.py") + "\r\n" + sandbox.path("drask/b.py")).toUtf8());
        QCOMPARE(uninstall(sandbox), 0);
        QCOMPARE(sandbox.tree().keys(), QStringList("drask/"));
    }

    void nonAsciiAndOddNamesAreDeleted()
    {
        const test::Sandbox sandbox;
        const QStringList names = {QString::fromUtf8("\xc3\xa9\xe6\x97\xa5.py"),
                                   " blanks ",
                                   "a\tb",
                                   "a\rb",
                                   "O'Neil \"x\".py",
                                   "#a",
                                   "%1",
                                   QString(255, 'x')};
        QStringList lines;
        for (const QString &name : names) {
            sandbox.write("drask/" + name, "a");
            lines << sandbox.path("drask/" + name);
        }
        writeManifest(sandbox, lines);

        QCOMPARE(uninstall(sandbox), 0);
        QCOMPARE(sandbox.tree().keys(), QStringList("drask/"));
    }

    void fileWithALineFeedInItsNameStays()
    {
        const test::LoggedSandbox sandbox;
        sandbox.write("drask/a\nb", "shipped");
        sandbox.write("drask/a", "of the user");
        sandbox.write("drask/b", "of the user");
        writeManifest(sandbox, {sandbox.path("drask/a\nb")});
        const test::WorkingFolder workingFolder(sandbox.path("drask"));

        QCOMPARE(uninstall(sandbox), 0);
        VERIFY_TREE(sandbox, {{"drask/", ""}, {"drask/a\nb", "shipped"}});
        VERIFY_LINES(relativeLog(sandbox), begins, manifestName);
    }

    void relativeLinesBelongToTheWorkingFolder()
    {
        const test::Sandbox sandbox;
        sandbox.write("drask/a.py", "in the plug-in folder");
        sandbox.write("a.py", "in the working folder");
        writeManifest(sandbox, {"a.py"});
        const test::WorkingFolder workingFolder(sandbox.path());
        QCOMPARE(uninstall(sandbox), 0);
        QCOMPARE(sandbox.tree().keys(), QStringList({"drask/", "drask/a.py"}));
    }

    void linesAreUsedExactlyAsWritten()
    {
        const test::Sandbox sandbox;
        sandbox.write("drask/a.py", "a");
        sandbox.write("drask/b.py", "b");
        const QString file = sandbox.path("drask/a.py");
        writeManifest(sandbox,
                      {QLatin1Char(' ') + file, file + QLatin1Char(' '), '"' + file + '"',
                       "file://" + file, sandbox.path("drask/*.py"),
                       sandbox.path("drask/../drask/b.py")});

        QCOMPARE(uninstall(sandbox), 0);
        QCOMPARE(sandbox.tree().keys(), QStringList({"drask/", "drask/a.py"}));
    }

    void listedLinksAreDeletedUnlessTheyDangle()
    {
        const test::Sandbox sandbox;
        sandbox.write("home/own.txt", "mine");
        sandbox.makeLink(sandbox.path("home/own.txt"), "drask/file");
        sandbox.makeLink(sandbox.path("home"), "drask/folder");
        sandbox.makeLink("/nowhere/at/all", "drask/dangling");
        writeManifest(sandbox,
                      {sandbox.path("drask/file"), sandbox.path("drask/folder"),
                       sandbox.path("drask/dangling")});

        QCOMPARE(uninstall(sandbox), 0);
        QCOMPARE(sandbox.tree().keys(),
                 QStringList({"drask/", "drask/dangling@", "home/", "home/own.txt"}));
    }

    void readOnlyFileInAWritableFolderIsDeleted()
    {
        const test::Sandbox sandbox;
        sandbox.write("drask/a.py", "a");
        QVERIFY(QFile::setPermissions(sandbox.path("drask/a.py"), QFile::ReadOwner));
        writeManifest(sandbox, {sandbox.path("drask/a.py")});
        test::giveToOrdinaryUser(sandbox.path("drask"));
        BECOME_ORDINARY_USER_OR_SKIP();
        QCOMPARE(uninstall(sandbox), 0);
        QCOMPARE(sandbox.tree().keys(), QStringList("drask/"));
    }

    void listedFolderFailsAndTheRestIsDeleted()
    {
        const test::LoggedSandbox sandbox;
        sandbox.makeFolder("drask/folder");
        sandbox.write("drask/a.py", "a");
        writeManifest(sandbox, {sandbox.path("drask/folder"), sandbox.path("drask/a.py")});
        QCOMPARE(uninstall(sandbox), 2);
        QCOMPARE(sandbox.tree().keys(), QStringList({"drask/", "drask/folder/"}));
        VERIFY_LINES(relativeLog(sandbox), begins, manifestName);
    }

    void unreadableManifestDeletesNothingListed()
    {
        const test::LoggedSandbox sandbox;
        sandbox.write("drask/a.py", "a");
        writeManifest(sandbox, {sandbox.path("drask/a.py")});
        QVERIFY(QFile::setPermissions(sandbox.path("drask/uninstall.ini"), QFile::WriteOwner));
        test::giveToOrdinaryUser(sandbox.path("drask"));
        BECOME_ORDINARY_USER_OR_SKIP();

        QCOMPARE(uninstall(sandbox), 0);
        QCOMPARE(sandbox.tree().keys(), QStringList({"drask/", "drask/a.py"}));
        VERIFY_LINES(relativeLog(sandbox), begins, noManifest, manifestName);
    }

    void missingFolderIsIgnored()
    {
        const test::LoggedSandbox sandbox;
        QCOMPARE(uninstall(sandbox), 0);
        VERIFY_TREE(sandbox, test::Tree());
        VERIFY_LINES(relativeLog(sandbox), begins, noManifest, manifestName, manifestStays,
                     configStays);
    }

    void foldersInTheFilesPlacesAreIgnored()
    {
        const test::LoggedSandbox sandbox;
        sandbox.write("drask/uninstall.ini/own.txt", "mine");
        sandbox.makeFolder("drask/manager.cfg");
        const test::Tree before = sandbox.tree();
        QCOMPARE(uninstall(sandbox), 0);
        VERIFY_TREE(sandbox, before);
        VERIFY_LINES(relativeLog(sandbox), begins, noManifest, manifestName, manifestStays,
                     configStays);
    }
};

DRASK_TEST(tst_PluginUninstaller)
#include "tst_pluginuninstaller.moc"
