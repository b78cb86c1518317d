#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include <YxDbConstraints/YxDbAssocManager.h>

#include "host/model/state/HostAccess.h"
#include "hosting/Drawing.h"
#include "hosting/evaluator/HostEvaluator.h"

namespace holdfast::hosting {

/// A drawing that is open in the host, with the evaluator behind its network.
struct Hosted {
    Drawing drawing;
    HostEvaluator evaluator{drawing};

    explicit Hosted(const Document& document) : drawing(document) {}

    YxArray<YxDbObjectId> ids(std::initializer_list<const char*> names) const {
        YxArray<YxDbObjectId> found;
        for (const char* name : names)
            found.append(drawing.id(name));
        return found;
    }
    bool evaluate() { return YxDbAssocManager::evaluateTopLevelNetwork(&drawing.process().database(), nullptr, 0); }
    void markChanged() { HostAccess::setStatus(drawing.group(), kChangedAssocStatus); }
    AssocConstraintHeader& header() const { return *HostAccess::header(drawing.group()); }

    LineShape line(const char* name) const { return std::get<LineShape>(drawing.shape(name)); }
    template <class T>
    T as(const char* name) const {
        return std::get<T>(drawing.shape(name));
    }
};

inline YxGeMatrix3d translation(double x, double y) {
    YxGeMatrix3d matrix;
    matrix.setToTranslation({x, y, 0.0});
    return matrix;
}

inline Entity entity(std::string id, Shape shape) {
    Entity made;
    made.id = std::move(id);
    made.shape = std::move(shape);
    return made;
}

inline Constraint constraint(std::string id, ConstraintType type, std::vector<Place> refs,
                             std::optional<double> value = {}) {
    Constraint made;
    made.id = std::move(id);
    made.type = type;
    made.refs = std::move(refs);
    made.value = value;
    return made;
}

/// a from the origin to the right, b up from its end: a.end and b.start coincide.
inline Document corner(std::vector<Constraint> more = {}) {
    Document document;
    document.entities = {entity("a", LineShape{{0, 0}, {10, 0}}), entity("b", LineShape{{10, 0}, {10, 5}})};
    document.constraints = {
        constraint("tie", ConstraintType::coincident, {{"a", PlaceKind::end}, {"b", PlaceKind::start}})};
    document.constraints.insert(document.constraints.end(), more.begin(), more.end());
    return document;
}

inline ::testing::AssertionResult isNear(Vec2 is, Vec2 wanted) {
    if (std::abs(is.x - wanted.x) < 1e-7 && std::abs(is.y - wanted.y) < 1e-7)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "(" << is.x << ", " << is.y << ") is not (" << wanted.x << ", " << wanted.y
                                         << ")";
}

}  // namespace holdfast::hosting
