#include "editing/fates/FateReport.h"

#include <gtest/gtest.h>

#include "tests/report/Samples.h"

namespace holdfast::report {

namespace {

TEST(CompletedReport, FillsInWhatNobodySpokeOf) {
    FateReport report;
    report.before.entities = {test::line("gone", {}, {1, 0}), test::line("same", {}, {2, 0})};
    report.after.entities = {test::line("same", {}, {2, 0}), test::line("new", {}, {3, 0})};
    const FateReport whole = completed(report);
    EXPECT_EQ(whole.entities, (std::vector<EntityOutcome>{{"gone", EntityFate::erased, 0},
                                                          {"new", EntityFate::created, 0},
                                                          {"same", EntityFate::untouched, 0}}));
}

TEST(CompletedReport, FindsWhatStandsElsewhereThanBefore) {
    const auto entities = [](std::string_view names) {
        std::vector<Entity> made;
        for (const char name : names)
            made.push_back(test::line(std::string(1, name), {}, {1, 0}));
        return made;
    };
    const auto told = [&](std::string_view before, std::string_view after) {
        FateReport report;
        report.before.entities = entities(before);
        report.after.entities = entities(after);
        std::string text;
        for (const EntityOutcome& outcome : completed(report).entities)
            text += outcome.entity + (outcome.fate == EntityFate::erased    ? "-"
                                      : outcome.fate == EntityFate::created ? "+"
                                                                            : "=");
        return text;
    };
    EXPECT_EQ(told("abcde", "abcde"), "a=b=c=d=e=");
    EXPECT_EQ(told("abcde", "acxde"), "b-x+a=c=d=e=");
    EXPECT_EQ(told("abcde", "abcdey"), "y+a=b=c=d=e=");
    EXPECT_EQ(told("abcde", "edcba"), "a=b=c=d=e=");
    EXPECT_EQ(told("ab", ""), "a-b-");
    EXPECT_EQ(told("", "ab"), "a+b+");
}

TEST(CompletedReport, PutsDeletedFirstAndKeptLastInTheirOwnOrder) {
    const FateReport whole = completed(test::brokenPlate());
    std::vector<std::string> ids;
    for (const ConstraintOutcome& outcome : whole.constraints)
        ids.push_back(outcome.constraint);
    EXPECT_EQ(ids,
              (std::vector<std::string>{"c8", "c0", "c11", "c1", "c2", "c3", "c4", "c5", "c6", "c7", "c9", "c10"}));
}

TEST(CompletedReport, KeepsWhatWasSaid) {
    const FateReport whole = completed(test::brokenPlate());
    EXPECT_EQ(whole.constraints[1].moves[0].to.entity, "base2");
    EXPECT_EQ(completed(whole).constraints, whole.constraints);
}

TEST(FateCounts, AreByTheNumberOfTheFate) {
    const auto counts = countFates(completed(test::brokenPlate()).constraints);
    EXPECT_EQ(counts, (std::array<std::size_t, 6>{1, 0, 1, 1, 0, 9}));
}

}  // namespace
}  // namespace holdfast::report
