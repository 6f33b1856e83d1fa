// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"
#include "loggedsandbox.h"
#include "unitcase.h"
#include "versionfile.h"

namespace {

QString cpuTypeProgram()
{
    return QCoreApplication::applicationDirPath() + "/cputype";
}

void writeScript(const QString &path, const QByteArray &body)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\n" + body);
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

PluginInstaller makeInstaller()
{
    return {"/opt/drask", "ann", "/projects", false, true};
}

/// The bytes that \a installer holds, as line 5 of a manager.cfg shows them.
QByteArray cpuTypeOf(const PluginInstaller &installer)
{
    const test::Sandbox sandbox;
    installer.writeConfig(sandbox.path("manager.cfg"), "1", false);
    const QByteArray line = sandbox.read("manager.cfg").split('\n').value(4);
    return QByteArray::fromBase64(line, QByteArray::Base64UrlEncoding);
}

} // namespace

class tst_PluginInstaller : public QObject {
    Q_OBJECT
private slots:
    void cleanup()
    {
        const QFileInfo program(cpuTypeProgram());
        if (program.isDir()) {
            QVERIFY(QDir().rmdir(program.filePath()));
        } else if (program.exists() || program.isSymLink()) {
            QVERIFY(QFile::remove(program.filePath()));
        }
    }

    void constructorLogsThePluginGeneration()
    {
        const test::LogCapture log;
        const PluginInstaller installer = makeInstaller();
        QCOMPARE(log.lines(), QStringList("Debug: version:  24"));
    }

    void constructorTakesTheProgramsFolderBeforeTheUser()
    {
        const test::Sandbox sandbox;
        const test::LogCapture log;
        const PluginInstaller installer("first", "second", "third", false, true);
        QCOMPARE(installer.writeConfig(sandbox.path("manager.cfg"), "9", false), 0);
        QCOMPARE(sandbox.read("manager.cfg"),
                 QByteArray("second\nthird\nfirst/DraskDrop\n9\n\n1\n1"));
    }

    void versionFileHoldsTheTextAlone_data()
    {
        const test::Table<QString, QByteArray, int> table("version", "content", "readBack");
        table.row("a version with dots", "1.2.3", "1.2.3", -1);
        table.row("a number", "17", "17", 17);
        table.row("an empty text", "", "", -1);
        table.row("non-ASCII letters", "2.3 \u03b2\u00e9", "2.3 \xce\xb2\xc3\xa9", -1);
    }

    void versionFileHoldsTheTextAlone()
    {
        QFETCH(QString, version);
        QFETCH(QByteArray, content);
        const test::LoggedSandbox sandbox;
        sandbox.write("version.txt", "a longer text of an earlier version\n");
        QCOMPARE(PluginInstaller::writeVersionFile(sandbox.path(), version), 0);
        VERIFY_TREE(sandbox, {{"version.txt", content}});
        QCOMPARE(sandbox.log.lines(), QStringList());
        QTEST(readVersionTxt(sandbox.path()), "readBack");
    }

    void versionFileThatCannotBeOpenedFails_data()
    {
        const test::Table<QString> table("folder");
        table.row("a missing folder", "nowhere");
        table.row("a folder in its place", "host");
        table.row("a name that is too long", QString(256, 'x'));
    }

    void versionFileThatCannotBeOpenedFails()
    {
        QFETCH(QString, folder);
        const test::LoggedSandbox sandbox;
        sandbox.write("host/version.txt/own.txt", "mine");
        const test::Tree before = sandbox.tree();
        folder = sandbox.path(folder);
        QCOMPARE(PluginInstaller::writeVersionFile(folder, "17"), 3);
        QCOMPARE(sandbox.log.lines(),
                 QStringList("Debug: error writing version file:  \"" + folder + '"'));
        VERIFY_TREE(sandbox, before);
    }

    void cpuTypeIsWhatTheProgramPrinted_data()
    {
        const test::Table<QByteArray, QByteArray> table("script", "bytes");
        table.row("a line is not trimmed", "echo ' 8 cores '", " 8 cores \n");
        table.row("bytes of every kind", "printf 'a\\000\\377\\200\\r\\nb\\373'",
                  QByteArray("a\0\xff\x80\r\nb\xfb", 8));
        table.row("nothing", "exit 0", QByteArray());
        table.row("a text before it fails", "printf half; exit 3", "half");
        table.row("a text before a signal ends it", "printf half; kill -9 $$", "half");
        table.row("a text beside complaints", "echo trouble >&2; printf i7; echo trouble >&2",
                  "i7");
        table.row("complaints alone", "echo trouble >&2", QByteArray());
        table.row("more than a pipe holds", "head -c 300000 /dev/zero", QByteArray(300000, '\0'));
        table.row("how many arguments it was given", "printf $#", "0");
    }

    void cpuTypeIsWhatTheProgramPrinted()
    {
        QFETCH(QByteArray, script);
        QFETCH(QByteArray, bytes);
        writeScript(cpuTypeProgram(), script);
        const test::LogCapture log;
        PluginInstaller installer = makeInstaller();
        installer.readCPUinfo();
        QCOMPARE(log.lines(), QStringList("Debug: version:  24"));
        QCOMPARE(cpuTypeOf(installer), bytes);
    }

    void cpuTypeIsEmptyWhenTheProgramCannotStart_data()
    {
        const test::Table<QString> table("obstacle");
        table.row("there is none", "missing");
        table.row("it is not executable", "not executable");
        table.row("it is a folder", "folder");
        table.row("it is a link to nowhere", "link");
        table.row("its interpreter is missing", "interpreter");
    }

    void cpuTypeIsEmptyWhenTheProgramCannotStart()
    {
        QFETCH(QString, obstacle);
        const QString program = cpuTypeProgram();
        if (obstacle == "folder") {
            QVERIFY(QDir().mkdir(program));
        } else if (obstacle == "link") {
            QVERIFY(QFile::link("/nowhere/at/all", program));
        } else if (obstacle == "not executable") {
            writeScript(program, "printf i7");
            QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner));
        } else if (obstacle == "interpreter") {
            writeScript(program, "");
            QFile file(program);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("#!/nowhere/at/all\n") > 0);
        }
        const test::LogCapture log;
        PluginInstaller installer = makeInstaller();

        installer.readCPUinfo();

        QCOMPARE(log.lines(), QStringList("Debug: version:  24"));
        QCOMPARE(cpuTypeOf(installer), QByteArray());
    }

    void cpuTypeOfALaterRunReplacesTheEarlierOne()
    {
        const test::LogCapture log;
        PluginInstaller installer = makeInstaller();
        writeScript(cpuTypeProgram(), "printf one");
        installer.readCPUinfo();
        QCOMPARE(cpuTypeOf(installer), QByteArray("one"));

        writeScript(cpuTypeProgram(), "printf 2");
        installer.readCPUinfo();
        QCOMPARE(cpuTypeOf(installer), QByteArray("2"));
        QVERIFY(QFile::remove(cpuTypeProgram()));
        installer.readCPUinfo();
        QCOMPARE(cpuTypeOf(installer), QByteArray());
    }

    void cpuTypeProgramLiesBesideTheRunningProgram()
    {
        const test::Sandbox sandbox;
        writeScript(sandbox.path("cputype"), "printf elsewhere");
        const test::WorkingFolder workingFolder(sandbox.path());
        const test::LogCapture log;
        PluginInstaller installer(sandbox.path(), "ann", "/projects", false, true);
        installer.readCPUinfo();
        QCOMPARE(cpuTypeOf(installer), QByteArray());
    }
};

DRASK_TEST_IN_OWN_FOLDER(tst_PluginInstaller)
#include "tst_plugininstaller.moc"
