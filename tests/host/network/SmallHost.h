#pragma once

#include <initializer_list>
#include <vector>

#include "host/model/HostBuilder.h"
#include "host/model/HostProcess.h"
#include "host/model/entities/EntityAccess.h"

namespace holdfast {

/// A host with one constraint group and nothing else, and shorthand for filling it piece by piece.
struct SmallHost {
    HostProcess process;
    HostBuilder builder{process.database()};
    YxDbObjectId groupId = builder.addGroup();
    YxDbAssoc2dConstraintGroup& group = HostBuilder::group(groupId);

    YxDbObjectId line() { return builder.add(EntityAccess::makeLine({0, 0, 0}, {10, 0, 0})); }

    /// Vertices (0, 0), (1, 0), (2, 0), ... with these identifiers.
    YxDbObjectId polyline(std::initializer_list<int> identifiers, bool closed = false) {
        PolylineData data;
        data.closed = closed;
        for (const int identifier : identifiers)
            data.vertices.push_back({.point = {double(data.vertices.size()), 0.0}, .identifier = identifier});
        return builder.add(EntityAccess::makePolyline(data));
    }

    YxConstrainedGeometry* curve(const YxDbObjectId& entity, int segment = 0) {
        return &builder.geometry(group, {.entity = entity, .segment = segment});
    }
    YxConstrainedGeometry* point(const YxDbObjectId& entity, YxDb::ImplicitPointType type) {
        return &builder.geometry(group, {.entity = entity, .isPoint = true, .pointType = type});
    }
    YxDbAssocGeomDependency& dependency(const YxDbObjectId& entity, int segment = 0) {
        return builder.addBareDependency(group, {.entity = entity, .segment = segment});
    }
    template <class T>
    T& constrain(std::initializer_list<YxConstrainedGeometry*> geometries) {
        return builder.constrain<T>(group, geometries);
    }
};

inline YxSmartPtr<YxDbObject> openedForRead(const YxDbObjectId& id) {
    return YxDbObjectIdImpl::openObject(id, YxDb::kForRead, false);
}

inline YxSmartPtr<YxDbObject> openedForWrite(const YxDbObjectId& id) {
    return YxDbObjectIdImpl::openObject(id, YxDb::kForWrite, false);
}

template <class T>
std::vector<T> listed(const YxArray<T>& list) {
    return {list.begin(), list.end()};
}

}  // namespace holdfast
