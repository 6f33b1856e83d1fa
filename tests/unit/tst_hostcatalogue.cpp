// SPDX-License-Identifier: MIT
#include "hostcatalogue.h"

#include "logcapture.h"
#include "programfolder.h"
#include "testprogram.h"

#include <QtTest>

class tst_HostCatalogue : public QObject {
    Q_OBJECT

private slots:
    void targetFolderIsJoinedAsItStands();
    void everyHostHasItsRow_data();
    void everyHostHasItsRow();
    void tableOfThePagesHasTheSameRows();
    void maxHasOneRecordPerLanguage();
    void versionIsReadAsInteger_data();
    void versionIsReadAsInteger();
    void unknownKeyGivesOneRecord_data();
    void unknownKeyGivesOneRecord();
    void unusableSettingsGiveVersionZero_data();
    void unusableSettingsGiveVersionZero();
    void argumentsAreKeptAndLogged();
};

namespace {

struct Host {
    const char *key;
    const char *subFolder;
    const char *sourceName;
    const char *versionKey;
};

// clang-format off
const Host hosts[] = {
    {"c4d",       "/plugins/drask",             "Cinema4D",   "versionCinema4d"},
    {"c4d14",     "/plugins/drask",             "Cinema4D14", "versionCinema4d14"},
    {"c4d21",     "/plugins/drask",             "Cinema4D21", "versionCinema4d21"},
    {"blender",   "/scripts/startup/adrask",    "Blender",    "versionBlender"},
    {"blender28", "/scripts/startup/adrask",    "Blender28",  "versionBlender28"},
    {"xsi",       "/Application/Plugins/drask", "xsi",        "versionXSI"},
    {"lightwave", "/Plugins/drask",             "lightwave",  "versionLightwave"},
    {"maya",      "/scripts/drask",             "maya",       "versionMaya"},
    {"modo",      "/Scripts/drask",             "modo",       "versionModo"},
    {"rhino",     "/Plug-ins/Drask",            "rhino",      "versionRhino"},
    {"revit",     "/Plugins/drask",             "revit",      "versionRevit"},
    {"houdini",   "/Plugins/drask",             "houdini",    "versionHoudini"},
    {"sketchup",  "",                           "sketchup",   "versionSketchup"},
    {"clarisse",  "/drask",                     "clarisse",   "versionClarisse"},
};
// clang-format on

const char maxKey[] = "3dsmax";
const char obstacle[] = "a folder stands in its place";

/// Settings in which no two hosts want the same version: the rows of the table from 101 on, 3ds Max
/// 100.
QByteArray settingsWithAllVersions()
{
    QByteArray text = "[plugins]\nversion3ds=100\n";
    int version = 101;
    for (const Host &host : hosts) {
        text += QByteArray(host.versionKey) + '=' + QByteArray::number(version++) + '\n';
    }
    return text;
}

QList<PluginPathStruct> recordsOf(const QString &key, const QString &path)
{
    const test::LogCapture log;
    return getPluginInfoList(key, path);
}

} // namespace

void tst_HostCatalogue::targetFolderIsJoinedAsItStands()
{
    PluginPathStruct record;
    record.path = "/host/";
    record.pluginSubFolder = "/plugins/drask";
    QCOMPARE(record.targetFolder(), QString("/host//plugins/drask"));

    record.pluginSubFolder = "";
    QCOMPARE(record.targetFolder(), QString("/host/"));
}

void tst_HostCatalogue::everyHostHasItsRow_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("subFolder");
    QTest::addColumn<QString>("sourceName");
    QTest::addColumn<int>("version");

    int version = 101;
    for (const Host &host : hosts) {
        QTest::newRow(host.key) << QString(host.key) << QString(host.subFolder)
                                << QString(host.sourceName) << version++;
    }
}

void tst_HostCatalogue::everyHostHasItsRow()
{
    QFETCH(QString, key);
    QFETCH(QString, subFolder);
    QFETCH(QString, sourceName);
    QFETCH(int, version);
    const test::ProgramFolder folder;
    folder.write("settings.ini", settingsWithAllVersions());

    const QList<PluginPathStruct> records = recordsOf(key, "/hosts/one");

    QCOMPARE(records.size(), 1);
    const PluginPathStruct &record = records.first();
    QCOMPARE(record.applicationName, key);
    QCOMPARE(record.path, QString("/hosts/one"));
    QCOMPARE(record.pluginSubFolder, subFolder);
    QCOMPARE(record.sourceFolder, folder.path("plugins/" + sourceName));
    QCOMPARE(record.version, version);
    QCOMPARE(record.targetFolder(), "/hosts/one" + subFolder);
}

void tst_HostCatalogue::tableOfThePagesHasTheSameRows()
{
    const Host rows[] = {
#include "hosts.inc"
    };
    QVector<Host> expected(std::cbegin(hosts), std::cend(hosts));
    expected.append({maxKey, "/LANGUAGE/scripts/startup/drask", "3ds", "version3ds"});

    QCOMPARE(static_cast<int>(std::size(rows)), expected.size());
    for (int index = 0; index < expected.size(); ++index) {
        QCOMPARE(rows[index].key, expected.at(index).key);
        QCOMPARE(rows[index].subFolder, expected.at(index).subFolder);
        QCOMPARE(rows[index].sourceName, expected.at(index).sourceName);
        QCOMPARE(rows[index].versionKey, expected.at(index).versionKey);
    }
}

void tst_HostCatalogue::maxHasOneRecordPerLanguage()
{
    const test::ProgramFolder folder;
    folder.write("settings.ini", settingsWithAllVersions());
    const QStringList languages{"CHS", "DEU", "ENU", "FRA", "JPN", "KOR"};

    const QList<PluginPathStruct> records = recordsOf(maxKey, "/hosts/max");

    QCOMPARE(records.size(), languages.size());
    for (int i = 0; i < records.size(); ++i) {
        const PluginPathStruct &record = records.at(i);
        QCOMPARE(record.applicationName, QString(maxKey));
        QCOMPARE(record.path, QString("/hosts/max"));
        QCOMPARE(record.pluginSubFolder, "/" + languages.at(i) + "/scripts/startup/drask");
        QCOMPARE(record.sourceFolder, folder.path("plugins/3ds"));
        QCOMPARE(record.version, 100);
    }
}

void tst_HostCatalogue::versionIsReadAsInteger_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("version");

    QTest::newRow("a number") << QByteArray("12") << 12;
    QTest::newRow("a number in quotes") << QByteArray("\"13\"") << 13;
    QTest::newRow("a negative number") << QByteArray("-1") << -1;
    QTest::newRow("the mark of unknown hosts") << QByteArray("-9999") << -9999;
    QTest::newRow("nothing") << QByteArray("") << 0;
    QTest::newRow("letters") << QByteArray("abc") << 0;
    QTest::newRow("letters behind a number") << QByteArray("12a") << 0;
    QTest::newRow("a version with dots") << QByteArray("1.2.3") << 0;
    QTest::newRow("a list") << QByteArray("12, 13") << 0;
}

void tst_HostCatalogue::versionIsReadAsInteger()
{
    QFETCH(QByteArray, value);
    QFETCH(int, version);
    const test::ProgramFolder folder;
    // The name of the row makes each file a different one in size.
    folder.write("settings.ini",
                 QByteArray("[plugins]\nversionMaya=") + value + "\nversion3ds=" + value
                     + "\nrow=" + QTest::currentDataTag() + '\n');

    QCOMPARE(recordsOf("maya", "/m").value(0).version, version);
    QCOMPARE(recordsOf(maxKey, "/m").value(5).version, version);
}

void tst_HostCatalogue::unknownKeyGivesOneRecord_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("an empty key") << QString("");
    QTest::newRow("a host of another make") << QString("nuke");
    QTest::newRow("capital letters") << QString("C4D");
    QTest::newRow("one capital letter") << QString("Maya");
    QTest::newRow("3ds Max with capital letters") << QString("3DSMax");
    QTest::newRow("the source folder of 3ds Max") << QString("3ds");
    QTest::newRow("a key cut short") << QString("blende");
    QTest::newRow("a key with more behind it") << QString("blender2");
    QTest::newRow("a blank before a key") << QString(" maya");
    QTest::newRow("a blank behind a key") << QString("maya ");
    QTest::newRow("a key in brackets") << QString("(maya)");
}

void tst_HostCatalogue::unknownKeyGivesOneRecord()
{
    QFETCH(QString, key);
    const test::ProgramFolder folder;
    folder.write("settings.ini", settingsWithAllVersions());

    const QList<PluginPathStruct> records = recordsOf(key, "/hosts/one");

    QCOMPARE(records.size(), 1);
    QCOMPARE(records.first().applicationName, key);
    QCOMPARE(records.first().path, QString("/hosts/one"));
    QCOMPARE(records.first().pluginSubFolder, QString(""));
    QVERIFY(!records.first().pluginSubFolder.isNull());
    QCOMPARE(records.first().sourceFolder, QString(""));
    QVERIFY(!records.first().sourceFolder.isNull());
    QCOMPARE(records.first().version, -9999);
}

void tst_HostCatalogue::unusableSettingsGiveVersionZero_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("no file") << QByteArray();
    QTest::newRow(obstacle) << QByteArray();
    QTest::newRow("the keys in no section") << QByteArray("versionMaya=7\nversion3ds=7\n");
    QTest::newRow("the keys in capital letters")
        << QByteArray("[plugins]\nVERSIONMAYA=7\nVERSION3DS=7\n");
    QTest::newRow("the section with a capital letter")
        << QByteArray("[Plugins]\nversionMaya=7\nversion3ds=7\n");
}

void tst_HostCatalogue::unusableSettingsGiveVersionZero()
{
    QFETCH(QByteArray, content);
    const test::ProgramFolder folder;
    if (!content.isNull()) {
        folder.write("settings.ini", content);
    } else if (qstrcmp(QTest::currentDataTag(), obstacle) == 0) {
        folder.makeFolder("settings.ini");
    }
    const test::Tree before = folder.tree();

    const QList<PluginPathStruct> maya = recordsOf("maya", "/m");
    const QList<PluginPathStruct> max = recordsOf(maxKey, "/x");

    QCOMPARE(maya.size(), 1);
    QCOMPARE(maya.first().version, 0);
    QCOMPARE(maya.first().sourceFolder, folder.path("plugins/maya"));
    QCOMPARE(max.size(), 6);
    QCOMPARE(max.last().version, 0);
    QCOMPARE(test::treeDifference(folder.tree(), before), QString());
}

void tst_HostCatalogue::argumentsAreKeptAndLogged()
{
    const test::ProgramFolder folder;
    const QString path = " /Höst//../ä/";
    for (const char *key : {"maya", maxKey, "", "unknown"}) {
        const test::LogCapture log;

        QCOMPARE(getPluginInfoList(key, path).first().path, path);

        QCOMPARE(log.lines(),
                 QStringList({QStringLiteral("Debug: applicationName \"%1\"").arg(key),
                              QStringLiteral("Debug: path \"%1\"").arg(path)}));
    }
}

DRASK_TEST_IN_OWN_FOLDER(tst_HostCatalogue)
#include "tst_hostcatalogue.moc"
