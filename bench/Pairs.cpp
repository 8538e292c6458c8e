#include "Pairs.h"

#include <cstdio>
#include <map>

namespace {

struct Result {
    double seconds = 0; ///< of one iteration
    double items = 0;   ///< per second
};

std::vector<Pairs::Pair>& Table() {
    static std::vector<Pairs::Pair> table;
    return table;
}

std::map<std::string, Result>& Medians() {
    static std::map<std::string, Result> medians;
    return medians;
}

double Value(const Pairs::Pair& pair, const Result& ours, const Result& peer) {
    switch (pair.measure) {
    case Pairs::Measure::Rate:
        return ours.items / peer.items;
    case Pairs::Measure::Time:
        return ours.seconds / peer.seconds;
    case Pairs::Measure::Cost:
        return 1e9 / ours.items;
    case Pairs::Measure::Milliseconds:
        return 1e3 * ours.seconds;
    }
    return 0;
}

bool NeedsPeer(const Pairs::Pair& pair) {
    return pair.measure == Pairs::Measure::Rate || pair.measure == Pairs::Measure::Time;
}

const char* Unit(const Pairs::Pair& pair) {
    if (NeedsPeer(pair))
        return "x";
    return pair.measure == Pairs::Measure::Cost ? "ns" : "ms";
}

void Print(const Pairs::Pair& pair, const Result& ours, const Result& peer) {
    const double value = Value(pair, ours, peer);
    const bool atLeast = pair.measure == Pairs::Measure::Rate;
    std::printf("%-52s %8.0f %8.0f %9.2f %-2s", pair.title.c_str(), ours.items / 1e6,
                peer.items / 1e6, value, Unit(pair));
    if (pair.target > 0) {
        const bool met = atLeast ? value >= pair.target : value <= pair.target;
        std::printf("  %s %5.2f  %s", atLeast ? ">=" : "<=", pair.target, met ? "met" : "MISSED");
    }
    std::printf("\n");
}

} // namespace

int Pairs::Add(Pair pair) {
    Table().push_back(std::move(pair));
    return 0;
}

void Pairs::Reporter::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.error_occurred || (run.repetitions > 1 && run.aggregate_name != "median"))
            continue;
        const auto items = run.counters.find("items_per_second");
        Medians()[run.run_name.function_name] = {
            run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit),
            items == run.counters.end() ? 0.0 : static_cast<double>(items->second)};
    }
    ConsoleReporter::ReportRuns(runs);
}

void Pairs::Reporter::PrintTable() const {
    std::printf("\n%-52s %8s %8s %9s\n", "", "ours M/s", "peer M/s", "result");
    for (const Pair& pair : Table()) {
        const auto ours = Medians().find(pair.ours), peer = Medians().find(pair.peer);
        if (ours == Medians().end() || (peer == Medians().end() && NeedsPeer(pair)))
            continue;
        Print(pair, ours->second, peer == Medians().end() ? Result{} : peer->second);
    }
}
