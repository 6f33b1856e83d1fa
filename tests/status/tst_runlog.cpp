// SPDX-License-Identifier: MIT
#include "status/runlog.h"

#include "testprogram.h"

#include <QtTest>

namespace {

/// "modo" goes to "/Scripts/drask" of its folder; "max" has two targets; all want version 7.
QList<PluginPathStruct> targetsOf(const QString &key, const QString &path)
{
    PluginPathStruct target{key, path, "/Scripts/drask", "/tool/plugins/" + key, 7};
    if (key != "max") {
        return {target};
    }
    PluginPathStruct other = target;
    other.pluginSubFolder = "/Other/drask";
    return {target, other};
}

/// \a lines as debug lines of a log.
QString logOf(const QStringList &lines)
{
    QString text;
    for (const QString &line : lines) {
        text += "Debug: " + line + '\n';
    }
    return text;
}

const QStringList start{"settings loaded", "applicationName \"modo\"",
                        "path \"/modo\"",  "applicationName \"maya\"",
                        "path \"/maya\"",  "!!!settings local:  QVariant(Invalid)",
                        "version:  24"};
const QStringList modoCopied{"open file:  \"\"", "cannot read config file, create new",
                             "161 write cfg file...",
                             "\"modo plugin installed in: \" \"/modo/Scripts/drask\""};
const QStringList mayaUpToDate{"version already installed:  \"/maya/Scripts/drask\"",
                               "not necessary to write cfg"};
const QStringList mayaCopied{"open file:  \"/modo/Scripts/drask/uninstall.ini\"",
                             "not necessary to write cfg",
                             "\"maya plugin installed in: \" \"/maya/Scripts/drask\""};

/// The story in a line: mode, code, states, kinds of problems.
QString inShort(const RunStory &story)
{
    QStringList words{story.run.mode,
                      story.run.exitCode ? QString::number(*story.run.exitCode) : "-",
                      story.run.ended ? "ended" : "cut off"};
    for (const HostAnswer &host : story.hosts) {
        words << host.key + '=' + stateName(host.state);
        for (const Problem &problem : host.problems) {
            words << kindName(problem.kind) + ':' + problem.path;
        }
    }
    for (const Problem &problem : story.problems) {
        words << kindName(problem.kind);
    }
    return words.join(' ');
}

} // namespace

class tst_RunLog : public QObject {
    Q_OBJECT

private slots:
    void runIsTold_data();
    void runIsTold();
    void everyTargetOfAHostIsTold();
    void anyCutOfALogIsReadWithoutAnEnd();
};

void tst_RunLog::runIsTold_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("errors");
    QTest::addColumn<QString>("expected");

    const QStringList pass = start + modoCopied + mayaUpToDate;
    QTest::newRow("one copied, one up to date") << pass + QStringList("0") << ""
                                                << "install 0 ended modo=copied maya=foundUpToDate";
    QTest::newRow("no exit code") << pass << ""
                                  << "install - cut off modo=copied maya=foundUpToDate runNotEnded";
    QTest::newRow("cut off in the first host")
        << start + modoCopied.mid(0, 2) << ""
        << "install - cut off modo=interrupted maya=unknown runNotEnded";
    QTest::newRow("passed over") << start + QStringList("nothing to copy for  \"modo\"")
            + mayaUpToDate + QStringList("0")
                                 << ""
                                 << "install 0 ended modo=skipped maya=foundUpToDate";
    QTest::newRow("reinstall with removals before")
        << QStringList("forceReinstall") + start.mid(0, 5)
            + QStringList{"begin uninstall", "uninstallPlugin  0", "begin uninstall",
                          "uninstallPlugin  0"}
            + start.mid(5) + modoCopied + mayaCopied + QStringList("0")
        << ""
        << "reinstall 0 ended modo=copied maya=copied";
    QTest::newRow("configuration only")
        << QStringList("only write config") + start
            + QStringList{"only write config, do not copy files", "not necessary to write cfg",
                          "\"modo plugin installed in: \" \"/modo/Scripts/drask\""}
            + mayaUpToDate + QStringList("0")
        << ""
        << "onlyWriteConfig 0 ended modo=leftOut copyLeftOut:/modo/Scripts/drask "
           "maya=foundUpToDate";
    QTest::newRow("file not copied, which no code tells")
        << start
            + QStringList{"open file:  \"\"",
                          "Could not copy file  \"/tool/a\"  to  \"/modo/Scripts/drask/a\"",
                          "exist check failed - rights problem \"/modo/Scripts/drask/a\""}
            + modoCopied.mid(1) + mayaUpToDate + QStringList("0")
        << ""
        << "install 0 ended modo=failed fileNotCopied:/modo/Scripts/drask/a maya=foundUpToDate";
    QTest::newRow("manifest not written")
        << start
            + QStringList{"open file:  \"\"",
                          "cannot open  \"/modo/Scripts/drask/uninstall.ini\"  for writing"}
            + modoCopied.mid(1) + mayaUpToDate + QStringList("2")
        << "Could not copy file to: \n/modo/Scripts/drask\n"
        << "install 2 ended modo=failed manifestNotWritten:/modo/Scripts/drask/uninstall.ini "
           "maya=foundUpToDate";
    QTest::newRow("what only the error file tells")
        << pass + QStringList("3")
        << "Could not write config file in: \n/modo/Scripts/draskmanager.cfg\n"
        << "install 3 ended modo=failed configNotWritten:/modo/Scripts/drask/manager.cfg "
           "maya=foundUpToDate";
    QTest::newRow("shipped plug-in missing")
        << start + modoCopied.mid(1) + mayaUpToDate + QStringList("2")
        << "Could not copy file to: \n/modo/Scripts/drask\n"
        << "install 2 ended modo=failed pluginNotCopied:/modo/Scripts/drask maya=foundUpToDate";
    QTest::newRow("template missing") << start + modoCopied + mayaCopied.mid(0, 2)
            + QStringList{"1635 error  \"/maya/Scripts/drask/drask_userSetup.py\"",
                          mayaCopied.last(),
                          "3"} << "Could not copy userSetup.py file to: /maya/Scripts/drask\n"
                                      << "install 3 ended modo=copied maya=failed "
                                         "userSetupNotWritten:/maya/Scripts/drask/../userSetup.py";
    QTest::newRow("errors of an older run")
        << pass + QStringList("0") << "Could not copy file to: \n/modo/Scripts/drask\n"
        << "install 0 ended modo=copied maya=foundUpToDate";
    QTest::newRow("exit code that nothing explains")
        << pass + QStringList("2") << ""
        << "install 2 ended modo=copied maya=foundUpToDate exitCode";
    QTest::newRow("two runs, one after the other")
        << pass + QStringList("2") + pass + QStringList("0") << ""
        << "install 0 ended modo=copied maya=foundUpToDate olderRuns";
    QTest::newRow("two runs at once")
        << start + start + modoCopied + modoCopied + mayaUpToDate + mayaUpToDate
            + QStringList{"0", "0"}
        << ""
        << "install 0 ended modo=copied maya=copied =foundUpToDate =foundUpToDate runsMixed";
    QTest::newRow("lines of a host after the end of a run")
        << pass + QStringList{"0"} + mayaUpToDate + QStringList{"0"} << ""
        << "install 0 ended modo=copied maya=foundUpToDate =foundUpToDate runsMixed";
    QTest::newRow("removal of one") << QStringList{"applicationName \"modo\"", "path \"/modo\"",
                                                   "begin uninstall", "uninstallPlugin  2"}
                                    << ""
                                    << "uninstallPlugin 2 ended modo=failed "
                                       "uninstallFailed:/modo/Scripts/drask";
    QTest::newRow("removal of all") << start.mid(0, 5)
            + QStringList{"begin uninstall", "uninstallPlugin  0", "begin uninstall",
                          "uninstallPlugin  0"}
                                    << ""
                                    << "uninstallAllPlugins 0 ended modo=skipped maya=skipped";
    QTest::newRow("removal of older plug-ins") << QStringList("0") << ""
                                               << "ov3uninstall 0 ended";
}

void tst_RunLog::runIsTold()
{
    QFETCH(QStringList, lines);
    QFETCH(QString, errors);
    QTEST(inShort(readRun(logOf(lines), errors, targetsOf)), "expected");
}

void tst_RunLog::everyTargetOfAHostIsTold()
{
    const QStringList lines{"settings loaded",
                            "applicationName \"max\"",
                            "path \"/max\"",
                            "!!!settings local:  QVariant(Invalid)",
                            "version already installed:  \"/max/Scripts/drask\"",
                            "not necessary to write cfg",
                            "version already installed:  \"/max/Other/drask\"",
                            "161 write cfg file...",
                            "0"};
    const RunStory story = readRun(logOf(lines), QString(), targetsOf);
    QCOMPARE(inShort(story), QString("install 0 ended max=foundUpToDate max=foundUpToDate"));
    QCOMPARE(story.hosts.last().target, QString("/max/Other/drask"));
}

void tst_RunLog::anyCutOfALogIsReadWithoutAnEnd()
{
    const QString log = logOf(start + modoCopied + mayaCopied + QStringList("0"));
    for (int size = 0; size < log.size() - 2; ++size) {
        const RunStory story = readRun(log.left(size), QString(), targetsOf);
        QVERIFY2(!story.run.ended, qPrintable(log.left(size)));
    }
}

DRASK_TEST(tst_RunLog)
#include "tst_runlog.moc"
