#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "geometry/DisjointSets.h"
#include "inference/Infer.h"
#include "inference/PlaneCurves.h"
#include "inference/Uses.h"

namespace holdfast::inference {

/// What the passes of the inference share: the drawing taken apart, which coordinates are known to be equal, and the
/// one door through which new constraints come in.
class InferState {
public:
    InferState(const Document& document, const InferOptions& options, const RedundancyTest& isRedundant);

    double length() const { return m_result.length; }
    double angle() const { return m_angle; }
    bool wants(ConstraintType type) const;

    const std::vector<Node>& nodes() const { return m_plane.nodes; }
    const std::vector<PlaneCurve>& curves() const { return m_plane.curves; }
    /// The cluster of near points that a node lies in; clusters are numbered from 0 without gaps.
    std::size_t clusterOf(std::size_t node) const { return m_clusters[node]; }
    std::size_t clusterCount() const { return m_clusterCount; }

    /// Nodes of one set have the same x (the same y) by what has been found so far.
    DisjointSets& xs() { return m_xs; }
    DisjointSets& ys() { return m_ys; }
    /// True for lines that were found to be horizontal or vertical.
    bool isUpright(std::size_t curve) const { return m_upright[curve]; }
    void setUpright(std::size_t curve) { m_upright[curve] = true; }

    /// The drawing with what was found so far.
    const Document& document() const { return m_result.document; }

    /// Adds a constraint unless its kind is not wanted, it is there already, or the redundancy test refuses it. In all
    /// cases it may be taken to hold from now on, except when its kind is not wanted: then false.
    bool propose(ConstraintType type, std::vector<Place> refs);

    Inference take() { return std::move(m_result); }

private:
    void learnFromExisting();
    void learn(const Constraint& constraint, const std::unordered_map<std::string, std::size_t>& nodeAt,
               const std::unordered_map<std::string, std::size_t>& curveAt);
    std::string freshId();

    Inference m_result;
    double m_angle;
    std::vector<ConstraintType> m_kinds;
    const RedundancyTest& m_isRedundant;
    PlaneCurves m_plane;
    std::vector<std::size_t> m_clusters;
    std::size_t m_clusterCount = 0;
    DisjointSets m_xs{0}, m_ys{0};
    std::vector<bool> m_upright;              // by curve
    std::unordered_set<std::string> m_known;  // constraints that are there, by kind and places
    std::unordered_set<std::string> m_ids;
    std::size_t m_nextId = 0;
};

/// Horizontal, vertical, collinear, parallel and perpendicular lines, and lines of equal length.
void inferUprightLines(InferState& state);
void inferDirections(InferState& state);
void inferEqualLengths(InferState& state);

/// Centres at one level, points on curves, pairs symmetric about a line.
void inferRelations(InferState& state);

}  // namespace holdfast::inference
