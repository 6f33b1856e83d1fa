// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"
#include "unitcase.h"

namespace {

/// A plug-in's scripts in "src", and the folder "dst" that they go to.
struct XsiScripts : test::Sandbox {
    XsiScripts()
    {
        write("src/grex.js", "plugins = '__plugindir__'\n");
        write("src/drask_main.js", "__draskscript__\n");
        write("src/drask.js", "grex = '__grexjs__'\n");
        makeFolder("dst");
    }

    int install() const
    {
        return PluginInstaller::copyXSIPlugin(path("src"), path("dst"));
    }

    /// What a run logs before it opens its first file.
    QStringList openingLines() const
    {
        return {"Debug: src:  \"" + path("src") + '"', "Debug: destFolder:  \"" + path("dst") + '"',
                "Debug: setupFile:  \"" + path("src") + "/grex.js\"",
                "Debug: targetFile:  \"" + path("dst") + "/grex.js\""};
    }

    /// The tree with the first \a count scripts installed.
    test::Tree treeWith(int count) const
    {
        const QByteArray folder = path("dst").toUtf8();
        const QList<QPair<QString, QByteArray>> scripts = {
            {"dst/grex.js", "plugins = '" + folder + "/'\n"},
            {"dst/drask_main.js", "ExecuteScript(\"" + folder + "/drask.js\")\n"},
            {"dst/drask.js", "grex = '" + folder + "/grex.js'\n"}};
        test::Tree result = tree();
        for (int index = 0; index < count; ++index) {
            result[scripts.at(index).first] = scripts.at(index).second;
        }
        return result;
    }

    const test::LogCapture log;
};

} // namespace

class tst_Xsi : public QObject {
    Q_OBJECT
private slots:
    void allThreeScriptsAreInstalled()
    {
        const XsiScripts xsi;
        const test::Tree expected = xsi.treeWith(3);
        QCOMPARE(xsi.install(), 0);
        VERIFY_TREE(xsi, expected);
        QCOMPARE(xsi.log.lines(),
                 xsi.openingLines()
                     + QStringList({"Debug: modify grex.js", "Debug: modify drask_main.js"}));
    }

    void existingScriptsAreOverwrittenWithoutBackup()
    {
        const XsiScripts xsi;
        const QByteArray old(1000, 'x');
        xsi.write("dst/grex.js", old);
        xsi.write("dst/drask_main.js", old);
        xsi.write("dst/drask.js", old);
        QCOMPARE(xsi.install(), 0);
        VERIFY_TREE(xsi, xsi.treeWith(3));
    }

    void placeHoldersAreReplacedInTheirOwnScriptOnly_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("expected"); // "D/" stands for the destination folder

        QTest::newRow("grex.js")
            << "grex.js"
            << QByteArray("D/D/ - __draskscript____draskscript__ - __grexjs____grexjs__\nD/\n");
        QTest::newRow("drask_main.js")
            << "drask_main.js"
            << QByteArray("__plugindir____plugindir__ - "
                          "ExecuteScript(\"D/drask.js\")ExecuteScript(\"D/drask.js\") - "
                          "__grexjs____grexjs__\n__plugindir__\n");
        QTest::newRow("drask.js") << "drask.js"
                                  << QByteArray("__plugindir____plugindir__ - "
                                                "__draskscript____draskscript__ - "
                                                "D/grex.jsD/grex.js\n__plugindir__\n");
    }

    void placeHoldersAreReplacedInTheirOwnScriptOnly()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, expected);
        const XsiScripts xsi;
        const QByteArray otherCase = "__PluginDir__ __DraskScript__ __GrexJs__ __grexjs_\n";
        xsi.write("src/" + name,
                  "__plugindir____plugindir__ - __draskscript____draskscript__ - "
                  "__grexjs____grexjs__\n__plugindir__\n"
                      + otherCase);

        QCOMPARE(xsi.install(), 0);
        QCOMPARE(xsi.read("dst/" + name),
                 expected.replace("D/", xsi.path("dst").toUtf8() + '/') + otherCase);
    }

    void destinationIsInsertedAsItIs_data()
    {
        const test::Table<QString> table("name");
        table.row("blanks", " XSI  work group ");
        table.row("backslashes", "C:\\XSI\\new\\\\Plugins\\");
        table.row("quotes", "O'Neil \"x\"");
        table.row("a place-holder of the formatter", "100 %1 %2 %%");
        table.row("a place-holder of the scripts", "__plugindir__ __draskscript__ __grexjs__");
        table.row("letters outside ASCII", "\xe6\xbc\xa2 \xc3\xa9");
    }

    void destinationIsInsertedAsItIs()
    {
        QFETCH(QString, name);
        const XsiScripts xsi;
        xsi.makeFolder(name);
        const QByteArray folder = xsi.path(name).toUtf8();
        QCOMPARE(PluginInstaller::copyXSIPlugin(xsi.path("src"), xsi.path(name)), 0);
        QCOMPARE(xsi.read(name + "/grex.js"), "plugins = '" + folder + "/'\n");
        QCOMPARE(xsi.read(name + "/drask_main.js"), "ExecuteScript(\"" + folder + "/drask.js\")\n");
        QCOMPARE(xsi.read(name + "/drask.js"), "grex = '" + folder + "/grex.js'\n");
    }

    void linesAreWrittenAsUtf8WithLineFeeds()
    {
        const XsiScripts xsi;
        const QStringList names = {"/grex.js", "/drask_main.js", "/drask.js"};
        for (const QString &name : names) {
            xsi.write("src" + name, "\xef\xbb\xbf//\xc3\xa9\xff\r\na\rb\n\nc");
        }

        QCOMPARE(xsi.install(), 0);
        for (const QString &name : names) {
            QCOMPARE(xsi.read("dst" + name), QByteArray("//\xc3\xa9\xef\xbf\xbd\nab\n\nc\n"));
        }
    }

    void scriptWithoutLinesLeavesItsTarget_data()
    {
        const test::Table<QString> table("name");
        table.row("grex.js", "grex.js");
        table.row("drask_main.js", "drask_main.js");
        table.row("drask.js", "drask.js");
    }

    void scriptWithoutLinesLeavesItsTarget()
    {
        QFETCH(QString, name);
        const XsiScripts xsi;
        test::Tree expected = xsi.treeWith(3);
        expected["src/" + name] = "";
        expected.remove("dst/" + name);
        xsi.write("src/" + name, "");

        QCOMPARE(xsi.install(), 0);
        VERIFY_TREE(xsi, expected);

        xsi.write("dst/" + name, "old");
        xsi.age("dst/" + name);
        QCOMPARE(xsi.install(), 0);
        QCOMPARE(xsi.read("dst/" + name), QByteArray("old"));
        QVERIFY(xsi.isAged("dst/" + name));

        xsi.remove("dst/" + name);
        xsi.makeFolder("dst/" + name);
        QCOMPARE(xsi.install(), 0);
    }

    void sourceThatCannotBeOpenedFailsInItsOwnWords_data()
    {
        const test::Table<QString, QString, int, QStringList> table("name", "reason",
                                                                    "scriptsWritten", "lastLines");
        const QString grex = "Debug: modify grex.js";
        const QString main = "Debug: modify drask_main.js";
        const QString missing = "\"No such file or directory\"";
        const QString folder = "\"file to open is a directory\"";
        table.row("grex.js is missing", "grex.js", missing, 0,
                  QStringList("Debug: Could not open source file"));
        table.row("drask_main.js is missing", "drask_main.js", missing, 1,
                  QStringList({grex, "Debug: error:  " + missing}));
        table.row("drask.js is missing", "drask.js", missing, 2,
                  QStringList({grex, main, "Debug: error opening  " + missing}));
        table.row("drask_main.js is a folder", "drask_main.js", folder, 1,
                  QStringList({grex, "Debug: error:  " + folder}));
    }

    void sourceThatCannotBeOpenedFailsInItsOwnWords()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        QFETCH(int, scriptsWritten);
        QFETCH(QStringList, lastLines);
        const XsiScripts xsi;
        xsi.remove("src/" + name);
        if (reason.contains("is a directory")) {
            xsi.makeFolder("src/" + name);
        }
        const test::Tree expected = xsi.treeWith(scriptsWritten);

        QCOMPARE(xsi.install(), 1);
        VERIFY_TREE(xsi, expected);
        QCOMPARE(xsi.log.lines(), xsi.openingLines() + lastLines);
    }

    void targetThatCannotBeOpenedFails_data()
    {
        const test::Table<QString, int, QStringList> table("name", "scriptsWritten", "modified");
        const QString grex = "Debug: modify grex.js";
        const QString main = "Debug: modify drask_main.js";
        table.row("grex.js", "grex.js", 0, QStringList(grex));
        table.row("drask_main.js", "drask_main.js", 1, QStringList({grex, main}));
        table.row("drask.js", "drask.js", 2, QStringList({grex, main}));
    }

    void targetThatCannotBeOpenedFails()
    {
        QFETCH(QString, name);
        QFETCH(int, scriptsWritten);
        QFETCH(QStringList, modified);
        const XsiScripts xsi;
        xsi.makeFolder("dst/" + name);
        const test::Tree expected = xsi.treeWith(scriptsWritten);

        QCOMPARE(xsi.install(), 1);
        VERIFY_TREE(xsi, expected);
        QCOMPARE(xsi.log.lines(),
                 xsi.openingLines() + modified
                     + QStringList("Debug: Could not open target file \"Is a directory\""));
    }
};

DRASK_TEST(tst_Xsi)
#include "tst_xsi.moc"
