// SPDX-License-Identifier: MIT
#include "changingfile.h"
#include "installer/plugininstaller.h"
#include "loggedsandbox.h"
#include "unitcase.h"

namespace {

const QByteArray marker = "#drask_installed\n";

/// The line that puts \a folder on Houdini's search path.
QByteArray assignment(const QByteArray &folder)
{
    return "HOUDINI_PATH = \"" + folder + ";$HOUDINI_PATH\"\n";
}

/// \a text in \a encoding, with its byte-order mark.
QByteArray encoded(const QByteArray &encoding, const QByteArray &text)
{
    QByteArray bytes;
    for (const QChar letter : QChar(QChar::ByteOrderMark) + QString::fromUtf8(text)) {
        const char low = static_cast<char>(letter.cell());
        const char high = static_cast<char>(letter.row());
        bytes.append(encoding == "UTF-16LE" ? low : high);
        bytes.append(encoding == "UTF-16LE" ? high : low);
    }
    return bytes;
}

int edit(const test::Sandbox &sandbox, const QString &folder = "/new")
{
    return PluginInstaller::editHoudiniEnv(folder, sandbox.path("houdini.env"));
}

} // namespace

class tst_Houdini : public QObject {
    Q_OBJECT
private slots:
    void missingFileIsMade()
    {
        const test::LoggedSandbox sandbox;
        QCOMPARE(edit(sandbox), 0);
        VERIFY_TREE(
            sandbox,
            {{"houdini.env", "\n#drask_installed\nHOUDINI_PATH = \"/new;$HOUDINI_PATH\"\n"}});
        QCOMPARE(sandbox.log.lines(), QStringList());
    }

    void folderIsWrittenAsItIs_data()
    {
        const test::Table<QString> table("folder");
        table.row("no folder", "");
        table.row("blanks", "/a folder/of two words");
        table.row("quotes", "/O'Neil/\"x\"");
        table.row("backslashes", "C:\\Houdini\\drask");
        table.row("a variable", "$HOME/drask;&");
        table.row("a place-holder of the formatter", "/%1/%2");
        table.row("letters outside ASCII", "/h\xc3\xb6me/\xe6\xbc\xa2");
    }

    void folderIsWrittenAsItIs()
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

    void additionIsAppendedByteForByte_data()
    {
        const test::Table<QByteArray> table("content");
        table.row("bytes that are no UTF-8", QByteArray("# \xff\xfe\x80\x00\n", 7));
        table.row("the assignment without the marker", assignment("/new"));
        table.row("the marker in other letter case", "#Drask_Installed\n" + assignment("/new"));
        table.row("the marker with a blank in it", "# drask_installed\n" + assignment("/new"));
        table.row("a marker as the last line", "A = 1\n" + marker);
        table.row("a marker without its line end", "#drask_installed");
        table.row("two markers and nothing behind them", marker + marker);
        table.row("an empty line behind the marker", marker + '\n' + assignment("/new"));
        table.row("a carriage return behind the marker", marker + "\r\n" + assignment("/new"));
    }

    void additionIsAppendedByteForByte()
    {
        QFETCH(QByteArray, content);
        const test::Sandbox sandbox;
        sandbox.write("houdini.env", content);
        QCOMPARE(edit(sandbox), 0);
        QCOMPARE(sandbox.read("houdini.env"), content + '\n' + marker + assignment("/new"));
    }

    void lineBehindTheMarkerIsReplaced_data()
    {
        const test::Table<QByteArray, QByteArray> table("before", "line");
        table.row("an assignment of another folder", marker, assignment("/old"));
        table.row("an assignment without its line end", marker, assignment("/old").trimmed());
        table.row("the same assignment with a blank at the end", marker,
                  assignment("/new").trimmed() + " \n");
        table.row("a setting of the user's", marker, "HOUDINI_SPLASH = 0\n");
        table.row("a single tab", marker, "\t\n");
        table.row("behind a marker in the middle of a line", "A=1 #drask_installed by hand\n",
                  assignment("/old"));
        table.row("behind two markers", marker + marker, assignment("/old"));
        table.row("behind settings of the user's", "A=1\n\nB=2\n" + marker, assignment("/old"));
    }

    void lineBehindTheMarkerIsReplaced()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, line);
        const test::LoggedSandbox sandbox;
        sandbox.write("houdini.env", before + line);
        QCOMPARE(edit(sandbox), 0);
        QCOMPARE(sandbox.read("houdini.env"), before + assignment("/new"));
        QCOMPARE(sandbox.log.lines(), QStringList());
    }

    void updateDropsTheLinesBehindTheAssignment()
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

    void equalAssignmentKeepsTheLinesBehindIt()
    {
        const test::Sandbox sandbox;
        const QByteArray content = marker + assignment("/new") + "B = 2\r\n" + assignment("/mine");
        sandbox.write("houdini.env", content);
        sandbox.age("houdini.env");
        QCOMPARE(edit(sandbox), 0);
        QCOMPARE(sandbox.read("houdini.env"), content);
        QVERIFY(sandbox.isAged("houdini.env"));
    }

    void onlyTheFirstAssignmentIsLookedAt()
    {
        const test::Sandbox sandbox;
        sandbox.write("houdini.env", marker + assignment("/new") + marker + assignment("/old"));
        sandbox.age("houdini.env");
        QCOMPARE(edit(sandbox), 0);
        QVERIFY(sandbox.isAged("houdini.env"));
        QCOMPARE(edit(sandbox, "/third"), 0);
        QCOMPARE(sandbox.read("houdini.env"), marker + assignment("/third"));
    }

    void oldLineIsReplacedWhereverItStands()
    {
        const test::Sandbox sandbox;
        sandbox.write("houdini.env", "X=0\n# X=0, X=0 and x=0\n" + marker + "X=0\n");
        QCOMPARE(edit(sandbox), 0);
        const QByteArray line = assignment("/new").trimmed();
        QCOMPARE(sandbox.read("houdini.env"),
                 line + "\n# " + line + ", " + line + " and x=0\n" + marker + line + '\n');
    }

    void utf16IsWrittenBackAsUtf8_data()
    {
        const test::Table<QByteArray, QByteArray> table("encoding", "lineEnd");
        table.row("the low byte first", "UTF-16LE", "\n");
        table.row("the high byte first", "UTF-16BE", "\n");
        table.row("carriage returns", "UTF-16LE", "\r\n");
    }

    void utf16IsWrittenBackAsUtf8()
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

    void additionToUtf16IsNotFoundAgain()
    {
        const test::Sandbox sandbox;
        const QByteArray content = encoded("UTF-16LE", "A = 1\n");
        const QByteArray addition = '\n' + marker + assignment("/new");
        sandbox.write("houdini.env", content);
        QCOMPARE(edit(sandbox), 0);
        QCOMPARE(edit(sandbox), 0);
        QCOMPARE(sandbox.read("houdini.env"), content + addition + addition);
    }

    void folderInTheFilesPlaceFailsSilently()
    {
        const test::LoggedSandbox sandbox;
        sandbox.makeFolder("houdini.env");
        QCOMPARE(edit(sandbox), 1);
        VERIFY_TREE(sandbox, {{"houdini.env/", ""}});
        QCOMPARE(sandbox.log.lines(), QStringList());
    }

    void fileThatCannotBeOpenedForWritingFails()
    {
        const test::LoggedSandbox sandbox;
        const test::ChangingFile file(sandbox.path("houdini.env"), {marker + assignment("/old")},
                                      QByteArray());
        QCOMPARE(edit(sandbox), 1);
        VERIFY_TREE(sandbox, {{"houdini.env/", ""}});
        QCOMPARE(sandbox.log.lines(),
                 QStringList("Debug: Could not open target file \"Is a directory\""));
    }
};

DRASK_TEST(tst_Houdini)
#include "tst_houdini.moc"
