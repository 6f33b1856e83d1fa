// SPDX-License-Identifier: MIT
#include "status/settingscheck.h"

#include "hostcatalogue.h"
#include "literals.h"
#include "wholenumber.h"

#include <QRegularExpression>
#include <QSet>

#include <utility>

namespace {

constexpr QLatin1String arrayName = "pluginpaths"_l1;

/// The keys that somebody reads, but for those of the array.
QSet<QString> knownKeys()
{
    QSet<QString> keys{QStringLiteral("UserData/username"), QStringLiteral("UserData/loggedOut"),
                       QStringLiteral("PathOptions/localProjectsFolder"),
                       QStringLiteral("Settings/copyTexFiles")};
    const QStringList versions = versionKeys();
    for (const QString &version : versions) {
        keys.insert(version);
    }
    return keys;
}

/// Looks at a settings file line by line.
class SettingsCheck {
public:
    explicit SettingsCheck(QString path)
        : file(std::move(path))
    {
    }

    QList<Problem> run(const QByteArray &content);

private:
    void checkSection(const QString &name);
    void checkEntry(const QString &line);
    void checkKey(const QString &key);
    void checkArrayKey(const QString &key, const QString &value);
    void checkValue(const QString &key, const QString &value);
    void checkSize();
    void add(Kind kind, const QString &text);

    const QString file;
    const QSet<QString> known = knownKeys();
    QSet<QString> sections;
    QString section;
    QSet<int> entries;
    QString size;
    QList<Problem> problems;
};

void SettingsCheck::add(Kind kind, const QString &text)
{
    problems.append({kind, file, text});
}

void SettingsCheck::checkSection(const QString &name)
{
    section = name;
    if (name != arrayName && !sections.contains(name)) {
        add(Kind::UnknownSection, QStringLiteral("Nobody here reads the section [%1].").arg(name));
    }
}

void SettingsCheck::checkKey(const QString &key)
{
    const QString full = section + QLatin1Char('/') + key;
    if (sections.contains(section) && !known.contains(full)) {
        add(Kind::UnknownKey, QStringLiteral("Nobody here reads the key %1.").arg(full));
    }
}

void SettingsCheck::checkArrayKey(const QString &key, const QString &value)
{
    static const QRegularExpression entry(
        QStringLiteral("^([1-9][0-9]{0,8})\\\\(application|path)$"));
    const QRegularExpressionMatch match = entry.match(key);
    if (key == "size"_l1) {
        size = value;
    } else if (match.hasMatch()) {
        entries.insert(match.captured(1).toInt());
    } else {
        add(Kind::UnknownKey,
            QStringLiteral("Nobody here reads the key %1/%2.").arg(arrayName, key));
    }
}

void SettingsCheck::checkValue(const QString &key, const QString &value)
{
    const QString name = section + QLatin1Char('/') + key;
    if (section != arrayName && !known.contains(name)) {
        return;
    }
    // Text within quotes may hold what it likes.
    static const QRegularExpression quotedParts(QStringLiteral("\"(?:[^\"\\\\]|\\\\.)*\""));
    QString bare = value;
    bare.remove(quotedParts);
    if (bare.contains(QLatin1Char(','))) {
        add(Kind::UnquotedList,
            QStringLiteral("%1 has a comma outside of quotes and reads as a "
                           "list, which is no text.")
                .arg(name));
    }
    if (bare.contains(QLatin1Char(';'))) {
        add(Kind::UnquotedList,
            QStringLiteral("%1 has a semicolon outside of quotes; what follows "
                           "it is not read.")
                .arg(name));
    }
    const QString text = value.startsWith(QLatin1Char('"')) ? value.mid(1) : value;
    if (text.startsWith(QLatin1Char('@')) && !text.startsWith("@@"_l1)) {
        add(Kind::AtValue,
            QStringLiteral("%1 begins with @, which is read as a value of a type, not "
                           "as a text.")
                .arg(name));
    }
}

void SettingsCheck::checkEntry(const QString &line)
{
    const auto sign = line.indexOf(QLatin1Char('='));
    const QString key = line.left(sign).trimmed();
    if (sign < 0 || key.isEmpty()) {
        add(Kind::UnknownKey, QStringLiteral("The line \"%1\" is no key with a value.").arg(line));
        return;
    }
    const QString value = line.mid(sign + 1).trimmed();
    if (section == arrayName) {
        checkArrayKey(key, value);
    } else {
        checkKey(key);
    }
    checkValue(key, value);
}

void SettingsCheck::checkSize()
{
    if (size.isEmpty()) {
        if (!entries.isEmpty()) {
            add(Kind::SizeMissing,
                QStringLiteral("%1/size is missing; no host is read.").arg(arrayName));
        }
        return;
    }
    const std::optional<qint64> number = wholeNumber(size);
    bool isComplete = number == entries.size();
    for (const int entry : std::as_const(entries)) {
        isComplete = isComplete && entry <= number;
    }
    if (!isComplete) {
        add(Kind::SizeWrong,
            QStringLiteral("%1/size is %2, but %3 hosts are listed.")
                .arg(arrayName, size)
                .arg(entries.size()));
    }
}

QList<Problem> SettingsCheck::run(const QByteArray &content)
{
    for (const QString &key : known) {
        sections.insert(key.left(key.indexOf(QLatin1Char('/'))));
    }
    const QString text = QString::fromUtf8(content);
    if (text.contains(QChar(QChar::ReplacementCharacter))) {
        add(Kind::NotUtf8, QStringLiteral("The file is not UTF-8 throughout."));
    }
    const QStringList lines = text.split(QRegularExpression(QStringLiteral("[\\r\\n]")));
    for (const QString &untrimmed : lines) {
        const QString line = untrimmed.trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char(';'))
            || line.startsWith(QLatin1Char('#'))) {
            continue;
        }
        if (line.startsWith(QLatin1Char('[')) && line.endsWith(QLatin1Char(']'))) {
            checkSection(line.mid(1, line.size() - 2).trimmed());
        } else {
            checkEntry(line);
        }
    }
    checkSize();
    return problems;
}

} // namespace

QList<Problem> checkSettings(const QByteArray &content, const QString &file)
{
    return SettingsCheck(file).run(content);
}
