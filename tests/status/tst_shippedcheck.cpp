// SPDX-License-Identifier: MIT
#include "status/shippedcheck.h"

#include "kinds.h"
#include "sandbox.h"
#include "statusrun.h"
#include "testprogram.h"

#include <QFile>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

class tst_ShippedCheck : public QObject {
    Q_OBJECT

private slots:
    void troubleIsNamed_data();
    void troubleIsNamed();
#ifdef Q_OS_LINUX
    void nameThatIsNoTextIsUnreadable();
#endif
    void missingPluginIsNamed();
    void sizeIsThatOfTheFiles();
    void templateKeepsItsRules_data();
    void templateKeepsItsRules();
};

void tst_ShippedCheck::troubleIsNamed_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("kind");
    const auto row = [](const char *name, const QString &file, const QByteArray &content,
                        const QString &kind) { QTest::newRow(name) << file << content << kind; };
    row("nothing wrong", "a.py", "x", "");
    row("version missing", "version.txt", {}, "shippedVersionMissing");
    row("version no number", "version.txt", "7.1", "shippedVersionNoNumber");
    row("version other", "version.txt", "8", "shippedVersionOther");
    row("hidden file", "sub/.hidden", "x", "shippedHidden");
    row("the manifest's name", "uninstall.ini", "x", "shippedReservedName");
    row("name of a file that is removed", "grex21.xlib", "x", "shippedReservedName");
    row("template missing", "drask_userSetup.py", {}, "templateMissing");
    row("template without marker", "drask_userSetup.py", "import drask\n", "templateRule");
    row("link", "link@", "version.txt", "shippedLink");
    row("read-only file", "a.py-", "x", "shippedReadOnly");
}

void tst_ShippedCheck::troubleIsNamed()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, kind);
    const test::Sandbox sandbox;
    sandbox.write("version.txt", "7");
    sandbox.write("drask_userSetup.py", test::mayaTemplate);
    if (file.endsWith('@')) {
        sandbox.makeLink(content, file.chopped(1));
    } else if (content.isNull()) {
        sandbox.remove(file);
    } else {
        sandbox.write(file, content);
    }
    if (file.endsWith('-')) {
        QFile::setPermissions(sandbox.path(file), QFile::ReadOwner);
    }
    PluginPathStruct target;
    target.applicationName = kind.startsWith("template") ? "maya" : "c4d";
    target.path = sandbox.path("host");
    target.sourceFolder = sandbox.path();
    target.version = 7;
    QStringList kinds = test::kindsOf(checkShippedPlugin(target));
    kinds.removeDuplicates();
    QCOMPARE(kinds.join(' '), kind);
}

#ifdef Q_OS_LINUX
void tst_ShippedCheck::nameThatIsNoTextIsUnreadable()
{
    const test::Sandbox sandbox;
    sandbox.write("version.txt", "7");
    const QByteArray bad = QFile::encodeName(sandbox.path("bad")) + '\xff';
    QCOMPARE(mknod(bad.constData(), S_IFREG | S_IRUSR | S_IWUSR, 0), 0);
    PluginPathStruct target;
    target.sourceFolder = sandbox.path();
    target.version = 7;
    QCOMPARE(test::kindsOf(checkShippedPlugin(target)), QStringList("shippedUnreadable"));
    unlink(bad.constData());
}
#endif

void tst_ShippedCheck::missingPluginIsNamed()
{
    PluginPathStruct target;
    target.sourceFolder = "/missing";
    QCOMPARE(test::kindsOf(checkShippedPlugin(target)), QStringList("pluginMissing"));
}

void tst_ShippedCheck::sizeIsThatOfTheFiles()
{
    const test::Sandbox sandbox;
    sandbox.write("a", "123");
    sandbox.write("sub/b", "45");
    sandbox.write(".hidden", "6");
    QCOMPARE(shippedSize(sandbox.path()), 5);
}

void tst_ShippedCheck::templateKeepsItsRules_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("broken");
    QTest::newRow("all kept") << "#"
                              << "#" << 0;
    QTest::newRow("a line before the marker") << "#drask"
                                              << "\n#drask" << 1;
    QTest::newRow("two markers") << "def"
                                 << "#drask_installed\ndef" << 1;
    QTest::newRow("no path line") << "sys.path"
                                  << "my.path" << 1;
    QTest::newRow("carriage returns") << "init()\n"
                                      << "init()\r\n"
                                      << 1;
    QTest::newRow("no shelf") << "draskshelf.init()"
                              << "pass" << 1;
    QTest::newRow("another last line") << "(\"searchTab()\")"
                                       << "(\"tab()\")" << 1;
}

void tst_ShippedCheck::templateKeepsItsRules()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    const QString content = QString(test::mayaTemplate).replace(before, after);
    QCOMPARE(before == after, content == test::mayaTemplate);
    QTEST(int(checkTemplate(content, "/template").size()), "broken");
}

DRASK_TEST(tst_ShippedCheck)
#include "tst_shippedcheck.moc"
