// SPDX-License-Identifier: MIT
#include "driver.h"
#include "fuzzsandbox.h"
#include "promisedtext.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

namespace {

/// The plug-in that is uninstalled, and its twin, which the model uninstalls. Names of one length
/// keep one path as long as the other's.
const QString confine = QStringLiteral("host");
const QString twin = QStringLiteral("twin");

/// A manifest's line, to be confined to a folder.
struct Line {
    QString path;
    bool isAbsolute = false;
    QString end;
};

QList<Line> linesOf(const QByteArray &content)
{
    QList<Line> lines;
    const QStringList texts = fuzz::textOf(content).split(QLatin1Char('\n'));
    for (int index = 0; index < texts.size(); ++index) {
        QString text = texts.at(index);
        Line line;
        line.end = index + 1 < texts.size() ? QStringLiteral("\n") : QString();
        if (text.endsWith(QLatin1Char('\r'))) {
            text.chop(1);
            line.end.prepend(QLatin1Char('\r'));
        }
        line.path = fuzz::withoutClimbing(text);
        // An absolute first line cannot begin with a byte-order mark, which would change the rest.
        line.isAbsolute = index == 0 || text.startsWith(QLatin1Char('/'));
        lines.append(line);
    }
    return lines;
}

QByteArray manifestOf(const QList<Line> &lines, const QString &root)
{
    QString text;
    for (const Line &line : lines) {
        text += (line.isAbsolute ? root + QLatin1Char('/') : QString()) + line.path + line.end;
    }
    return text.toUtf8();
}

void plant(const fuzz::Sandbox &sandbox, const QString &root, const QByteArray &manifest)
{
    const QString plugin = root + "/plugin";
    sandbox.write(plugin + "/uninstall.ini", manifest);
    for (const char *name : {"/manager.cfg", "/drask.py", "/version.txt", "/sub/icon ä.png",
                             "/sub/deep/x.py", "/drask_uninstall.py"}) {
        sandbox.write(plugin + name, name);
    }
    sandbox.write(root + "/prefs/shelves/shelf_DraskGrex.mel", "shelf");
    sandbox.write(root + "/userSetup.py", "# the user's own\n");
    sandbox.makeLink("drask.py", plugin + "/link.py");
    sandbox.makeLink("sub", plugin + "/linked");
    sandbox.makeLink("nothing", plugin + "/dangling");
}

/// Uninstalls the twin with the system's own calls, and returns the promised result.
int uninstallTwin(const QList<Line> &lines)
{
    int result = 0;
    for (const Line &line : lines) {
        const QString path = line.isAbsolute ? QDir::currentPath() + '/' + line.path : line.path;
        if (path.isEmpty() || path.contains(QChar::Null)) {
            continue;
        }
        // Such a name means what is built into the program, which nobody can delete.
        const bool isBuiltIn = path.startsWith(QLatin1Char(':'));
        const QByteArray name = path.toUtf8();
        struct stat status = {};
        const bool exists = isBuiltIn ? QFile::exists(path) : stat(name.constData(), &status) == 0;
        if (exists && (isBuiltIn || unlink(name.constData()) != 0)) {
            result = 2;
        }
    }
    static_cast<void>(unlink("plugin/uninstall.ini"));
    static_cast<void>(unlink("plugin/manager.cfg"));
    return result;
}

/// Everything as it is, but with what is left of the twin in the place of the plug-in.
fuzz::Tree promisedTree(const fuzz::Sandbox &sandbox)
{
    fuzz::Tree tree = sandbox.tree();
    const fuzz::Tree planted = sandbox.tree(confine);
    for (auto entry = planted.cbegin(); entry != planted.cend(); ++entry) {
        tree.remove(confine + '/' + entry.key());
    }
    const fuzz::Tree left = sandbox.tree(twin);
    for (auto entry = left.cbegin(); entry != left.cend(); ++entry) {
        tree.insert(confine + '/' + entry.key(), entry.value());
    }
    return tree;
}

/// The input is the manifest.
void check(const fuzz::Sandbox &sandbox, const fuzz::Input &input)
{
    const QList<Line> lines = linesOf(input.whole());
    const QString root = sandbox.path(confine);
    plant(sandbox, confine, manifestOf(lines, root));
    plant(sandbox, twin, "");
    sandbox.write("plugin/drask.py", "stays");
    sandbox.write("plugin/manager.cfg", "stays");

    QDir::setCurrent(sandbox.path(twin));
    const int promised = uninstallTwin(lines);
    const fuzz::Tree expected = promisedTree(sandbox);

    QDir::setCurrent(root);
    const int result = uninstallPluginFunction(root + "/plugin");
    fuzz::promise(result == promised, "only a listed folder, which cannot be deleted, fails");
    sandbox.promiseTree(expected, "what is listed is deleted, and nothing else");
    fuzz::promise(uninstallPluginFunction(root + "/plugin") == 0, "nothing is left to fail");
    sandbox.promiseTree(expected, "a second uninstallation deletes nothing more");
}

} // namespace

DRASK_FUZZ_TARGET(check)
