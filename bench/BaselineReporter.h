// Console output plus, at the end, each benchmark's time as a multiple of its group's baseline
// from the same run (the median when repetitions are asked for). A group is the name up to the
// first '/'; its baseline is "<group>/baseline".
// Ratios hold on a noisy machine where absolute times do not.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace qvox::bench {

class BaselineReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        // With repetitions, the median stands for the benchmark; without, its one run.
        for (const Run& run : runs) {
            const bool single = run.run_type == Run::RT_Iteration && run.repetitions <= 1;
            const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
            if (!single && !median) continue;
            times_.emplace_back(run.run_name.str(), run.GetAdjustedCPUTime());
        }
    }

    void Finalize() override {
        ConsoleReporter::Finalize();
        std::map<std::string, double> baselines;
        for (const auto& [name, time] : times_) {
            const std::string group = name.substr(0, name.find('/'));
            if (name == group + "/baseline") baselines[group] = time;
        }
        std::printf("\n%-48s %10s\n", "ratio to the baseline of the same run", "x baseline");
        for (const auto& [name, time] : times_) {
            const std::string group = name.substr(0, name.find('/'));
            const auto baseline = baselines.find(group);
            if (baseline == baselines.end() || name == group + "/baseline") continue;
            std::printf("%-48s %10.2f\n", name.c_str(), time / baseline->second);
        }
    }

  private:
    std::vector<std::pair<std::string, double>> times_;
};

}  // namespace qvox::bench

// A main that runs every benchmark with the reporter above.
#define QVOX_BENCHMARK_MAIN()                                             \
    int main(int argc, char** argv) {                                     \
        benchmark::Initialize(&argc, argv);                               \
        if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1; \
        qvox::bench::BaselineReporter reporter;                           \
        benchmark::RunSpecifiedBenchmarks(&reporter);                     \
        benchmark::Shutdown();                                            \
        return 0;                                                         \
    }
