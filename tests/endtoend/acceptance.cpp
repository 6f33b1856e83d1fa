// SPDX-License-Identifier: MIT
#include "player.h"

#include <iterator>
#include <utility>

namespace test {

namespace {

QString nameOf(const QString &path)
{
    return QString(path).replace('\\', "\\\\").replace('\n', "\\n");
}

} // namespace

/// The lines that tell how \a after differs from \a before.
QStringList Player::changesBetween(const Tree &before, const Tree &after) const
{
    QStringList lines;
    for (const QString &path : before.keys()) {
        if (!after.contains(path)) {
            lines << "- " + nameOf(path).replace(QRegularExpression("@$"), " ->");
        }
    }
    for (auto entry = after.cbegin(); entry != after.cend(); ++entry) {
        const auto next = std::next(entry);
        const bool holdsMore = entry.key().endsWith('/') && next != after.cend()
            && next.key().startsWith(entry.key());
        if (holdsMore || before.value(entry.key(), "no such file") == entry.value()) {
            continue;
        }
        const QString text = QString::fromUtf8(*entry).replace('\\', "\\\\").replace('\r', "\\r");
        const QStringList block = vocabulary.folded(linesOf(text.toUtf8()), {});
        lines << (before.contains(entry.key()) ? "* " : "+ ") + nameOf(entry.key());
        if (entry.key().endsWith('@')) {
            lines.last() = lines.last().chopped(1) + " -> " + text;
        } else if (!entry->isEmpty() && !before.key(*entry).isEmpty()) {
            lines.last() += " = " + before.key(*entry);
        } else if (block.size() == 1) {
            const QString only = block.first();
            lines.last() += " : "
                + (only.startsWith('<')      ? only
                       : text.endsWith('\n') ? only + "\\n"
                                             : only.chopped(1));
        } else {
            lines += QStringList(block).replaceInStrings(QRegularExpression("^"), "| ");
        }
    }
    return lines;
}

/// Puts what a run gave into the scenario where it is not what is told, all but the lines that are
/// given by hand.
void Player::accept(const Run &run, const QMap<QString, QStringList> &given,
                    const QMap<QString, QString> &wrong)
{
    const bool isOther = wrong
        != QMap<QString, QString>{{"run", ""}, {"errors", ""}, {"changes", ""}};
    for (const QString &kind : isOther ? QStringList{"run", "errors", "changes"} : QStringList()) {
        Section &section = accepted[run.places.value(kind, run.last)];
        const bool isTold = run.places.contains(kind);
        const QStringList lines = vocabulary.folded(given[kind],
                                                    isTold ? section.lines : QStringList());
        if (isTold && (!wrong[kind].isEmpty() || section.lines.isEmpty())) {
            section.header.remove(QRegularExpression("(?<=again): \\w+"));
            section.lines = lines;
        } else if (!isTold && !given[kind].isEmpty()) {
            section.lines << (kind == "run" ? "-- again --" : "-- " + kind + " --") << lines;
        }
    }
    QStringList lines;
    for (const Section &section : std::as_const(accepted)) {
        lines += QStringList(section.header) + section.lines;
    }
    QFile text(file);
    if (!text.open(QIODevice::WriteOnly)
        || text.write(lines.join('\n').mid(1).toUtf8() + '\n') < 0) {
        qFatal("%s cannot be written", qPrintable(file));
    }
}

} // namespace test
