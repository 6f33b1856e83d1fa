// SPDX-License-Identifier: MIT
#include "uninstaller/ov3uninstaller.h"
#include "unitcase.h"

#include <QDir>

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
    void hostsAreRecognisedByAWordAnywhere_data()
    {
        const test::Table<QString, QString> table("path", "host");
        table.row("cinema", "/a/cinema/b", "Cinema 4D");
        table.row("c4d", "/a/my-c4d.exe", "Cinema 4D");
        table.row("an application bundle", "/Applications/MAXON/CINEMA 4D R16/CINEMA 4D.app",
                  "Cinema 4D");
        table.row("3ds", "/Autodesk/3dsmax.exe", "3ds Max");
        table.row("3DS in capitals", "/3DS/x", "3ds Max");
        table.row("max alone", "/Autodesk/max.exe", "");
        table.row("maya", "/x/mayapy", "Maya");
        table.row("Maya in mixed letters", "/x/MaYa.app", "Maya");
        table.row("xsi", "/x/XSI.exe", "XSI");
        table.row("softimage alone", "/softimage/x", "");
        table.row("lightwav", "/x/LIGHTWAV.EXE", "LightWave");
        table.row("lightwave", "/LightWave 11/bin", "LightWave");
        table.row("layout", "/x/Layout.exe", "LightWave");
        table.row("modo", "/x/Modo.app", "Modo");
        table.row("blender", "/Blender/x", "Blender");
        table.row("a word across a slash", "/x/bl/ender", "");
        table.row("a word with a blank in it", "/x/ma ya", "");
        table.row("a word inside another", "/documentoasis/commodore", "Modo");
        table.row("a long s, which is lower case already", QString::fromUtf8("/x/x\xc5\xbfi"), "");
        table.row("nothing", "", "");
    }

    void hostsAreRecognisedByAWordAnywhere()
    {
        QFETCH(QString, path);
        QTEST(recognisedHosts(path), "host");
    }

    void pluginFolderLiesBesideTheProgram_data()
    {
        const test::Table<int> table("index");
        for (int index = 0; hosts[index].folder != nullptr; ++index) {
            table.row(hosts[index].name, index);
        }
    }

    void pluginFolderLiesBesideTheProgram()
    {
        QFETCH(int, index);
        const Host &host = hosts[index];
        const QString program = QString("/My Hosts/%1 1.0/Program.app").arg(host.word);
        const QString folder = QString("/My Hosts/%1 1.0").arg(host.word) + host.folder;
        QCOMPARE(host.pluginFolder(program), folder);
        QCOMPARE(Ov3Uninstaller::getProgramPluginFolder(program), folder);
    }

    void pluginFolderOfUnusualPaths_data()
    {
        const test::Table<QString, QString> table("path", "folder");
        const QString here = QDir::currentPath();
        table.row("a slash at the end", "/a/maya/", "/a/maya/scripts/Drask");
        table.row("in the root folder", "/maya", "//scripts/Drask");
        table.row("without a folder", "maya", here + "/scripts/Drask");
        table.row("with a relative folder", "apps/maya", here + "/apps/scripts/Drask");
        table.row("with a folder to go up, which is cleaned", "/a/b/../maya/x",
                  "/a/maya/scripts/Drask");
        table.row("with letters outside ASCII", "/h\xc3\xb6me/maya", "/h\xc3\xb6me/scripts/Drask");
    }

    void pluginFolderOfUnusualPaths()
    {
        QFETCH(QString, path);
        QTEST(Ov3Uninstaller::getMayaPath(path), "folder");
    }

    void gettersDoNotAskTheDetectors()
    {
        QCOMPARE(Ov3Uninstaller::getC4DPath("/apps/x"), QString("/apps/Plugins/Drask"));
        QCOMPARE(Ov3Uninstaller::getXsiPath("/apps/maya"), QString("/apps/Plugins"));
    }

    void firstHostThatRecognisesAPathDecides_data()
    {
        const test::Table<QString, QString> table("path", "folder");
        for (const Host &first : hosts) {
            for (const Host *second = &first + 1; second != std::end(hosts); ++second) {
                const QString name = QString("%1 before %2").arg(first.name, second->name);
                table.row(qPrintable(name), QString("/hosts/%1/%2").arg(second->word, first.word),
                          QString("/hosts/") + second->word + first.folder);
            }
        }
    }

    void firstHostThatRecognisesAPathDecides()
    {
        QFETCH(QString, path);
        QTEST(Ov3Uninstaller::getProgramPluginFolder(path), "folder");
    }

    void pathOfNoHostHasNoFolder_data()
    {
        const test::Table<QString> table("path");
        table.row("an empty path", "");
        table.row("a path without a host's word", "/Applications/Houdini/houdini");
        table.row("a Blender path without versions", "/nowhere/blender");
    }

    void pathOfNoHostHasNoFolder()
    {
        QFETCH(QString, path);
        QCOMPARE(Ov3Uninstaller::getProgramPluginFolder(path), QString());
    }

    void blenderHasTheHighestOfItsVersions_data()
    {
        const test::Table<QStringList, QString> table("versions", "chosen");
        table.row("no version", QStringList(), "");
        table.row("an old, a newer and the newest", QStringList({"2.49", "2.79", "2.80"}), "2.80");
        table.row("only an old one", QStringList("2.49"), "");
        table.row("2.57, below the lowest", QStringList("2.57"), "");
        table.row("2.58, the lowest", QStringList({"2.57", "2.58"}), "2.58");
        table.row("2.59 before 2.58", QStringList({"2.58", "2.59"}), "2.59");
        table.row("2.99, the highest", QStringList({"2.98", "2.99"}), "2.99");
        table.row("2.100, above the highest", QStringList("2.100"), "");
        table.row("2.100 beside 2.58", QStringList({"2.100", "2.58"}), "2.58");
        table.row("one digit", QStringList({"2.9", "2.6"}), "");
        table.row("a leading zero", QStringList("2.065"), "");
        table.row("a third number", QStringList("2.79.1"), "");
        table.row("a later generation", QStringList({"3.6", "4.80"}), "");
    }

    void blenderHasTheHighestOfItsVersions()
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
        QCOMPARE(Ov3Uninstaller::getProgramPluginFolder(sandbox.path("Blender/blender.app")),
                 folder);
    }

    void blenderTakesAFileForAVersion()
    {
        const test::Sandbox sandbox;
        sandbox.makeFolder("2.70/scripts/startup/adrask");
        sandbox.write("2.71", "");
        QCOMPARE(Ov3Uninstaller::getBlenderPath(sandbox.path("blender")),
                 sandbox.path("2.71/scripts/startup/adrask"));
    }
};

DRASK_TEST(tst_Ov3Uninstaller)
#include "tst_ov3uninstaller.moc"
