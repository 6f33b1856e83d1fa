// SPDX-License-Identifier: MIT
#include "disk/rights.h"

#include "ordinaryuser.h"
#include "sandbox.h"
#include "testprogram.h"

#include <QFile>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

class tst_Rights : public QObject {
    Q_OBJECT

private slots:
    void linkIsFollowedWhereThatIsAsked();
    void stickyFolderKeepsWhatIsNotOurs();
};

void tst_Rights::linkIsFollowedWhereThatIsAsked()
{
    const test::Sandbox sandbox;
    sandbox.write("file", "x");
    sandbox.makeFolder("folder");
    sandbox.makeLink("file", "link");
    const auto nameOf = [&](const char *name) { return QFile::encodeName(sandbox.path(name)); };
    QCOMPARE(chmod(nameOf("file").constData(), 04640), 0);
    QCOMPARE(factsOf(nameOf("link")).type, EntryType::Link);
    QCOMPARE(linkText(nameOf("link")), QByteArray("file"));
    QCOMPARE(factsBehind(nameOf("link")).type, EntryType::File);
    QCOMPARE(factsBehind(nameOf("link")).mode, 04640);
    QCOMPARE(factsOf(nameOf("folder")).type, EntryType::Folder);
    QCOMPARE(factsOf(nameOf("missing")).type, EntryType::Nothing);
    QCOMPARE(factsBehind(nameOf("file/below")).type, EntryType::Nothing);
    QCOMPARE(linkText(nameOf("file")), QByteArray());
}

void tst_Rights::stickyFolderKeepsWhatIsNotOurs()
{
    if (geteuid() != 0) {
        QSKIP("Nothing here belongs to another user");
    }
    const test::Sandbox sandbox;
    sandbox.write("folder/file", "x");
    const QByteArray folder = QFile::encodeName(sandbox.path("folder"));
    const QByteArray file = folder + "/file";
    test::giveToOrdinaryUser(sandbox.path());
    QCOMPARE(chmod(folder.constData(), 01777), 0);
    QVERIFY(!isKeptBySticky(folder, file));
    {
        const test::OrdinaryUser user;
        QVERIFY(isKeptBySticky(folder, file));
    }
    test::giveToOrdinaryUser(sandbox.path("folder/file"));
    const test::OrdinaryUser user;
    QVERIFY(!isKeptBySticky(folder, file));
}

DRASK_TEST(tst_Rights)
#include "tst_rights.moc"
