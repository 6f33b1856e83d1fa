// SPDX-License-Identifier: MIT
#pragma once

#include "sandbox.h"

#include <QRegularExpression>
#include <QVector>

#include <algorithm>

/// \file
/// The text of a scenario; README.md describes it.

namespace test {

/// A header such as "-- file: own.txt --" and what is below it, with all line ends.
struct Section {
    QString header;
    QString kind; ///< "file"
    QString text; ///< "own.txt"
    QString body;
};

/// Cuts the file \a path into its sections; what is above the first header has no kind.
inline QVector<Section> readSections(const QString &path)
{
    static const QRegularExpression form("^-- (\\w+)(?:: ?(.*?))? --\n",
                                         QRegularExpression::MultilineOption);
    const QString text = QString::fromUtf8(Folder().read(path));
    QVector<Section> sections(1);
    auto end = text.size() * 0;
    for (auto places = form.globalMatch(text); places.hasNext();) {
        const QRegularExpressionMatch place = places.next();
        sections.last().body = text.mid(end, place.capturedStart() - end);
        sections.append({place.captured(), place.captured(1), place.captured(2), QString()});
        end = place.capturedEnd();
    }
    sections.last().body = text.mid(end);
    return sections;
}

/// By name. "@" is the sandbox; "again" is the word of a second run.
using Values = QMap<QString, QString>;

/// Puts values into \a text.
inline QString expanded(const QString &text, const Values &values)
{
    static const QRegularExpression form(
        R"(\\@|⏎|@\((.*?)\*(\d+)\)@|@(\w+)@|<([^<>:\n]+)(?:: (.*?))?>|(@))");
    QString result;
    auto end = text.size() * 0;
    for (auto places = form.globalMatch(text); places.hasNext();) {
        const QRegularExpressionMatch place = places.next();
        const QString name = place.captured(3) + place.captured(4) + place.captured(6);
        result.append(text.constData() + end, place.capturedStart() - end);
        end = place.capturedEnd();
        if (place.capturedLength(2) > 0) {
            result += expanded(place.captured(1), values).repeated(place.captured(2).toInt());
        } else if (name.isEmpty()) {
            result += place.captured() == "⏎" ? '\n' : '@';
        } else if (!values.contains(name)) {
            result += place.captured();
        } else {
            const QString it = place.captured(5);
            Values with = values;
            with["it"] = expanded(it, values);
            with["word"] = expanded(it.section(' ', 0, 0), values);
            with["rest"] = expanded(it.section(' ', 1), values);
            result += expanded(values.value(name + ", " + values["again"], values[name]), with);
        }
    }
    return result + text.mid(end);
}

/// The bytes that \a text stands for: \n, \r, \t, \\, \" and \x20 are what they are in C. A
/// backslash at the end of a line takes its line end away.
inline QByteArray unescaped(const QString &text)
{
    const QByteArray written = text.toUtf8();
    QByteArray result;
    for (int at = 0; at < written.size(); ++at) {
        const QByteArray letter = written.at(at) == '\\' ? written.mid(at + 1, 1) : " ";
        const auto escape = QByteArray("nrt\\\"\nx").indexOf(letter);
        result += escape < 0 ? written.mid(at, 1)
            : escape < 6     ? QByteArray("\n\r\t\\\"").mid(escape, 1)
                             : QByteArray::fromHex(written.mid(at + 2, 2));
        at += escape < 0 ? 0 : escape < 6 ? 1 : 3;
    }
    return result;
}

/// The reverse, but for line ends and tabs. What is no text is written as \x20.
inline QString escaped(const QByteArray &bytes)
{
    const bool isText = QString::fromUtf8(bytes.constData(), bytes.size()).toUtf8() == bytes;
    QByteArray result;
    for (const char byte : bytes) {
        const bool isPlain = byte >= ' ' || byte == '\n' || byte == '\t' || (byte < 0 && isText);
        const QByteArray letter(1, byte);
        result += byte == '\\' ? "\\\\" : isPlain ? letter : "\\x" + letter.toHex();
    }
    return QString::fromUtf8(result);
}

/// A manifest has the order in which the file system lists a folder: here, its lines are sorted.
inline QByteArray inOrder(const QString &path, const QByteArray &content)
{
    QList<QByteArray> lines = path.endsWith("uninstall.ini") ? content.split('\n')
                                                             : QList<QByteArray>{content};
    std::sort(lines.begin(), lines.end() - 1);
    return lines.join('\n');
}

/// What a log of \a before got, as text. An end without a line end gets a backslash.
inline QString added(const QByteArray &before, const QByteArray &after)
{
    const bool isKept = after.startsWith(before);
    const QByteArray more = isKept ? after.mid(before.size()) : "(other logs)\n" + after;
    // By its size: as a whole, Qt 5 reads to the first zero byte.
    const QString text = QString::fromUtf8(more.constData(), more.size());
    return text.isEmpty() || text.endsWith('\n') ? text : text + "\\\n";
}

/// How two texts differ; lines that are told with a "~ " may stand anywhere, more than once.
inline QString difference(const QString &told, const QString &given)
{
    QString result;
    QStringList wanted = told.split('\n');
    QStringList others = given.split('\n');
    for (const QString &line : wanted.filter(QRegularExpression("^~ "))) {
        wanted.removeOne(line);
        result += others.removeAll(line.mid(2)) > 0 ? "" : "- " + line + '\n';
    }
    if (wanted != others) {
        for (const QString &line : std::as_const(wanted)) {
            result += (others.removeOne(line) ? "  " : "- ") + line.left(1000) + '\n';
        }
        result += QStringList(others).replaceInStrings(QRegularExpression("^"), "+ ").join('\n');
    }
    return result;
}

} // namespace test
