// SPDX-License-Identifier: MIT
#include "status/settingscheck.h"

#include "kinds.h"
#include "testprogram.h"

#include <QtTest>

namespace {

const QByteArray fine = "; a remark\n"
                        "[UserData]\nusername=\"Ann, the artist\"\nloggedOut=false\n\n"
                        "[PathOptions]\nlocalProjectsFolder=/home/ann/pr\xc3\xb8jects\n"
                        "[Settings]\r\ncopyTexFiles=true\r\n"
                        "[plugins]\nversionMaya=41\nversion3ds=7\n"
                        "[pluginpaths]\n1\\application=maya\n1\\path=\"/a;b\"\nsize=1\n";

QStringList kindsIn(const QByteArray &content)
{
    return test::kindsOf(checkSettings(content, "/tool/settings.ini"));
}

} // namespace

class tst_SettingsCheck : public QObject {
    Q_OBJECT

private slots:
    void goodSettingsAreFine();
    void troubleIsNamed_data();
    void troubleIsNamed();
};

void tst_SettingsCheck::goodSettingsAreFine()
{
    QCOMPARE(kindsIn(fine), QStringList());
    QCOMPARE(kindsIn(QByteArray()), QStringList());
}

void tst_SettingsCheck::troubleIsNamed_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QStringList>("kinds");
    const QByteArray user = "\"Ann, the artist\"";
    QTest::newRow("section of somebody else")
        << QByteArray("[UserData]") << QByteArray("[Window]\nwidth=7\n[UserData]")
        << QStringList("unknownSection");
    QTest::newRow("key that nobody reads")
        << QByteArray("versionMaya") << QByteArray("versionmaya") << QStringList("unknownKey");
    QTest::newRow("key of an entry that nobody reads")
        << QByteArray("1\\path") << QByteArray("1\\Path") << QStringList("unknownKey");
    QTest::newRow("line without a value")
        << QByteArray("copyTexFiles=true") << QByteArray("copyTexFiles")
        << QStringList("unknownKey");
    QTest::newRow("comma without quotes")
        << user << QByteArray("Ann, the artist") << QStringList("unquotedList");
    QTest::newRow("semicolon without quotes")
        << QByteArray("\"/a;b\"") << QByteArray("/a;b") << QStringList("unquotedList");
    QTest::newRow("value of a type") << user << QByteArray("@Variant(x)") << QStringList("atValue");
    QTest::newRow("value of a type in quotes")
        << user << QByteArray("\"@Invalid()\"") << QStringList("atValue");
    QTest::newRow("sign that is escaped") << user << QByteArray("@@Ann") << QStringList();
    QTest::newRow("size missing") << QByteArray("size=1\n") << QByteArray()
                                  << QStringList("sizeMissing");
    QTest::newRow("size too large")
        << QByteArray("size=1") << QByteArray("size=2") << QStringList("sizeWrong");
    QTest::newRow("size too small")
        << QByteArray("size=1") << QByteArray("size=0") << QStringList("sizeWrong");
    QTest::newRow("size no number")
        << QByteArray("size=1") << QByteArray("size=one") << QStringList("sizeWrong");
    QTest::newRow("entry with another number")
        << QByteArray("1\\") << QByteArray("2\\") << QStringList("sizeWrong");
    QTest::newRow("not UTF-8") << user << QByteArray("Ren\xe9") << QStringList("notUtf8");
}

void tst_SettingsCheck::troubleIsNamed()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QVERIFY(fine.contains(before));
    QTEST(kindsIn(QByteArray(fine).replace(before, after)), "kinds");
}

DRASK_TEST(tst_SettingsCheck)
#include "tst_settingscheck.moc"
