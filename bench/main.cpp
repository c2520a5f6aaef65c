#include "bed.h"

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace bench
{

static std::vector<std::pair<std::string, std::string>> &Comparisons()
{
    static std::vector<std::pair<std::string, std::string>> comparisons;
    return comparisons;
}

void Compare(const char *pcOurs, const char *pcTheirs)
{
    Comparisons().emplace_back(pcOurs, pcTheirs);
}

// The usual table, and the ratios under it.
class Reporter : public benchmark::ConsoleReporter
{
public:
    Reporter() : benchmark::ConsoleReporter(OO_None)
    {
    }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            // With repetitions the median stands for the benchmark, and without them its one run.
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median") continue;
            m_times[run.run_name.function_name] =
                run.real_accumulated_time / double(run.run_type == Run::RT_Aggregate ? 1 : run.iterations);
        }
        benchmark::ConsoleReporter::ReportRuns(runs);
    }

    void Finalize() override
    {
        std::printf("\n%-34s %-34s %10s %10s %7s\n", "ours", "beside", "ours/us", "beside/us", "ratio");
        for (const auto &pair : Comparisons()) {
            const auto ours = m_times.find(pair.first), theirs = m_times.find(pair.second);
            if (ours == m_times.end() || theirs == m_times.end()) continue;
            std::printf("%-34s %-34s %10.2f %10.2f %7.2f\n", pair.first.c_str(), pair.second.c_str(),
                        ours->second * 1e6, theirs->second * 1e6, ours->second / theirs->second);
        }
    }

private:
    std::map<std::string, double> m_times; // seconds an iteration
};

} // namespace bench

int main(int argc, char **argv)
{
    bench::Reporter reporter;

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
