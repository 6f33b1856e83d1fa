// SPDX-License-Identifier: MIT
#include "status/filelook.h"

#include "sandbox.h"
#include "testprogram.h"

#include <QFile>
#include <QtTest>

#include <sys/stat.h>

class tst_FileLook : public QObject {
    Q_OBJECT

private slots:
    void whatIsThereIsSaid();
    void textKeepsItsLineEnds();
    void filesAreCompared();
};

void tst_FileLook::whatIsThereIsSaid()
{
    const test::Sandbox sandbox;
    sandbox.write("file", "x");
    sandbox.write("secret", "x");
    sandbox.makeLink("file", "link");
    sandbox.makeLink("missing", "lost");
    QCOMPARE(chmod(QFile::encodeName(sandbox.path("secret")).constData(), 0), 0);
    QCOMPARE(mkfifo(QFile::encodeName(sandbox.path("pipe")).constData(), 0600), 0);
    const auto found = [&sandbox](const QString &name) { return lookAt(sandbox.path(name)); };
    QCOMPARE(found("file"), Found::File);
    QCOMPARE(found("link"), Found::File);
    QCOMPARE(found("missing"), Found::Nothing);
    QCOMPARE(found("file/below"), Found::Nothing);
    QCOMPARE(lookAt(sandbox.path("file") + QChar(0)), Found::Nothing);
    QCOMPARE(lookAt(sandbox.path()), Found::NoFile);
    QCOMPARE(found("pipe"), Found::NoFile);
    QCOMPARE(found("lost"), Found::Unreadable);
    QCOMPARE(found("secret"), Found::Unreadable);
}

void tst_FileLook::textKeepsItsLineEnds()
{
    const test::Sandbox sandbox;
    sandbox.write("file", "\xc3\xa4\r\nb\n");
    QCOMPARE(wholeText(sandbox.path("file")), QString::fromUtf8("\xc3\xa4\r\nb\n"));
    QCOMPARE(wholeText(sandbox.path()), QString());
}

void tst_FileLook::filesAreCompared()
{
    const test::Sandbox sandbox;
    const QByteArray large(200000, 'x');
    sandbox.write("one", large);
    sandbox.write("same", large);
    sandbox.write("other", large.chopped(1) + 'y');
    sandbox.write("shorter", large.chopped(1));
    const auto compared = [&sandbox](const QString &name) {
        return compareFiles(sandbox.path("one"), sandbox.path(name));
    };
    QCOMPARE(compared("same"), Sameness::Same);
    QCOMPARE(compared("other"), Sameness::Different);
    QCOMPARE(compared("shorter"), Sameness::Different);
    QCOMPARE(compared("missing"), Sameness::CannotTell);
}

DRASK_TEST(tst_FileLook)
#include "tst_filelook.moc"
