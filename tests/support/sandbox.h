// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

namespace test {

/// A folder with all that is in it: relative path -> content. Folders end in "/" and have an empty
/// content; links end in "@" and have their target as content.
using Tree = QMap<QString, QByteArray>;

/// Reads the whole tree below \a folder, hidden entries included. Links are not followed.
Tree readTree(const QString &folder);

/// Adds a file or (with a "/" at its end) a folder to \a tree, with all folders above it.
void put(Tree &tree, const QString &path, const QByteArray &content = "");

/// The files below \a folder, relative to it, in the order in which a copy takes them: as the file
/// system lists them, a folder's own files before those of its subfolders.
QStringList filesInCopyOrder(const QString &folder);

/// Says, a line an entry, how \a actual differs from \a expected; empty when it does not.
/// Compare with QCOMPARE(treeDifference(…), QString()).
QString treeDifference(const Tree &actual, const Tree &expected);

/// A folder that a case works in. Paths given to the members are relative to it.
class Folder {
public:
    explicit Folder(QString folder = QString());

    /// The absolute path of \a relative; of the folder itself for an empty text. No trailing slash.
    QString path(const QString &relative = QString()) const;

    /// Writes a file, with all missing folders above it.
    void write(const QString &relative, const QByteArray &content) const;
    /// Returns the content of a file; a null array when there is none.
    QByteArray read(const QString &relative) const;
    bool exists(const QString &relative) const;
    void makeFolder(const QString &relative) const;
    void makeLink(const QString &target, const QString &relative) const;
    void remove(const QString &relative) const;

    /// Sets the time of a file back to a date long ago, so that isAged() can tell whether it was
    /// written since.
    void age(const QString &relative) const;
    bool isAged(const QString &relative) const;

    /// Everything in the folder.
    Tree tree() const;

protected:
    QString root;
};

/// A temporary folder of one test case, with a blank and a non-ASCII letter in its name. When the
/// case is red, the folder is kept and its name printed; see redfolders.h.
class Sandbox : public Folder {
public:
    Sandbox();
    ~Sandbox();
    Sandbox(const Sandbox &) = delete;
    Sandbox &operator=(const Sandbox &) = delete;
};

/// While it lives, \a folder is the working directory.
class WorkingFolder {
public:
    explicit WorkingFolder(const QString &folder);
    ~WorkingFolder();
    WorkingFolder(const WorkingFolder &) = delete;
    WorkingFolder &operator=(const WorkingFolder &) = delete;

private:
    QString before;
};

} // namespace test
