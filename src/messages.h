// SPDX-License-Identifier: MIT
#pragma once

#include "literals.h"

#include <QLatin1String>

/// \file
/// The words of plugin.log and pluginError.txt that somebody reads again. Whoever writes such a
/// line and whoever looks for it take them from here. Plain characters are streamed as labels,
/// without quotes; a blank follows each, and a label that ends with one is followed by two.

/// The words; the comment behind them says what follows them in the log, or when they come.
namespace Message {

// clang-format off

// --- plugin.log: the start ---
inline constexpr char onlyWriteConfig[]    = "only write config"; ///< the mode
inline constexpr char forceReinstall[]     = "forceReinstall";    ///< the mode
inline constexpr char settingsLoaded[]     = "settings loaded";   ///< in the modes that need them
inline constexpr char applicationName[]    = "applicationName";   ///< then the key
inline constexpr char path[]               = "path";              ///< then the host's folder

// --- plugin.log: removals ---
inline constexpr char nothingToUninstall[] = "nothing to uninstall for "; ///< then the folder
inline constexpr char beginUninstall[]     = "begin uninstall";           ///< before each
inline constexpr char uninstalled[]        = "uninstallPlugin ";          ///< then the result

// --- plugin.log: the install pass ---
inline constexpr char passStarts[]         = "!!!settings local: ";                  ///< then the projects folder
inline constexpr char nothingToCopy[]      = "nothing to copy for ";                 ///< then the key
inline constexpr char alreadyInstalled[]   = "version already installed: ";          ///< then the target
inline constexpr char copyLeftOut[]        = "only write config, do not copy files"; ///< in the mode that copies nothing
inline constexpr char copyStarts[]         = "open file: ";                          ///< then the manifest before
inline constexpr char cannotOpen[]         = "cannot open ";                         ///< then the manifest
inline constexpr char forWriting[]         = " for writing";                         ///< after it
inline constexpr char folderNotListed[]    = "Could not list folder";                ///< then the shipped folder
inline constexpr char fileNotRemoved[]     = "Could not remove file";                ///< then the file
inline constexpr char fileNotCopied[]      = "Could not copy file ";                 ///< then the shipped file
inline constexpr char copiedTo[]           = " to ";                                 ///< then the target file
inline constexpr char fileNotWritable[]    = "exist check failed - rights problem";  ///< then the file
inline constexpr char fileNotListed[]      = "Could not list file";                  ///< then the file
inline constexpr char fileLost[]           = "Could not write file to the disk";     ///< then the file
inline constexpr char manifestLost[]       = "Could not write manifest to the disk"; ///< then the manifest
inline constexpr char configAbsent[]       = "cannot read config file, create new";  ///< and nothing else
inline constexpr char configKept[]         = "not necessary to write cfg";           ///< it says already what it should
inline constexpr char configWritten[]      = "161 write cfg file...";                ///< the number belongs to it
inline constexpr char templateNotOpened[]  = "1635 error ";                          ///< then the template
inline constexpr char targetNotOpened[]    = "Could not open target file";           ///< then the reason
inline constexpr char blockNotReplaced[]   = "Could not open target file2";          ///< then the reason
inline constexpr char blockNotFound[]      = "old positions not found";              ///< in userSetup.py
inline constexpr char versionNotWritten[]  = "error writing version file: ";         ///< then the folder
/// Part of a text in quotes, behind the key; then the target.
inline constexpr QLatin1String installedIn = " plugin installed in: "_l1;

// --- pluginError.txt ---
inline constexpr QLatin1String copyFailed       = "Could not copy file to: \n"_l1;                             ///< then the target
inline constexpr QLatin1String configFailed     = "Could not write config file in: \n"_l1;                     ///< then the file
inline constexpr QLatin1String userSetupFailed  = "Could not copy userSetup.py file to: "_l1;                  ///< then the target
inline constexpr QLatin1String removalFailed    = "Removal of old plugins failed, please remove manually."_l1; ///< of the old plug-ins

// clang-format on

} // namespace Message
