// SPDX-License-Identifier: MIT
#include "hostcatalogue.h"

#include "programfolder.h"
#include "unitcase.h"

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

class tst_HostCatalogue : public QObject {
    Q_OBJECT
private slots:
    void targetFolderIsJoinedAsItStands()
    {
        PluginPathStruct record;
        record.path = "/host/";
        record.pluginSubFolder = "/plugins/drask";
        QCOMPARE(record.targetFolder(), QString("/host//plugins/drask"));
        record.pluginSubFolder = "";
        QCOMPARE(record.targetFolder(), QString("/host/"));
    }

    void everyHostHasItsRow_data()
    {
        const test::Table<QString, QString, QString, int> table("key", "subFolder", "sourceName",
                                                                "version");
        int version = 101;
        for (const Host &host : hosts) {
            table.row(host.key, QString(host.key), QString(host.subFolder),
                      QString(host.sourceName), version++);
        }
    }

    void everyHostHasItsRow()
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

    void tableOfThePagesHasTheSameRows()
    {
        const Host rows[] = {
#include "hosts.inc"
        };
        QVector<Host> expected(std::cbegin(hosts), std::cend(hosts));
        expected.append({maxKey, "/LANGUAGE/scripts/startup/drask", "3ds", "version3ds"});

        QCOMPARE(static_cast<int>(std::size(rows)), static_cast<int>(expected.size()));
        for (int index = 0; index < expected.size(); ++index) {
            QCOMPARE(rows[index].key, expected.at(index).key);
            QCOMPARE(rows[index].subFolder, expected.at(index).subFolder);
            QCOMPARE(rows[index].sourceName, expected.at(index).sourceName);
            QCOMPARE(rows[index].versionKey, expected.at(index).versionKey);
        }
    }

    void maxHasOneRecordPerLanguage()
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

    void versionIsReadAsInteger_data()
    {
        const test::Table<QByteArray, int> table("value", "version");
        table.row("a number", "12", 12);
        table.row("a number in quotes", "\"13\"", 13);
        table.row("a negative number", "-1", -1);
        table.row("the mark of unknown hosts", "-9999", -9999);
        table.row("nothing", "", 0);
        table.row("letters", "abc", 0);
        table.row("letters behind a number", "12a", 0);
        table.row("a version with dots", "1.2.3", 0);
        table.row("a list", "12, 13", 0);
    }

    void versionIsReadAsInteger()
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

    void unknownKeyGivesOneRecord_data()
    {
        const test::Table<QString> table("key");
        table.row("an empty key", "");
        table.row("a host of another make", "nuke");
        table.row("capital letters", "C4D");
        table.row("one capital letter", "Maya");
        table.row("3ds Max with capital letters", "3DSMax");
        table.row("the source folder of 3ds Max", "3ds");
        table.row("a key cut short", "blende");
        table.row("a key with more behind it", "blender2");
        table.row("a blank before a key", " maya");
        table.row("a blank behind a key", "maya ");
        table.row("a key in brackets", "(maya)");
    }

    void unknownKeyGivesOneRecord()
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

    void unusableSettingsGiveVersionZero_data()
    {
        const test::Table<QByteArray> table("content");
        table.row("no file", QByteArray());
        table.row(obstacle, QByteArray());
        table.row("the keys in no section", "versionMaya=7\nversion3ds=7\n");
        table.row("the keys in capital letters", "[plugins]\nVERSIONMAYA=7\nVERSION3DS=7\n");
        table.row("the section with a capital letter", "[Plugins]\nversionMaya=7\nversion3ds=7\n");
    }

    void unusableSettingsGiveVersionZero()
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
        VERIFY_TREE(folder, before);
    }

    void argumentsAreKeptAndLogged()
    {
        const test::ProgramFolder folder;
        const QString path = " /Höst//../ä/";
        for (const char *key : {"maya", maxKey, "", "unknown"}) {
            const test::LogCapture log;
            QCOMPARE(getPluginInfoList(key, path).first().path, path);
            VERIFY_LINES(log.lines(), QStringLiteral("Debug: applicationName \"%1\"").arg(key),
                         QStringLiteral("Debug: path \"%1\"").arg(path));
        }
    }
};

DRASK_TEST_IN_OWN_FOLDER(tst_HostCatalogue)
#include "tst_hostcatalogue.moc"
