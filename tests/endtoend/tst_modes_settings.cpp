// SPDX-License-Identifier: MIT
#include "expectedpass.h"

#include "testprogram.h"

#include <QRandomGenerator>
#include <QtTest>

using test::configOf;
using test::installedLine;
using test::linesOfConfig;
using test::linesOfLookUp;
using test::linesOfPassStart;
using test::linesOfRun;
using test::linesOfSettings;
using test::linesWithoutManifest;
using test::openFileLine;
using test::Run;

/// What the manager's settings make of a run.
class tst_ModesSettings : public QObject {
    Q_OBJECT

private slots:
    void settingsReachTheConfiguration_data();
    void settingsReachTheConfiguration();
    void projectsFolderIsLogged();
    void hostFoldersAreUtf8_data();
    void hostFoldersAreUtf8();
    void uselessEntryDoesNotDisturbTheNext_data();
    void uselessEntryDoesNotDisturbTheNext();
    void sizeOfTheArrayDecides_data();
    void sizeOfTheArrayDecides();
    void settingsAreNeverWritten_data();
    void settingsAreNeverWritten();
    void unusableSettingsAreNoFailure_data();
    void unusableSettingsAreNoFailure();
};

namespace {

const char obstacle[] = "a folder in the file's place";

/// One entry of the array "pluginpaths".
QByteArray entry(int number, const QByteArray &key, const QByteArray &folder)
{
    const QByteArray name = QByteArray::number(number) + '\\';
    return name + "application=" + key + '\n' + name + "path=\"" + folder + "\"\n";
}

/// A projects folder as the log shows it; \a folder is empty when none is set.
QString shown(const QByteArray &folder)
{
    return folder.isEmpty() ? "QVariant(Invalid)"
                            : "QVariant(QString, " + test::quoted(QString::fromUtf8(folder)) + ')';
}

QByteArray randomBytes(quint32 seed)
{
    QRandomGenerator generator(seed);
    QByteArray bytes(4096, '\0');
    for (char &byte : bytes) {
        byte = static_cast<char>(generator.bounded(256));
    }
    return bytes;
}

/// A host whose plug-in is copied, behind one that \a manifestBefore belongs to.
QStringList linesOfHost(const QString &key, const QString &target, Run run,
                        const QString &manifestBefore = QString())
{
    return QStringList(openFileLine(manifestBefore)) + linesOfConfig(run)
        + QStringList(installedLine(key, target));
}

using Entries = QList<QPair<QString, QString>>; // keys and folders

/// An installation for all \a entries, of which those without a slash in the folder are useless.
QStringList linesOfEntries(const Entries &entries, Run run)
{
    QStringList lookUps;
    QStringList pass;
    QString manifest;
    for (const auto &[key, folder] : entries) {
        lookUps += linesOfLookUp(key, folder);
        if (folder.contains('/')) {
            pass += linesOfHost(key, folder, run, manifest);
            manifest = folder + "/uninstall.ini";
        } else {
            pass << "Debug: nothing to copy for  " + test::quoted(key);
        }
    }
    return linesOfRun(RunMode::Install, lookUps, {}, pass << "Debug: 0");
}

/// The files of a plug-in in \a folder that has none of its own.
void addEmptyPlugin(test::Tree &expected, const test::Workstation &workstation,
                    const QString &folder)
{
    test::addWithFolders(expected, folder + "/uninstall.ini");
    expected[folder + "/manager.cfg"] = configOf(workstation);
}

/// What each mode makes of a listed SketchUp in the folder "h", and the operand of a host that is
/// not there.
QStringList linesOfMode(const test::Workstation &workstation, RunMode mode, Run run)
{
    if (mode == RunMode::UninstallPlugin) {
        return linesOfLookUp("sketchup", "/nowhere") + linesWithoutManifest("/nowhere");
    }
    const QString folder = workstation.path("h");
    QStringList pass = linesOfHost("sketchup", folder, run);
    if (mode == RunMode::OnlyWriteConfig) {
        pass.first() = "Debug: only write config, do not copy files";
    }
    return linesOfRun(mode, linesOfLookUp("sketchup", folder),
                      linesWithoutManifest("(sketchup) " + folder), pass << "Debug: 0");
}

} // namespace

void tst_ModesSettings::settingsReachTheConfiguration_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QByteArray>("user");
    QTest::addColumn<QByteArray>("projects");
    QTest::addColumn<QByteArray>("textures");
    const auto row = [](const char *name, const QByteArray &settings, const QByteArray &user,
                        const QByteArray &projects = "", const QByteArray &textures = "1") {
        QTest::newRow(name) << settings << user << projects << textures;
    };
    const QByteArray ann = "[UserData]\nusername=Ann\n";

    row("nothing is set", "", "");
    row("a user", ann, "Ann");
    row("a user with non-ASCII letters", "[UserData]\nusername=\xc3\x84nn \xe6\x97\xa5\n",
        "\xc3\x84nn \xe6\x97\xa5");
    row("a user with a comma, which makes a list of it", "[UserData]\nusername=Doe, John\n", "");
    row("a user with a comma in quotes", "[UserData]\nusername=\"Doe, John\"\n", "Doe, John");
    row("logged out", ann + "loggedOut=true\n", "");
    row("logged out by a number", ann + "loggedOut=1\n", "");
    row("not logged out", ann + "loggedOut=false\n", "Ann");
    row("not logged out by a number", ann + "loggedOut=0\n", "Ann");
    row("logged out left empty", ann + "loggedOut=\n", "Ann");
    row("logged out, nobody named", "[UserData]\nloggedOut=true\n", "");
    row("logged out in another section", ann + "[Settings]\nloggedOut=true\n", "Ann");
    row("a projects folder", "[PathOptions]\nlocalProjectsFolder=/p r/\xc3\xb6\n", "",
        "/p r/\xc3\xb6");
    row("logging out keeps the projects folder",
        ann + "loggedOut=true\n[PathOptions]\nlocalProjectsFolder=/p\n", "", "/p");
    row("textures are copied", "[Settings]\ncopyTexFiles=true\n", "", "", "1");
    row("textures are not copied", "[Settings]\ncopyTexFiles=false\n", "", "", "0");
    row("everything", ann + "[PathOptions]\nlocalProjectsFolder=/p\n[Settings]\ncopyTexFiles=0\n",
        "Ann", "/p", "0");
}

void tst_ModesSettings::settingsReachTheConfiguration()
{
    QFETCH(QByteArray, settings);
    QFETCH(QByteArray, user);
    QFETCH(QByteArray, projects);
    QFETCH(QByteArray, textures);
    const test::Workstation workstation;
    workstation.addPlugin("modo", {});
    workstation.write("tool/settings.ini",
                      settings + "[pluginpaths]\nsize=1\n"
                          + entry(1, "modo", workstation.path("modo").toUtf8()));
    const QString target = workstation.path("modo/Scripts/drask");
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";
    addEmptyPlugin(expected, workstation, "modo/Scripts/drask");
    expected["modo/Scripts/drask/manager.cfg"] = configOf(workstation, user, projects, textures);
    const QStringList start = linesOfSettings(RunMode::Install)
        + linesOfLookUp("modo", workstation.path("modo")) + linesOfPassStart(shown(projects));

    VERIFY_RUN(workstation.run(), 0);
    VERIFY_LEFT(workstation, expected,
                start + linesOfHost("modo", target, Run::First) << "Debug: 0", QByteArray());

    workstation.age("modo/Scripts/drask/manager.cfg");
    VERIFY_RUN(workstation.run(), 0);
    QVERIFY(workstation.isAged("modo/Scripts/drask/manager.cfg"));
    VERIFY_LEFT(workstation, expected,
                start + linesOfHost("modo", target, Run::Second) << "Debug: 0", QByteArray());
}

void tst_ModesSettings::projectsFolderIsLogged()
{
    const test::Workstation workstation;
    workstation.write("tool/settings.ini",
                      "[PathOptions]\nlocalProjectsFolder=/p r/\xc3\xb6 \xe6\x97\xa5\n");
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";
    const QStringList log{"Debug: settings loaded",
                          "Debug: !!!settings local:  QVariant(QString, \"/p r/ö 日\")",
                          "Debug: version:  24", "Debug: 0"};

    for (int run = 1; run <= 2; ++run) {
        VERIFY_RUN(workstation.run(), 0);
        VERIFY_LEFT(workstation, expected, log, QByteArray());
    }
}

void tst_ModesSettings::hostFoldersAreUtf8_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QString>("folder");

    QTest::newRow("plain letters") << QByteArray("host") << QString("host");
    QTest::newRow("two and three bytes a letter")
        << QByteArray("H\xc3\xb6st \xe6\x97\xa5") << QString("Höst 日");
    QTest::newRow("four bytes a letter") << QByteArray("\xf0\x9f\x98\x80") << QString("😀");
    QTest::newRow("an escaped letter") << QByteArray("H\\xf6st") << QString("Höst");
    QTest::newRow("a comma, a semicolon, an equals sign")
        << QByteArray("a, b; c=d") << QString("a, b; c=d");
    QTest::newRow("percent signs") << QByteArray("100%20 %1") << QString("100%20 %1");
}

void tst_ModesSettings::hostFoldersAreUtf8()
{
    QFETCH(QByteArray, written);
    QFETCH(QString, folder);
    const test::Workstation workstation;
    workstation.addPlugin("sketchup", {{"ä.rb", "a"}});
    workstation.write("tool/settings.ini",
                      "[pluginpaths]\nsize=1\n"
                          + entry(1, "sketchup", workstation.path("").toUtf8() + '/' + written));
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";
    const QString host = workstation.path(folder);
    addEmptyPlugin(expected, workstation, folder);
    expected[folder + "/ä.rb"] = "a";
    expected[folder + "/uninstall.ini"] = (host + "/ä.rb\n").toUtf8();

    for (const Run run : {Run::First, Run::Second}) {
        VERIFY_RUN(workstation.run(), 0);
        VERIFY_LEFT(workstation, expected, linesOfEntries({{"sketchup", host}}, run), QByteArray());
    }
}

void tst_ModesSettings::uselessEntryDoesNotDisturbTheNext_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("path");

    QTest::newRow("nothing in it") << QByteArray() << QString() << QString();
    QTest::newRow("no folder") << QByteArray("2\\application=maya\n") << QString("maya")
                               << QString();
    QTest::newRow("an empty folder")
        << QByteArray("2\\application=maya\n2\\path=\n") << QString("maya") << QString();
    QTest::newRow("a folder without a slash")
        << QByteArray("2\\application=maya\n2\\path=tool\n") << QString("maya") << QString("tool");
    QTest::newRow("an unknown key without a slash")
        << QByteArray("2\\application=nuke\n2\\path=tool\n") << QString("nuke") << QString("tool");
    QTest::newRow("keys in capital letters")
        << QByteArray("2\\APPLICATION=maya\n2\\PATH=/m\n") << QString() << QString();
}

void tst_ModesSettings::uselessEntryDoesNotDisturbTheNext()
{
    QFETCH(QByteArray, lines);
    QFETCH(QString, key);
    QFETCH(QString, path);
    const test::Workstation workstation;
    workstation.addPlugin("sketchup", {});
    const QString first = workstation.path("first");
    const QString third = workstation.path("third");
    workstation.write("tool/settings.ini",
                      "[pluginpaths]\nsize=3\n" + entry(1, "sketchup", first.toUtf8()) + lines
                          + entry(3, "sketchup", third.toUtf8()));
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";
    addEmptyPlugin(expected, workstation, "first");
    addEmptyPlugin(expected, workstation, "third");
    const Entries entries{{"sketchup", first}, {key, path}, {"sketchup", third}};

    for (const Run run : {Run::First, Run::Second}) {
        VERIFY_RUN(workstation.run(), 0);
        VERIFY_LEFT(workstation, expected, linesOfEntries(entries, run), QByteArray());
    }
}

void tst_ModesSettings::sizeOfTheArrayDecides_data()
{
    QTest::addColumn<QByteArray>("size");
    QTest::addColumn<int>("entries");

    QTest::newRow("as many as there are") << QByteArray("size=2\n") << 2;
    QTest::newRow("more than there are") << QByteArray("size=5\n") << 5;
    QTest::newRow("fewer than there are") << QByteArray("size=1\n") << 1;
    QTest::newRow("zero") << QByteArray("size=0\n") << 0;
    QTest::newRow("negative") << QByteArray("size=-1\n") << 0;
    QTest::newRow("a text") << QByteArray("size=two\n") << 0;
    QTest::newRow("a fraction") << QByteArray("size=1.5\n") << 0;
    QTest::newRow("empty") << QByteArray("size=\n") << 0;
    QTest::newRow("missing") << QByteArray("") << 0;
}

void tst_ModesSettings::sizeOfTheArrayDecides()
{
    QFETCH(QByteArray, size);
    QFETCH(int, entries);
    const test::Workstation workstation;
    workstation.addPlugin("sketchup", {});
    const QStringList listed{"one", "two"};
    workstation.write("tool/settings.ini",
                      "[pluginpaths]\n" + entry(1, "sketchup", workstation.path("one").toUtf8())
                          + entry(2, "sketchup", workstation.path("two").toUtf8()) + size);
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";
    Entries read;
    for (const QString &name : listed.mid(0, entries)) {
        read.append({"sketchup", workstation.path(name)});
        addEmptyPlugin(expected, workstation, name);
    }
    while (read.size() < entries) {
        read.append({QString(), QString()});
    }

    for (const Run run : {Run::First, Run::Second}) {
        VERIFY_RUN(workstation.run(), 0);
        VERIFY_LEFT(workstation, expected, linesOfEntries(read, run), QByteArray());
    }
}

void tst_ModesSettings::settingsAreNeverWritten_data()
{
    test::addModesOfListedHosts();
    QTest::newRow("uninstall a plug-in")
        << QStringList({"uninstallPlugin", "(sketchup) /nowhere"}) << RunMode::UninstallPlugin;
}

void tst_ModesSettings::settingsAreNeverWritten()
{
    QFETCH(QStringList, arguments);
    QFETCH(RunMode, mode);
    const test::Workstation workstation;
    workstation.addPlugin("sketchup", {});
    workstation.write("tool/settings.ini",
                      "; by hand\n[UserData]\nloggedOut = true\n\n[pluginpaths]\nsize=1\n"
                          + entry(1, "sketchup", workstation.path("h").toUtf8()));
    test::Tree expected = workstation.tree();
    if (test::installs(mode)) {
        expected["tool/version.txt"] = "2.3.10";
        addEmptyPlugin(expected, workstation, "h");
    }
    if (mode == RunMode::OnlyWriteConfig) {
        expected.remove("h/uninstall.ini");
    }
    workstation.age("tool/settings.ini");

    for (const Run run : {Run::First, Run::Second}) {
        VERIFY_RUN(workstation.run(arguments), 0);
        QVERIFY(workstation.isAged("tool/settings.ini"));
        VERIFY_LEFT(workstation, expected, linesOfMode(workstation, mode, run), QByteArray());
    }
}

void tst_ModesSettings::unusableSettingsAreNoFailure_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow(obstacle) << QByteArray();
    QTest::newRow("an empty file") << QByteArray("");
    for (const quint32 seed : {1U, 2U, 3U, 4U}) {
        QTest::addRow("random bytes, seed %u", seed) << randomBytes(seed);
    }
}

void tst_ModesSettings::unusableSettingsAreNoFailure()
{
    QFETCH(QByteArray, content);
    const test::Workstation workstation;
    if (content.isNull()) {
        workstation.makeFolder("tool/settings.ini");
    } else {
        workstation.write("tool/settings.ini", content);
    }
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";

    for (int run = 1; run <= 2; ++run) {
        VERIFY_RUN(workstation.run(), 0);
        VERIFY_LEFT(workstation, expected, linesOfRun(RunMode::Install, {}, {}, {"Debug: 0"}),
                    QByteArray());
    }
}

DRASK_TEST(tst_ModesSettings)
#include "tst_modes_settings.moc"
