#pragma once

#include <string>

#include "host/model/Scene.h"

namespace holdfast {

/// Prints what a scene holds in the form in which it can be read again.
class ScenePrinter {
public:
    explicit ScenePrinter(const Scene& scene) : m_scene(scene) {}

    std::string entity(const std::string& name, const YxDbObject& object) const;
    std::string constraints(const YxDbAssoc2dConstraintGroup& group, bool named) const;
    std::string dependencies() const;
    static std::string vertices(const YxDbPolyline& polyline);
    std::string text() const;

private:
    std::string constraint(const YxGeomConstraint& constraint, bool named) const;
    std::string places(const YxGeomConstraint& constraint) const;
    std::string place(const YxConstrainedGeometry& geometry) const;
    std::string part(const YxDbAssocGeomDependency& dependency) const;

    const Scene& m_scene;
};

}  // namespace holdfast
