// SPDX-License-Identifier: MIT
#include "status/logline.h"

#include "literals.h"
#include "wholenumber.h"

#include <algorithm>

namespace {

constexpr QLatin1String debugPrefix = "Debug: "_l1;

/// The character that an escape with the letter \a letter stands for; 0 for one with a number.
char16_t plainEscape(QChar letter)
{
    switch (letter.unicode()) {
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    case 'u':
    case 'U':
        return 0;
    default:
        return letter.unicode();
    }
}

/// Reads the escape whose letter stands at \a position of \a text, appends what it means to
/// \a result, and returns the position after it.
int readEscape(const QString &text, int position, QString &result)
{
    const QChar letter = text.at(position);
    const char16_t plain = plainEscape(letter);
    if (plain != 0) {
        result += QChar(plain);
        return position + 1;
    }
    const int digits = letter == QLatin1Char('u') ? 4 : 8;
    const QString number = text.mid(position + 1, digits);
    const uint code = number.toUInt(nullptr, 16);
    if (QChar::requiresSurrogates(code)) {
        result += QChar(QChar::highSurrogate(code));
        result += QChar(QChar::lowSurrogate(code));
    } else {
        result += QChar(static_cast<ushort>(code));
    }
    return std::min(position + 1 + digits, static_cast<int>(text.size()));
}

} // namespace

LogLine::LogLine(const QString &line)
    : debug(line.startsWith(debugPrefix))
{
    if (debug) {
        items = line.mid(debugPrefix.size());
    }
}

bool LogLine::isDebug() const
{
    return debug;
}

bool LogLine::takeLabel(const char *label)
{
    const QLatin1String wanted(label);
    const int end = position + static_cast<int>(wanted.size());
    if (QStringView(items).mid(position, wanted.size()) != wanted
        || (end < items.size() && items.at(end) != QLatin1Char(' '))) {
        return false;
    }
    position = std::min(end + 1, static_cast<int>(items.size()));
    return true;
}

bool LogLine::takeText(QString &text)
{
    if (position >= items.size() || items.at(position) != QLatin1Char('"')) {
        return false;
    }
    QString result;
    int next = position + 1;
    while (next < items.size() && items.at(next) != QLatin1Char('"')) {
        if (items.at(next) == QLatin1Char('\\') && next + 1 < items.size()) {
            next = readEscape(items, next + 1, result);
        } else {
            result += items.at(next++);
        }
    }
    if (next >= items.size()) {
        return false;
    }
    position = std::min(next + 2, static_cast<int>(items.size()));
    text = result;
    return true;
}

bool LogLine::takeNumber(int &number)
{
    const auto blank = items.indexOf(QLatin1Char(' '), position);
    const int end = static_cast<int>(blank < 0 ? items.size() : blank);
    const std::optional<qint64> value = wholeNumber(items.mid(position, end - position));
    if (!value || *value != static_cast<int>(*value)) {
        return false;
    }
    position = std::min(end + 1, static_cast<int>(items.size()));
    number = static_cast<int>(*value);
    return true;
}

bool LogLine::isAtEnd() const
{
    return position >= items.size();
}
