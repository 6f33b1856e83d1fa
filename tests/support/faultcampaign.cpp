// SPDX-License-Identifier: MIT
#include "faultcampaign.h"

#include <QDir>
#include <QFile>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <thread>

#ifdef Q_OS_LINUX
#include <sys/statvfs.h>
#endif

namespace test {

namespace {

/// The calls that look for, read, write, make and close files, or start the companion program. Left
/// alone are those that cannot fail so (a seek in an open file; questions to the process itself),
/// those for memory and for the companion's end, and three more: the system library ends every
/// program that gets no event descriptor, before a log could be kept; a companion that cannot be
/// forked is a case of its own; and the tracer makes a close fail by leaving the file open, so that
/// a pipe to the companion would never end (the closing of texts is disturbed in tst_faults_texts).
const QByteArrayList fallibleCalls =
    QByteArray(
        "access chmod copy_file_range dup faccessat faccessat2 fchmod fchmodat fchown fcntl "
        "fdatasync fgetxattr flistxattr flock fremovexattr fsetxattr fstat fsync ftruncate "
        "getcwd getdents64 ioctl link linkat lstat mkdir mkdirat newfstatat open openat pipe2 "
        "ppoll read readlink readlinkat rename renameat renameat2 sendfile stat statx unlink "
        "unlinkat utimensat write")
        .split(' ');

constexpr int enoughComplaints = 20;

/// True for a disk that lets programs run and has room for some workstations.
bool isOfUse(const char *folder)
{
#ifdef Q_OS_LINUX
    struct statvfs disk = {};
    const quint64 plenty = 256U << 20U;
    return statvfs(folder, &disk) == 0 && (disk.f_flag & ST_NOEXEC) == 0
        && quint64(disk.f_bavail) * disk.f_frsize > plenty;
#else
    Q_UNUSED(folder)
    return false;
#endif
}

/// A run that is killed while it starts the companion leaves a process that waits for it for ever.
void endCompanionOf(const FaultStation &station)
{
    const QString program = station.tool("drask-installer");
    const QStringList processes = QDir("/proc").entryList(QDir::Dirs);
    for (const QString &process : processes) {
        if (QFile::symLinkTarget("/proc/" + process + "/exe") == program) {
            ::kill(process.toInt(), SIGKILL);
        }
    }
}

Fault faultOf(const Disturbance &disturbance)
{
    if (disturbance.isSignal()) {
        return Fault::Kill;
    }
    return disturbance.fromThenOn ? Fault::LastingError : Fault::Error;
}

} // namespace

void preferMemoryDisk()
{
    const char memoryDisk[] = "/dev/shm";
    if (!qEnvironmentVariableIsSet("TMPDIR") && isOfUse(memoryDisk)) {
        qputenv("TMPDIR", memoryDisk);
    }
}

FaultCampaign::FaultCampaign(Scene scene)
{
    const int threads = qBound(1, QThread::idealThreadCount(), 4);
    for (int thread = 0; thread < threads; ++thread) {
        posts.push_back(std::make_unique<Post>(scene));
    }
    const Post &post = *posts.front();
    post.station.reset();
    post.station.run({}, post.station.options(post.tracer.watch()));
    counts = post.tracer.calls();
}

QByteArrayList FaultCampaign::calls() const
{
    QByteArrayList found;
    for (const QByteArray &call : fallibleCalls) {
        if (counts.value(call).all > counts.value(call).startUp) {
            found << call;
        }
    }
    return found;
}

QByteArrayList FaultCampaign::callsLeftAlone() const
{
    QByteArrayList found;
    for (auto count = counts.cbegin(); count != counts.cend(); ++count) {
        if (count->all > count->startUp && !fallibleCalls.contains(count.key())) {
            found << count.key();
        }
    }
    return found;
}

Findings FaultCampaign::disturbOnce(const Post &post, const Disturbance &disturbance, int number,
                                    QByteArray &hit)
{
    post.station.reset();
    const QStringList tracer = post.tracer.disturb(disturbance, number);
    const RunResult result = post.station.run({}, post.station.options(tracer));
    hit = disturbance.isSignal() && result.crashed
        ? disturbance.call + " number " + QByteArray::number(number) + ": " + disturbance.effect
        : post.tracer.hit(disturbance);
    if (result.crashed) {
        endCompanionOf(post.station);
    }
    if (hit.isEmpty()) {
        return {};
    }
    Findings findings = post.station.findings(result, faultOf(disturbance));
    findings.complaints << post.station.repair();
    return findings;
}

void FaultCampaign::note(const Findings &findings, Harms allowed, const QByteArray &hit)
{
    const std::lock_guard<std::mutex> guard(mutex);
    ++report.faults;
    report.harms |= findings.harms;
    QStringList complaints = findings.complaints;
    const Harms forbidden = findings.harms & ~allowed;
    if (forbidden) {
        complaints << "harm: " + harmNames(forbidden);
    }
    if (!complaints.isEmpty()) {
        report.complaints << QString::fromUtf8(hit) + "\n    " + complaints.join("\n    ");
    }
    if (report.complaints.size() >= enoughComplaints) {
        isOver = true;
    }
}

void FaultCampaign::work(const Post &post, const Disturbance &disturbance, Harms allowed)
{
    while (!isOver) {
        const int number = ++nextCall;
        if (!disturbance.isSignal() && number == counts.value(disturbance.call).wakeUp) {
            continue;
        }
        QByteArray hit;
        const Findings findings = disturbOnce(post, disturbance, number, hit);
        if (hit.isEmpty()) {
            isOver = true;
        } else {
            note(findings, allowed, hit);
        }
    }
}

CampaignReport FaultCampaign::disturbEach(const Disturbance &disturbance, Harms allowed)
{
    report = {};
    isOver = false;
    const CallCount &count = counts[disturbance.call];
    nextCall = disturbance.fromThenOn ? qMax(count.startUp, count.wakeUp) : count.startUp;
    std::vector<std::thread> threads;
    for (const std::unique_ptr<Post> &post : posts) {
        threads.emplace_back([&] { work(*post, disturbance, allowed); });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    sum.faults += report.faults;
    sum.harms |= report.harms;
    return report;
}

FaultCampaign &FaultCampaigns::of(Scene scene)
{
    std::unique_ptr<FaultCampaign> &campaign = campaigns[scene];
    if (!campaign) {
        campaign = std::make_unique<FaultCampaign>(scene);
    }
    return *campaign;
}

int FaultCampaigns::faults() const
{
    int faults = 0;
    for (const auto &campaign : campaigns) {
        faults += campaign.second->total().faults;
    }
    return faults;
}

} // namespace test
