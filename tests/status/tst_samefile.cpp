// SPDX-License-Identifier: MIT
#include "disk/samefile.h"

#include "sandbox.h"
#include "testprogram.h"

#include <QFile>
#include <QtTest>

#include <sys/stat.h>

class tst_SameFile : public QObject {
    Q_OBJECT

private slots:
    void copyIsJudged_data();
    void copyIsJudged();
    void whatIsNoPlainFileIsNoCopy();
};

void tst_SameFile::copyIsJudged_data()
{
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<QByteArray>("copy");
    QTest::addColumn<bool>("isSound");
    const QByteArray large(200000, 'x');
    QTest::newRow("both empty") << QByteArray("") << QByteArray("") << true;
    QTest::newRow("one byte") << QByteArray("a") << QByteArray("a") << true;
    QTest::newRow("another byte") << QByteArray("a") << QByteArray("b") << false;
    QTest::newRow("emptied") << QByteArray("a") << QByteArray("") << false;
    QTest::newRow("several blocks") << large << large << true;
    QTest::newRow("the last byte of several blocks") << large << large.chopped(1) + 'y' << false;
}

void tst_SameFile::copyIsJudged()
{
    QFETCH(QByteArray, original);
    QFETCH(QByteArray, copy);
    const test::Sandbox sandbox;
    sandbox.write("original", original);
    sandbox.write("copy", copy);
    QTEST(isSoundCopy(QFile::encodeName(sandbox.path("copy")),
                      QFile::encodeName(sandbox.path("original"))),
          "isSound");
}

void tst_SameFile::whatIsNoPlainFileIsNoCopy()
{
    const test::Sandbox sandbox;
    sandbox.write("original", "");
    sandbox.write("secret", "");
    sandbox.makeFolder("folder");
    const auto nameOf = [&](const char *name) { return QFile::encodeName(sandbox.path(name)); };
    QCOMPARE(mkfifo(nameOf("pipe").constData(), 0600), 0);
    QCOMPARE(chmod(nameOf("secret").constData(), 0), 0);
    for (const char *name : {"folder", "pipe", "secret", "missing"}) {
        QVERIFY2(!isSoundCopy(nameOf(name), nameOf("original")), name);
    }
    QVERIFY(!isSoundCopy(nameOf("original"), nameOf("missing")));
}

DRASK_TEST(tst_SameFile)
#include "tst_samefile.moc"
