// SPDX-License-Identifier: MIT
#include "changingfile.h"
#include "mayascripts.h"
#include "unitcase.h"

namespace {

const QByteArray deferredCall = "maya.utils.executeDeferred(\"searchTab()\")";

/// A block as an earlier template left it, from the marker to the deferred call.
const QByteArray oldBlock = "#drask_installed\n" + pathLine("/old") + "\nold()\n" + deferredCall;

/// The least that makes a template replace the whole block.
const QByteArray shelfTemplate = "draskshelf.init()\n";

} // namespace

class tst_MayaBlock : public QObject {
    Q_OBJECT
private slots:
    void blockIsReplacedFromTheMarkerToTheDeferredCall()
    {
        const MayaScripts maya;
        const QByteArray fresh = "#drask_installed\n" + pathLine("__scriptpath__")
            + "\nimport draskshelf\ndraskshelf.init()\n" + deferredCall + '\n';
        maya.writeTemplate(fresh);
        maya.write(maya.script, "import maya\n" + oldBlock + "\nmine()\n");
        test::Tree expected = maya.tree();
        expected[maya.script] = "import maya\n\r\n"
            + QByteArray(fresh).replace("__scriptpath__", maya.pluginBytes()) + "\r\n\nmine()\n";

        QCOMPARE(maya.install(), 0);
        VERIFY_TREE(maya, expected);
        QCOMPARE(maya.log.lines(), QStringList());
    }

    void everyPlaceHolderOfTheTemplateIsReplaced()
    {
        const MayaScripts maya;
        maya.writeTemplate(shelfTemplate + "__scriptpath__ __scriptPath__ __ScriptPath__\n"
                           + "__scriptpath____scriptpath__ __SCRIPTPATH__\n");
        maya.write(maya.script, "# __scriptpath__\n" + oldBlock + "# __scriptpath__");
        const QByteArray folder = maya.pluginBytes();

        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script),
                 "# __scriptpath__\n\r\n" + shelfTemplate + folder + ' ' + folder + ' ' + folder
                     + '\n' + folder + folder + " __SCRIPTPATH__\n\r\n# __scriptpath__");
    }

    void textAroundTheBlockIsKept_data()
    {
        const test::Table<QByteArray, QByteArray, QByteArray, QByteArray> table(
            "before", "after", "keptBefore", "keptAfter");
        const auto addSame = [&table](const char *name, const QByteArray &before,
                                      const QByteArray &after) {
            table.row(name, before, after, before, after);
        };
        addSame("nothing around it", "", "");
        addSame("blanks, tabs and empty lines", "\n\n\ta \n\n", " \n\n\tb \n\n");
        addSame("text on the lines of the block", "if x: ", "; y()");
        addSame("letters outside ASCII", "# \xc3\xa9\n", "\n# \xe6\xbc\xa2\n");
        addSame("a null character", QByteArray("\0\n", 2), QByteArray("\n\0", 2));
        table.row("carriage returns, which fall away", "a\r\nb\rc\r\n", "\r\nd\r\n", "a\nbc\n",
                  "\nd\n");
        table.row("a byte-order mark, which falls away", "\xef\xbb\xbf# a\n", "", "# a\n", "");
        table.row("bytes that are no UTF-8", "# \xff\n", "# \x80", "# \xef\xbf\xbd\n",
                  "# \xef\xbf\xbd");
    }

    void textAroundTheBlockIsKept()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QByteArray, keptBefore);
        QFETCH(QByteArray, keptAfter);
        const MayaScripts maya;
        maya.writeTemplate(shelfTemplate);
        maya.write(maya.script, before + oldBlock + after);

        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script), keptBefore + "\r\n" + shelfTemplate + "\r\n" + keptAfter);
    }

    void templateTextIsWrittenAsItReads_data()
    {
        const test::Table<QByteArray, QByteArray> table("templateText", "written");
        table.row("nothing but the shelf call, in a remark", "# no draskshelf.init() today",
                  "# no draskshelf.init() today");
        table.row("no line end at the end", "draskshelf.init()", "draskshelf.init()");
        table.row("carriage returns, which fall away", "a\r\ndraskshelf.init()\r\n",
                  "a\ndraskshelf.init()\n");
        table.row("a byte-order mark, which falls away", QByteArray("\xef\xbb\xbf" + shelfTemplate),
                  shelfTemplate);
        table.row("letters outside ASCII", shelfTemplate + "# \xc3\xa9",
                  shelfTemplate + "# \xc3\xa9");
        table.row("a byte that is no UTF-8", shelfTemplate + "# \xff",
                  shelfTemplate + "# \xef\xbf\xbd");
    }

    void templateTextIsWrittenAsItReads()
    {
        QFETCH(QByteArray, templateText);
        QFETCH(QByteArray, written);
        const MayaScripts maya;
        maya.writeTemplate(templateText);
        maya.write(maya.script, oldBlock);
        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script), "\r\n" + written + "\r\n");
    }

    void firstMarkerAndFirstDeferredCallBoundTheBlock()
    {
        const MayaScripts maya;
        maya.writeTemplate(shelfTemplate);
        maya.write(maya.script, "a #drask_installed b\n" + oldBlock + '\n' + oldBlock + '\n');
        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script), "a \r\n" + shelfTemplate + "\r\n\n" + oldBlock + '\n');
    }

    void deferredCallBeforeTheMarkerRepeatsTheTextBetween()
    {
        const MayaScripts maya;
        maya.writeTemplate(shelfTemplate);
        const QByteArray rest = "\n#drask_installed\n" + pathLine("/old") + '\n';
        maya.write(maya.script, "a\n" + deferredCall + "\nbetween" + rest);
        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script),
                 "a\n" + deferredCall + "\nbetween\n\r\n" + shelfTemplate + "\r\n\nbetween" + rest);
    }

    void everyRunAddsItsFrame()
    {
        const MayaScripts maya;
        const QByteArray block = "#drask_installed\n" + pathLine(maya.pluginBytes())
            + "\ndraskshelf.init()\n" + deferredCall;
        maya.writeTemplate(block);
        maya.write(maya.script, "a\n" + oldBlock + "\nb\n");

        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script), "a\n\r\n" + block + "\r\n\nb\n");
        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script), "a\n\n\r\n" + block + "\r\n\n\nb\n");
        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script), "a\n\n\n\r\n" + block + "\r\n\n\n\nb\n");
    }

    void markerThatIsGoneAtTheSecondReadingFails()
    {
        const MayaScripts maya;
        maya.writeTemplate(shelfTemplate);
        const QByteArray withoutMarker = "a\r\n" + deferredCall + "\r\n";
        test::Tree expected = maya.tree();
        expected[maya.script] = withoutMarker;
        const test::ChangingFile script(maya.path(maya.script), {oldBlock}, withoutMarker);

        QCOMPARE(maya.install(), 1);
        VERIFY_TREE(maya, expected);
        QCOMPARE(maya.log.lines(), QStringList("Debug: old positions not found"));
    }

    void deferredCallThatIsGoneAtTheSecondReadingLeadsToThePathLine()
    {
        const MayaScripts maya;
        maya.writeTemplate(shelfTemplate);
        const test::ChangingFile script(maya.path(maya.script), {oldBlock}, "#drask_installed\n");
        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script),
                 "#drask_installed\n" + pathLine(maya.pluginBytes()) + "\nold()\n" + deferredCall
                     + '\n');
        QCOMPARE(maya.log.lines(), QStringList());
    }

    void textOfTheSecondReadingIsKept()
    {
        const MayaScripts maya;
        maya.writeTemplate(shelfTemplate);
        const test::ChangingFile script(maya.path(maya.script), {"first\n" + oldBlock},
                                        "second\n#drask_installed " + deferredCall + "end");
        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script), "second\n\r\n" + shelfTemplate + "\r\nend");
    }

    void scriptThatCannotBeOpenedForWritingFails()
    {
        const MayaScripts maya;
        maya.writeTemplate(shelfTemplate);
        test::Tree expected = maya.tree();
        expected[maya.script + '/'] = "";
        const test::ChangingFile script(maya.path(maya.script), {oldBlock, oldBlock}, QByteArray());

        QCOMPARE(maya.install(), 1);
        VERIFY_TREE(maya, expected);
        QCOMPARE(maya.log.lines(),
                 QStringList("Debug: Could not open target file2 \"Is a directory\""));
    }
};

DRASK_TEST(tst_MayaBlock)
#include "tst_maya_block.moc"
