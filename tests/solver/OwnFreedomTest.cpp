#include "solver/src/diagnosis/OwnFreedom.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "solver/src/diagnosis/Diagnose.h"
#include "tests/solver/Sketch.h"

// Constraints that each have something of their own to move.
namespace holdfast::solver::detail {

namespace {

std::string ownIn(const SketchText& sketch) {
    return sketch.namesOf(constraintsWithOwnFreedom(sketch.sketch));
}

/// Lines of a few directions and lengths, some in chains that share their ends.
class Chains {
public:
    Chains(unsigned seed, int lines, int directions, int lengths) : m_random(seed), m_text("") {
        Vec2 at{};
        for (int i = 0; i < lines; ++i) {
            m_directions.push_back(below(directions));
            m_lengths.push_back(below(lengths));
            const double angle = 0.1 + std::numbers::pi * m_directions.back() / directions;
            const double length = 1.0 + m_lengths.back();
            const bool isJoined = i > 0 && below(5) > 0;
            if (!isJoined)
                at = {static_cast<double>(below(1000)), static_cast<double>(below(1000))};
            const Vec2 next{at.x + length * std::cos(angle), at.y + length * std::sin(angle)};
            char statement[200];
            std::snprintf(statement, sizeof statement, "line a%d %.17g,%.17g %.17g,%.17g", i, at.x, at.y, next.x,
                          next.y);
            m_text.add(statement);
            if (isJoined)
                m_text.add("coincident " + name(i - 1) + ".end " + name(i) + ".start");
            at = next;
        }
        m_text.sketch.takeReference();
    }

    /// Each line is tied to the first of its direction, and to the first of its length.
    int tieToFirst() {
        int ties = 0;
        for (int i = 0; i < count(); ++i) {
            ties += tieTo("parallel", m_directions, i) ? 1 : 0;
            ties += tieTo("equal", m_lengths, i) ? 1 : 0;
        }
        return ties;
    }

    /// What holds of two lines, or of three points, whichever come.
    void tieAnyhow(int times) {
        for (int k = 0; k < times; ++k) {
            const int i = below(count()), j = below(count());
            if (i == j)
                continue;
            if (m_directions[number(i)] == m_directions[number(j)])
                m_text.add("parallel " + name(i) + " " + name(j));
            if (m_lengths[number(i)] == m_lengths[number(j)])
                m_text.add("equal " + name(i) + " " + name(j));
        }
    }

    const SketchText& text() const { return m_text; }

private:
    static std::string name(int i) { return "a" + std::to_string(i); }
    static std::size_t number(int i) { return static_cast<std::size_t>(i); }
    int count() const { return static_cast<int>(m_directions.size()); }
    int below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(m_random); }

    bool tieTo(const std::string& type, const std::vector<int>& kinds, int i) {
        const auto first = std::find(kinds.begin(), kinds.end(), kinds[number(i)]) - kinds.begin();
        if (first == i)
            return false;
        m_text.add(type + " " + name(static_cast<int>(first)) + " " + name(i));
        return true;
    }

    std::mt19937 m_random;
    SketchText m_text;
    std::vector<int> m_directions, m_lengths;
};

/// Names of what others imply.
std::string redundantIn(const SketchData& sketch) {
    std::string names;
    for (const Redundancy& spare : redundanciesOf(sketch).constraints)
        names += sketch.constraints[static_cast<std::size_t>(spare.constraint)].id + (spare.isWhole ? " " : " partly ");
    return names;
}

TEST(OwnFreedom, IsFoundWhereLinesHaveADirectionAndALengthToGive) {
    EXPECT_EQ(ownIn(SketchText("line a 0,0 5,1; line b 0,3 5,4; parallel a b; equal a b")), "c0 c1");
    EXPECT_EQ(ownIn(SketchText("line a 0,0 5,1; circle c 9,9 2; point p 11,9; point_on_curve p c")), "c0");
}

TEST(OwnFreedom, IsNotFoundInWhatOthersImplyNorInThese) {
    EXPECT_EQ(
        ownIn(SketchText("line a 0,0 5,1; line b 0,3 5,4; line c 0,6 5,7; parallel a b; parallel b c; parallel a c; "
                         "equal a c")),
        "c3");
}

TEST(OwnFreedom, IsNotFoundInWhatIsMerged) {
    EXPECT_EQ(ownIn(SketchText("line a 0,0 5,0; line b 5,0 9,9; coincident a.end b.start; horizontal a")), "");
    EXPECT_EQ(ownIn(SketchText("fixed! line a 0,0 5,1; fixed! line b 0,3 5,4; parallel a b")), "");
}

/// A leg of a triangle that is to be as long as the side across the right angle has a length of its own, but on the
/// way there the other leg vanishes.
TEST(OwnFreedom, IsNotFoundInWhatIsFarFromHolding) {
    const std::string triangle =
        "line a 0,0 1.55,0; line b 0,0 0,1; line c 1.55,0 0,1; coincident a.start b.start; coincident a.end c.start; "
        "coincident b.end c.end; horizontal a; vertical b; equal ";
    EXPECT_EQ(ownIn(SketchText(triangle + "a c")), "");
    EXPECT_EQ(ownIn(SketchText("line a 0,0 1.55,0; line b 0,1 1.56,1; equal a b")), "c0");
}

/// However they hang together over ends, directions and lengths: nothing is left to be eliminated.
TEST(OwnFreedom, IsFoundInAllThatTiesLongChainsByDirectionsAndLengths) {
    Chains chains(3, 2000, 300, 40);
    const int ties = chains.tieToFirst();
    EXPECT_GT(ties, 3000);
    EXPECT_EQ(static_cast<int>(constraintsWithOwnFreedom(chains.text().sketch).size()), ties);
}

TEST(OwnFreedom, LeavesWhatIsImpliedTheSameWithoutIt) {
    std::size_t own = 0, implied = 0;
    for (unsigned seed = 1; seed <= 60; ++seed) {
        Chains chains(seed, 24, 4, 3);
        chains.tieAnyhow(40);
        const SketchData& whole = chains.text().sketch;
        SketchData rest = whole;
        for (const int c : constraintsWithOwnFreedom(whole)) {
            rest.constraints[static_cast<std::size_t>(c)].active = false;
            ++own;
        }
        EXPECT_EQ(redundantIn(whole), redundantIn(rest)) << "seed " << seed;
        implied += redundanciesOf(whole).constraints.size();
    }
    EXPECT_GT(own, 100U);
    EXPECT_GT(implied, 100U);
}

/// Where entities are counted one by one, every row is eliminated.
TEST(OwnFreedom, IsCountedAsByEliminatingAll) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        Chains chains(seed, 24, 4, 3);
        chains.tieAnyhow(static_cast<int>(seed));
        const Diagnosis apart = diagnose(chains.text().sketch, false), all = diagnose(chains.text().sketch, true);
        EXPECT_EQ(apart.freedom, all.freedom) << "seed " << seed;
        ASSERT_EQ(apart.parts.size(), all.parts.size());
        for (std::size_t i = 0; i < all.parts.size(); ++i)
            EXPECT_EQ(apart.parts[i].freedom, all.parts[i].freedom) << "seed " << seed;
        ASSERT_EQ(apart.redundant.size(), all.redundant.size());
        for (std::size_t i = 0; i < all.redundant.size(); ++i)
            EXPECT_EQ(apart.redundant[i].constraint, all.redundant[i].constraint) << "seed " << seed;
    }
}

}  // namespace

}  // namespace holdfast::solver::detail
