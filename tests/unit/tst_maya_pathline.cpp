// SPDX-License-Identifier: MIT
#include "changingfile.h"
#include "mayascripts.h"
#include "testprogram.h"

#include <QtTest>

namespace {

const QByteArray oldBlock = "#drask_installed\n" + pathLine("/old") + '\n';

} // namespace

class tst_MayaPathLine : public QObject {
    Q_OBJECT

private slots:
    void equalPathLineWritesNothing_data();
    void equalPathLineWritesNothing();
    void oldPathLineIsFound_data();
    void oldPathLineIsFound();
    void lastOfSeveralPathLinesWins();
    void oldPathLineIsReplacedWhereverItStands();
    void blockStaysUnlessBothFilesCloseIt_data();
    void blockStaysUnlessBothFilesCloseIt();
    void linesOfTheFirstReadingAreWrittenBack();
    void scriptThatCannotBeOpenedForWritingFails();
};

void tst_MayaPathLine::equalPathLineWritesNothing_data()
{
    QTest::addColumn<QByteArray>("templateText");

    QTest::newRow("an old template") << QByteArray("#drask_installed\n");
    QTest::newRow("an empty template") << QByteArray("");
    QTest::newRow("no template") << QByteArray();
}

void tst_MayaPathLine::equalPathLineWritesNothing()
{
    QFETCH(QByteArray, templateText);
    const MayaScripts maya;
    if (!templateText.isNull()) {
        maya.writeTemplate(templateText);
    }
    maya.write(maya.script, "#drask_installed\r\n" + pathLine(maya.pluginBytes()) + "\r\n\xff");
    maya.age(maya.script);
    const test::Tree before = maya.tree();
    const test::LogCapture log;

    QCOMPARE(maya.install(), 0);
    QCOMPARE(test::treeDifference(maya.tree(), before), QString());
    QVERIFY(maya.isAged(maya.script));
    QCOMPARE(log.lines(), QStringList());
}

void tst_MayaPathLine::oldPathLineIsFound_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("oldLine");

    const QByteArray marker = "#drask_installed\n";
    QTest::newRow("right behind the marker") << marker << pathLine("/old");
    QTest::newRow("many lines behind the marker") << marker + "import sys\n\n# text\n"
                                                  << pathLine("/old");
    QTest::newRow("behind a marker in the middle of a line")
        << QByteArray("import sys #drask_installed by hand\n") << pathLine("/old");
    QTest::newRow("on the marker's own line")
        << QByteArray("") << pathLine("/old") + " #drask_installed";
    QTest::newRow("of an earlier form")
        << marker << QByteArray("\tsys.path.append( importable_path('/old'))");
    QTest::newRow("with a remark behind it") << marker << pathLine("/old") + " # drask";
    QTest::newRow("with nothing behind its beginning")
        << marker << QByteArray("\tsys.path.append( importable_path(");
    QTest::newRow("with the same folder and a blank at the end")
        << marker << pathLine("/old") + ' ';
}

void tst_MayaPathLine::oldPathLineIsFound()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, oldLine);
    const MayaScripts maya;
    maya.writeTemplate("#drask_installed\n");
    // What is read as text is written back as UTF-8 with line feeds; no backup is made.
    maya.write(maya.script,
               "\xef\xbb\xbf#\xc3\xa9\xff\r\na\rb\n\n" + before + oldLine + "\nmine()");
    test::Tree expected = maya.tree();
    expected[maya.script] = "#\xc3\xa9\xef\xbf\xbd\nab\n\n" + before + pathLine(maya.pluginBytes())
        + "\nmine()\n";
    const test::LogCapture log;

    QCOMPARE(maya.install(), 0);
    QCOMPARE(test::treeDifference(maya.tree(), expected), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_MayaPathLine::lastOfSeveralPathLinesWins()
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

void tst_MayaPathLine::oldPathLineIsReplacedWhereverItStands()
{
    const MayaScripts maya;
    maya.writeTemplate("#drask_installed\n");
    const QByteArray line = pathLine("/old");
    maya.write(maya.script, line + "\n#" + line + line + "; drask()\n#drask_installed\n" + line);
    const QByteArray fresh = pathLine(maya.pluginBytes());

    QCOMPARE(maya.install(), 0);
    QCOMPARE(maya.read(maya.script),
             fresh + "\n#" + fresh + fresh + "; drask()\n#drask_installed\n" + fresh + '\n');
}

void tst_MayaPathLine::blockStaysUnlessBothFilesCloseIt_data()
{
    QTest::addColumn<QByteArray>("templateText");
    QTest::addColumn<QByteArray>("closing");

    const QByteArray shelf = "draskshelf.init()\n";
    const QByteArray deferred = "maya.utils.executeDeferred(\"searchTab()\")\n";
    QTest::newRow("neither does") << QByteArray("import drask\n") << QByteArray("import drask\n");
    QTest::newRow("only the template has the shelf call") << shelf << shelf;
    QTest::newRow("only the script has the deferred call") << deferred << deferred;
    QTest::newRow("the template is missing") << QByteArray() << deferred;
    QTest::newRow("the shelf call in other letter case")
        << QByteArray("DraskShelf.init()\n") << deferred;
    QTest::newRow("the shelf call with an argument")
        << QByteArray("draskshelf.init(True)\n") << deferred;
    QTest::newRow("the deferred call in single quotes")
        << shelf << QByteArray("maya.utils.executeDeferred('searchTab()')\n");
    QTest::newRow("the deferred call in other letter case")
        << shelf << QByteArray("maya.utils.executedeferred(\"searchTab()\")\n");
}

void tst_MayaPathLine::blockStaysUnlessBothFilesCloseIt()
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

void tst_MayaPathLine::linesOfTheFirstReadingAreWrittenBack()
{
    const MayaScripts maya;
    maya.writeTemplate("#drask_installed\n");
    const test::ChangingFile script(maya.path(maya.script), {"first\n" + oldBlock}, "second\n");

    QCOMPARE(maya.install(), 0);
    QCOMPARE(maya.read(maya.script),
             "first\n#drask_installed\n" + pathLine(maya.pluginBytes()) + '\n');
}

void tst_MayaPathLine::scriptThatCannotBeOpenedForWritingFails()
{
    const MayaScripts maya;
    maya.writeTemplate("#drask_installed\n");
    test::Tree expected = maya.tree();
    expected[maya.script + '/'] = "";
    const test::ChangingFile script(maya.path(maya.script), {oldBlock}, QByteArray());
    const test::LogCapture log;

    QCOMPARE(maya.install(), 1);
    QCOMPARE(test::treeDifference(maya.tree(), expected), QString());
    QCOMPARE(log.lines(), QStringList("Debug: Could not open target file \"Is a directory\""));
}

DRASK_TEST(tst_MayaPathLine)
#include "tst_maya_pathline.moc"
