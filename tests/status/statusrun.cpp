// SPDX-License-Identifier: MIT
#include "statusrun.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>

#include <utility>

namespace test {

namespace {

constexpr int timeoutMs = 120000;

/// A validator that is asked about one output after the other.
class SchemaValidator {
public:
    SchemaValidator()
    {
        validator.start("python3", {DRASK_SCHEMA_VALIDATOR, DRASK_STATUS_SCHEMA});
        if (!validator.waitForStarted()) {
            qFatal("The validator of the schema cannot be started");
        }
    }

    ~SchemaValidator()
    {
        validator.closeWriteChannel();
        validator.waitForFinished();
    }

    SchemaValidator(const SchemaValidator &) = delete;
    SchemaValidator &operator=(const SchemaValidator &) = delete;

    /// What \a json does not keep; "ok" for nothing.
    QByteArray judge(const QByteArray &json)
    {
        validator.write(json + '\n');
        while (!validator.canReadLine() && validator.waitForReadyRead(timeoutMs)) { }
        return validator.readLine().trimmed();
    }

private:
    QProcess validator;
};

QJsonObject validObject(const QByteArray &output)
{
    const QJsonObject object = QJsonDocument::fromJson(output).object();
    if (hasSchemaValidator()) {
        const QByteArray judgement = judgementOf(object);
        if (judgement != "ok") {
            qFatal("The output does not keep the schema: %s\n%s", judgement.constData(),
                   output.constData());
        }
    }
    return object;
}

} // namespace

bool hasSchemaValidator()
{
    static const bool isThere = QProcess::execute("python3", {"-c", "import jsonschema"}) == 0;
    return isThere;
}

QByteArray judgementOf(const QJsonObject &object)
{
    static SchemaValidator validator;
    return validator.judge(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QJsonObject StatusRun::host(int index) const
{
    return json["hosts"].toArray().at(index).toObject();
}

QStringList StatusRun::kinds() const
{
    QStringList names;
    const QJsonArray problems = json["problems"].toArray();
    for (const QJsonValue &problem : problems) {
        names << problem["kind"].toString();
    }
    const QJsonArray hosts = json["hosts"].toArray();
    for (const QJsonValue &host : hosts) {
        const QJsonArray hostProblems = host["problems"].toArray();
        for (const QJsonValue &problem : hostProblems) {
            names << host["key"].toString() + ": " + problem["kind"].toString();
        }
    }
    names.sort();
    return names;
}

QStringList StatusRun::pathsOf(const QString &kind) const
{
    QStringList paths;
    QJsonArray lists{json["problems"]};
    const QJsonArray hosts = json["hosts"].toArray();
    for (const QJsonValue &host : hosts) {
        lists.append(host["problems"]);
    }
    for (const QJsonValue &list : std::as_const(lists)) {
        const QJsonArray problems = list.toArray();
        for (const QJsonValue &problem : problems) {
            if (problem["kind"].toString() == kind) {
                paths << problem["path"].toString();
            }
        }
    }
    return paths;
}

StatusRun runStatus(const Workstation &workstation, const QStringList &words,
                    const RunOptions &options)
{
    ProgramProcess process(options);
    QProcessEnvironment environment = options.environment;
    environment.insert("LC_ALL", "C.UTF-8");
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory("/");
    QStringList all = options.through;
    all << DRASK_STATUS_PROGRAM << words << "--folder" << workstation.tool();
    process.start(all.takeFirst(), all);
    if (!process.waitForFinished(timeoutMs) || process.exitStatus() != QProcess::NormalExit) {
        qFatal("drask-status did not end by itself");
    }
    StatusRun run;
    run.exitCode = process.exitCode();
    run.output = process.readAllStandardOutput();
    run.errors = process.readAllStandardError();
    if (words.contains("--json") && !run.output.isEmpty()) {
        run.json = validObject(run.output);
    }
    return run;
}

} // namespace test
