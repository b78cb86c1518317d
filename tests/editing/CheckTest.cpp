#include "editing/Check.h"

#include <gtest/gtest.h>

#include "editing/text/Parse.h"
#include "hosting/Drawing.h"
#include "tests/editing/EveryKind.h"

namespace holdfast::editing {
namespace {

TEST(Check, SaysWhatADrawingCannotUnderstandAndDoesNothing) {
    Document document = kindsDrawing();
    document.entities.push_back(lineEntity("rock", {0, 9}, {4, 9}));
    document.entities.back().fixed = true;
    const std::pair<const char*, Refusal> rows[] = {
        {"break lime at 1,0", {"the drawing has no entity lime", "; did you mean \"line\"?", 7}},
        {"break point at 0,0", {"point is no curve; only curves can be broken"}},
        {"break line at 1,9", {"the point (1, 9) is not on line; its nearest point is (1, 0)"}},
        {"trim line at 1,0 by lime", {"the drawing has no entity lime", "; did you mean \"line\"?", 21}},
        {"extend circle end to line", {"circle is closed and has no end to extend; break it first"}},
        {"fillet line arc radius -1", {"a radius cannot be negative; give 0 for a sharp corner", {}, 24}},
        {"fillet line corner 1 radius 1", {"line is no polyline; only polylines have corners and segments to fillet"}},
        {"join line", {"it takes two entities to join; name the ones that line is joined with"}},
        {"lengthen circle end by 1", {"circle is closed and has no end to move; break it first"}},
        {"stretch window 90,90 91,91 by 1,0",
         {"no end, vertex, control point or centre lies in the window from (90, 90) to (91, 91); draw a window around "
          "the points to move"}},
        {"mirror line line about 0,0 1,0", {"line is named twice; name each entity once"}},
        {"align rock from 0,0 to 1,1",
         {"rock is reference geometry that the drawing may not change; edit another entity"}},
        {"rotate lime about 0,0 by 9", {"the drawing has no entity lime", "; did you mean \"line\"?", 8}},
        {"drag circle.end by 1,1", {"circle.end has no grip to drag; circle can be dragged whole or centre"}},
        {"drag line by 1,1 steps 0", {"a drag takes 1 to 1000 steps", {}, 24}},
        {"set line radius 3", {"expected a property of line (start or end)", {}, 10}},
        {"set poly vertex 3 1,1", {"expected a number from 0 to 2", {}, 17}},
    };
    const Drawing drawing(document);
    for (const auto& [text, refusal] : rows) {
        const std::optional<Refusal> found = check(parse(text), drawing);
        ASSERT_TRUE(found) << text;
        EXPECT_EQ(found->message, refusal.message);
        EXPECT_EQ(found->hint, refusal.hint) << text;
        EXPECT_EQ(found->column, refusal.column) << text;
    }
    EXPECT_EQ(drawing.document(), document);
}

TEST(Check, HasNothingToSayAgainstWhatCanBeDone) {
    const Drawing drawing(kindsDrawing());
    for (const char* text : {"break line at 1,0", "fillet poly corner 1 radius 1", "drag line.end by 1,1",
                             "set circle radius 3", "stretch window -1,-1 1,1 by 1,0", "lengthen arc end by 1",
                             "mirror line about 0,0 1,0", "rotate line arc about 0,0 by 3", "undo"})
        EXPECT_EQ(check(parse(text), drawing), std::nullopt) << text;
    EXPECT_EQ(drawing.document(), kindsDrawing());
}

TEST(Check, AsksTheSessionForAnEditToTakeBack) {
    Session session(frameDrawing());
    EXPECT_EQ(session.check(Undo{}), Refusal{"there is no edit to take back"});
    session.apply("break base at 4,0");
    EXPECT_EQ(session.check(Undo{}), std::nullopt);
    EXPECT_NE(session.check(Redo{}), std::nullopt);
    session.apply(Undo{});
    EXPECT_EQ(session.check(Redo{}), std::nullopt);
    EXPECT_EQ(session.check(Break{"base", {1, 0}}), std::nullopt);
}

}  // namespace
}  // namespace holdfast::editing
