#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "hosting/Drawing.h"
#include "hosting/Uses.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::hosting {

/// A drawing's constraint group as a sketch, as the database has it. Elements stand in the order of the document's
/// entities, constraints in that of its constraints; those whose place is gone are in neither.
struct HostSketch {
    Document document;
    SketchData sketch;
    std::vector<double> drawn;  ///< the sketch's values when it was read

    /// Throws SketchError for a constraint that its entities cannot have.
    explicit HostSketch(const Drawing& drawing);

    /// -1 for an entity that the drawing does not have, or no longer has.
    int numberOf(std::string_view name) const;

    /// The numbers of those ids that stand for entities of the drawing, each once.
    std::vector<int> numbersOf(const Drawing& drawing, const YxArray<YxDbObjectId>& ids) const;

    /// Where branches are chosen for an element: as it was before the edit. A shape of another kind is ignored.
    void setReference(int entity, const Shape& before);

    /// The shape of an element as the sketch has it now.
    Shape shapeOf(int entity) const;

    /// Elements that stand elsewhere than when the sketch was read, by more than the host's tolerance.
    std::vector<int> moved() const;

private:
    std::unordered_map<std::string, int> m_numbers;
};

/// Writes every element that moved into the database; nothing else is touched. One that was erased since the sketch was
/// read is skipped.
void writeMoved(Drawing& drawing, const HostSketch& host);

/// A shape after one of the host's transforms.
Shape transformed(const Shape& shape, const YxGeMatrix3d& transform);

/// An angle's equal nearest to another one.
double nearestTurn(double angle, double other);

}  // namespace holdfast::hosting
