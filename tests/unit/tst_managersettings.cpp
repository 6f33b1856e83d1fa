// SPDX-License-Identifier: MIT
#include "managersettings.h"

#include "logcapture.h"
#include "ordinaryuser.h"
#include "programfolder.h"
#include "testprogram.h"

#include <QRandomGenerator>
#include <QtTest>

class tst_ManagerSettings : public QObject {
    Q_OBJECT

private slots:
    void fileBesideTheProgramIsRead();
    void workingDirectoryDoesNotMatter();
    void textIsUtf8_data();
    void textIsUtf8();
    void readingChangesNothing();
    void unusableFileReadsAsEmpty_data();
    void unusableFileReadsAsEmpty();
    void unreadableFileReadsAsEmpty();
};

namespace {

const char obstacle[] = "a folder stands in its place";

QByteArray randomBytes(quint32 seed)
{
    QRandomGenerator generator(seed);
    QByteArray bytes(4096, '\0');
    for (char &byte : bytes) {
        byte = static_cast<char>(generator.bounded(256));
    }
    return bytes;
}

} // namespace

void tst_ManagerSettings::fileBesideTheProgramIsRead()
{
    const test::ProgramFolder folder;
    folder.write("settings.ini", "[UserData]\nusername=Ann\n\n[Settings]\ncopyTexFiles=false\n");

    const ManagerSettings settings;

    QCOMPARE(settings.format(), QSettings::IniFormat);
    QCOMPARE(settings.fileName(), folder.path("settings.ini"));
    QCOMPARE(settings.value("UserData/username"), QVariant("Ann"));
    QCOMPARE(settings.value("Settings/copyTexFiles").toBool(), false);
    QVERIFY(!settings.contains("Settings/username"));
}

void tst_ManagerSettings::workingDirectoryDoesNotMatter()
{
    const test::ProgramFolder folder;
    const test::Sandbox elsewhere;
    const test::WorkingFolder workingFolder(elsewhere.path());
    elsewhere.write("settings.ini", "[UserData]\nusername=Stranger\n");

    QCOMPARE(ManagerSettings().value("UserData/username"), QVariant());
}

void tst_ManagerSettings::textIsUtf8_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("text");

    QTest::newRow("two bytes a letter")
        << QByteArray("text=H\xc3\xb6st") << QString::fromUtf8("H\xc3\xb6st");
    QTest::newRow("three bytes a letter")
        << QByteArray("text=\xe6\x97\xa5") << QString::fromUtf8("\xe6\x97\xa5");
    QTest::newRow("four bytes a letter in quotes")
        << QByteArray("text=\"/a \xf0\x9f\x98\x80\"") << QString::fromUtf8("/a \xf0\x9f\x98\x80");
    QTest::newRow("an escaped letter")
        << QByteArray("text=H\\xf6st") << QString::fromUtf8("H\xc3\xb6st");
}

void tst_ManagerSettings::textIsUtf8()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, text);
    const test::ProgramFolder folder;
    folder.write("settings.ini", "[Part]\n" + line + '\n');

    QCOMPARE(ManagerSettings().value("Part/text").toString(), text);
}

void tst_ManagerSettings::readingChangesNothing()
{
    const test::ProgramFolder folder;
    // What cannot be read is passed over.
    folder.write("settings.ini", "; by hand\n[UserData]\nno value\n username = Ann \n\xff=\x80\n");
    folder.age("settings.ini");
    const test::Tree before = folder.tree();
    {
        const ManagerSettings settings;
        QCOMPARE(settings.value("UserData/username"), QVariant("Ann"));
    }
    QCOMPARE(test::treeDifference(folder.tree(), before), QString());
    QVERIFY(folder.isAged("settings.ini"));
}

void tst_ManagerSettings::unusableFileReadsAsEmpty_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("no file") << QByteArray();
    QTest::newRow(obstacle) << QByteArray();
    QTest::newRow("an empty file") << QByteArray("");
    QTest::newRow("only a section") << QByteArray("[UserData]");
    QTest::newRow("a section that does not end") << QByteArray("[UserData\nusername");
    for (const quint32 seed : {1U, 2U, 3U, 4U}) {
        QTest::addRow("random bytes, seed %u", seed) << randomBytes(seed);
    }
}

void tst_ManagerSettings::unusableFileReadsAsEmpty()
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
    QCOMPARE(test::treeDifference(folder.tree(), before), QString());
}

void tst_ManagerSettings::unreadableFileReadsAsEmpty()
{
    const test::ProgramFolder folder;
    folder.write("settings.ini", "[UserData]\nusername=Ann\n");
    QVERIFY(QFile::setPermissions(folder.path("settings.ini"), QFileDevice::Permissions()));
    BECOME_ORDINARY_USER_OR_SKIP();
    const test::LogCapture log;

    QCOMPARE(ManagerSettings().value("UserData/username"), QVariant());
    QCOMPARE(log.lines(), QStringList());
}

DRASK_TEST_IN_OWN_FOLDER(tst_ManagerSettings)
#include "tst_managersettings.moc"
