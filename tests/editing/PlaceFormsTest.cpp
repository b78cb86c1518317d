// One form for places in all commands: "g1.end", "p4.vertex:2", also where a point is asked for.

#include <gtest/gtest.h>

#include "editing/text/Parse.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

Document wires() {
    Document document;
    document.name = "wires";
    document.entities = {
        lineEntity("base", {0, 0}, {10, 0}), lineEntity("rib", {4, 1}, {4, 8}),
        shapeEntity("hole", CircleShape{{6, 4}, 1}), shapeEntity("dot", PointShape{{2, 7}}),
        shapeEntity("wire", PolylineShape{{{0, 20}, {10, 20}, {10, 30}}, {0, 0, 0}, {0, 0, 0}, false})};
    document.constraints = {dimensionOf("hole.radius", ConstraintType::radius, {{"hole"}}, 1.0)};
    return document;
}

TEST(PlaceForms, MeanTheSameAsWordsBesideTheEntity) {
    const std::pair<const char*, const char*> rows[] = {
        {"extend rib.start to base", "extend rib start to base"},
        {"lengthen base.end by 2", "lengthen base end by 2"},
        {"set base.end 12,3", "set base end 12,3"},
        {"set base.end x 12", "set base end x 12"},
        {"set wire.vertex:1 11,21", "set wire vertex 1 11,21"},
        {"fillet wire.corner:1 radius 2", "fillet wire corner 1 radius 2"},
        {"fillet wire.vertex:1 radius 2", "fillet wire corner 1 radius 2"},
        {"chamfer wire.corner:1 by 2", "chamfer wire corner 1 by 2"},
        {"drag wire.vertex:1 by 1,0", "drag wire.segment:1.start by 1,0"},
        {"drag wire.vertex:2 by 1,0", "drag wire.segment:1.end by 1,0"},
        {"constrain vertical wire.vertex:0 base.end", "constrain vertical wire.segment:0.start base.end"},
        {"rotate hole about base.end by 90", "rotate hole about 10,0 by 90"},
        {"rotate hole about dot by 90", "rotate hole about 2,7 by 90"},
        {"mirror hole about base.start rib.end keep", "mirror hole about 0,0 4,8 keep"},
        {"copy hole around base.start by 90", "copy hole around 0,0 by 90"},
        {"align rib from rib.start to base.end", "align rib from 4,1 to 10,0"},
        {"draw line base.end wire.vertex:2 as new", "draw line 10,0 10,30 as new"},
        {"draw polyline base.end hole.centre wire.vertex:0 closed", "draw polyline 10,0 6,4 0,20 closed"},
        {"break base at base.mid", "break base at 5,0"}};
    for (const auto& [place, words] : rows) {
        Session a(wires()), b(wires());
        EXPECT_EQ(a.apply(place).outcome.error, "");
        EXPECT_EQ(b.apply(words).outcome.error, "");
        EXPECT_EQ(a.results()[0].edit, b.results()[0].edit) << place;
        EXPECT_EQ(a.document(), b.document()) << place;
    }
}

TEST(PlaceForms, LeaveWhatIsCalledSo) {
    Session session(wires());
    EXPECT_EQ(session.apply("set hole.radius 2").outcome.error, "");
    EXPECT_TRUE(std::holds_alternative<SetDimension>(*session.results()[0].edit));
}

TEST(PlaceForms, SayWhatIsWrong) {
    const RefusedEdit rows[] = {
        {"rotate hole about bsae.end by 90",
         "edit \"rotate hole about bsae.end by 90\", column 19: the drawing has no entity bsae, found "
         "\"bsae.end\"; did you mean \"base\"?"},
        {"rotate hole about base by 90",
         "edit \"rotate hole about base by 90\", column 19: expected the point to turn about, a point such as 4,0.5 "
         "without spaces, found \"base\""},
        {"rotate hole about hole.end by 90",
         "edit \"rotate hole about hole.end by 90\", column 19: hole has no such point, found \"hole.end\""},
        {"move hole by base.end",
         "edit \"move hole by base.end\", column 14: expected the displacement, a point such as 4,0.5 without spaces, "
         "found "
         "\"base.end\""},
        {"mirror hole about base 0,0",
         "edit \"mirror hole about base 0,0\", column 24: a line to mirror at is named alone; or give two points of "
         "one, such as 0,0 10,0, found \"0,0\""},
        {"constrain distance base = 12 as len",
         "edit \"constrain distance base = 12 as len\", column 33: a name stands before the formula: as len = 12, "
         "found \"len\""}};
    expectRefused(wires(), rows);
}

}  // namespace
}  // namespace holdfast::editing
