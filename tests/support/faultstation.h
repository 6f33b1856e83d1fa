// SPDX-License-Identifier: MIT
#pragma once

#include "startupfiles.h"
#include "workstation.h"

#include <QFlags>

namespace test {

/// What a workstation looks like before the run that is disturbed.
enum class Scene {
    FirstInstallation, ///< five hosts, none of which has the plug-in
    OldPath,           ///< Maya and Houdini know an older plug-in by another path
    OldBlock,          ///< Maya has an addition that is replaced as a whole
};

inline constexpr Scene scenes[] = {Scene::FirstInstallation, Scene::OldPath, Scene::OldBlock};

QString sceneName(Scene scene);
/// Makes the table of a case that has one row a scene.
void addScenes();

/// What the order of an installation's steps lets happen to the start-up files when a run is
/// disturbed. Each follows from a step as it is; nothing else is let pass.
enum class Harm {
    /// The user's script could not be copied before the addition, which does not stop the addition;
    /// later runs find the addition, and have no reason for a copy.
    BackupMissing = 1,
    /// A file that cannot be read counts as one without the addition, and gets it once more.
    AddedAgain = 2,
    /// A template that cannot be read counts as one of the older kind: only the path is updated.
    OnlyPathUpdated = 4,
    /// Two runs at once both found the file without the addition.
    AddedTwice = 8,
};
Q_DECLARE_FLAGS(Harms, Harm)

QString harmNames(Harms harms);

/// What befell a run.
enum class Fault {
    Error,        ///< one call failed
    LastingError, ///< calls failed from some point on
    Kill,         ///< it was ended from outside
    OtherRun,     ///< another run worked on the same files
};

/// What was found out about a run.
struct Findings {
    QStringList complaints; ///< what must never happen
    Harms harms;
};

/// A small but complete workstation to disturb runs on, which tells what a run did to it.
class FaultStation : public Workstation {
public:
    explicit FaultStation(Scene which);

    /// Takes back everything that a run may have done.
    void reset() const;

    /// How runs are started here, \a through another command.
    RunOptions options(const QStringList &through = {}) const;

    /// Judges a run and compares what is there with what was there at first: nothing of the user's
    /// may be lost or changed, no file of the plug-in's may be half a file, nothing may lie about.
    Findings findings(const RunResult &result, Fault fault) const;

    /// True when everything is as after an undisturbed installation.
    bool isInstalled() const;

    /// Runs "reinstall" undisturbed, and says what is not as after an undisturbed installation.
    QStringList repair() const;

private:
    struct Plugin {
        QString key;
        QString host;      ///< folder of the host
        QString subFolder; ///< of the plug-in, in the host's
        QString source;    ///< in tool/plugins
        QString versionKey;
        Tree files;
    };

    void addMaya();
    void addOtherHosts();
    void addPluginOf(const Plugin &plugin);
    void writeStartUpFiles();
    void writeOlderPlugin(const QString &target) const;
    void recordUndisturbedRuns();
    /// Everything but the logs; the program's size stands for the program.
    Tree look() const;

    bool mayBeTouched(const QString &name) const;
    QStringList complaintsAboutTheRun(const RunResult &result, Fault fault) const;
    QStringList complaintsAboutTheUsersFiles(const Tree &now) const;
    bool isSilentLoss(const RunResult &result, const Tree &now) const;
    QStringList complaintsAboutThePlugin(const Tree &now, Fault fault) const;
    QStringList complaintsAboutManifests(const Tree &now, Fault fault) const;
    bool namesNoOtherFile(const QByteArray &piece, const QByteArray &known) const;
    void judge(const QString &name, const StartUpFile &file, const Tree &now, Fault fault,
               Findings &findings) const;

    void letOwnerlessLocksExpire() const;
    Tree treeWhenRepaired() const;
    QStringList complaintsAboutRights() const;

    // Names in the sandbox.
    static const QString mayaTarget;
    static const QString script;
    static const QString backup;
    static const QString environmentFile;
    static const QString legacyFile;

    Scene scene;
    StartUpFile mayaFile;
    StartUpFile houdiniFile = StartUpFile::houdini();
    QStringList targets; ///< the plug-in folders
    Tree shipped;        ///< every plug-in file, where an installation puts it
    Tree first;
    Tree installed;
    QStringList usualLog; ///< of the installation
    Tree settled;         ///< after an installation and a "reinstall"
};

} // namespace test

Q_DECLARE_OPERATORS_FOR_FLAGS(test::Harms)
Q_DECLARE_METATYPE(test::Scene)
