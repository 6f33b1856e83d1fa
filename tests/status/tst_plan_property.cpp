// SPDX-License-Identifier: MIT
#include "randomworld.h"
#include "statusrun.h"
#include "testprogram.h"

#include <QJsonArray>
#include <QtTest>

#include <utility>

#include <utime.h>

namespace {

constexpr int worldsByDefault = 100;
constexpr std::uint32_t firstSeedByDefault = 20261121;

/// "make /path" and so on, one for each change of \a run with \a differs.
QStringList foretold(const test::StatusRun &run, bool differs)
{
    QStringList lines;
    QJsonArray lists{run.json["changes"]};
    const QJsonArray hosts = run.json["hosts"].toArray();
    for (const QJsonValue &host : hosts) {
        lists.append(host["changes"]);
    }
    for (const QJsonValue &list : std::as_const(lists)) {
        const QJsonArray changes = list.toArray();
        for (const QJsonValue &change : changes) {
            if (change["differs"].toBool() == differs) {
                lines << change["action"].toString() + ' ' + change["path"].toString();
            }
        }
    }
    lines.sort();
    return lines;
}

/// What a run did to \a before, to leave \a after, in the same words.
QStringList done(const QMap<QString, test::Leaf> &before, const QMap<QString, test::Leaf> &after)
{
    QStringList lines;
    for (auto leaf = after.cbegin(); leaf != after.cend(); ++leaf) {
        if (!before.contains(leaf.key())) {
            lines << (leaf->type == 'd' ? "makeFolder " : "make ") + leaf.key();
        } else if (!leaf->isAs(before.value(leaf.key()))) {
            lines << "replace " + leaf.key();
        }
    }
    for (auto leaf = before.cbegin(); leaf != before.cend(); ++leaf) {
        if (!after.contains(leaf.key())) {
            lines << "remove " + leaf.key();
        }
    }
    lines.sort();
    return lines;
}

/// Files that a run wrote again as they were.
QStringList rewritten(const QMap<QString, test::Leaf> &before,
                      const QMap<QString, test::Leaf> &after)
{
    QStringList lines;
    for (auto leaf = after.cbegin(); leaf != after.cend(); ++leaf) {
        const test::Leaf old = before.value(leaf.key());
        if (leaf->type == 'f' && leaf->isAs(old) && !leaf->isUntouched(old)) {
            lines << "replace " + leaf.key();
        }
    }
    return lines;
}

/// Kinds that tell of a plug-in that is not complete; the others tell of one that was changed.
bool isIncomplete(const test::StatusRun &verified)
{
    const QStringList kinds = verified.kinds();
    return verified.exitCode == 3
        && std::any_of(kinds.cbegin(), kinds.cend(), [](const QString &kind) {
               return !kind.contains("fileDiffers") && !kind.contains("leftOver")
                   && !kind.contains("otherVersion") && !kind.contains("notInstalled")
                   && !kind.contains("pathWithoutSlash") && !kind.contains("cannotLook");
           });
}

QStringList without(const QStringList &paths, const QStringList &lines)
{
    QStringList rest;
    std::copy_if(
        lines.cbegin(), lines.cend(), std::back_inserter(rest),
        [&paths](const QString &line) { return !paths.contains(line.mid(line.indexOf(' ') + 1)); });
    return rest;
}

QString firstDifference(const QStringList &actual, const QStringList &expected)
{
    QStringList lines;
    for (const QString &line : expected) {
        if (!actual.contains(line)) {
            lines << "not foretold: " + line;
        }
    }
    for (const QString &line : actual) {
        if (!expected.contains(line)) {
            lines << "did not happen: " + line;
        }
    }
    return lines.join('\n');
}

QMap<QString, test::Leaf> leavesWithoutLogs(const test::Workstation &world)
{
    QMap<QString, test::Leaf> leaves = test::leavesOf(world.path());
    leaves.remove(world.tool("plugin.log"));
    leaves.remove(world.tool("pluginError.txt"));
    return leaves;
}

/// Sets the time of every file back, so that it shows which are written.
void ageAll(const test::Workstation &world)
{
    const QMap<QString, test::Leaf> leaves = test::leavesOf(world.path());
    const utimbuf longAgo{981173106, 981173106};
    for (auto leaf = leaves.cbegin(); leaf != leaves.cend(); ++leaf) {
        if (leaf->type == 'f') {
            utime(QFile::encodeName(leaf.key()).constData(), &longAgo);
        }
    }
}

} // namespace

class tst_plan_property : public QObject {
    Q_OBJECT

private slots:
    void planIsWhatTheRunDoes_data();
    void planIsWhatTheRunDoes();
};

void tst_plan_property::planIsWhatTheRunDoes_data()
{
    QTest::addColumn<uint>("seed");
    bool isNumber = false;
    const uint first = qEnvironmentVariable("DRASK_SEED").toUInt(&isNumber);
    const int worlds = qEnvironmentVariableIntValue("DRASK_WORLDS");
    const int count = worlds > 0 ? worlds : worldsByDefault;
    for (int number = 0; number < count; ++number) {
        const uint seed = (isNumber ? first : firstSeedByDefault) + static_cast<uint>(number);
        QTest::addRow("seed %u", seed) << seed;
    }
}

void tst_plan_property::planIsWhatTheRunDoes()
{
    QFETCH(uint, seed);
    const test::RandomWorld world(seed);
    ageAll(world);
    const test::RunOptions user = world.user();
    const QString mode = world.mode();
    const QMap<QString, test::Leaf> before = leavesWithoutLogs(world);

    const test::StatusRun plan = test::runStatus(
        world, {"plan", "--json", "--mode", mode.isEmpty() ? "install" : mode}, user);
    QCOMPARE(plan.errors, QByteArray());
    QCOMPARE(done(before, leavesWithoutLogs(world)), QStringList());
    // What this user cannot read cannot be compared.
    const QStringList unknown = plan.pathsOf("cannotLook");

    const test::RunResult run = world.run(mode.isEmpty() ? QStringList() : QStringList(mode), user);
    const QMap<QString, test::Leaf> after = leavesWithoutLogs(world);
    QCOMPARE(firstDifference(without(unknown, foretold(plan, true)),
                             without(unknown, done(before, after))),
             QString());
    QCOMPARE(firstDifference(foretold(plan, false), without(unknown, rewritten(before, after))),
             QString());

    const test::StatusRun report = test::runStatus(world, {"report", "--json"}, user);
    const test::StatusRun verified = test::runStatus(world, {"verify", "--json"}, user);
    const bool isComplete = run.exitCode == 0 && report.exitCode != 3 && !isIncomplete(verified);
    const QByteArray why = "code " + QByteArray::number(run.exitCode) + "\nplan "
        + plan.kinds().join(' ').toUtf8() + "\nreport " + report.kinds().join(' ').toUtf8()
        + "\nverify " + verified.kinds().join(' ').toUtf8();
    QVERIFY2((plan.exitCode == 3) == !isComplete, why);

    if (report.exitCode == 0
        && (verified.exitCode != 0
            || test::runStatus(world, {"plan", "--json"}, user).exitCode != 0)) {
        const test::StatusRun doctor = test::runStatus(world, {"doctor", "--json"}, user);
        QVERIFY2(doctor.exitCode != 0, why);
    }
}

DRASK_TEST(tst_plan_property)
#include "tst_plan_property.moc"
