// SPDX-License-Identifier: MIT
#include "disk/standin.h"

#include "filelooks.h"
#include "sandbox.h"
#include "testprogram.h"

#include <QtTest>

#include <sys/file.h>
#include <sys/stat.h>

namespace {

const QString leftover = ".drask-unfinished";

void put(const StandIn &standIn, const QByteArray &content)
{
    QFile file;
    if (!file.open(standIn.handle(), QIODevice::WriteOnly)) {
        qFatal("The new file cannot be written");
    }
    file.write(content);
}

/// A run that is still alive, seen from outside: it holds its lock on the file.
class LivingRun {
public:
    explicit LivingRun(const QString &path)
        : file(path)
    {
        if (!file.open(QIODevice::ReadWrite) || flock(file.handle(), LOCK_EX) != 0) {
            qFatal("%s cannot be locked", qPrintable(path));
        }
    }

private:
    QFile file;
};

} // namespace

Q_DECLARE_METATYPE(StandIn::Place)

class tst_StandIn : public QObject {
    Q_OBJECT

private slots:
    void placeIsTold_data();
    void placeIsTold();
    void newFileTakesAFreePlace();
    void newFileTakesTheOldOnesPlace();
    void newFileGoesWhereALinkLeads_data();
    void newFileGoesWhereALinkLeads();
    void newFileIsForNobodyElseUntilItIsLikeTheOldOne();
    void abandonedFileGoes();
    void fileCannotBeMade_data();
    void fileCannotBeMade();
    void severalNamesAreRefused();
    void placeThatWasWrittenToIsTold();
    void placeThatAnotherFileTookIsTold();
    void leftoversAreCleared();
    void leftoverOfALivingRunStays();
    void nothingButPlainFilesIsCleared();
    void everyNameTakenIsTold();
};

void tst_StandIn::placeIsTold_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<StandIn::Place>("place");

    using Place = StandIn::Place;
    QTest::newRow("a file") << "file" << Place::Plain;
    QTest::newRow("a link to a file") << "link" << Place::Plain;
    QTest::newRow("nothing") << "nothing" << Place::Free;
    QTest::newRow("a link to nothing") << "dangling" << Place::Free;
    QTest::newRow("a missing folder") << "missing/file" << Place::Free;
    QTest::newRow("a folder") << "folder" << Place::Other;
    QTest::newRow("a pipe") << "pipe" << Place::Other;
    QTest::newRow("below a file") << "file/file" << Place::Plain;
    QTest::newRow("a circle of links") << "circle" << Place::Other;
    QTest::newRow("a name that is Qt's own") << ":/file" << Place::Other;
    QTest::newRow("a zero byte") << QString(QChar(0)) + "file" << Place::Other;
}

void tst_StandIn::placeIsTold()
{
    QFETCH(QString, name);
    const test::Sandbox sandbox;
    sandbox.write("file", "old");
    sandbox.makeFolder("folder");
    sandbox.makeLink("file", "link");
    sandbox.makeLink("elsewhere", "dangling");
    sandbox.makeLink("circle", "circle");
    QVERIFY(mkfifo(QFile::encodeName(sandbox.path("pipe")).constData(), 0600) == 0);

    QTEST(StandIn(name.startsWith(':') ? name : sandbox.path(name)).place(), "place");
}

void tst_StandIn::newFileTakesAFreePlace()
{
    const test::Sandbox sandbox;
    sandbox.write("usual", "");
    StandIn standIn(sandbox.path("file"));

    QVERIFY(standIn.make());
    put(standIn, "new");
    QVERIFY(!sandbox.exists("file"));
    QVERIFY(standIn.takePlace());
    QCOMPARE(test::treeDifference(sandbox.tree(), {{"usual", ""}, {"file", "new"}}), QString());
    QCOMPARE(test::looksOf(sandbox.path("file")), test::looksOf(sandbox.path("usual")));
}

void tst_StandIn::newFileTakesTheOldOnesPlace()
{
    const test::Sandbox sandbox;
    sandbox.write("file", "old");
    StandIn standIn(sandbox.path("file"));

    QVERIFY(standIn.make());
    put(standIn, "new");
    QCOMPARE(sandbox.read("file"), QByteArray("old"));
    QVERIFY(standIn.takePlace());
    QCOMPARE(test::treeDifference(sandbox.tree(), {{"file", "new"}}), QString());
}

void tst_StandIn::newFileGoesWhereALinkLeads_data()
{
    QTest::addColumn<QString>("link");

    QTest::newRow("a whole path") << "%1/elsewhere/file";
    QTest::newRow("a path from the link's folder") << "../elsewhere/file";
    QTest::newRow("a path through a linked folder") << "../shortcut/../elsewhere/file";
    QTest::newRow("another link") << "../second";
}

void tst_StandIn::newFileGoesWhereALinkLeads()
{
    QFETCH(QString, link);
    const test::Sandbox sandbox;
    sandbox.makeFolder("elsewhere/deep");
    sandbox.makeFolder("here");
    sandbox.makeLink("elsewhere/deep", "shortcut");
    sandbox.makeLink("elsewhere/file", "second");
    // Through the linked folder, ".." is the folder above what it leads to.
    sandbox.makeFolder("elsewhere/elsewhere");
    sandbox.makeLink(link.contains("%1") ? link.arg(sandbox.path()) : link, "here/link");
    const QString target = link.contains("shortcut") ? "elsewhere/elsewhere/file"
                                                     : "elsewhere/file";
    const QString linked = QFile::symLinkTarget(sandbox.path("here/link"));

    for (const QByteArray &content : {QByteArray("first"), QByteArray("second")}) {
        StandIn standIn(sandbox.path("here/link"));
        QVERIFY(standIn.make());
        put(standIn, content);
        QVERIFY(standIn.takePlace());
        QCOMPARE(sandbox.read(target), content);
    }
    QCOMPARE(QFile::symLinkTarget(sandbox.path("here/link")), linked);
    QVERIFY(QFileInfo(sandbox.path("here/link")).isSymLink());
}

void tst_StandIn::newFileIsForNobodyElseUntilItIsLikeTheOldOne()
{
    const test::Sandbox sandbox;
    sandbox.write("file", "old");
    test::setRights(sandbox.path("file"), 0640);
    QFile old(sandbox.path("file"));
    QVERIFY(old.open(QIODevice::ReadOnly));
    const QString looks = test::looksOf(sandbox.path("file"));
    StandIn standIn(sandbox.path("file"));

    QVERIFY(standIn.make());
    QVERIFY(test::looksOf(sandbox.path(leftover)).startsWith("100600 "));
    QVERIFY(standIn.becomeLike(old.handle()));
    QVERIFY(standIn.takePlace());
    QCOMPARE(test::looksOf(sandbox.path("file")), looks);
}

void tst_StandIn::abandonedFileGoes()
{
    const test::Sandbox sandbox;
    sandbox.write("file", "old");
    {
        StandIn standIn(sandbox.path("file"));
        QVERIFY(standIn.make());
        QVERIFY(sandbox.exists(leftover));
    }

    QCOMPARE(test::treeDifference(sandbox.tree(), {{"file", "old"}}), QString());
}

void tst_StandIn::fileCannotBeMade_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("a missing folder") << "missing/file";
    QTest::newRow("below a file") << "file/file";
    QTest::newRow("a circle of links") << "circle";
}

void tst_StandIn::fileCannotBeMade()
{
    QFETCH(QString, name);
    const test::Sandbox sandbox;
    sandbox.write("file", "old");
    sandbox.makeLink("circle", "circle");
    const test::Tree before = sandbox.tree();

    QVERIFY(!StandIn(sandbox.path(name)).make());
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

void tst_StandIn::severalNamesAreRefused()
{
    const test::Sandbox sandbox;
    sandbox.write("file", "old");
    test::addName(sandbox.path("file"), sandbox.path("other name"));
    QFile old(sandbox.path("file"));
    QVERIFY(old.open(QIODevice::ReadOnly));
    StandIn standIn(sandbox.path("file"));

    QVERIFY(standIn.make());
    QVERIFY(!standIn.becomeLike(old.handle()));
}

void tst_StandIn::placeThatWasWrittenToIsTold()
{
    const test::Sandbox sandbox;
    sandbox.write("file", "old");
    const StandIn free(sandbox.path("free"));
    const StandIn taken(sandbox.path("file"));
    QVERIFY(free.isPlaceAsSeen());
    QVERIFY(taken.isPlaceAsSeen());

    sandbox.write("free", "somebody else's");
    sandbox.write("file", "somebody else's");

    QVERIFY(!free.isPlaceAsSeen());
    QVERIFY(!taken.isPlaceAsSeen());
}

void tst_StandIn::placeThatAnotherFileTookIsTold()
{
    const test::Sandbox sandbox;
    sandbox.write("file", "old");
    sandbox.age("file");
    sandbox.write("other", "odd");
    sandbox.age("other");
    const StandIn standIn(sandbox.path("file"));

    sandbox.remove("file");
    QVERIFY(!standIn.isPlaceAsSeen());
    QVERIFY(QFile::rename(sandbox.path("other"), sandbox.path("file")));
    QVERIFY(!standIn.isPlaceAsSeen());
}

void tst_StandIn::leftoversAreCleared()
{
    const test::Sandbox sandbox;
    const test::Tree kept = {{"file", "old"}, {".drask-unfinished-x", "kept"}};
    for (auto file = kept.cbegin(); file != kept.cend(); ++file) {
        sandbox.write(file.key(), file.value());
    }
    const auto leave = [&sandbox] {
        sandbox.write(leftover, "half");
        sandbox.write(leftover + "-2", "half");
    };

    leave();
    clearUnfinished(sandbox.path("file"));
    QCOMPARE(test::treeDifference(sandbox.tree(), kept), QString());
    leave();
    const StandIn standIn(sandbox.path("file"));
    QCOMPARE(test::treeDifference(sandbox.tree(), kept), QString());
}

void tst_StandIn::leftoverOfALivingRunStays()
{
    const test::Sandbox sandbox;
    sandbox.write(leftover, "half");
    const LivingRun run(sandbox.path(leftover));

    clearUnfinished(sandbox.path("file"));
    StandIn standIn(sandbox.path("file"));
    QVERIFY(standIn.make());
    put(standIn, "new");
    QVERIFY(standIn.takePlace());
    QCOMPARE(test::treeDifference(sandbox.tree(), {{leftover, "half"}, {"file", "new"}}),
             QString());
}

void tst_StandIn::nothingButPlainFilesIsCleared()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder(leftover);
    sandbox.write("the user's", "kept");
    sandbox.makeLink("the user's", leftover + "-2");
    QVERIFY(mkfifo(QFile::encodeName(sandbox.path(leftover + "-3")).constData(), 0600) == 0);

    clearUnfinished(sandbox.path("file"));
    for (const char *end : {"", "-2", "-3"}) {
        QVERIFY(QFileInfo::exists(sandbox.path(leftover + end)));
    }
    StandIn standIn(sandbox.path("file"));
    QVERIFY(standIn.make());
    QVERIFY(sandbox.exists(leftover + "-4"));
}

void tst_StandIn::everyNameTakenIsTold()
{
    const test::Sandbox sandbox;
    std::vector<std::unique_ptr<StandIn>> standIns;
    for (int run = 0; run < 9; ++run) {
        standIns.push_back(std::make_unique<StandIn>(sandbox.path("file")));
        QVERIFY(standIns.back()->make());
    }

    QVERIFY(!StandIn(sandbox.path("file")).make());
    standIns.clear();
    QCOMPARE(test::treeDifference(sandbox.tree(), {}), QString());
}

DRASK_TEST(tst_StandIn)
#include "tst_standin.moc"
