// SPDX-License-Identifier: MIT
#include "copysandbox.h"
#include "unitcase.h"

/// What a copy places, and where.
class tst_FolderCopy : public QObject {
    Q_OBJECT
private slots:
    void filesOfAllLevelsArePlaced()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/drask.py", "import sys\n");
        sandbox.write("plugin/empty.txt", "");
        sandbox.write("plugin/bin/drask.so", QByteArray("so\0\xff\r\n", 6));
        sandbox.write("plugin/bin/deep/er/data.bin", QByteArray(100000, '\xa5'));
        sandbox.makeFolder("host/drask");

        QCOMPARE(sandbox.copy(), 0);

        test::Tree copied = test::readTree(sandbox.path("host/drask"));
        QVERIFY(!copied.take("uninstall.ini").isEmpty());
        QCOMPARE(test::treeDifference(copied, test::readTree(sandbox.path("plugin"))), QString());
        QCOMPARE(sandbox.log(), QStringList("Debug: open file:  \"\""));
    }

    void emptySourceGivesAnEmptyManifest()
    {
        test::CopySandbox sandbox;
        sandbox.makeFolder("plugin");
        QCOMPARE(sandbox.copy(), 0);
        QCOMPARE(test::treeDifference(test::readTree(sandbox.path("host")),
                                      {{"drask/", ""}, {"drask/uninstall.ini", ""}}),
                 QString());
    }

    void emptySubfoldersAreMade()
    {
        test::CopySandbox sandbox;
        sandbox.makeFolder("plugin/cache/of/nothing");
        QCOMPARE(sandbox.copy(), 0);
        QVERIFY(sandbox.exists("host/drask/cache/of/nothing"));
        QCOMPARE(sandbox.manifest(), QStringList());
    }

    void existingFileIsReplacedByAFreshCopy()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "new");
        sandbox.write("plugin/sub/b.py", "same");
        sandbox.write("host/drask/a.py", "an old and longer text");
        sandbox.write("host/drask/sub/b.py", "same");
        sandbox.age("host/drask/sub/b.py");

        QCOMPARE(sandbox.copy(), 0);
        QCOMPARE(sandbox.read("host/drask/a.py"), QByteArray("new"));
        QVERIFY(!sandbox.isAged("host/drask/sub/b.py"));
        VERIFY_LINES(sandbox.manifest(), "host/drask/a.py", "host/drask/sub/b.py");
    }

    void filesOfTheHostStay()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/sub/a.py", "a");
        sandbox.write("host/drask/own.py", "mine");
        sandbox.write("host/drask/sub/own.py", "mine");
        sandbox.age("host/drask/own.py");
        sandbox.age("host/drask/sub/own.py");

        QCOMPARE(sandbox.copy(), 0);
        QVERIFY(sandbox.isAged("host/drask/own.py"));
        QVERIFY(sandbox.isAged("host/drask/sub/own.py"));
        QCOMPARE(sandbox.manifest(), QStringList("host/drask/sub/a.py"));
    }

    void linkInTheTargetIsReplacedAndItsFileStays()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "new");
        sandbox.write("home/a.py", "mine");
        sandbox.makeLink(sandbox.path("home/a.py"), "host/drask/a.py");
        QCOMPARE(sandbox.copy(), 0);
        QCOMPARE(sandbox.read("home/a.py"), QByteArray("mine"));
        QCOMPARE(test::readTree(sandbox.path("host/drask")).value("a.py"), QByteArray("new"));
    }

    void executableFilesStayExecutable()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/run.sh", "#!/bin/sh\n");
        sandbox.write("plugin/notes.txt", "notes");
        QVERIFY(QFile::setPermissions(sandbox.path("plugin/run.sh"),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QCOMPARE(sandbox.copy(), 0);
        QVERIFY(QFileInfo(sandbox.path("host/drask/run.sh")).isExecutable());
        QVERIFY(!QFileInfo(sandbox.path("host/drask/notes.txt")).isExecutable());
    }

    void whatIsHiddenDanglesOrIsNoFileIsNotCopied()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        sandbox.write("plugin/.hidden", "h");
        sandbox.write("plugin/.git/config", "h");
        sandbox.write("plugin/sub/.DS_Store", "h");
        sandbox.makeLink("/nowhere/at/all", "plugin/gone.py");
        sandbox.makeLink("circle", "plugin/circle");
        QCOMPARE(QProcess::execute("mkfifo", {sandbox.path("plugin/pipe")}), 0);
        QCOMPARE(sandbox.copy(), 0);
        QCOMPARE(test::readTree(sandbox.path("host/drask")).keys(),
                 QStringList({"a.py", "sub/", "uninstall.ini"}));
        QCOMPARE(sandbox.manifest(), QStringList("host/drask/a.py"));
    }

    void linksAreFollowed()
    {
        test::CopySandbox sandbox;
        sandbox.write("shared/icons/render.png", "png");
        sandbox.write("shared/common.py", "common");
        sandbox.makeLink(sandbox.path("shared/common.py"), "plugin/common.py");
        sandbox.makeLink("../shared/icons", "plugin/icons");

        QCOMPARE(sandbox.copy(), 0);

        test::Tree copied = test::readTree(sandbox.path("host/drask"));
        copied.remove("uninstall.ini");
        QCOMPARE(
            test::treeDifference(
                copied, {{"common.py", "common"}, {"icons/", ""}, {"icons/render.png", "png"}}),
            QString());
        VERIFY_LINES(sandbox.manifest(), "host/drask/common.py", "host/drask/icons/render.png");
    }

    void linkToItsOwnFolderEnds()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        sandbox.makeLink(".", "plugin/loop");
        QCOMPARE(sandbox.copy(), 0);
        const QStringList placed = sandbox.manifest();
        QVERIFY(placed.size() > 1);
        QCOMPARE(placed.at(1), QString("host/drask/loop/a.py"));
        QCOMPARE(sandbox.read(placed.last()), QByteArray("a"));
    }

    void oddNamesAreCopiedAndListed_data()
    {
        const test::Table<QString> table("name");
        table.row("blanks around it", " a b ");
        table.row("a backslash", "a\\b");
        table.row("quotes", "O'Neil \"the one\".py");
        table.row("a percent sign", "%1.py");
        table.row("a tab", "a\tb");
        table.row("a carriage return", "a\rb");
        table.row("letters of several scripts", "\xc3\xa9\xe6\x97\xa5.py");
        table.row("a sign beyond the basic plane", "\xf0\x9f\x90\x8d.py");
        table.row("wildcards", "*?[a].py");
        table.row("a colon in front", ":a.py");
        table.row("255 bytes, letters of one byte", QString(255, 'x'));
        table.row("255 bytes, letters of two bytes", QString(127, QChar(0x00e9)) + 'x');
        table.row("255 bytes, letters of three bytes", QString(85, QChar(0x65e5)));
    }

    void oddNamesAreCopiedAndListed()
    {
        QFETCH(QString, name);
        test::CopySandbox sandbox;
        sandbox.write("plugin/" + name, "odd");
        sandbox.write("plugin/folder/" + name + "/a", "a");
        QCOMPARE(sandbox.copy(), 0);
        QCOMPARE(sandbox.read("host/drask/" + name), QByteArray("odd"));
        VERIFY_LINES(sandbox.manifest(), "host/drask/" + name, "host/drask/folder/" + name + "/a");
    }

    void nameWithALineFeedMakesTwoLinesOfTheManifest()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugin/a\nb.py", "a");
        QCOMPARE(sandbox.copy(), 0);
        QCOMPARE(sandbox.read("host/drask/a\nb.py"), QByteArray("a"));
        VERIFY_LINES(sandbox.manifest(), "host/drask/a", "b.py");
    }

    void onlyWriteConfigCopiesNothing()
    {
        test::CopySandbox sandbox(true);
        sandbox.write("plugin/a.py", "new");
        sandbox.write("host/drask/a.py", "old");
        sandbox.write("host/drask/uninstall.ini", "list\n");
        const test::Tree before = sandbox.tree();

        QCOMPARE(sandbox.copy(), 0);
        VERIFY_TREE(sandbox, before);
        QCOMPARE(sandbox.log(), QStringList("Debug: only write config, do not copy files"));
        // The source is not looked for.
        QCOMPARE(sandbox.copy("nowhere", "host/drask"), 0);
    }
};

DRASK_TEST(tst_FolderCopy)
#include "tst_foldercopy.moc"
