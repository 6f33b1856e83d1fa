// SPDX-License-Identifier: MIT
#include "disk/standin.h"
#include "disk/wholefile.h"
#include "faultcampaign.h"
#include "filelooks.h"
#include "ordinaryuser.h"
#include "testprogram.h"
#include "tracer.h"

#include <QProcess>
#include <QtTest>

#include <csignal>

#include <unistd.h>

namespace {

const char writerName[] = "text-writer";

const QByteArray oldText = "old\n";
const QByteArray newText(20000, 'n');

/// The program plays this part: writes a text and says by its exit code how that went.
int writeText(int /*argc*/, char *argv[])
{
    if (qstrcmp(argv[3], "another") == 0) {
        test::becomeOrdinaryUser();
    }
    // The calls before this one are those of the system's loader; see test::Tracer.
    static_cast<void>(QFile::exists("plugin.log"));
    QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Text;
    mode.setFlag(QIODevice::Append, qstrcmp(argv[2], "add") == 0);
    return writeWhole(QFile::decodeName(argv[1]), mode, newText) ? 0 : 1;
}

const test::Registration writerRegistration(writerName, writeText);

/// Whether another file can take the place of the one that is written.
enum class Way { Beside, InPlace };

} // namespace

Q_DECLARE_METATYPE(Way)

namespace {

QStringList words(const test::Folder &folder, const char *how, const char *user)
{
    return {QCoreApplication::applicationFilePath(), writerName, folder.path("file"), how, user};
}

int run(QStringList words)
{
    QProcess process;
    const QString program = words.takeFirst();
    process.start(program, words);
    if (!process.waitForFinished()) {
        qFatal("The program does not end");
    }
    return process.exitStatus() == QProcess::CrashExit ? -1 : process.exitCode();
}

/// Starts \a words and waits until the process stands still. Returns that process, or 0 if it
/// ended.
int startStanding(QProcess &process, QStringList words, const test::Tracer &tracer)
{
    const QString program = words.takeFirst();
    process.start(program, words);
    int standing = 0;
    while (standing == 0 && !process.waitForFinished(1)) {
        standing = tracer.standingProgram();
    }
    return standing;
}

void makeFile(const test::Folder &folder, const QString &kind)
{
    for (const char *name : {"file", "elsewhere", "other name"}) {
        QFile::remove(folder.path(name));
    }
    const QString name = kind == "behind a link" ? "elsewhere" : "file";
    if (kind != "missing") {
        folder.write(name, oldText);
        test::setRights(folder.path(name), 0666);
    }
    if (kind == "behind a link") {
        folder.makeLink("elsewhere", "file");
    } else if (kind == "with two names") {
        test::addName(folder.path("file"), folder.path("other name"));
    } else if (kind == "of a strange owner") {
        test::giveTo(folder.path("file"), 4321, 1234);
        test::setRights(folder.path("file"), 0666);
    } else if (kind == "with attributes") {
        static_cast<void>(test::setAttribute(folder.path("file"), "user.colour", "blue"));
    }
}

/// What is wrong with the file; empty if nothing is.
QString complaint(const test::Folder &folder, const QByteArray &before, const QByteArray &after,
                  const QString &looks, int code)
{
    const QByteArray is = folder.read("file");
    if (code == 0 ? is != after : is != before && (code > 0 || is != after)) {
        return QStringLiteral("%1 bytes after code %2").arg(is.size()).arg(code);
    }
    if (!looks.isEmpty() && test::looksOf(folder.path("file")) != looks) {
        return "another kind of file: " + test::looksOf(folder.path("file"));
    }
    return code >= 0 && folder.exists(".drask-unfinished") ? "a file is left behind" : QString();
}

} // namespace

/// Lets every call fail that writes one text, and ends the program there, for files that another
/// one cannot simply take the place of.
class tst_Faults_Texts : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        const QString obstacle = test::Tracer::obstacle();
        if (!obstacle.isEmpty() || geteuid() != 0) {
            QSKIP(qPrintable("only root can make such files and trace here " + obstacle));
        }
        test::preferMemoryDisk();
    }

    void failingAndLastCalls_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QByteArray>("how");
        QTest::addColumn<QByteArray>("user");
        QTest::addColumn<Way>("way");

        const auto add = [](const char *kind, const char *user, Way way) {
            for (const char *how : {"rewrite", "add"}) {
                QTest::addRow("%s, %s, as %s", kind, how, user)
                    << kind << QByteArray(how) << QByteArray(user) << way;
            }
        };
        add("missing", "root", Way::Beside);
        add("behind a link", "root", Way::Beside);
        add("of a strange owner", "root", Way::Beside);
        add("with attributes", "root", Way::Beside);
        add("with two names", "root", Way::InPlace);
        add("of a strange owner", "another", Way::InPlace);
    }

    void failingAndLastCalls()
    {
        QFETCH(QString, kind);
        QFETCH(QByteArray, how);
        QFETCH(QByteArray, user);
        QFETCH(Way, way);
        const test::Sandbox sandbox;
        test::setRights(sandbox.path(), 0777);
        const test::Tracer tracer;
        const QStringList program = words(sandbox, how, user);
        makeFile(sandbox, kind);
        const QByteArray before = sandbox.read("file");
        const QString looks = kind == "missing" ? QString() : test::looksOf(sandbox.path("file"));
        const QByteArray after = how == "add" ? before + newText : newText;
        QCOMPARE(run(tracer.watch() + program), 0);
        QCOMPARE(sandbox.read("file"), after);
        const QMap<QByteArray, test::CallCount> counts = tracer.calls();
        // What cannot be written beside may have room in place.
        const bool hasAnotherWay = how == "add" && way == Way::Beside && kind != "missing";

        for (const char *call :
             {"openat", "write", "fsync", "close", "dup", "rename", "fchown", "fchmod", "flock",
              "flistxattr", "fsetxattr", "read", "ftruncate"}) {
            const test::CallCount count = counts.value(call);
            QByteArrayList effects = {"error=ENOSPC", "error=EIO",   "error=EDQUOT",
                                      "error=EACCES", "error=EROFS", "signal=KILL"};
            if (QByteArray(call).startsWith("fch")) {
                // Taken without a word, and not kept.
                effects << "retval=0";
            }
            for (const QByteArray &effect : effects) {
                for (int number = count.startUp + 1; number <= count.all; ++number) {
                    makeFile(sandbox, kind);
                    const test::Disturbance disturbance = {call, effect};
                    const int code = run(tracer.disturb(disturbance, number) + program);
                    ++faults;
                    const QString where = QStringLiteral("%1 number %2, %3: ")
                                              .arg(call)
                                              .arg(number)
                                              .arg(QString(effect));
                    // In place, a kill can leave any part.
                    if (code >= 0 || way == Way::Beside) {
                        QCOMPARE(where + complaint(sandbox, before, after, looks, code), where);
                    }
                    // What has not reached the disk is not written.
                    QVERIFY2(call != QByteArray("fsync") || code != 0 || hasAnotherWay,
                             qPrintable(where));
                    QCOMPARE(run(program), 0);
                    QVERIFY2(!sandbox.exists(".drask-unfinished"), qPrintable(where));
                }
            }
        }
    }

    void whatSomebodyElseAddsStays()
    {
        const test::Sandbox sandbox;
        const test::Tracer tracer;
        sandbox.write("file", oldText);
        QProcess process;
        const int standing = startStanding(
            process, tracer.standStill("fsync", 1) + words(sandbox, "add", "root"), tracer);
        QVERIFY(standing > 0);

        sandbox.write("file", oldText + "somebody else's\n");
        kill(standing, SIGCONT);

        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
        QCOMPARE(sandbox.read("file"), oldText + "somebody else's\n" + newText);
        ++faults;
    }

    void whoeverGoesOnWritingDoesNotKeepTheAdditionOut()
    {
        const test::Sandbox sandbox;
        const test::Tracer tracer;
        sandbox.write("file", oldText);
        QStringList program = tracer.disturb({"fsync", "delay_enter=100000", true}, 1)
            + words(sandbox, "add", "root");
        QProcess process;
        process.start(program.takeFirst(), program);
        while (!process.waitForFinished(1)) {
            QFile file(sandbox.path("file"));
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Append)
                    && file.write("more\n") > 0);
        }

        QCOMPARE(process.exitCode(), 0);
        QVERIFY(sandbox.read("file").contains(newText));
        ++faults;
    }

    void newFileThatAnotherRunTakesForALeftoverIsMadeAgain()
    {
        const test::Sandbox sandbox;
        const test::Tracer tracer;
        const QStringList program = words(sandbox, "rewrite", "root");
        QCOMPARE(run(tracer.watch() + program), 0);
        sandbox.remove("file");
        QProcess process;
        // The last file that it opens is the new one.
        const int standing = startStanding(
            process, tracer.standStill("openat", tracer.calls().value("openat").all) + program,
            tracer);
        QVERIFY(standing > 0 && sandbox.exists(".drask-unfinished"));

        clearUnfinished(sandbox.path("file"));
        sandbox.write(".drask-unfinished", "the other run's");
        kill(standing, SIGCONT);

        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
        QCOMPARE(sandbox.read("file"), newText);
        QCOMPARE(sandbox.read(".drask-unfinished"), QByteArray("the other run's"));
        ++faults;
    }

    void failureThatShowsOnClosingIsTold()
    {
        const test::Sandbox sandbox;
        const test::Tracer tracer;
        sandbox.write("file", oldText);
        const QStringList program = words(sandbox, "rewrite", "root");
        QCOMPARE(run(tracer.watch() + program), 0);
        sandbox.write("file", oldText);
        const int number = tracer.calls().value("close").startUp + 1;
        QCOMPARE(run(tracer.disturb({"close", "error=EIO", true}, number) + program), 1);
        QCOMPARE(sandbox.read("file"), oldText);
        ++faults;
    }

    void campaignInjectedFaults()
    {
        qInfo("faults injected: %d", faults);
        QVERIFY(faults > 0);
    }

private:
    int faults = 0;
};

DRASK_TEST(tst_Faults_Texts)
#include "tst_faults_texts.moc"
