#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "benchmarks/solver/Workloads.h"
#include "formats/json/JsonReader.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/diagnosis/Diagnose.h"
#include "solver/src/solving/Solve.h"

// How long a diagnosis takes, and a refusal with its names:
//
//     benchmark_diagnose [folder of drawings]
//
// First the growth of a diagnosis with the number of entities: ratio is the time of the last size over that of the one
// before, 2 when linear. Then, for the largest hundred drawings of the folder, each with one dimension said again with
// another value: the time of a solve that fails and of the diagnosis that names the conflict.

namespace holdfast::solver::detail {
namespace {

double milliseconds(auto&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

SketchData gridWith(int entities) {
    return gridOf(entities).sketch;
}
SketchData mechanismWith(int entities) {
    return mechanismOf(entities).sketch;
}

void printGrowth(const char* name, SketchData (*make)(int)) {
    double before = 0.0;
    for (const int size : {4000, 8000, 16000, 32000, 64000}) {
        const SketchData sketch = make(size);
        Diagnosis diagnosis;
        const double time = milliseconds([&] { diagnosis = diagnose(sketch, true); });
        std::printf("%-10s %8d %10.1f %6.1f   %d free, %zu redundant\n", name, size, time,
                    before > 0.0 ? time / before : 0.0, diagnosis.freedom, diagnosis.redundant.size());
        std::fflush(stdout);
        before = time;
    }
}

bool contradict(SketchData& sketch) {
    for (std::size_t i = 0; i < sketch.constraints.size(); ++i) {
        SketchConstraint again = sketch.constraints[i];
        if (!again.binds() || !(again.value > 0.0) || again.own)
            continue;
        again.id += "-again";
        again.value *= 1.1;
        sketch.addConstraint(std::move(again));
        return true;
    }
    return false;
}

struct Refusal {
    std::string name;
    std::size_t constraints;
    double solve, diagnosis;
    std::size_t conflicts, members;
};

std::vector<SketchData> largest(const std::string& folder, std::vector<std::string>& names) {
    std::vector<std::pair<std::size_t, std::filesystem::path>> bySize;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        bySize.emplace_back(entry.file_size(), entry.path());
    std::sort(bySize.rbegin(), bySize.rend());
    std::vector<SketchData> sketches;
    for (const auto& [size, path] : bySize) {
        std::ifstream in(path);
        SketchData sketch = hosting::sketchFrom(formats::readJson(in, path.filename().string()));
        if (!solve(sketch, {.namesConflicts = false}).isSolved() || !contradict(sketch))
            continue;
        sketches.push_back(std::move(sketch));
        names.push_back(path.stem().string());
        if (sketches.size() == 100)
            break;
    }
    return sketches;
}

void printRefusals(const std::string& folder) {
    std::vector<std::string> names;
    std::vector<Refusal> refusals;
    const std::vector<SketchData> sketches = largest(folder, names);
    for (std::size_t i = 0; i < sketches.size(); ++i) {
        SketchData sketch = sketches[i];
        Refusal refusal{names[i], sketch.constraints.size(), 0, 0, 0, 0};
        refusal.solve = milliseconds([&] { (void)solve(sketch, {}); });
        refusal.diagnosis = milliseconds([&] {
            const Diagnosis diagnosis = diagnose(sketch);
            refusal.conflicts = diagnosis.conflicts.size();
            refusal.members = diagnosis.conflicts.empty() ? 0 : diagnosis.conflicts.front().constraints.size();
        });
        refusals.push_back(refusal);
    }
    if (refusals.empty())
        return;
    const auto told = [&](const char* what, double Refusal::*time) {
        std::sort(refusals.begin(), refusals.end(),
                  [&](const Refusal& a, const Refusal& b) { return a.*time < b.*time; });
        const Refusal &middle = refusals[refusals.size() / 2], &worst = refusals.back();
        std::printf("%s: %zu drawings, median %.1f ms, worst %.1f ms (%s, %zu constraints)\n", what, refusals.size(),
                    middle.*time, worst.*time, worst.name.c_str(), worst.constraints);
    };
    told("refused solve with names", &Refusal::solve);
    told("diagnosis with all conflicts", &Refusal::diagnosis);
    std::size_t none = 0, several = 0, largestSet = 0;
    for (const Refusal& refusal : refusals) {
        none += refusal.conflicts == 0;
        several += refusal.conflicts > 1;
        largestSet = std::max(largestSet, refusal.members);
    }
    std::printf("without a set: %zu, with several: %zu, largest set: %zu\n", none, several, largestSet);
}

int run(const char* folder) {
    std::printf("%-10s %8s %10s %6s\n", "sketch", "entities", "ms", "ratio");
    printGrowth("star", starOf);
    printGrowth("slots", slotsOf);
    printGrowth("grid", gridWith);
    printGrowth("mechanism", mechanismWith);
    if (folder != nullptr)
        printRefusals(folder);
    return 0;
}

}  // namespace
}  // namespace holdfast::solver::detail

int main(int argc, char** argv) {
    return holdfast::solver::detail::run(argc > 1 ? argv[1] : nullptr);
}
