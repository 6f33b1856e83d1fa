// SPDX-License-Identifier: MIT
#include "status/jsonoutput.h"

#include "status/answer.h"
#include "statusrun.h"
#include "testprogram.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

class tst_JsonOutput : public QObject {
    Q_OBJECT

private slots:
    void answerIsOneObject();
    void whatIsNotKnownIsNull();
    void schemaTellsRightFromWrong();
};

void tst_JsonOutput::answerIsOneObject()
{
    Answer answer;
    answer.command = "plan";
    answer.folder = "/tool";
    answer.run = RunFacts{"install", true, 2};
    HostAnswer host;
    host.key = "modo";
    host.path = "/modo";
    host.target = "/modo/Scripts/drask";
    host.state = State::Fails;
    host.installed = 6;
    host.wanted = 7;
    host.changes.append({"/modo/a", Action::Replace, false});
    host.problems.append({Kind::FileNotCopied, "/modo/a", "The file cannot be copied."});
    answer.hosts.append(host);
    answer.changes.append({"/tool/version.txt", Action::Make, true});
    const QJsonDocument expected = QJsonDocument::fromJson(
        R"({"format": 1, "command": "plan", "installer": ")" DRASK_INSTALLER_VERSION
        R"(", "folder": "/tool", "result": "problems",
            "run": {"mode": "install", "ended": true, "exitCode": 2},
            "hosts": [{"key": "modo", "path": "/modo", "target": "/modo/Scripts/drask",
              "state": "fails", "installed": 6, "wanted": 7,
              "changes": [{"path": "/modo/a", "action": "replace", "differs": false}],
              "problems": [{"kind": "fileNotCopied", "path": "/modo/a",
                            "text": "The file cannot be copied."}]}],
            "changes": [{"path": "/tool/version.txt", "action": "make", "differs": true}],
            "problems": []})");
    QCOMPARE(QJsonDocument::fromJson(toJson(answer)), expected);
}

void tst_JsonOutput::whatIsNotKnownIsNull()
{
    Answer answer;
    answer.run = RunFacts{"install", false, {}};
    answer.hosts.append(HostAnswer());
    const QJsonObject object = QJsonDocument::fromJson(toJson(answer)).object();
    QVERIFY(object["run"].toObject()["exitCode"].isNull());
    const QJsonObject host = object["hosts"].toArray().first().toObject();
    QVERIFY(host["installed"].isNull() && host["wanted"].isNull());
    QVERIFY(toJson(answer).endsWith("}\n"));
}

void tst_JsonOutput::schemaTellsRightFromWrong()
{
    if (!test::hasSchemaValidator()) {
        QSKIP("python3-jsonschema is not on this machine");
    }
    Answer answer;
    answer.command = "doctor";
    QJsonObject object = QJsonDocument::fromJson(toJson(answer)).object();
    QCOMPARE(test::judgementOf(object), QByteArray("ok"));
    object["result"] = "fine";
    QVERIFY(test::judgementOf(object).contains("result"));
}

DRASK_TEST(tst_JsonOutput)
#include "tst_jsonoutput.moc"
