// SPDX-License-Identifier: MIT
#pragma once

#include "disk/descriptor.h"

#include <QByteArray>
#include <QString>

#include <memory>

/// \file
/// A new file that takes the place of an old one.

/// A file that is written beside another one, under a name that no program loads, and takes its
/// place when it is complete: whoever looks finds the old content or the new one.
///
/// A run that is killed leaves its stand-in behind, in the folder of the file, as
/// ".drask-unfinished" or, if that is taken, ".drask-unfinished-2". The next StandIn for that
/// folder takes it away; that of a run that is still alive is locked and stays.
///
/// QSaveFile does not do: it drops the file's owner, group, access list and further attributes,
/// parts a file from its other names, does not tell when the disk failed, and the names that it
/// leaves behind could be the user's.
class StandIn {
public:
    /// What stands where the new file is to be.
    enum class Place {
        Free,  ///< nothing
        Plain, ///< a plain file, or what cannot be looked at
        Other, ///< something else, such as a folder or a device
    };

    /// Clears what killed runs left, and looks at the place of the file \a path. A link is
    /// followed, also one to nothing: the place is where it leads.
    explicit StandIn(const QString &path);
    /// Takes the new file away, unless it has taken the place.
    ~StandIn();
    StandIn(const StandIn &) = delete;
    StandIn &operator=(const StandIn &) = delete;
    StandIn(StandIn &&) = delete;
    StandIn &operator=(StandIn &&) = delete;

    /// What stood there when the object was made.
    Place place() const;

    /// Makes the new file, with the rights that any new file gets if the place is free, and
    /// otherwise so that nobody else can read it. Returns false where no file can be made beside.
    bool make();

    /// The new file, open for writing.
    int handle() const;

    /// Gives the new file the owner, group, rights, access list and attributes of the open file
    /// \a old. Returns false where one of them cannot be given, and where \a old has further names,
    /// which would keep the old content.
    bool becomeLike(int old) const;

    /// False when somebody has written there since the place was looked at.
    bool isPlaceAsSeen() const;

    /// Takes the place, whatever stands there by now. Returns false where that is not possible.
    bool takePlace();

    /// Takes the new file away: its room may be needed.
    void giveUp();

    /// Takes away what stands in the place by now. For a place that was free.
    void clearPlace() const;

private:
    struct Seen;

    bool makeNamed(const QByteArray &candidate);

    const QByteArray target; ///< behind all links; empty when that cannot be told
    Place kind = Place::Other;
    const std::unique_ptr<Seen> seen;
    QByteArray name; ///< of the new file; empty when there is none
    Descriptor file;
};

/// The name of a stand-in in the folder \a folder, which has no trailing slash, in the encoding of
/// file names. The first is number 1.
QByteArray unfinishedName(const QString &folder, int number = 1);

/// How many stand-ins there may be in one folder. More than one is needed only while several runs
/// write there.
inline constexpr int unfinishedNames = 2;

/// Takes away what killed runs left beside the file \a path.
void clearUnfinished(const QString &path);

/// Sets the time of the open file \a handle as writing would. Returns false when that fails.
bool touch(int handle);
