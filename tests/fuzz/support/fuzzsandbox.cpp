// SPDX-License-Identifier: MIT
#include "fuzzsandbox.h"

#include <QtGlobal>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <grp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fuzz {

namespace {

constexpr char homeVariable[] = "DRASK_FUZZ_HOME";

/// The identity of "nobody", who owns nothing.
constexpr uid_t ordinaryUserId = 65534;
constexpr gid_t ordinaryGroupId = 65534;

/// Between what age() gives and what the clock says.
constexpr time_t longAgo = 1000000000;
constexpr time_t notAged = 1500000000;

int folderBefore = -1;

std::string &home()
{
    static std::string path;
    return path;
}

QByteArray native(const QString &relative)
{
    return QByteArray::fromStdString(home()) + '/' + relative.toUtf8();
}

void swallow(QtMsgType type, const QMessageLogContext & /*context*/, const QString & /*message*/)
{
    if (type == QtFatalMsg) {
        std::abort();
    }
}

void becomeOrdinaryUser()
{
    if (geteuid() == 0) {
        require(setgroups(0, nullptr) == 0 && setgid(ordinaryGroupId) == 0
                    && setuid(ordinaryUserId) == 0,
                "The rights of root could not be given up");
        // A process that changed its user may otherwise not look at itself, as a leak check does.
        require(prctl(PR_SET_DUMPABLE, 1, 0, 0, 0) == 0, "The process hides from itself");
    }
}

/// File names are UTF-8 on the machines that the program is for, and so they must be here.
void useUtf8()
{
    require(setenv("LC_ALL", "C.UTF-8", 1) == 0 && std::setlocale(LC_ALL, "C.UTF-8") != nullptr,
            "The locale C.UTF-8 is missing");
}

std::string parentFolder()
{
    if (const char *chosen = std::getenv("TMPDIR")) {
        return chosen;
    }
    const char memory[] = "/dev/shm";
    return access(memory, W_OK | X_OK) == 0 ? memory : "/tmp";
}

/// The name holds a blank and a non-ASCII letter, and no letters by chance: some operations look
/// for the names of hosts in whole paths.
void makeHome()
{
    const std::string wanted = parentFolder() + "/drask füzz " + std::to_string(getpid());
    home() = wanted;
    for (int attempt = 1; mkdir(home().c_str(), 0700) != 0; ++attempt) {
        require(errno == EEXIST, home().c_str());
        home() = wanted + '.' + std::to_string(attempt);
    }
}

void removeHome()
{
    std::error_code ignored;
    std::filesystem::remove_all(home(), ignored);
}

/// The working directory is the sandbox while an input is worked on, and what it was in between:
/// the fuzzer has relative paths of its own.
void enterSandbox()
{
    folderBefore = open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    require(folderBefore >= 0 && chdir(home().c_str()) == 0, "The sandbox cannot be entered");
}

void leaveSandbox()
{
    require(fchdir(folderBefore) == 0, "The sandbox cannot be left");
    close(folderBefore);
}

/// The first name of \a some under which \a others has something else, or nothing.
QString firstDifference(const Tree &some, const Tree &others)
{
    for (auto entry = some.cbegin(); entry != some.cend(); ++entry) {
        const auto other = others.constFind(entry.key());
        if (other == others.cend() || other.value() != entry.value()) {
            return entry.key();
        }
    }
    return {};
}

} // namespace

void promise(bool kept, const char *text)
{
    if (!kept) {
        static_cast<void>(
            std::fprintf(stderr, "Broken promise: %s\nThe sandbox: %s\n", text, home().c_str()));
        leaveSandbox();
        std::abort();
    }
}

Input::Input(const uint8_t *data, size_t size)
    : bytes(reinterpret_cast<const char *>(data), static_cast<int>(size))
{
    const QByteArray separator("%%%%\n");
    int begin = 0;
    for (auto end = bytes.indexOf(separator); end >= 0; end = bytes.indexOf(separator, begin)) {
        parts.append(bytes.mid(begin, end - begin));
        begin = end + separator.size();
    }
    parts.append(bytes.mid(begin));
}

QByteArray Input::whole() const
{
    return bytes.isNull() ? QByteArray("") : bytes;
}

QByteArray Input::part(int index) const
{
    if (index >= parts.size() || parts.at(index).trimmed() == "%absent") {
        return {};
    }
    return parts.at(index).isEmpty() ? QByteArray("") : parts.at(index);
}

QString Sandbox::path(const QString &relative) const
{
    const QString folder = QString::fromStdString(home());
    return relative.isEmpty() ? folder : folder + QLatin1Char('/') + relative;
}

void Sandbox::write(const QString &relative, const QByteArray &content) const
{
    if (!content.isNull()) {
        writeFile(native(relative), content);
    }
}

QByteArray Sandbox::read(const QString &relative) const
{
    return readFile(native(relative));
}

void Sandbox::makeFolder(const QString &relative) const
{
    makeFolders(native(relative));
}

void Sandbox::makeLink(const QString &target, const QString &relative) const
{
    require(symlink(target.toUtf8().constData(), native(relative).constData()) == 0,
            "A link cannot be made in the sandbox");
}

void Sandbox::age(const QString &relative) const
{
    static timespec newest = {longAgo, 0};
    ++newest.tv_sec;
    const timespec times[] = {newest, newest};
    require(utimensat(AT_FDCWD, native(relative).constData(), &times[0], 0) == 0,
            "A file of the sandbox cannot be aged");
}

bool Sandbox::isAged(const QString &relative) const
{
    struct stat status = {};
    return stat(native(relative).constData(), &status) == 0 && status.st_mtim.tv_sec < notAged;
}

Tree Sandbox::tree(const QString &relative) const
{
    return readTree(relative.isEmpty() ? QByteArray::fromStdString(home()) : native(relative));
}

void Sandbox::promiseTree(const Tree &expected, const char *text) const
{
    const Tree actual = tree();
    QString difference = firstDifference(actual, expected);
    if (difference.isNull()) {
        difference = firstDifference(expected, actual);
    }
    if (!difference.isNull()) {
        static_cast<void>(std::fprintf(stderr, "Differs: %s\n", qPrintable(difference)));
    }
    promise(difference.isNull(), text);
}

void prepare()
{
    becomeOrdinaryUser();
    useUtf8();
    if (const char *existing = std::getenv(homeVariable)) {
        home() = existing;
    } else {
        makeHome();
    }
    require(std::atexit(removeHome) == 0, "The end of the process cannot be waited for");
}

void prepareRelocated(char *argv[])
{
    prepare();
    if (std::getenv(homeVariable) != nullptr) {
        return;
    }
    const std::filesystem::path folder(native("tool").constData());
    const std::filesystem::path program = folder / overlookedName;
    std::error_code error;
    std::filesystem::create_directory(folder, error);
    require(std::filesystem::copy_file("/proc/self/exe", program, error)
                && setenv(homeVariable, home().c_str(), 1) == 0,
            "The program cannot be copied into the sandbox");
    execv(program.c_str(), argv);
    require(false, "The program cannot be started from the sandbox");
}

int run(Check check, const uint8_t *data, size_t size)
{
    emptyFolder(QByteArray::fromStdString(home()));
    enterSandbox();
    qInstallMessageHandler(swallow);
    check(Sandbox(), Input(data, size));
    leaveSandbox();
    return 0;
}

} // namespace fuzz
