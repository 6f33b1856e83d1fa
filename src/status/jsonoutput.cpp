// SPDX-License-Identifier: MIT
#include "status/jsonoutput.h"

#include "globals.h"
#include "literals.h"
#include "status/answer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// Counts up when a field goes or changes its meaning; fields that are added leave it.
constexpr int formatNumber = 1;

QJsonValue orNull(std::optional<int> number)
{
    return number ? QJsonValue(*number) : QJsonValue(QJsonValue::Null);
}

QJsonArray toArray(const QList<Change> &changes)
{
    QJsonArray array;
    for (const Change &change : changes) {
        array.append(QJsonObject{{"path"_l1, change.path},
                                 {"action"_l1, actionName(change.action)},
                                 {"differs"_l1, change.differs}});
    }
    return array;
}

QJsonArray toArray(const QList<Problem> &problems)
{
    QJsonArray array;
    for (const Problem &problem : problems) {
        array.append(QJsonObject{{"kind"_l1, kindName(problem.kind)},
                                 {"path"_l1, problem.path},
                                 {"text"_l1, problem.text}});
    }
    return array;
}

QJsonArray toArray(const QList<HostAnswer> &hosts)
{
    QJsonArray array;
    for (const HostAnswer &host : hosts) {
        array.append(QJsonObject{{"key"_l1, host.key},
                                 {"path"_l1, host.path},
                                 {"target"_l1, host.target},
                                 {"state"_l1, stateName(host.state)},
                                 {"installed"_l1, orNull(host.installed)},
                                 {"wanted"_l1, orNull(host.wanted)},
                                 {"changes"_l1, toArray(host.changes)},
                                 {"problems"_l1, toArray(host.problems)}});
    }
    return array;
}

} // namespace

QByteArray toJson(const Answer &answer)
{
    QJsonObject object{{"format"_l1, formatNumber},
                       {"command"_l1, answer.command},
                       {"installer"_l1, installerVersion},
                       {"folder"_l1, answer.folder},
                       {"result"_l1, resultName(answer.result())},
                       {"hosts"_l1, toArray(answer.hosts)},
                       {"changes"_l1, toArray(answer.changes)},
                       {"problems"_l1, toArray(answer.problems)}};
    if (answer.run) {
        object.insert("run"_l1,
                      QJsonObject{{"mode"_l1, answer.run->mode},
                                  {"ended"_l1, answer.run->ended},
                                  {"exitCode"_l1, orNull(answer.run->exitCode)}});
    }
    return QJsonDocument(object).toJson();
}
