// SPDX-License-Identifier: MIT
#include "fuzzsandbox.h"
#include "installer/lightwave.h"
#include "installer/plugininstaller.h"
#include "promisedtext.h"

namespace {

const QString folder = QStringLiteral("Light Wave\\cfg");
const QString menuFile = folder + "/LW.CFG";
const QString extensionFile = folder + "/LWEXT.CFG";

/// The menu with the plug-in's entry; \a menu itself where there is no place for it.
QString promisedMenu(const QString &menu)
{
    const QString lower = menu.toLower();
    if (lower.contains("tasklancer")) {
        return menu;
    }
    const auto options = lower.indexOf("menuentry 1 options");
    const auto group = lower.indexOf("menuentry 131072 1 _");
    if (options >= 1) {
        const auto lineEnd = lower.indexOf("\r\n", options + 1);
        const QString entry = "MenuEntry 2 . Generic_Drask Tasklancer\r\n";
        return lineEnd < 0 ? menu : menu.left(lineEnd + 2) + entry + menu.mid(lineEnd + 2);
    }
    return group <= 0 ? menu
                      : menu.left(group + 19) + defaultLightwaveMenu() + menu.mid(group + 22);
}

/// Enters what writing \a text to the file \a name comes to: a backup, or an addition behind the
/// old content when there is a backup already.
void enterWrite(fuzz::Tree &tree, const QString &name, const QString &text)
{
    const QByteArray content = tree.value(name);
    if (tree.contains(name + "_bak")) {
        tree.insert(name, content + fuzz::encodedLike(content, text));
    } else {
        tree.insert(name + "_bak", content);
    }
}

/// The result, with what is written until then entered into \a tree.
int promisedResult(fuzz::Tree &tree)
{
    const bool hasExtension = tree.contains(extensionFile);
    const QString menuName = hasExtension ? menuFile : extensionFile;
    if (!tree.contains(menuName)) {
        tree.insert(menuName, "");
    }
    const QString menu = fuzz::textOf(tree.value(menuName));
    const QString newMenu = promisedMenu(menu);
    if (newMenu != menu) {
        enterWrite(tree, menuName, newMenu);
    }
    if (!hasExtension) {
        return 3;
    }
    if (!fuzz::textOf(tree.value(extensionFile)).toLower().contains("drask tasklancer")) {
        enterWrite(tree, extensionFile, newMenu);
    }
    return 0;
}

bool mentionsPlugin(const fuzz::Tree &tree, const QString &name, const char *key)
{
    return fuzz::textOf(tree.value(name)).toLower().contains(key);
}

void promiseKept(const fuzz::Sandbox &sandbox, const fuzz::Tree &before)
{
    for (const QString &name : {menuFile, extensionFile}) {
        const QByteArray content = before.value(name);
        fuzz::promise(sandbox.read(name).startsWith(content), "what was there is kept");
        fuzz::promise(before.contains(name + "_bak") || sandbox.read(name + "_bak").isNull()
                          || sandbox.read(name + "_bak") == content,
                      "a backup is the file as it was");
    }
    if (mentionsPlugin(before, menuFile, "tasklancer")
        && mentionsPlugin(before, extensionFile, "drask tasklancer")) {
        sandbox.promiseTree(before, "files that mention the plug-in are not changed");
    }
}

void edit(const fuzz::Sandbox &sandbox)
{
    const fuzz::Tree before = sandbox.tree();
    fuzz::Tree expected = before;
    const int result = promisedResult(expected);

    fuzz::promise(PluginInstaller::editLwvCfgFile(sandbox.path(folder)) == result,
                  "only a missing extension file fails");
    sandbox.promiseTree(expected, "the texts are written or backed up");
    promiseKept(sandbox, before);
}

/// The input is LW.CFG and LWEXT.CFG, and the backups of both.
void check(const fuzz::Sandbox &sandbox, const fuzz::Input &input)
{
    sandbox.makeFolder(folder);
    sandbox.write(menuFile, input.part(0));
    sandbox.write(extensionFile, input.part(1));
    sandbox.write(menuFile + "_bak", input.part(2));
    sandbox.write(extensionFile + "_bak", input.part(3));
    sandbox.write(folder + "/OTHER.CFG", "MenuEntry 1 Options \r\n");
    sandbox.write(folder + "/LW.cfg", "MenuEntry 1 Options \r\n");
    sandbox.write("LW.CFG", " MenuEntry 1 Options \r\n");

    edit(sandbox);
    edit(sandbox);
    edit(sandbox);
}

} // namespace

DRASK_FUZZ_TARGET(check)
