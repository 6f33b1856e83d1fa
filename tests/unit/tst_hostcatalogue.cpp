// SPDX-License-Identifier: MIT
#include "hostcatalogue.h"
#include "logcapture.h"
#include "relocated.h"

#include <QtTest>

class tst_HostCatalogue : public QObject {
    Q_OBJECT

private slots:
    void placeholder();
};

void tst_HostCatalogue::placeholder()
{
    const test::LogCapture log;
    const QList<PluginPathStruct> records = getPluginInfoList("maya", "/a");
    QCOMPARE(records.size(), 1);
}

DRASK_RELOCATED_TEST_MAIN(tst_HostCatalogue)
#include "tst_hostcatalogue.moc"
