#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "hosting/Drawing.h"
#include "hosting/Uses.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::hosting {

/// Over how many constraints the first try looks around an edit: the solver looks at twos, fours and eights first.
inline constexpr int kNearSteps = 16;

/// A drawing's constraint group as a sketch, as the database has it. Elements stand in the order of the document's
/// entities, constraints in that of its constraints; those whose place is gone are in neither.
struct HostSketch {
    Document document;
    SketchData sketch;
    std::vector<double> drawn;  ///< the sketch's values when it was read

    bool isCut = false;  ///< what is at the border counts as fixed, although constraints lead on from it

    /// Throws SketchError for a constraint that its entities cannot have.
    explicit HostSketch(const Drawing& drawing);

    /// Only what can be reached from some entities over at most so many constraints.
    HostSketch(Drawing& drawing, const std::vector<std::string>& names, int steps);

    /// A solution of a cut sketch is one of the whole drawing when nothing next to the border had to move for it.
    bool reachesBorder() const;

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
    HostSketch(Drawing::Part part, double size);

    std::vector<Drawing::Part::Scope> m_reach;
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
