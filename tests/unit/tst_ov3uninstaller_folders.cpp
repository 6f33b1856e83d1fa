// SPDX-License-Identifier: MIT
#include "localecodec.h"
#include "logcapture.h"
#include "sandbox.h"
#include "testprogram.h"
#include "uninstaller/ov3uninstaller.h"

#include <QtTest>

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
    void foldersComeInTheOrderOfTheFile();
    void lineLeadsToMayasFolder_data();
    void lineLeadsToMayasFolder();
    void lineLeadsNowhere_data();
    void lineLeadsNowhere();
    void lineWithoutEqualSignIsAPathItself();
    void listIsReadInTheLocalEncoding();
    void sameFolderAppearsAsOftenAsItIsNamed();
    void fileInAFoldersPlaceCounts();
    void danglingLinkInAFoldersPlaceDoesNot();
    void highestBlenderVersionDecidesEvenWithoutAPlugin();
    void listThatCannotBeOpenedLeadsNowhere_data();
    void listThatCannotBeOpenedLeadsNowhere();
    void noiseInTheListIsPassedOver();
    void lineOfAMillionCharactersIsRead();
};

void tst_Ov3UninstallerFolders::foldersComeInTheOrderOfTheFile()
{
    const Hosts hosts;

    QCOMPARE(hosts.foldersOf("path1=~/modo/modo.app\n"
                             "# a remark\n"
                             "path2=~/Cinema/CINEMA 4D.app\n"
                             "path3=~/xsi/XSI.app\n"
                             "path4=~/maya2016/Maya.app\n"),
             QStringList({hosts.modo, hosts.cinema, hosts.maya}));
}

void tst_Ov3UninstallerFolders::lineLeadsToMayasFolder_data()
{
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("the shortest key") << QByteArray("path=~/maya2016/Maya.app\n");
    QTest::newRow("a longer key") << QByteArray("pathMaya2016=~/maya2016/Maya.app\n");
    QTest::newRow("a key that goes on in small letters")
        << QByteArray("pathological=~/maya2016/Maya.app\n");
    QTest::newRow("blanks around the equal sign") << QByteArray("pathMaya = ~/maya2016/Maya.app\n");
    QTest::newRow("white space around the value")
        << QByteArray("path= \t ~/maya2016/Maya.app \t \n");
    QTest::newRow("a carriage return") << QByteArray("path=~/maya2016/Maya.app\r\n");
    QTest::newRow("no line end") << QByteArray("path=~/maya2016/Maya.app");
    QTest::newRow("a byte-order mark") << QByteArray("\xef\xbb\xbfpath=~/maya2016/Maya.app\n");
    QTest::newRow("a slash at the end") << QByteArray("path=~/maya2016/\n");
}

void tst_Ov3UninstallerFolders::lineLeadsToMayasFolder()
{
    QFETCH(QByteArray, line);
    const Hosts hosts;

    QCOMPARE(hosts.foldersOf(line), QStringList(hosts.maya));
}

void tst_Ov3UninstallerFolders::lineLeadsNowhere_data()
{
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("a key with a capital") << QByteArray("Path=~/maya2016/Maya.app\n");
    QTest::newRow("a key in capitals") << QByteArray("PATH=~/maya2016/Maya.app\n");
    QTest::newRow("a blank before the key") << QByteArray(" path=~/maya2016/Maya.app\n");
    QTest::newRow("another key") << QByteArray("mypath=~/maya2016/Maya.app\n");
    QTest::newRow("a remark") << QByteArray("#path=~/maya2016/Maya.app\n");
    QTest::newRow("no value") << QByteArray("path=\n");
    QTest::newRow("only white space as value") << QByteArray("path= \t \n");
    QTest::newRow("a value in quotes") << QByteArray("path=\"~/maya2016/Maya.app\"\n");
    QTest::newRow("a second equal sign, which belongs to the value")
        << QByteArray("path=maya=~/maya2016/Maya.app\n");
    QTest::newRow("a colon in the equal sign's place") << QByteArray("path:~/maya2016/Maya.app\n");
    QTest::newRow("a carriage return within the value")
        << QByteArray("path=~/ma\rya2016/Maya.app\n");
    QTest::newRow("a host without an old plug-in") << QByteArray("path=~/lightwave/Layout.exe\n");
    QTest::newRow("a program that is no host") << QByteArray("path=~/houdini/houdini\n");
    QTest::newRow("an empty list") << QByteArray("");
    QTest::newRow("empty lines") << QByteArray("\n\r\n\n");
}

void tst_Ov3UninstallerFolders::lineLeadsNowhere()
{
    QFETCH(QByteArray, line);
    const Hosts hosts;

    QCOMPARE(hosts.foldersOf(line), QStringList());
}

void tst_Ov3UninstallerFolders::lineWithoutEqualSignIsAPathItself()
{
    const Hosts hosts;
    hosts.makeFolder("paths/maya/scripts/Drask");
    const test::WorkingFolder here(hosts.path());

    QCOMPARE(hosts.foldersOf("paths/maya/Maya.app  \n"),
             QStringList(hosts.path("paths/maya/scripts/Drask")));
}

void tst_Ov3UninstallerFolders::listIsReadInTheLocalEncoding()
{
    const test::Latin1Locale locale;
    const Hosts hosts;
    const QString host = "höst maya";
    hosts.makeFolder(host + "/scripts/Drask");

    QCOMPARE(hosts.foldersOf("path=~/" + host.toLocal8Bit() + "/Maya.app\n"),
             QStringList(hosts.path(host + "/scripts/Drask")));
}

void tst_Ov3UninstallerFolders::sameFolderAppearsAsOftenAsItIsNamed()
{
    const Hosts hosts;

    QCOMPARE(hosts.foldersOf("path=~/modo/a\npath=~/modo/a\npath=~/modo/b\n"),
             QStringList({hosts.modo, hosts.modo, hosts.modo}));
}

void tst_Ov3UninstallerFolders::fileInAFoldersPlaceCounts()
{
    const Hosts hosts;
    hosts.write("lightwave/Plugins/Drask", "a file");

    QCOMPARE(hosts.foldersOf("path=~/lightwave/lwsn\n"),
             QStringList(hosts.path("lightwave/Plugins/Drask")));
    QCOMPARE(Ov3Uninstaller::findPluginFiles(hosts.path("lightwave/Plugins/Drask")), QStringList());
}

void tst_Ov3UninstallerFolders::danglingLinkInAFoldersPlaceDoesNot()
{
    const Hosts hosts;
    hosts.makeLink(hosts.path("nowhere"), "lightwave/Plugins/Drask");

    QCOMPARE(hosts.foldersOf("path=~/lightwave/lwsn\n"), QStringList());
}

void tst_Ov3UninstallerFolders::highestBlenderVersionDecidesEvenWithoutAPlugin()
{
    const Hosts hosts;
    hosts.makeFolder("blender/2.79/scripts/startup/adrask");
    QCOMPARE(hosts.foldersOf("path=~/blender/blender\n"),
             QStringList(hosts.path("blender/2.79/scripts/startup/adrask")));

    hosts.makeFolder("blender/2.80");
    QCOMPARE(hosts.foldersOf("path=~/blender/blender\n"), QStringList());
}

void tst_Ov3UninstallerFolders::listThatCannotBeOpenedLeadsNowhere_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("a missing file") << "none";
    QTest::newRow("a missing folder") << "none/list";
    QTest::newRow("a folder in its place") << "modo";
    QTest::newRow("a name that is too long") << QString(300, 'x');
}

void tst_Ov3UninstallerFolders::listThatCannotBeOpenedLeadsNowhere()
{
    QFETCH(QString, name);
    const Hosts hosts;
    const test::Tree before = hosts.tree();
    const test::LogCapture log;

    QCOMPARE(Ov3Uninstaller::findPluginFolders(hosts.path(name)), QStringList());
    QCOMPARE(Ov3Uninstaller::deleteOldPlugins(hosts.path(name)), 0);
    QCOMPARE(test::treeDifference(hosts.tree(), before), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_Ov3UninstallerFolders::noiseInTheListIsPassedOver()
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

void tst_Ov3UninstallerFolders::lineOfAMillionCharactersIsRead()
{
    const Hosts hosts;

    QCOMPARE(hosts.foldersOf("path=" + QByteArray(1000000, ' ') + "~/modo/modo.app"
                             + QByteArray(1000000, ' ') + "\npath=/maya/" + QByteArray(1000000, 'x')
                             + "/Maya.app\npath=~/maya2016/Maya.app\n"),
             QStringList({hosts.modo, hosts.maya}));
}

DRASK_TEST(tst_Ov3UninstallerFolders)
#include "tst_ov3uninstaller_folders.moc"
