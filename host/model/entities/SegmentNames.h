#pragma once

#include <map>
#include <utility>

#include <YxDbConstraints/YxDbAssocGeomDependency.h>

class YxDbPolyline;

namespace holdfast {

/// Finds a polyline's segments by their persistent names; for many names at once. Of segments with the same name the
/// first is found.
class SegmentNames {
public:
    explicit SegmentNames(const YxDbPolyline& polyline);
    /// Counted from 0; -1 for a dependency without the name of a segment of this polyline.
    int segmentOf(const YxDbAssocGeomDependency& dependency) const;

private:
    std::map<std::pair<int, int>, int> m_segments;
};

}  // namespace holdfast
