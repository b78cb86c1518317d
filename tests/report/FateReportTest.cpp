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
