#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace holdfast {

/// Collects the time of each size and prints, when all are done, how it grows: the ratio of neighbouring sizes beside
/// the ratio that linear growth would have.
class GrowthReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (!run.error_occurred && run.run_type == Run::RT_Iteration) {
                const std::string name = run.run_name.function_name;
                if (!m_times.contains(name))
                    m_order.push_back(name);
                m_times[name][std::stoll(run.run_name.args)] = run.GetAdjustedCPUTime();
            }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        std::printf("\n%-34s %12s %12s %14s %10s %8s\n", "growth", "from", "to", "time at end", "ratio", "linear");
        for (const std::string& name : m_order)
            printGrowth(name, m_times[name]);
    }

private:
    static void printGrowth(const std::string& name, const std::map<long long, double>& times) {
        for (auto it = times.begin(); std::next(it) != times.end(); ++it) {
            const auto next = std::next(it);
            std::printf("%-34s %12lld %12lld %11.3f us %10.2f %8.2f\n", name.c_str(), it->first, next->first,
                        next->second, next->second / it->second,
                        static_cast<double>(next->first) / static_cast<double>(it->first));
        }
    }

    std::vector<std::string> m_order;
    std::map<std::string, std::map<long long, double>> m_times;
};

}  // namespace holdfast
