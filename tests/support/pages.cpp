// SPDX-License-Identifier: MIT
#include "pages.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>

namespace test {

namespace {

/// The line without what differs from run to run.
QString shapeOf(QString line)
{
    static const QRegularExpression installed(R"re("[^"]*( plugin installed in: )")re");
    static const QRegularExpression quoted(R"("(\\.|[^"\\])*")");
    static const QRegularExpression bracketed(R"(\(.*\))");
    static const QRegularExpression number("-?[0-9]+$");
    return line.replace(installed, R"(\1)")
        .replace(quoted, "\"\"")
        .replace(bracketed, "()")
        .replace(number, "0");
}

QSet<QString> shapesOnThePage()
{
    static const QRegularExpression code("`((Debug|Warning): [^`]+)`");
    QSet<QString> shapes;
    QRegularExpressionMatchIterator rows = code.globalMatch(page("docs/integration.md"));
    while (rows.hasNext()) {
        shapes << shapeOf(rows.next().captured(1));
    }
    return shapes;
}

/// Read before a case becomes another user.
const QSet<QString> explained = shapesOnThePage();

} // namespace

QString page(const QString &name)
{
    QFile file(DRASK_REPOSITORY "/" + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool isExplained(const QString &line)
{
    return explained.contains(shapeOf(line));
}

} // namespace test
