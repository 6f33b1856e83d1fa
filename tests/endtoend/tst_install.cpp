// SPDX-License-Identifier: MIT
#include "workstation.h"

#include <QtTest>

class tst_Install : public QObject {
    Q_OBJECT

private slots:
    void emptyHostListWritesOnlyTheVersionFile();
};

void tst_Install::emptyHostListWritesOnlyTheVersionFile()
{
    const test::Workstation workstation;
    workstation.writeSettings();
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";

    const test::RunResult result = workstation.run();

    VERIFY_RUN(result, 0);
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
    QCOMPARE(workstation.log(),
             QStringList({"Debug: settings loaded", "Debug: !!!settings local:  QVariant(Invalid)",
                          "Debug: version:  24", "Debug: 0"}));
    QCOMPARE(workstation.errors(), QByteArray());
}

QTEST_GUILESS_MAIN(tst_Install)
#include "tst_install.moc"
