// SPDX-License-Identifier: MIT
#include "wholenumber.h"

namespace {

constexpr QChar minusSign(0x2212);

} // namespace

std::optional<qint64> wholeNumber(const QString &text)
{
    // Qt 6 would take what is before a zero byte for all of it.
    if (text.contains(QChar(QChar::Null))) {
        return std::nullopt;
    }
    QString digits = text.trimmed();
    if (digits.startsWith(minusSign)) {
        digits.replace(0, 1, QLatin1Char('-'));
    }
    bool isNumber = false;
    const qint64 number = digits.toLongLong(&isNumber);
    return isNumber ? std::optional<qint64>(number) : std::nullopt;
}

int numberOfSetting(const QVariant &value)
{
    if (value.userType() != QMetaType::QString) {
        return value.toInt();
    }
    return static_cast<int>(wholeNumber(value.toString()).value_or(0));
}
