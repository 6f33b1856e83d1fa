// SPDX-License-Identifier: MIT
#include "faultstation.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace test {

namespace {

/// A lock stays when a run is ended, and when it cannot be removed; the next run removes it.
bool isLock(const QString &name)
{
    return name.startsWith("tool/") && name.endsWith(".lock");
}

/// A killed run leaves the file that was to take another one's place; the next run removes it.
bool isUnfinished(const QString &name)
{
    return name.endsWith("/.drask-unfinished");
}

} // namespace

QString harmNames(Harms harms)
{
    const QPair<Harm, QString> names[] = {
        {Harm::BackupMissing, "the copy of the user's script is missing"},
        {Harm::AddedAgain, "the addition was made again"},
        {Harm::OnlyPathUpdated, "only the path was updated"},
        {Harm::AddedTwice, "the addition was made twice"},
    };
    QStringList found;
    for (const auto &name : names) {
        if (harms.testFlag(name.first)) {
            found << name.second;
        }
    }
    return found.join("; ");
}

bool FaultStation::mayBeTouched(const QString &name) const
{
    const bool isNote = std::any_of(targets.cbegin(), targets.cend(), [&](const QString &target) {
        return name == target + "/uninstall.ini" || name == target + "/manager.cfg";
    });
    return isNote || shipped.contains(name) || name == script || name == environmentFile
        || name == legacyFile;
}

QStringList FaultStation::complaintsAboutTheUsersFiles(const Tree &now) const
{
    QStringList complaints;
    for (auto entry = first.cbegin(); entry != first.cend(); ++entry) {
        if (mayBeTouched(entry.key())) {
            continue;
        }
        if (!now.contains(entry.key())) {
            complaints << "lost: " + entry.key();
        } else if (now[entry.key()] != entry.value()) {
            complaints << "changed: " + entry.key();
        }
    }
    return complaints;
}

QStringList FaultStation::complaintsAboutThePlugin(const Tree &now, Fault fault) const
{
    QStringList complaints;
    for (auto entry = now.cbegin(); entry != now.cend(); ++entry) {
        const QString &name = entry.key();
        if (!first.contains(name) && !installed.contains(name) && !shipped.contains(name)
            && !isLock(name) && !(fault == Fault::Kill && isUnfinished(name))) {
            complaints << "left behind: " + name;
        }
        // A file that could not be put in place a second time comes back empty.
        if (shipped.contains(name) && entry.value() != shipped[name]
            && entry.value() != first.value(name) && !entry.value().isEmpty()) {
            complaints << "half a file: " + name;
        }
    }
    if (now.contains(backup) && now[backup] != first.value(backup, first[script])) {
        complaints << "not the user's script as it was: " + backup;
    }
    return complaints;
}

bool FaultStation::namesNoOtherFile(const QByteArray &piece, const QByteArray &known) const
{
    const QString path = QDir::cleanPath(QDir(tool()).absoluteFilePath(QString::fromUtf8(piece)));
    return !QFileInfo(path).isFile() || known.contains('\n' + path.toUtf8() + '\n');
}

QStringList FaultStation::complaintsAboutManifests(const Tree &now, Fault fault) const
{
    // What a manifest names will be deleted one day. Two runs that write the same manifest leave
    // pieces of lines in it.
    const bool mayHavePieces = fault == Fault::OtherRun;
    QStringList complaints;
    for (const QString &target : targets) {
        const QString name = target + "/uninstall.ini";
        const QByteArray known = '\n' + first.value(name) + installed[name];
        QByteArrayList lines = now.value(name).split('\n');
        const QByteArray unfinished = lines.takeLast();
        const auto isHarmless = [&](const QByteArray &line, const char *end) {
            return known.contains('\n' + line + end)
                || (mayHavePieces && namesNoOtherFile(line, known));
        };
        const bool areHarmless = std::all_of(
            lines.cbegin(), lines.cend(),
            [&](const QByteArray &line) { return isHarmless(line, "\n"); });
        if (!areHarmless || !isHarmless(unfinished, "")) {
            complaints << "names what is not the plug-in's: " + name + '\n'
                    + QString::fromUtf8(now.value(name));
        }
    }
    return complaints;
}

void FaultStation::judge(const QString &name, const StartUpFile &file, const Tree &now, Fault fault,
                         Findings &findings) const
{
    const QByteArray before = first[name];
    const QByteArray done = installed[name];
    const QByteArray is = now.value(name);
    const QByteArray added = before + file.addition();
    if (!now.contains(name)) {
        findings.complaints << "lost: " + name;
    } else if (is == before || is == done || (fault == Fault::OtherRun && is == settled[name])) {
        return;
    } else if (is == added) {
        findings.harms |= Harm::AddedAgain;
    } else if (is == file.withNewLine(before)) {
        findings.harms |= Harm::OnlyPathUpdated;
    } else if (fault == Fault::OtherRun && is == added + file.addition()) {
        findings.harms |= Harm::AddedTwice;
    } else {
        findings.complaints << "changed: " + name + "\n" + QString::fromUtf8(is);
    }
}

QStringList FaultStation::complaintsAboutTheRun(const RunResult &result, Fault fault) const
{
    QStringList complaints;
    if (!result.ended) {
        complaints << "the run did not end by itself";
    }
    if (!result.console.isEmpty()) {
        complaints << "on the console: " + QString::fromUtf8(result.console);
    }
    if (fault == Fault::Kill) {
        return complaints;
    }
    const bool isKnownCode = result.exitCode == 0 || result.exitCode == 2 || result.exitCode == 3;
    if (result.crashed || !isKnownCode) {
        complaints << QStringLiteral("it ended with %1").arg(result.exitCode);
    }
    // A single error that shows in the exit code cannot also have kept the message from the user.
    if (fault == Fault::Error && (result.exitCode != 0) != !errors().isEmpty()) {
        complaints << QStringLiteral("exit code %1 with the message \"%2\"")
                          .arg(result.exitCode)
                          .arg(QString::fromUtf8(errors()));
    }
    return complaints;
}

bool FaultStation::isSilentLoss(const RunResult &result, const Tree &now) const
{
    const QStringList names = shipped.keys();
    return result.exitCode == 0 && log() == usualLog
        && std::any_of(names.cbegin(), names.cend(), [&](const QString &name) {
               // An old file that stays is no loss.
               return installed.contains(name) && now.value(name) != installed.value(name);
           });
}

bool FaultStation::isInstalled() const
{
    return look() == installed;
}

Findings FaultStation::findings(const RunResult &result, Fault fault) const
{
    const Tree now = look();
    Findings findings;
    judge(script, mayaFile, now, fault, findings);
    if (first.contains(environmentFile)) {
        judge(environmentFile, houdiniFile, now, fault, findings);
    }
    if (now.value(script) != first[script] && !now.contains(backup)) {
        findings.harms |= Harm::BackupMissing;
    }
    findings.complaints << complaintsAboutTheRun(result, fault) << complaintsAboutTheUsersFiles(now)
                        << complaintsAboutThePlugin(now, fault)
                        << complaintsAboutManifests(now, fault);
    if (fault == Fault::Error && isSilentLoss(result, now)) {
        findings.complaints << "a part of the plug-in is missing, without a word";
    }
    return findings;
}

} // namespace test
