// SPDX-License-Identifier: MIT
#include "fuzzsandbox.h"
#include "installer/plugininstaller.h"
#include "promisedtext.h"

namespace {

const QString source = QStringLiteral("source");
/// Everything that some layer between the path and the file might want to interpret.
const QString target = QStringLiteral("Plug %1 ins\\dräsk __grexjs__");

struct Script {
    QString name;
    QString placeHolder;
    QString replacement;
};

QList<Script> scriptsFor(const QString &folder)
{
    return {
        {"/grex.js", "__plugindir__", folder + '/'},
        {"/drask_main.js", "__draskscript__", "ExecuteScript(\"" + folder + "/drask.js\")"},
        {"/drask.js", "__grexjs__", folder + "/grex.js"},
    };
}

/// The result, with what is written until then entered into \a expected.
int promisedResult(const fuzz::Sandbox &sandbox, const QString &folder, fuzz::Tree &expected)
{
    const QList<Script> scripts = scriptsFor(folder);
    for (const Script &script : scripts) {
        const QByteArray content = sandbox.read(source + script.name);
        if (content.isNull()) {
            return 1;
        }
        QStringList lines = fuzz::linesOf(content);
        if (!lines.isEmpty()) {
            lines.replaceInStrings(script.placeHolder, script.replacement);
            expected.insert(target + script.name, fuzz::written(lines));
        }
    }
    return 0;
}

void install(const fuzz::Sandbox &sandbox)
{
    const QString folder = sandbox.path(target);
    fuzz::Tree expected = sandbox.tree();
    const int result = promisedResult(sandbox, folder, expected);

    fuzz::promise(PluginInstaller::copyXSIPlugin(sandbox.path(source), folder) == result,
                  "only a missing script fails");
    sandbox.promiseTree(expected, "each script is written with its place-holder replaced");
}

/// The input is the scripts grex.js, drask_main.js and drask.js.
void check(const fuzz::Sandbox &sandbox, const fuzz::Input &input)
{
    sandbox.makeFolder(source);
    sandbox.write(source + "/grex.js", input.part(0));
    sandbox.write(source + "/drask_main.js", input.part(1));
    sandbox.write(source + "/drask.js", input.part(2));
    sandbox.write(target + "/drask.js", "// of an earlier version, and longer than the new one\n");
    sandbox.write(target + "/own.js", "__grexjs__\n");
    sandbox.write("grex.js", "__plugindir__\n");

    install(sandbox);
    const fuzz::Tree once = sandbox.tree();
    install(sandbox);
    sandbox.promiseTree(once, "a second installation gives the same scripts");
}

} // namespace

DRASK_FUZZ_TARGET(check)
