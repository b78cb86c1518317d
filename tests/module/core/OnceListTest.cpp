#include "core/OnceList.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <array>
#include <vector>

namespace holdfast::module {
namespace {

TEST(OnceList, TakesEachElementOnce) {
    std::array<int, 3> things{};
    YxArray<int*> list;
    OnceList<int> once(list);
    for (const int which : {0, 1, 0, 2, 1})
        once.add(&things[static_cast<std::size_t>(which)]);
    ASSERT_EQ(list.length(), 3);
    EXPECT_EQ(list[0], &things[0]);
    EXPECT_EQ(list[1], &things[1]);
    EXPECT_EQ(list[2], &things[2]);
}

TEST(OnceList, LeavesRepetitionsThatStoodThereBefore) {
    std::array<int, 2> things{};
    YxArray<int*> list;
    list.append(&things[0]);
    list.append(&things[0]);
    OnceList<int>(list).add(&things[1]);
    ASSERT_EQ(list.length(), 3);
    EXPECT_EQ(list[1], &things[0]);
    EXPECT_EQ(list[2], &things[1]);
}

TEST(OnceList, SeesWhatOthersAppendToALongList) {
    std::array<int, 41> things{};
    YxArray<int*> list;
    OnceList<int> once(list);
    for (int& thing : things)
        once.add(&thing);
    int late = 0;
    EXPECT_FALSE(once.contains(&late));
    list.append(&late);
    EXPECT_TRUE(once.contains(&late));
}

TEST(OnceList, ForgetsWhatWasClearedFromALongList) {
    std::array<int, 60> things{};
    YxArray<int*> list;
    OnceList<int> once(list);
    for (std::size_t k = 0; k < 40; ++k)
        once.add(&things[k]);
    EXPECT_TRUE(once.contains(&things[0]));
    list.setLogicalLength(0);
    for (std::size_t k = 20; k < 39; ++k)
        list.append(&things[k]);
    EXPECT_FALSE(once.contains(&things[0]));
    EXPECT_TRUE(once.contains(&things[38]));
}

RC_GTEST_PROP(OnceList, KeepsTheFirstOfEachInOrder, (const std::vector<unsigned char>& numbers)) {
    std::array<int, 256> things{};
    YxArray<int*> list;
    OnceList<int> once(list);
    std::vector<int*> expected;
    for (const unsigned char number : numbers) {
        int* thing = &things[number];
        once.add(thing);
        if (std::find(expected.begin(), expected.end(), thing) == expected.end())
            expected.push_back(thing);
    }
    RC_ASSERT(std::vector<int*>(list.begin(), list.end()) == expected);
}

TEST(AppendGrowing, DoublesTheStorageOfALongList) {
    YxArray<double> list;
    int growths = 0;
    for (int k = 0; k < 200000; ++k) {
        const int before = list.physicalLength();
        appendGrowing(list, 1.0 * k);
        growths += list.physicalLength() != before ? 1 : 0;
    }
    EXPECT_EQ(list.length(), 200000);
    EXPECT_EQ(list[199999], 199999.0);
    EXPECT_LT(growths, 24);
}

}  // namespace
}  // namespace holdfast::module
