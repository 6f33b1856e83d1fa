// SPDX-License-Identifier: MIT
#include "status/runlog.h"

#include <cstdint>
#include <cstdlib>

namespace {

/// Two targets for each host that a log names.
QList<PluginPathStruct> targetsOf(const QString &key, const QString &path)
{
    PluginPathStruct one;
    one.applicationName = key;
    one.path = path;
    PluginPathStruct other = one;
    other.pluginSubFolder = QStringLiteral("/other");
    return {one, other};
}

void require(bool isKept)
{
    if (!isKept) {
        std::abort();
    }
}

} // namespace

/// The bytes up to the first zero are a log, the rest is an error file. Whatever they are, a story
/// comes of them: a run that ended has a code, a host that failed says why.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const int zero = bytes.indexOf('\0');
    const QString log = QString::fromUtf8(zero < 0 ? bytes : bytes.left(zero));
    const QString errors = zero < 0 ? QString() : QString::fromUtf8(bytes.mid(zero + 1));
    const RunStory story = readRun(log, errors, targetsOf);
    require(!story.run.ended || story.run.exitCode.has_value());
    require(story.run.ended || heaviest(story.problems) >= Gravity::Look);
    for (const HostAnswer &host : story.hosts) {
        require(host.state != State::Failed || heaviest(host.problems) == Gravity::Fails);
        for (const Problem &problem : host.problems) {
            require(!problem.text.isEmpty());
        }
    }
    return 0;
}
