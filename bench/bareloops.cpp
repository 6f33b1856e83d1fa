// SPDX-License-Identifier: MIT
#include "bareloops.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSet>
#include <QSettings>
#include <QStringList>
#include <QTextStream>

void copyLoop(const QString &source, const QString &target)
{
    QDir().mkpath(target);
    QFile manifest(target + "/uninstall.ini");
    manifest.open(QIODevice::WriteOnly | QIODevice::Truncate);
    QTextStream lines(&manifest);
    lines.setCodec("UTF-8");
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

static void appendLine(const QString &log, const QString &line)
{
    QFile file(log);
    file.open(QIODevice::WriteOnly | QIODevice::Append);
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream << line << Qt::endl;
}

static QString firstLine(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    return stream.readLine();
}

void idleLoop(const QString &settings, int hosts, const QString &log)
{
    QFile::remove(log);
    QSettings list(settings, QSettings::IniFormat);
    list.setIniCodec("UTF-8");
    list.beginReadArray("pluginpaths");
    QStringList folders;
    QStringList versions;
    for (int host = 0; host < hosts; ++host) {
        list.setArrayIndex(host);
        appendLine(log, list.value("application").toString());
        folders << list.value("path").toString() + "/Scripts/drask";
        appendLine(log, folders.last());
        QSettings wanted(settings, QSettings::IniFormat);
        wanted.setIniCodec("UTF-8");
        versions << wanted.value("plugins/versionModo").toString();
    }
    for (int host = 0; host < hosts; ++host) {
        const QString &folder = folders.at(host);
        if (QDir(folder).exists() && firstLine(folder + "/version.txt") == versions.at(host)) {
            appendLine(log, "version already installed: " + folder);
        }
        if (!firstLine(folder + "/manager.cfg").isNull()) {
            appendLine(log, "not necessary to write cfg");
        }
    }
}

void removeLoop(const QString &manifest)
{
    QFile file(manifest);
    file.open(QIODevice::ReadOnly);
    QTextStream lines(&file);
    lines.setCodec("UTF-8");
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
    source.setCodec("UTF-8");
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
    whole.setCodec("UTF-8");
    const bool isNewer = whole.readAll().contains("searchTab()");
    file.close();
    if (!marked || isNewer) {
        return;
    }
    QTextStream lines(&content);
    file.open(QIODevice::WriteOnly | QIODevice::Text);
    QTextStream target(&file);
    target.setCodec("UTF-8");
    while (lines.readLineInto(&line)) {
        target << line.replace(oldLine, newLine) << Qt::endl;
    }
}

void menuLoop(const QString &folder)
{
    QFile menu(folder + "/LW.CFG");
    menu.open(QIODevice::ReadWrite);
    QTextStream stream(&menu);
    stream.setCodec("UTF-8");
    const QString text = stream.readAll();
    const QString lower = text.toLower();
    const int anchor = lower.contains("tasklancer") ? -1 : lower.indexOf("menuentry 1 options");
    const int next = lower.indexOf("\r\n", anchor + 1) + 2;
    const QString changed = text.left(next) + "MenuEntry 2 . Generic_Drask Tasklancer\r\n"
        + text.mid(next);
    menu.copy(menu.fileName() + "_bak");
    stream << changed;

    QFile extension(folder + "/LWEXT.CFG");
    extension.open(QIODevice::ReadWrite);
    QTextStream block(&extension);
    block.setCodec("UTF-8");
    block.readAll();
    extension.copy(extension.fileName() + "_bak");
    block << changed;
}
