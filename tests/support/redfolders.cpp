// SPDX-License-Identifier: MIT
#include "redfolders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cerrno>
#include <csignal>

namespace test {

namespace {

constexpr int keptFolders = 10;

/// Hosts are recognised by words anywhere in a path: the random letters must not make one up.
bool holdsHostWord(const QString &path)
{
    static const QRegularExpression words("c4d|3ds|xsi|maya|modo|cinema|layout|blender|lightwav",
                                          QRegularExpression::CaseInsensitiveOption);
    return words.match(QFileInfo(path).fileName()).hasMatch();
}

QDir redFolder()
{
    QDir().mkpath(QDir::tempPath() + "/drask-red");
    return QDir(QDir::tempPath() + "/drask-red");
}

bool hasEnded(qint64 process)
{
    return kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH;
}

} // namespace

QString makeTemporaryFolder(const QString &name)
{
    for (;;) {
        QTemporaryDir folder(QStringLiteral("%1/%2 %3 XXXXXX")
                                 .arg(QDir::tempPath(), name)
                                 .arg(QCoreApplication::applicationPid()));
        if (!folder.isValid() || !holdsHostWord(folder.path())) {
            folder.setAutoRemove(false);
            return folder.isValid() ? folder.path() : QString();
        }
    }
}

QString keepRedFolder(const QString &folder)
{
    const QDir red = redFolder();
    const QString kept = red.filePath(QFileInfo(folder).fileName());
    const bool isMoved = QDir().rename(folder, kept);
    QStringList names = red.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Time);
    while (names.size() > keptFolders) {
        QDir(red.filePath(names.takeLast())).removeRecursively();
    }
    return isMoved ? kept : folder;
}

void keepFoldersOfEndedProcesses()
{
    static const QRegularExpression form("^drask \\S+ (\\d+) \\w{6}$");
    const QDir temporary(QDir::tempPath());
    const QStringList names = temporary.entryList({"drask *"}, QDir::Dirs);
    for (const QString &name : names) {
        const QRegularExpressionMatch match = form.match(name);
        if (match.hasMatch() && hasEnded(match.captured(1).toLongLong())) {
            keepRedFolder(temporary.filePath(name));
        }
    }
}

} // namespace test
