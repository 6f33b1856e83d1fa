// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QStringList>
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
};
using Sections = QVector<Section>;
using Values = QMap<QString, QString>;

/// Cuts the file \a path into its sections; the remarks at its top are the first of them.
inline Sections readSections(const QString &path)
{
    static const QRegularExpression headerForm("^-- (\\w+)(?:: ?(.*?))? --$");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("%s cannot be read", qPrintable(path));
    }
    Sections sections{{QString(), "remark", QString(), {}}};
    for (const QString &line : QString::fromUtf8(file.readAll()).chopped(1).split('\n')) {
        const QRegularExpressionMatch header = headerForm.match(line);
        if (header.hasMatch()) {
            sections.append({line, header.captured(1), header.captured(2), {}});
        } else {
            sections.last().lines << line;
        }
    }
    return sections;
}

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
            result.append(text.constData() + end, place.capturedStart() - end);
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
            const QString text = inner.section(": ", 1);
            const QString block = inner.section(": ", 0, 0);
            if (line == '<' + inner + '>' && blocks.contains(block)) {
                Vocabulary with = *this;
                with.values["it"] = expanded(text);
                with.values["word"] = text.section(' ', 0, 0);
                with.values["rest"] = expanded(text.section(' ', 1));
                result += with.expanded(blocks.value(block));
            } else if (line == '@' + inner + '@' && values.contains(inner)) {
                result += expanded(repeated(values.value(inner)).split("\\n"));
            } else {
                result << expanded(line).replace("\\x20", " ");
            }
        }
        return result;
    }

    /// The reverse, for lines that a run gave; \a before are those that stood in their place, whose
    /// spelling stays where it can.
    QStringList folded(const QStringList &lines, const QStringList &before) const
    {
        QString text = '\n' + lines.join('\n') + '\n';
        QStringList lost;
        for (const QString &line : before) {
            const QString meant = '\n' + expanded(QStringList(line)).join('\n') + '\n';
            const auto place = text.indexOf(meant);
            if (place >= 0) {
                text.replace(place, meant.size(), '\n' + line + '\n');
            } else if (line.startsWith("! ")) {
                lost << line;
            }
        }
        // The longest block goes first, since it is made of others.
        QMultiMap<int, QString> names;
        for (const QString &name : blocks.keys()) {
            names.insert(-int(expanded(blocks.value(name)).join('\n').size()), name);
        }
        for (const QString &name : std::as_const(names)) {
            const QString meant = '\n' + expanded(blocks.value(name)).join('\n') + '\n';
            while (text.contains(meant)) {
                text.replace(meant, "\n<" + name + ">\n");
            }
        }
        text.replace(values["registered"], "@registered@").replace(values["version"], "@version@");
        text.replace(sandbox, "@").replace(" \n", "\\x20\n");
        return lines.isEmpty() ? lost : lost + text.mid(1).chopped(1).split('\n');
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

} // namespace test
