// SPDX-License-Identifier: MIT
#include "sandbox.h"
#include "status/foretolddisk.h"
#include "testprogram.h"

#include <QtTest>

class tst_ForetoldRegistry : public QObject {
    Q_OBJECT

private slots:
    void changeIsForetold_data();
    void changeIsForetold();
};

void tst_ForetoldRegistry::changeIsForetold_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("change");
    const auto row = [](const char *name, const QByteArray &before, const QString &change) {
        QTest::newRow(name) << before << change;
    };
    row("none there", QByteArray(), "make");
    row("the same values", "[Drask]\nPath=/a\n", "replace same");
    row("another value", "[Drask]\nPath=/b\n", "replace");
    row("a value lacking", "[Other]\nPath=/a\n", "replace");
    row("more values", "[Drask]\nName=x\nPath=/a\n", "replace same");
    row("written by hand", "; mine\n[Drask]\nPath=/a\n", "replace");
}

void tst_ForetoldRegistry::changeIsForetold()
{
    QFETCH(QByteArray, before);
    const test::Sandbox sandbox;
    if (!before.isNull()) {
        sandbox.write("registry", before);
    }
    ForetoldDisk disk(sandbox.path(), QByteArray());
    disk.storeNative(sandbox.path("registry"), {{"Drask/Path", "/a"}});
    const QList<Change> changes = disk.changes();
    QCOMPARE(changes.size(), 1);
    QTEST(QString(actionName(changes.first().action)) + (changes.first().differs ? "" : " same"),
          "change");
    QCOMPARE(sandbox.read("registry"), before);
}

DRASK_TEST(tst_ForetoldRegistry)
#include "tst_foretoldregistry.moc"
