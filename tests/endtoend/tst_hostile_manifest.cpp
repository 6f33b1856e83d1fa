// SPDX-License-Identifier: MIT
#include "onehostlog.h"
#include "workstation.h"

#include <QtTest>

/// Manifests that no installer wrote. Whatever one names is deleted, and nothing else.
class tst_HostileManifest : public QObject {
    Q_OBJECT

private slots:
    void linesAreFileNames_data();
    void linesAreFileNames();
    void encodingsOfAManifest_data();
    void encodingsOfAManifest();
    void linksAreDeletedNotFollowed();
    void filesBehindALinkedFolderAreDeleted();
    void hugeLinesNameNothing_data();
    void hugeLinesNameNothing();
    void aMillionLinesAreReadToTheEnd();
    void manifestMayListItselfAndTheConfiguration();
    void manifestThatIsALinkIsReadThroughIt();
    void manifestThatIsAFolderIsIgnored();
    void programMayBeListedItself();
    void pluginFolderThatIsALinkIsCleared();
};

namespace {

const QString plugin = "modo/Scripts/drask/";
const QString manifest = plugin + "uninstall.ini";
const QString brokenName = "Warning: Broken filename passed to function";

/// An installed plug-in with files of others all around it. Runs start in the folder "work".
class Victim : public test::Workstation {
public:
    Victim()
    {
        for (const char *name : {"a.py", "b.py", "sub/c.py", "manager.cfg"}) {
            write(plugin + name, "plug-in");
        }
        for (const char *name :
             {"own.txt", "work/own.txt", "work/sub/own.txt", "work/ own.txt", "outside/own.txt",
              "outside/deep/own.txt", "modo/own.txt", "modo/Scripts/drask2/own.txt"}) {
            write(name, "mine");
        }
    }

    /// "@" in \a lines stands for the sandbox.
    void writeManifest(const QByteArray &lines) const
    {
        write(manifest, QByteArray(lines).replace('@', path().toUtf8()));
    }

    test::RunResult uninstall() const
    {
        test::RunOptions options;
        options.workingFolder = path("work");
        return run({"uninstallPlugin", "(modo) " + path("modo")}, options);
    }

    /// The tree of now without \a names and without what goes in any case.
    test::Tree treeWithout(const QStringList &names) const
    {
        test::Tree rest = tree();
        rest.remove(manifest);
        rest.remove(plugin + "manager.cfg");
        for (const QString &name : names) {
            rest.remove(name);
        }
        return rest;
    }

    /// The log of a removal that wrote \a extraLines while it deleted.
    QStringList logOf(int result, const QStringList &extraLines = {}) const
    {
        const QString folder = path("modo/Scripts/drask");
        QStringList lines = test::linesOfUninstall(folder, result);
        const QString last = lines.takeLast();
        return test::linesOfLookUp("modo", path("modo")) + lines + extraLines + QStringList(last);
    }
};

} // namespace

/// Runs the removal, and wants \a gone and nothing else to be gone. A second removal would have no
/// manifest to follow.
#define VERIFY_REMOVAL(victim, gone, code, extraLines)                                             \
    do {                                                                                           \
        const test::Tree rest = (victim).treeWithout(gone);                                        \
        VERIFY_RUN((victim).uninstall(), code);                                                    \
        VERIFY_LEFT(victim, rest, (victim).logOf(code, extraLines), QByteArray());                 \
    } while (false)

void tst_HostileManifest::linesAreFileNames_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QStringList>("gone");
    QTest::addColumn<int>("code");
    const auto row = [](const char *name, const QByteArray &lines, const QStringList &gone,
                        int code = 0) { QTest::newRow(name) << lines << gone << code; };

    row("nothing", "", {});
    row("only line ends", "\n\n\n", {});
    row("names of the working folder", "own.txt\nsub/own.txt\n",
        {"work/own.txt", "work/sub/own.txt"});
    row("names of the working folder, with a dot", "./own.txt\n./sub/./own.txt\n",
        {"work/own.txt", "work/sub/own.txt"});
    row("two dots that lead out", "../outside/own.txt\n@/modo/Scripts/drask/../../own.txt\n",
        {"outside/own.txt", "modo/own.txt"});
    row("two dots through a folder that is missing", "@/missing/../own.txt\n", {});
    row("files of somebody else", "@/own.txt\n@/outside/own.txt\n", {"own.txt", "outside/own.txt"});
    row("slashes too many", "@//modo/Scripts///drask/a.py\n", {plugin + "a.py"});
    row("slashes behind the name", "@/own.txt/\n@/outside/own.txt//\n", {});
    row("blanks around the name", " @/own.txt\n@/own.txt \n\t@/own.txt\n", {});
    row("a blank that belongs to the name", " own.txt\n", {"work/ own.txt"});
    row("a folder before a file", "@/outside\n@/modo/Scripts/drask/a.py\n", {plugin + "a.py"}, 2);
    row("the working folder and those around it", ".\n..\n@/modo/Scripts/drask/.\n", {}, 2);
    row("the plug-in's own folders", "@/modo/Scripts/drask\n@/modo/Scripts/drask/sub\n", {}, 2);
    row("a file, then the folder that it leaves empty",
        "@/modo/Scripts/drask/sub/c.py\n@/modo/Scripts/drask/sub\n", {plugin + "sub/c.py"}, 2);
    row("a file twice", "@/own.txt\n@/own.txt\n", {"own.txt"});
    row("a file by two names", "@/own.txt\n../own.txt\n", {"own.txt"});
    row("what a shell or a browser would take for names",
        "*\n@/*\n~/own.txt\n$PWD/own.txt\n`pwd`/own.txt\nfile://@/own.txt\n\"@/own.txt\"\n", {});
    row("what Qt takes for names of its own",
        ":\n:/\n:/drask\n:/drask/lightwavemenu.cfg\nqrc:/drask\n", {});
    row("options", "-rf\n--\n-i @/own.txt\n", {});
    row("the devices", "/dev/null/own.txt\n", {});
    row("a section with keys", "[files]\n1\\path=@/own.txt\npath=@/own.txt\n", {});
}

void tst_HostileManifest::linesAreFileNames()
{
    QFETCH(QByteArray, lines);
    QFETCH(QStringList, gone);
    QFETCH(int, code);
    const Victim victim;
    victim.writeManifest(lines);

    VERIFY_REMOVAL(victim, gone, code, {});
}

void tst_HostileManifest::encodingsOfAManifest_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QStringList>("gone");
    QTest::addColumn<int>("broken");
    const auto row = [](const char *name, const QByteArray &lines, const QStringList &gone,
                        int broken = 0) { QTest::newRow(name) << lines << gone << broken; };
    const auto withZero = [](QByteArray lines) { return lines.replace('0', '\0'); };

    row("no line end at the end", "@/own.txt", {"own.txt"});
    row("Windows' line ends", "@/own.txt\r\n@/outside/own.txt\r\n", {"own.txt", "outside/own.txt"});
    row("old line ends are none", "@/own.txt\r@/outside/own.txt\r", {});
    row("a byte-order mark", "\xef\xbb\xbf@/own.txt\n", {"own.txt"});
    row("a byte-order mark in the middle", "\n\xef\xbb\xbf@/own.txt\n", {});
    row("bytes that are no UTF-8", "@/own.txt\xff\n@/\xe9\n@/outside/own.txt\n",
        {"outside/own.txt"});
    row("zero bytes in a name", withZero("@/own.txt0@/outside/own.txt\n@/modo/own.txt\n"),
        {"modo/own.txt"}, 1);
    row("a zero byte behind a name", withZero("@/own.txt0\n@/modo/own.txt\n"), {"modo/own.txt"}, 1);
    row("lines of zero bytes", withZero("0\n00\n000\n@/modo/own.txt\n"), {"modo/own.txt"}, 3);
    row("a file of zero bytes", QByteArray(5000, '\0'), {}, 1);
}

void tst_HostileManifest::encodingsOfAManifest()
{
    QFETCH(QByteArray, lines);
    QFETCH(QStringList, gone);
    QFETCH(int, broken);
    const Victim victim;
    victim.writeManifest(lines);

    VERIFY_REMOVAL(victim, gone, 0, QVector<QString>(broken, brokenName).toList());
}

void tst_HostileManifest::linksAreDeletedNotFollowed()
{
    const Victim victim;
    victim.makeLink(victim.path("own.txt"), plugin + "file");
    victim.makeLink(victim.path("outside"), plugin + "folder");
    victim.makeLink(victim.path("missing"), plugin + "dangling");
    victim.makeLink("ring", plugin + "ring");
    victim.writeManifest("@/modo/Scripts/drask/file\n"
                         "@/modo/Scripts/drask/folder\n"
                         "@/modo/Scripts/drask/dangling\n"
                         "@/modo/Scripts/drask/ring\n");

    // To Qt a link to nothing does not exist, so it is no file to delete.
    VERIFY_REMOVAL(victim, QStringList({plugin + "file@", plugin + "folder@"}), 0, {});
}

void tst_HostileManifest::filesBehindALinkedFolderAreDeleted()
{
    const Victim victim;
    victim.makeLink(victim.path("outside"), plugin + "folder");
    victim.writeManifest("@/modo/Scripts/drask/folder/own.txt\n"
                         "@/modo/Scripts/drask/folder/../own.txt\n");

    // The system takes the dots from where the link leads to.
    VERIFY_REMOVAL(victim, QStringList({"outside/own.txt", "own.txt"}), 0, {});
}

void tst_HostileManifest::hugeLinesNameNothing_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("broken");

    const int megabyte = 1 << 20;
    QTest::newRow("a name") << QByteArray(megabyte, 'x') << 0;
    QTest::newRow("a path") << QByteArray("/x").repeated(megabyte / 2) << 0;
    QTest::newRow("slashes") << QByteArray(megabyte, '/') << 0;
    QTest::newRow("dots that lead up") << QByteArray("../").repeated(megabyte / 3) << 0;
    QTest::newRow("blanks") << QByteArray(megabyte, ' ') << 0;
    QTest::newRow("zero bytes") << QByteArray(megabyte, '\0') << 1;
    QTest::newRow("bytes that are no UTF-8") << QByteArray(megabyte, '\xff') << 0;
    QTest::newRow("carriage returns") << QByteArray(megabyte, '\r') << 0;
}

void tst_HostileManifest::hugeLinesNameNothing()
{
    QFETCH(QByteArray, line);
    QFETCH(int, broken);
    const Victim victim;
    victim.writeManifest("@/own.txt\n" + line + "\n@/outside/own.txt\n");

    VERIFY_REMOVAL(victim, QStringList({"own.txt", "outside/own.txt"}), 0,
                   QVector<QString>(broken, brokenName).toList());
}

void tst_HostileManifest::aMillionLinesAreReadToTheEnd()
{
    const Victim victim;
    QByteArray lines;
    for (int line = 0; line < 1000000; ++line) {
        lines += QByteArray::number(line) + '\n';
    }
    victim.writeManifest(lines + "@/own.txt");

    VERIFY_REMOVAL(victim, QStringList("own.txt"), 0, {});
}

void tst_HostileManifest::manifestMayListItselfAndTheConfiguration()
{
    const Victim victim;
    victim.writeManifest("@/modo/Scripts/drask/uninstall.ini\n"
                         "@/modo/Scripts/drask/manager.cfg\n"
                         "@/modo/Scripts/drask/a.py\n");
    const QString quotedManifest = test::quoted(victim.path(manifest));
    const QString quotedConfig = test::quoted(victim.path(plugin + "manager.cfg"));

    // An open file is read on although its name is gone.
    VERIFY_REMOVAL(victim, QStringList(plugin + "a.py"), 0,
                   QStringList({"Debug: could not delete  " + quotedManifest,
                                "Debug: could not delete  " + quotedConfig}));
}

void tst_HostileManifest::manifestThatIsALinkIsReadThroughIt()
{
    const Victim victim;
    victim.write("outside/list.txt", (victim.path("own.txt") + '\n').toUtf8());
    victim.makeLink(victim.path("outside/list.txt"), manifest);

    VERIFY_REMOVAL(victim, QStringList({"own.txt", manifest + '@'}), 0, {});
}

void tst_HostileManifest::manifestThatIsAFolderIsIgnored()
{
    const Victim victim;
    victim.write(manifest + "/own.txt", "mine");
    test::Tree rest = victim.tree();
    rest.remove(plugin + "manager.cfg");
    QStringList lines = test::linesOfLookUp("modo", victim.path("modo"))
        + test::linesWithoutManifest(victim.path("modo/Scripts/drask"));
    // The configuration is there and goes.
    lines.removeAt(lines.size() - 2);

    VERIFY_RUN(victim.uninstall(), 0);
    VERIFY_LEFT(victim, rest, lines, QByteArray());
}

void tst_HostileManifest::programMayBeListedItself()
{
    const Victim victim;
    victim.write("tool/settings.ini", "[pluginpaths]\nsize=0\n");
    victim.writeManifest("@/tool/drask-installer\n@/tool/settings.ini\n@/tool/plugin.log\n");
    const test::Tree rest = victim.treeWithout({"tool/drask-installer", "tool/settings.ini"});

    VERIFY_RUN(victim.uninstall(), 0);
    // What was logged before went with the file.
    VERIFY_LEFT(victim, rest, QStringList("Debug: uninstallPlugin  0"), QByteArray());
}

void tst_HostileManifest::pluginFolderThatIsALinkIsCleared()
{
    const Victim victim;
    victim.write("outside/drask/a.py", "plug-in");
    victim.write("outside/drask/manager.cfg", "plug-in");
    victim.write("outside/drask/uninstall.ini",
                 (victim.path("other/Scripts/drask/a.py") + '\n').toUtf8());
    victim.makeLink(victim.path("outside/drask"), "other/Scripts/drask");
    test::Tree rest = victim.tree();
    for (const char *name : {"a.py", "manager.cfg", "uninstall.ini"}) {
        rest.remove(QString("outside/drask/") + name);
    }

    VERIFY_RUN(victim.run({"uninstallPlugin", "(modo) " + victim.path("other")}), 0);
    VERIFY_LEFT(
        victim, rest,
        test::logOfRemoval("modo", victim.path("other"), victim.path("other/Scripts/drask")),
        QByteArray());
}

QTEST_GUILESS_MAIN(tst_HostileManifest)
#include "tst_hostile_manifest.moc"
