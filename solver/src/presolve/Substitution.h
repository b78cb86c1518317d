#pragma once

#include <cstddef>
#include <vector>

#include "solver/src/Uses.h"

namespace holdfast::solver::detail {

/// Values that constraints make the same, up to a sign and an offset: union-find with a relation on every link, so
/// that such constraints are gone before the numbers start.
///
/// value(a) = sign * value(root) + offset. Values tied to constants hang on one common root, the ground, whose value
/// is 0. Each tie has an owner, so that a contradiction can name those that it runs through.
class Substitution {
public:
    struct Link {
        int root = 0;
        double sign = 1.0;
        double offset = 0.0;
    };

    enum class Outcome { joined, spare, conflicting };

    explicit Substitution(int valueCount);

    /// Adds one more value and returns its number.
    int addValue();

    /// Asks that value(a) = sign * value(b) + offset. Spare: it held already, to within the tolerance. Conflicting:
    /// it cannot hold beside the ties before; nothing changes.
    Outcome tie(int a, int b, double sign, double offset, double tolerance, int owner);

    /// Asks that value(a) = constant.
    Outcome fix(int a, double constant, double tolerance, int owner) {
        return tie(a, kGround, 1.0, constant, tolerance, owner);
    }

    Link find(int a);
    bool isConstant(int a) { return find(a).root == kGround; }

    /// Owners of the ties that connect two values (or one with the ground), each once; empty when none do.
    std::vector<int> ownersBetween(int a, int b) const;
    std::vector<int> ownersToGround(int a) const { return ownersBetween(a, kGround); }

    static constexpr int kGround = -1;

private:
    struct Tie {
        int a, b, owner;
    };

    static std::size_t at(int value) { return static_cast<std::size_t>(std::ptrdiff_t{value} + 1); }
    void hang(int root, const Link& below);

    // Member 0 is the ground, member v + 1 is value v.
    std::vector<Link> m_links;
    std::vector<int> m_sizes;
    std::vector<Tie> m_ties;
};

}  // namespace holdfast::solver::detail
