// SPDX-License-Identifier: MIT
#include "disk/appendtofile.h"
#include "unitcase.h"

/// How a line comes into the log.
class tst_AppendToFile : public QObject {
    Q_OBJECT
private slots:
    void fileIsMadeThenExtended()
    {
        const test::Sandbox sandbox;
        QVERIFY(appendToFile(sandbox.path("log"), "one\n"));
        QVERIFY(appendToFile(sandbox.path("log"), QByteArray(70000, 'x')));
        QCOMPARE(sandbox.read("log"), "one\n" + QByteArray(70000, 'x'));
    }

    void linkIsFollowed()
    {
        const test::Sandbox sandbox;
        sandbox.write("other", "one\n");
        sandbox.makeLink("other", "log");
        QVERIFY(appendToFile(sandbox.path("log"), "two\n"));
        QCOMPARE(sandbox.read("other"), QByteArray("one\ntwo\n"));
    }

    void fileThatCannotBeOpenedIsSaidSo()
    {
        const test::Sandbox sandbox;
        sandbox.makeFolder("folder");
        QVERIFY(!appendToFile(sandbox.path("folder"), "a"));
        QVERIFY(!appendToFile(sandbox.path("nowhere/log"), "a"));
    }

    void fullDiskIsSaidSo()
    {
        if (!QFile::exists("/dev/full")) {
            QSKIP("There is no device that is always full.");
        }
        QVERIFY(!appendToFile("/dev/full", "a"));
    }
};

DRASK_TEST(tst_AppendToFile)
#include "tst_appendtofile.moc"
