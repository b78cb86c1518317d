#include <gtest/gtest.h>
#include <holdfast/solver/Solver.h>

namespace holdfast::solver {
namespace {

int freedomOf(const Diagnosis& diagnosis, EntityId entity) {
    for (const EntityFreedom& e : diagnosis.entities) {
        if (e.entity == entity)
            return e.freedom;
    }
    return -1;
}

TEST(Diagnose, CountsTheFreedomOfPartsAndOfEntities) {
    Sketch sketch;
    const EntityId a = sketch.addLine({0, 0}, {4, 0}).value(), b = sketch.addLine({4, 0}, {4, 3}).value();
    const EntityId alone = sketch.addCircle({20, 0}, 2).value();
    const EntityId held = sketch.addPoint({30, 0}).value();
    (void)sketch.add(Coincident{endOf(a), startOf(b)}).value();
    (void)sketch.add(Horizontal{a}).value();
    (void)sketch.add(FixedPoint{startOf(a)}).value();
    ASSERT_TRUE(sketch.fix(held).isDone());
    const Diagnosis diagnosis = diagnose(sketch).value();
    // a can grow; with it goes b's start, and b's end goes where it will.
    EXPECT_EQ(diagnosis.freedom, 1 + 2 + 3);
    EXPECT_EQ(freedomOf(diagnosis, a), 1);
    EXPECT_EQ(freedomOf(diagnosis, b), 3);
    EXPECT_EQ(freedomOf(diagnosis, alone), 3);
    EXPECT_EQ(freedomOf(diagnosis, held), 0);
    ASSERT_EQ(diagnosis.parts.size(), 2u);
    EXPECT_EQ(diagnosis.parts[0].entities, (std::vector<EntityId>{a, b}));
    EXPECT_EQ(diagnosis.parts[0].freedom, 3);
}

/// How an entity can move, a motion after the other.
std::string motionsOf(const Diagnosis& diagnosis, EntityId entity) {
    std::string text;
    for (const EntityFreedom& e : diagnosis.entities)
        for (std::size_t i = 0; e.entity == entity && i < e.motions.size(); ++i)
            text += (i > 0 ? "; " : "") + toString(e.motions[i]);
    return text;
}

TEST(Diagnose, TellsHowEachEntityCanMove) {
    Sketch sketch;
    const EntityId hand = sketch.addLine({3, 4}, {13, 4}).value(), slider = sketch.addLine({0, 9}, {5, 9}).value();
    const EntityId ring = sketch.addCircle({20, 0}, 2).value(), hole = sketch.addCircle({40, 0}, 2).value();
    (void)sketch.add(FixedPoint{startOf(hand)}).value();
    (void)sketch.add(Length{hand, 10}).value();
    (void)sketch.add(FixedCurve{slider}).value();
    (void)sketch.add(Length{slider, 5}).value();
    (void)sketch.add(FixedPoint{centreOf(hole)}).value();
    const Diagnosis diagnosis = diagnose(sketch).value();
    EXPECT_EQ(motionsOf(diagnosis, hand), "turn about (3, 4)");
    EXPECT_EQ(motionsOf(diagnosis, slider), "slide along (1, 0)");
    EXPECT_EQ(motionsOf(diagnosis, hole), "change its radius");
    EXPECT_FALSE(diagnosis.entities[3].isFree);
    EXPECT_EQ(diagnosis.entities[2].entity, ring);
    EXPECT_TRUE(diagnosis.entities[2].isFree);
    for (const EntityFreedom& entity : diagnosis.entities)
        EXPECT_EQ(entity.motions.size(), static_cast<std::size_t>(entity.freedom)) << toString(entity.entity);
    for (const FreeMotion& motion : diagnosis.entities[2].motions)
        EXPECT_EQ(motion.rates.size(), sketch.values(ring).size());
}

TEST(Diagnose, TellsNoMotionsWhereNobodyAsksOrALimitIsReached) {
    Sketch sketch;
    const EntityId line = sketch.addLine({0, 0}, {4, 0}).value();
    (void)sketch.add(Horizontal{line}).value();
    SolveOptions options;
    options.tellsMotions = false;
    const Diagnosis silent = diagnose(sketch, options).value();
    EXPECT_EQ(freedomOf(silent, line), 3);
    EXPECT_TRUE(silent.entities.front().motions.empty());
    EXPECT_FALSE(silent.endedEarly);
    options = {};
    options.isCancelled = [] { return true; };
    const Diagnosis cancelled = diagnose(sketch, options).value();
    EXPECT_EQ(freedomOf(cancelled, line), 3);
    EXPECT_TRUE(cancelled.entities.front().motions.empty());
    EXPECT_EQ(cancelled.endedEarly, Ending::cancelled);
}

TEST(Diagnose, SeesThatOneEntityIsHeldWhileItsPartIsFree) {
    Sketch sketch;
    const EntityId p = sketch.addPoint({0, 0}).value(), q = sketch.addPoint({3, 4}).value();
    const EntityId r = sketch.addPoint({6, 0}).value();
    (void)sketch.add(FixedPoint{pointOf(p)}).value();
    (void)sketch.add(Distance{pointOf(p), pointOf(q), 5}).value();
    (void)sketch.add(DistanceX{pointOf(p), pointOf(q), 3}).value();
    (void)sketch.add(Distance{pointOf(q), pointOf(r), 5}).value();
    const Diagnosis diagnosis = diagnose(sketch).value();
    EXPECT_EQ(diagnosis.freedom, 1);
    EXPECT_EQ(freedomOf(diagnosis, p), 0);
    EXPECT_EQ(freedomOf(diagnosis, q), 0);
    EXPECT_EQ(freedomOf(diagnosis, r), 1);
}

TEST(Diagnose, CountsWhatMovesTogetherWithEachOfThem) {
    Sketch sketch;
    std::vector<EntityId> lines;
    for (int i = 0; i < 3; ++i) {
        lines.push_back(sketch.addLine({0, 10.0 * i}, {8, 10.0 * i + 6}).value());
        (void)sketch.add(Length{lines.back(), 10}).value();
        (void)sketch.add(FixedPoint{startOf(lines.back())}).value();
        if (i > 0)
            (void)sketch.add(Parallel{lines[0], lines.back()}).value();
    }
    const Diagnosis diagnosis = diagnose(sketch).value();
    EXPECT_EQ(diagnosis.freedom, 1);
    for (const EntityId line : lines)
        EXPECT_EQ(freedomOf(diagnosis, line), 1);
}

TEST(Diagnose, NamesWhatIsSaidTwice) {
    Sketch sketch;
    const EntityId a = sketch.addLine({0, 0}, {4, 0}).value(), b = sketch.addLine({0, 3}, {4, 3}).value();
    (void)sketch.add(Horizontal{a}).value();
    (void)sketch.add(Horizontal{b}).value();
    const ConstraintId twice = sketch.add(Parallel{a, b}).value();
    const Diagnosis diagnosis = diagnose(sketch).value();
    ASSERT_EQ(diagnosis.redundant.size(), 1u);
    EXPECT_EQ(diagnosis.redundant.front().constraint, twice);
    EXPECT_TRUE(diagnosis.redundant.front().isWhole);
    EXPECT_TRUE(diagnosis.conflicts.empty());
}

/// A triangle whose sides cannot meet.
struct Impossible {
    Sketch sketch;
    EntityId a = sketch.addPoint({0, 0}).value(), b = sketch.addPoint({4, 0}).value();
    EntityId c = sketch.addPoint({2, 2}).value();
    ConstraintId ab = sketch.add(Distance{pointOf(a), pointOf(b), 10}).value();
    ConstraintId bc = sketch.add(Distance{pointOf(b), pointOf(c), 3}).value();
    ConstraintId ca = sketch.add(Distance{pointOf(c), pointOf(a), 3}).value();
    ConstraintId level = sketch.add(HorizontalPoints{pointOf(a), pointOf(b)}).value();
};

TEST(Diagnose, ExplainsAConflict) {
    Impossible triangle;
    const Diagnosis diagnosis = diagnose(triangle.sketch).value();
    ASSERT_EQ(diagnosis.conflicts.size(), 1u);
    EXPECT_EQ(diagnosis.conflicts.front().constraints,
              (std::vector<ConstraintId>{triangle.ab, triangle.bc, triangle.ca}));
    EXPECT_TRUE(diagnosis.conflicts.front().isMinimal);
    EXPECT_EQ(diagnosis.worstConstraint, triangle.ab);
    EXPECT_NEAR(diagnosis.worstResidual, 6.0, 1e-12);
    EXPECT_NE(diagnosis.report().find("in conflict: c0, c1, c2"), std::string::npos);
}

TEST(Diagnose, EndsItsSearchAtALimit) {
    Impossible triangle;
    SolveOptions options;
    options.iterations = 0;
    const Diagnosis diagnosis = diagnose(triangle.sketch, options).value();
    EXPECT_TRUE(diagnosis.conflicts.empty());
    EXPECT_EQ(diagnosis.endedEarly, Ending::iterationLimit);
}

TEST(FindConflict, IsEmptyWhereAllCanHold) {
    Impossible triangle;
    EXPECT_EQ(findConflict(triangle.sketch).value().constraints.size(), 3u);
    EXPECT_TRUE(findConflict(triangle.sketch).value().isMinimal);
    ASSERT_TRUE(triangle.sketch.remove(triangle.bc).isDone());
    EXPECT_TRUE(findConflict(triangle.sketch).value().isEmpty());
    const Target apart[] = {{pointOf(triangle.c), {0, 50}}, {pointOf(triangle.a), {0, 0}}};
    const Conflict conflict = findConflict(triangle.sketch, apart).value();
    EXPECT_EQ(conflict.constraints, std::vector<ConstraintId>{triangle.ca});
    EXPECT_EQ(conflict.targets, (std::vector<std::size_t>{0, 1}));
}

}  // namespace
}  // namespace holdfast::solver
