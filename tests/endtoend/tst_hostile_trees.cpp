// SPDX-License-Identifier: MIT
#include "inmemory.h"
#include "plantedplugin.h"

#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
    const QString host = plant.path("longer") + "/modo" + QString("/x").repeated(250);
    plant.write("longer/own.txt", "mine");
    plant.write("tool/settings.ini",
                "[pluginpaths]\nsize=1\n1\\application=modo\n1\\path=\"" + host.toUtf8() + "\"\n");
    const auto withoutHost = [&plant] {
        test::Tree tree = plant.treeWithoutLogs();
        for (const QString &name : tree.keys()) {
            if (name.startsWith("longer/modo/")) {
                tree.remove(name);
            }
        }
        return tree;
    };
    test::Tree expected = withoutHost();
    expected["longer/modo/"] = "";
    expected["tool/version.txt"] = "2.3.10";

    VERIFY_RUN(plant.run(), 2);

    QCOMPARE(plant.errors(), "Could not copy file to: \n" + host.toUtf8() + "/Scripts/drask\n");
    test::Tree actual = withoutHost();
    actual["longer/modo/"] = "";
    QCOMPARE(test::treeDifference(actual, expected), QString());
    QCOMPARE(QFile(host + "/Scripts/drask/version.txt").size(), 1);
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
    const test::Tree expected = plant.installed(plant.tree(), copied);

    VERIFY_RUN(plant.run(), 0);
    QCOMPARE(plant.log(), plant.logOfInstall());
    QCOMPARE(plant.manifest(), plant.manifestOf({{"version.txt", ""}, {"a", ""}}, {"b.py"}));

    VERIFY_RUN(plant.uninstall(), 0);
    test::Tree rest = test::PlantedPlugin::withoutPlugin(expected);
    rest.insert(test::plantedIn + "a\nb.py", "a");
    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), rest), QString());
}

void tst_HostileTrees::lineFeedInAFileNameListsAFileOfTheWorkingFolder()
{
    const test::PlantedPlugin plant;
    const test::Tree copied = {{"version.txt", "7"}, {"a\nown.txt", "a"}};
    plant.addPlugin("modo", copied);
    const test::Tree expected = plant.installed(plant.tree(), copied);
    VERIFY_RUN(plant.run(), 0);

    VERIFY_RUN(plant.uninstall(), 0);

    test::Tree rest = test::PlantedPlugin::withoutPlugin(expected);
    rest.insert(test::plantedIn + "a\nown.txt", "a");
    rest.remove("work/own.txt");
    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), rest), QString());
}

void tst_HostileTrees::lineFeedInAFolderNameListsAFileAnywhere()
{
    const test::PlantedPlugin plant;
    // The slash behind the line feed begins a whole path.
    const QString name = '\n' + plant.path("outside/own.txt");
    plant.addPlugin("modo", {{"a" + name, "a"}});
    const test::Tree copied = test::withFolders({{"version.txt", "7"}, {"a" + name, "a"}});
    const test::Tree expected = plant.installed(plant.tree(), copied);
    VERIFY_RUN(plant.run(), 0);

    VERIFY_RUN(plant.uninstall(), 0);

    test::Tree rest = test::PlantedPlugin::withoutPlugin(expected);
    rest.insert(test::plantedIn + "a" + name, "a");
    rest.remove("outside/own.txt");
    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), rest), QString());
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

QTEST_GUILESS_MAIN(tst_HostileTrees)
#include "tst_hostile_trees.moc"
