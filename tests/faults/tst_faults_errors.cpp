// SPDX-License-Identifier: MIT
#include "faultcampaign.h"

#include "testprogram.h"

#include <QtTest>

using test::Harm;
using test::Harms;
using test::Scene;

Q_DECLARE_METATYPE(test::Scene)

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
    void initTestCase();
    void failingCall_data();
    void failingCall();
    void readingFailsFromThenOn_data();
    void readingFailsFromThenOn();
    void everyAllowedHarmIsDone();
    void campaignInjectedFaults();

private:
    test::FaultCampaigns campaigns;
};

void tst_Faults_Errors::initTestCase()
{
    const QString obstacle = test::Tracer::obstacle();
    if (!obstacle.isEmpty()) {
        QSKIP(qPrintable(obstacle));
    }
    test::preferMemoryDisk();
    for (const Scene scene : test::scenes) {
        qInfo("%s, left alone: %s", qPrintable(test::sceneName(scene)),
              campaigns.of(scene).callsLeftAlone().join(' ').constData());
    }
}

void tst_Faults_Errors::failingCall_data()
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

void tst_Faults_Errors::failingCall()
{
    QFETCH(Scene, scene);
    QFETCH(QByteArray, call);
    QFETCH(QByteArray, error);

    const test::CampaignReport report = campaigns.of(scene).disturbEach({call, "error=" + error},
                                                                        allowedHarms(scene));

    QVERIFY2(report.complaints.isEmpty(), qPrintable(report.complaints.join('\n')));
    QVERIFY(report.faults > 0);
}

void tst_Faults_Errors::readingFailsFromThenOn_data()
{
    QTest::addColumn<Scene>("scene");

    for (const Scene scene : test::scenes) {
        QTest::addRow("%s", qPrintable(test::sceneName(scene))) << scene;
    }
}

void tst_Faults_Errors::readingFailsFromThenOn()
{
    QFETCH(Scene, scene);

    const test::CampaignReport report = campaigns.of(scene).disturbEach({"read", "error=EIO", true},
                                                                        allowedHarms(scene));

    QVERIFY2(report.complaints.isEmpty(), qPrintable(report.complaints.join('\n')));
    QVERIFY(report.faults > 0);
}

void tst_Faults_Errors::everyAllowedHarmIsDone()
{
    for (const Scene scene : test::scenes) {
        QCOMPARE(test::harmNames(campaigns.of(scene).total().harms),
                 test::harmNames(allowedHarms(scene)));
    }
}

void tst_Faults_Errors::campaignInjectedFaults()
{
    qInfo("faults injected: %d", campaigns.faults());
    QVERIFY(campaigns.faults() > 0);
}

DRASK_TEST(tst_Faults_Errors)
#include "tst_faults_errors.moc"
