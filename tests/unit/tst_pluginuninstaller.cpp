// SPDX-License-Identifier: MIT
#include "logcapture.h"
#include "ordinaryuser.h"
#include "sandbox.h"
#include "testprogram.h"
#include "uninstaller/pluginuninstaller.h"

#include <QtTest>

class tst_PluginUninstaller : public QObject {
    Q_OBJECT

private slots:
    void metaObjectHoldsTheNameAlone();
    void parentTakesTheObjectAlong();

    void listedFilesAloneAreDeleted();
    void missingListedFilesAreSkipped();
    void windowsLineEndsAreNoPartOfTheNames();
    void nonAsciiAndOddNamesAreDeleted();
    void fileWithALineFeedInItsNameStays();
    void relativeLinesBelongToTheWorkingFolder();
    void linesAreUsedExactlyAsWritten();
    void listedLinksAreDeletedUnlessTheyDangle();
    void readOnlyFileInAWritableFolderIsDeleted();
    void listedFolderFailsAndTheRestIsDeleted();
    void fileInAReadOnlyFolderFailsAndTheRestIsDeleted();
    void unreadableManifestDeletesNothingListed();
    void missingFolderIsIgnored();
    void foldersInTheFilesPlacesAreIgnored();
};

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

QStringList relativeLog(const test::LogCapture &log, const test::Sandbox &sandbox)
{
    QStringList lines = log.lines();
    return lines.replaceInStrings(sandbox.path() + QLatin1Char('/'), QString());
}

const char begins[] = "Debug: begin uninstall";
const char manifestName[] = "Debug: \"drask/uninstall.ini\"";
const char noManifest[] = "Debug: cannot open  \"drask/uninstall.ini\"  for reading, ignore";
const char manifestStays[] = "Debug: could not delete  \"drask/uninstall.ini\"";
const char configStays[] = "Debug: could not delete  \"drask/manager.cfg\"";

} // namespace

void tst_PluginUninstaller::metaObjectHoldsTheNameAlone()
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

void tst_PluginUninstaller::parentTakesTheObjectAlong()
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

void tst_PluginUninstaller::listedFilesAloneAreDeleted()
{
    const test::Sandbox sandbox;
    sandbox.write("drask/sub/a.py", "a");
    sandbox.write("drask/own.py", "mine");
    sandbox.write("drask/version.txt", "12");
    sandbox.write("elsewhere/shelf.mel", "s");
    test::Tree expected = sandbox.tree();
    expected.remove("drask/sub/a.py");
    expected.remove("elsewhere/shelf.mel");
    const QString shelf = sandbox.path("elsewhere/shelf.mel");
    writeManifest(sandbox, {shelf, sandbox.path("drask/sub/a.py"), shelf});
    const test::LogCapture log;

    QCOMPARE(uninstall(sandbox), 0);

    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
    QCOMPARE(relativeLog(log, sandbox), QStringList({begins, manifestName}));
}

void tst_PluginUninstaller::missingListedFilesAreSkipped()
{
    const test::Sandbox sandbox;
    sandbox.write("drask/b.py", "b");
    writeManifest(sandbox,
                  {sandbox.path("drask/a.py"), QString(), sandbox.path("nowhere/c.py"),
                   sandbox.path("drask/b.py")});
    const test::LogCapture log;

    QCOMPARE(uninstall(sandbox), 0);

    QVERIFY(!sandbox.exists("drask/b.py"));
    QCOMPARE(relativeLog(log, sandbox), QStringList({begins, manifestName}));
}

void tst_PluginUninstaller::windowsLineEndsAreNoPartOfTheNames()
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

void tst_PluginUninstaller::nonAsciiAndOddNamesAreDeleted()
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

void tst_PluginUninstaller::fileWithALineFeedInItsNameStays()
{
    const test::Sandbox sandbox;
    sandbox.write("drask/a\nb", "shipped");
    sandbox.write("drask/a", "of the user");
    sandbox.write("drask/b", "of the user");
    writeManifest(sandbox, {sandbox.path("drask/a\nb")});
    const test::WorkingFolder workingFolder(sandbox.path("drask"));
    const test::LogCapture log;

    QCOMPARE(uninstall(sandbox), 0);

    QCOMPARE(test::treeDifference(sandbox.tree(), {{"drask/", ""}, {"drask/a\nb", "shipped"}}),
             QString());
    QCOMPARE(relativeLog(log, sandbox), QStringList({begins, manifestName}));
}

void tst_PluginUninstaller::relativeLinesBelongToTheWorkingFolder()
{
    const test::Sandbox sandbox;
    sandbox.write("drask/a.py", "in the plug-in folder");
    sandbox.write("a.py", "in the working folder");
    writeManifest(sandbox, {"a.py"});
    const test::WorkingFolder workingFolder(sandbox.path());

    QCOMPARE(uninstall(sandbox), 0);

    QCOMPARE(sandbox.tree().keys(), QStringList({"drask/", "drask/a.py"}));
}

void tst_PluginUninstaller::linesAreUsedExactlyAsWritten()
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

void tst_PluginUninstaller::listedLinksAreDeletedUnlessTheyDangle()
{
    const test::Sandbox sandbox;
    sandbox.write("home/own.txt", "mine");
    sandbox.makeLink(sandbox.path("home/own.txt"), "drask/file");
    sandbox.makeLink(sandbox.path("home"), "drask/folder");
    sandbox.makeLink("/nowhere/at/all", "drask/dangling");
    writeManifest(
        sandbox,
        {sandbox.path("drask/file"), sandbox.path("drask/folder"), sandbox.path("drask/dangling")});

    QCOMPARE(uninstall(sandbox), 0);

    QCOMPARE(sandbox.tree().keys(),
             QStringList({"drask/", "drask/dangling@", "home/", "home/own.txt"}));
}

void tst_PluginUninstaller::readOnlyFileInAWritableFolderIsDeleted()
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

void tst_PluginUninstaller::listedFolderFailsAndTheRestIsDeleted()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("drask/folder");
    sandbox.write("drask/a.py", "a");
    writeManifest(sandbox, {sandbox.path("drask/folder"), sandbox.path("drask/a.py")});
    const test::LogCapture log;

    QCOMPARE(uninstall(sandbox), 2);

    QCOMPARE(sandbox.tree().keys(), QStringList({"drask/", "drask/folder/"}));
    QCOMPARE(relativeLog(log, sandbox), QStringList({begins, manifestName}));
}

void tst_PluginUninstaller::fileInAReadOnlyFolderFailsAndTheRestIsDeleted()
{
    const test::Sandbox sandbox;
    sandbox.write("locked/a.py", "a");
    sandbox.write("drask/b.py", "b");
    writeManifest(sandbox, {sandbox.path("locked/a.py"), sandbox.path("drask/b.py")});
    test::giveToOrdinaryUser(sandbox.path("drask"));
    const test::ReadOnly readOnly(sandbox.path("locked"));
    BECOME_ORDINARY_USER_OR_SKIP();

    QCOMPARE(uninstall(sandbox), 2);

    QCOMPARE(sandbox.tree().keys(), QStringList({"drask/", "locked/", "locked/a.py"}));
}

void tst_PluginUninstaller::unreadableManifestDeletesNothingListed()
{
    const test::Sandbox sandbox;
    sandbox.write("drask/a.py", "a");
    writeManifest(sandbox, {sandbox.path("drask/a.py")});
    QVERIFY(QFile::setPermissions(sandbox.path("drask/uninstall.ini"), QFile::WriteOwner));
    test::giveToOrdinaryUser(sandbox.path("drask"));
    BECOME_ORDINARY_USER_OR_SKIP();
    const test::LogCapture log;

    QCOMPARE(uninstall(sandbox), 0);

    QCOMPARE(sandbox.tree().keys(), QStringList({"drask/", "drask/a.py"}));
    QCOMPARE(relativeLog(log, sandbox), QStringList({begins, noManifest, manifestName}));
}

void tst_PluginUninstaller::missingFolderIsIgnored()
{
    const test::Sandbox sandbox;
    const test::LogCapture log;

    QCOMPARE(uninstall(sandbox), 0);

    QCOMPARE(test::treeDifference(sandbox.tree(), test::Tree()), QString());
    QCOMPARE(relativeLog(log, sandbox),
             QStringList({begins, noManifest, manifestName, manifestStays, configStays}));
}

void tst_PluginUninstaller::foldersInTheFilesPlacesAreIgnored()
{
    const test::Sandbox sandbox;
    sandbox.write("drask/uninstall.ini/own.txt", "mine");
    sandbox.makeFolder("drask/manager.cfg");
    const test::Tree before = sandbox.tree();
    const test::LogCapture log;

    QCOMPARE(uninstall(sandbox), 0);

    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
    QCOMPARE(relativeLog(log, sandbox),
             QStringList({begins, noManifest, manifestName, manifestStays, configStays}));
}

DRASK_TEST(tst_PluginUninstaller)
#include "tst_pluginuninstaller.moc"
