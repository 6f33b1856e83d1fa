// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>

class QThread;

namespace test {

/// A file that somebody else changes while the code under test works on it: each time it is opened
/// for reading it has the next content. Made of named pipes, so it cannot be opened for writing
/// before its last content was read.
class ChangingFile {
public:
    /// Whoever opens \a path first reads the first of \a contents, the next one the second, and so
    /// on. Before the last of these readers meets the end, \a path becomes a plain file with the
    /// content \a rest, or a folder when \a rest is null.
    ChangingFile(const QString &path, const QList<QByteArray> &contents, const QByteArray &rest);
    ~ChangingFile();
    ChangingFile(const ChangingFile &) = delete;
    ChangingFile &operator=(const ChangingFile &) = delete;

private:
    QByteArray name;
    std::unique_ptr<QThread> writer;
};

} // namespace test
