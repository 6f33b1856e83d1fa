// SPDX-License-Identifier: MIT
#include "statusrun.h"
#include "testprogram.h"
#include "tracer.h"

#include <QRegularExpression>
#include <QtTest>

namespace {

/// Hosts with a registry and start-up files, and a companion that would show that it was started.
class Station : public test::Workstation {
public:
    Station()
    {
        addSetting("plugins", "versionRhino=1\nversionMaya=1\nversionHoudini=1");
        for (const char *key : {"rhino", "maya", "houdini"}) {
            addPlugin(key, {{"version.txt", "1"}, {"drask_userSetup.py", "#drask_installed\n"}});
            addHost(key, path(QString("hosts/") + key));
        }
        addCpuType("touch started\n");
        writeSettings();
    }
};

} // namespace

class tst_status_traced : public QObject {
    Q_OBJECT

private slots:
    void nothingIsWrittenAndNothingStarted_data();
    void nothingIsWrittenAndNothingStarted();
};

void tst_status_traced::nothingIsWrittenAndNothingStarted_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::newRow("plan") << QStringList{"plan"};
    QTest::newRow("plan of a reinstall") << QStringList{"plan", "--mode", "reinstall"};
    QTest::newRow("plan of the configuration") << QStringList{"plan", "--mode", "onlyWriteConfig"};
    QTest::newRow("verify") << QStringList{"verify"};
    QTest::newRow("report") << QStringList{"report"};
    QTest::newRow("doctor") << QStringList{"doctor"};
}

void tst_status_traced::nothingIsWrittenAndNothingStarted()
{
    QFETCH(QStringList, words);
    if (!test::Tracer::obstacle().isEmpty()) {
        QSKIP(qPrintable(test::Tracer::obstacle()));
    }
    const Station station;
    if (words.first() != "plan") {
        VERIFY_RUN(station.run(), 0);
    }
    const QString trace = station.path("trace");
    test::RunOptions options;
    options.environment = test::Tracer::environment();
    options.through = QStringList{"strace", "-f", "-qq", "-e", "signal=none", "-o", trace};
    const test::Tree before = station.tree();
    const test::StatusRun run = test::runStatus(station, words, options);
    test::Tree after = station.tree();
    after.remove("trace");
    QCOMPARE(test::treeDifference(after, before), QString());
    QVERIFY2(run.output.startsWith(words.first().toUtf8()), run.output);

    const QRegularExpression forbidden(
        "O_WRONLY|O_RDWR|O_CREAT|O_TRUNC|O_APPEND|O_TMPFILE"
        "|^\\d+ "
        "+(creat|unlink|rename|mkdir|rmdir|link|symlink|mknod|chmod|fchmod|chown|fchown|lchown"
        "|truncate|ftruncate|utime|setxattr|fork|vfork|clone|socket|flock|fsync|fdatasync)");
    int opened = 0;
    int executed = 0;
    const QStringList lines = QString::fromUtf8(station.read("trace")).split('\n');
    for (const QString &line : lines) {
        QVERIFY2(!line.contains(forbidden), qPrintable(line));
        opened += line.contains("settings.ini") && line.contains("open") ? 1 : 0;
        executed += line.contains(" execve(") ? 1 : 0;
    }
    QCOMPARE(executed, 1);
    QVERIFY(opened > 0 || words.first() == "report");
}

DRASK_TEST(tst_status_traced)
#include "tst_status_traced.moc"
