// SPDX-License-Identifier: MIT
#include "status/plugincheck.h"

#include "kinds.h"
#include "sandbox.h"
#include "testprogram.h"
#include "versionfile.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

/// A plug-in as it is shipped, and as an installation left it.
class Installed : public test::Sandbox {
public:
    Installed()
    {
        ship("version.txt", "7\n");
        ship("a.py", "print(1)\n");
        ship("sub/b.py", "print(2)\n");
        ship("drask_uninstall.sh", "#!/bin/sh\n");
        record.applicationName = "modo";
        record.path = path("modo");
        record.pluginSubFolder = "/drask";
        record.sourceFolder = path("plugins/modo");
        list({"version.txt", "a.py", "sub/b.py"});
    }

    void ship(const QString &file, const QByteArray &content) const
    {
        write("plugins/modo/" + file, content);
        write("modo/drask/" + file, content);
    }
    void list(const QStringList &files, const QByteArray &more = {}) const
    {
        QByteArray manifest;
        for (const QString &file : files) {
            manifest += path("modo/drask/" + file).toUtf8() + '\n';
        }
        write("modo/drask/uninstall.ini", manifest + more);
    }
    QStringList found(Look look = Look::Inside) const
    {
        const int version = readVersionTxt(record.targetFolder());
        return test::kindsOf(
            checkPluginFiles(record, version < 0 ? std::optional<int>() : version, look),
            record.targetFolder());
    }

    PluginPathStruct record;
};

} // namespace

class tst_PluginCheck : public QObject {
    Q_OBJECT

private slots:
    void shippedFilesHaveTheirSubFolders();
    void damageIsNamed_data();
    void damageIsNamed();
    void whatAnInstallationLeavesIsWhole();
    void contentIsNotReadFromOutside();
    void otherVersionIsHeldAgainstItsManifest();
    void strangeVersionIsHeldAgainstTheShippedOne();
    void manifestNamesWhatItShould();
    void fileOutsideIsNamed();
};

void tst_PluginCheck::shippedFilesHaveTheirSubFolders()
{
    const Installed plugin;
    plugin.write("plugins/modo/.hidden", "x");
    QStringList files = shippedFiles(plugin.record.sourceFolder);
    files.sort();
    QCOMPARE(files, QStringList({"a.py", "drask_uninstall.sh", "sub/b.py", "version.txt"}));
    QCOMPARE(shippedFiles(QString()), QStringList());
}

void tst_PluginCheck::damageIsNamed_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("kinds"); // deleted, emptied, changed, unreadable
    const QStringList ofAFile{"fileMissing", "fileEmpty", "fileDiffers", "fileUnreadable"};
    for (const char *file : {"a.py", "sub/b.py", "drask_uninstall.sh", "version.txt"}) {
        QTest::newRow(file) << file << ofAFile;
    }
    QTest::newRow("uninstall.ini") << "uninstall.ini"
                                   << QStringList({"manifestMissing", "manifestIncomplete",
                                                   "manifestIncomplete", "manifestUnreadable"});
}

void tst_PluginCheck::damageIsNamed()
{
    QFETCH(QString, file);
    QFETCH(QStringList, kinds);
    const Installed plugin;
    const QString path = "modo/drask/" + file;
    const QByteArray content = plugin.read(path);
    const auto isNamed = [&](int number) {
        const QStringList found = plugin.found();
        return found.contains(kinds.at(number) + ' ' + file);
    };
    plugin.remove(path);
    QVERIFY(isNamed(0));
    plugin.write(path, "");
    QVERIFY(isNamed(1));
    // A number that nobody shipped, and of the manifest the first name alone.
    QTest::qSleep(20);
    plugin.write(path, '9' + content.mid(1, file == "uninstall.ini" ? content.indexOf('\n') : -1));
    QVERIFY(isNamed(2));
    plugin.write(path, content);
    QFile::setPermissions(plugin.path(path), {});
    QVERIFY(isNamed(3));
}

void tst_PluginCheck::whatAnInstallationLeavesIsWhole()
{
    Installed plugin;
    plugin.ship("secret.py", "x");
    plugin.list({"version.txt", "a.py", "sub/b.py", "secret.py"});
    QFile::setPermissions(plugin.path("plugins/modo/secret.py"), QFile::WriteOwner);
    QFile::setPermissions(plugin.path("modo/drask/secret.py"), QFile::WriteOwner);
    plugin.write("modo/drask/user's own", "x");
    plugin.write("modo/drask/manager.cfg", "x");
    if (QFileInfo(plugin.path("modo/drask/secret.py")).isReadable()) { // by root
        QCOMPARE(plugin.found(), QStringList());
    }
    // The files that a later step takes away.
    plugin.write("plugins/modo/grex21.xlib", "x");
    QCOMPARE(plugin.found(Look::Outside).filter("grex21"), QStringList("fileMissing grex21.xlib"));
    plugin.record.applicationName = "c4d";
    QCOMPARE(plugin.found(Look::Outside).filter("grex21"), QStringList());
}

void tst_PluginCheck::contentIsNotReadFromOutside()
{
    const Installed plugin;
    plugin.write("modo/drask/a.py", "print(9)\n");
    QCOMPARE(plugin.found(Look::Outside), QStringList());
    plugin.write("modo/drask/a.py", "");
    QCOMPARE(plugin.found(Look::Outside), QStringList("fileEmpty a.py"));
}

void tst_PluginCheck::otherVersionIsHeldAgainstItsManifest()
{
    const Installed plugin;
    plugin.write("plugins/modo/version.txt", "8\n");
    plugin.write("plugins/modo/new.py", "x");
    plugin.write("modo/drask/a.py", "print(9)\n");
    plugin.remove("modo/drask/sub/b.py");
    QCOMPARE(plugin.found(), QStringList("fileMissing sub/b.py"));
}

void tst_PluginCheck::strangeVersionIsHeldAgainstTheShippedOne()
{
    const Installed plugin;
    plugin.write("modo/drask/version.txt", "seven\n");
    QCOMPARE(plugin.found(), QStringList("fileDiffers version.txt"));
    QTest::qSleep(20);
    // Newer than the manifest: no installation wrote it.
    plugin.write("modo/drask/version.txt", "9\n");
    QCOMPARE(plugin.found(), QStringList("fileDiffers version.txt"));
}

void tst_PluginCheck::manifestNamesWhatItShould()
{
    const Installed plugin;
    plugin.list({"version.txt", "a.py"});
    QCOMPARE(plugin.found(),
             QStringList({"fileNotListed sub/b.py", "manifestIncomplete uninstall.ini"}));
    QCOMPARE(
        unlistedFiles(plugin.record, QString::fromUtf8(plugin.read("modo/drask/uninstall.ini"))),
        QStringList(plugin.path("modo/drask/sub/b.py")));
}

void tst_PluginCheck::fileOutsideIsNamed()
{
    Installed plugin;
    plugin.list({"version.txt", "a.py", "sub/b.py", "gone.py", "../own.txt"},
                "/etc/hosts\n/home/ann/maya/prefs/shelves/shelf_DraskGrex.mel\n");
    QStringList found = plugin.found();
    QCOMPARE(found.takeFirst(), QString("fileMissing gone.py"));
    QCOMPARE(found, QStringList({"outsideFolder ../own.txt", "outsideFolder", "outsideFolder"}));
    // Maya's plug-in makes that shelf itself.
    QVERIFY(QDir().rename(plugin.path("plugins/modo"), plugin.path("plugins/maya")));
    plugin.record.sourceFolder = plugin.path("plugins/maya");
    QCOMPARE(plugin.found().filter("outsideFolder").size(), 2);
}

DRASK_TEST(tst_PluginCheck)
#include "tst_plugincheck.moc"
