// SPDX-License-Identifier: MIT
#include "faultcampaign.h"
#include "randomworld.h"
#include "testprogram.h"

#include <QProcess>
#include <QSettings>
#include <QtTest>

namespace {

constexpr int worldsByDefault = 300;
constexpr std::uint32_t firstSeedByDefault = 20261121;

using Leaves = QMap<QString, test::Leaf>;

/// Contents that the versions of Qt decode, count or write unlike, left to themselves.
const std::vector<QByteArray> strangeContents{QByteArray("\0", 1),
                                              "\xc2\xa0",
                                              "\xe2\x88\x92"
                                              "1",
                                              "1\xc2\xa0",
                                              QByteArray("1\0", 2),
                                              QByteArray("2\0x", 3),
                                              " 3",
                                              "+2\n",
                                              "99999999999",
                                              "\xef\xbb\xbf"
                                              "1\n",
                                              "\xff\xfe" + QByteArray("1\0\n\0", 4),
                                              "\xc3",
                                              "a\xe9\xff b\n#drask_installed\r\n\xf0\x9f\x98",
                                              "\xf4\x90\x80\x80\xed\xa0\xbd\xc0\x80\n",
                                              "\xff\xfe"
                                                  + QByteArray("#\0\x3d\xd8\n\0\0\xde\n\0", 10),
                                              "# \xe2\x80\xa8 line\xc2\x85\n#drask_installed\r\r\n",
                                              QByteArray("HOUDINI_PATH\0\n#drask_installed\n", 31)};

/// What stands before a number.
const std::vector<QByteArray> strangeNumbers{"\xc2\xa0", "\xe2\x80\x83", "\xe2\x88\x92", "+", "00"};

/// The values of settings, as the file has them. What ends in half of a letter is read unlike.
const std::vector<QByteArray> strangeValues{"a, b",
                                            "\"a\", \"b, c\"",
                                            "\xe2\x88\x92"
                                            "2",
                                            "\xc2\xa0"
                                            "3 ",
                                            "2\\0",
                                            "\\x32\\x2e",
                                            "@Invalid()",
                                            "@ByteArray(2\\xe9)",
                                            "@Variant(\\0\\0\\0\\x2\\0\\0\\0\\x1)",
                                            "@Rect(1 2 3 4)",
                                            "@Size(1 2)",
                                            "@@x",
                                            "\xff\xe9 b",
                                            "\\xd83d b",
                                            "\\xfeff b",
                                            "\xf0\x9f\x98\x80 \\x1f600",
                                            "QList(\\\"a\\\", QList(",
                                            "\"QList(\", QList(",
                                            "true",
                                            "FALSE",
                                            "0",
                                            "",
                                            "1e1",
                                            "0x10"};

const std::vector<QByteArray> keys{"UserData/username",     "UserData/loggedOut",
                                   "Settings/copyTexFiles", "PathOptions/localProjectsFolder",
                                   "plugins/versionMaya",   "plugins/versionModo",
                                   "plugins/versionHoudini"};

template<class List> const auto &oneOf(const List &list, std::mt19937 &dice)
{
    return list[dice() % list.size()];
}

void addStrangeSettings(const test::RandomWorld &world, std::mt19937 &dice)
{
    QByteArray lines;
    for (auto count = dice() % 4; count > 0; --count) {
        const QList<QByteArray> key = oneOf(keys, dice).split('/');
        const QByteArray number = oneOf(strangeNumbers, dice)
            + QByteArray::number(static_cast<uint>(dice() % 4));
        const bool isVersion = key.at(0) == "plugins" && dice() % 2 == 0;
        lines += '[' + key.at(0) + "]\n" + key.at(1) + '='
            + (isVersion ? number : oneOf(strangeValues, dice)) + '\n';
    }
    world.write("tool/settings.ini", world.read("tool/settings.ini") + '\n' + lines);
}

void makeFilesStrange(const test::RandomWorld &world, std::mt19937 &dice)
{
    const Leaves leaves = test::leavesOf(world.path());
    for (auto leaf = leaves.cbegin(); leaf != leaves.cend(); ++leaf) {
        const QString name = QFileInfo(leaf.key()).fileName();
        const bool isRead = QStringList{"version.txt", "userSetup.py",  "drask_userSetup.py",
                                        "houdini.env", "uninstall.ini", "manager.cfg"}
                                .contains(name);
        if (leaf->type == 'f' && isRead && dice() % 3 == 0) {
            const QByteArray &strange = oneOf(strangeContents, dice);
            world.write(leaf.key().mid(world.path().size() + 1),
                        dice() % 2 == 0 ? strange : leaf->content + strange);
        }
    }
}

/// The words of the runs, one after the other.
QList<QStringList> runsOf(const test::RandomWorld &world, std::mt19937 &dice)
{
    QList<QStringList> runs{world.mode().isEmpty() ? QStringList() : QStringList(world.mode())};
    QSettings settings(world.tool("settings.ini"), QSettings::IniFormat);
    settings.beginReadArray("pluginpaths");
    settings.setArrayIndex(0);
    const QString key = settings.value("application").toString();
    const QString folder = settings.value("path").toString();
    const QList<QStringList> removals{
        {"uninstallPlugin", '(' + key + ") " + folder},
        {"ov3uninstall", world.path("list.txt")},
        {"uninstallAllPlugins"},
    };
    world.write("list.txt", "path=" + folder.toUtf8() + "/x\n" + oneOf(strangeContents, dice));
    runs << removals.at(std::max(static_cast<int>(dice() % 4) - 1, 0));
    return runs;
}

/// What is left of the runs: codes and console, and every file.
struct Outcome {
    QByteArrayList ends;
    Leaves leaves;
};

Outcome outcomeOf(const test::RandomWorld &world, const QList<QStringList> &runs)
{
    Outcome outcome;
    test::RunOptions user = world.user();
    user.environment.insert("HOME", world.path("hosts"));
    for (const QStringList &words : runs) {
        const test::RunResult run = world.run(words, user);
        outcome.ends << QByteArray::number(run.ended) + QByteArray::number(run.crashed) + ' '
                + QByteArray::number(run.exitCode) + ' ' + run.console;
        // The next run begins a log of its own.
        outcome.ends << world.read("tool/plugin.log") << world.errors();
    }
    outcome.leaves = test::leavesOf(world.path());
    outcome.leaves.remove(world.tool("drask-installer"));
    for (test::Leaf &leaf : outcome.leaves) {
        // The store of Rhino, a file on Linux alone, has letters in either form.
        leaf.content.replace("\\xe9", "\xc3\xa9");
    }
    return outcome;
}

QString differenceOf(const Outcome &one, const Outcome &other)
{
    for (int at = 0; at < one.ends.size(); ++at) {
        if (one.ends.at(at) != other.ends.at(at)) {
            return "--- " + one.ends.at(at) + "\n+++ " + other.ends.at(at);
        }
    }
    QStringList names = one.leaves.keys() + other.leaves.keys();
    names.removeDuplicates();
    for (const QString &name : std::as_const(names)) {
        const test::Leaf before = one.leaves.value(name);
        const test::Leaf after = other.leaves.value(name);
        if (!before.isAs(after)) {
            return name + "\n--- " + before.type + ' ' + before.content + "\n+++ " + after.type
                + ' ' + after.content;
        }
    }
    return {};
}

} // namespace

/// The program and another one that was built with the other Qt do the same.
class tst_Differential : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        test::preferMemoryDisk();
        if (!QFileInfo::exists(DRASK_OTHER_PROGRAM)) {
            QSKIP("The other Qt is not on this machine");
        }
    }

    void bothDoTheSame()
    {
        bool isNumber = false;
        const uint given = qEnvironmentVariable("DRASK_SEED").toUInt(&isNumber);
        const int worlds = qEnvironmentVariableIntValue("DRASK_WORLDS");
        for (int number = 0; number < (worlds > 0 ? worlds : worldsByDefault); ++number) {
            const uint seed = (isNumber ? given : firstSeedByDefault) + static_cast<uint>(number);
            const QString difference = differenceIn(seed);
            QVERIFY2(difference.isEmpty(),
                     qPrintable(QStringLiteral("DRASK_SEED=%1\n").arg(seed) + difference));
        }
    }

private:
    /// Both find the same names in the same order: each works in a copy that was made alike.
    static QString differenceIn(uint seed)
    {
        const test::RandomWorld world(seed);
        std::mt19937 dice(seed);
        addStrangeSettings(world, dice);
        makeFilesStrange(world, dice);
        const QList<QStringList> runs = runsOf(world, dice);
        const QString one = world.path() + ".one";
        const QString other = world.path() + ".other";
        static_cast<void>(QProcess::execute("cp", {"-a", world.path(), one}));
        static_cast<void>(QProcess::execute("cp", {"-a", world.path(), other}));

        QDir().rename(world.path(), world.path() + ".was");
        QDir().rename(one, world.path());
        const Outcome here = outcomeOf(world, runs);
        QDir().rename(world.path(), one);
        QDir().rename(other, world.path());
        QFile::remove(world.tool("drask-installer"));
        QFile::copy(DRASK_OTHER_PROGRAM, world.tool("drask-installer"));
        const Outcome there = outcomeOf(world, runs);
        for (const QString &copy : {one, world.path() + ".was"}) {
            QDir(copy).removeRecursively();
        }
        return differenceOf(here, there);
    }
};

DRASK_TEST(tst_Differential)
#include "tst_differential.moc"
