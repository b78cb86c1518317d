// What handing edited objects over to the evaluator costs, for each editing command. Prints each time, then its growth.
//
//   build/release/bin/benchmark_feeding

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include <YxDbConstraints/AssocConstraintHeader.h>
#include <yxdb/YxGiWorldDraw.h>

#include "benchmarks/module/Growth.h"
#include "commands/align/ConstraintAlignCmdCenter.h"
#include "commands/join/ConstraintJoinCmdCenter.h"
#include "commands/lengthen/ConstraintLengthenCmdCenter.h"
#include "commands/mirror/ConstraintMirrorCmdCenter.h"
#include "commands/properties/ConstraintPropertiesCmdCenter.h"
#include "commands/stretch/ConstraintStretchCmdCenter.h"
#include "drag/CYxRotateReleaseConstraint.h"
#include "drag/LvConstraintDropData.h"
#include "host/model/HostBuilder.h"
#include "host/model/HostProcess.h"
#include "host/model/entities/EntityAccess.h"

namespace {

using namespace holdfast;

/// As many edited objects as the benchmark's size: of each four, three are constrained (a line, a polyline with an arc
/// segment and an arc, all in one group) and one is free.
class Drawing {
public:
    explicit Drawing(benchmark::State& state) : m_builder(m_process.database()) {
        m_process.watch(false);
        m_group = m_builder.addGroup();
        const int count = static_cast<int>(state.range(0));
        ids.setPhysicalLength(count);
        for (int i = 0; i < count; ++i)
            add(entity(i), i % 4 != 3);
    }

    /// What the host does between two commands.
    void endOfCommand() { m_process.endOfCommand(); }
    AssocConstraintHeader& header() { return *HostAccess::header(HostBuilder::group(m_group)); }
    YxDbObjectId add(std::unique_ptr<YxDbEntity> entity, bool constrained) {
        const bool isPolyline = entity->isKindOf(YxDbPolyline::desc());
        ids.append(m_builder.add(std::move(entity)));
        if (constrained)
            m_builder.geometry(HostBuilder::group(m_group), {.entity = ids.last(), .segment = isPolyline ? 1 : 0});
        return ids.last();
    }
    void constrainSegments(const YxDbObjectId& polyline, int count) {
        for (int i = 1; i <= count; ++i)
            m_builder.geometry(HostBuilder::group(m_group), {.entity = polyline, .segment = i});
    }

    YxArray<YxDbObjectId> ids;

private:
    static std::unique_ptr<YxDbEntity> entity(int i) {
        const double x = 10.0 * i;
        if (i % 4 == 1)
            return EntityAccess::makePolyline({.vertices = {{{x, 0}}, {{x + 5, 0}, 1.0}, {{x + 5, 5}}}});
        if (i % 4 == 2)
            return EntityAccess::makeArc({.centre = {x, 0, 0}, .radius = 2.0});
        return EntityAccess::makeLine({x, 0, 0}, {x + 5, 0, 0});
    }

    HostProcess m_process;
    HostBuilder m_builder;
    YxDbObjectId m_group;
};

YxGeMatrix3d moved() {
    YxGeMatrix3d matrix;
    return matrix.setToTranslation({1, 2, 0});
}

/// Times one whole command for each turn; the end of the host's command is not timed.
template <class Command>
void time(benchmark::State& state, Drawing& drawing, Command command) {
    for (auto _ : state) {
        command();
        state.PauseTiming();
        if (drawing.header().editKind == 0)
            state.SkipWithError("the command handed nothing over");
        drawing.endOfCommand();
        state.ResumeTiming();
    }
}

void align(benchmark::State& state) {
    Drawing drawing(state);
    time(state, drawing, [&] {
        ConstraintAlignCmdCenter centre;
        centre.seperateObjectes(drawing.ids);
        centre.updateCenterMat(moved());
        centre.addDataToWork();
    });
}

void mirror(benchmark::State& state) {
    Drawing drawing(state);
    time(state, drawing, [&] { ConstraintMirrorCmdCenter().addDataToWork(drawing.ids); });
}

void properties(benchmark::State& state) {
    Drawing drawing(state);
    time(state, drawing, [&] {
        ConstraintPropertiesCmdCenter centre;
        for (const YxDbObjectId& id : drawing.ids) {
            centre.addOriInfo(id, 2, std::vector<double>{1.0, 2.0, 0.0});
            centre.addExpanderOriInfo(id, 0, 1, 0, 1.0);
            centre.addExpanderOriInfo(id, 0, 1, 1, 2.0);
        }
        centre.addDataToWork();
    });
}

void lengthen(benchmark::State& state) {
    Drawing drawing(state);
    time(state, drawing, [&] {
        ConstraintLengthenCmdCenter centre;
        for (const YxDbObjectId& id : drawing.ids)
            centre.addOriCurveInfo(static_cast<YxDbCurve*>(HostAccess::peek(id)), id);
        centre.addDataToWork();
    });
}

void stretch(benchmark::State& state) {
    Drawing drawing(state);
    YxArray<void*> sources;
    YxArray<YxArray<int>> indexLists;
    sources.setPhysicalLength(drawing.ids.length());
    indexLists.setLogicalLength(drawing.ids.length());
    for (int i = 0; i < drawing.ids.length(); ++i) {
        sources.append(static_cast<YxDbEntity*>(HostAccess::peek(drawing.ids[i])));
        indexLists[i].append(1);
    }
    ConstraintStretchCmdCenter centre;
    time(state, drawing, [&] {
        centre.init(drawing.ids);
        centre.setStartPnt({1, 1, 0});
        centre.setSourceInfo({1, 2, 0}, sources, indexLists);
        centre.addDataToWork();
        centre.addDataToWork();
        centre.addDataToStaticEvaluate();
    });
}

class Sink : public YxGiWorldDraw, public YxGiWorldGeometry {
public:
    YxGiWorldGeometry& geometry() const override { return const_cast<Sink&>(*this); }
    void pushModelTransform(const YxGeMatrix3d&) override {}
    void popModelTransform() override {}
    bool draw(const YxDbEntity* entity) override {
        benchmark::DoNotOptimize(entity);
        return true;
    }
};

/// A session of two steps, each drawn; the preview lists every object twice.
void drag(benchmark::State& state) {
    Drawing drawing(state);
    Sink sink;
    time(state, drawing, [&] {
        LvConstraintDropData::init(drawing.ids);
        YxArray<YxDbEntity*>& preview = drawing.header().entitiesToDraw;
        preview.setLogicalLength(2 * drawing.ids.length());
        for (int i = 0; i < preview.length(); ++i)
            preview[i] = static_cast<YxDbEntity*>(HostAccess::peek(drawing.ids[i % drawing.ids.length()]));
        for (int step = 0; step < 2; ++step) {
            LvConstraintDropData::addDataToWork(moved());
            LvConstraintDropData::draw(&sink);
        }
        LvConstraintDropData::confirm();
    });
}

void rotate(benchmark::State& state) {
    Drawing drawing(state);
    time(state, drawing, [&] {
        YxArray<YxDbObjectId> constrained;
        bool ignored = false;
        bool result = false;
        CYxRotateReleaseConstraint::analysisRotateBox(drawing.ids, {}, ignored, constrained, result);
    });
}

PolylineData staircase(int vertices, bool reversed) {
    PolylineData data;
    for (int i = 0; i < vertices; ++i) {
        const int at = reversed ? vertices - 1 - i : i;
        data.vertices.push_back({.point = {10.0 * at, 3.0 * at}});
    }
    return data;
}

/// Lines, and behind them one polyline of as many segments, each with a dependency.
void joinInto(benchmark::State& state, bool reversed) {
    const int count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        {
            Drawing drawing(state);
            YxArray<YxDbObjectId> pieces;
            pieces.setPhysicalLength(count + 1);
            for (int i = 0; i < count; ++i)
                pieces.append(drawing.ids[(i / 4) * 4]);
            pieces.append(drawing.add(EntityAccess::makePolyline(staircase(count, false)), false));
            drawing.constrainSegments(pieces.last(), count - 1);
            PolylineData joined = staircase(count, reversed);
            joined.vertices.insert(joined.vertices.begin(), static_cast<std::size_t>(count), {});
            const YxDbObjectId result = drawing.add(EntityAccess::makePolyline(joined), false);
            state.ResumeTiming();
            if (!ConstraintJoinCmdCenter().dealAssocPlineJoin(pieces, result))
                state.SkipWithError("nothing was joined");
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
}

void join(benchmark::State& state) {
    joinInto(state, false);
}

void joinReversed(benchmark::State& state) {
    joinInto(state, true);
}

void sizes(benchmark::internal::Benchmark* each) {
    each->RangeMultiplier(2)->Range(12500, 100000)->Unit(benchmark::kMicrosecond)->UseRealTime();
}

}  // namespace

BENCHMARK(align)->Apply(sizes);
BENCHMARK(mirror)->Apply(sizes);
BENCHMARK(properties)->Apply(sizes);
BENCHMARK(lengthen)->Apply(sizes);
BENCHMARK(stretch)->Apply(sizes);
BENCHMARK(drag)->Apply(sizes);
BENCHMARK(rotate)->Apply(sizes);
BENCHMARK(join)->Apply(sizes)->Iterations(3);
BENCHMARK(joinReversed)->Apply(sizes)->Iterations(3);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    GrowthReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
