// SPDX-License-Identifier: MIT
#include "disk/wholefile.h"

#include "disk/diskwait.h"
#include "disk/otherdisk.h"
#include "disk/standin.h"

#include <QFile>

#include <optional>
#include <utility>

namespace {

enum class Outcome {
    Done,
    Failed,
    Overtaken,  ///< somebody wrote to the file in the meantime
    Impossible, ///< another way must be gone
};

/// How often an addition is tried while somebody else writes to the file.
constexpr int attempts = 3;

bool isAddition(QIODevice::OpenMode mode)
{
    return mode.testFlag(QIODevice::Append);
}

Outcome outcomeOf(bool isWritten)
{
    return isWritten ? Outcome::Done : Outcome::Failed;
}

/// \a mode without what would harm a file before its new content is on the disk.
QIODevice::OpenMode withoutHarm(QIODevice::OpenMode mode)
{
    return mode | QIODevice::Append | QIODevice::ExistingOnly | QIODevice::Unbuffered;
}

/// What the file \a path holds; nothing where it cannot be read.
std::optional<QByteArray> readOld(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    QByteArray bytes = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(std::move(bytes)) : std::nullopt;
}

/// True when \a file has the content \a content already.
bool holds(const QFile &file, const QByteArray &content)
{
    return file.size() == content.size() && readOld(file.fileName()) == content;
}

/// All that the file \a path is to hold; nothing where it is added to and cannot be read.
std::optional<QByteArray> wholeContent(const QString &path, QIODevice::OpenMode mode,
                                       const QByteArray &content)
{
    if (!isAddition(mode)) {
        return content;
    }
    std::optional<QByteArray> whole = readOld(path);
    if (whole) {
        *whole += content;
    }
    return whole;
}

/// A disk that fills up takes a part of a piece, and says why only when asked for the next.
bool writeAll(QFile &file, const QByteArray &content, QString &reason)
{
    for (QByteArray rest = content; !rest.isEmpty();) {
        const qint64 written = file.write(rest);
        if (written <= 0) {
            reason = file.errorString();
            return false;
        }
        rest = rest.mid(static_cast<int>(written));
    }
    return bringToDisk(file, &reason);
}

bool fill(const StandIn &standIn, const QByteArray &content, QString &reason)
{
    QFile file;
    if (!file.open(standIn.handle(), QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        reason = file.errorString();
        return false;
    }
    return writeAll(file, content, reason);
}

/// Writes another file that takes the place of the file \a old, or a free place when \a old is
/// nullptr.
Outcome writeBeside(StandIn &standIn, const QFile *old, QIODevice::OpenMode mode,
                    const QByteArray &content, QString &reason)
{
    if (!standIn.make() || (old != nullptr && !standIn.becomeLike(old->handle()))) {
        return Outcome::Impossible;
    }
    if (!fill(standIn, content, reason)) {
        standIn.giveUp();
        // Where there is no room for the whole text, there may be some for the addition.
        return isAddition(mode) && old != nullptr ? Outcome::Impossible : Outcome::Failed;
    }
    // What somebody else has written must not go with an addition.
    if (isAddition(mode) && !standIn.isPlaceAsSeen()) {
        return Outcome::Overtaken;
    }
    return standIn.takePlace() ? Outcome::Done : Outcome::Impossible;
}

/// Writes as if there were nothing to lose.
bool writeStraight(const QString &path, QIODevice::OpenMode mode, const QByteArray &content,
                   QString &reason)
{
    QFile file(path);
    if (!file.open(mode | QIODevice::Unbuffered)) {
        reason = file.errorString();
        return false;
    }
    return writeAll(file, content, reason);
}

bool extendInPlace(QFile &file, const QByteArray &addition, QString &reason)
{
    const qint64 size = file.size();
    if (writeAll(file, addition, reason)) {
        return true;
    }
    static_cast<void>(file.resize(size));
    return false;
}

/// The room of the old content is not given up before the new one is there, so that the old one can
/// be put back.
bool replaceContent(QFile &file, const QByteArray &content, QString &reason)
{
    if (!file.seek(0) || !writeAll(file, content, reason)) {
        return false;
    }
    if (!file.resize(content.size())) {
        reason = file.errorString();
        return false;
    }
    return true;
}

bool rewriteInPlace(const QString &path, const QByteArray &old, const QByteArray &content,
                    QString &reason)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered)) {
        reason = file.errorString();
        return false;
    }
    if (replaceContent(file, content, reason)) {
        return true;
    }
    QString ignored;
    static_cast<void>(replaceContent(file, old, ignored));
    return false;
}

Outcome writeNew(StandIn &standIn, const QString &path, QIODevice::OpenMode mode,
                 const QByteArray &content, QString &reason)
{
    const Outcome outcome = writeBeside(standIn, nullptr, mode, content, reason);
    if (outcome != Outcome::Impossible) {
        return outcome;
    }
    QFile file(path);
    if (!file.open(mode | QIODevice::Unbuffered)) {
        reason = file.errorString();
        return Outcome::Failed;
    }
    const bool isWritten = writeAll(file, content, reason);
    if (!isWritten) {
        standIn.clearPlace();
    }
    return outcomeOf(isWritten);
}

/// Writes to the open file \a file itself, for want of a way to put another in its place.
bool writeInPlace(QFile &file, QIODevice::OpenMode mode, const QByteArray &content, QString &reason)
{
    if (isAddition(mode)) {
        return extendInPlace(file, content, reason);
    }
    const QString path = file.fileName();
    const std::optional<QByteArray> old = readOld(path);
    return old ? rewriteInPlace(path, *old, content, reason)
               : writeStraight(path, mode, content, reason);
}

Outcome writeOver(StandIn &standIn, const QString &path, QIODevice::OpenMode mode,
                  const QByteArray &content, QString &reason)
{
    // Whoever may not write to a file may not put another one in its place.
    QFile file(path);
    if (!file.open(withoutHarm(mode))) {
        reason = file.errorString();
        return Outcome::Failed;
    }
    if (!isAddition(mode) && holds(file, content) && touch(file.handle())) {
        return Outcome::Done;
    }
    if (const auto whole = wholeContent(path, mode, content)) {
        const Outcome outcome = writeBeside(standIn, &file, mode, *whole, reason);
        if (outcome != Outcome::Impossible) {
            return outcome;
        }
    }
    return outcomeOf(writeInPlace(file, mode, content, reason));
}

Outcome write(const QString &path, QIODevice::OpenMode mode, const QByteArray &content,
              QString &reason)
{
    StandIn standIn(path);
    switch (standIn.place()) {
    case StandIn::Place::Free:
        return writeNew(standIn, path, mode, content, reason);
    case StandIn::Place::Plain:
        return writeOver(standIn, path, mode, content, reason);
    case StandIn::Place::Other:
        break;
    }
    return outcomeOf(writeStraight(path, mode, content, reason));
}

bool writeUntilDone(const QString &path, QIODevice::OpenMode mode, const QByteArray &content,
                    QString &reason)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const Outcome outcome = write(path, mode, content, reason);
        if (outcome != Outcome::Overtaken) {
            return outcome == Outcome::Done;
        }
    }
    return writeStraight(path, mode, content, reason);
}

} // namespace

bool writeWhole(const QString &path, QIODevice::OpenMode mode, const QByteArray &content,
                QString *reason)
{
    if (OtherDisk *const other = OtherDisk::inPlace()) {
        return other->writeWhole(path, mode, content);
    }
    QString words;
    const bool isWritten = writeUntilDone(path, mode, content, words);
    if (!isWritten && reason != nullptr) {
        *reason = words;
    }
    return isWritten;
}
