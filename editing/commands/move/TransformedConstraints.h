#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "document/Document.h"
#include "document/EntityIndex.h"
#include "editing/Uses.h"
#include "geometry/Transforms.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

// What a transform of the plane makes of constraints all of whose entities it takes along.

/// The names of copies, by their originals.
using CopyNames = std::unordered_map<std::string, std::string>;

/// Which constraints copies get: all kinds, or no dimensions.
enum class CopiedKinds { all, geometric };

/// The constraints among some entities, for copies of these: those that are switched on, but for fixed ones and the
/// bounds of composites, whose members come one by one.
class CopiedConstraints {
public:
    /// Linear in the constraints on the originals.
    CopiedConstraints(const Drawing& drawing, const std::vector<std::string>& originals);
    CopiedConstraints(const CopiedConstraints&) = delete;
    CopiedConstraints& operator=(const CopiedConstraints&) = delete;

    /// What the constraints are among copies under a transform, in their order, whether that holds or not. Linear in
    /// the constraints.
    std::vector<Constraint> of(const CopyNames& copies, const PlaneTransform& transform) const;
    /// Gives copies under a transform what holds among the originals: a level line may become an upright one, signed
    /// dimensions and angles are taken the other way round. Those that say where something lies or leads, and do not
    /// hold of the copies, are left out. Those on an original that has no copy are passed over. Linear in the
    /// constraints.
    /// @return the ids of the originals of what was left out
    std::vector<std::string> addTo(Drawing& drawing, const CopyNames& copies, const PlaneTransform& transform,
                                   CopiedKinds kinds = CopiedKinds::all) const;

    /// The originals, with what stands around them.
    const Document& document() const { return m_document; }

private:
    Constraint copyOf(const Constraint& original, const CopyNames& copies, const PlaneTransform& transform) const;

    Document m_document;
    EntityIndex m_entities;
    std::vector<const Constraint*> m_among;
};

/// For entities that are moved themselves: gives the signed distances and angles among them the sense that a reflection
/// or a half turn gives them; other transforms leave them. Linear in the constraints on these entities.
void turnMeasures(Drawing& drawing, const std::vector<std::string>& names, const PlaneTransform& transform);

/// The dimensions among some entities that are lengths, of points, curves and radii; linear as above.
std::vector<Constraint> lengthsAmong(const Drawing& drawing, const std::vector<std::string>& names);

}  // namespace holdfast::editing
