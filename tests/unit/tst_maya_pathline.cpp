// SPDX-License-Identifier: MIT
#include "changingfile.h"
#include "mayascripts.h"
#include "unitcase.h"

namespace {

const QByteArray oldBlock = "#drask_installed\n" + pathLine("/old") + '\n';

} // namespace

class tst_MayaPathLine : public QObject {
    Q_OBJECT
private slots:
    void equalPathLineWritesNothing_data()
    {
        const test::Table<QByteArray> table("templateText");
        table.row("an old template", "#drask_installed\n");
        table.row("an empty template", "");
        table.row("no template", QByteArray());
    }

    void equalPathLineWritesNothing()
    {
        QFETCH(QByteArray, templateText);
        const MayaScripts maya;
        if (!templateText.isNull()) {
            maya.writeTemplate(templateText);
        }
        maya.write(maya.script, "#drask_installed\r\n" + pathLine(maya.pluginBytes()) + "\r\n\xff");
        maya.age(maya.script);
        const test::Tree before = maya.tree();

        QCOMPARE(maya.install(), 0);
        VERIFY_TREE(maya, before);
        QVERIFY(maya.isAged(maya.script));
        QCOMPARE(maya.log.lines(), QStringList());
    }

    void oldPathLineIsFound_data()
    {
        const test::Table<QByteArray, QByteArray> table("before", "oldLine");
        const QByteArray marker = "#drask_installed\n";
        table.row("right behind the marker", marker, pathLine("/old"));
        table.row("many lines behind the marker", marker + "import sys\n\n# text\n",
                  pathLine("/old"));
        table.row("behind a marker in the middle of a line",
                  "import sys #drask_installed by hand\n", pathLine("/old"));
        table.row("on the marker's own line", "", pathLine("/old") + " #drask_installed");
        table.row("of an earlier form", marker, "\tsys.path.append( importable_path('/old'))");
        table.row("with a remark behind it", marker, pathLine("/old") + " # drask");
        table.row("with nothing behind its beginning", marker,
                  "\tsys.path.append( importable_path(");
        table.row("with the same folder and a blank at the end", marker, pathLine("/old") + ' ');
    }

    void oldPathLineIsFound()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, oldLine);
        const MayaScripts maya;
        maya.writeTemplate("#drask_installed\n");
        // What is read as text is written back as UTF-8 with line feeds; no backup is made.
        maya.write(maya.script,
                   "\xef\xbb\xbf#\xc3\xa9\xff\r\na\rb\n\n" + before + oldLine + "\nmine()");
        test::Tree expected = maya.tree();
        expected[maya.script] = "#\xc3\xa9\xef\xbf\xbd\nab\n\n" + before
            + pathLine(maya.pluginBytes()) + "\nmine()\n";

        QCOMPARE(maya.install(), 0);
        VERIFY_TREE(maya, expected);
        QCOMPARE(maya.log.lines(), QStringList());
    }

    void lastOfSeveralPathLinesWins()
    {
        const MayaScripts maya;
        maya.writeTemplate("#drask_installed\n");
        const QByteArray before = pathLine("/before") + "\n#drask_installed\n" + pathLine("/first")
            + '\n' + pathLine("/second") + '\n';
        maya.write(maya.script, before + pathLine("/last") + '\n');

        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script), before + pathLine(maya.pluginBytes()) + '\n');

        maya.age(maya.script);
        QCOMPARE(maya.install(), 0);
        QVERIFY(maya.isAged(maya.script));
    }

    void oldPathLineIsReplacedWhereverItStands()
    {
        const MayaScripts maya;
        maya.writeTemplate("#drask_installed\n");
        const QByteArray line = pathLine("/old");
        maya.write(maya.script,
                   line + "\n#" + line + line + "; drask()\n#drask_installed\n" + line);
        const QByteArray fresh = pathLine(maya.pluginBytes());

        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script),
                 fresh + "\n#" + fresh + fresh + "; drask()\n#drask_installed\n" + fresh + '\n');
    }

    void blockStaysUnlessBothFilesCloseIt_data()
    {
        const test::Table<QByteArray, QByteArray> table("templateText", "closing");
        const QByteArray shelf = "draskshelf.init()\n";
        const QByteArray deferred = "maya.utils.executeDeferred(\"searchTab()\")\n";
        table.row("neither does", "import drask\n", "import drask\n");
        table.row("only the template has the shelf call", shelf, shelf);
        table.row("only the script has the deferred call", deferred, deferred);
        table.row("the template is missing", QByteArray(), deferred);
        table.row("the shelf call in other letter case", "DraskShelf.init()\n", deferred);
        table.row("the shelf call with an argument", "draskshelf.init(True)\n", deferred);
        table.row("the deferred call in single quotes", shelf,
                  "maya.utils.executeDeferred('searchTab()')\n");
        table.row("the deferred call in other letter case", shelf,
                  "maya.utils.executedeferred(\"searchTab()\")\n");
    }

    void blockStaysUnlessBothFilesCloseIt()
    {
        QFETCH(QByteArray, templateText);
        QFETCH(QByteArray, closing);
        const MayaScripts maya;
        if (!templateText.isNull()) {
            maya.writeTemplate(templateText);
        }
        maya.write(maya.script, oldBlock + closing);

        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script),
                 "#drask_installed\n" + pathLine(maya.pluginBytes()) + '\n' + closing);
    }

    void linesOfTheFirstReadingAreWrittenBack()
    {
        const MayaScripts maya;
        maya.writeTemplate("#drask_installed\n");
        const test::ChangingFile script(maya.path(maya.script), {"first\n" + oldBlock}, "second\n");
        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script),
                 "first\n#drask_installed\n" + pathLine(maya.pluginBytes()) + '\n');
    }

    void scriptThatCannotBeOpenedForWritingFails()
    {
        const MayaScripts maya;
        maya.writeTemplate("#drask_installed\n");
        test::Tree expected = maya.tree();
        expected[maya.script + '/'] = "";
        const test::ChangingFile script(maya.path(maya.script), {oldBlock}, QByteArray());

        QCOMPARE(maya.install(), 1);
        VERIFY_TREE(maya, expected);
        QCOMPARE(maya.log.lines(),
                 QStringList("Debug: Could not open target file \"Is a directory\""));
    }
};

DRASK_TEST(tst_MayaPathLine)
#include "tst_maya_pathline.moc"
