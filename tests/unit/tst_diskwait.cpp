// SPDX-License-Identifier: MIT
#include "disk/diskwait.h"
#include "sandbox.h"
#include "testprogram.h"

#include <QtTest>

#include <unistd.h>

/// Whether it is told what did not reach the disk.
class tst_DiskWait : public QObject {
    Q_OBJECT

private slots:
    void contentThatDoesNotFitIsReported()
    {
        QFile full("/dev/full");
        if (!full.open(QIODevice::WriteOnly)) {
            QSKIP("There is no /dev/full here.");
        }
        full.write("text");

        QString reason;
        QVERIFY(!bringToDisk(full, &reason));
        QCOMPARE(reason, QString("No space left on device"));
    }

    void contentThatFitsIsWritten()
    {
        const test::Sandbox sandbox;
        QFile file(sandbox.path("a"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("text");

        QVERIFY(bringToDisk(file));

        QCOMPARE(sandbox.read("a"), QByteArray("text"));
    }

    void contentThatIsNotTakenIsReported()
    {
        const test::Sandbox sandbox;
        QFile file(sandbox.path("a"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        close(file.handle());

        QString reason;
        QVERIFY(!bringToDisk(file, &reason));
        QCOMPARE(reason, QString("Bad file descriptor"));
    }
};

DRASK_TEST(tst_DiskWait)
#include "tst_diskwait.moc"
