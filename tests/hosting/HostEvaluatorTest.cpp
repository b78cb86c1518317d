#include "hosting/evaluator/HostEvaluator.h"

#include <gtest/gtest.h>

#include <numbers>

#include <yxdb/YxDbCurve.h>

#include "commands/align/ConstraintAlignCmdCenter.h"
#include "commands/lengthen/ConstraintLengthenCmdCenter.h"
#include "commands/mirror/ConstraintMirrorCmdCenter.h"
#include "drag/CYxRotateReleaseConstraint.h"
#include "tests/hosting/Hosted.h"

namespace holdfast::hosting {
namespace {

YxGeMatrix3d turn(double degrees, Vec2 about) {
    YxGeMatrix3d matrix;
    matrix.setToRotation(degrees * std::numbers::pi / 180.0, YxGeVector3d::kZAxis, {about.x, about.y, 0.0});
    return matrix;
}

YxGeMatrix3d mirrorAtY() {
    YxGeMatrix3d matrix;
    matrix.entry[0][0] = -1.0;
    return matrix;
}

void mirrorInHost(Hosted& hosted, const char* name) {
    const YxSmartPtr<YxDbEntity> open(YxDbObjectIdImpl::openObject(hosted.drawing.id(name), YxDb::kForWrite, false));
    ASSERT_EQ(open->transformBy(mirrorAtY()), Yxrt::eOk);
}

void align(Hosted& hosted, std::initializer_list<const char*> names, const YxGeMatrix3d& by) {
    ConstraintAlignCmdCenter centre;
    centre.seperateObjectes(hosted.ids(names));
    centre.updateCenterMat(by);
    centre.addDataToWork();
}

TEST(EvaluatedAlign, TakesTheNeighbourAlong) {
    Hosted hosted(corner());
    align(hosted, {"a"}, translation(3, 4));
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_TRUE(isNear(hosted.line("a").start, {3, 4}));
    EXPECT_TRUE(isNear(hosted.line("a").end, {13, 4}));
    EXPECT_TRUE(isNear(hosted.line("b").start, {13, 4}));
    EXPECT_TRUE(isNear(hosted.line("b").end, {13, 9}));
}

TEST(EvaluatedAlign, IsDoneOnceHoweverOftenTheNetworkIsEvaluated) {
    Hosted hosted(corner());
    align(hosted, {"a"}, translation(3, 4));
    hosted.evaluate();
    hosted.markChanged();
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_TRUE(isNear(hosted.line("a").start, {3, 4}));
    EXPECT_TRUE(hosted.evaluator.last().unchanged);
}

TEST(EvaluatedAlign, MovesAgainForASecondEdit) {
    Hosted hosted(corner());
    align(hosted, {"a"}, translation(3, 4));
    hosted.evaluate();
    align(hosted, {"a"}, translation(1, 0));
    hosted.evaluate();
    EXPECT_TRUE(isNear(hosted.line("a").start, {4, 4}));
}

TEST(EvaluatedAlign, KeepsAHorizontalLineHorizontalAndLong) {
    Hosted hosted(corner({constraint("level", ConstraintType::horizontal, {{"a"}})}));
    align(hosted, {"a"}, turn(90, {0, 0}));
    EXPECT_TRUE(hosted.evaluate());
    const LineShape a = hosted.line("a");
    EXPECT_NEAR(a.start.y, a.end.y, 1e-9);
    EXPECT_NEAR(std::abs(a.end.x - a.start.x), 10, 1e-6);
    EXPECT_GT(hosted.evaluator.last().miss, 1.0);
}

TEST(EvaluatedAlign, NamesWhatItYieldedToForACommandThatRefusesLess) {
    Hosted hosted(corner({constraint("level", ConstraintType::horizontal, {{"a"}})}));
    align(hosted, {"a"}, turn(90, {0, 0}));
    hosted.evaluate();
    const Evaluation& refused = hosted.evaluator.group().refuseYielded();
    EXPECT_FALSE(refused.solved);
    EXPECT_EQ(refused.conflicting, std::vector<std::string>{"level"});
}

TEST(EvaluatedAlign, HasNothingToNameWhereItWasMet) {
    Hosted hosted(corner());
    align(hosted, {"a"}, turn(90, {0, 0}));
    hosted.evaluate();
    EXPECT_TRUE(hosted.evaluator.group().refuseYielded().solved);
}

TEST(EvaluatedAlign, LeavesWhatIsNotConnectedToTheLastBit) {
    Document document = corner();
    document.entities.push_back(entity("far", LineShape{{0.1, 0.7}, {0.3, 1.0 / 3.0}}));
    document.constraints.push_back(constraint("fixed", ConstraintType::fixed, {{"far", PlaceKind::start}}));
    Hosted hosted(document);
    align(hosted, {"a"}, translation(3, 4));
    hosted.evaluate();
    EXPECT_EQ(hosted.line("far"), (LineShape{{0.1, 0.7}, {0.3, 1.0 / 3.0}}));
}

TEST(EvaluatedAlign, ReflectsAnArcTogetherWithWhatIsTiedToItsStart) {
    Document document;
    document.entities = {entity("arc", ArcShape{{0, 0}, 5, 0, 1}), entity("l", LineShape{{5, 0}, {9, 1}})};
    document.constraints = {
        constraint("tie", ConstraintType::coincident, {{"arc", PlaceKind::start}, {"l", PlaceKind::start}})};
    Hosted hosted(document);
    align(hosted, {"arc", "l"}, mirrorAtY());
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_TRUE(isNear(hosted.line("l").start, {-5, 0}));
    EXPECT_TRUE(isNear(hosted.line("l").end, {-9, 1}));
    const auto arc = hosted.as<ArcShape>("arc");
    EXPECT_NEAR(arc.startAngle, std::numbers::pi - 1, 1e-9);
    EXPECT_NEAR(arc.endAngle, std::numbers::pi, 1e-9);
}

TEST(EvaluatedAlign, ReflectsALineTogetherWithTheCircleThatTouchesIt) {
    Document document;
    document.entities = {entity("c", CircleShape{{3, 4}, 4}), entity("l", LineShape{{0, 0}, {9, 0}})};
    document.constraints = {constraint("touch", ConstraintType::tangent, {{"l"}, {"c"}})};
    Hosted hosted(document);
    align(hosted, {"c", "l"}, mirrorAtY());
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_EQ(hosted.evaluator.last().miss, 0.0);
    EXPECT_TRUE(isNear(hosted.as<CircleShape>("c").centre, {-3, 4}));
    EXPECT_TRUE(isNear(hosted.line("l").end, {-9, 0}));
}

TEST(EvaluatedAlign, ThatReflectsGoesBackToTheLastBitWhereItCannotBe) {
    Document document;
    document.entities = {entity("arc", ArcShape{{0.1, 0.2}, 5, 0, 1}), entity("post", PointShape{{5.1, 0.2}})};
    document.entities[1].fixed = true;
    document.constraints = {constraint("tie", ConstraintType::coincident, {{"arc", PlaceKind::start}, {"post"}}),
                            constraint("here", ConstraintType::fixed, {{"arc"}}),
                            constraint("r", ConstraintType::radius, {{"arc"}}, 5.0)};
    Hosted hosted(document);
    align(hosted, {"arc"}, mirrorAtY());
    EXPECT_FALSE(hosted.evaluate());
    EXPECT_EQ(hosted.drawing.document(), document);
}

bool lengthen(Hosted& hosted, const char* name, const Shape& to) {
    ConstraintLengthenCmdCenter centre;
    centre.addOriCurveInfo(static_cast<const YxDbCurve*>(&hosted.drawing.entity(name)), hosted.drawing.id(name));
    hosted.drawing.write(name, to);
    centre.addDataToWork();
    return hosted.evaluate();
}

TEST(EvaluatedLengthen, TakesTheNeighbourOfTheMovedEndAlong) {
    Hosted hosted(corner());
    EXPECT_TRUE(lengthen(hosted, "a", LineShape{{0, 0}, {14, 0}}));
    EXPECT_EQ(hosted.line("a"), (LineShape{{0, 0}, {14, 0}}));
    EXPECT_TRUE(isNear(hosted.line("b").start, {14, 0}));
}

TEST(EvaluatedLengthen, MakesTheEqualPartnerAsLong) {
    Document document = corner({constraint("same", ConstraintType::equal, {{"a"}, {"b"}})});
    document.entities[1].shape = LineShape{{10, 0}, {10, 10}};
    Hosted hosted(document);
    EXPECT_TRUE(lengthen(hosted, "a", LineShape{{0, 0}, {14, 0}}));
    EXPECT_TRUE(isNear(hosted.line("a").end, {14, 0}));
    const LineShape b = hosted.line("b");
    EXPECT_NEAR(std::hypot(b.end.x - b.start.x, b.end.y - b.start.y),
                std::hypot(14 - hosted.line("a").start.x, hosted.line("a").start.y), 1e-7);
}

TEST(EvaluatedLengthen, GoesBackWhenADimensionHoldsTheLength) {
    Hosted hosted(corner({constraint("ten", ConstraintType::distance, {{"a"}}, 10.0),
                          constraint("here", ConstraintType::fixed, {{"a", PlaceKind::start}})}));
    EXPECT_FALSE(lengthen(hosted, "a", LineShape{{0, 0}, {14, 0}}));
    EXPECT_EQ(hosted.line("a"), (LineShape{{0, 0}, {10, 0}}));
    EXPECT_EQ(hosted.line("b").start, (Vec2{10, 0}));
    EXPECT_EQ(hosted.evaluator.last().conflicting, (std::vector<std::string>{"ten", "here"}));
}

TEST(EvaluatedLengthen, StaysWhenOnlyALaterEvaluationFails) {
    Hosted hosted(corner());
    EXPECT_TRUE(lengthen(hosted, "a", LineShape{{0, 0}, {14, 0}}));
    hosted.drawing.addConstraint(constraint("five", ConstraintType::distance, {{"a"}}, 5.0));
    hosted.drawing.addConstraint(constraint("six", ConstraintType::distance, {{"a"}}, 6.0));
    hosted.markChanged();
    EXPECT_FALSE(hosted.evaluate());
    EXPECT_EQ(hosted.line("a"), (LineShape{{0, 0}, {14, 0}}));
}

TEST(EvaluatedLengthen, GoesBackWhenAConstraintMakesNoSense) {
    Hosted hosted(corner({constraint("odd", ConstraintType::radius, {{"b"}}, 3.0)}));
    EXPECT_FALSE(lengthen(hosted, "a", LineShape{{0, 0}, {14, 0}}));
    EXPECT_EQ(hosted.line("a"), (LineShape{{0, 0}, {10, 0}}));
    EXPECT_NE(hosted.evaluator.last().complaint.find("odd"), std::string::npos);
}

TEST(EvaluatedLengthen, KeepsTheWholeCurveWhenTheConverterOfAnotherCommandTellsNothing) {
    Hosted hosted(corner());
    align(hosted, {"a"}, translation(0, 0));
    hosted.evaluate();
    EXPECT_TRUE(lengthen(hosted, "a", LineShape{{0, 0}, {14, 0}}));
    EXPECT_EQ(hosted.line("a"), (LineShape{{0, 0}, {14, 0}}));
    EXPECT_TRUE(isNear(hosted.line("b").start, {14, 0}));
    EXPECT_TRUE(isNear(hosted.line("b").end, {14, 5}));
}

TEST(EvaluatedLengthen, HoldsTheEndThatMovedOfAnArcSeenFromBelow) {
    Document document;
    document.entities = {entity("arc", ArcShape{{0, 0}, 5, 2, 3}),
                         entity("l", LineShape{{5 * std::cos(3), 5 * std::sin(3)}, {-9, 1}})};
    Hosted hosted(document);
    mirrorInHost(hosted, "arc");
    hosted.drawing.write("arc", ArcShape{{0, 0}, 5, 2, 3});
    hosted.drawing.addConstraint(
        constraint("tie", ConstraintType::coincident, {{"arc", PlaceKind::start}, {"l", PlaceKind::start}}));
    EXPECT_TRUE(lengthen(hosted, "arc", ArcShape{{0, 0}, 5, 2, 4}));
    EXPECT_TRUE(isNear(hosted.line("l").start, {5 * std::cos(4), 5 * std::sin(4)}));
    EXPECT_NEAR(hosted.as<ArcShape>("arc").endAngle, 4, 1e-9);
}

TEST(EvaluatedMirror, SkipsNullAndErasedEntities) {
    Document document = corner();
    document.entities.push_back(entity("gone", LineShape{{0, 9}, {5, 9}}));
    Hosted hosted(document);
    YxArray<YxDbObjectId> ids = hosted.ids({"a", "gone"});
    ids.append(YxDbObjectId());
    hosted.drawing.write("a", LineShape{{0, 0}, {-10, 0}});
    ConstraintMirrorCmdCenter().addDataToWork(ids);
    hosted.drawing.erase("gone");
    hosted.markChanged();
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_TRUE(isNear(hosted.line("b").start, {-10, 0}));
}

TEST(EvaluatedMirror, LetsTheOthersFollowWhatTheHostHasMirrored) {
    Hosted hosted(corner());
    hosted.drawing.write("a", LineShape{{0, 0}, {-10, 0}});
    ConstraintMirrorCmdCenter().addDataToWork(hosted.ids({"a"}));
    hosted.markChanged();
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_EQ(hosted.line("a"), (LineShape{{0, 0}, {-10, 0}}));
    EXPECT_TRUE(isNear(hosted.line("b").start, {-10, 0}));
}

TEST(EvaluatedMirror, KeepsATieToTheStartOfAnArcWhoseEndsChangePlaces) {
    Document document;
    document.entities = {entity("arc", ArcShape{{0, 0}, 5, 0, 1}), entity("l", LineShape{{5, 0}, {9, 1}})};
    document.constraints = {
        constraint("tie", ConstraintType::coincident, {{"arc", PlaceKind::start}, {"l", PlaceKind::start}})};
    Hosted hosted(document);
    mirrorInHost(hosted, "arc");
    ConstraintMirrorCmdCenter().addDataToWork(hosted.ids({"arc"}));
    hosted.markChanged();
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_TRUE(isNear(hosted.line("l").start, {-5, 0}));
    const Document after = hosted.drawing.document();
    EXPECT_EQ(after.constraints[0].refs[0], (Place{"arc", PlaceKind::end, 0}));
    EXPECT_NEAR(std::get<ArcShape>(after.entities[0].shape).endAngle, std::numbers::pi, 1e-12);
}

TEST(EvaluatedMirror, WritesAnArcThatIsSeenFromBelowWithItsEndsInPlace) {
    Document document;
    document.entities = {entity("arc", ArcShape{{0, 0}, 5, 0, 1})};
    Hosted hosted(document);
    mirrorInHost(hosted, "arc");
    hosted.drawing.write("arc", ArcShape{{1, 0}, 5, 2, 3});
    YxGePoint3d start;
    static_cast<const YxDbCurve&>(hosted.drawing.entity("arc")).getStartPoint(start);
    EXPECT_TRUE(isNear({start.x, start.y}, {1 + 5 * std::cos(3), 5 * std::sin(3)}));
}

TEST(EvaluatedRotation, IsTriedWithoutMovingAnything) {
    Hosted hosted(corner({constraint("level", ConstraintType::horizontal, {{"a"}})}));
    bool ignored = false, result = false;
    YxArray<YxDbObjectId> constrained;
    CYxRotateReleaseConstraint::analysisRotateBox(hosted.ids({"a"}), {0, 0, 0}, ignored, constrained, result);
    EXPECT_EQ(hosted.drawing.document(), corner({constraint("level", ConstraintType::horizontal, {{"a"}})}));
    EXPECT_EQ(hosted.evaluator.rotateReport(), std::vector<std::string>{"level"});
}

TEST(EvaluatedRotation, LetsNeighboursFollowTheRealOne) {
    Hosted hosted(corner());
    bool ignored = false, result = false;
    YxArray<YxDbObjectId> constrained;
    CYxRotateReleaseConstraint::analysisRotateBox(hosted.ids({"a"}), {0, 0, 0}, ignored, constrained, result);
    EXPECT_TRUE(hosted.evaluator.rotateReport().empty());
    hosted.drawing.write("a", LineShape{{0, 0}, {0, 10}});
    hosted.markChanged();
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_EQ(hosted.line("a"), (LineShape{{0, 0}, {0, 10}}));
    EXPECT_TRUE(isNear(hosted.line("b").start, {0, 10}));
}

TEST(EvaluatedRotation, NamesWhatItsNeighboursCannotFollowToo) {
    // b cannot follow the end of a: it is level and its other end is held.
    Document document = corner({constraint("level", ConstraintType::horizontal, {{"b"}}),
                                constraint("upright", ConstraintType::vertical, {{"a"}}),
                                constraint("long", ConstraintType::distance, {{"a"}}, 10.0),
                                constraint("here", ConstraintType::fixed, {{"b", PlaceKind::end}})});
    document.entities[0].shape = LineShape{{10, -10}, {10, 0}};
    document.entities[1].shape = LineShape{{10, 0}, {15, 0}};
    Hosted hosted(document);
    bool ignored = false, result = false;
    YxArray<YxDbObjectId> constrained;
    CYxRotateReleaseConstraint::analysisRotateBox(hosted.ids({"a"}), {0, 0, 0}, ignored, constrained, result);
    EXPECT_EQ(hosted.evaluator.rotateReport(), (std::vector<std::string>{"tie", "upright"}));
}

TEST(EvaluatedRotation, IsTriedAnewWhenAnotherEditHasTakenItsBasePointAway) {
    Hosted hosted(corner({constraint("level", ConstraintType::horizontal, {{"a"}})}));
    bool ignored = false, result = false;
    YxArray<YxDbObjectId> constrained;
    CYxRotateReleaseConstraint::analysisRotateBox(hosted.ids({"b"}), {0, 0, 0}, ignored, constrained, result);
    EXPECT_TRUE(hosted.evaluator.rotateReport().empty());
    hosted.header().uninit();
    align(hosted, {"b"}, translation(0, 0));
    hosted.evaluate();
    CYxRotateReleaseConstraint::analysisRotateBox(hosted.ids({"a"}), {0, 0, 0}, ignored, constrained, result);
    EXPECT_EQ(hosted.evaluator.rotateReport(), std::vector<std::string>{"level"});
}

TEST(EvaluatedNetwork, SolvesAGroupThatIsMarkedWithoutAnEdit) {
    Hosted hosted(corner());
    hosted.drawing.write("b", LineShape{{10, 2}, {10, 5}});
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_EQ(hosted.line("b").start, (Vec2{10, 2})) << "the group was not marked";
    hosted.markChanged();
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_TRUE(isNear(hosted.line("b").start, hosted.line("a").end));
    EXPECT_EQ(HostAccess::status(hosted.drawing.group()), kUpToDateAssocStatus);
}

TEST(EvaluatedNetwork, SolvesNothingOnceWhenTheHostForbidsIt) {
    Hosted hosted(corner());
    hosted.drawing.write("b", LineShape{{10, 2}, {10, 5}});
    hosted.markChanged();
    AssocConstraintHeader::m_isForbidEvaStatic = true;
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_EQ(hosted.line("b").start, (Vec2{10, 2}));
    EXPECT_FALSE(AssocConstraintHeader::m_isForbidEvaStatic);
    EXPECT_EQ(HostAccess::status(hosted.drawing.group()), kUpToDateAssocStatus);
}

TEST(EvaluatedNetwork, NamesAConstraintThatItsEntityCannotHave) {
    Document document = corner();
    document.constraints.push_back(constraint("odd", ConstraintType::radius, {{"a"}}, 3.0));
    Hosted hosted(document);
    hosted.markChanged();
    EXPECT_FALSE(hosted.evaluate());
    EXPECT_NE(hosted.evaluator.last().complaint.find("odd"), std::string::npos);
}

TEST(EvaluatedNetwork, LeavesVertexIdentifiersAndConstraintsAlone) {
    Document document;
    document.entities = {entity("p", PolylineShape{{{0, 0}, {10, 0}, {10, 10}}, {0, 0, 0}, {7, 8, 9}, false}),
                         entity("l", LineShape{{10, 10}, {15, 15}})};
    document.constraints = {
        constraint("tie", ConstraintType::coincident, {{"p", PlaceKind::segmentEnd, 1}, {"l", PlaceKind::start}})};
    Hosted hosted(document);
    align(hosted, {"l"}, translation(0, 3));
    EXPECT_TRUE(hosted.evaluate());
    const auto polyline = hosted.as<PolylineShape>("p");
    EXPECT_TRUE(isNear(polyline.vertices[2], {10, 13}));
    EXPECT_EQ(polyline.ids, (std::vector<int>{7, 8, 9}));
    EXPECT_EQ(hosted.drawing.document().constraints.size(), 1u);
}

}  // namespace
}  // namespace holdfast::hosting
