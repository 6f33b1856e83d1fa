// SPDX-License-Identifier: MIT
#include "copysandbox.h"
#include "unitcase.h"

namespace {

QString watchedFile;
QByteArrayList contents;

void readWatchedFile(QtMsgType /*type*/, const QMessageLogContext & /*context*/,
                     const QString &message)
{
    if (message.startsWith("Could not remove file")) {
        QFile file(watchedFile);
        contents << (file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there"));
    }
}

/// While it lives, reads the file \a path each time a file is met that cannot be replaced.
class Watch {
public:
    explicit Watch(const QString &path)
        : handlerBefore(qInstallMessageHandler(readWatchedFile))
    {
        watchedFile = path;
        contents.clear();
    }
    ~Watch()
    {
        qInstallMessageHandler(handlerBefore);
    }
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;

    static QByteArrayList seen()
    {
        return contents;
    }

private:
    QtMessageHandler handlerBefore;
};

} // namespace

/// What an uninstallation finds in the manifest of a copy that ended before its time.
class tst_FolderCopyFlushing : public QObject {
    Q_OBJECT
private slots:
    void everyPlacedFileIsOnTheDiskBeforeTheNextIsCopied()
    {
        test::CopySandbox sandbox;
        for (char name = 'a'; name <= 'j'; ++name) {
            sandbox.write(QStringLiteral("plugin/%1.py").arg(QLatin1Char(name)), "a");
        }
        const QStringList names = test::filesInCopyOrder(sandbox.path("plugin"));
        QByteArray placed;
        QByteArrayList expected;
        for (int index = 0; index < names.size(); ++index) {
            const QString target = "host/drask/" + names.at(index);
            if (index % 2 == 0) {
                placed += sandbox.path(target).toUtf8() + '\n';
            } else {
                sandbox.makeFolder(target);
                expected << placed;
            }
        }

        const Watch watch(sandbox.path("host/drask/uninstall.ini"));
        QCOMPARE(sandbox.copy(), 2);
        QCOMPARE(watch.seen(), expected);
    }

    void mayaShelfIsOnTheDiskBeforeTheSubfoldersAreCopied()
    {
        test::CopySandbox sandbox;
        sandbox.write("plugins/maya/sub/a.py", "a");
        sandbox.makeFolder("host/scripts/drask/sub/a.py");
        const Watch watch(sandbox.path("host/scripts/drask/uninstall.ini"));
        QCOMPARE(sandbox.copy("plugins/maya", "host/scripts/drask"), 2);
        QCOMPARE(watch.seen(),
                 QByteArrayList(
                     {sandbox.path("host").toUtf8() + "/prefs/shelves/shelf_DraskGrex.mel\n"}));
    }
};

DRASK_TEST(tst_FolderCopyFlushing)
#include "tst_foldercopy_flushing.moc"
