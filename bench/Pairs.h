#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

/// What the table at the end of a run says: each line compares two benchmarks of that run, or holds
/// one against a fixed cost.
namespace Pairs {

enum class Measure {
    Rate,        ///< items per second of ours over those of the peer; at least the target
    Time,        ///< time of ours over that of the peer; at most the target
    Cost,        ///< nanoseconds an item of ours; at most the target, without a peer
    Milliseconds ///< of one iteration of ours; at most the target, without a peer
};

struct Pair {
    std::string title;
    std::string ours;
    std::string peer;
    Measure measure;
    double target; ///< 0 for a line that is only told
};

/// Registers a line. The benchmarks are known by the names they are registered under.
int Add(Pair pair);

/// Collects the medians of a run on their way to the console, and prints the table.
class Reporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    void PrintTable() const;
};

} // namespace Pairs
