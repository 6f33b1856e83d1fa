// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QStringList>
#include <QStringView>
#include <QVector>

#include <utility>

/// \file
/// The text of a scenario; README.md describes it.

namespace test {

/// A header such as "-- file: own.txt --" and the lines below it.
struct Section {
    QString header;
    QString kind; ///< "file"
    QString text; ///< "own.txt"
    QStringList lines;
    int place; ///< in the file
};
using Sections = QVector<Section>;

/// Cuts the file \a path into its sections; the remarks at its top are the first of them.
inline Sections readSections(const QString &path)
{
    static const QRegularExpression headerForm("^-- (\\w+)(?:: ?(.*?))? --$");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("%s cannot be read", qPrintable(path));
    }
    Sections sections{{QString(), "remark", QString(), {}, 0}};
    const QStringList lines = QString::fromUtf8(file.readAll()).chopped(1).split('\n');
    for (const QString &line : lines) {
        const QRegularExpressionMatch header = headerForm.match(line);
        if (header.hasMatch()) {
            sections.append({line,
                             header.captured(1),
                             header.captured(2),
                             {},
                             static_cast<int>(sections.size())});
        } else {
            sections.last().lines << line;
        }
    }
    return sections;
}

using Values = QMap<QString, QString>;

/// The rows of a scenario's table, as values of its columns; one without any where there is none.
inline QVector<Values> rowsOf(const Sections &sections)
{
    QVector<Values> rows;
    for (const Section &section : sections) {
        const QStringList columns = section.text.split('|');
        for (const QString &line : section.kind == "rows" ? section.lines : QStringList()) {
            rows << Values();
            for (int at = 0; at < columns.size(); ++at) {
                rows.last()[columns.at(at).trimmed()] = line.section('|', at, at).trimmed();
            }
        }
    }
    return rows.isEmpty() ? QVector<Values>(1) : rows;
}

/// Puts "TEXT" four times where \a text says "@(TEXT*4)@".
inline QString repeated(QString text)
{
    static const QRegularExpression form(R"(@\((.*?)\*(\d+)\)@)");
    QRegularExpressionMatch place;
    while ((place = form.match(text)).hasMatch()) {
        text.replace(place.capturedStart(), place.capturedLength(),
                     place.captured(1).repeated(place.captured(2).toInt()));
    }
    return text;
}

/// What texts may name: values ("@name@"), blocks of lines ("<name>") and the sandbox ("@").
struct Vocabulary {
    Values values;
    QMap<QString, QStringList> blocks;
    QString sandbox;

    QString expanded(const QString &text) const
    {
        static const QRegularExpression form(R"(\\@|@\((.*?)\*(\d+)\)@|@(\w+)@|@)");
        QString result;
        auto end = text.size() * 0;
        for (auto places = form.globalMatch(text); places.hasNext();) {
            const QRegularExpressionMatch place = places.next();
            const QString name = place.captured(3);
            result += QStringView(text).mid(end, place.capturedStart() - end).toString();
            end = place.capturedEnd();
            if (!place.captured(2).isEmpty()) {
                result += expanded(place.captured(1)).repeated(place.captured(2).toInt());
            } else if (!name.isEmpty()) {
                result += values.contains(name) ? expanded(values.value(name)) : place.captured();
            } else {
                result += place.captured() == "@" ? sandbox : "@";
            }
        }
        return result + text.mid(end);
    }

    /// Takes marks off, puts blocks in, and cuts a value that is a line of its own into its lines.
    QStringList expanded(const QStringList &lines) const
    {
        QStringList result;
        for (const QString &marked : lines) {
            const QString line = marked.startsWith("! ") ? marked.mid(2) : marked;
            const QString inner = line.mid(1, line.size() - 2);
            const QString block = inner.section(": ", 0, 0);
            if (line == '<' + inner + '>' && blocks.contains(block)) {
                Vocabulary with = *this;
                with.values["it"] = expanded(inner.section(": ", 1));
                result += with.expanded(blocks.value(block));
            } else if (line == '@' + inner + '@' && values.contains(inner)) {
                result += expanded(repeated(values.value(inner)).split("\\n"));
            } else {
                result << expanded(line).replace("\\x20", " ");
            }
        }
        return result;
    }

    /// The reverse, for lines that a run gave.
    QStringList folded(const QStringList &lines) const
    {
        QString text = '\n' + lines.join('\n').replace(sandbox, "@") + '\n';
        // The longest go first, since they are made of others.
        QMultiMap<int, QString> names;
        for (auto block = blocks.cbegin(); block != blocks.cend(); ++block) {
            names.insert(-int(expanded(block.value()).join('\n').size()), block.key());
        }
        Vocabulary with = *this;
        with.values["it"] = "\x01";
        for (const QString &name : std::as_const(names)) {
            QString meant = with.expanded(blocks.value(name)).join('\n').replace(sandbox, "@");
            meant = QRegularExpression::escape(meant.replace(values["version"], "@version@"));
            const bool hasPlace = meant.contains("\\\x01");
            const auto place = meant.indexOf("\\\x01");
            meant.replace(qMax(0, int(place)), hasPlace ? 2 : 0, hasPlace ? "(.+)" : "");
            text.replace(QRegularExpression('\n' + meant.replace("\\\x01", "\\1") + "(?=\n)"),
                         "\n<" + name + (hasPlace ? ": \\1>" : ">"));
        }
        text.replace(" \n", "\\x20\n");
        return lines.isEmpty() ? lines : text.mid(1).chopped(1).split('\n');
    }
};

/// The bytes that \a text stands for: \n, \r, \t, \\, \" and \x20 are what they are in C.
inline QByteArray unescaped(const QString &text)
{
    const QByteArray written = text.toUtf8();
    QByteArray result;
    for (int at = 0; at < written.size(); ++at) {
        const QByteArray letter = written.at(at) == '\\' ? written.mid(at + 1, 1) : " ";
        const auto escape = QByteArray("nrt\\\"").indexOf(letter);
        if (letter == "x") {
            result += QByteArray::fromHex(written.mid(at + 2, 2));
        } else {
            result += escape < 0 ? written.at(at) : "\n\r\t\\\""[escape];
        }
        at += letter == "x" ? 3 : escape < 0 ? 0 : 1;
    }
    return result;
}

/// The bytes of a file of these lines; a backslash at the end of a line takes its line end away.
inline QByteArray contentOf(const QStringList &lines)
{
    QString text = lines.join('\n') + (lines.isEmpty() ? "" : "\n");
    return unescaped(text.replace(QRegularExpression("(?<!\\\\)\\\\\n"), QString()));
}

/// The lines of a text; where the last one has no end, it gets a backslash.
inline QStringList linesOf(const QByteArray &content)
{
    // By its size: as a whole, Qt 5 reads to the first zero byte.
    const QString text = QString::fromUtf8(content.constData(), content.size());
    return text.isEmpty() ? QStringList()
                          : (text.endsWith('\n') ? text.chopped(1) : text + '\\').split('\n');
}

/// The lines in which two texts differ; those that are expected with a "~ " may stand
/// anywhere, more than once.
inline QString differenceOf(QStringList expected, QStringList actual)
{
    const QStringList loose = expected.filter(QRegularExpression("^~ "));
    QString lines;
    for (const QString &line : loose) {
        expected.removeOne(line);
        lines += actual.removeAll(line.mid(2)) > 0 ? QString() : "- " + line + '\n';
    }
    const bool isOther = expected != actual;
    for (const QString &line : QStringList(expected)) {
        lines += actual.removeOne(line) ? QString() : "- " + line + '\n';
    }
    for (const QString &line : std::as_const(actual)) {
        lines += "+ " + line + '\n';
    }
    return lines.isEmpty() && isOther ? "the same lines in another order" : lines;
}

} // namespace test
