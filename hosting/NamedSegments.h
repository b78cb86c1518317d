#pragma once

#include <unordered_map>

#include <YxDbConstraints/YxDbAssocGeomDependency.h>
#include <yxdb/YxDbPolyline.h>

#include "host/model/entities/SegmentNames.h"
#include "hosting/Drawing.h"
#include "hosting/Uses.h"

namespace holdfast::hosting {

/// Segments of polylines by their persistent names, found once for each polyline while nothing changes.
class Drawing::Segments {
public:
    /// Counted from 0; -1 for a dependency whose segment is gone.
    int segmentOf(const YxDbAssocGeomDependency& dependency, const YxDbPolyline& polyline) {
        return m_names.try_emplace(&polyline, polyline).first->second.segmentOf(dependency);
    }

private:
    std::unordered_map<const YxDbPolyline*, SegmentNames> m_names;
};

}  // namespace holdfast::hosting
