#include "report/page/FateTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/report/Samples.h"

namespace holdfast::report {

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

FateReport manyDeleted(int count) {
    FateReport report;
    for (int i = 0; i < count; ++i)
        report.constraints.push_back({"c" + std::to_string(i), ConstraintFate::deleted, "it went", {}, {}});
    return report;
}

TEST(FateTable, AlignsTheFatesAndEndsWithTheTotals) {
    EXPECT_EQ(
        writeFateTable(test::brokenPlate()),
        "break base at 40,0 to 60,0\n"
        "fillet base left radius 900\n"
        "  refused: the radius <900> is too large\n"
        "\n"
        "FATE        CONSTRAINT  KIND          ON                      WHY\n"
        "deleted     c8          distance 100  base                    the end of base moved from (100, 0) to (40, 0)\n"
        "re-pointed  c0          coincident    base2.end  right.start  base.end -> base2.end; its place is now on the "
        "new piece\n"
        "added       c11         collinear     base  base2             both pieces stay on one line\n"
        "kept        9 constraints\n"
        "\n"
        "FATE       ENTITY  KIND    HOW FAR\n"
        "edited     base    line\n"
        "created    base2   line\n"
        "followed   hole    circle  moved by up to 2.5 mm\n"
        "untouched  4 entities\n"
        "\n"
        "1 deleted, 1 re-pointed, 1 added, 9 kept; 1 entity edited, 1 created, 1 followed by up to 2.5 mm, "
        "4 untouched\n"
        "4 degrees of freedom, 6 solver iterations, worst residual below 1e-08\n");
}

TEST(FateTable, TellsAResidualThatIsMoreThanNothing) {
    FateReport report = test::brokenPlate();
    report.solver->worstResidual = 2.5e-4;
    EXPECT_THAT(writeFateTable(report), HasSubstr("worst residual 2.50e-04\n"));
}

TEST(FateTable, TellsHowFarAnEditedEntityMovedAndWhichOfItsSizesChanged) {
    FateReport report = test::brokenPlate();
    report.entities = {
        {"base", EntityFate::edited, 12.0, {{SizeKind::length, 80.0, 92.0}}},
        {"hole", EntityFate::followed, 2.5, {{SizeKind::majorRadius, 10.0, 16.3}, {SizeKind::sweep, 90.0, 45.0}}}};
    const std::string text = writeFateTable(report);
    EXPECT_THAT(text, HasSubstr("edited     base    line    moved by up to 12 mm, length 80 -> 92\n"));
    EXPECT_THAT(text, HasSubstr("followed   hole    circle  moved by up to 2.5 mm, major radius 10 -> 16.3, "
                                "sweep 90 -> 45 degrees\n"));
}

TEST(FateTable, HasColoursOnlyWhenAsked) {
    TableStyle style;
    EXPECT_THAT(writeFateTable(test::brokenPlate(), style), Not(HasSubstr("\x1b")));
    style.colours = true;
    EXPECT_THAT(writeFateTable(test::brokenPlate(), style), HasSubstr("\x1b[31mdeleted   \x1b[0m"));
}

TEST(FateTable, ListsWhatWasKeptOnlyWhenVerbose) {
    TableStyle style;
    EXPECT_THAT(writeFateTable(test::brokenPlate(), style), Not(HasSubstr("c10")));
    style.verbose = true;
    EXPECT_THAT(writeFateTable(test::brokenPlate(), style), HasSubstr("kept        c10         distance in x 50"));
}

TEST(FateTable, FoldsALongListWithItsCount) {
    const std::string text = writeFateTable(manyDeleted(55));
    EXPECT_THAT(text, HasSubstr("c19"));
    EXPECT_THAT(text, Not(HasSubstr("c20")));
    EXPECT_THAT(text, HasSubstr("deleted  and 35 more\n"));
    EXPECT_THAT(text, HasSubstr("55 deleted"));
}

TEST(FateTable, WrapsReasonsToTheTerminal) {
    TableStyle style;
    style.width = 80;
    EXPECT_THAT(writeFateTable(test::brokenPlate(), style),
                HasSubstr("the end of base moved\n" + std::string(62, ' ') + "from (100, 0) to (40, 0)\n"));
}

TEST(FateTable, DoesNotLetADrawingSteerTheTerminal) {
    FateReport report;
    report.edits = {{"break \x1b]0;title\x07", "line one\nline \u009b31m two"}};
    report.constraints = {{"c\x1b[2J", ConstraintFate::deleted, "\r\x7f", {}, {}}};
    const std::string text = writeFateTable(report);
    for (const char* control : {"\x1b", "\x07", "\r", "\x7f", "\u009b"})
        EXPECT_THAT(text, Not(HasSubstr(control)));
    EXPECT_THAT(text, HasSubstr("refused: line one line \uFFFD31m two\n"));
}

TEST(FateTable, CountsCharactersAndNotBytesForItsColumns) {
    FateReport report;
    report.constraints = {{"Länge", ConstraintFate::deleted, "x", {}, {}},
                          {"abcde", ConstraintFate::deleted, "y", {}, {}}};
    EXPECT_THAT(writeFateTable(report), HasSubstr("deleted  Länge       x\ndeleted  abcde       y\n"));
}

TEST(FateSummary, SpeaksOfAnEmptyDrawing) {
    EXPECT_EQ(fateSummary({}), "no constraints; no entities");
}

}  // namespace
}  // namespace holdfast::report
