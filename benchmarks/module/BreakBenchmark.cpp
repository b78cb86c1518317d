// What break and trim cost in large groups. Prints each time, then its growth from size to size.
//
//   build/release/bin/benchmark_break

#include <benchmark/benchmark.h>

#include <yxdb/YxDbPolyline.h>

#include "benchmarks/module/Drawings.h"
#include "benchmarks/module/Growth.h"
#include "commands/break/ConstraintBreakCmdCenter.h"
#include "commands/break/ConstraintTrimCmdCenter.h"

namespace {

using namespace holdfast;

/// The least that any clean-up needs: one look at every geometry of the group.
void barePass(benchmark::State& state) {
    Chain chain(static_cast<int>(state.range(0)));
    const YxDbAssoc2dConstraintGroup& group = HostBuilder::group(chain.group);
    for (auto _ : state) {
        YxArray<YxConstrainedGeometry*> geometries;
        group.getConstrainedGeometries(geometries);
        unsigned int sum = 0;
        for (const YxConstrainedGeometry* geometry : geometries)
            if (geometry->isKindOf(YxConstrainedImplicitPoint::desc()))
                sum += static_cast<const YxConstrainedImplicitPoint*>(geometry)->constrainedCurveId();
        benchmark::DoNotOptimize(sum);
    }
}

std::unique_ptr<YxDbEntity> withReactorsOf(const YxDbObjectId& id, std::unique_ptr<YxDbEntity> piece) {
    for (const YxDbObjectId& reactor : HostAccess::reactors(*HostAccess::peek(id)))
        HostAccess::addReactor(*piece, reactor);
    return piece;
}

/// One whole command on the line in the middle; what it deletes is put back for the next turn.
template <class SetParams, class Centre>
void cutMiddleLine(benchmark::State& state, SetParams setParams) {
    Chain chain(static_cast<int>(state.range(0)));
    const std::size_t middle = chain.lines.size() / 2;
    const YxDbObjectId id = chain.lines[middle];
    const auto& line = static_cast<const YxDbLine&>(*HostAccess::peek(id));
    const YxGePoint3d start = line.startPoint(), cut = start + YxGeVector3d(4, 0, 0);
    for (auto _ : state) {
        const auto first = withReactorsOf(id, EntityAccess::makeLine(start, cut));
        Centre centre;
        setParams(centre, line, cut);
        centre.setFirstCurve(id, first.get());
        if (centre.deleteConstraint() != 1)
            state.SkipWithError("the command deleted something else than one coincidence");
        chain.tie(id, chain.lines[middle + 1]);
    }
}

void breakLine(benchmark::State& state) {
    cutMiddleLine<void (*)(ConstraintBreakCmdCenter&, const YxDbLine&, const YxGePoint3d&), ConstraintBreakCmdCenter>(
        state, [](ConstraintBreakCmdCenter& centre, const YxDbLine& line, const YxGePoint3d& cut) {
            centre.setPtParam(&line, cut, line.endPoint());
        });
}

void trimLine(benchmark::State& state) {
    cutMiddleLine<void (*)(ConstraintTrimCmdCenter&, const YxDbLine&, const YxGePoint3d&), ConstraintTrimCmdCenter>(
        state, [](ConstraintTrimCmdCenter& centre, const YxDbLine& line, const YxGePoint3d& cut) {
            const auto removed = EntityAccess::makeLine(cut, line.endPoint());
            YxArray<int> indices;
            indices.append(0);
            YxArray<void*> pieces;
            pieces.append(static_cast<YxDbEntity*>(removed.get()));
            centre.setPtParam(&line, indices, pieces);
        });
}

/// A polyline of n segments, each with a dependency and a constraint, broken within two segments around its middle.
void breakPolyline(benchmark::State& state) {
    const int segments = static_cast<int>(state.range(0)), middle = segments / 2;
    for (auto _ : state) {
        state.PauseTiming();
        {
            HostProcess process;
            process.watch(false);
            HostBuilder builder(process.database());
            const YxDbObjectId group = builder.addGroup();
            const YxDbObjectId id = builder.add(EntityAccess::makePolyline(zigzag(0, segments)));
            for (int i = 1; i <= segments; ++i)
                builder.constrain<YxFixedConstraint>(
                    HostBuilder::group(group),
                    {&builder.geometry(HostBuilder::group(group), {.entity = id, .segment = i})});
            PolylineData data = zigzag(0, middle);
            data.vertices.push_back({.point = {10.0 * middle + 5.0, 2.5}});
            const auto first = withReactorsOf(id, EntityAccess::makePolyline(data));
            data = zigzag(middle + 2, segments);
            data.vertices.insert(data.vertices.begin(), PolylineVertex{.point = {10.0 * middle + 15.0, 2.5}});
            const YxDbObjectId second = builder.add(EntityAccess::makePolyline(data));
            const auto& whole = static_cast<const YxDbPolyline&>(*HostAccess::peek(id));
            state.ResumeTiming();
            ConstraintBreakCmdCenter centre;
            centre.setPtParam(&whole, {10.0 * middle + 5.0, 2.5, 0}, {10.0 * middle + 15.0, 2.5, 0});
            centre.setFirstCurve(id, first.get());
            {
                const auto piece = YxDbObjectIdImpl::openObject(second, YxDb::kForWrite, false);
                centre.setSecondCurve(static_cast<YxDbEntity*>(piece.get()));
            }
            centre.deleteConstraint();
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
}

}  // namespace

BENCHMARK(barePass)->RangeMultiplier(4)->Range(1024, 1 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK(breakLine)->RangeMultiplier(4)->Range(1024, 1 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK(trimLine)->RangeMultiplier(4)->Range(1024, 1 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK(breakPolyline)->RangeMultiplier(4)->Range(1024, 1 << 17)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    GrowthReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
