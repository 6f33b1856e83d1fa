// SPDX-License-Identifier: MIT
#include "faultcampaign.h"

#include "testprogram.h"

#include <QtTest>

using test::Harm;
using test::Harms;
using test::Scene;

namespace {

/// What an error may do to the start-up files; see test::Harm. Nothing of the user's is lost.
Harms allowedHarms(Scene scene)
{
    switch (scene) {
    case Scene::FirstInstallation:
        return Harm::BackupMissing;
    case Scene::OldPath:
        return Harm::AddedAgain;
    case Scene::OldBlock:
        return Harm::AddedAgain | Harm::OnlyPathUpdated;
    }
    return {};
}

} // namespace

/// Lets every call that an installation makes fail, one a run.
class tst_Faults_Errors : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        TRACE_OR_SKIP();
        test::preferMemoryDisk();
        for (const Scene scene : test::scenes) {
            qInfo("%s, left alone: %s", qPrintable(test::sceneName(scene)),
                  campaigns.of(scene).callsLeftAlone().join(' ').constData());
        }
    }

    void failingCall_data()
    {
        QTest::addColumn<Scene>("scene");
        QTest::addColumn<QByteArray>("call");
        QTest::addColumn<QByteArray>("error");

        for (const Scene scene : test::scenes) {
            const QByteArrayList calls = campaigns.of(scene).calls();
            for (const QByteArray &call : calls) {
                for (const char *error : {"EACCES", "ENOSPC", "EIO", "EMFILE", "EDQUOT", "EROFS"}) {
                    QTest::addRow("%s: %s fails with %s", qPrintable(test::sceneName(scene)),
                                  call.constData(), error)
                        << scene << call << QByteArray(error);
                }
            }
        }
    }

    void failingCall()
    {
        QFETCH(Scene, scene);
        QFETCH(QByteArray, call);
        QFETCH(QByteArray, error);

        const test::CampaignReport report = campaigns.of(scene).disturbEach(
            {call, "error=" + error}, allowedHarms(scene));

        QVERIFY2(report.complaints.isEmpty(), qPrintable(report.complaints.join('\n')));
        QVERIFY(report.faults > 0);
    }

    void readingFailsFromThenOn_data()
    {
        test::addScenes();
    }

    void readingFailsFromThenOn()
    {
        QFETCH(Scene, scene);

        const test::CampaignReport report = campaigns.of(scene).disturbEach(
            {"read", "error=EIO", true}, allowedHarms(scene));

        QVERIFY2(report.complaints.isEmpty(), qPrintable(report.complaints.join('\n')));
        QVERIFY(report.faults > 0);
    }

    void everyAllowedHarmIsDone()
    {
        for (const Scene scene : test::scenes) {
            QCOMPARE(test::harmNames(campaigns.of(scene).total().harms),
                     test::harmNames(allowedHarms(scene)));
        }
    }

    void campaignInjectedFaults()
    {
        qInfo("faults injected: %d", campaigns.faults());
        QVERIFY(campaigns.faults() > 0);
    }

private:
    test::FaultCampaigns campaigns;
};

DRASK_TEST(tst_Faults_Errors)
#include "tst_faults_errors.moc"
