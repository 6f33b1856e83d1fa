// SPDX-License-Identifier: MIT
#include "fuzzsandbox.h"
#include "installer/plugininstaller.h"
#include "promisedtext.h"

namespace {

constexpr char config[] = "plugin/manager.cfg";

QStringList configLines(const QString &user, const QString &projects, bool textures)
{
    return {user, projects, "/opt/Drask Müller/DraskDrop", "1.2.3", "", "1", textures ? "1" : "0"};
}

PluginInstaller installerFor(const QString &user, const QString &projects, bool textures)
{
    return {"/opt/Drask Müller", user, projects, false, textures};
}

bool saysSame(const QByteArray &content, const QStringList &lines)
{
    QStringList actual = fuzz::linesOf(content);
    while (actual.size() < lines.size()) {
        actual.append(QString());
    }
    return !content.isNull() && actual.mid(0, lines.size()) == lines;
}

/// True for values that come back from a file as they went into it.
bool isPlain(const QString &user, const QString &projects)
{
    const QString text = user + projects;
    return !text.contains(QLatin1Char('\n')) && !text.contains(QLatin1Char('\r'))
        && !text.startsWith(QChar(QChar::ByteOrderMark));
}

void writeConfig(const fuzz::Sandbox &sandbox, const PluginInstaller &installer,
                 const QStringList &lines, bool windowsLineEnds)
{
    const QByteArray before = sandbox.read(config);
    const bool isSame = saysSame(before, lines);
    fuzz::Tree expected = sandbox.tree();
    if (!isSame) {
        expected.insert(config, lines.join(windowsLineEnds ? "\r\n" : "\n").toUtf8());
    }
    if (!before.isNull()) {
        sandbox.age(config);
    }

    fuzz::promise(installer.writeConfig(sandbox.path(config), "1.2.3", windowsLineEnds) == 0,
                  "a configuration in a writable folder can be written");
    sandbox.promiseTree(expected, "the configuration is rewritten, or says the same already");
    fuzz::promise(!isSame || sandbox.isAged(config), "one that says the same is not written");
}

/// The input is the manager.cfg, the user's name and the projects folder.
void check(const fuzz::Sandbox &sandbox, const fuzz::Input &input)
{
    const QString user = QString::fromUtf8(input.part(1));
    const QString projects = QString::fromUtf8(input.part(2));
    sandbox.makeFolder("plugin");
    sandbox.write(config, input.part(0));
    sandbox.write("plugin/manager.cfg.own", "stays");
    sandbox.write("manager.cfg", "stays");

    const PluginInstaller installer = installerFor(user, projects, true);
    const QStringList lines = configLines(user, projects, true);
    writeConfig(sandbox, installer, lines, true);
    const QByteArray once = sandbox.read(config);
    writeConfig(sandbox, installer, lines, false);
    fuzz::promise(sandbox.read(config) == once || !isPlain(user, projects),
                  "other line ends alone are no reason to write");

    const PluginInstaller frugal = installerFor(user, projects, false);
    writeConfig(sandbox, frugal, configLines(user, projects, false), false);
    fuzz::promise(sandbox.read(config) != once, "the choice about textures is written");
}

} // namespace

DRASK_FUZZ_TARGET(check)
