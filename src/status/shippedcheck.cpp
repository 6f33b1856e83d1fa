// SPDX-License-Identifier: MIT
#include "status/shippedcheck.h"

#include "hoststeps.h"
#include "installer/maya.h"
#include "installer/scriptedit.h"
#include "literals.h"
#include "status/filelook.h"
#include "status/plugincheck.h"
#include "versionfile.h"

#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <utility>

namespace {

QList<Problem> checkVersion(const PluginPathStruct &target)
{
    const QString file = target.sourceFolder + "/version.txt"_l1;
    if (lookAt(file) != Found::File) {
        return {{Kind::ShippedVersionMissing, file,
                 QStringLiteral("version.txt is missing; every run copies the plug-in again.")}};
    }
    const int version = readVersionTxt(target.sourceFolder);
    if (version == -1) {
        return {{Kind::ShippedVersionNoNumber, file,
                 QStringLiteral("version.txt does not begin with a line that is a whole number; "
                                "every run copies the plug-in again.")}};
    }
    if (version != target.version) {
        return {{Kind::ShippedVersionOther, file,
                 QStringLiteral("version.txt says %1, but the settings want %2; every run copies "
                                "the plug-in again.")
                     .arg(version)
                     .arg(target.version)}};
    }
    return {};
}

/// What is wrong with one entry of a shipped folder.
QList<Problem> checkEntry(const QFileInfo &entry)
{
    const QString path = entry.filePath();
    QList<Problem> problems;
    if (entry.fileName().startsWith(QLatin1Char('.'))) {
        return {{Kind::ShippedHidden, path, QStringLiteral("Hidden files are not copied.")}};
    }
    if (entry.isSymLink()) {
        problems.append({Kind::ShippedLink, path,
                         QStringLiteral("A link is followed; what it leads to is copied.")});
    }
    if (entry.isDir()) {
        return problems;
    }
    if (!entry.isReadable()) {
        problems.append(
            {Kind::ShippedUnreadable, path, QStringLiteral("The shipped file cannot be read.")});
    } else if ((entry.permissions() & QFile::WriteOwner) == 0) {
        problems.append({Kind::ShippedReadOnly, path,
                         QStringLiteral("The shipped file is read-only, and so is its copy.")});
    }
    return problems;
}

QList<Problem> checkEntries(const QString &source)
{
    QList<Problem> problems;
    std::error_code failure;
    std::filesystem::recursive_directory_iterator entry(
        QFile::encodeName(source).toStdString(),
        std::filesystem::directory_options::skip_permission_denied, failure);
    for (; entry != std::filesystem::end(entry); entry.increment(failure)) {
        problems += checkEntry(QFileInfo(QFile::decodeName(entry->path().c_str())));
    }
    return problems;
}

QList<Problem> checkReservedNames(const PluginPathStruct &target)
{
    QStringList names{QStringLiteral("/uninstall.ini"), QStringLiteral("/manager.cfg")};
    const QStringList removed = legacyCinema4dFiles(target);
    const QString folder = target.targetFolder();
    for (const QString &file : removed) {
        if (file.startsWith(folder + QLatin1Char('/'))) {
            names << file.mid(folder.size());
        }
    }
    QList<Problem> problems;
    for (const QString &name : std::as_const(names)) {
        if (lookAt(target.sourceFolder + name) != Found::Nothing) {
            problems.append({Kind::ShippedReservedName, target.sourceFolder + name,
                             QStringLiteral("The installer has a use of its own for this name.")});
        }
    }
    return problems;
}

} // namespace

QList<Problem> checkTemplate(const QString &content, const QString &file)
{
    QList<Problem> problems;
    const auto require = [&](bool isKept, const QString &rule) {
        if (!isKept) {
            problems.append({Kind::TemplateRule, file, rule});
        }
    };
    const QString folder = QStringLiteral("/folder");
    const QString addition = mayaAddition(content, folder);
    require(content.startsWith(installedMarker),
            QStringLiteral("The first line of the template is not %1.").arg(installedMarker));
    require(content.count(installedMarker) == 1,
            QStringLiteral("The template does not hold %1 once.").arg(installedMarker));
    require(hasMayaAddition(addition)
                && mayaUpdate(addition, addition, QString(), folder).part == MayaUpdate::Part::None,
            QStringLiteral("The template has no path line that will be recognised."));
    require(!content.contains(QLatin1Char('\r')),
            QStringLiteral("The lines of the template do not end with a plain line feed."));
    require(!content.contains(QChar(QChar::ReplacementCharacter)),
            QStringLiteral("The template is not UTF-8 throughout."));
    require(
        content.contains("draskshelf.init()"_l1),
        QStringLiteral("The template does not call draskshelf.init(); changes of it never reach "
                       "users who have an older one."));
    require(content.trimmed().endsWith("maya.utils.executeDeferred(\"searchTab()\")"_l1),
            QStringLiteral("The last line of the template is not the deferred call."));
    return problems;
}

QList<Problem> checkShippedPlugin(const PluginPathStruct &target)
{
    if (!QFileInfo(target.sourceFolder).isDir()) {
        return {{Kind::PluginMissing, target.sourceFolder,
                 QStringLiteral("The shipped plug-in is missing.")}};
    }
    QList<Problem> problems = checkVersion(target) + checkEntries(target.sourceFolder)
        + checkReservedNames(target);
    if (target.applicationName == "maya"_l1) {
        const QString file = target.sourceFolder + mayaTemplateFile;
        if (lookAt(file) == Found::File) {
            problems += checkTemplate(wholeText(file), file);
        } else {
            problems.append({Kind::TemplateMissing, file,
                             QStringLiteral("The template of Maya's start-up script is missing.")});
        }
    }
    return problems;
}

qint64 shippedSize(const QString &source)
{
    qint64 size = 0;
    const QStringList names = shippedFiles(source);
    for (const QString &name : names) {
        size += QFileInfo(source + QLatin1Char('/') + name).size();
    }
    return size;
}
