// SPDX-License-Identifier: MIT
#include "promisedtext.h"

#if QT_VERSION_MAJOR < 6
#include <QTextCodec>
#else
#include <QStringConverter>
#endif

namespace fuzz {

// Only with a state does a converter keep an unfinished character to itself.
#if QT_VERSION_MAJOR < 6

namespace {

QTextCodec *codecOf(const QByteArray &content)
{
    return QTextCodec::codecForUtfText(content, QTextCodec::codecForName("UTF-8"));
}

} // namespace

QString textOf(const QByteArray &content)
{
    QTextCodec::ConverterState state;
    return codecOf(content)->toUnicode(content.constData(), content.size(), &state);
}

QByteArray encodedLike(const QByteArray &content, const QString &text)
{
    QTextCodec::ConverterState noMark(QTextCodec::IgnoreHeader);
    return codecOf(content)->fromUnicode(text.constData(), text.size(), &noMark);
}

#else

namespace {

QStringConverter::Encoding encodingOf(const QByteArray &content)
{
    return QStringConverter::encodingForData(content).value_or(QStringConverter::Utf8);
}

} // namespace

QString textOf(const QByteArray &content)
{
    return QStringDecoder(encodingOf(content))(content);
}

QByteArray encodedLike(const QByteArray &content, const QString &text)
{
    return QStringEncoder(encodingOf(content))(text);
}

#endif

QByteArray utf8Of(const QString &text)
{
    const bool isUnfinished = !text.isEmpty() && text.back().isHighSurrogate();
    return (isUnfinished ? text.chopped(1) : text).toUtf8();
}

QString textModeTextOf(const QByteArray &content)
{
    return textOf(content).remove(QLatin1Char('\r'));
}

QStringList linesOf(const QByteArray &content)
{
    QStringList lines = textModeTextOf(content).split(QLatin1Char('\n'));
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    return lines;
}

QByteArray written(const QStringList &lines)
{
    QString text;
    for (const QString &line : lines) {
        text += line + QLatin1Char('\n');
    }
    return utf8Of(text);
}

bool hasForeignByteOrderMark(const QByteArray &content)
{
    return codecOf(content)->name() != "UTF-8";
}

QString withoutClimbing(const QString &path)
{
    QStringList names = path.split(QLatin1Char('/'));
    int depth = 0;
    for (QString &name : names) {
        // A reader may take a carriage return at the end of a line off.
        const QString bare = QString(name).remove(QLatin1Char('\r'));
        if (bare == QLatin1String("..") && depth == 0) {
            name = QStringLiteral("_");
        }
        if (bare == QLatin1String("..") && depth > 0) {
            --depth;
        } else if (!bare.isEmpty() && bare != QLatin1String(".")) {
            ++depth;
        }
    }
    return names.join(QLatin1Char('/'));
}

} // namespace fuzz
