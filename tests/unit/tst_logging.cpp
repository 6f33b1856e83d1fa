// SPDX-License-Identifier: MIT
#include "logging.h"

#include "programfolder.h"
#include "unitcase.h"

#include <QDebug>
#include <QLoggingCategory>
#include <QProcess>

#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <iterator>

Q_DECLARE_METATYPE(QtMsgType)

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

/// Starts this program in its role \a name; true when it ends in order and prints nothing.
bool playsSilently(const QString &name)
{
    QProcess process;
    start(process, name);
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0 && process.readAll().isEmpty();
}

void log(QtMsgType type, const QString &message)
{
    myMessageOutput(type, QMessageLogContext(), message);
}

} // namespace

class tst_Logging : public QObject {
    Q_OBJECT
private slots:
    void levelChoosesThePrefix_data()
    {
        const test::Table<QtMsgType, QByteArray> table("type", "line");
        table.row("debug", QtDebugMsg, "Debug: text\n");
        table.row("warning", QtWarningMsg, "Warning: text\n");
        table.row("critical", QtCriticalMsg, "Critical: text\n");
        table.row("info is an empty line", QtInfoMsg, "\n");
    }

    void levelChoosesThePrefix()
    {
        QFETCH(QtMsgType, type);
        QFETCH(QByteArray, line);
        const test::ProgramFolder folder;
        log(type, "text");
        VERIFY_TREE(folder, {{"plugin.log", line}});
    }

    void messagesAndErrorsAreWrittenAsTheyStand_data()
    {
        const test::Table<QByteArray> table("message");
        table.row("an empty message", "");
        table.row("non-ASCII letters", "H\xc3\xb6st \xe6\x97\xa5\xe6\x9c\xac");
        table.row("a letter beyond the first plane", "\xf0\x9f\x98\x80");
        table.row("a line feed inside", "first\nsecond");
        table.row("a line feed at the end", "first\n");
        table.row("a carriage return", "first\r\nsecond");
        table.row("place-holders", "%1 %2 %99 100% %");
        table.row("blanks around", "  text\t ");
        table.row("a message longer than a buffer", QByteArray(70000, 'x'));
    }

    void messagesAndErrorsAreWrittenAsTheyStand()
    {
        QFETCH(QByteArray, message);
        const test::ProgramFolder folder;
        log(QtDebugMsg, QString::fromUtf8(message));
        writeErrorFile(QString::fromUtf8(message));
        VERIFY_TREE(
            folder,
            {{"plugin.log", "Debug: " + message + '\n'}, {"pluginError.txt", message + '\n'}});
    }

    void halfALetterIsAQuestionMark()
    {
        const test::ProgramFolder folder;
        writeErrorFile(QString(QChar(0xdc00)) + "a" + QChar(0xd800));
        VERIFY_TREE(folder, {{"pluginError.txt", "?a?\n"}});
    }

    void streamedItemsAreSeparated()
    {
        const test::ProgramFolder folder;
        const QtMessageHandler before = qInstallMessageHandler(myMessageOutput);
        qDebug() << "nothing to copy for " << QString::fromUtf8("m\xc3\xa4ya");
        qDebug() << 0;
        qInstallMessageHandler(before);
        QCOMPARE(folder.read("plugin.log"),
                 QByteArray("Debug: nothing to copy for  \"m\xc3\xa4ya\"\nDebug: 0\n"));
    }

    void linesOfEarlierRunsStay()
    {
        const test::ProgramFolder folder;
        folder.write("plugin.log", "of an earlier run, cut o");
        log(QtDebugMsg, "a");
        log(QtInfoMsg, "b");
        log(QtWarningMsg, "c");
        QCOMPARE(folder.read("plugin.log"),
                 QByteArray("of an earlier run, cut oDebug: a\n\nWarning: c\n"));
    }

    void fatalMessageEndsTheProcess_data()
    {
        const test::Table<QString, QByteArray> table("role", "logBefore");
        table.row("the handler ends it by itself", "fatal by handler", "Debug: before\n");
        table.row("a fatal line of Qt", "fatal by stream", "Debug: before\n");
        table.row("no log yet", "fatal by handler", QByteArray());
    }

    void fatalMessageEndsTheProcess()
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
        VERIFY_TREE(folder, before);
        QCOMPARE(folder.isAged("plugin.log"), !logBefore.isNull());
    }

    void rulesOfTheMachineHoldForOtherCategoriesAlone()
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
        qDebug("begin uninstall");
        qWarning("Broken filename passed to function");
        QVERIFY(!other.isDebugEnabled() && !other.isWarningEnabled());

        QLoggingCategory::installFilter(nullptr);
        QLoggingCategory::setFilterRules(QString());
        VERIFY_LINES(log.lines(), "Debug: begin uninstall",
                     "Warning: Broken filename passed to function");
    }

    void listsAreShownWithoutAName()
    {
        const QVariant lists = QVariantList{QStringList{"QList(\\\"QList("}, 1, QStringList()};
        QCOMPARE(loggedForm(lists),
                 QString("QVariant(QVariantList, (QVariant(QStringList, "
                         "(\"QList(\\\\\\\"QList(\")), QVariant(int, 1), "
                         "QVariant(QStringList, ())))"));
        QCOMPARE(loggedForm(QString("a\\")), QString("QVariant(QString, \"a\\\\\")"));
    }

    void unopenableFilesLoseTheirLinesSilently()
    {
        const test::ProgramFolder folder;
        folder.makeFolder("plugin.log");
        folder.makeFolder("pluginError.txt");
        const test::Tree before = folder.tree();
        QVERIFY(playsSilently("one line each"));
        VERIFY_TREE(folder, before);
    }

    void linesAreWrittenOnceAFolderIsOutOfTheWay()
    {
        const test::ProgramFolder folder;
        folder.makeFolder("plugin.log");
        QVERIFY(playsSilently("folder goes"));
        VERIFY_TREE(folder, {{"plugin.log", "Debug: kept\n"}});
    }

    void devicesAndPipesLoseTheirLinesSilently_data()
    {
        const test::Table<QString> table("target");
        table.row("a link to a device", "/dev/null");
        table.row("a link to a full device", "/dev/full");
        table.row("a pipe that nobody reads", QString());
    }

    void devicesAndPipesLoseTheirLinesSilently()
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

        QVERIFY(playsSilently("one line each"));
    }

    void writeProtectedFilesLoseTheirLinesSilently()
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
        VERIFY_TREE(folder, before);
    }

    void twoProcessesMixWholeLines()
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
};

static const test::Registration rolesRegistration(rolesName, play);
DRASK_TEST_IN_OWN_FOLDER(tst_Logging)

#include "tst_logging.moc"
