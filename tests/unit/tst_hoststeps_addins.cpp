// SPDX-License-Identifier: MIT
#include "hoststeps.h"

#include "hostsetup.h"
#include "localecodec.h"
#include "loggedsandbox.h"
#include "unitcase.h"

#include <QSettings>

namespace {

const char machineStore[] = "HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\5.0x64\\Plug-ins";
const char userStore[] = "HKEY_CURRENT_USER\\Software\\McNeel\\Rhinoceros\\5.0x64\\Plug-ins";

QByteArray registration(const QString &target)
{
    const QByteArray file = test::inStoreOfSettings(target + "/Drask.rhp").toUtf8();
    return "[5f0c2a71-9e3d-4b68-a2c4-7d81e6b39f20]\nFileName=" + file + "\nName=Drask\n";
}

} // namespace

using test::installedLine;
using test::revitAt;
using test::rhinoAt;

/// The steps of the hosts whose plug-ins are add-ins: Rhino and Revit.
class tst_HostStepsAddIns : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
#ifndef Q_OS_LINUX
        QSKIP("Native settings stores are files in the working directory on Linux alone");
#endif
    }

    void rhinoIsRegisteredTwice()
    {
        const test::LoggedSandbox sandbox;
        const test::WorkingFolder workingFolder(sandbox.path());
        const PluginPathStruct host = rhinoAt(sandbox.path("rhino"));
        sandbox.makeFolder("rhino/Plug-ins/Drask");
        test::Tree expected = sandbox.tree();
        expected[machineStore] = registration(host.targetFolder());
        expected[userStore] = registration(host.targetFolder());

        QCOMPARE(runHostSteps(host), 0);
        QCOMPARE(sandbox.log.lines(), QStringList(installedLine(host)));
        VERIFY_TREE(sandbox, expected);
        QCOMPARE(runHostSteps(host), 0);
        VERIFY_TREE(sandbox, expected);
        const QSettings readBack(userStore, QSettings::NativeFormat);
        QCOMPARE(readBack.value("5f0c2a71-9e3d-4b68-a2c4-7d81e6b39f20/FileName").toString(),
                 host.targetFolder() + "/Drask.rhp");
    }

    void rhinoRegistrationKeepsOtherValues()
    {
        const test::LoggedSandbox sandbox;
        const test::WorkingFolder workingFolder(sandbox.path());
        const PluginPathStruct host = rhinoAt(sandbox.path("rhino"));
        sandbox.write(
            userStore,
            "[5f0c2a71-9e3d-4b68-a2c4-7d81e6b39f20]\nFileName=/old\n\n[zz]\nName=Other\n");

        QCOMPARE(runHostSteps(host), 0);
        QCOMPARE(sandbox.read(userStore),
                 registration(host.targetFolder()) + "\n[zz]\nName=Other\n");
        QCOMPARE(sandbox.read(machineStore), registration(host.targetFolder()));
    }

    void unwritableRegistrationIsPassedOver_data()
    {
        const test::Table<QString, QString> table("obstacle", "other");
        table.row("the store of the machine", QString(machineStore), QString(userStore));
        table.row("the store of the user", QString(userStore), QString(machineStore));
    }

    void unwritableRegistrationIsPassedOver()
    {
        QFETCH(QString, obstacle);
        QFETCH(QString, other);
        const test::LoggedSandbox sandbox;
        const test::WorkingFolder workingFolder(sandbox.path());
        const PluginPathStruct host = rhinoAt(sandbox.path("rhino"));
        sandbox.makeFolder(obstacle);
        test::Tree expected = sandbox.tree();
        expected[other] = registration(host.targetFolder());

        QCOMPARE(runHostSteps(host), 0);
        QCOMPARE(sandbox.log.lines(), QStringList(installedLine(host)));
        VERIFY_TREE(sandbox, expected);
    }

    void shippedExtraFilesAreNotTaken_data()
    {
        const test::Table<bool> table("isRhino");
        table.row("Rhino", true);
        table.row("Revit", false);
    }

    void shippedExtraFilesAreNotTaken()
    {
        QFETCH(bool, isRhino);
        const test::LoggedSandbox sandbox;
        const test::WorkingFolder workingFolder(sandbox.path());
        PluginPathStruct host = isRhino ? rhinoAt(sandbox.path("host"))
                                        : revitAt(sandbox.path("host"));
        host.sourceFolder = sandbox.path("shipped");
        for (const QString &place : {QString(), QString("shipped/"), QString("host/")}) {
            for (const char *name :
                 {"Drask.rhp", "Drask_tb.rui", "DraskRevitUpload.addin", "DraskRevitUpload.dll"}) {
                sandbox.write(place + name, "shipped");
            }
        }
        sandbox.makeFolder("host" + host.pluginSubFolder + "..");
        sandbox.makeFolder("host" + host.pluginSubFolder);
        test::Tree expected = sandbox.tree();
        if (isRhino) {
            expected[machineStore] = registration(host.targetFolder());
            expected[userStore] = registration(host.targetFolder());
        }

        QCOMPARE(runHostSteps(host), 0);
        QCOMPARE(sandbox.log.lines(), QStringList(installedLine(host)));
        VERIFY_TREE(sandbox, expected);
    }
};

DRASK_TEST(tst_HostStepsAddIns)
#include "tst_hoststeps_addins.moc"
