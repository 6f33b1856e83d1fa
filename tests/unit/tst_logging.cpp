// SPDX-License-Identifier: MIT
#include "logging.h"

#include "logcapture.h"
#include "ordinaryuser.h"
#include "programfolder.h"
#include "testprogram.h"

#include <QDebug>
#include <QLoggingCategory>
#include <QProcess>
#include <QtTest>

#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <iterator>

Q_DECLARE_METATYPE(QtMsgType)

class tst_Logging : public QObject {
    Q_OBJECT

private slots:
    void levelChoosesThePrefix_data();
    void levelChoosesThePrefix();
    void messageIsWrittenAsItStands_data();
    void messageIsWrittenAsItStands();
    void streamedItemsAreSeparated();
    void linesOfEarlierRunsStay();
    void fatalMessageEndsTheProcess_data();
    void fatalMessageEndsTheProcess();
    void errorsAreWrittenAsTheyStand_data();
    void errorsAreWrittenAsTheyStand();
    void rulesOfTheMachineHoldForOtherCategoriesAlone();
    void listsAreShownWithoutAName();
    void unopenableFilesLoseTheirLinesSilently();
    void linesAreWrittenOnceAFolderIsOutOfTheWay();
    void devicesAndPipesLoseTheirLinesSilently_data();
    void devicesAndPipesLoseTheirLinesSilently();
    void writeProtectedFilesLoseTheirLinesSilently();
    void twoProcessesMixWholeLines();
};

namespace {

/// What this program is started by to play a role.
constexpr char rolesName[] = "roles of tst_logging";

constexpr int linesPerProcess = 200;

/// What this program does when it is started to play a role.
struct Role {
    const char *name;
    void (*play)();
};

// clang-format off
const Role roles[] = {
    {"fatal by handler", [] { myMessageOutput(QtFatalMsg, QMessageLogContext(), "the end"); }},
    {"fatal by stream",  [] { qFatal("the end"); }},
    {"one line each",    [] { qDebug() << "lost"; qWarning("lost"); writeErrorFile("lost"); }},
    {"folder goes",      [] { qDebug("lost"); QDir().rmdir(QCoreApplication::applicationDirPath() + "/plugin.log"); qDebug("kept"); }},
    {"many lines",       [] { for (int i = 0; i < linesPerProcess; ++i) { qDebug() << "other" << i; } }},
};
// clang-format on

const Role *findRole(const char *name)
{
    const auto *role = std::find_if(std::cbegin(roles), std::cend(roles), [name](const Role &any) {
        return qstrcmp(any.name, name) == 0;
    });
    return role == std::cend(roles) ? nullptr : role;
}

/// Started with the name of a role, the program plays it.
int play(int argc, char *argv[])
{
    const Role *role = argc > 1 ? findRole(argv[1]) : nullptr;
    if (role == nullptr) {
        return 2;
    }
    // An abort that a case asks for leaves no core file behind.
    const rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    const QCoreApplication application(argc, argv);
    qInstallMessageHandler(myMessageOutput);
    role->play();
    return 0;
}

/// Starts this program in its role \a name. Its console is one channel.
void start(QProcess &process, const QString &name)
{
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QCoreApplication::applicationFilePath(), {rolesName, name});
}

void log(QtMsgType type, const QString &message)
{
    myMessageOutput(type, QMessageLogContext(), message);
}

void addMessages()
{
    QTest::addColumn<QByteArray>("message");

    QTest::newRow("an empty message") << QByteArray("");
    QTest::newRow("non-ASCII letters") << QByteArray("H\xc3\xb6st \xe6\x97\xa5\xe6\x9c\xac");
    QTest::newRow("a letter beyond the first plane") << QByteArray("\xf0\x9f\x98\x80");
    QTest::newRow("a line feed inside") << QByteArray("first\nsecond");
    QTest::newRow("a line feed at the end") << QByteArray("first\n");
    QTest::newRow("a carriage return") << QByteArray("first\r\nsecond");
    QTest::newRow("place-holders") << QByteArray("%1 %2 %99 100% %");
    QTest::newRow("blanks around") << QByteArray("  text\t ");
    QTest::newRow("a message longer than a buffer") << QByteArray(70000, 'x');
}

} // namespace

void tst_Logging::levelChoosesThePrefix_data()
{
    QTest::addColumn<QtMsgType>("type");
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("debug") << QtDebugMsg << QByteArray("Debug: text\n");
    QTest::newRow("warning") << QtWarningMsg << QByteArray("Warning: text\n");
    QTest::newRow("critical") << QtCriticalMsg << QByteArray("Critical: text\n");
    QTest::newRow("info is an empty line") << QtInfoMsg << QByteArray("\n");
}

void tst_Logging::levelChoosesThePrefix()
{
    QFETCH(QtMsgType, type);
    QFETCH(QByteArray, line);
    const test::ProgramFolder folder;

    log(type, "text");

    QCOMPARE(test::treeDifference(folder.tree(), {{"plugin.log", line}}), QString());
}

void tst_Logging::messageIsWrittenAsItStands_data()
{
    addMessages();
}

void tst_Logging::messageIsWrittenAsItStands()
{
    QFETCH(QByteArray, message);
    const test::ProgramFolder folder;

    log(QtDebugMsg, QString::fromUtf8(message));

    QCOMPARE(folder.read("plugin.log"), "Debug: " + message + "\n");
}

void tst_Logging::streamedItemsAreSeparated()
{
    const test::ProgramFolder folder;
    const QtMessageHandler before = qInstallMessageHandler(myMessageOutput);
    qDebug() << "nothing to copy for " << QString::fromUtf8("m\xc3\xa4ya");
    qDebug() << 0;
    qInstallMessageHandler(before);

    QCOMPARE(folder.read("plugin.log"),
             QByteArray("Debug: nothing to copy for  \"m\xc3\xa4ya\"\nDebug: 0\n"));
}

void tst_Logging::linesOfEarlierRunsStay()
{
    const test::ProgramFolder folder;
    folder.write("plugin.log", "of an earlier run, cut o");

    log(QtDebugMsg, "a");
    log(QtInfoMsg, "b");
    log(QtWarningMsg, "c");

    QCOMPARE(folder.read("plugin.log"),
             QByteArray("of an earlier run, cut oDebug: a\n\nWarning: c\n"));
}

void tst_Logging::fatalMessageEndsTheProcess_data()
{
    QTest::addColumn<QString>("role");
    QTest::addColumn<QByteArray>("logBefore");

    QTest::newRow("the handler ends it by itself")
        << QString("fatal by handler") << QByteArray("Debug: before\n");
    QTest::newRow("a fatal line of Qt")
        << QString("fatal by stream") << QByteArray("Debug: before\n");
    QTest::newRow("no log yet") << QString("fatal by handler") << QByteArray();
}

void tst_Logging::fatalMessageEndsTheProcess()
{
    QFETCH(QString, role);
    QFETCH(QByteArray, logBefore);
    const test::ProgramFolder folder;
    if (!logBefore.isNull()) {
        folder.write("plugin.log", logBefore);
        folder.age("plugin.log");
    }
    const test::Tree before = folder.tree();

    QProcess process;
    start(process, role);
    QVERIFY(process.waitForFinished());

    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    QCOMPARE(process.exitCode(), SIGABRT);
    QCOMPARE(process.readAll(), QByteArray());
    QCOMPARE(test::treeDifference(folder.tree(), before), QString());
    QCOMPARE(folder.isAged("plugin.log"), !logBefore.isNull());
}

void tst_Logging::errorsAreWrittenAsTheyStand_data()
{
    addMessages();
}

void tst_Logging::errorsAreWrittenAsTheyStand()
{
    QFETCH(QByteArray, message);
    const test::ProgramFolder folder;

    writeErrorFile(QString::fromUtf8(message));

    QCOMPARE(test::treeDifference(folder.tree(), {{"pluginError.txt", message + "\n"}}), QString());
}

void tst_Logging::rulesOfTheMachineHoldForOtherCategoriesAlone()
{
    const test::LogCapture log;
    QLoggingCategory::setFilterRules("default=false");
    qDebug("dropped");
    QCOMPARE(log.lines(), QStringList());

    // The second call finds the filter of the first in place.
    keepEveryMessage();
    keepEveryMessage();
    const QLoggingCategory other("somebody.else");
    QLoggingCategory::setFilterRules("default=false\nsomebody.else=false");
    qDebug("kept");
    qWarning("kept too");
    QVERIFY(!other.isDebugEnabled() && !other.isWarningEnabled());

    QLoggingCategory::installFilter(nullptr);
    QLoggingCategory::setFilterRules(QString());
    QCOMPARE(log.lines(), QStringList({"Debug: kept", "Warning: kept too"}));
}

void tst_Logging::listsAreShownWithoutAName()
{
    const QVariant lists = QVariantList{QStringList{"QList(\\\"QList("}, 1, QStringList()};

    QCOMPARE(loggedForm(lists),
             QString("QVariant(QVariantList, (QVariant(QStringList, (\"QList(\\\\\\\"QList(\")), "
                     "QVariant(int, 1), QVariant(QStringList, ())))"));
    QCOMPARE(loggedForm(QString("a\\")), QString("QVariant(QString, \"a\\\\\")"));
}

void tst_Logging::unopenableFilesLoseTheirLinesSilently()
{
    const test::ProgramFolder folder;
    folder.makeFolder("plugin.log");
    folder.makeFolder("pluginError.txt");
    const test::Tree before = folder.tree();

    QProcess process;
    start(process, "one line each");
    QVERIFY(process.waitForFinished());

    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(process.readAll(), QByteArray());
    QCOMPARE(test::treeDifference(folder.tree(), before), QString());
}

void tst_Logging::linesAreWrittenOnceAFolderIsOutOfTheWay()
{
    const test::ProgramFolder folder;
    folder.makeFolder("plugin.log");

    QProcess process;
    start(process, "folder goes");
    QVERIFY(process.waitForFinished());

    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(process.readAll(), QByteArray());
    QCOMPARE(test::treeDifference(folder.tree(), {{"plugin.log", "Debug: kept\n"}}), QString());
}

void tst_Logging::devicesAndPipesLoseTheirLinesSilently_data()
{
    QTest::addColumn<QString>("target");

    QTest::newRow("a link to a device") << QStringLiteral("/dev/null");
    QTest::newRow("a link to a full device") << QStringLiteral("/dev/full");
    QTest::newRow("a pipe that nobody reads") << QString();
}

void tst_Logging::devicesAndPipesLoseTheirLinesSilently()
{
    QFETCH(QString, target);
    const test::ProgramFolder folder;
    for (const char *name : {"plugin.log", "pluginError.txt"}) {
        if (!target.isEmpty()) {
            folder.makeLink(target, name);
        } else {
            QCOMPARE(mkfifo(QFile::encodeName(folder.path(name)).constData(), S_IRWXU), 0);
        }
    }

    QProcess process;
    start(process, "one line each");
    QVERIFY(process.waitForFinished());

    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(process.readAll(), QByteArray());
}

void tst_Logging::writeProtectedFilesLoseTheirLinesSilently()
{
    const test::ProgramFolder folder;
    folder.write("plugin.log", "kept\n");
    folder.write("pluginError.txt", "kept\n");
    const test::Tree before = folder.tree();
    {
        const test::ReadOnly logFile(folder.path("plugin.log"));
        const test::ReadOnly errorFile(folder.path("pluginError.txt"));
        BECOME_ORDINARY_USER_OR_SKIP();
        const test::LogCapture complaints;

        log(QtDebugMsg, "lost");
        writeErrorFile("lost");

        QCOMPARE(complaints.lines(), QStringList());
    }
    QCOMPARE(test::treeDifference(folder.tree(), before), QString());
}

void tst_Logging::twoProcessesMixWholeLines()
{
    const test::ProgramFolder folder;
    QStringList expected;
    QProcess process;
    start(process, "many lines");
    QVERIFY(process.waitForStarted());
    for (int i = 0; i < linesPerProcess; ++i) {
        log(QtDebugMsg, QStringLiteral("own %1").arg(i));
        expected << QStringLiteral("Debug: own %1").arg(i);
        expected << QStringLiteral("Debug: other %1").arg(i);
    }
    QVERIFY(process.waitForFinished());

    QStringList lines = QString::fromUtf8(folder.read("plugin.log")).split('\n');
    QCOMPARE(lines.takeLast(), QString());
    lines.sort();
    expected.sort();
    QCOMPARE(lines, expected);
}

static const test::Registration rolesRegistration(rolesName, play);
DRASK_TEST_IN_OWN_FOLDER(tst_Logging)

#include "tst_logging.moc"
