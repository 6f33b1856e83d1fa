// SPDX-License-Identifier: MIT
#include "changingfile.h"
#include "mayascripts.h"
#include "ordinaryuser.h"
#include "testprogram.h"

#include <QtTest>

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
    void blockIsReplacedFromTheMarkerToTheDeferredCall();
    void everyPlaceHolderOfTheTemplateIsReplaced();
    void textAroundTheBlockIsKept_data();
    void textAroundTheBlockIsKept();
    void templateTextIsWrittenAsItReads_data();
    void templateTextIsWrittenAsItReads();
    void firstMarkerAndFirstDeferredCallBoundTheBlock();
    void deferredCallBeforeTheMarkerRepeatsTheTextBetween();
    void everyRunAddsItsFrame();
    void markerThatIsGoneAtTheSecondReadingFails();
    void deferredCallThatIsGoneAtTheSecondReadingLeadsToThePathLine();
    void textOfTheSecondReadingIsKept();
    void scriptThatCannotBeOpenedForWritingFails();
    void scriptThatMayNotBeWrittenFails();
};

void tst_MayaBlock::blockIsReplacedFromTheMarkerToTheDeferredCall()
{
    const MayaScripts maya;
    const QByteArray fresh = "#drask_installed\n" + pathLine("__scriptpath__")
        + "\nimport draskshelf\ndraskshelf.init()\n" + deferredCall + '\n';
    maya.writeTemplate(fresh);
    maya.write(maya.script, "import maya\n" + oldBlock + "\nmine()\n");
    test::Tree expected = maya.tree();
    expected[maya.script] = "import maya\n\r\n"
        + QByteArray(fresh).replace("__scriptpath__", maya.pluginBytes()) + "\r\n\nmine()\n";
    const test::LogCapture log;

    QCOMPARE(maya.install(), 0);
    QCOMPARE(test::treeDifference(maya.tree(), expected), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_MayaBlock::everyPlaceHolderOfTheTemplateIsReplaced()
{
    const MayaScripts maya;
    maya.writeTemplate(shelfTemplate + "__scriptpath__ __scriptPath__ __ScriptPath__\n"
                       + "__scriptpath____scriptpath__ __SCRIPTPATH__\n");
    maya.write(maya.script, "# __scriptpath__\n" + oldBlock + "# __scriptpath__");
    const QByteArray folder = maya.pluginBytes();

    QCOMPARE(maya.install(), 0);
    QCOMPARE(maya.read(maya.script),
             "# __scriptpath__\n\r\n" + shelfTemplate + folder + ' ' + folder + ' ' + folder + '\n'
                 + folder + folder + " __SCRIPTPATH__\n\r\n# __scriptpath__");
}

void tst_MayaBlock::textAroundTheBlockIsKept_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QByteArray>("keptBefore");
    QTest::addColumn<QByteArray>("keptAfter");

    const auto addSame = [](const char *name, const QByteArray &before, const QByteArray &after) {
        QTest::newRow(name) << before << after << before << after;
    };
    addSame("nothing around it", "", "");
    addSame("blanks, tabs and empty lines", "\n\n\ta \n\n", " \n\n\tb \n\n");
    addSame("text on the lines of the block", "if x: ", "; y()");
    addSame("letters outside ASCII", "# \xc3\xa9\n", "\n# \xe6\xbc\xa2\n");
    addSame("a null character", QByteArray("\0\n", 2), QByteArray("\n\0", 2));
    QTest::newRow("carriage returns, which fall away")
        << QByteArray("a\r\nb\rc\r\n") << QByteArray("\r\nd\r\n") << QByteArray("a\nbc\n")
        << QByteArray("\nd\n");
    QTest::newRow("a byte-order mark, which falls away")
        << QByteArray("\xef\xbb\xbf# a\n") << QByteArray("") << QByteArray("# a\n")
        << QByteArray("");
    QTest::newRow("bytes that are no UTF-8")
        << QByteArray("# \xff\n") << QByteArray("# \x80") << QByteArray("# \xef\xbf\xbd\n")
        << QByteArray("# \xef\xbf\xbd");
}

void tst_MayaBlock::textAroundTheBlockIsKept()
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

void tst_MayaBlock::templateTextIsWrittenAsItReads_data()
{
    QTest::addColumn<QByteArray>("templateText");
    QTest::addColumn<QByteArray>("written");

    QTest::newRow("nothing but the shelf call, in a remark")
        << QByteArray("# no draskshelf.init() today") << QByteArray("# no draskshelf.init() today");
    QTest::newRow("no line end at the end")
        << QByteArray("draskshelf.init()") << QByteArray("draskshelf.init()");
    QTest::newRow("carriage returns, which fall away")
        << QByteArray("a\r\ndraskshelf.init()\r\n") << QByteArray("a\ndraskshelf.init()\n");
    QTest::newRow("a byte-order mark, which falls away")
        << QByteArray("\xef\xbb\xbf" + shelfTemplate) << shelfTemplate;
    QTest::newRow("letters outside ASCII")
        << shelfTemplate + "# \xc3\xa9" << shelfTemplate + "# \xc3\xa9";
    QTest::newRow("a byte that is no UTF-8")
        << shelfTemplate + "# \xff" << shelfTemplate + "# \xef\xbf\xbd";
}

void tst_MayaBlock::templateTextIsWrittenAsItReads()
{
    QFETCH(QByteArray, templateText);
    QFETCH(QByteArray, written);
    const MayaScripts maya;
    maya.writeTemplate(templateText);
    maya.write(maya.script, oldBlock);

    QCOMPARE(maya.install(), 0);
    QCOMPARE(maya.read(maya.script), "\r\n" + written + "\r\n");
}

void tst_MayaBlock::firstMarkerAndFirstDeferredCallBoundTheBlock()
{
    const MayaScripts maya;
    maya.writeTemplate(shelfTemplate);
    maya.write(maya.script, "a #drask_installed b\n" + oldBlock + '\n' + oldBlock + '\n');

    QCOMPARE(maya.install(), 0);
    QCOMPARE(maya.read(maya.script), "a \r\n" + shelfTemplate + "\r\n\n" + oldBlock + '\n');
}

void tst_MayaBlock::deferredCallBeforeTheMarkerRepeatsTheTextBetween()
{
    const MayaScripts maya;
    maya.writeTemplate(shelfTemplate);
    const QByteArray rest = "\n#drask_installed\n" + pathLine("/old") + '\n';
    maya.write(maya.script, "a\n" + deferredCall + "\nbetween" + rest);

    QCOMPARE(maya.install(), 0);
    QCOMPARE(maya.read(maya.script),
             "a\n" + deferredCall + "\nbetween\n\r\n" + shelfTemplate + "\r\n\nbetween" + rest);
}

void tst_MayaBlock::everyRunAddsItsFrame()
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

void tst_MayaBlock::markerThatIsGoneAtTheSecondReadingFails()
{
    const MayaScripts maya;
    maya.writeTemplate(shelfTemplate);
    const QByteArray withoutMarker = "a\r\n" + deferredCall + "\r\n";
    test::Tree expected = maya.tree();
    expected[maya.script] = withoutMarker;
    const test::ChangingFile script(maya.path(maya.script), {oldBlock}, withoutMarker);
    const test::LogCapture log;

    QCOMPARE(maya.install(), 1);
    QCOMPARE(test::treeDifference(maya.tree(), expected), QString());
    QCOMPARE(log.lines(), QStringList("Debug: old positions not found"));
}

void tst_MayaBlock::deferredCallThatIsGoneAtTheSecondReadingLeadsToThePathLine()
{
    const MayaScripts maya;
    maya.writeTemplate(shelfTemplate);
    const test::ChangingFile script(maya.path(maya.script), {oldBlock}, "#drask_installed\n");
    const test::LogCapture log;

    QCOMPARE(maya.install(), 0);
    QCOMPARE(maya.read(maya.script),
             "#drask_installed\n" + pathLine(maya.pluginBytes()) + "\nold()\n" + deferredCall
                 + '\n');
    QCOMPARE(log.lines(), QStringList());
}

void tst_MayaBlock::textOfTheSecondReadingIsKept()
{
    const MayaScripts maya;
    maya.writeTemplate(shelfTemplate);
    const test::ChangingFile script(maya.path(maya.script), {"first\n" + oldBlock},
                                    "second\n#drask_installed " + deferredCall + "end");

    QCOMPARE(maya.install(), 0);
    QCOMPARE(maya.read(maya.script), "second\n\r\n" + shelfTemplate + "\r\nend");
}

void tst_MayaBlock::scriptThatCannotBeOpenedForWritingFails()
{
    const MayaScripts maya;
    maya.writeTemplate(shelfTemplate);
    test::Tree expected = maya.tree();
    expected[maya.script + '/'] = "";
    const test::ChangingFile script(maya.path(maya.script), {oldBlock, oldBlock}, QByteArray());
    const test::LogCapture log;

    QCOMPARE(maya.install(), 1);
    QCOMPARE(test::treeDifference(maya.tree(), expected), QString());
    QCOMPARE(log.lines(), QStringList("Debug: Could not open target file2 \"Is a directory\""));
}

void tst_MayaBlock::scriptThatMayNotBeWrittenFails()
{
    const MayaScripts maya;
    maya.writeTemplate(shelfTemplate);
    maya.write(maya.script, oldBlock);
    const test::Tree before = maya.tree();
    const test::ReadOnly lock(maya.path(maya.script));
    const test::LogCapture log;
    {
        BECOME_ORDINARY_USER_OR_SKIP();
        QCOMPARE(maya.install(), 1);
    }

    QCOMPARE(test::treeDifference(maya.tree(), before), QString());
    QCOMPARE(log.lines(), QStringList("Debug: Could not open target file2 \"Permission denied\""));
}

DRASK_TEST(tst_MayaBlock)
#include "tst_maya_block.moc"
