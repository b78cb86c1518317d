#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "document/Document.h"
#include "document/Uses.h"

namespace holdfast::document {

/// What happened to one entity; without one of both it was made or erased. The order says where it stands among the
/// others, ascending as they were drawn.
struct EntityChange {
    std::size_t order = 0;
    std::optional<Entity> before, after;
    friend bool operator==(const EntityChange&, const EntityChange&) = default;
};

/// The same for a constraint.
struct ConstraintChange {
    std::size_t order = 0;
    std::optional<Constraint> before, after;
    friend bool operator==(const ConstraintChange&, const ConstraintChange&) = default;
};

/// The same for a block reference.
struct ReferenceChange {
    std::size_t order = 0;
    std::optional<BlockReference> before, after;
    friend bool operator==(const ReferenceChange&, const ReferenceChange&) = default;
};

/// What the next entity, constraint and reference that are made get: their orders, and the number in a constraint's id.
struct NextOrders {
    std::size_t entity = 0, constraint = 0, constraintId = 1, reference = 0;
};

/// All parameters before and after.
struct ParametersChange {
    std::vector<Parameter> before, after;
    friend bool operator==(const ParametersChange&, const ParametersChange&) = default;
};

/// The difference of two states of a drawing, each kind in ascending order.
struct DrawingChange {
    std::vector<EntityChange> entities;
    std::vector<ConstraintChange> constraints;
    std::optional<ParametersChange> parameters{};  ///< none: they are as they were
    std::vector<ReferenceChange> references{};

    bool empty() const { return entities.empty() && constraints.empty() && !parameters && references.empty(); }
    friend bool operator==(const DrawingChange&, const DrawingChange&) = default;
};

/// The change that takes another one back.
DrawingChange reversed(DrawingChange change);

/// A document whose entities, constraints and references know their order, so that changes can be applied to it.
struct OrderedDocument {
    Document document;
    std::vector<std::size_t> entityOrders, constraintOrders, referenceOrders;  ///< ascending

    OrderedDocument() = default;
    /// Orders count from 0.
    explicit OrderedDocument(Document plain);

    /// Cost: the changed ones times the logarithm of the document, and all parameters where one has changed; where
    /// something is made in between or erased, one pass over the document besides. When memory runs out nothing is
    /// changed.
    void apply(const DrawingChange& change);
};

/// What an edit touched, before it and after it: changed entities, the constraints on them, and what these hold on.
struct EditedPart {
    Document before, after;
    double sizeBefore = 1.0, sizeAfter = 1.0;  ///< of the whole drawing: what tolerances are relative to
};

}  // namespace holdfast::document
