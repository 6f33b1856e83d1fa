// SPDX-License-Identifier: MIT
#include "disk/wholefile.h"

#include "sandbox.h"
#include "testprogram.h"

#include <QtTest>

namespace {

constexpr QIODevice::OpenMode rewriting = QIODevice::WriteOnly | QIODevice::Text;
constexpr QIODevice::OpenMode adding = rewriting | QIODevice::Append;
constexpr QIODevice::OpenMode addingToReadable = adding | QIODevice::ReadOnly;

} // namespace

Q_DECLARE_METATYPE(QIODevice::OpenMode)

class tst_WholeFile : public QObject {
    Q_OBJECT

private slots:
    void contentIsWritten_data();
    void contentIsWritten();
    void fileThatCannotBeOpenedIsRefusedInQtsWords_data();
    void fileThatCannotBeOpenedIsRefusedInQtsWords();
};

void tst_WholeFile::contentIsWritten_data()
{
    QTest::addColumn<QIODevice::OpenMode>("mode");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");

    const QByteArray large(300000, 'x');
    for (const QByteArray &before : {QByteArray(), QByteArray("old\n"), large}) {
        const int size = before.size();
        QTest::addRow("%d bytes are rewritten", size) << rewriting << before << QByteArray("new");
        QTest::addRow("%d bytes are added to", size) << adding << before << before + "new";
        QTest::addRow("%d readable bytes are added to", size)
            << addingToReadable << before << before + "new";
    }
}

void tst_WholeFile::contentIsWritten()
{
    QFETCH(QIODevice::OpenMode, mode);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const test::Sandbox sandbox;
    if (!before.isNull()) {
        sandbox.write("file", before);
    }
    QString reason = "as it was";

    QVERIFY(writeWhole(sandbox.path("file"), mode, "new", &reason));
    QCOMPARE(test::treeDifference(sandbox.tree(), {{"file", after}}), QString());
    QCOMPARE(reason, QString("as it was"));
}

void tst_WholeFile::fileThatCannotBeOpenedIsRefusedInQtsWords_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QIODevice::OpenMode>("mode");

    for (const QIODevice::OpenMode mode : {rewriting, adding, addingToReadable}) {
        QTest::addRow("a folder, mode %d", int(mode)) << "folder" << mode;
        QTest::addRow("a missing folder, mode %d", int(mode)) << "missing/file" << mode;
        QTest::addRow("below a file, mode %d", int(mode)) << "file/file" << mode;
        QTest::addRow("a name too long, mode %d", int(mode)) << QString(300, 'x') << mode;
        QTest::addRow("a link in a circle, mode %d", int(mode)) << "circle" << mode;
    }
}

void tst_WholeFile::fileThatCannotBeOpenedIsRefusedInQtsWords()
{
    QFETCH(QString, name);
    QFETCH(QIODevice::OpenMode, mode);
    const test::Sandbox sandbox;
    sandbox.makeFolder("folder");
    sandbox.write("file", "old\n");
    sandbox.makeLink(sandbox.path("circle"), "circle");
    const test::Tree before = sandbox.tree();
    QFile plain(sandbox.path(name));
    QVERIFY(!plain.open(mode));
    QString reason;

    QVERIFY(!writeWhole(sandbox.path(name), mode, "new", &reason));
    QVERIFY(!writeWhole(sandbox.path(name), mode, "new"));
    QCOMPARE(reason, plain.errorString());
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

DRASK_TEST(tst_WholeFile)
#include "tst_wholefile.moc"
