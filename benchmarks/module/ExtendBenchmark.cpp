// What extend costs in large groups, on long polylines and on splines of many control points. Prints each time, then
// its growth from size to size.
//
//   build/release/bin/benchmark_extend --benchmark_min_time=0.05

#include <benchmark/benchmark.h>

#include <yxdb/YxDbPolyline.h>

#include "benchmarks/module/Drawings.h"
#include "benchmarks/module/Growth.h"
#include "commands/extend/ConstraintExtendCmdCenter.h"

namespace {

using namespace holdfast;

constexpr int kEnd = 2;

/// One whole command on an entity of which exactly one constraint goes; `restore` puts that back for the next turn.
template <class Restore>
void extendEnd(benchmark::State& state, const YxDbObjectId& id, const YxGePoint3d& newEnd, Restore restore) {
    for (auto _ : state) {
        ConstraintExtendCmdCenter centre;
        centre.setDeleteConstraint(id, newEnd, kEnd);
        const auto open = YxDbObjectIdImpl::openObject(id, YxDb::kForWrite, false);
        if (centre.deleteConstraint(static_cast<const YxDbEntity*>(open.get())) != 1)
            state.SkipWithError("the command deleted something else than one constraint");
        restore();
    }
}

/// The line in the middle of a chain.
void extendLine(benchmark::State& state) {
    Chain chain(static_cast<int>(state.range(0)));
    const std::size_t middle = chain.lines.size() / 2;
    const YxGePoint3d newEnd = chain.line(middle).endPoint() + YxGeVector3d(4, 0, 0);
    extendEnd(state, chain.lines[middle], newEnd, [&] { chain.tie(chain.lines[middle], chain.lines[middle + 1]); });
}

/// The last vertex of a polyline with a dependency and a constraint on each of n segments.
void extendPolyline(benchmark::State& state) {
    const int segments = static_cast<int>(state.range(0));
    BenchmarkHost host;
    const YxDbObjectId id = addConstrainedPolyline(host, zigzag(0, segments));
    const auto fixEnd = [&] {
        host.constrain<YxFixedConstraint>(
            {.entity = id, .segment = segments, .isPoint = true, .pointType = YxDb::kEndImplicit});
    };
    fixEnd();
    extendEnd(state, id, {10.0 * segments + 9.0, 0, 0}, fixEnd);
}

/// The last of n control points with a constraint on each.
void extendSpline(benchmark::State& state) {
    const int controlPoints = static_cast<int>(state.range(0));
    BenchmarkHost host;
    const YxDbObjectId id = addConstrainedSpline(host, controlPoints);
    extendEnd(state, id, {10.0 * controlPoints + 9.0, 0, 0}, [&] {
        host.constrain<YxFixedConstraint>(
            {.entity = id, .isPoint = true, .pointType = YxDb::kEndImplicit, .pointIndex = controlPoints - 1});
    });
}

}  // namespace

BENCHMARK(extendLine)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(extendPolyline)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(extendSpline)->RangeMultiplier(4)->Range(256, 16384)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    GrowthReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
