#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <vector>

#include "core/SegmentFinder.h"

namespace holdfast::module {
namespace {

std::vector<int> placesOf(const std::vector<int>& identifiers, int identifier) {
    const VertexPlaces places(identifiers);
    const auto found = places.of(identifier);
    return {found.begin(), found.end()};
}

TEST(VertexPlaces, ListARepeatedIdentifierInVertexOrder) {
    EXPECT_EQ(placesOf({7, 0, 7, -3, 7}, 7), (std::vector<int>{0, 2, 4}));
}

TEST(VertexPlaces, KnowNoIdentifierOfAnEmptyPolyline) {
    EXPECT_TRUE(VertexPlaces().of(0).empty());
    EXPECT_TRUE(placesOf({}, 0).empty());
}

RC_GTEST_PROP(VertexPlaces, AreWhereASearchFindsThem, ()) {
    const auto identifiers = *rc::gen::container<std::vector<int>>(rc::gen::inRange(-2, 4));
    const VertexPlaces places(identifiers);
    for (int wanted = -3; wanted < 5; ++wanted) {
        std::vector<int> expected;
        for (std::size_t index = 0; index < identifiers.size(); ++index) {
            if (identifiers[index] == wanted)
                expected.push_back(static_cast<int>(index));
        }
        const auto found = places.of(wanted);
        RC_ASSERT(std::vector<int>(found.begin(), found.end()) == expected);
    }
}

}  // namespace
}  // namespace holdfast::module
