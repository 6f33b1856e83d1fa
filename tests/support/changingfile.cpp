// SPDX-License-Identifier: MIT
#include "changingfile.h"

#include <QFile>
#include <QThread>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace test {

namespace {

constexpr int patienceMs = 20;

void require(bool done, const char *what)
{
    if (!done) {
        qFatal("The changing file could not %s", what);
    }
}

/// Writes until \a content is out or nobody reads any more.
void writeAll(int pipe, const QByteArray &content)
{
    int written = 0;
    while (written < content.size()) {
        const ssize_t count = write(pipe, content.constData() + written,
                                    static_cast<size_t>(content.size() - written));
        if (count <= 0) {
            return;
        }
        written += static_cast<int>(count);
    }
}

/// Puts a new pipe at \a path in one step, whatever stands there.
void putPipe(const QByteArray &path)
{
    const QByteArray fresh = path + ".fresh";
    require(mkfifo(fresh.constData(), 0600) == 0
                && rename(fresh.constData(), path.constData()) == 0,
            "make a pipe");
}

void putRest(const QByteArray &path, const QByteArray &rest)
{
    require(unlink(path.constData()) == 0, "take the last pipe away");
    if (rest.isNull()) {
        require(mkdir(path.constData(), 0700) == 0, "make a folder");
        return;
    }
    QFile file(QFile::decodeName(path));
    require(file.open(QIODevice::WriteOnly) && file.write(rest) == rest.size(), "write its rest");
}

/// The path changes while the reader still waits for the end: what is opened next is new.
void serve(const QByteArray &path, const QList<QByteArray> &contents, const QByteArray &rest)
{
    for (int index = 0; index < contents.size(); ++index) {
        const int pipe = open(path.constData(), O_WRONLY);
        require(pipe >= 0, "open a pipe");
        writeAll(pipe, contents.at(index));
        if (index + 1 < contents.size()) {
            putPipe(path);
        } else {
            putRest(path, rest);
        }
        close(pipe);
    }
}

} // namespace

ChangingFile::ChangingFile(const QString &path, const QList<QByteArray> &contents,
                           const QByteArray &rest)
    : name(QFile::encodeName(path))
{
    // A reader that goes away early must not end the whole test program.
    std::signal(SIGPIPE, SIG_IGN);
    putPipe(name);
    const QByteArray served = name;
    writer.reset(QThread::create([served, contents, rest] { serve(served, contents, rest); }));
    writer->start();
}

ChangingFile::~ChangingFile()
{
    // Contents that nobody asked for would keep the thread, and the red test with it, forever.
    while (!writer->wait(patienceMs)) {
        const int reader = open(name.constData(), O_RDONLY | O_NONBLOCK);
        writer->wait(patienceMs);
        close(reader);
    }
}

} // namespace test
