// Console output plus, at the end, each benchmark's time as a multiple of its group's baseline
// from the same run. A group is the name up to the first '/'; its baseline is "<group>/baseline".
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
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.iterations == 0) continue;
            const std::string name = run.benchmark_name();
            times_.emplace_back(name, run.GetAdjustedCPUTime());
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
