// SPDX-License-Identifier: MIT
#include "player.h"

#include <iterator>
#include <utility>

namespace test {

/// The lines that tell how \a after differs from \a before.
QStringList Player::changesBetween(const Tree &before, const Tree &after) const
{
    QStringList lines;
    for (auto entry = before.cbegin(); entry != before.cend(); ++entry) {
        QString name = QString(entry.key()).replace('\\', "\\\\").replace('\n', "\\n");
        name.replace(QRegularExpression("@$"), " ->");
        lines << (after.contains(entry.key()) ? QString() : "- " + name);
    }
    for (auto entry = after.cbegin(); entry != after.cend(); ++entry) {
        const auto next = std::next(entry);
        const bool holdsMore = next != after.cend() && entry.key().endsWith('/')
            && next.key().startsWith(entry.key());
        if (holdsMore
            || withSortedManifests(before).value(entry.key(), "no such file") == entry.value()) {
            continue;
        }
        const QString source = entry->isEmpty() ? QString() : before.key(*entry);
        QString text = QString::fromUtf8(*entry).replace('\\', "\\\\").replace('\r', "\\r");
        text.replace(DRASK_VERSION, "@version@")
            .replace(vocabulary.values["registered"], "@registered@");
        lines << (before.contains(entry.key()) ? "* " : "+ ")
                + QString(entry.key()).replace('\\', "\\\\").replace('\n', "\\n");
        if (entry.key().endsWith('@')) {
            lines.last().replace(QRegularExpression("@$"), " -> " + text);
        } else if (!source.isEmpty()) {
            lines.last() += " = " + source;
        } else if (text.count('\n') < 2 && !text.isEmpty()) {
            lines.last() += " : " + text.replace('\n', "\\n");
        } else {
            const QStringList content = linesOf(text.toUtf8());
            const QString block = vocabulary.folded(content).join('\n');
            lines.last() += block.startsWith('<') ? " : " + block : QString();
            lines += block.startsWith('<')
                ? QStringList()
                : QStringList(content).replaceInStrings(QRegularExpression("^"), "| ");
        }
    }
    lines.removeAll(QString());
    return lines;
}

/// Puts what a run gave into the scenario, all but the lines that are given by hand.
void Player::accept(const Run &run, const QStringList &log, const QStringList &errors,
                    const QStringList &changes)
{
    const auto write = [this](const Section *section, const QString &header, QStringList lines,
                              const Section *above) {
        if (section == nullptr && !lines.isEmpty()) {
            accepted[above->place].lines += QStringList(header) + vocabulary.folded(lines);
        } else if (section != nullptr) {
            const QStringList byHand = section->lines.filter(QRegularExpression("^! "));
            for (const QString &line : byHand.filter(QRegularExpression("^! [^<]"))) {
                const auto place = lines.indexOf(vocabulary.expanded(line.mid(2)));
                lines.insert(qMax(0, int(place)), line);
                lines.removeOne(vocabulary.expanded(line.mid(2)));
            }
            lines = vocabulary.folded(lines);
            for (const QString &line : byHand.filter(QRegularExpression("^! <"))) {
                const auto place = lines.indexOf(line.mid(2));
                lines.insert(qMax(0, int(place)), line);
                lines.removeOne(line.mid(2));
            }
            accepted[section->place].lines = lines;
        }
    };
    const bool isNew = run.last != nullptr;
    if (isNew && log == logOfRunBefore && changes.isEmpty()) {
        return;
    }
    logOfRunBefore = log;
    const Section *last = isNew ? run.last : run.log;
    write(isNew ? nullptr : run.log, "-- again --", log, last);
    write(isNew ? nullptr : run.errors, "-- errors --", errors, last);
    last = isNew || run.errors == nullptr ? last : run.errors;
    write(isNew ? nullptr : run.changes, "-- changes --", changes, last);

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
