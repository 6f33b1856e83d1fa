// SPDX-License-Identifier: MIT
#include "installpass.h"

#include "passcase.h"
#include "unitcase.h"

using test::hostIn;
using test::installedLine;
using test::linesBefore;
using test::linesOfNewConfig;
using test::plainConfig;
using test::runPass;

namespace {

QByteArray copyMessage(const PluginPathStruct &host)
{
    return "Could not copy file to: \n" + host.targetFolder().toUtf8() + "\n";
}

/// No slash before the file's name.
QByteArray configMessage(const PluginPathStruct &host)
{
    return "Could not write config file in: \n" + host.targetFolder().toUtf8() + "manager.cfg\n";
}

QByteArray mayaMessage(const PluginPathStruct &host)
{
    return "Could not copy userSetup.py file to: " + host.targetFolder().toUtf8() + "\n";
}

/// A host whose shipped plug-in is missing.
PluginPathStruct withoutSource(const test::Sandbox &sandbox, const QString &key)
{
    return hostIn(sandbox, key, "/plugins/drask");
}

/// A host in which a folder stands in the place of manager.cfg.
PluginPathStruct withoutConfig(const test::Sandbox &sandbox, const QString &key)
{
    sandbox.makeFolder("shipped " + key);
    sandbox.makeFolder(key + "/plugins/drask/manager.cfg");
    return hostIn(sandbox, key, "/plugins/drask");
}

PluginPathStruct inOrder(const test::Sandbox &sandbox, const QString &key)
{
    sandbox.makeFolder("shipped " + key);
    return hostIn(sandbox, key, "/plugins/drask");
}

} // namespace

/// What the install pass tells the user and the manager of steps that failed.
class tst_InstallPassFailures : public QObject {
    Q_OBJECT
private slots:
    void failedCopyIsReported()
    {
        const test::PassCase pass;
        const PluginPathStruct host = withoutSource(pass, "houdini");

        QCOMPARE(runPass({host}), 2);

        // The steps behind the copy run all the same.
        QCOMPARE(pass.log.lines(),
                 linesBefore() + linesOfNewConfig()
                     + QStringList({installedLine(host), "Debug: 2"}));
        VERIFY_TREE(pass.program,
                    {{"version.txt", DRASK_VERSION}, {"pluginError.txt", copyMessage(host)}});
        QCOMPARE(pass.read("houdini/plugins/drask/manager.cfg"), plainConfig(pass.program));
        QVERIFY(pass.exists("houdini/houdini.env"));
    }

    void failedConfigurationIsReported()
    {
        const test::PassCase pass;
        const PluginPathStruct host = withoutConfig(pass, "c4d");
        pass.write("c4d/plugins/Grex.cdl", "legacy");

        QCOMPARE(runPass({host}), 3);
        QCOMPARE(pass.log.lines(),
                 linesBefore() + QStringList("Debug: open file:  \"\"") + linesOfNewConfig()
                     + QStringList({installedLine(host), "Debug: 3"}));
        QCOMPARE(pass.program.read("pluginError.txt"), configMessage(host));
        QVERIFY(!pass.exists("c4d/plugins/Grex.cdl"));
    }

    void unmakeableTargetFailsTwice()
    {
        const test::PassCase pass;
        const PluginPathStruct host = inOrder(pass, "modo");
        const PluginPathStruct next = inOrder(pass, "xsi");
        pass.write("modo/plugins", "a file in a folder's place");
        QCOMPARE(runPass({host, next}), 3);
        QCOMPARE(pass.program.read("pluginError.txt"), copyMessage(host) + configMessage(host));
        QCOMPARE(pass.read("modo/plugins"), QByteArray("a file in a folder's place"));
        QCOMPARE(pass.read("xsi/plugins/drask/manager.cfg"), plainConfig(pass.program));
    }

    void unknownHostIsReported()
    {
        const test::PassCase pass;
        pass.write("here/sub/a.py", "somebody's");
        // A source without a name is not the working directory.
        const test::WorkingFolder workingFolder(pass.path("here"));
        const PluginPathStruct host = test::hostAt(pass.path("nuke"), "nuke", "");
        test::Tree expected = pass.tree();
        expected["nuke/"] = "";
        expected["nuke/manager.cfg"] = plainConfig(pass.program);

        QCOMPARE(runPass({host}), 2);
        QCOMPARE(pass.log.lines(),
                 linesBefore() + linesOfNewConfig()
                     + QStringList({installedLine(host), "Debug: 2"}));
        QCOMPARE(pass.program.read("pluginError.txt"), copyMessage(host));
        VERIFY_TREE(pass, expected);
    }

    void lastFailureDecides_data()
    {
        const test::Table<QStringList, int> table("failures", "exitCode");
        table.row("a copy, then a configuration", QStringList({"copy", "config"}), 3);
        table.row("a configuration, then a copy", QStringList({"config", "copy"}), 2);
        table.row("a copy, then nothing", QStringList({"copy", "none"}), 2);
        table.row("a configuration, then nothing", QStringList({"config", "none"}), 3);
        table.row("nothing, then a copy", QStringList({"none", "copy"}), 2);
        table.row("a Maya script, then a copy", QStringList({"maya", "copy"}), 2);
        table.row("a copy, then a Maya script", QStringList({"copy", "maya"}), 3);
        table.row("three in a row", QStringList({"copy", "config", "copy"}), 2);
        table.row("nothing at all", QStringList({"none", "none"}), 0);
    }

    void lastFailureDecides()
    {
        QFETCH(QStringList, failures);
        QFETCH(int, exitCode);
        const test::PassCase pass;
        QList<PluginPathStruct> hosts;
        QByteArray messages;
        for (const QString &failure : failures) {
            const QString key = QStringLiteral("host%1").arg(hosts.size());
            if (failure == "copy") {
                hosts << withoutSource(pass, key);
                messages += copyMessage(hosts.last());
            } else if (failure == "config") {
                hosts << withoutConfig(pass, key);
                messages += configMessage(hosts.last());
            } else if (failure == "maya") {
                hosts << inOrder(pass, "maya");
                messages += mayaMessage(hosts.last());
            } else {
                hosts << inOrder(pass, key);
            }
        }

        QCOMPARE(runPass(hosts), exitCode);
        QCOMPARE(pass.program.read("pluginError.txt"), messages);
        QCOMPARE(pass.log.lines().last(), QStringLiteral("Debug: %1").arg(exitCode));
    }

    void carriedExitCodeIsKeptOrOverwritten_data()
    {
        const test::Table<bool, int, int> table("fails", "carried", "exitCode");
        table.row("kept when all is well", false, 5, 5);
        table.row("overwritten by a failure", true, 5, 2);
        table.row("overwritten although it is larger", true, 3, 2);
    }

    void carriedExitCodeIsKeptOrOverwritten()
    {
        QFETCH(bool, fails);
        QFETCH(int, carried);
        QFETCH(int, exitCode);
        const test::PassCase pass;
        const PluginPathStruct host = fails ? withoutSource(pass, "modo") : inOrder(pass, "modo");
        QCOMPARE(runPass({host}, CopyWhen::Always, carried), exitCode);
        QCOMPARE(pass.log.lines().last(), QStringLiteral("Debug: %1").arg(exitCode));
    }

    void unwritableErrorFileChangesNothing()
    {
        const test::PassCase pass;
        pass.program.makeFolder("pluginError.txt");
        const PluginPathStruct host = withoutSource(pass, "modo");
        QCOMPARE(runPass({host}), 2);
        QCOMPARE(pass.log.lines(),
                 linesBefore() + linesOfNewConfig()
                     + QStringList({installedLine(host), "Debug: 2"}));
        QCOMPARE(pass.read("modo/plugins/drask/manager.cfg"), plainConfig(pass.program));
    }
};

DRASK_TEST_IN_OWN_FOLDER(tst_InstallPassFailures)
#include "tst_installpass_failures.moc"
