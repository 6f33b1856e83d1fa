// SPDX-License-Identifier: MIT
#include "fuzzsandbox.h"
#include "installer/plugininstaller.h"
#include "promisedtext.h"

namespace {

constexpr char script[] = "clarisse/startup.py";

bool hasImport(const QByteArray &content)
{
    const QStringList lines = fuzz::linesOf(content);
    return !lines.filter("import drask").isEmpty();
}

/// Runs the edit once and holds it to what it must do.
void edit(const fuzz::Sandbox &sandbox)
{
    const QByteArray before = sandbox.read(script);
    fuzz::Tree expected = sandbox.tree();
    const bool isPresent = hasImport(before);
    if (!isPresent) {
        expected.insert(script, before + "\nimport drask\n");
    }
    if (!before.isNull()) {
        sandbox.age(script);
    }

    fuzz::promise(PluginInstaller::editClarisseStartup(sandbox.path(script)) == 0,
                  "a script in a writable folder can be edited");
    sandbox.promiseTree(expected, "the import is appended to what was there, or is there already");
    fuzz::promise(!isPresent || sandbox.isAged(script), "a script with the import is not written");
}

/// The input is the start-up script.
void check(const fuzz::Sandbox &sandbox, const fuzz::Input &input)
{
    sandbox.makeFolder("clarisse");
    sandbox.write(script, input.part(0));
    sandbox.write("clarisse/startup.py.own", "import drask\n");
    sandbox.write("other.py", "print('stays')\n");

    edit(sandbox);
    const QByteArray once = sandbox.read(script);
    edit(sandbox);
    fuzz::promise(sandbox.read(script) == once || fuzz::hasForeignByteOrderMark(once),
                  "the import is added once");
}

} // namespace

DRASK_FUZZ_TARGET(check)
