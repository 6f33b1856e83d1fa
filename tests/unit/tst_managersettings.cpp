// SPDX-License-Identifier: MIT
#include "managersettings.h"

#include "disk/files.h"
#include "programfolder.h"
#include "unitcase.h"

namespace {

const char obstacle[] = "a folder stands in its place";

} // namespace

class tst_ManagerSettings : public QObject {
    Q_OBJECT
private slots:
    void fileBesideTheProgramIsRead()
    {
        const test::ProgramFolder folder;
        folder.write("settings.ini",
                     "[UserData]\nusername=Ann\n\n[Settings]\ncopyTexFiles=false\n");

        const ManagerSettings settings;

        QCOMPARE(settings.format(), QSettings::IniFormat);
        QCOMPARE(settings.fileName(), folder.path("settings.ini"));
        QCOMPARE(settings.value("UserData/username"), QVariant("Ann"));
        QCOMPARE(settings.value("Settings/copyTexFiles").toBool(), false);
        QVERIFY(!settings.contains("Settings/username"));
    }

    void workingDirectoryDoesNotMatter()
    {
        const test::ProgramFolder folder;
        const test::Sandbox elsewhere;
        const test::WorkingFolder workingFolder(elsewhere.path());
        elsewhere.write("settings.ini", "[UserData]\nusername=Stranger\n");
        QCOMPARE(ManagerSettings().value("UserData/username"), QVariant());
    }

    void textIsUtf8_data()
    {
        const test::Table<QByteArray, QString> table("line", "text");
        table.row("two bytes a letter", "text=H\xc3\xb6st", "H\xc3\xb6st");
        table.row("three bytes a letter", "text=\xe6\x97\xa5", "\xe6\x97\xa5");
        table.row("four bytes a letter in quotes", "text=\"/a \xf0\x9f\x98\x80\"",
                  "/a \xf0\x9f\x98\x80");
        table.row("an escaped letter", "text=H\\xf6st", "H\xc3\xb6st");
    }

    void textIsUtf8()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, text);
        const test::ProgramFolder folder;
        folder.write("settings.ini", "[Part]\n" + line + '\n');
        QCOMPARE(ManagerSettings().value("Part/text").toString(), text);
    }

    void readingChangesNothing()
    {
        const test::ProgramFolder folder;
        // What cannot be read is passed over.
        folder.write("settings.ini",
                     "; by hand\n[UserData]\nno value\n username = Ann \n\xff=\x80\n");
        folder.age("settings.ini");
        const test::Tree before = folder.tree();
        {
            const ManagerSettings settings;
            QCOMPARE(settings.value("UserData/username"), QVariant("Ann"));
        }
        VERIFY_TREE(folder, before);
        QVERIFY(folder.isAged("settings.ini"));
    }

    /// Listed in behaviour.md: what cannot be bridged.
    void brokenLettersDependOnTheQt()
    {
        const test::ProgramFolder folder;
        folder.write("settings.ini",
                     "[UserData]\nusername=Ann\xc3\nother=\xc3 Ann\n"
                     "mark=A\\x41\xef\xbb\xbf"
                     "Ann\n");
        const ManagerSettings settings;
        QCOMPARE(settings.value("UserData/username").toString(),
                 QT_VERSION_MAJOR < 6 ? QStringLiteral("Ann\ufffd") : "Ann");
        QCOMPARE(settings.value("UserData/other").toString(), QStringLiteral("\ufffd Ann"));
        QCOMPARE(settings.value("UserData/mark").toString(),
                 QT_VERSION_MAJOR < 6 ? QStringLiteral("AAAnn") : QStringLiteral("AA\ufeffAnn"));
    }

    /// As is this.
    void halfASurrogateInAPathDependsOnTheQt()
    {
        const test::ProgramFolder folder;
        QVERIFY(makePath(folder.path(QString("a") + QChar(0xd83d) + 'b')));
        QVERIFY(folder.exists(QT_VERSION_MAJOR < 6 ? QStringLiteral("a?b")
                                                   : QStringLiteral("a\ufffdb")));
    }

    void unusableFileReadsAsEmpty_data()
    {
        const test::Table<QByteArray> table("content");
        table.row("no file", QByteArray());
        table.row(obstacle, QByteArray());
        table.row("an empty file", "");
        table.row("only a section", "[UserData]");
        table.row("a section that does not end", "[UserData\nusername");
        table.row("bytes that are no text", QByteArray("\xff\x00=\x80\n[\xfe]\r=\n", 11));
    }

    void unusableFileReadsAsEmpty()
    {
        QFETCH(QByteArray, content);
        const test::ProgramFolder folder;
        if (!content.isNull()) {
            folder.write("settings.ini", content);
        } else if (qstrcmp(QTest::currentDataTag(), obstacle) == 0) {
            folder.makeFolder("settings.ini");
        }
        const test::Tree before = folder.tree();
        const test::LogCapture log;
        {
            ManagerSettings settings;
            QCOMPARE(settings.value("UserData/username"), QVariant());
            QCOMPARE(settings.value("Settings/copyTexFiles", true), QVariant(true));
            QCOMPARE(settings.beginReadArray("pluginpaths"), 0);
            settings.endArray();
        }
        QCOMPARE(log.lines(), QStringList());
        VERIFY_TREE(folder, before);
    }
};

DRASK_TEST_IN_OWN_FOLDER(tst_ManagerSettings)
#include "tst_managersettings.moc"
