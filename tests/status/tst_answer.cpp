// SPDX-License-Identifier: MIT
#include "status/answer.h"

#include "testprogram.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

namespace {

QSet<QString> schemaNames(const QStringList &way)
{
    QFile file(DRASK_STATUS_SCHEMA);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("The schema cannot be read");
    }
    QJsonValue value = QJsonDocument::fromJson(file.readAll()).object();
    for (const QString &step : way) {
        value = value[step];
    }
    QSet<QString> names;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &name : array) {
        names.insert(name.toString());
    }
    return names;
}

} // namespace

class tst_Answer : public QObject {
    Q_OBJECT

private slots:
    void everyKindHasAName();
    void everyStateHasAName();
    void resultIsTheHeaviest_data();
    void resultIsTheHeaviest();
};

void tst_Answer::everyKindHasAName()
{
    QSet<QString> names;
    for (int kind = 0; kind <= static_cast<int>(Kind::CpuTypeNotExecutable); ++kind) {
        names.insert(kindName(static_cast<Kind>(kind)));
    }
    QCOMPARE(names.size(), static_cast<int>(Kind::CpuTypeNotExecutable) + 1);
    QCOMPARE(names, schemaNames({"$defs", "kind", "enum"}));
}

void tst_Answer::everyStateHasAName()
{
    QSet<QString> names;
    for (int state = 0; state <= static_cast<int>(State::Unknown); ++state) {
        names.insert(stateName(static_cast<State>(state)));
        QVERIFY(!QString(stateWords(static_cast<State>(state))).isEmpty());
    }
    QCOMPARE(names.size(), static_cast<int>(State::Unknown) + 1);
    QCOMPARE(names, schemaNames({"$defs", "host", "properties", "state", "enum"}));
}

void tst_Answer::resultIsTheHeaviest_data()
{
    QTest::addColumn<QList<int>>("kinds");
    QTest::addColumn<bool>("differs");
    QTest::addColumn<int>("exitCode");
    const int note = static_cast<int>(Kind::OlderRuns);
    const int look = static_cast<int>(Kind::RunNotEnded);
    const int unknown = static_cast<int>(Kind::LogMissing);
    const int fails = static_cast<int>(Kind::FileMissing);
    QTest::newRow("nothing") << QList<int>() << false << 0;
    QTest::newRow("a note") << QList<int>{note} << false << 0;
    QTest::newRow("a change") << QList<int>() << true << 2;
    QTest::newRow("something to look at") << QList<int>{look, note} << false << 2;
    QTest::newRow("something unknown") << QList<int>{look, unknown} << true << 1;
    QTest::newRow("a failure") << QList<int>{unknown, fails, look} << true << 3;
}

void tst_Answer::resultIsTheHeaviest()
{
    QFETCH(QList<int>, kinds);
    QFETCH(bool, differs);
    Answer ofTheRun;
    Answer ofAHost;
    ofAHost.hosts.append(HostAnswer());
    for (const int kind : kinds) {
        ofTheRun.problems.append({static_cast<Kind>(kind), QString(), QString()});
        ofAHost.hosts[0].problems.append({static_cast<Kind>(kind), QString(), QString()});
    }
    ofTheRun.changes.append({QString(), Action::Replace, differs});
    ofAHost.hosts[0].changes.append({QString(), Action::Replace, differs});
    QTEST(exitCodeOf(ofTheRun.result()), "exitCode");
    QTEST(exitCodeOf(ofAHost.result()), "exitCode");
}

DRASK_TEST(tst_Answer)
#include "tst_answer.moc"
