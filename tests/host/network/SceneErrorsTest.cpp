#include <gtest/gtest.h>

#include "host/model/Scene.h"
#include "host/model/scene/SceneStatement.h"

namespace holdfast {
namespace {

std::string complaint(const std::string& text) {
    try {
        const Scene scene(text);
    } catch (const SceneError& error) {
        return error.what();
    }
    return "no complaint";
}

struct Wrong {
    const char* statement;
    const char* message;
};

TEST(SceneComplaint, SaysWhatIsWrongAndHowToMendIt) {
    const Wrong rows[] = {
        {"lime b 0,0 1,0", "\"lime\" is no kind of entity, setting or constraint"},
        {"line 1 0,0 1,0", "\"1\" is no name; begin with a letter and use letters, digits, _ and - only"},
        {"line a 0,0 1,0", "the name \"a\" is taken; choose another"},
        {"line b 0,0", "expected the end, but the statement ends"},
        {"line b 0,0 1,0 2,0", "nothing more was expected, found \"2,0\""},
        {"ray r 0,0 1,0", "expected \"dir\", found \"1,0\""},
        {"polyline w 0,0 1,0#x", "expected a vertex such as 10,0#12^0.5 (identifier 12, bulge 0.5), found \"1,0#x\""},
        {"text u 0,0 abc", "expected rotation, height, normal or the text in double quotes, found \"abc\""},
        {"fixed b", "\"b\": there is no entity \"b\"; write it before its constraints"},
        {"fixed a.middle", "\"a.middle\": there is no such point; the points of a YxDbLine are start, end, mid"},
        {"fixed c.start", "\"c.start\": there is no such point; the points of a YxDbCircle are centre"},
        {"fixed a.", "\"a.\": there is no such point; the points of a YxDbLine are start, end, mid"},
        {"fixed a[1]", "\"a[1]\": only polylines have segments"},
        {"fixed p[x]", "\"p[x]\": expected a segment such as p[2]"},
        {"fixed p[1", "\"p[1\": expected a segment such as p[2]"},
        {"fixed p[1]x", "\"p[1]x\": expected a place such as a, a.end or p[2].start"},
        {"fixed p[3]", "segment 3 of a polyline with 2 segments; they are counted from 1"},
        {"fixed p", "segment 0 of a polyline with 2 segments; they are counted from 1"},
        {"fixed a.control0", "\"a.control0\": only splines have control points"},
        {"fixed s.control2", "\"s.control2\": the spline has control0 to control1"},
        {"fixed s.control", "\"s.control\": the spline has control0 to control1"},
        {"coincident a.start", "expected two points, found 1 places"},
        {"fixed", "expected one point or curve, found 0 places"},
        {"parallel a a a", "expected two lines, found 3 places"},
        {"radius c", "expected \"=\", but the statement ends"},
        {"radius c = x", "expected the value, a number, found \"x\""},
        {"composite fixed a", "expected members in braces, found \"fixed\""},
        {"used: fixed a", "the name \"used\" is taken; choose another"},
        {"a.b: fixed a", "\"a.b\" is no name; begin with a letter and use letters, digits, _ and - only"},
        {"group a", "the name \"a\" is taken by an entity; choose another"},
        {"group", "expected a name for the group, but the statement ends"},
        {"corners a", "there is no polyline \"a\"; only polylines have corners"},
        {"bare a", "expected \"dependency\", found \"a\""},
        {"dependency", "expected an entity or a segment, but the statement ends"},
        {"ucs 1,0", "expected the y direction, but the statement ends"},
    };
    const std::string before =
        "line a 0,0 1,0; circle c centre 0,0 radius 3; polyline p 0,0 1,0 2,0; spline s degree 1 at 0,0 1,1; "
        "used: fixed a\n";
    for (const Wrong& row : rows)
        EXPECT_EQ(complaint(before + row.statement),
                  std::string("scene line 2, \"") + row.statement + "\": " + row.message);
}

TEST(SceneComplaint, PassesOnWhatTheEntitySays) {
    const std::string message = complaint("circle c centre 0,0 radius 0");
    EXPECT_EQ(message.find("scene line 1, \"circle c centre 0,0 radius 0\": "), 0U);
    EXPECT_NE(message.find("radius"), std::string::npos);
    EXPECT_NE(message.find("give a number above 0"), std::string::npos);
}

TEST(SceneComplaint, NamesTheMemberOfACompositeThatIsWrong) {
    EXPECT_EQ(complaint("line a 0,0 1,0\ncomposite {\n  fixed a;\n  fixed b\n}"),
              "scene line 4, \"fixed b\": \"b\": there is no entity \"b\"; write it before its constraints");
}

TEST(SceneComplaint, OfAVertexListNamesAMissingPolyline) {
    const Scene scene("line a 0,0 1,0");
    EXPECT_THROW((void)scene.vertices("a"), std::invalid_argument);
}

}  // namespace
}  // namespace holdfast
