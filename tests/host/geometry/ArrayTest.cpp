#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include <yxbase/YxArray.h>

namespace {

template <class T>
YxArray<T> counted(int length) {
    YxArray<T> array;
    for (int i = 0; i < length; ++i)
        array.append(static_cast<T>(i));
    return array;
}

/// The physical lengths that an array takes while it grows by single elements.
template <class T>
std::vector<int> physicalLengths(int appends) {
    std::vector<int> lengths;
    YxArray<T> array;
    for (int i = 0; i < appends; ++i) {
        array.append(T{});
        if (lengths.empty() || lengths.back() != array.physicalLength())
            lengths.push_back(array.physicalLength());
    }
    return lengths;
}

std::vector<int> contents(const YxArray<int>& array) {
    return {array.begin(), array.end()};
}

}  // namespace

TEST(ArrayGrowth, DoublesFromTheGrowLengthUpToSixtyFourKibibytes) {
    EXPECT_EQ(physicalLengths<double>(4097), (std::vector<int>{8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 8192}));
}

TEST(ArrayGrowth, AddsAFixedStepOfEightByteElementsFromSixtyFourKibibytesOn) {
    const std::vector<int> lengths = physicalLengths<double>(40000);
    const std::vector<int> last(lengths.end() - 4, lengths.end());
    EXPECT_EQ(last, (std::vector<int>{16384, 24576, 32768, 40960}));
}

TEST(ArrayGrowth, AddsAFixedStepOfFourByteElementsFromSixtyFourKibibytesOn) {
    const std::vector<int> lengths = physicalLengths<int>(60000);
    const std::vector<int> last(lengths.end() - 3, lengths.end());
    EXPECT_EQ(last, (std::vector<int>{32768, 49152, 65536}));
}

TEST(ArrayGrowth, NeverStepsByLessThanTheGrowLength) {
    YxArray<int> array(3, 20);
    array.append(1);
    EXPECT_EQ(array.physicalLength(), 3);
    array.setLogicalLength(3);
    array.append(1);
    EXPECT_EQ(array.physicalLength(), 23);
}

TEST(ArrayAppend, TakesAnElementOfTheArrayItselfWhileItMoves) {
    YxArray<std::string> array;
    for (int i = 0; i < 8; ++i)
        array.append("a text too long to be kept in place, number " + std::to_string(i));
    EXPECT_EQ(array.append(array[0]), 8);
    EXPECT_EQ(array[8], "a text too long to be kept in place, number 0");
}

TEST(ArrayAppend, RepeatsTheArrayWhenItIsAppendedToItself) {
    YxArray<int> array = counted<int>(5);
    array.append(array);
    EXPECT_EQ(contents(array), (std::vector<int>{0, 1, 2, 3, 4, 0, 1, 2, 3, 4}));
}

TEST(ArrayAppend, OfALongArrayGrowsOnce) {
    YxArray<int> array = counted<int>(2);
    array.append(counted<int>(100));
    EXPECT_EQ(array.length(), 102);
    EXPECT_EQ(array.physicalLength(), 102);
    EXPECT_EQ(array.last(), 99);
}

TEST(ArrayInsert, MovesTheTailUpByOne) {
    YxArray<int> array = counted<int>(3);
    array.insertAt(1, 7);
    array.insertAt(0, 8);
    array.insertAt(5, 9);
    EXPECT_EQ(contents(array), (std::vector<int>{8, 0, 7, 1, 2, 9}));
}

TEST(ArrayInsert, TakesAnElementOfTheArrayItself) {
    YxArray<std::string> array;
    for (int i = 0; i < 8; ++i)
        array.append("a text too long to be kept in place, number " + std::to_string(i));
    array.insertAt(0, array[7]);
    EXPECT_EQ(array.first(), "a text too long to be kept in place, number 7");
    EXPECT_EQ(array.last(), array.first());
}

TEST(ArraySearch, FindsTheFirstEqualElement) {
    YxArray<int> array = counted<int>(4);
    array.append(2);
    EXPECT_EQ(array.find(2), 2);
    EXPECT_EQ(array.find(5), -1);
    EXPECT_TRUE(array.contains(0));
    EXPECT_FALSE(YxArray<int>().contains(0));
}

TEST(ArrayLengths, KeepTheStorageWhenTheArrayIsCleared) {
    YxArray<int> array = counted<int>(9);
    array.setLogicalLength(0);
    EXPECT_TRUE(array.isEmpty());
    EXPECT_EQ(array.physicalLength(), 16);
    EXPECT_EQ(array.append(4), 0);
}

TEST(ArrayLengths, CutTheElementsTogetherWithTheStorage) {
    YxArray<int> array = counted<int>(9);
    array.setPhysicalLength(2);
    EXPECT_EQ(contents(array), (std::vector<int>{0, 1}));
    array.setPhysicalLength(0);
    EXPECT_TRUE(array.isEmpty());
}

TEST(ArrayCopy, IsEqualAndStandsAlone) {
    YxArray<int> array = counted<int>(3);
    YxArray<int> copy(array);
    copy[0] = 5;
    EXPECT_EQ(array[0], 0);
    EXPECT_FALSE(array == copy);
    copy = array;
    EXPECT_TRUE(array == copy);
    const YxArray<int>& same = copy;
    copy = same;
    EXPECT_EQ(contents(copy), (std::vector<int>{0, 1, 2}));
}

TEST(ArrayMove, LeavesAnArrayThatCanBeUsedAgain) {
    YxArray<int> array = counted<int>(3);
    const YxArray<int> taken(std::move(array));
    EXPECT_EQ(contents(taken), (std::vector<int>{0, 1, 2}));
    array = counted<int>(1);
    EXPECT_EQ(contents(array), (std::vector<int>{0}));
}

RC_GTEST_PROP(ArrayInsert, DoesWhatAVectorDoes, (const std::vector<std::pair<int, int>>& inserts)) {
    YxArray<int> array;
    std::vector<int> expected;
    for (const auto& [place, value] : inserts) {
        const auto index = static_cast<std::ptrdiff_t>(static_cast<unsigned>(place) % (expected.size() + 1));
        array.insertAt(static_cast<int>(index), value);
        expected.insert(expected.begin() + index, value);
    }
    RC_ASSERT(contents(array) == expected);
}
