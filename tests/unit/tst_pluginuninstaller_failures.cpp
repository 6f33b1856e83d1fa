// SPDX-License-Identifier: MIT
#include "driver.h"
#include "logcapture.h"
#include "ordinaryuser.h"
#include "sandbox.h"
#include "uninstaller/pluginuninstaller.h"

#include <QtTest>

/// What an uninstallation does that meets obstacles, or has nothing to do.
class tst_PluginUninstallerFailures : public QObject {
    Q_OBJECT

private slots:
    void listedFolderFailsAndTheRestIsDeleted();
    void fileInAReadOnlyFolderFailsAndTheRestIsDeleted();
    void unreadableManifestDeletesNothingListed();
    void missingManifestIsIgnored();
    void missingFolderIsIgnored();
    void folderInTheManifestsPlaceIsIgnored();
    void folderInManagerCfgsPlaceIsIgnored();
    void randomBytesInTheManifestDeleteNothing();

    void functionUninstallsAndLogsTheResult();
    void functionReturnsTheFailure();
    void functionIgnoresATextWithoutAFolder_data();
    void functionIgnoresATextWithoutAFolder();
    void functionFindsNothingBehindAKey();
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

void tst_PluginUninstallerFailures::listedFolderFailsAndTheRestIsDeleted()
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

void tst_PluginUninstallerFailures::fileInAReadOnlyFolderFailsAndTheRestIsDeleted()
{
    const test::Sandbox sandbox;
    sandbox.write("locked/a.py", "a");
    sandbox.write("drask/b.py", "b");
    writeManifest(sandbox, {sandbox.path("locked/a.py"), sandbox.path("drask/b.py")});
    test::giveToOrdinaryUser(sandbox.path("drask"));
    const test::ReadOnly readOnly(sandbox.path("locked"));
    const test::OrdinaryUser user;
    if (!user.isActive()) {
        QSKIP("Only an ordinary user is stopped by permissions.");
    }

    QCOMPARE(uninstall(sandbox), 2);

    QCOMPARE(sandbox.tree().keys(), QStringList({"drask/", "locked/", "locked/a.py"}));
}

void tst_PluginUninstallerFailures::unreadableManifestDeletesNothingListed()
{
    const test::Sandbox sandbox;
    sandbox.write("drask/a.py", "a");
    writeManifest(sandbox, {sandbox.path("drask/a.py")});
    QVERIFY(QFile::setPermissions(sandbox.path("drask/uninstall.ini"), QFile::WriteOwner));
    test::giveToOrdinaryUser(sandbox.path("drask"));
    const test::OrdinaryUser user;
    if (!user.isActive()) {
        QSKIP("Only an ordinary user is stopped by permissions.");
    }
    const test::LogCapture log;

    QCOMPARE(uninstall(sandbox), 0);

    QCOMPARE(sandbox.tree().keys(), QStringList({"drask/", "drask/a.py"}));
    QCOMPARE(relativeLog(log, sandbox), QStringList({begins, noManifest, manifestName}));
}

void tst_PluginUninstallerFailures::missingManifestIsIgnored()
{
    const test::Sandbox sandbox;
    sandbox.write("drask/a.py", "a");
    sandbox.write("drask/manager.cfg", "ann");
    const test::LogCapture log;

    QCOMPARE(uninstall(sandbox), 0);

    QCOMPARE(sandbox.tree().keys(), QStringList({"drask/", "drask/a.py"}));
    QCOMPARE(relativeLog(log, sandbox),
             QStringList({begins, noManifest, manifestName, manifestStays}));
}

void tst_PluginUninstallerFailures::missingFolderIsIgnored()
{
    const test::Sandbox sandbox;
    const test::LogCapture log;

    QCOMPARE(uninstall(sandbox), 0);

    QCOMPARE(test::treeDifference(sandbox.tree(), test::Tree()), QString());
    QCOMPARE(relativeLog(log, sandbox),
             QStringList({begins, noManifest, manifestName, manifestStays, configStays}));
}

void tst_PluginUninstallerFailures::folderInTheManifestsPlaceIsIgnored()
{
    const test::Sandbox sandbox;
    sandbox.write("drask/uninstall.ini/own.txt", "mine");
    sandbox.write("drask/manager.cfg", "ann");
    const test::LogCapture log;

    QCOMPARE(uninstall(sandbox), 0);

    QCOMPARE(sandbox.tree().keys(),
             QStringList({"drask/", "drask/uninstall.ini/", "drask/uninstall.ini/own.txt"}));
    QCOMPARE(relativeLog(log, sandbox),
             QStringList({begins, noManifest, manifestName, manifestStays}));
}

void tst_PluginUninstallerFailures::folderInManagerCfgsPlaceIsIgnored()
{
    const test::Sandbox sandbox;
    sandbox.write("drask/uninstall.ini", "");
    sandbox.makeFolder("drask/manager.cfg");
    const test::LogCapture log;

    QCOMPARE(uninstall(sandbox), 0);

    QCOMPARE(sandbox.tree().keys(), QStringList({"drask/", "drask/manager.cfg/"}));
    QCOMPARE(relativeLog(log, sandbox), QStringList({begins, manifestName, configStays}));
}

void tst_PluginUninstallerFailures::randomBytesInTheManifestDeleteNothing()
{
    const test::Sandbox sandbox;
    sandbox.write("drask/a.py", "a");
    QRandomGenerator random(20200401);
    QByteArray bytes;
    while (bytes.size() < 20000) {
        bytes += static_cast<char>(random.bounded(256));
    }
    sandbox.write("drask/uninstall.ini", bytes);
    const test::LogCapture log;

    QCOMPARE(uninstall(sandbox), 0);

    QCOMPARE(sandbox.tree().keys(), QStringList({"drask/", "drask/a.py"}));
}

void tst_PluginUninstallerFailures::functionUninstallsAndLogsTheResult()
{
    const test::Sandbox sandbox;
    sandbox.write("drask/a.py", "a");
    writeManifest(sandbox, {sandbox.path("drask/a.py")});
    const test::LogCapture log;

    QCOMPARE(uninstallPluginFunction(sandbox.path("drask")), 0);

    QCOMPARE(sandbox.tree().keys(), QStringList("drask/"));
    QCOMPARE(relativeLog(log, sandbox),
             QStringList({begins, manifestName, "Debug: uninstallPlugin  0"}));
}

void tst_PluginUninstallerFailures::functionReturnsTheFailure()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("drask/folder");
    writeManifest(sandbox, {sandbox.path("drask/folder")});
    const test::LogCapture log;

    QCOMPARE(uninstallPluginFunction(sandbox.path("drask")), 2);

    QCOMPARE(log.lines().constLast(), QString("Debug: uninstallPlugin  2"));
}

void tst_PluginUninstallerFailures::functionIgnoresATextWithoutAFolder_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("an empty text") << "";
    QTest::newRow("a bare name") << "drask";
    QTest::newRow("a folder with backslashes") << "C:\\Maya\\drask";
}

void tst_PluginUninstallerFailures::functionIgnoresATextWithoutAFolder()
{
    QFETCH(QString, text);
    const test::Sandbox sandbox;
    sandbox.write("drask/uninstall.ini", "");
    const test::Tree before = sandbox.tree();
    const QString workingFolder = QDir::currentPath();
    QVERIFY(QDir::setCurrent(sandbox.path()));
    const test::LogCapture log;

    const int result = uninstallPluginFunction(text);
    QVERIFY(QDir::setCurrent(workingFolder));

    QCOMPARE(result, 0);
    const QString shown = QString(text).replace("\\", "\\\\");
    QCOMPARE(log.lines(), QStringList("Debug: nothing to uninstall for  \"" + shown + '"'));
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

void tst_PluginUninstallerFailures::functionFindsNothingBehindAKey()
{
    const test::Sandbox sandbox;
    sandbox.write("drask/a.py", "a");
    writeManifest(sandbox, {sandbox.path("drask/a.py")});
    const test::Tree before = sandbox.tree();
    const test::LogCapture log;

    QCOMPARE(uninstallPluginFunction("(c4d) " + sandbox.path("drask")), 0);

    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
    QCOMPARE(relativeLog(log, sandbox),
             QStringList({begins,
                          "Debug: cannot open  \"(c4d) drask/uninstall.ini\"  for reading, ignore",
                          "Debug: \"(c4d) drask/uninstall.ini\"",
                          "Debug: could not delete  \"(c4d) drask/uninstall.ini\"",
                          "Debug: could not delete  \"(c4d) drask/manager.cfg\"",
                          "Debug: uninstallPlugin  0"}));
}

QTEST_GUILESS_MAIN(tst_PluginUninstallerFailures)
#include "tst_pluginuninstaller_failures.moc"
