// SPDX-License-Identifier: MIT
#include "sandbox.h"
#include "testprogram.h"
#include "uninstaller/ov3uninstaller.h"

#include <QDir>
#include <QtTest>

namespace {

using Uninstaller = Ov3Uninstaller;

/// The hosts in the order in which they are asked; a path that holds the words of two belongs to
/// the one that is asked first.
struct Host {
    const char *name;
    bool (*recognises)(const QString &path);
    QString (*pluginFolder)(const QString &path);
    const char *word;
    const char *folder; ///< behind the host's installation folder; none for Blender
};

// clang-format off
constexpr Host hosts[] = {
    {"Cinema 4D", Uninstaller::isC4DPath,     Uninstaller::getC4DPath,     "c4d",      "/Plugins/Drask"},
    {"3ds Max",   Uninstaller::isMaxPath,     Uninstaller::getMaxPath,     "3ds",      "/scripts/startup/drask"},
    {"Maya",      Uninstaller::isMayaPath,    Uninstaller::getMayaPath,    "maya",     "/scripts/Drask"},
    {"XSI",       Uninstaller::isXsiPath,     Uninstaller::getXsiPath,     "xsi",      "/Plugins"},
    {"LightWave", Uninstaller::isLwvPath,     Uninstaller::getLwvPath,     "lightwav", "/Plugins/Drask"},
    {"Modo",      Uninstaller::isModoPath,    Uninstaller::getModoPath,    "modo",     "/drask"},
    {"Blender",   Uninstaller::isBlenderPath, Uninstaller::getBlenderPath, "blender",  nullptr},
};
// clang-format on

/// The name of the one host whose detector says yes; several, or none, show as such.
QString recognisedHosts(const QString &path)
{
    QStringList names;
    for (const Host &host : hosts) {
        if (host.recognises(path)) {
            names << host.name;
        }
    }
    return names.join(" and ");
}

} // namespace

/// Which host a path belongs to, and where it kept its plug-in.
class tst_Ov3Uninstaller : public QObject {
    Q_OBJECT

private slots:
    void hostsAreRecognisedByAWordAnywhere_data();
    void hostsAreRecognisedByAWordAnywhere();
    void pluginFolderLiesBesideTheProgram_data();
    void pluginFolderLiesBesideTheProgram();
    void pluginFolderOfUnusualPaths_data();
    void pluginFolderOfUnusualPaths();
    void gettersDoNotAskTheDetectors();
    void firstHostThatRecognisesAPathDecides_data();
    void firstHostThatRecognisesAPathDecides();
    void pathOfNoHostHasNoFolder_data();
    void pathOfNoHostHasNoFolder();
    void blenderHasTheHighestOfItsVersions_data();
    void blenderHasTheHighestOfItsVersions();
    void blenderTakesAFileForAVersion();
};

void tst_Ov3Uninstaller::hostsAreRecognisedByAWordAnywhere_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("host");

    const auto addPath = [](const char *name, const QString &path, const char *host) {
        QTest::newRow(name) << path << host;
    };
    addPath("cinema", "/a/cinema/b", "Cinema 4D");
    addPath("c4d", "/a/my-c4d.exe", "Cinema 4D");
    addPath("an application bundle", "/Applications/MAXON/CINEMA 4D R16/CINEMA 4D.app",
            "Cinema 4D");
    addPath("3ds", "/Autodesk/3dsmax.exe", "3ds Max");
    addPath("3DS in capitals", "/3DS/x", "3ds Max");
    addPath("max alone", "/Autodesk/max.exe", "");
    addPath("maya", "/x/mayapy", "Maya");
    addPath("Maya in mixed letters", "/x/MaYa.app", "Maya");
    addPath("xsi", "/x/XSI.exe", "XSI");
    addPath("softimage alone", "/softimage/x", "");
    addPath("lightwav", "/x/LIGHTWAV.EXE", "LightWave");
    addPath("lightwave", "/LightWave 11/bin", "LightWave");
    addPath("layout", "/x/Layout.exe", "LightWave");
    addPath("modo", "/x/Modo.app", "Modo");
    addPath("blender", "/Blender/x", "Blender");
    addPath("a word across a slash", "/x/bl/ender", "");
    addPath("a word with a blank in it", "/x/ma ya", "");
    addPath("a word inside another", "/documentoasis/commodore", "Modo");
    addPath("a long s, which is lower case already", QString::fromUtf8("/x/x\xc5\xbfi"), "");
    addPath("nothing", "", "");
}

void tst_Ov3Uninstaller::hostsAreRecognisedByAWordAnywhere()
{
    QFETCH(QString, path);

    QTEST(recognisedHosts(path), "host");
}

void tst_Ov3Uninstaller::pluginFolderLiesBesideTheProgram_data()
{
    QTest::addColumn<int>("index");

    for (int index = 0; hosts[index].folder != nullptr; ++index) {
        QTest::newRow(hosts[index].name) << index;
    }
}

void tst_Ov3Uninstaller::pluginFolderLiesBesideTheProgram()
{
    QFETCH(int, index);
    const Host &host = hosts[index];
    const QString program = QString("/My Hosts/%1 1.0/Program.app").arg(host.word);
    const QString folder = QString("/My Hosts/%1 1.0").arg(host.word) + host.folder;

    QCOMPARE(host.pluginFolder(program), folder);
    QCOMPARE(Ov3Uninstaller::getProgramPluginFolder(program), folder);
}

void tst_Ov3Uninstaller::pluginFolderOfUnusualPaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("folder");

    const QString here = QDir::currentPath();
    QTest::newRow("a slash at the end") << "/a/maya/"
                                        << "/a/maya/scripts/Drask";
    QTest::newRow("in the root folder") << "/maya"
                                        << "//scripts/Drask";
    QTest::newRow("without a folder") << "maya" << here + "/scripts/Drask";
    QTest::newRow("with a relative folder") << "apps/maya" << here + "/apps/scripts/Drask";
    QTest::newRow("with a folder to go up, which is cleaned") << "/a/b/../maya/x"
                                                              << "/a/maya/scripts/Drask";
    QTest::newRow("with letters outside ASCII") << QString::fromUtf8("/h\xc3\xb6me/maya")
                                                << QString::fromUtf8("/h\xc3\xb6me/scripts/Drask");
}

void tst_Ov3Uninstaller::pluginFolderOfUnusualPaths()
{
    QFETCH(QString, path);

    QTEST(Ov3Uninstaller::getMayaPath(path), "folder");
}

void tst_Ov3Uninstaller::gettersDoNotAskTheDetectors()
{
    QCOMPARE(Ov3Uninstaller::getC4DPath("/apps/x"), QString("/apps/Plugins/Drask"));
    QCOMPARE(Ov3Uninstaller::getXsiPath("/apps/maya"), QString("/apps/Plugins"));
}

void tst_Ov3Uninstaller::firstHostThatRecognisesAPathDecides_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("folder");

    for (const Host &first : hosts) {
        for (const Host *second = &first + 1; second != std::end(hosts); ++second) {
            const QString name = QString("%1 before %2").arg(first.name, second->name);
            QTest::newRow(qPrintable(name)) << QString("/hosts/%1/%2").arg(second->word, first.word)
                                            << QString("/hosts/") + second->word + first.folder;
        }
    }
}

void tst_Ov3Uninstaller::firstHostThatRecognisesAPathDecides()
{
    QFETCH(QString, path);

    QTEST(Ov3Uninstaller::getProgramPluginFolder(path), "folder");
}

void tst_Ov3Uninstaller::pathOfNoHostHasNoFolder_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("an empty path") << "";
    QTest::newRow("a path without a host's word") << "/Applications/Houdini/houdini";
    QTest::newRow("a Blender path without versions") << "/nowhere/blender";
}

void tst_Ov3Uninstaller::pathOfNoHostHasNoFolder()
{
    QFETCH(QString, path);

    QCOMPARE(Ov3Uninstaller::getProgramPluginFolder(path), QString());
}

void tst_Ov3Uninstaller::blenderHasTheHighestOfItsVersions_data()
{
    QTest::addColumn<QStringList>("versions");
    QTest::addColumn<QString>("chosen");

    QTest::newRow("no version") << QStringList() << "";
    QTest::newRow("an old, a newer and the newest")
        << QStringList({"2.49", "2.79", "2.80"}) << "2.80";
    QTest::newRow("only an old one") << QStringList("2.49") << "";
    QTest::newRow("2.57, below the lowest") << QStringList("2.57") << "";
    QTest::newRow("2.58, the lowest") << QStringList({"2.57", "2.58"}) << "2.58";
    QTest::newRow("2.59 before 2.58") << QStringList({"2.58", "2.59"}) << "2.59";
    QTest::newRow("2.99, the highest") << QStringList({"2.98", "2.99"}) << "2.99";
    QTest::newRow("2.100, above the highest") << QStringList("2.100") << "";
    QTest::newRow("2.100 beside 2.58") << QStringList({"2.100", "2.58"}) << "2.58";
    QTest::newRow("one digit") << QStringList({"2.9", "2.6"}) << "";
    QTest::newRow("a leading zero") << QStringList("2.065") << "";
    QTest::newRow("a third number") << QStringList("2.79.1") << "";
    QTest::newRow("a later generation") << QStringList({"3.6", "4.80"}) << "";
}

void tst_Ov3Uninstaller::blenderHasTheHighestOfItsVersions()
{
    QFETCH(QStringList, versions);
    QFETCH(QString, chosen);
    const test::Sandbox sandbox;
    for (const QString &version : versions) {
        sandbox.makeFolder("Blender/" + version);
    }
    const QString folder = chosen.isEmpty()
        ? QString()
        : sandbox.path("Blender/" + chosen + "/scripts/startup/adrask");

    QCOMPARE(Ov3Uninstaller::getBlenderPath(sandbox.path("Blender/blender.app")), folder);
    QCOMPARE(Ov3Uninstaller::getProgramPluginFolder(sandbox.path("Blender/blender.app")), folder);
}

void tst_Ov3Uninstaller::blenderTakesAFileForAVersion()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("2.70/scripts/startup/adrask");
    sandbox.write("2.71", "");

    QCOMPARE(Ov3Uninstaller::getBlenderPath(sandbox.path("blender")),
             sandbox.path("2.71/scripts/startup/adrask"));
}

DRASK_TEST(tst_Ov3Uninstaller)
#include "tst_ov3uninstaller.moc"
