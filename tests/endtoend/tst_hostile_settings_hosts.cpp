// SPDX-License-Identifier: MIT
#include "inmemory.h"
#include "settingsofonehost.h"
#include "testprogram.h"

#include <QtTest>

/// Settings that are well-formed and name absurd hosts.
class tst_HostileSettingsHosts : public QObject {
    Q_OBJECT

private slots:
    void valuesOfAHostsFolder_data();
    void valuesOfAHostsFolder();
    void hugeHostIsReported_data();
    void hugeHostIsReported();
    void hostFolderWithAZeroCharacterIsReported();
    void tenThousandHosts();
    void oneHostTenThousandTimes();
};

namespace {

const int megabyte = 1 << 20;
const int manyHosts = 10000;

/// Many hosts, all of them SketchUps.
class ManyHosts : public test::Workstation {
public:
    /// \a folder holds "%1" for the number of the host, or is the folder of all of them.
    explicit ManyHosts(const QString &folder)
    {
        for (int host = 0; host < manyHosts; ++host) {
            folders << path(folder.contains("%1") ? folder.arg(host) : folder);
            addHost("sketchup", folders.constLast());
        }
        addSetting("plugins", "versionSketchup=3");
        writeSettings();
    }

    QByteArray config() const
    {
        return "\n\n" + tool("DraskDrop").toUtf8() + "\n2.3.10\n\n1\n1";
    }

    /// The log of a run that wrote \a steps for its hosts.
    QStringList logOf(const QStringList &steps) const
    {
        QStringList lines{"Debug: settings loaded"};
        for (const QString &folder : folders) {
            lines += test::linesOfLookUp("sketchup", folder);
        }
        lines << "Debug: !!!settings local:  QVariant(Invalid)"
              << "Debug: version:  24";
        return lines + steps + QStringList("Debug: 0");
    }

    /// The steps of a run that copies to each host, where it says \a aboutConfig.
    QStringList linesOfCopies(const QStringList &aboutConfig) const
    {
        QStringList lines;
        QString manifestBefore;
        for (const QString &folder : folders) {
            lines << "Debug: open file:  " + test::quoted(manifestBefore);
            lines << aboutConfig << test::installedLine("sketchup", folder);
            manifestBefore = folder + "/uninstall.ini";
        }
        return lines;
    }

private:
    QStringList folders;
};

} // namespace

void tst_HostileSettingsHosts::valuesOfAHostsFolder_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("served");
    const auto row = [](const char *name, const QByteArray &line, const QString &shown,
                        bool served) { QTest::newRow(name) << line << shown << served; };

    row("a plain text", "path=~", "~", true);
    row("bytes without a slash", "path=@ByteArray(host)", "host", false);
    row("two folders, which make a list", "path=~, ~", "", false);
    row("nothing at all", "path=@Invalid()", "", false);
    row("a point", "path=@Point(1 2)", "", false);
    row("the key twice, first the folder", "path=~\n1\\path=", "", false);
    row("the key twice, last the folder", "path=/nowhere\n1\\path=~", "~", true);
    row("a number with a zero before it", "x=1\n01\\path=~", "", false);
    row("a number with a sign", "x=1\n+1\\path=~", "", false);
}

void tst_HostileSettingsHosts::valuesOfAHostsFolder()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, shown);
    QFETCH(bool, served);
    const test::SettingsOfOneHost workstation;
    workstation.writeSettings("", line);
    test::Tree expected = workstation.tree();
    expected.insert("tool/version.txt", "2.3.10");
    const QString folder = shown.replace('~', workstation.path("host"));
    QStringList firstSteps{"Debug: nothing to copy for  \"sketchup\""};
    QStringList secondSteps = firstSteps;
    if (served) {
        expected = workstation.installed(workstation.config());
        firstSteps = test::linesOfCopiedPlugin("sketchup", folder);
        secondSteps = test::linesOfKeptPlugin(folder);
    }

    for (const QStringList &steps : {firstSteps, secondSteps}) {
        VERIFY_RUN(workstation.run(), 0);
        VERIFY_LEFT(workstation, expected, test::logOfPass("sketchup", folder, steps, 0),
                    QByteArray());
    }
}

void tst_HostileSettingsHosts::hugeHostIsReported_data()
{
    QTest::addColumn<QByteArray>("folder");

    QTest::newRow("a megabyte's name") << '/' + QByteArray(megabyte, 'x');
    QTest::newRow("a megabyte of folders") << QByteArray("/x").repeated(megabyte / 2);
    QTest::newRow("a megabyte of dots that lead up and down")
        << QByteArray("/../host").repeated(megabyte / 8);
    QTest::newRow("a name of 256 bytes") << '/' + QByteArray(256, 'x');
}

void tst_HostileSettingsHosts::hugeHostIsReported()
{
    QFETCH(QByteArray, folder);
    const test::SettingsOfOneHost workstation;
    workstation.makeFolder("host");
    workstation.writeSettings("", "path=\"~" + folder + '"');
    test::Tree expected = workstation.tree();
    expected.insert("tool/version.txt", "2.3.10");
    const QString target = workstation.path("host") + QString::fromUtf8(folder);
    const QStringList log = test::logOfPass("sketchup", target,
                                            test::linesOfMissingTarget("sketchup", target), 3);

    for (int run = 0; run < 2; ++run) {
        VERIFY_RUN(workstation.run(), 3);
        VERIFY_LEFT(workstation, expected, log, test::messagesOfMissingTarget(target));
    }
}

void tst_HostileSettingsHosts::hostFolderWithAZeroCharacterIsReported()
{
    const test::SettingsOfOneHost workstation;
    workstation.makeFolder("host");
    workstation.writeSettings("", "path=\"~\\0/x\"");
    test::Tree expected = workstation.tree();
    expected.insert("tool/version.txt", "2.3.10");
    const QString target = workstation.path("host") + QChar(QChar::Null) + "/x";
    const QString shown = test::escaped(target);
    const QStringList log = test::logOfPass("sketchup", shown,
                                            test::linesOfMissingTarget("sketchup", shown), 3);

    for (int run = 0; run < 2; ++run) {
        VERIFY_RUN(workstation.run(), 3);
        VERIFY_LEFT(workstation, expected, workstation.log(),
                    test::messagesOfMissingTarget(target));
        // Qt warns about the name as often as it meets it.
        QStringList lines = workstation.log();
        QVERIFY(lines.removeAll("Warning: Broken filename passed to function") > 0);
        QCOMPARE(lines, log);
    }
}

void tst_HostileSettingsHosts::tenThousandHosts()
{
    const test::InMemory memory;
    const ManyHosts workstation("h/%1");
    workstation.addPlugin("sketchup", {});
    test::Tree expected = workstation.tree();
    expected.insert("tool/version.txt", "2.3.10");
    expected.insert("h/", "");
    for (int host = 0; host < manyHosts; ++host) {
        const QString folder = QStringLiteral("h/%1/").arg(host);
        expected.insert(folder, "");
        expected.insert(folder + "uninstall.ini", "");
        expected.insert(folder + "manager.cfg", workstation.config());
    }

    // Without a version file, each run copies anew.
    for (const QStringList &aboutConfig :
         {test::linesOfNewConfig(), QStringList("Debug: not necessary to write cfg")}) {
        VERIFY_RUN(workstation.run(), 0);
        VERIFY_LEFT(workstation, expected,
                    workstation.logOf(workstation.linesOfCopies(aboutConfig)), QByteArray());
    }
}

void tst_HostileSettingsHosts::oneHostTenThousandTimes()
{
    const ManyHosts workstation("host");
    workstation.addPlugin("sketchup", {{"version.txt", "3"}});
    test::Tree expected = workstation.tree();
    expected.insert("tool/version.txt", "2.3.10");
    expected.insert("host/", "");
    expected.insert("host/version.txt", "3");
    expected.insert("host/uninstall.ini", workstation.path("host/version.txt\n").toUtf8());
    expected.insert("host/manager.cfg", workstation.config());
    const QString folder = workstation.path("host");
    const QStringList kept = test::linesOfKeptPlugin(folder);
    QStringList steps;
    for (int time = 1; time < manyHosts; ++time) {
        steps += kept;
    }

    for (const QStringList &firstSteps : {test::linesOfCopiedPlugin("sketchup", folder), kept}) {
        VERIFY_RUN(workstation.run(), 0);
        VERIFY_LEFT(workstation, expected, workstation.logOf(firstSteps + steps), QByteArray());
    }
}

DRASK_TEST(tst_HostileSettingsHosts)
#include "tst_hostile_settings_hosts.moc"
