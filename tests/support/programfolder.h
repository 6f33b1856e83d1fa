// SPDX-License-Identifier: MIT
#pragma once

#include "sandbox.h"

namespace test {

/// The folder of a test program that was copied to a folder of its own: there the code under test
/// looks for its files and leaves its own. A new object clears it of what the case before left
/// there; where the folder is not proved to be the program's own, it ends the program instead.
class ProgramFolder : public Folder {
public:
    ProgramFolder();

    /// Everything in the folder but the test program.
    Tree tree() const;
};

/// Becomes a copy of this program in a temporary folder of its own, and starts over with the same
/// words. The process stays the same, for debuggers and for whoever waits for it. The folder has a
/// blank and a non-ASCII letter in its name.
[[noreturn]] void goToOwnFolder(int argc, char *argv[]);

/// Takes what goToOwnFolder() added to the words out of them. Returns whether the folder of the
/// program is proved to be its own: a secret among the words is the one that lies above the folder.
bool takeProofOfOwnFolder(int &argc, char *argv[]);

/// Removes the folder; when the \a result of the cases says that one is red, it is kept as a red
/// one.
void leaveOwnFolder(int argc, char *argv[], int result);

} // namespace test
