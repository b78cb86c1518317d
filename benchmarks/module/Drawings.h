#pragma once

#include <cstddef>
#include <vector>

#include "host/model/HostBuilder.h"
#include "host/model/HostProcess.h"
#include "host/model/entities/EntityAccess.h"

namespace holdfast {

/// A host that nobody watches, with one constraint group.
struct BenchmarkHost {
    BenchmarkHost() : builder(process.database()) {
        process.watch(false);
        group = builder.addGroup();
    }
    YxDbAssoc2dConstraintGroup& network() const { return HostBuilder::group(group); }
    YxConstrainedGeometry& geometry(const BuiltPlace& place) { return builder.geometry(network(), place); }
    template <class T>
    void constrain(const BuiltPlace& place) {
        builder.constrain<T>(network(), {&geometry(place)});
    }

    HostProcess process;
    HostBuilder builder;
    YxDbObjectId group;
};

/// A group of about `nodes` nodes: a chain of lines, each tied to the next by a coincidence (line, start, end and
/// coincidence make four nodes).
struct Chain : BenchmarkHost {
    explicit Chain(int nodes) {
        for (int i = 0; i < nodes / 4; ++i)
            lines.push_back(builder.add(EntityAccess::makeLine({10.0 * i, 0, 0}, {10.0 * i + 10.0, 0, 0})));
        for (std::size_t i = 0; i + 1 < lines.size(); ++i)
            tie(lines[i], lines[i + 1]);
    }
    void tie(const YxDbObjectId& first, const YxDbObjectId& second) {
        YxConstrainedGeometry& end = geometry({.entity = first, .isPoint = true, .pointType = YxDb::kEndImplicit});
        YxConstrainedGeometry& start = geometry({.entity = second, .isPoint = true});
        builder.constrain<YxPointCoincidenceConstraint>(network(), {&end, &start});
    }
    YxDbLine& line(std::size_t index) const { return static_cast<YxDbLine&>(*HostAccess::peek(lines[index])); }

    std::vector<YxDbObjectId> lines;
};

/// The vertices first ... last of a polyline that goes up and down.
inline PolylineData zigzag(int first, int last) {
    PolylineData data;
    for (int i = first; i <= last; ++i)
        data.vertices.push_back({.point = {10.0 * i, i % 2 == 0 ? 0.0 : 5.0}});
    return data;
}

/// Adds a polyline with a dependency and a constraint on every segment, and with coincidences at its corners.
inline YxDbObjectId addConstrainedPolyline(BenchmarkHost& host, const PolylineData& data) {
    const YxDbObjectId id = host.builder.add(EntityAccess::makePolyline(data));
    const std::size_t segments = data.vertices.size() - (data.closed ? 0 : 1);
    for (std::size_t i = 1; i <= segments; ++i)
        host.constrain<YxFixedConstraint>({.entity = id, .segment = static_cast<int>(i)});
    host.builder.addCornerCoincidences(host.network(), id);
    return id;
}

/// Adds a spline with a constraint on every control point.
inline YxDbObjectId addConstrainedSpline(BenchmarkHost& host, int controlPoints) {
    SplineData data{.degree = 3};
    data.knots.assign(4, 0.0);
    for (int i = 0; i < controlPoints; ++i) {
        data.control.push_back({10.0 * i, i % 2 == 0 ? 0.0 : 5.0, 0});
        if (i >= 4)
            data.knots.push_back(i - 3.0);
    }
    data.knots.insert(data.knots.end(), 4, controlPoints - 3.0);
    const YxDbObjectId id = host.builder.add(EntityAccess::makeSpline(data));
    for (int i = 0; i < controlPoints; ++i) {
        const YxDb::ImplicitPointType type = i == 0                   ? YxDb::kStartImplicit
                                             : i == controlPoints - 1 ? YxDb::kEndImplicit
                                                                      : YxDb::kControlImplicit;
        host.constrain<YxFixedConstraint>({.entity = id, .isPoint = true, .pointType = type, .pointIndex = i});
    }
    return id;
}

}  // namespace holdfast
