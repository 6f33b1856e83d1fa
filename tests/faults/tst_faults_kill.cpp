// SPDX-License-Identifier: MIT
#include "faultcampaign.h"

#include "testprogram.h"

#include <QtTest>

using test::Scene;

/// Ends installations from outside at every call that they make, one a run.
class tst_Faults_Kill : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        TRACE_OR_SKIP();
        test::preferMemoryDisk();
    }

    void lastCall_data()
    {
        QTest::addColumn<Scene>("scene");
        QTest::addColumn<QByteArray>("call");

        for (const Scene scene : test::scenes) {
            const QByteArrayList calls = campaigns.of(scene).calls();
            for (const QByteArray &call : calls) {
                QTest::addRow("%s: killed at %s", qPrintable(test::sceneName(scene)),
                              call.constData())
                    << scene << call;
            }
        }
    }

    void lastCall()
    {
        QFETCH(Scene, scene);
        QFETCH(QByteArray, call);

        const test::CampaignReport report = campaigns.of(scene).disturbEach({call, "signal=KILL"},
                                                                            {});

        QVERIFY2(report.complaints.isEmpty(), qPrintable(report.complaints.join('\n')));
        QVERIFY(report.faults > 0);
    }

    void campaignInjectedFaults()
    {
        qInfo("faults injected: %d", campaigns.faults());
        QVERIFY(campaigns.faults() > 0);
    }

private:
    test::FaultCampaigns campaigns;
};

DRASK_TEST(tst_Faults_Kill)
#include "tst_faults_kill.moc"
