// SPDX-License-Identifier: MIT
#include "inmemory.h"
#include "plantedplugin.h"
#include "testprogram.h"

#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdio>

/// Plug-ins of a size and with names that nobody ships.
class tst_HostileTrees : public QObject {
    Q_OBJECT

private slots:
    void deepTree();
    void manyFilesInOneFolder();
    void manyFolders();
    void longNames();
    void treeAlmostAsLongAsAPathCanBe();
    void treeThatBecomesTooLongIsReported();
    void oddNames_data();
    void oddNames();
    void namesThatAreNoUtf8AreLeftOut();
    void fileWithALineFeedInItsNameStays();
    void lineFeedInAFileNameListsAFileOfTheWorkingFolder();
    void lineFeedInAFolderNameListsAFileAnywhere();
    void filesNamedLikeTheProgramsOwnAreFilesLikeOthers();

private:
    const test::InMemory memory;
};

namespace {

const int longestName = 255;

/// Folders in each other that leave some room to the 4,096 bytes of a whole path.
QString deepFolder()
{
    return QString(200, 'd').append('/').repeated(18);
}

/// The tree of now with the plug-in in \a target and all of its deepFolder() that has room there.
test::Tree withPluginAsFarAsPathsReach(const test::PlantedPlugin &plant, const QString &target)
{
    test::Tree tree = plant.tree();
    tree.insert("tool/version.txt", "2.3.10");
    tree.insert(target + "/version.txt", "7");
    tree.insert(target + "/manager.cfg", plant.config());
    tree.insert(target + "/uninstall.ini", plant.path(target + "/version.txt\n").toUtf8());
    const QStringList levels = deepFolder().split('/', Qt::SkipEmptyParts);
    QString folder = target;
    for (const QString &level : levels) {
        folder += '/' + level;
        if (plant.path(folder).toUtf8().size() < PATH_MAX) {
            tree.insert(folder + '/', "");
        }
    }
    return test::withFolders(tree);
}

/// A file, or (with a "/" at its end) a folder, whose name may hold bytes that Qt takes for none.
class RawEntry {
public:
    RawEntry(const test::Folder &folder, const QByteArray &name)
        : path(QFile::encodeName(folder.path()) + '/' + name)
    {
        if (path.endsWith('/')) {
            ::mkdir(path.constData(), S_IRWXU);
        } else {
            ::close(::open(path.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
        }
    }
    ~RawEntry()
    {
        static_cast<void>(std::remove(path.constData()));
    }
    RawEntry(const RawEntry &) = delete;
    RawEntry &operator=(const RawEntry &) = delete;

    bool isThere() const
    {
        return ::access(path.constData(), F_OK) == 0;
    }

private:
    QByteArray path;
};

/// Installs twice a plug-in that is \a copied with a file \a name that makes two lines of the
/// manifest. The removal leaves that file and takes \a gone of somebody else.
void verifyLifeWithALineFeed(const test::PlantedPlugin &plant, const test::Tree &copied,
                             const QString &name, const QString &gone)
{
    const int lineFeed = name.indexOf('\n');
    test::Tree listed = {{"version.txt", ""}, {name.left(lineFeed), ""}};
    test::verifyInstallOf(plant, copied, plant.manifestOf(listed, {name.mid(lineFeed + 1)}));
    test::Tree rest = test::PlantedPlugin::withoutPlugin(plant.treeWithoutLogs());
    rest.insert(test::plantedIn + name, "a");
    QCOMPARE(rest.remove(gone), gone.isEmpty() ? 0 : 1);

    VERIFY_RUN(plant.uninstall(), 0);
    VERIFY_LEFT(plant, rest, plant.logOfSecondInstall() + plant.logOfRemoval(), QByteArray());
}

} // namespace

void tst_HostileTrees::deepTree()
{
    const test::PlantedPlugin plant;
    test::Tree files{{"version.txt", "7"}};
    QString folder;
    for (int level = 1; level <= 60; ++level) {
        folder += "d/";
        files.insert(folder + "a.py", QByteArray::number(level));
    }
    plant.addPlugin("modo", files);

    test::verifyLifeOf(plant, test::withFolders(files));
}

void tst_HostileTrees::manyFilesInOneFolder()
{
    const test::PlantedPlugin plant;
    test::Tree files{{"version.txt", "7"}};
    for (int number = 0; number < 10000; ++number) {
        files.insert(QString::number(number), QByteArray::number(number));
    }
    plant.addPlugin("modo", files);

    test::verifyLifeOf(plant, files);
}

void tst_HostileTrees::manyFolders()
{
    const test::PlantedPlugin plant;
    test::Tree files{{"version.txt", "7"}};
    for (int number = 0; number < 1000; ++number) {
        files.insert(QStringLiteral("%1/").arg(number), "");
        plant.makeFolder(QStringLiteral("tool/plugins/modo/%1").arg(number));
    }

    test::verifyLifeOf(plant, files);
}

void tst_HostileTrees::longNames()
{
    const test::PlantedPlugin plant;
    const QString name(longestName, 'x');
    const QString wideName(longestName / 3, QChar(0x65e5));
    const test::Tree files = {{"version.txt", "7"},
                              {name, "ascii"},
                              {wideName, "three bytes a letter"},
                              {QString(longestName, 'y') + '/' + name, "in a folder"}};
    plant.addPlugin("modo", files);

    test::verifyLifeOf(plant, test::withFolders(files));
}

void tst_HostileTrees::treeAlmostAsLongAsAPathCanBe()
{
    const test::PlantedPlugin plant;
    const test::Tree files = {{"version.txt", "7"}, {deepFolder() + "a.py", "a"}};
    plant.addPlugin("modo", files);

    test::verifyLifeOf(plant, test::withFolders(files));
}

void tst_HostileTrees::treeThatBecomesTooLongIsReported()
{
    const test::PlantedPlugin plant;
    plant.addPlugin("modo", {{deepFolder() + "a.py", "a"}});
    // Shipped, the path has room; in the host, it has not.
    const QString host = "longer/modo" + QString("/x").repeated(250);
    plant.write("longer/own.txt", "mine");
    plant.write("tool/settings.ini",
                "[pluginpaths]\nsize=1\n1\\application=modo\n1\\path=\"" + plant.path(host).toUtf8()
                    + "\"\n");
    const QString target = host + "/Scripts/drask";
    const test::Tree expected = withPluginAsFarAsPathsReach(plant, target);
    const QString folder = plant.path(target);
    const QString copy = test::quoted(folder + '/' + deepFolder() + "a.py");
    const QStringList failure{
        "Debug: Could not copy file  "
            + test::quoted(plant.tool("plugins/modo/" + deepFolder() + "a.py")) + "  to  " + copy,
        "Debug: exist check failed - rights problem " + copy};

    // No settings ask for the version that arrives, so the second run copies as well.
    for (const QStringList &lines :
         {test::linesOfCopiedPlugin("modo", folder), test::linesOfReplacedPlugin("modo", folder)}) {
        const QStringList steps = lines.mid(0, 1) + failure + lines.mid(1);
        VERIFY_RUN(plant.run(), 2);
        VERIFY_LEFT(plant, expected, test::logOfPass("modo", plant.path(host), steps, 2),
                    "Could not copy file to: \n" + folder.toUtf8() + '\n');
    }
}

void tst_HostileTrees::oddNames_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("single and double quotes") << "a'b\"c'\".py";
    QTest::newRow("a backslash") << "a\\b.py";
    QTest::newRow("a backslash at the end") << "a\\";
    QTest::newRow("blanks around it") << "  a.py  ";
    QTest::newRow("only a blank") << " ";
    QTest::newRow("a tab") << "a\tb.py";
    QTest::newRow("a bell, an escape, a delete") << "a\a\x1b[31m\x7f.py";
    QTest::newRow("signs of a shell") << "$(rm -rf ~);&|<>`*?[!].py";
    QTest::newRow("an option") << "-rf";
    QTest::newRow("a home folder") << "~";
    QTest::newRow("a place-holder") << "%1%2%n.py";
    QTest::newRow("a name of Qt's own") << ":a.py";
    QTest::newRow("an address") << "file:a.py";
    QTest::newRow("a letter and its accent") << QString::fromUtf8("e\xcc\x81.py");
    QTest::newRow("a sign beyond the basic plane") << QString::fromUtf8("\xf0\x9f\x90\x8d.py");
    QTest::newRow("text that runs to the left") << QString::fromUtf8("\xe2\x80\xaeyp.a");
    QTest::newRow("the line separator of Unicode") << QString::fromUtf8("a\xe2\x80\xa8"
                                                                        "b.py");
    QTest::newRow("a byte-order mark") << QString::fromUtf8("\xef\xbb\xbf"
                                                            "a.py");
}

void tst_HostileTrees::oddNames()
{
    QFETCH(QString, name);
    const test::PlantedPlugin plant;
    const test::Tree files = {{"version.txt", "7"}, {name, "a"}, {"sub " + name + '/' + name, "b"}};
    plant.addPlugin("modo", files);

    test::verifyLifeOf(plant, test::withFolders(files));
}

void tst_HostileTrees::namesThatAreNoUtf8AreLeftOut()
{
#ifndef Q_OS_LINUX
    QSKIP("only file systems of Linux take names that are no UTF-8");
#endif
    const test::PlantedPlugin plant;
    const RawEntry file(plant, "tool/plugins/modo/bad\xff.py");
    const RawEntry folder(plant, "tool/plugins/modo/bad\xc3/");
    const RawEntry fileInFolder(plant, "tool/plugins/modo/bad\xc3/a.py");
    if (!file.isThere() || !folder.isThere()) {
        QSKIP("this file system takes names in UTF-8 alone");
    }

    test::verifyLifeOf(plant, {{"version.txt", "7"}});

    QVERIFY(file.isThere());
    QVERIFY(fileInFolder.isThere());
}

void tst_HostileTrees::fileWithALineFeedInItsNameStays()
{
    const test::PlantedPlugin plant;
    const test::Tree copied = {{"version.txt", "7"}, {"a\nb.py", "a"}};
    plant.addPlugin("modo", copied);

    verifyLifeWithALineFeed(plant, copied, "a\nb.py", {});
}

void tst_HostileTrees::lineFeedInAFileNameListsAFileOfTheWorkingFolder()
{
    const test::PlantedPlugin plant;
    const test::Tree copied = {{"version.txt", "7"}, {"a\nown.txt", "a"}};
    plant.addPlugin("modo", copied);

    verifyLifeWithALineFeed(plant, copied, "a\nown.txt", "work/own.txt");
}

void tst_HostileTrees::lineFeedInAFolderNameListsAFileAnywhere()
{
    const test::PlantedPlugin plant;
    // The slash behind the line feed begins a whole path.
    const QString name = "a\n" + plant.path("outside/own.txt");
    plant.addPlugin("modo", {{name, "a"}});
    const test::Tree copied = test::withFolders({{"version.txt", "7"}, {name, "a"}});

    verifyLifeWithALineFeed(plant, copied, name, "outside/own.txt");
}

void tst_HostileTrees::filesNamedLikeTheProgramsOwnAreFilesLikeOthers()
{
    const test::PlantedPlugin plant;
    const test::Tree files = {{"version.txt", "7"},
                              {"plugin.log", "shipped"},
                              {"pluginError.txt", "shipped"},
                              {"settings.ini", "shipped"},
                              {"drask-installer", "shipped"},
                              {"sub/manager.cfg", "shipped"},
                              {"sub/uninstall.ini", "shipped"},
                              {"sub/version.txt", "8"}};
    plant.addPlugin("modo", files);

    test::verifyLifeOf(plant, test::withFolders(files));
}

DRASK_TEST(tst_HostileTrees)
#include "tst_hostile_trees.moc"
