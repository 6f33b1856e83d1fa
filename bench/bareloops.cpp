// SPDX-License-Identifier: MIT
#include "bareloops.h"

#include "globals.h"
#include "qtversions.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSet>
#include <QSettings>
#include <QStringList>
#include <QTextStream>

static void copyFiles(const QString &source, const QString &target)
{
    QFile manifest(target + "/uninstall.ini");
    manifest.open(QIODevice::WriteOnly | QIODevice::Truncate);
    QTextStream lines(&manifest);
    useUtf8(lines);
    QDirIterator files(source, QDir::Files);
    while (files.hasNext()) {
        files.next();
        const QString from = source + "/" + files.fileName();
        const QString to = target + "/" + files.fileName();
        QFile::copy(from, to);
        if (QFile::exists(to)) {
            QFile::remove(to);
        }
        QFile::copy(from, to);
        lines << to << Qt::endl;
        QFile check(to);
        check.open(QIODevice::ReadWrite);
    }
}

static QStringList firstLines(const QString &path, int count)
{
    QFile file(path);
    QStringList lines;
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        QTextStream stream(&file);
        useUtf8(stream);
        while (lines.size() < count) {
            lines << stream.readLine();
        }
    }
    return lines;
}

static void writeText(const QString &path, const QString &text)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Text);
    QTextStream stream(&file);
    useUtf8(stream);
    stream << text;
}

struct BareHost {
    QString folder;
    QString version;
};

static QList<BareHost> askSettings(const QString &settings)
{
    QList<BareHost> hosts;
    QSettings list(settings, QSettings::IniFormat);
    list.setIniCodec("UTF-8");
    const int size = list.beginReadArray("pluginpaths");
    for (int host = 0; host < size; ++host) {
        list.setArrayIndex(host);
        qDebug() << "applicationName" << list.value("application").toString();
        const QString path = list.value("path").toString();
        qDebug() << "path" << path;
        QSettings wanted(settings, QSettings::IniFormat);
        wanted.setIniCodec("UTF-8");
        hosts << BareHost{path + "/Scripts/drask", wanted.value("plugins/versionModo").toString()};
    }
    return hosts;
}

void installLoop(const QString &settings, const QString &source, const QString &programVersion)
{
    const QString config = "Ann\n\n" + QCoreApplication::applicationDirPath() + "/DraskDrop\n"
        + installerVersion + "\n\n1\n1";
    const QList<BareHost> hosts = askSettings(settings);
    for (const BareHost &host : hosts) {
        if (!QDir(host.folder).exists()) {
            QDir().mkpath(host.folder);
        }
        if (firstLines(host.folder + "/version.txt", 1).value(0) == host.version) {
            qDebug() << "version already installed: " << host.folder;
        } else {
            copyFiles(source, host.folder);
        }
        if (firstLines(host.folder + "/manager.cfg", 7).isEmpty()) {
            qDebug() << "161 write cfg file...";
            writeText(host.folder + "/manager.cfg", config);
        } else {
            qDebug() << "not necessary to write cfg";
        }
    }
    writeText(programVersion, installerVersion);
}

void removeLoop(const QString &manifest)
{
    QFile file(manifest);
    file.open(QIODevice::ReadOnly);
    QTextStream lines(&file);
    useUtf8(lines);
    QString line;
    while (lines.readLineInto(&line)) {
        if (QFile::exists(line)) {
            QFile::remove(line);
        }
    }
    file.close();
    QFile::remove(manifest);
}

void legacyLoop(const QString &folder)
{
    const QSet<QString> names = {"grex.pyc", "utils.pyc", "drask.py", "manager.cfg"};
    QDirIterator entries(QDir(folder), QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        if (names.contains(entries.fileName())) {
            QFile::remove(entries.filePath());
        }
    }
}

void rewriteLoop(const QString &script, const QString &oldLine, const QString &newLine)
{
    QFile file(script);
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    QTextStream source(&file);
    useUtf8(source);
    QString content;
    QString line;
    bool marked = false;
    while (source.readLineInto(&line)) {
        content += line + "\r\n";
        marked = marked || line.contains("#drask_installed");
    }
    file.close();

    // The whole file is read once more for the end of a newer block.
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    QTextStream whole(&file);
    useUtf8(whole);
    const bool isNewer = whole.readAll().contains("searchTab()");
    file.close();
    if (!marked || isNewer) {
        return;
    }
    QTextStream lines(&content);
    file.open(QIODevice::WriteOnly | QIODevice::Text);
    QTextStream target(&file);
    useUtf8(target);
    while (lines.readLineInto(&line)) {
        target << line.replace(oldLine, newLine) << Qt::endl;
    }
}

void menuLoop(const QString &folder)
{
    QFile menu(folder + "/LW.CFG");
    menu.open(QIODevice::ReadWrite);
    QTextStream stream(&menu);
    useUtf8(stream);
    const QString text = stream.readAll();
    const QString lower = text.toLower();
    const auto anchor = lower.contains("tasklancer") ? -1 : lower.indexOf("menuentry 1 options");
    const auto next = lower.indexOf("\r\n", anchor + 1) + 2;
    const QString changed = text.left(next) + "MenuEntry 2 . Generic_Drask Tasklancer\r\n"
        + text.mid(next);
    menu.copy(menu.fileName() + "_bak");
    stream << changed;

    QFile extension(folder + "/LWEXT.CFG");
    extension.open(QIODevice::ReadWrite);
    QTextStream block(&extension);
    useUtf8(block);
    block.readAll();
    extension.copy(extension.fileName() + "_bak");
    block << changed;
}
