// What the fillet of two curves costs in large groups, and each fillet on polylines with a dependency on every segment.
// Prints each time, then its growth from size to size. Only the module's calls and the host's own edit are timed. Where
// a drawing no longer fits the processor's caches the time takes one step more than the work, as in the bare pass of
// benchmark_break.
//
//   build/release/bin/benchmark_fillet --benchmark_min_time=0.05

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include <yxdb/YxDbPolyline.h>
#include <yxdb/YxDbSpline.h>

#include "benchmarks/module/Drawings.h"
#include "benchmarks/module/Growth.h"
#include "commands/fillet/ConstraintFilletCmdCenter.h"

namespace {

using namespace holdfast;

using Centre = ConstraintFilletCmdCenter;

YxSmartPtr<YxDbObject> openForWrite(const YxDbObjectId& id) {
    return YxDbObjectIdImpl::openObject(id, YxDb::kForWrite, false);
}

/// Two neighbours in the middle of a chain, which lose the coincidence between them.
void filletLines(benchmark::State& state) {
    Chain chain(static_cast<int>(state.range(0)));
    const std::size_t middle = chain.lines.size() / 2;
    const auto firstOpen = openForWrite(chain.lines[middle]);
    const auto secondOpen = openForWrite(chain.lines[middle + 1]);
    YxDbLine& first = chain.line(middle);
    YxDbLine& second = chain.line(middle + 1);
    const LineData a = EntityAccess::line(first), b = EntityAccess::line(second);
    for (auto _ : state) {
        Centre centre;
        centre.setEntityInfo(&first, &second);
        EntityAccess::setLine(first, a.start, a.end - YxGeVector3d(2, 0, 0));
        EntityAccess::setLine(second, b.start + YxGeVector3d(2, 0, 0), b.end);
        if (centre.deleteConstraint() != 1)
            state.SkipWithError("the command deleted something else than one coincidence");
        EntityAccess::setLine(first, a.start, a.end);
        EntityAccess::setLine(second, b.start, b.end);
        chain.tie(chain.lines[middle], chain.lines[middle + 1]);
    }
}

/// A spline with a constraint on each of n control points, of which the last moves and comes back.
void filletSpline(benchmark::State& state) {
    const int last = static_cast<int>(state.range(0)) - 1;
    BenchmarkHost host;
    const YxDbObjectId id = addConstrainedSpline(host, last + 1);
    const auto open = openForWrite(id);
    auto& spline = static_cast<YxDbSpline&>(*open);
    YxGePoint3d end;
    spline.getControlPointAt(last, end);
    for (auto _ : state) {
        Centre centre;
        centre.setEntityInfo(&spline, nullptr);
        EntityAccess::setControlPoint(spline, last, end + YxGeVector3d(1, 1, 0));
        if (centre.deleteConstraint() != 1)
            state.SkipWithError("the command deleted something else than one constraint");
        EntityAccess::setControlPoint(spline, last, end);
        host.constrain<YxFixedConstraint>(
            {.entity = id, .isPoint = true, .pointType = YxDb::kEndImplicit, .pointIndex = last});
    }
}

/// Runs a command on a fresh drawing for every turn; the drawing itself is made while the clock stands.
template <class Drawing, class Command>
void onFreshDrawings(benchmark::State& state, Command command) {
    for (auto _ : state) {
        state.PauseTiming();
        {
            Drawing drawing(static_cast<int>(state.range(0)));
            state.ResumeTiming();
            Centre centre;
            command(drawing, centre);
            centre.deleteConstraint();
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
}

/// A polyline p of n segments with a dependency and a constraint on each, open for write.
template <bool closed>
struct OnePolyline : BenchmarkHost {
    explicit OnePolyline(int count)
        : segments(count), id(addConstrainedPolyline(*this, ring(count))), open(openForWrite(id)) {}
    YxDbPolyline& polyline() const { return static_cast<YxDbPolyline&>(*open); }

    static PolylineData ring(int count) {
        PolylineData data{.closed = closed};
        for (int k = 0; k < count + (closed ? 0 : 1); ++k) {
            const double angle = 2.0 * std::numbers::pi * k / (count + 1);
            data.vertices.push_back({.point = {10.0 * count * std::cos(angle), 10.0 * count * std::sin(angle)}});
        }
        return data;
    }

    int segments;
    YxDbObjectId id;
    YxSmartPtr<YxDbObject> open;
};

/// A fillet within one polyline; `edit` changes its vertices.
template <bool closed, class Edit>
void filletWithin(benchmark::State& state, Centre::PolylineTrimMode mode, bool sharp, Edit edit) {
    onFreshDrawings<OnePolyline<closed>>(state, [&](OnePolyline<closed>& drawing, Centre& centre) {
        YxDbPolyline& polyline = drawing.polyline();
        const auto count = static_cast<unsigned int>(drawing.segments);
        const auto [first, second] = edit.vertices(count);
        centre.setSelfPolyLineDate(&polyline, first, second, mode, sharp);
        edit.change(polyline, first, second);
        centre.setSelfPolyLineConstraint(&polyline);
    });
}

using Vertices = std::pair<unsigned int, unsigned int>;

struct InsertArc {
    static Vertices vertices(unsigned int count) { return {count / 2, count / 2 + 1}; }
    static void change(YxDbPolyline& polyline, unsigned int, unsigned int second) {
        EntityAccess::insertVertex(polyline, second, {.point = {1, 1}, .bulge = 0.4, .identifier = 0});
        EntityAccess::setVertexPoint(polyline, second + 1, {2, 1});
    }
};

struct RemoveBetween {
    static Vertices vertices(unsigned int count) { return {count / 4, 3 * (count / 4)}; }
    static void change(YxDbPolyline& polyline, unsigned int first, unsigned int second) {
        EntityAccess::setVertexPoint(polyline, second, {1, 1});
        EntityAccess::removeVertices(polyline, first + 1, second - first - 1);
    }
};

struct AppendArc {
    static Vertices vertices(unsigned int count) { return {0, count - 1}; }
    static void change(YxDbPolyline& polyline, unsigned int, unsigned int second) {
        EntityAccess::setVertexPoint(polyline, 0, {1, 1});
        EntityAccess::insertVertex(polyline, second + 1, {.point = {2, 1}, .bulge = 0.4, .identifier = 0});
    }
};

struct RemoveBehind {
    static Vertices vertices(unsigned int count) { return {0, count / 2}; }
    static void change(YxDbPolyline& polyline, unsigned int, unsigned int second) {
        EntityAccess::setVertexPoint(polyline, 0, {1, 1});
        EntityAccess::removeVertices(polyline, second + 1, EntityAccess::vertexCount(polyline) - second - 1);
    }
};

struct Close {
    static Vertices vertices(unsigned int count) { return {0, count - 1}; }
    static void change(YxDbPolyline& polyline, unsigned int, unsigned int second) {
        EntityAccess::setVertexPoint(polyline, 0, {1, 1});
        EntityAccess::removeVertex(polyline, second + 1);
        EntityAccess::setClosed(polyline, true);
    }
};

void filletCorner(benchmark::State& state) {
    filletWithin<false>(state, Centre::kCorner, false, InsertArc());
}
void filletAcrossGap(benchmark::State& state) {
    filletWithin<false>(state, Centre::kBetween, true, RemoveBetween());
}
void filletClosingCorner(benchmark::State& state) {
    filletWithin<true>(state, Centre::kClosingCorner, false, AppendArc());
}
void filletBehind(benchmark::State& state) {
    filletWithin<true>(state, Centre::kBehind, true, RemoveBehind());
}
void filletThatCloses(benchmark::State& state) {
    filletWithin<false>(state, Centre::kClosing, true, Close());
}

/// The second half is cut away.
void filletWithCurve(benchmark::State& state) {
    onFreshDrawings<OnePolyline<false>>(state, [](OnePolyline<false>& drawing, Centre& centre) {
        YxDbPolyline& polyline = drawing.polyline();
        const auto middle = static_cast<unsigned int>(drawing.segments / 2);
        centre.setOnePolyLineDate(&polyline);
        EntityAccess::setVertexPoint(polyline, middle + 1, {1, 1});
        EntityAccess::removeVertices(polyline, middle + 2, EntityAccess::vertexCount(polyline) - middle - 2);
        centre.setOnePolyLineConstraint(&polyline, false, middle, {1, 1, 0});
    });
}

/// Nothing is cut away but a part of the last segment; then the whole polyline is turned round.
void filletAndTurnRound(benchmark::State& state) {
    onFreshDrawings<OnePolyline<false>>(state, [](OnePolyline<false>& drawing, Centre& centre) {
        YxDbPolyline& polyline = drawing.polyline();
        const auto last = static_cast<unsigned int>(drawing.segments);
        centre.setOnePolyLineDate(&polyline);
        EntityAccess::setVertexPoint(polyline, last, {1, 1});
        centre.setOnePolyLineConstraint(&polyline, false, last - 1, {1, 1, 0});
        polyline.reverseCurve();
        centre.setReversePolyLineConstraint(&polyline);
    });
}

/// Polylines q and r of n segments each, r far from q, both open for write.
struct TwoPolylines : BenchmarkHost {
    explicit TwoPolylines(int count)
        : segments(count),
          first(openForWrite(addConstrainedPolyline(*this, zigzag(0, count)))),
          second(openForWrite(addConstrainedPolyline(*this, zigzag(count + 5, 2 * count + 5)))) {}

    int segments;
    YxSmartPtr<YxDbObject> first;
    YxSmartPtr<YxDbObject> second;
};

/// The second is joined to the first across an arc; `turnBoth`: the starts of both are joined to its ends.
void filletTwo(benchmark::State& state, bool turnBoth) {
    onFreshDrawings<TwoPolylines>(state, [&](TwoPolylines& drawing, Centre& centre) {
        auto& q = static_cast<YxDbPolyline&>(*drawing.first);
        auto& r = static_cast<YxDbPolyline&>(*drawing.second);
        const auto last = static_cast<unsigned int>(drawing.segments) - 1;
        centre.setTwoPolyLineDate(&q, &r);
        centre.setFirstPolyLineConstraint(&q, turnBoth, turnBoth ? 0 : last, {});
        centre.setSecondPolyLineConstraint(&r, !turnBoth, turnBoth ? last : 0, {});
        centre.setTwoPolyLineCloneDate(&q, &r);
        PolylineData joined = EntityAccess::polyline(q);
        PolylineData tail = EntityAccess::polyline(r);
        if (turnBoth) {
            std::reverse(joined.vertices.begin(), joined.vertices.end());
            std::reverse(tail.vertices.begin(), tail.vertices.end());
        }
        for (PolylineVertex& vertex : tail.vertices)
            vertex.identifier = 0;
        joined.vertices.insert(joined.vertices.end(), tail.vertices.begin(), tail.vertices.end());
        EntityAccess::setPolyline(q, joined);
        centre.setTwoPolyLineConstraint(&q, turnBoth, &r, !turnBoth);
    });
}

void filletTwoPolylines(benchmark::State& state) {
    filletTwo(state, false);
}
void filletTwoTurnedPolylines(benchmark::State& state) {
    filletTwo(state, true);
}

void onPolylines(benchmark::internal::Benchmark* registered) {
    registered->RangeMultiplier(10)->Range(1000, 100000)->Iterations(3)->Unit(benchmark::kMicrosecond);
}

}  // namespace

BENCHMARK(filletLines)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(filletSpline)->RangeMultiplier(4)->Range(256, 16384)->Unit(benchmark::kMicrosecond);
BENCHMARK(filletCorner)->Apply(onPolylines);
BENCHMARK(filletAcrossGap)->Apply(onPolylines);
BENCHMARK(filletClosingCorner)->Apply(onPolylines);
BENCHMARK(filletBehind)->Apply(onPolylines);
BENCHMARK(filletThatCloses)->Apply(onPolylines);
BENCHMARK(filletWithCurve)->Apply(onPolylines);
BENCHMARK(filletAndTurnRound)->Apply(onPolylines);
BENCHMARK(filletTwoPolylines)->Apply(onPolylines);
BENCHMARK(filletTwoTurnedPolylines)->Apply(onPolylines);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    GrowthReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
