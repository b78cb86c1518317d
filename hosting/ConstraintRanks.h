#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "document/Document.h"
#include "hosting/Uses.h"

namespace holdfast::hosting {

/// Which of some proposed constraints say something of their own, judged one after the other by the rank of their
/// equations where the drawing stands: all proposals are looked at in one elimination, without a solve for any.
///
/// All proposals hold as drawn. Where the first derivatives of the equations say less than the equations themselves
/// (an end on a circle that is tangent anyway), they decide nevertheless: what is taken is enough to hold the drawing.
class ConstraintRanks {
public:
    /// The proposals are the constraints of the document from `firstProposal` on; those before are counted at once.
    /// The document may change or go afterwards. Throws UnsolvableDocument for what the solver cannot read. Cost: near
    /// to linear in the drawing.
    ConstraintRanks(const Document& document, std::size_t firstProposal);
    ~ConstraintRanks();
    ConstraintRanks(ConstraintRanks&&) noexcept;
    ConstraintRanks& operator=(ConstraintRanks&&) noexcept;

    /// From now on the entity counts as one that cannot move.
    void hold(std::size_t entity);

    /// In how many independent directions a place that is a point can still go; -1 for a place that is none, or
    /// that is computed from others, as a middle is.
    int freedomOf(const Place& place);
    /// Whether one coordinate of such a place, 0 for x and 1 for y, is determined.
    bool isDetermined(const Place& place, int coordinate);
    /// How many values of an entity are still to be chosen.
    int freedomOf(std::size_t entity);

    /// Counts a proposal, by its number in the document, if the constraints that count do not imply any part of it.
    /// How many degrees of freedom it takes; 0: it does not count.
    int take(std::size_t proposal);
    /// Counts it if they do not imply all of it.
    int takePart(std::size_t proposal);

private:
    struct Inside;
    std::unique_ptr<Inside> m_inside;
};

}  // namespace holdfast::hosting
