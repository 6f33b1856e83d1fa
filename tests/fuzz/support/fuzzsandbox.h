// SPDX-License-Identifier: MIT
#pragma once

#include "filetree.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <cstddef>
#include <cstdint>

namespace fuzz {

/// Ends the process, which keeps the input, and says \a text unless \a kept.
void promise(bool kept, const char *text);

/// One input of the fuzzer, which may stand for several files: the separator "%%%%\n" parts them.
class Input {
public:
    Input(const uint8_t *data, size_t size);

    /// All of it, separators included. Never null.
    QByteArray whole() const;

    /// The content of the file number \a index. A part that says "%absent", or that the input does
    /// not reach to, is a file that is not there, and null.
    QByteArray part(int index) const;

private:
    QByteArray bytes;
    QList<QByteArray> parts;
};

/// The one folder in which a fuzzing process works, on a file system in memory where there is one.
/// It is empty, and the working directory, when an input begins. It stays when a promise is broken.
/// Paths given to the members are relative to it.
class Sandbox {
public:
    /// The absolute path of \a relative; of the folder itself for an empty text. No trailing slash.
    QString path(const QString &relative = QString()) const;

    /// Writes a file, with all missing folders above it. A null \a content writes nothing.
    void write(const QString &relative, const QByteArray &content) const;
    /// Returns the content of a file; a null array when there is none.
    QByteArray read(const QString &relative) const;
    void makeFolder(const QString &relative) const;
    /// Makes a link that says \a target as it stands, in a folder that is there.
    void makeLink(const QString &target, const QString &relative) const;

    /// Sets the time of a file to a date long ago that no other call gave, so that isAged() can
    /// tell whether the file was written since.
    void age(const QString &relative) const;
    bool isAged(const QString &relative) const;

    /// Everything below the folder \a relative.
    Tree tree(const QString &relative = QString()) const;

    /// Promises that everything below the folder is \a expected; a broken promise says \a text and
    /// the first entry that differs.
    void promiseTree(const Tree &expected, const char *text) const;
};

using Check = void (*)(const Sandbox &sandbox, const Input &input);

/// Gives up the rights of root, so that even a broken confinement deletes nothing of anybody's, and
/// makes the sandbox. To be called before the first input.
void prepare();

/// As prepare(), and starts the process anew from the folder "tool" of the sandbox. For code that
/// finds its files beside the running program. Members of Sandbox do not see the program.
void prepareRelocated(char *argv[]);

/// Hands an input to \a check in an empty sandbox, with the log swallowed.
int run(Check check, const uint8_t *data, size_t size);

} // namespace fuzz

/// The entry points of a fuzzing program, whose work is the function \a check.
#define DRASK_FUZZ_TARGET(check)                                                                   \
    extern "C" int LLVMFuzzerInitialize(int *, char ***)                                           \
    {                                                                                              \
        fuzz::prepare();                                                                           \
        return 0;                                                                                  \
    }                                                                                              \
    DRASK_FUZZ_INPUT(check)

/// As above, for a program that must lie in the sandbox.
#define DRASK_RELOCATED_FUZZ_TARGET(check)                                                         \
    extern "C" int LLVMFuzzerInitialize(int *, char ***argv)                                       \
    {                                                                                              \
        fuzz::prepareRelocated(*argv);                                                             \
        return 0;                                                                                  \
    }                                                                                              \
    DRASK_FUZZ_INPUT(check)

#define DRASK_FUZZ_INPUT(check)                                                                    \
    extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)                        \
    {                                                                                              \
        return fuzz::run(check, data, size);                                                       \
    }
