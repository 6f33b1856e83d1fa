// SPDX-License-Identifier: MIT
#include "status/setup.h"

#include "kinds.h"
#include "sandbox.h"
#include "testprogram.h"

#include <QtTest>

namespace {

Options optionsFor(const test::Sandbox &sandbox)
{
    Options options;
    options.command = "verify";
    options.folder = sandbox.path();
    return options;
}

PluginPathStruct modoIn(const QString &folder)
{
    PluginPathStruct target;
    target.applicationName = "modo";
    target.path = folder;
    target.pluginSubFolder = "/Scripts/drask";
    target.sourceFolder = "/tool/plugins/modo";
    target.version = 7;
    return target;
}

} // namespace

class tst_Setup : public QObject {
    Q_OBJECT

private slots:
    void settingsAreRead();
    void settingsThatCannotBeReadAreNamed();
    void targetIsDescribed();
    void sharedFolderIsFoundBehindLinks();
};

void tst_Setup::settingsAreRead()
{
    const test::Sandbox sandbox;
    sandbox.write(
        "settings.ini",
        "[UserData]\nusername=Ann\n[PathOptions]\nlocalProjectsFolder=/projects\n"
        "[Settings]\ncopyTexFiles=false\n[plugins]\nversion3ds=7\n[pluginpaths]\n"
        "1\\application=3dsmax\n1\\path=/max\n2\\application=word\n2\\path=/word\nsize=2\n");
    const Setup setup = readSetup(optionsFor(sandbox));
    QCOMPARE(setup.user + setup.projects, QString("Ann/projects"));
    QVERIFY(!setup.copyTexFiles);
    QCOMPARE(setup.targets.size(), 7);
    QCOMPARE(setup.targets.first().version, 7);
    QCOMPARE(setup.targets.last().sourceFolder, QString());
    QCOMPARE(test::kindsOf(setup.problems), QStringList());
}

void tst_Setup::settingsThatCannotBeReadAreNamed()
{
    const test::Sandbox sandbox;
    const auto kinds = [&] { return test::kindsOf(readSetup(optionsFor(sandbox)).problems); };
    QCOMPARE(kinds(), QStringList("settingsMissing"));
    sandbox.makeFolder("settings.ini");
    QCOMPARE(kinds(), QStringList("settingsUnreadable"));
}

void tst_Setup::targetIsDescribed()
{
    const test::Sandbox sandbox;
    const PluginPathStruct target = modoIn(sandbox.path());
    QVERIFY(!describe(target).installed);
    QCOMPARE(describe(target).wanted.value_or(0), 7);
    sandbox.write("Scripts/drask/version.txt", "6\n");
    QCOMPARE(describe(target).installed.value_or(0), 6);
    PluginPathStruct unknown;
    unknown.applicationName = "word";
    QVERIFY(!describe(unknown).wanted);
}

void tst_Setup::sharedFolderIsFoundBehindLinks()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("modo");
    sandbox.makeLink("modo", "link");
    const auto target = [&sandbox](const char *name) { return modoIn(sandbox.path(name)); };
    QCOMPARE(sharedFolders({target("modo"), target("other"), modoIn("nowhere"), modoIn("nowhere")}),
             QSet<QString>());
    QCOMPARE(
        sharedFolders({target("modo"), target("other"), target("link")}),
        QSet<QString>({sandbox.path("modo/Scripts/drask"), sandbox.path("link/Scripts/drask")}));
}

DRASK_TEST(tst_Setup)
#include "tst_setup.moc"
