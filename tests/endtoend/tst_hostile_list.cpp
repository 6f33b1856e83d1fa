// SPDX-License-Identifier: MIT
#include "workstation.h"

#include <QtTest>

/// Lists for "ov3uninstall" that no manager wrote. Whatever a line leads to, only files with a name
/// of the earlier generation go, and the run says nothing but its result.
class tst_HostileList : public QObject {
    Q_OBJECT

private slots:
    void linesLeadToFolders_data();
    void linesLeadToFolders();
    void encodingsOfAList_data();
    void encodingsOfAList();
    void hugeLinesAreOneLine_data();
    void hugeLinesAreOneLine();
    void manyLinesAreReadToTheEnd_data();
    void manyLinesAreReadToTheEnd();
    void listThatIsALinkIsReadThroughIt();
    void listMayLieInAPluginFolder();
    void linkInThePluginFoldersPlace_data();
    void linkInThePluginFoldersPlace();
    void oddTreesAreSearchedToTheEnd_data();
    void oddTreesAreSearchedToTheEnd();
    void foldersWithLegacyNamesStayAndAreSearched();
};

namespace {

const QString mayaFile = "Hosts/maya/scripts/Drask/drask.py";
const QString modoFile = "Hosts/modo/drask/manager.cfg";
const QString workFile = "work/scripts/Drask/drask.py";
const QString layoutFile = "layouts/Plugins/Drask/logo.jpg";
const QString xsiFile = "Hosts/xsi/Plugins/Own/utils.pyc";
const QString brokenName = "Warning: Broken filename passed to function";

/// Legacy plug-ins, also where nobody expects one, with files of others around them. Runs start in
/// the folder "work".
class Victim : public test::Workstation {
public:
    Victim()
    {
        for (const QString &name : {mayaFile, modoFile, workFile, layoutFile, xsiFile}) {
            write(name, "old");
        }
        for (const char *name :
             {"drask.py", "work/drask.py", "work/scripts/drask.py", "work/scripts/Drask/own.py",
              "outside/drask.py", "outside/deep/drask.py", "Hosts/maya/scripts/Drask/own.py",
              "Hosts/modo/manager.cfg", "tool/drask.py"}) {
            write(name, "mine");
        }
    }

    /// "@" in \a lines stands for the sandbox.
    void writeList(const QByteArray &lines) const
    {
        write("list", QByteArray(lines).replace('@', path().toUtf8()));
    }

    test::RunResult clean() const
    {
        test::RunOptions options;
        options.workingFolder = path("work");
        return run({"ov3uninstall", path("list")}, options);
    }

    /// Qt warns about each name with a zero byte in it as often as it meets it.
    QStringList logWithoutBrokenNames() const
    {
        QStringList lines = log();
        lines.removeAll(brokenName);
        return lines;
    }

    test::Tree treeWithout(const QStringList &names) const
    {
        test::Tree rest = tree();
        for (const QString &name : names) {
            rest.remove(name);
        }
        return rest;
    }
};

} // namespace

/// Runs the removal, and wants \a gone and nothing else to be gone. A second removal would find
/// nothing.
#define VERIFY_CLEANING(victim, gone)                                                              \
    do {                                                                                           \
        const test::Tree rest = (victim).treeWithout(gone);                                        \
        VERIFY_RUN((victim).clean(), 0);                                                           \
        QCOMPARE(test::treeDifference((victim).treeWithoutLogs(), rest), QString());               \
        QCOMPARE((victim).logWithoutBrokenNames(), QStringList("Debug: 0"));                       \
        QVERIFY((victim).errors().isNull());                                                       \
    } while (false)

void tst_HostileList::linesLeadToFolders_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QStringList>("gone");
    const auto row = [](const char *name, const QByteArray &lines, const QStringList &gone = {}) {
        QTest::newRow(name) << lines << gone;
    };

    row("a bare name is a program in the working folder", "path=maya\n", {workFile});
    row("a dot before it", "path=./maya.app\n", {workFile});
    row("a bare name that is no host", "path=x.app\n");
    row("two dots that lead out", "path=../layouts/x\n", {layoutFile});
    row("two dots in the middle", "path=@/Hosts/modo/../maya/Maya.app\n", {mayaFile});
    row("two dots behind a folder that is missing", "path=@/Hosts/missing/../maya/Maya.app\n",
        {mayaFile});
    row("more dots than there are folders",
        "path=@" + QByteArray("/..").repeated(100) + "/maya/Maya.app\n");
    row("slashes too many", "path=@//Hosts///maya//Maya.app\n", {mayaFile});
    row("the host's folder with a slash behind it", "path=@/Hosts/maya/\n", {mayaFile});
    row("the host's folder without one", "path=@/Hosts/maya\n");
    row("a program that is a file somewhere else", "path=@/Hosts/maya/missing/../x\n", {mayaFile});
    row("a word of a host by chance", "path=@/layouts/x\n", {layoutFile});
    row("a whole plug-ins folder of others", "path=@/Hosts/xsi/anything\n", {xsiFile});
    row("the root folder", "path=/maya\npath=/modo\npath=/3ds\n");
    row("two hosts in one line", "path=@/Hosts/maya/x path=@/Hosts/modo/x\n");
    row("any key that begins with path", "pathological nonsense=@/Hosts/modo/x\n", {modoFile});
    row("more than one equal sign", "path==@/Hosts/modo/x\n");
    row("quotes around the value", "path=\"@/Hosts/modo/x\"\n");
    row("what a shell or a browser would take for a path",
        "path=~/maya/x\npath=$PWD/maya/x\npath=@/Hosts/*/maya\npath=file://@/Hosts/maya/x\n");
    row("what Qt takes for names of its own", "path=:/drask/modo\npath=:modo\npath=qrc:/modo/x\n");
}

void tst_HostileList::linesLeadToFolders()
{
    QFETCH(QByteArray, lines);
    QFETCH(QStringList, gone);
    const Victim victim;
    victim.writeList(lines);

    VERIFY_CLEANING(victim, gone);
}

void tst_HostileList::encodingsOfAList_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QStringList>("gone");
    QTest::addColumn<bool>("broken");
    const auto row = [](const char *name, const QByteArray &lines, const QStringList &gone = {},
                        bool broken = false) { QTest::newRow(name) << lines << gone << broken; };
    const auto withZero = [](QByteArray lines) { return lines.replace('0', '\0'); };

    row("no line end at the end", "path=@/Hosts/maya/x", {mayaFile});
    row("old line ends are none", "path=@/Hosts/maya/x\rpath=@/Hosts/modo/x\r");
    row("a byte-order mark", "\xef\xbb\xbfpath=@/Hosts/maya/x\n", {mayaFile});
    row("a byte-order mark in the middle", "\n\xef\xbb\xbfpath=@/Hosts/maya/x\n");
    row("bytes that are no UTF-8",
        "path=@/Hosts/maya\xff/x\npath=\xff@/Hosts/maya/x\npath=@/Hosts/modo/x\xff\n", {modoFile});
    row("a zero byte in the program's name", withZero("path=@/Hosts/maya/x0y\n"), {mayaFile}, true);
    row("a zero byte in a folder's name", withZero("path=@/Hosts/maya0/x\n"), {}, true);
    row("a zero byte in the key", withZero("path0=@/Hosts/modo/x\n"), {modoFile});
    row("zero bytes around the value", withZero("path=0@/Hosts/modo/x0\n"), {}, true);
    row("lines of zero bytes", withZero("0\n00\npath0\n000\npath=@/Hosts/modo/x\n"), {modoFile});
}

void tst_HostileList::encodingsOfAList()
{
    QFETCH(QByteArray, lines);
    QFETCH(QStringList, gone);
    QFETCH(bool, broken);
    const Victim victim;
    victim.writeList(lines);

    VERIFY_CLEANING(victim, gone);
    QCOMPARE(victim.log().contains(brokenName), broken);
}

void tst_HostileList::hugeLinesAreOneLine_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QStringList>("gone");

    const int megabyte = 1 << 20;
    const QStringList none;
    QTest::newRow("no entry") << QByteArray(megabyte, 'x') << none;
    QTest::newRow("a key") << "path" + QByteArray(megabyte, 'x') + "=" << none;
    QTest::newRow("a key before a host")
        << "path" + QByteArray(megabyte, 'x') + "=@/layouts/x" << QStringList(layoutFile);
    // Only the folder of a program counts, and that of a bare name is the working folder.
    QTest::newRow("a program's name")
        << "path=" + QByteArray("maya").repeated(megabyte / 4) << QStringList(workFile);
    QTest::newRow("a folder deep down")
        << "path=@" + QByteArray("/maya").repeated(megabyte / 5) + "/x" << none;
    QTest::newRow("blanks before a host")
        << "path=" + QByteArray(megabyte, ' ') + "@/layouts/x" << QStringList(layoutFile);
    QTest::newRow("equal signs") << "path" + QByteArray(megabyte, '=') << none;
    QTest::newRow("dots that lead up")
        << "path=" + QByteArray("../").repeated(megabyte / 3) + "maya" << none;
    QTest::newRow("zero bytes") << "path=maya/" + QByteArray(megabyte, '\0') << none;
}

void tst_HostileList::hugeLinesAreOneLine()
{
    QFETCH(QByteArray, line);
    QFETCH(QStringList, gone);
    const Victim victim;
    victim.writeList("path=@/Hosts/maya/x\n" + line + "\npath=@/Hosts/modo/x\n");

    VERIFY_CLEANING(victim, gone + QStringList({mayaFile, modoFile}));
}

void tst_HostileList::manyLinesAreReadToTheEnd_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QStringList>("gone");

    QTest::newRow("a million lines that are no entries")
        << QByteArray("x\n").repeated(1000000) << QStringList();
    QTest::newRow("a hundred thousand programs that are no hosts")
        << QByteArray("path=/usr/bin/vi\n").repeated(100000) << QStringList();
    QTest::newRow("five thousand times the same host")
        << QByteArray("path=@/Hosts/maya/x\n").repeated(5000) << QStringList(mayaFile);
}

void tst_HostileList::manyLinesAreReadToTheEnd()
{
    QFETCH(QByteArray, lines);
    QFETCH(QStringList, gone);
    const Victim victim;
    victim.writeList(lines + "path=@/Hosts/modo/x");

    VERIFY_CLEANING(victim, gone + QStringList(modoFile));
}

void tst_HostileList::listThatIsALinkIsReadThroughIt()
{
    const Victim victim;
    victim.write("outside/list", "path=" + victim.path("Hosts/maya/x").toUtf8());
    victim.makeLink(victim.path("outside/list"), "between");
    victim.makeLink(victim.path("between"), "list");

    VERIFY_CLEANING(victim, QStringList(mayaFile));
}

void tst_HostileList::listMayLieInAPluginFolder()
{
    const Victim victim;
    const QString list = "Hosts/maya/scripts/Drask/drask.xpm";
    victim.writeList("path=@/Hosts/maya/x\npath=@/Hosts/modo/x\n");
    QVERIFY(QFile::rename(victim.path("list"), victim.path(list)));
    const test::Tree rest = victim.treeWithout({list, mayaFile, modoFile});

    VERIFY_RUN(victim.run({"ov3uninstall", victim.path(list)}), 0);
    VERIFY_LEFT(victim, rest, QStringList("Debug: 0"), QByteArray());
}

void tst_HostileList::linkInThePluginFoldersPlace_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QStringList>("gone");

    QTest::newRow("to somebody else's folder")
        << "outside" << QStringList({"outside/drask.py", "outside/deep/drask.py"});
    QTest::newRow("to a folder that is missing") << "missing" << QStringList();
    QTest::newRow("to itself") << "Hosts/maya2/scripts/Drask" << QStringList();
    QTest::newRow("to a file") << "drask.py" << QStringList();
}

void tst_HostileList::linkInThePluginFoldersPlace()
{
    QFETCH(QString, target);
    QFETCH(QStringList, gone);
    const Victim victim;
    victim.makeLink(victim.path(target), "Hosts/maya2/scripts/Drask");
    victim.writeList("path=@/Hosts/maya2/x\n");

    VERIFY_CLEANING(victim, gone);
}

void tst_HostileList::oddTreesAreSearchedToTheEnd_data()
{
    QTest::addColumn<QString>("folder");

    QTest::newRow("sixty folders deep") << QString("deep/").repeated(60);
    QTest::newRow("a folder with a name of 255 bytes") << QString(255, 'x') + '/';
    QTest::newRow("as deep as a path can be") << QString(200, 'x').append('/').repeated(18);
    QTest::newRow("line feeds and quotes in a name") << "a\nb\"c'd\\e/";
    QTest::newRow("a blank for a name") << " / /";
}

void tst_HostileList::oddTreesAreSearchedToTheEnd()
{
    QFETCH(QString, folder);
    const Victim victim;
    const QString base = "Hosts/maya/scripts/Drask/" + folder;
    victim.write(base + "grex.js", "old");
    victim.write(base + "own.js", "mine");
    victim.makeLink(victim.path("Hosts"), base + "up");
    victim.makeLink("ring", base + "ring");
    victim.writeList("path=@/Hosts/maya/x\n");

    VERIFY_CLEANING(victim, QStringList({mayaFile, base + "grex.js"}));
}

void tst_HostileList::foldersWithLegacyNamesStayAndAreSearched()
{
    const Victim victim;
    const QString base = "Hosts/maya/scripts/Drask/manager.cfg/drask.xpm/";
    victim.write(base + "utils.pyc", "old");
    victim.write(base + "own.pyc", "mine");
    victim.writeList("path=@/Hosts/maya/x\n");

    VERIFY_CLEANING(victim, QStringList({mayaFile, base + "utils.pyc"}));
}

QTEST_GUILESS_MAIN(tst_HostileList)
#include "tst_hostile_list.moc"
