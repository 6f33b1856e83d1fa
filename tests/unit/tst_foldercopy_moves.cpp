// SPDX-License-Identifier: MIT
#include "copysandbox.h"
#include "unitcase.h"

#ifdef Q_OS_LINUX
#include <sys/inotify.h>
#include <unistd.h>

#include <cstring>
#include <vector>
#endif

#ifdef Q_OS_LINUX
namespace {

/// How often a file came into a folder and how often it went.
struct Moves {
    int came = 0;
    int went = 0;
};

/// Copies the sandbox's plug-in and watches the file \a name in the target, which exists.
Moves movesDuringCopy(test::CopySandbox &sandbox, const QByteArray &name)
{
    const int watcher = inotify_init1(IN_NONBLOCK);
    inotify_add_watch(watcher, QFile::encodeName(sandbox.path("host/drask")).constData(),
                      IN_CREATE | IN_MOVED_TO | IN_DELETE | IN_MOVED_FROM);
    sandbox.copy();
    std::vector<char> buffer(65536);
    const ssize_t size = read(watcher, buffer.data(), buffer.size());
    close(watcher);
    QByteArray events(buffer.data(), qMax(0, static_cast<int>(size)));

    Moves moves;
    while (!events.isEmpty()) {
        inotify_event event = {};
        constexpr int headSize = sizeof event;
        std::memcpy(&event, events.constData(), headSize);
        if (name == events.mid(headSize, static_cast<int>(event.len)).constData()) {
            const bool isComing = (event.mask & (IN_CREATE | IN_MOVED_TO)) != 0;
            ++(isComing ? moves.came : moves.went);
        }
        events.remove(0, headSize + static_cast<int>(event.len));
    }
    return moves;
}

} // namespace
#endif

/// What a copy does to a file on the way.
class tst_FolderCopyMoves : public QObject {
    Q_OBJECT
private slots:
    void newFileIsCopiedTwiceAndAnotherOnce_data()
    {
        const test::Table<bool, int> table("isNew", "came");
        table.row("a new file", true, 2);
        table.row("a file that is there", false, 1);
    }

    void newFileIsCopiedTwiceAndAnotherOnce()
    {
#ifdef Q_OS_LINUX
        QFETCH(bool, isNew);
        QFETCH(int, came);
        test::CopySandbox sandbox;
        sandbox.write("plugin/a.py", "a");
        sandbox.write(isNew ? "host/drask/b.py" : "host/drask/a.py", "old");

        const Moves moves = movesDuringCopy(sandbox, "a.py");

        QCOMPARE(moves.came, came);
        QCOMPARE(moves.went, 1);
        QCOMPARE(sandbox.manifest(), QStringList("host/drask/a.py"));
#else
        QSKIP("The file system is watched through inotify.");
#endif
    }
};

DRASK_TEST(tst_FolderCopyMoves)
#include "tst_foldercopy_moves.moc"
