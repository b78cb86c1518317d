#pragma once

#include <memory>
#include <optional>
#include <string>

#include "commands/break/ConstraintBreakCmdCenter.h"
#include "editing/EditContext.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// What a cut leaves of a curve: two pieces, or one that keeps the curve's start, its end, or (closed curves) neither.
struct CutPieces {
    std::optional<Shape> first;
    std::optional<Shape> second;
};

/// Brings a parameter of a polyline that lies next to a vertex onto it, as the module reckons cuts; leaves others.
double ontoVertex(const Shape& shape, double param);

/// The pieces of a curve without what lies between two parameters; EditError when nothing would be left, or gone.
CutPieces cutOut(const Shape& shape, const std::string& name, double firstParam, double lastParam);

/// The curve on which a centre looks up where a cut begins and ends: the entity. A polyline that passes through one of
/// these points more than once, as one with both ends in one point, is stretched out for that to as many straight
/// segments in a row.
class CutCurve {
public:
    CutCurve(const EditContext& context, const std::string& name, double firstParam, double lastParam);
    const YxDbEntity& entity() const { return m_stretched ? *m_stretched : m_entity; }
    const Shape& shape() const { return m_shape; }
    YxGePoint3d pointAt(double param) const;

private:
    bool tells(double param) const;

    const YxDbEntity& m_entity;
    Shape m_shape;
    std::unique_ptr<YxDbEntity> m_stretched;
};

/// The host's half of break and trim: drives a centre whose parameters are set through the cut. The entity keeps the
/// first piece; the second becomes a new entity. Returns the new entity's name, or an empty string.
std::string applyCut(EditContext& context, const std::string& name, const CutPieces& pieces,
                     ConstraintBreakCmdCenter& centre);

}  // namespace holdfast::editing
