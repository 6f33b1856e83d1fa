// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace test {

/// Gives up the rights of root for good; for child processes. Nothing to do for other users.
void becomeOrdinaryUser();

/// Gives \a path to the user as whom permission cases run when the tests run as root.
void giveToOrdinaryUser(const QString &path);

/// While it lives, this process acts as an ordinary user, whom file permissions stop.
class OrdinaryUser {
public:
    OrdinaryUser();
    ~OrdinaryUser();
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

    /// False where the rights of root could not be given up: skip the case, and say so.
    bool isActive() const;

private:
    bool wasRoot;
};

/// Takes the write permission from a file or folder, and gives it back when it goes away.
class ReadOnly {
public:
    explicit ReadOnly(const QString &path);
    ~ReadOnly();
    ReadOnly(const ReadOnly &) = delete;
    ReadOnly &operator=(const ReadOnly &) = delete;

private:
    QString name;
};

} // namespace test

/// From here to the end of the block the case acts as an ordinary user; it is skipped where that
/// cannot be.
#define BECOME_ORDINARY_USER_OR_SKIP()                                                             \
    const test::OrdinaryUser ordinaryUser;                                                         \
    if (!ordinaryUser.isActive())                                                                  \
    QSKIP("The rights of root cannot be given up here")
