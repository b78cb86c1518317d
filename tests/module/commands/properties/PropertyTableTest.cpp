#include "commands/properties/PropertyTable.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>

#include "commands/properties/PropertyChange.h"
#include "tests/module/evaluation/FeedingScene.h"

namespace holdfast::module {
namespace {

using TypeAndProperty = std::pair<int, int>;

/// What the host's palette and the evaluator agreed on: (entity type, property) -> kind of change.
const std::map<TypeAndProperty, int> kChangeKinds = {
    {{1, 1}, 0}, {{1, 2}, 1}, {{2, 1}, 0}, {{3, 1}, 0},  {{3, 2}, 1},  {{4, 1}, 0},  {{4, 2}, 1},
    {{5, 1}, 0}, {{5, 2}, 1}, {{5, 3}, 1}, {{5, 4}, 1},  {{5, 5}, 1},  {{6, 2}, 0},  {{6, 4}, 3},
    {{6, 5}, 1}, {{6, 6}, 2}, {{7, 2}, 0}, {{7, 4}, 1},  {{7, 5}, 2},  {{7, 6}, 2},  {{7, 7}, 3},
    {{7, 8}, 4}, {{8, 1}, 0}, {{9, 7}, 7}, {{9, 11}, 0}, {{10, 7}, 7}, {{10, 8}, 0}, {{11, 2}, 0},
};

TEST(PropertyTable, HasExactlyThePropertiesThatCanBeFollowed) {
    for (int entType = 0; entType <= 12; ++entType)
        for (int property = -1; property <= 20; ++property) {
            const auto* found = findProperty(static_cast<LvEvaDataConverterGripEdit::EntType>(entType), property);
            const auto expected = kChangeKinds.find({entType, property});
            ASSERT_EQ(found != nullptr, expected != kChangeKinds.end()) << entType << ", " << property;
            EXPECT_EQ(found == nullptr ? -1 : found->changeKind, found == nullptr ? -1 : expected->second)
                << entType << ", " << property;
        }
}

TEST(PropertyTable, StartsARecordThatChangesNothing) {
    const PropertiesOriRecord record = recordOf(*findProperty(LvEvaDataConverterGripEdit::kArc, 6));
    EXPECT_EQ(record.changeKind, 2);
    EXPECT_EQ(record.entType, 6);
    EXPECT_EQ(textOf(record.delta), "0,0,0");
    EXPECT_EQ(record.transform, YxGeMatrix3d::kIdentity);
    EXPECT_EQ(record.value1, 0.0);
    EXPECT_EQ(record.value2, 0.0);
    EXPECT_EQ(record.preEditCopy, nullptr);
}

}  // namespace
}  // namespace holdfast::module
