#include "hosting/Drawing.h"

#include <gtest/gtest.h>

#include <yxdb/YxDbArc.h>

#include "host/model/ConstraintKinds.h"
#include "host/model/HostAudit.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

Document oneOfEachShape() {
    Document document;
    document.name = "shapes";
    document.entities = {lineEntity("l", {0, 0}, {1, 2}),
                         shapeEntity("a", ArcShape{{1, 1}, 2, 4.5, 8.25}),
                         shapeEntity("c", CircleShape{{-0.0, 3}, 1.5}),
                         shapeEntity("e", EllipseShape{{0, 0}, {3, 1}, 0.25}),
                         shapeEntity("ea", EllipticalArcShape{{0, 0}, {3, 1}, 0.25, 1, 7}),
                         shapeEntity("s", SplineShape{2, false, {{0, 0}, {1, 1}, {2, 0}}, {0, 0, 0, 1, 1, 1}, {}}),
                         shapeEntity("q", PointShape{{7, 7}}),
                         shapeEntity("x", XlineShape{{0, 0}, {3, 3}}),
                         shapeEntity("r", RayShape{{0, 0}, {0, -2}}),
                         shapeEntity("p", PolylineShape{{{0, 0}, {4, 0}, {4, 4}}, {0, 0.5, 0}, {3, 0, 9}, true}),
                         shapeEntity("t", TextShape{{1, 1}, 0.5, 2.5, "note", false}),
                         shapeEntity("m", TextShape{{1, 2}, 0.5, 2.5, "notes", true})};
    return document;
}

TEST(Drawing, GivesEveryShapeBackToTheLastBit) {
    Drawing drawing(oneOfEachShape());
    EXPECT_EQ(drawing.document(), oneOfEachShape());
}

TEST(Drawing, NamesACopyByTheLowestNumberThatIsFree) {
    Drawing drawing(frameDrawing());
    const Shape shape = LineShape{{1, 1}, {2, 2}};
    for (const char* name : {"base_2", "base_3", "base_4"})
        EXPECT_EQ(drawing.add(shape, "base"), name);
    EXPECT_EQ(drawing.add(shape, "base_2"), "base_2_2");
    EXPECT_EQ(drawing.add(shape), "n_2");
    drawing.erase("base_3");
    drawing.erase("base_2");
    for (const char* name : {"base_2", "base_3", "base_5"})
        EXPECT_EQ(drawing.add(shape, "base"), name);
}

TEST(Drawing, NumbersNewConstraintsBehindThoseThatItHas) {
    Document document = frameDrawing();
    document.constraints[1].id = "k6";
    Drawing drawing(document);
    const Constraint level = constraintOf("", ConstraintType::horizontal, {{"base"}});
    EXPECT_EQ(drawing.addConstraint(level), "k7");
    drawing.removeConstraint("k7");
    EXPECT_EQ(drawing.addConstraint(level), "k8") << "the id of a deleted one is not given again";
    EXPECT_EQ(drawing.document().constraintNumbers, 0u) << "what is there tells it";
    drawing.removeConstraint("k8");
    EXPECT_EQ(Drawing(drawing.document()).addConstraint(level), "k9") << "nor in the drawing that was read again";
}

TEST(Drawing, KnowsTheHostsWordForEveryKind) {
    for (const ConstraintTraits& kind : constraintKinds()) {
        const ConstraintKind* host = constraintKindNamed(kind.hostWord);
        EXPECT_EQ(host == nullptr, kind.ownsMembers) << kind.name;
        if (host != nullptr) {
            EXPECT_EQ(host->dimension.has_value(), kind.isDimension()) << kind.name;
        }
    }
}

TEST(Drawing, KeepsSwitchedOffConstraintsWithoutBuildingThem) {
    Document document = frameDrawing();
    document.constraints[1].active = false;
    Drawing drawing(document);
    EXPECT_EQ(drawing.document(), document);
    EXPECT_EQ(HostAccess::constraints(drawing.group()).size(), 3u);
}

TEST(Drawing, ReplacesAnEntityOfAnotherKindUnderTheSameName) {
    Document document = oneOfEachShape();
    Drawing drawing(document);
    const YxDbObjectId id = drawing.id("c");
    drawing.write("c", ArcShape{{0, 3}, 1.5, 0, 1});
    EXPECT_EQ(drawing.id("c"), id);
    EXPECT_TRUE(HostAccess::peek(id)->isKindOf(YxDbArc::desc()));
    EXPECT_EQ(drawing.shape("c"), Shape(ArcShape{{0, 3}, 1.5, 0, 1}));
}

TEST(Drawing, ErasesAnEntityWithItsConstraints) {
    Drawing drawing(frameDrawing());
    drawing.erase("left");
    EXPECT_EQ(constraintIds(drawing.document()), "c1 c2");
    EXPECT_EQ(auditNetwork(drawing.process()), std::vector<std::string>());
}

TEST(Drawing, NamesNewEntitiesAfterTheirModel) {
    Drawing drawing(frameDrawing());
    EXPECT_EQ(drawing.add(LineShape{{0, 0}, {1, 1}}, "base"), "base_2");
    EXPECT_EQ(drawing.add(LineShape{{0, 0}, {1, 1}}, "base"), "base_3");
}

TEST(Drawing, TiesTheCornersOfConstrainedPolylineSegments) {
    Document document;
    document.name = "corner";
    document.entities = {shapeEntity("p", PolylineShape{{{0, 0}, {4, 0}, {4, 4}}, {0, 0, 0}, {0, 0, 0}, false})};
    document.constraints = {constraintOf("c0", ConstraintType::horizontal, {{"p", PlaceKind::segment, 0}}),
                            constraintOf("c1", ConstraintType::vertical, {{"p", PlaceKind::segment, 1}})};
    Drawing drawing(document);
    ASSERT_EQ(HostAccess::constraints(drawing.group()).size(), 3u);
    EXPECT_TRUE(HostAccess::constraints(drawing.group()).back()->isImplied());
    EXPECT_EQ(constraintIds(drawing.document()), "c0 c1");
}

}  // namespace
}  // namespace holdfast::editing
