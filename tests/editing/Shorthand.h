#pragma once

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <vector>

#include "document/Document.h"
#include "editing/Session.h"

namespace holdfast::editing {

inline Entity lineEntity(std::string id, Vec2 start, Vec2 end) {
    Entity entity;
    entity.id = std::move(id);
    entity.shape = LineShape{start, end};
    return entity;
}

inline Entity shapeEntity(std::string id, Shape shape) {
    Entity entity;
    entity.id = std::move(id);
    entity.shape = std::move(shape);
    return entity;
}

inline Constraint constraintOf(std::string id, ConstraintType type, std::vector<Place> refs) {
    Constraint constraint;
    constraint.id = std::move(id);
    constraint.type = type;
    constraint.refs = std::move(refs);
    return constraint;
}

inline Constraint dimensionOf(std::string id, ConstraintType type, std::vector<Place> refs, double value) {
    Constraint dimension = constraintOf(std::move(id), type, std::move(refs));
    dimension.value = value;
    return dimension;
}

/// The ids of the constraints that are left, in order.
inline std::string constraintIds(const Document& document) {
    std::string ids;
    for (const Constraint& constraint : document.constraints)
        ids += (ids.empty() ? "" : " ") + constraint.id;
    return ids;
}

inline const Entity& entityNamed(const Document& document, const std::string& id) {
    for (const Entity& entity : document.entities)
        if (entity.id == id)
            return entity;
    static const Entity none;
    return none;
}

inline const Constraint& constraintNamed(const Document& document, const std::string& id) {
    for (const Constraint& constraint : document.constraints)
        if (constraint.id == id)
            return constraint;
    static const Constraint none;
    return none;
}

/// Why an edit was refused; empty: it was done.
inline std::string errorOf(Session& session, const std::string& edit) {
    return session.apply(edit).outcome.error;
}

inline LineShape lineOf(const Session& session, const std::string& name) {
    return std::get<LineShape>(entityNamed(session.document(), name).shape);
}

inline Constraint valued(Constraint constraint, double value) {
    constraint.value = value;
    return constraint;
}

/// A rectangle of 40 by 20 with one corner fixed at the origin and level and upright sides, without a dimension.
inline Document plateDrawing() {
    Document document;
    document.name = "plate";
    document.entities = {lineEntity("bottom", {0, 0}, {40, 0}), lineEntity("right", {40, 0}, {40, 20}),
                         lineEntity("top", {40, 20}, {0, 20}), lineEntity("left", {0, 20}, {0, 0})};
    const char* sides[] = {"bottom", "right", "top", "left"};
    for (int i = 0; i < 4; ++i)
        document.constraints.push_back(
            constraintOf("c" + std::to_string(i), ConstraintType::coincident,
                         {{sides[i], PlaceKind::end}, {sides[(i + 1) % 4], PlaceKind::start}}));
    document.constraints.push_back(constraintOf("f", ConstraintType::fixed, {{"bottom", PlaceKind::start}}));
    document.constraints.push_back(constraintOf("h0", ConstraintType::horizontal, {{"bottom"}}));
    document.constraints.push_back(constraintOf("v0", ConstraintType::vertical, {{"right"}}));
    document.constraints.push_back(constraintOf("h1", ConstraintType::horizontal, {{"top"}}));
    document.constraints.push_back(constraintOf("v1", ConstraintType::vertical, {{"left"}}));
    return document;
}

/// Two lines at the ends of a third: a frame without its top.
inline Document frameDrawing() {
    Document document;
    document.name = "frame";
    document.entities = {lineEntity("base", {0, 0}, {10, 0}), lineEntity("left", {0, 0}, {0, 5}),
                         lineEntity("right", {10, 0}, {10, 5})};
    document.constraints = {
        constraintOf("c0", ConstraintType::coincident, {{"base", PlaceKind::start}, {"left", PlaceKind::start}}),
        constraintOf("c1", ConstraintType::coincident, {{"base", PlaceKind::end}, {"right", PlaceKind::start}}),
        constraintOf("c2", ConstraintType::horizontal, {{"base"}}),
        constraintOf("c3", ConstraintType::equal, {{"left"}, {"right"}})};
    return document;
}

struct RefusedEdit {
    const char* edit;
    const char* error;
};

/// Every edit is refused with its reason, and leaves the drawing as it is.
inline void expectRefused(const Document& document, std::span<const RefusedEdit> rows) {
    for (const RefusedEdit& row : rows) {
        Session session(document);
        EXPECT_EQ(session.apply(row.edit).outcome.error, row.error);
        EXPECT_EQ(session.document(), document) << row.edit;
    }
}

/// Opening alone gives vertices numbers, which are told with the next edit.
inline Document withoutVertexNumbers(Document document) {
    for (Entity& entity : document.entities)
        if (auto* polyline = std::get_if<PolylineShape>(&entity.shape))
            polyline->ids.assign(polyline->vertices.size(), 0);
    return document;
}

}  // namespace holdfast::editing
