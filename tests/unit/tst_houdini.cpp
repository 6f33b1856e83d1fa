// SPDX-License-Identifier: MIT
#include "changingfile.h"
#include "installer/plugininstaller.h"
#include "logcapture.h"
#include "ordinaryuser.h"
#include "sandbox.h"
#include "testprogram.h"

#include <QTextCodec>
#include <QtTest>

namespace {

const QByteArray marker = "#drask_installed\n";

/// The line that puts \a folder on Houdini's search path.
QByteArray assignment(const QByteArray &folder)
{
    return "HOUDINI_PATH = \"" + folder + ";$HOUDINI_PATH\"\n";
}

/// \a text in \a encoding, with its byte-order mark.
QByteArray encoded(const char *encoding, const QByteArray &text)
{
    return QTextCodec::codecForName(encoding)->fromUnicode(QString::fromUtf8(text));
}

int edit(const test::Sandbox &sandbox, const QString &folder = "/new")
{
    return PluginInstaller::editHoudiniEnv(folder, sandbox.path("houdini.env"));
}

} // namespace

class tst_Houdini : public QObject {
    Q_OBJECT

private slots:
    void missingFileIsMade();
    void folderIsWrittenAsItIs_data();
    void folderIsWrittenAsItIs();
    void additionIsAppendedByteForByte_data();
    void additionIsAppendedByteForByte();
    void additionWithoutAssignmentIsAppendedAgain_data();
    void additionWithoutAssignmentIsAppendedAgain();
    void lineBehindTheMarkerIsReplaced_data();
    void lineBehindTheMarkerIsReplaced();
    void updateDropsTheLinesBehindTheAssignment();
    void equalAssignmentKeepsTheLinesBehindIt();
    void onlyTheFirstAssignmentIsLookedAt();
    void oldLineIsReplacedWhereverItStands();
    void utf16IsWrittenBackAsUtf8_data();
    void utf16IsWrittenBackAsUtf8();
    void additionToUtf16IsNotFoundAgain();
    void folderInTheFilesPlaceFailsSilently();
    void missingParentFolderFailsSilently();
    void fileThatMayNotBeReadFailsSilently();
    void fileThatCannotBeOpenedForWritingFails();
    void fileThatMayNotBeWrittenFails();
};

void tst_Houdini::missingFileIsMade()
{
    const test::Sandbox sandbox;
    const test::LogCapture log;

    QCOMPARE(edit(sandbox), 0);
    QCOMPARE(test::treeDifference(
                 sandbox.tree(),
                 {{"houdini.env", "\n#drask_installed\nHOUDINI_PATH = \"/new;$HOUDINI_PATH\"\n"}}),
             QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_Houdini::folderIsWrittenAsItIs_data()
{
    QTest::addColumn<QString>("folder");

    QTest::newRow("no folder") << "";
    QTest::newRow("blanks") << "/a folder/of two words";
    QTest::newRow("quotes") << "/O'Neil/\"x\"";
    QTest::newRow("backslashes") << "C:\\Houdini\\drask";
    QTest::newRow("a variable") << "$HOME/drask;&";
    QTest::newRow("a place-holder of the formatter") << "/%1/%2";
    QTest::newRow("letters outside ASCII") << QString::fromUtf8("/h\xc3\xb6me/\xe6\xbc\xa2");
}

void tst_Houdini::folderIsWrittenAsItIs()
{
    QFETCH(QString, folder);
    const test::Sandbox sandbox;
    const QByteArray added = '\n' + marker + assignment(folder.toUtf8());

    QCOMPARE(edit(sandbox, folder), 0);
    QCOMPARE(sandbox.read("houdini.env"), added);

    sandbox.age("houdini.env");
    QCOMPARE(edit(sandbox, folder), 0);
    QVERIFY(sandbox.isAged("houdini.env"));

    QCOMPARE(edit(sandbox, "/other"), 0);
    QCOMPARE(sandbox.read("houdini.env"), '\n' + marker + assignment("/other"));
}

void tst_Houdini::additionIsAppendedByteForByte_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("an empty file") << QByteArray("");
    QTest::newRow("a last line without its end") << QByteArray("A = 1");
    QTest::newRow("carriage returns") << QByteArray("A = 1\r\nB = 2\r\n");
    QTest::newRow("a byte-order mark") << QByteArray("\xef\xbb\xbf# a\n");
    QTest::newRow("bytes that are no UTF-8") << QByteArray("# \xff\xfe\x80\x00\n", 7);
    QTest::newRow("the assignment without the marker") << assignment("/new");
    QTest::newRow("the marker in other letter case") << "#Drask_Installed\n" + assignment("/new");
    QTest::newRow("the marker with a blank in it") << "# drask_installed\n" + assignment("/new");
}

void tst_Houdini::additionIsAppendedByteForByte()
{
    QFETCH(QByteArray, content);
    const test::Sandbox sandbox;
    sandbox.write("houdini.env", content);

    QCOMPARE(edit(sandbox), 0);
    QCOMPARE(sandbox.read("houdini.env"), content + '\n' + marker + assignment("/new"));
}

void tst_Houdini::additionWithoutAssignmentIsAppendedAgain_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("a marker as the last line") << "A = 1\n" + marker;
    QTest::newRow("a marker without its line end") << QByteArray("#drask_installed");
    QTest::newRow("two markers and nothing behind them") << marker + marker;
    QTest::newRow("an empty line behind the marker") << marker + '\n' + assignment("/new");
    QTest::newRow("a carriage return behind the marker") << marker + "\r\n" + assignment("/new");
}

void tst_Houdini::additionWithoutAssignmentIsAppendedAgain()
{
    QFETCH(QByteArray, content);
    const test::Sandbox sandbox;
    sandbox.write("houdini.env", content);

    QCOMPARE(edit(sandbox), 0);
    QCOMPARE(sandbox.read("houdini.env"), content + '\n' + marker + assignment("/new"));
}

void tst_Houdini::lineBehindTheMarkerIsReplaced_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("an assignment of another folder") << marker << assignment("/old");
    QTest::newRow("an assignment without its line end") << marker << assignment("/old").trimmed();
    QTest::newRow("the same assignment with a blank at the end")
        << marker << assignment("/new").trimmed() + " \n";
    QTest::newRow("a setting of the user's") << marker << QByteArray("HOUDINI_SPLASH = 0\n");
    QTest::newRow("a single tab") << marker << QByteArray("\t\n");
    QTest::newRow("behind a marker in the middle of a line")
        << QByteArray("A=1 #drask_installed by hand\n") << assignment("/old");
    QTest::newRow("behind two markers") << marker + marker << assignment("/old");
    QTest::newRow("behind settings of the user's") << "A=1\n\nB=2\n" + marker << assignment("/old");
}

void tst_Houdini::lineBehindTheMarkerIsReplaced()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, line);
    const test::Sandbox sandbox;
    sandbox.write("houdini.env", before + line);
    const test::LogCapture log;

    QCOMPARE(edit(sandbox), 0);
    QCOMPARE(sandbox.read("houdini.env"), before + assignment("/new"));
    QCOMPARE(log.lines(), QStringList());
}

void tst_Houdini::updateDropsTheLinesBehindTheAssignment()
{
    const test::Sandbox sandbox;
    // What is read as text is written back as UTF-8 with line feeds.
    sandbox.write("houdini.env",
                  "\xef\xbb\xbf#\xc3\xa9\xff\r\na\rb\n\n" + marker + assignment("/old")
                      + "B = 2\n\n" + assignment("/mine"));

    QCOMPARE(edit(sandbox), 0);
    QCOMPARE(sandbox.read("houdini.env"),
             "#\xc3\xa9\xef\xbf\xbd\nab\n\n" + marker + assignment("/new"));
}

void tst_Houdini::equalAssignmentKeepsTheLinesBehindIt()
{
    const test::Sandbox sandbox;
    const QByteArray content = marker + assignment("/new") + "B = 2\r\n" + assignment("/mine");
    sandbox.write("houdini.env", content);
    sandbox.age("houdini.env");

    QCOMPARE(edit(sandbox), 0);
    QCOMPARE(sandbox.read("houdini.env"), content);
    QVERIFY(sandbox.isAged("houdini.env"));
}

void tst_Houdini::onlyTheFirstAssignmentIsLookedAt()
{
    const test::Sandbox sandbox;
    sandbox.write("houdini.env", marker + assignment("/new") + marker + assignment("/old"));
    sandbox.age("houdini.env");

    QCOMPARE(edit(sandbox), 0);
    QVERIFY(sandbox.isAged("houdini.env"));
    QCOMPARE(edit(sandbox, "/third"), 0);
    QCOMPARE(sandbox.read("houdini.env"), marker + assignment("/third"));
}

void tst_Houdini::oldLineIsReplacedWhereverItStands()
{
    const test::Sandbox sandbox;
    sandbox.write("houdini.env", "X=0\n# X=0, X=0 and x=0\n" + marker + "X=0\n");

    QCOMPARE(edit(sandbox), 0);
    const QByteArray line = assignment("/new").trimmed();
    QCOMPARE(sandbox.read("houdini.env"),
             line + "\n# " + line + ", " + line + " and x=0\n" + marker + line + '\n');
}

void tst_Houdini::utf16IsWrittenBackAsUtf8_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QByteArray>("lineEnd");

    QTest::newRow("the low byte first") << QByteArray("UTF-16LE") << QByteArray("\n");
    QTest::newRow("the high byte first") << QByteArray("UTF-16BE") << QByteArray("\n");
    QTest::newRow("carriage returns") << QByteArray("UTF-16LE") << QByteArray("\r\n");
}

void tst_Houdini::utf16IsWrittenBackAsUtf8()
{
    QFETCH(QByteArray, encoding);
    QFETCH(QByteArray, lineEnd);
    const test::Sandbox sandbox;
    const QByteArray before = "# \xc3\xa9\n" + marker;
    const QByteArray text = QByteArray(before + assignment("/old")).replace("\n", lineEnd);
    sandbox.write("houdini.env", encoded(encoding, text));
    QCOMPARE(sandbox.read("houdini.env").size(), 2 * QString::fromUtf8(text).size() + 2);

    QCOMPARE(edit(sandbox), 0);
    QCOMPARE(sandbox.read("houdini.env"), before + assignment("/new"));
}

void tst_Houdini::additionToUtf16IsNotFoundAgain()
{
    const test::Sandbox sandbox;
    const QByteArray content = encoded("UTF-16LE", "A = 1\n");
    const QByteArray addition = '\n' + marker + assignment("/new");
    sandbox.write("houdini.env", content);

    QCOMPARE(edit(sandbox), 0);
    QCOMPARE(edit(sandbox), 0);
    QCOMPARE(sandbox.read("houdini.env"), content + addition + addition);
}

void tst_Houdini::folderInTheFilesPlaceFailsSilently()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("houdini.env");
    const test::LogCapture log;

    QCOMPARE(edit(sandbox), 1);
    QCOMPARE(test::treeDifference(sandbox.tree(), {{"houdini.env/", ""}}), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_Houdini::missingParentFolderFailsSilently()
{
    const test::Sandbox sandbox;
    const test::LogCapture log;

    QCOMPARE(PluginInstaller::editHoudiniEnv("/new", sandbox.path("none/houdini.env")), 1);
    QCOMPARE(test::treeDifference(sandbox.tree(), {}), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_Houdini::fileThatMayNotBeReadFailsSilently()
{
    const test::Sandbox sandbox;
    const QByteArray content = marker + assignment("/old");
    sandbox.write("houdini.env", content);
    test::giveToOrdinaryUser(sandbox.path("houdini.env"));
    QFile::setPermissions(sandbox.path("houdini.env"), QFile::WriteOwner);
    const test::LogCapture log;
    int result = -1;
    {
        BECOME_ORDINARY_USER_OR_SKIP();
        result = edit(sandbox);
    }
    QFile::setPermissions(sandbox.path("houdini.env"), QFile::ReadOwner | QFile::WriteOwner);

    QCOMPARE(result, 1);
    QCOMPARE(sandbox.read("houdini.env"), content);
    QCOMPARE(log.lines(), QStringList());
}

void tst_Houdini::fileThatCannotBeOpenedForWritingFails()
{
    const test::Sandbox sandbox;
    const test::ChangingFile file(sandbox.path("houdini.env"), {marker + assignment("/old")},
                                  QByteArray());
    const test::LogCapture log;

    QCOMPARE(edit(sandbox), 1);
    QCOMPARE(test::treeDifference(sandbox.tree(), {{"houdini.env/", ""}}), QString());
    QCOMPARE(log.lines(), QStringList("Debug: Could not open target file \"Is a directory\""));
}

void tst_Houdini::fileThatMayNotBeWrittenFails()
{
    const test::Sandbox sandbox;
    const QByteArray content = marker + assignment("/old");
    sandbox.write("houdini.env", content);
    const test::ReadOnly lock(sandbox.path("houdini.env"));
    const test::LogCapture log;
    {
        BECOME_ORDINARY_USER_OR_SKIP();
        QCOMPARE(edit(sandbox), 1);
    }

    QCOMPARE(sandbox.read("houdini.env"), content);
    QCOMPARE(log.lines(), QStringList("Debug: Could not open target file \"Permission denied\""));
}

DRASK_TEST(tst_Houdini)
#include "tst_houdini.moc"
