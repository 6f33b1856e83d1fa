// SPDX-License-Identifier: MIT
#include "localecodec.h"
#include "uninstaller/ov3uninstaller.h"
#include "unitcase.h"

namespace {

/// A machine with three hosts that have old plug-in folders.
struct Hosts : test::Sandbox {
    Hosts()
    {
        makeFolder("Cinema/Plugins/Drask");
        makeFolder("maya2016/scripts/Drask");
        makeFolder("modo/drask");
    }

    /// Writes a list file from \a text, in which "~" stands for the sandbox.
    QStringList foldersOf(const QByteArray &text) const
    {
        write("list", QByteArray(text).replace("~", path().toLocal8Bit()));
        return Ov3Uninstaller::findPluginFolders(path("list"));
    }

    const QString cinema = path("Cinema/Plugins/Drask");
    const QString maya = path("maya2016/scripts/Drask");
    const QString modo = path("modo/drask");
};

} // namespace

/// What a list file leads to.
class tst_Ov3UninstallerFolders : public QObject {
    Q_OBJECT
private slots:
    void foldersComeInTheOrderOfTheFile()
    {
        const Hosts hosts;
        VERIFY_LINES(hosts.foldersOf("path1=~/modo/modo.app\n"
                                     "# a remark\n"
                                     "path2=~/Cinema/CINEMA 4D.app\n"
                                     "path3=~/xsi/XSI.app\n"
                                     "path4=~/maya2016/Maya.app\n"),
                     hosts.modo, hosts.cinema, hosts.maya);
    }

    void lineLeadsToMayasFolder_data()
    {
        const test::Table<QByteArray> table("line");
        table.row("the shortest key", "path=~/maya2016/Maya.app\n");
        table.row("a longer key", "pathMaya2016=~/maya2016/Maya.app\n");
        table.row("a key that goes on in small letters", "pathological=~/maya2016/Maya.app\n");
        table.row("blanks around the equal sign", "pathMaya = ~/maya2016/Maya.app\n");
        table.row("white space around the value", "path= \t ~/maya2016/Maya.app \t \n");
        table.row("a carriage return", "path=~/maya2016/Maya.app\r\n");
        table.row("no line end", "path=~/maya2016/Maya.app");
        table.row("a byte-order mark", "\xef\xbb\xbfpath=~/maya2016/Maya.app\n");
        table.row("a slash at the end", "path=~/maya2016/\n");
    }

    void lineLeadsToMayasFolder()
    {
        QFETCH(QByteArray, line);
        const Hosts hosts;
        QCOMPARE(hosts.foldersOf(line), QStringList(hosts.maya));
    }

    void lineLeadsNowhere_data()
    {
        const test::Table<QByteArray> table("line");
        table.row("a key with a capital", "Path=~/maya2016/Maya.app\n");
        table.row("a key in capitals", "PATH=~/maya2016/Maya.app\n");
        table.row("a blank before the key", " path=~/maya2016/Maya.app\n");
        table.row("another key", "mypath=~/maya2016/Maya.app\n");
        table.row("a remark", "#path=~/maya2016/Maya.app\n");
        table.row("no value", "path=\n");
        table.row("only white space as value", "path= \t \n");
        table.row("a value in quotes", "path=\"~/maya2016/Maya.app\"\n");
        table.row("a second equal sign, which belongs to the value",
                  "path=maya=~/maya2016/Maya.app\n");
        table.row("a colon in the equal sign's place", "path:~/maya2016/Maya.app\n");
        table.row("a carriage return within the value", "path=~/ma\rya2016/Maya.app\n");
        table.row("a host without an old plug-in", "path=~/lightwave/Layout.exe\n");
        table.row("a program that is no host", "path=~/houdini/houdini\n");
        table.row("an empty list", "");
        table.row("empty lines", "\n\r\n\n");
    }

    void lineLeadsNowhere()
    {
        QFETCH(QByteArray, line);
        const Hosts hosts;
        QCOMPARE(hosts.foldersOf(line), QStringList());
    }

    void lineWithoutEqualSignIsAPathItself()
    {
        const Hosts hosts;
        hosts.makeFolder("paths/maya/scripts/Drask");
        const test::WorkingFolder here(hosts.path());
        VERIFY_LINES(hosts.foldersOf("paths/maya/Maya.app  \n"),
                     hosts.path("paths/maya/scripts/Drask"));
    }

    void listIsReadInTheLocalEncoding()
    {
        USE_LATIN1_LOCALE_OR_SKIP();
        const Hosts hosts;
        const QString host = "höst maya";
        hosts.makeFolder(host + "/scripts/Drask");
        QCOMPARE(hosts.foldersOf("path=~/" + host.toLocal8Bit() + "/Maya.app\n"),
                 QStringList(hosts.path(host + "/scripts/Drask")));
    }

    void sameFolderAppearsAsOftenAsItIsNamed()
    {
        const Hosts hosts;
        VERIFY_LINES(hosts.foldersOf("path=~/modo/a\npath=~/modo/a\npath=~/modo/b\n"), hosts.modo,
                     hosts.modo, hosts.modo);
    }

    void fileInAFoldersPlaceCountsAndADanglingLinkDoesNot()
    {
        const Hosts hosts;
        hosts.write("lightwave/Plugins/Drask", "a file");

        VERIFY_LINES(hosts.foldersOf("path=~/lightwave/lwsn\n"),
                     hosts.path("lightwave/Plugins/Drask"));
        QCOMPARE(Ov3Uninstaller::findPluginFiles(hosts.path("lightwave/Plugins/Drask")),
                 QStringList());
        hosts.remove("lightwave/Plugins/Drask");
        hosts.makeLink(hosts.path("nowhere"), "lightwave/Plugins/Drask");
        QCOMPARE(hosts.foldersOf("path=~/lightwave/lwsn\n"), QStringList());
    }

    void highestBlenderVersionDecidesEvenWithoutAPlugin()
    {
        const Hosts hosts;
        hosts.makeFolder("blender/2.79/scripts/startup/adrask");
        VERIFY_LINES(hosts.foldersOf("path=~/blender/blender\n"),
                     hosts.path("blender/2.79/scripts/startup/adrask"));
        hosts.makeFolder("blender/2.80");
        QCOMPARE(hosts.foldersOf("path=~/blender/blender\n"), QStringList());
    }

    void listThatCannotBeOpenedLeadsNowhere_data()
    {
        const test::Table<QString> table("name");
        table.row("a missing file", "none");
        table.row("a missing folder", "none/list");
        table.row("a folder in its place", "modo");
        table.row("a name that is too long", QString(300, 'x'));
    }

    void listThatCannotBeOpenedLeadsNowhere()
    {
        QFETCH(QString, name);
        const Hosts hosts;
        const test::Tree before = hosts.tree();
        const test::LogCapture log;
        QCOMPARE(Ov3Uninstaller::findPluginFolders(hosts.path(name)), QStringList());
        QCOMPARE(Ov3Uninstaller::findPluginFiles(hosts.path(name)), QStringList());
        QCOMPARE(Ov3Uninstaller::deleteOldPlugins(hosts.path(name)), 0);
        VERIFY_TREE(hosts, before);
        QCOMPARE(log.lines(), QStringList());
    }

    void noiseInTheListIsPassedOver()
    {
        const Hosts hosts;
        QByteArray noise;
        for (int byte = 0; byte < 256; ++byte) {
            noise += static_cast<char>(byte);
        }
        QCOMPARE(hosts.foldersOf("\n" + noise.repeated(100) + "\npath=~/modo/modo.app\n"
                                 + "path=" + noise + "\n" + noise),
                 QStringList(hosts.modo));
    }

    void lineOfAMillionCharactersIsRead()
    {
        const Hosts hosts;
        QCOMPARE(hosts.foldersOf("path=" + QByteArray(1000000, ' ') + "~/modo/modo.app"
                                 + QByteArray(1000000, ' ') + "\npath=/maya/"
                                 + QByteArray(1000000, 'x')
                                 + "/Maya.app\npath=~/maya2016/Maya.app\n"),
                 QStringList({hosts.modo, hosts.maya}));
    }
};

DRASK_TEST(tst_Ov3UninstallerFolders)
#include "tst_ov3uninstaller_folders.moc"
