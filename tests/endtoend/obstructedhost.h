// SPDX-License-Identifier: MIT
#pragma once

#include "expectedpass.h"
#include "workstation.h"

#include <QMetaType>

/// \file
/// A workstation with one host and something in the way of its plug-in.

namespace test {

/// The host's plug-in folder.
const QString obstructedTarget = QStringLiteral("modo/Scripts/drask");

/// What becomes of a copy, or of a single file of it.
enum class Copying { Smooth, SourceMissing, ManifestNotOpened, FileNotCopied, FileNotReplaced };

/// What a run meets at the host.
struct Trouble {
    Copying copying = Copying::Smooth;
    QString file; ///< the one that is not copied or not replaced
    bool configFails = false;
};

class ObstructedHost : public Workstation {
public:
    ObstructedHost()
    {
        addPlugin("modo", plugin());
        addHost("modo", path("modo"));
        addSetting("plugins", "versionModo=7");
        writeSettings();
    }

    static Tree plugin()
    {
        return {{"version.txt", "7"}, {"a.py", "a"}, {"sub/b.py", "b"}};
    }

    /// Puts a file, or (with a "/" at its end) a folder with a file in it, in the way.
    void putInTheWay(const QString &obstacle) const
    {
        write(obstacle.endsWith('/') ? obstacle + "own.txt" : obstacle, "mine");
    }

    QString placed(const QString &file = QString()) const
    {
        return path(file.isEmpty() ? obstructedTarget : obstructedTarget + '/' + file);
    }

    QStringList lookUp() const
    {
        return linesOfLookUp("modo", path("modo"));
    }

    /// The tree that a run makes of \a before.
    Tree served(Tree before, const Trouble &trouble = {}) const
    {
        before["tool/version.txt"] = "2.3.10";
        if (!trouble.configFails) {
            put(before, obstructedTarget, {{"manager.cfg", configOf(*this)}});
        }
        if (trouble.copying != Copying::SourceMissing
            && trouble.copying != Copying::ManifestNotOpened) {
            Tree files = plugin();
            files.remove(trouble.file);
            files["uninstall.ini"] = manifestOf(tool("plugins/modo"), placed(), {trouble.file});
            put(before, obstructedTarget, files);
        }
        return before;
    }

    /// The lines of a host that is served for the first time, or whose copy failed before.
    QStringList linesOfFirstCopy(const Trouble &trouble = {}) const
    {
        return linesOfTrouble(trouble) + linesOfNewConfig() + linesOfInstalled("modo", placed());
    }

    QStringList linesOfLaterCopy(const Trouble &trouble) const
    {
        return linesOfTrouble(trouble) + configLines(trouble) + linesOfInstalled("modo", placed());
    }

    /// The lines of the host once its version file is there.
    QStringList linesOfNoCopy(const Trouble &trouble = {}) const
    {
        return linesOfAlreadyInstalled(placed()) + configLines(trouble);
    }

    /// The lines of a copy into a folder that takes nothing, and holds an older version file.
    QStringList linesOfReadOnlyCopy() const
    {
        QStringList lines = linesOfCopy();
        const QStringList files = filesInCopyOrder(tool("plugins/modo"));
        for (const QString &file : files) {
            if (file == "version.txt") {
                lines << notRemovedLine(placed(file));
            } else {
                lines << notCopiedLine(tool("plugins/modo/" + file), placed(file))
                      << rightsProblemLine(placed(file));
            }
        }
        return lines;
    }

private:
    QStringList linesOfTrouble(const Trouble &trouble) const
    {
        const QString source = tool("plugins/modo/" + trouble.file);
        const QString target = placed(trouble.file);
        switch (trouble.copying) {
        case Copying::Smooth:
            return linesOfCopy();
        case Copying::SourceMissing:
            return {};
        case Copying::ManifestNotOpened:
            return linesOfCopy() << manifestNotOpenedLine(placed());
        case Copying::FileNotCopied:
            return linesOfCopy() << notCopiedLine(source, target) << rightsProblemLine(target);
        case Copying::FileNotReplaced:
            return linesOfCopy() << notRemovedLine(target) << rightsProblemLine(target);
        }
        return {};
    }

    static QStringList configLines(const Trouble &trouble)
    {
        return trouble.configFails ? linesOfNewConfig() : linesOfKeptConfig();
    }
};

} // namespace test

Q_DECLARE_METATYPE(test::Copying)
