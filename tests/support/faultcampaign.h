// SPDX-License-Identifier: MIT
#pragma once

#include "faultstation.h"
#include "tracer.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace test {

/// What came of disturbing every call of a kind.
struct CampaignReport {
    int faults = 0; ///< as many calls were hit, one a run
    QStringList complaints;
    Harms harms;
};

/// Campaigns make thousands of runs: puts their sandboxes on a memory disk where there is one that
/// lets programs run, unless the environment names a place.
void preferMemoryDisk();

/// Installs again and again, each time with another one of the run's calls disturbed.
class FaultCampaign {
public:
    explicit FaultCampaign(Scene scene);

    /// The kinds of calls of an undisturbed installation that can fail, or be its last.
    QByteArrayList calls() const;
    /// What else it calls, and no fault is injected into.
    QByteArrayList callsLeftAlone() const;

    /// Disturbs the program's first call of the kind, then in another run the second, and so on
    /// until no more is hit. After each run everything is judged and repaired. The \a allowed harms
    /// are counted, others are complaints.
    CampaignReport disturbEach(const Disturbance &disturbance, Harms allowed);

    /// What all the disturbances of this campaign came to.
    const CampaignReport &total() const
    {
        return sum;
    }

private:
    struct Post {
        explicit Post(Scene scene)
            : station(scene)
        {
        }

        FaultStation station;
        Tracer tracer;
    };

    void work(const Post &post, const Disturbance &disturbance, Harms allowed);
    static Findings disturbOnce(const Post &post, const Disturbance &disturbance, int number,
                                QByteArray &hit);
    void note(const Findings &findings, Harms allowed, const QByteArray &hit);

    std::vector<std::unique_ptr<Post>> posts; ///< one a thread
    QMap<QByteArray, CallCount> counts;
    std::atomic<int> nextCall{0};
    std::atomic<bool> isOver{false};
    std::mutex mutex;
    CampaignReport report;
    CampaignReport sum;
};

/// A campaign a scene, each set up when it is asked for first.
class FaultCampaigns {
public:
    FaultCampaign &of(Scene scene);

    /// How many faults were injected in all of them.
    int faults() const;

private:
    std::map<Scene, std::unique_ptr<FaultCampaign>> campaigns;
};

} // namespace test
