#include "editing/Edit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "editing/Session.h"
#include "editing/text/Parse.h"
#include "tests/editing/EveryKind.h"

namespace holdfast::editing {
namespace {

/// An edit of every kind with its text, as a user would type it.
struct Said {
    const char* text;
    Edit edit;
};

const std::vector<Said>& everyEdit() {
    static const std::vector<Said> rows = {
        {"break g3 at 4,0", Break{"g3", {4, 0}}},
        {"break g3 at 4,0 to 6,-0.5", Break{"g3", {4, 0}, Vec2{6, -0.5}}},
        {"trim g3 at 8,0 by g7 g8", Trim{"g3", {8, 0}, {"g7", "g8"}}},
        {"extend g3 start to g7", Extend{"g3", CurveEnd::start, {"g7"}}},
        {"fillet g1 g2 radius 2", Fillet{"g1", "g2", 2.0}},
        {"fillet g1 g2 radius 0 at 1,2 3,4", Fillet{"g1", "g2", 0.0, FilletPicks{{1, 2}, {3, 4}}}},
        {"fillet g1 g2 radius 2 keep corner", Fillet{"g1", "g2", 2.0, {}, true}},
        {"fillet p corner 3 radius 0.1 keep corner", FilletCorner{"p", 3, 0.1, true}},
        {"fillet p corner 3 radius 0.1", FilletCorner{"p", 3, 0.1}},
        {"fillet p segments 0 2 radius 5", FilletSegments{"p", 0, 2, 5.0}},
        {"join p1 g4 g5", Join{{"p1", "g4", "g5"}}},
        {"lengthen g3 end by -4", Lengthen{"g3", CurveEnd::end, Lengthen::Way::by, -4}},
        {"lengthen g3 start to 12", Lengthen{"g3", CurveEnd::start, Lengthen::Way::to, 12}},
        {"stretch window 0,0 10,10 by 5,0", Stretch{{0, 0}, {10, 10}, {5, 0}}},
        {"mirror g1 g2 about 0,0 0,1 keep", Mirror{{"g1", "g2"}, {0, 0}, {0, 1}, true}},
        {"mirror g1 about g7 keep", Mirror{{"g1"}, {}, {}, true, "g7"}},
        {"mirror g1 about \"7\"", Mirror{{"g1"}, {}, {}, false, "7"}},
        {"align g1 from 0,0 to 5,5", Align{{"g1"}, {0, 0}, {5, 5}}},
        {"align g1 from 0,0 10,0 to 5,5 5,15 scale",
         Align{{"g1"}, {0, 0}, {5, 5}, AlignDirection{{10, 0}, {5, 15}, true}}},
        {"rotate g1 g2 about 0,0 by 30", Rotate{{"g1", "g2"}, {0, 0}, 30}},
        {"drag g1 g2 by 3,2", Drag{std::vector<Name>{"g1", "g2"}, {3, 2}}},
        {"drag g1.end by 3,2 steps 7", Drag{Place{"g1", PlaceKind::end}, {3, 2}, 7}},
        {"drag p.segment:1.start by 3,2", Drag{Place{"p", PlaceKind::segmentStart, 1}, {3, 2}}},
        {"set g5 radius 5", Set{"g5", Property::radius, 0, 5.0}},
        {"set g5 end x 6", Set{"g5", Property::end, 0, Coordinate{Coordinate::Axis::x, 6}}},
        {"set p vertex 2 5,1", Set{"p", Property::vertex, 2, Vec2{5, 1}}},
        {"undo", Undo{}},
        {"redo", Redo{}},
    };
    return rows;
}

TEST(Edit, IsReadFromItsText) {
    for (const Said& row : everyEdit())
        EXPECT_EQ(parse(row.text), row.edit) << row.text;
}

TEST(Edit, IsWrittenAsUsersTypeIt) {
    for (const Said& row : everyEdit())
        EXPECT_EQ(toText(row.edit), row.text);
}

TEST(Edit, QuotesNamesThatWouldBeReadOtherwise) {
    EXPECT_EQ(toText(Join{{"a b", "by", "", "about", "g.end", "\"", "g\\1", "tab\t"}}),
              R"(join "a b" "by" "" "about" "g.end" "\"" g\1 "tab\t")");
    EXPECT_EQ(toText(Drag{Place{"a b", PlaceKind::start}, {1, 1}}), R"(drag "a b".start by 1,1)");
    EXPECT_EQ(toText(Fillet{"g1", "corner", 1.0}), R"(fillet g1 "corner" radius 1)");
}

TEST(Edit, KnowsTheColumnsOfWhatADrawingJudges) {
    const auto trim = std::get<Trim>(parse("trim g3 at 8,0 by g7 g8"));
    EXPECT_EQ(trim.entity.column, 6u);
    EXPECT_EQ(trim.by.at(1).column, 22u);
    EXPECT_EQ(std::get<Fillet>(parse("fillet g1 g2 radius -2")).radius.column, 21u);
    EXPECT_EQ(std::get<Set>(parse("set g5 radius 5")).property.column, 8u);
}

TEST(Edit, IsNotReadFromATextWithAFault) {
    const std::pair<const char*, std::size_t> rows[] = {{"trim g3 at 8,0", 15}, {"trim g3 at 8 by g1", 12},
                                                        {"brek g3", 1},         {"break g3 at 4,0 g5", 17},
                                                        {"set g5 radios 3", 8}, {"", 1}};
    for (const auto& [text, column] : rows) {
        try {
            parse(text);
            ADD_FAILURE() << text;
        } catch (const EditSyntaxError& error) {
            EXPECT_EQ(error.column(), column) << error.what();
        }
    }
}

/// What an edit makes of the frame, with its text and error in the report.
template <class Command>
std::pair<EditOutcome, Document> frameAfter(const Command& edit) {
    Session session(frameDrawing());
    const EditOutcome outcome = session.apply(edit).outcome;
    return {outcome, session.document()};
}

TEST(Edit, IsDoneAsAValueAsItIsDoneAsAText) {
    for (const char* text : {"break base at 4,0", "drag base by 3,2", "mirror base left about 0,0 1,1",
                             "set base end 9,0", "rotate base about 0,0 by 30", "set base end 1,1"})
        EXPECT_EQ(frameAfter(parse(text)), frameAfter(text)) << text;
}

TEST(Edit, IsKeptInTheResultAndTakenBackAsAValue) {
    Session session(frameDrawing());
    const Edit cut = Break{"base", {4, 0}, Vec2{6, 0}};
    EXPECT_EQ(session.apply(cut).edit, cut);
    EXPECT_EQ(session.apply(Undo{}).outcome.error, "");
    EXPECT_EQ(session.document(), frameDrawing());
    EXPECT_EQ(session.apply("nonsense").edit, std::nullopt);
}

TEST(Edit, SpeaksWithoutColumnsWhenItComesFromNoText) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply(Break{"bse", {4, 0}}).outcome.error,
              "the drawing has no entity bse; did you mean \"base\"?");
    EXPECT_EQ(session.apply(Fillet{"base", "left", -1.0}).outcome.error,
              "a radius cannot be negative; give 0 for a sharp corner");
    EXPECT_EQ(session.apply(Set{"base", Property::radius, 0, 1.0}).outcome.error,
              "expected a property of base (start or end), found \"radius\"");
    EXPECT_EQ(session.apply(Set{"base", Property::end, 0, 1.0}).outcome.error,
              "the end of base takes a point or one of its coordinates");
    EXPECT_EQ(session.apply(Rotate{{}, {0, 0}, 1}).outcome.error, "expected an entity; name one or more");
}

TEST(Edit, TellsTheFirstOfSeveralFaults) {
    Session session(kindsDrawing());
    const std::pair<const char*, const char*> rows[] = {
        {"break lin at", "column 7: the drawing has no entity lin"},
        {"set circel radios 3", "column 5: the drawing has no entity circel"},
        {"set circle radios 3",
         "column 12: expected a property of circle (centre, radius, diameter, circumference or area), found "
         "\"radios\"; did you mean \"radius\"?"},
        {"set text end 3", "column 10: expected a property of text (position, rotation or height), found \"end\""},
        {"drag lin.end bye 1,1", "column 6: the drawing has no entity lin, found \"lin.end\""},
        {"drag line.end bye 1,1", "column 15: expected \"by\", found \"bye\""}};
    for (const auto& [edit, error] : rows)
        EXPECT_THAT(session.apply(edit).outcome.error, ::testing::HasSubstr(error));
}

TEST(Edit, NamesEntitiesWithSpacesAndDots) {
    Document document;
    document.name = "names";
    document.entities = {lineEntity("a b", {0, 0}, {10, 0}), lineEntity("a.end", {0, 5}, {10, 5}),
                         lineEntity("by", {0, 9}, {10, 9})};
    Session session(document);
    EXPECT_EQ(session.apply(R"(break "a b" at 4,0)").outcome.error, "");
    EXPECT_EQ(session.apply(R"(drag "by" "a.end" by 0,1)").outcome.error, "");
    EXPECT_EQ(session.apply("drag a.end by 0,1").outcome.error, "");
    EXPECT_EQ(session.apply(R"(drag "a b".end by 1,0)").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "a.end").shape, Shape(LineShape{{0, 7}, {10, 7}}));
    EXPECT_EQ(entityNamed(session.document(), "a b").shape, Shape(LineShape{{0, 0}, {5, 0}}));
}

}  // namespace
}  // namespace holdfast::editing
