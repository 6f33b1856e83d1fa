// SPDX-License-Identifier: MIT
#include "inmemory.h"
#include "player.h"
#include "testprogram.h"

#include <QDir>
#include <QtTest>

/// Plays the scenarios, a row of data each; README.md describes them. With --accept, what the runs
/// gave is written into their files.
class tst_Scenarios : public QObject {
    Q_OBJECT

private slots:
    void scenario_data();
    void scenario();
};

namespace {

const QString folder = QStringLiteral(DRASK_SCENARIOS);
test::Purpose purpose = test::Purpose::Hold;
QString pattern = QStringLiteral("*");

} // namespace

void tst_Scenarios::scenario_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<test::Values>("row");

    const QString scenarios = folder + "/scenarios/";
    for (const QString &name : QDir(scenarios).entryList({pattern + ".txt"}, QDir::Files)) {
        for (const test::Values &row : test::rowsOf(test::readSections(scenarios + name))) {
            const QString tag = name.chopped(4) + (row.isEmpty() ? "" : "/") + row.value("name");
            QTest::newRow(qPrintable(tag)) << scenarios + name << row;
        }
    }
}

void tst_Scenarios::scenario()
{
    QFETCH(QString, file);
    QFETCH(test::Values, row);
    test::Player player(file, row, purpose);

    player.play(test::readSections(folder + "/starts/common.txt"));
    player.play(test::readSections(file));

    if (!player.skipped.isEmpty()) {
        QSKIP(qPrintable(player.skipped));
    }
    if (!player.problem.isEmpty()) {
        qInfo("%s", qPrintable(player.problem));
        QFAIL("not as it is told");
    }
}

namespace {

/// Qt Test does not know "--accept" and "--only NAME", which may be a pattern.
int runScenarios(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    const bool accepts = arguments.removeAll("--accept") > 0;
    purpose = accepts ? test::Purpose::Accept : test::Purpose::Hold;
    const auto only = arguments.indexOf("--only");
    if (only > 0 && only + 1 < arguments.size()) {
        pattern = arguments.takeAt(only + 1);
        arguments.removeAt(only);
    }
    if (accepts && qEnvironmentVariableIsSet("CI")) {
        qFatal("Nothing is accepted in CI.");
    }
    const test::InMemory memory;
    tst_Scenarios scenarios;
    return QTest::qExec(&scenarios, arguments);
}

const test::Registration registration(__FILE__, test::Place::AsBuilt, runScenarios);

} // namespace

#include "tst_scenarios.moc"
