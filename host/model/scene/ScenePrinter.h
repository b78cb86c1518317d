#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

#include "host/model/Scene.h"
#include "host/model/entities/SegmentNames.h"

namespace holdfast {

/// Prints what a scene holds, in the form in which it can be read again. What cannot be read again, such as a
/// constraint on a segment that is gone, stands in the whole text as a comment.
class ScenePrinter {
public:
    explicit ScenePrinter(const Scene& scene) : m_scene(scene) {}

    std::string constraints(const YxDbAssoc2dConstraintGroup& group);
    std::string dependencies();
    std::string text();

private:
    /// Whether constraints are printed with their names.
    enum class Names { no, yes };

    std::string constraint(const YxGeomConstraint& constraint, Names names);
    std::string composite(const YxCompositeConstraint& composite, Names names);
    std::string plain(const YxGeomConstraint& constraint);
    std::string places(const YxGeomConstraint& constraint);
    std::string place(const YxConstrainedGeometry& geometry);
    std::string part(const YxDbAssocGeomDependency& dependency);
    int segmentOf(const YxDbAssocGeomDependency& dependency, const YxDbPolyline& polyline);

    std::string settings() const;
    std::string entities() const;
    std::string group(const std::string& name, const YxDbAssoc2dConstraintGroup& group);
    std::string idleGeometries(const YxDbAssoc2dConstraintGroup& group);
    std::string otherReactors();

    const Scene& m_scene;
    std::unordered_map<const YxDbPolyline*, SegmentNames> m_segments;
};

}  // namespace holdfast
