// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace test {

/// What the next undisturbed run makes of a start-up file, and how.
struct NextContent {
    QByteArray content;
    bool added = false; ///< the addition was put behind what is there
};

/// A start-up file of the user's to which an installation adds, told apart from the program: worked
/// out from what is in the file alone, in whatever state a disturbed run left it.
class StartUpFile {
public:
    /// Maya's userSetup.py: \a block is added at first, \a pathLine kept up to date later.
    static StartUpFile maya(const QByteArray &block, const QByteArray &pathLine);
    /// Houdini's houdini.env.
    static StartUpFile houdini();

    const QByteArray &addition() const
    {
        return added;
    }
    NextContent afterNextRun(const QByteArray &content) const;
    /// \a content with the line of the earlier run brought up to date, and nothing else.
    QByteArray withNewLine(const QByteArray &content) const;

private:
    /// The line of an earlier run that is to be brought up to date; empty when there is none.
    QByteArray oldLine(const QByteArray &content) const;
    bool isReplacedAsAWhole(const QByteArray &content) const;

    QByteArray added;
    QByteArray newLine;
    QByteArray prefix;            ///< of the line to be brought up to date
    bool endsWithOldLine = false; ///< what is behind that line goes with an update
};

} // namespace test
