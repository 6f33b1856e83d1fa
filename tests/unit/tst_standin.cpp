// SPDX-License-Identifier: MIT
#include "disk/standin.h"

#include "filelooks.h"
#include "unitcase.h"

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
    void placeIsTold_data()
    {
        const test::Table<QString, StandIn::Place> table("name", "place");
        using Place = StandIn::Place;
        table.row("a file", "file", Place::Plain);
        table.row("a link to a file", "link", Place::Plain);
        table.row("nothing", "nothing", Place::Free);
        table.row("a link to nothing", "dangling", Place::Free);
        table.row("a missing folder", "missing/file", Place::Free);
        table.row("a folder", "folder", Place::Other);
        table.row("a pipe", "pipe", Place::Other);
        table.row("below a file", "file/file", Place::Plain);
        table.row("a circle of links", "circle", Place::Other);
        table.row("a name that is Qt's own", ":/file", Place::Other);
        table.row("a zero byte", QString(QChar(0)) + "file", Place::Other);
    }

    void placeIsTold()
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

    void newFileTakesAFreePlace()
    {
        const test::Sandbox sandbox;
        sandbox.write("usual", "");
        StandIn standIn(sandbox.path("file"));

        QVERIFY(standIn.make());
        put(standIn, "new");
        QVERIFY(!sandbox.exists("file"));
        QVERIFY(standIn.takePlace());
        VERIFY_TREE(sandbox, {{"usual", ""}, {"file", "new"}});
        QCOMPARE(test::looksOf(sandbox.path("file")), test::looksOf(sandbox.path("usual")));
    }

    void newFileTakesTheOldOnesPlace()
    {
        const test::Sandbox sandbox;
        sandbox.write("file", "old");
        StandIn standIn(sandbox.path("file"));
        QVERIFY(standIn.make());
        put(standIn, "new");
        QCOMPARE(sandbox.read("file"), QByteArray("old"));
        QVERIFY(standIn.takePlace());
        VERIFY_TREE(sandbox, {{"file", "new"}});
    }

    void newFileGoesWhereALinkLeads_data()
    {
        const test::Table<QString> table("link");
        table.row("a whole path", "%1/elsewhere/file");
        table.row("a path from the link's folder", "../elsewhere/file");
        table.row("a path through a linked folder", "../shortcut/../elsewhere/file");
        table.row("another link", "../second");
    }

    void newFileGoesWhereALinkLeads()
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

    void newFileIsForNobodyElseUntilItIsLikeTheOldOne()
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

    void abandonedFileGoes()
    {
        const test::Sandbox sandbox;
        sandbox.write("file", "old");
        {
            StandIn standIn(sandbox.path("file"));
            QVERIFY(standIn.make());
            QVERIFY(sandbox.exists(leftover));
        }
        VERIFY_TREE(sandbox, {{"file", "old"}});
    }

    void fileCannotBeMade_data()
    {
        const test::Table<QString> table("name");
        table.row("a missing folder", "missing/file");
        table.row("below a file", "file/file");
        table.row("a circle of links", "circle");
    }

    void fileCannotBeMade()
    {
        QFETCH(QString, name);
        const test::Sandbox sandbox;
        sandbox.write("file", "old");
        sandbox.makeLink("circle", "circle");
        const test::Tree before = sandbox.tree();
        QVERIFY(!StandIn(sandbox.path(name)).make());
        VERIFY_TREE(sandbox, before);
    }

    void severalNamesAreRefused()
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

    void placeThatWasWrittenToIsTold()
    {
        const test::Sandbox sandbox;
        sandbox.write("file", "old");
        sandbox.age("file");
        const StandIn free(sandbox.path("free"));
        const StandIn taken(sandbox.path("file"));
        QVERIFY(free.isPlaceAsSeen());
        QVERIFY(taken.isPlaceAsSeen());

        sandbox.write("free", "new");
        sandbox.write("file", "new");

        QVERIFY(!free.isPlaceAsSeen());
        QVERIFY(!taken.isPlaceAsSeen());
    }

    void placeThatAnotherFileTookIsTold()
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

    void leftoversAreCleared()
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
        VERIFY_TREE(sandbox, kept);
        sandbox.write(leftover + "-2", "the only one");
        clearUnfinished(sandbox.path("file"));
        VERIFY_TREE(sandbox, kept);
        leave();
        const StandIn standIn(sandbox.path("file"));
        VERIFY_TREE(sandbox, kept);
    }

    void leftoverOfALivingRunStays()
    {
        const test::Sandbox sandbox;
        sandbox.write(leftover, "half");
        const LivingRun run(sandbox.path(leftover));

        clearUnfinished(sandbox.path("file"));
        StandIn standIn(sandbox.path("file"));
        QVERIFY(standIn.make());
        put(standIn, "new");
        QVERIFY(standIn.takePlace());
        VERIFY_TREE(sandbox, {{leftover, "half"}, {"file", "new"}});
    }

    void nothingButPlainFilesIsCleared()
    {
        const test::Sandbox sandbox;
        sandbox.makeFolder(leftover);
        sandbox.write("the user's", "kept");
        sandbox.makeLink("the user's", leftover + "-2");
        clearUnfinished(sandbox.path("file"));
        QVERIFY(QDir(sandbox.path()).rmdir(leftover));
        QVERIFY(mkfifo(QFile::encodeName(sandbox.path(leftover)).constData(), 0600) == 0);
        clearUnfinished(sandbox.path("file"));
        for (const char *end : {"", "-2"}) {
            QVERIFY(QFileInfo::exists(sandbox.path(leftover + end)));
        }
    }

    void everyNameTakenIsTold()
    {
        const test::Sandbox sandbox;
        std::vector<std::unique_ptr<StandIn>> standIns;
        for (int run = 0; run < 2; ++run) {
            standIns.push_back(std::make_unique<StandIn>(sandbox.path("file")));
            QVERIFY(standIns.back()->make());
        }

        QVERIFY(!StandIn(sandbox.path("file")).make());
        standIns.clear();
        VERIFY_TREE(sandbox, {});
    }
};

DRASK_TEST(tst_StandIn)
#include "tst_standin.moc"
