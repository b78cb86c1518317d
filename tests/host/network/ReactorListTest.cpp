#include <algorithm>
#include <memory>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "host/model/entities/EntityAccess.h"
#include "host/model/state/HostAccess.h"

namespace holdfast {
namespace {

struct Ids {
    std::unique_ptr<YxDbDatabase> database = HostAccess::makeDatabase();
    std::vector<YxDbObjectId> ids;

    Ids() {
        for (int i = 0; i < 32; ++i)
            ids.push_back(HostAccess::addToDatabase(*database, EntityAccess::makePoint({})));
    }
    const YxDbObjectId& operator[](std::size_t i) const { return ids[i]; }
};

/// The reactors of an entity that lives in no database.
class Reactors {
public:
    void add(const YxDbObjectId& reactor) { HostAccess::addReactor(*m_entity, reactor); }
    bool remove(const YxDbObjectId& reactor) { return m_entity->removePersistentReactor(reactor) == Yxrt::eOk; }
    std::vector<YxDbObjectId> ids() const { return HostAccess::reactors(*m_entity); }
    std::size_t count(const YxDbObjectId& reactor) const { return HostAccess::reactorCount(*m_entity, reactor); }

private:
    std::unique_ptr<YxDbPoint> m_entity = EntityAccess::makePoint({});
};

TEST(ReactorList, KeepsTheOrderOfAttaching) {
    const Ids ids;
    Reactors list;
    for (const std::size_t i : {3, 1, 2})
        list.add(ids[i]);
    EXPECT_EQ(list.ids(), (std::vector{ids[3], ids[1], ids[2]}));
}

TEST(ReactorList, RemovesTheFirstOfARepeatedReactorOnly) {
    const Ids ids;
    Reactors list;
    for (const std::size_t i : {1, 2, 1})
        list.add(ids[i]);
    EXPECT_TRUE(list.remove(ids[1]));
    EXPECT_EQ(list.ids(), (std::vector{ids[2], ids[1]}));
    EXPECT_EQ(list.count(ids[1]), 1U);
}

TEST(ReactorList, DoesNotRemoveWhatItDoesNotHold) {
    const Ids ids;
    Reactors list;
    list.add(ids[1]);
    EXPECT_FALSE(list.remove(ids[2]));
    EXPECT_FALSE(list.remove(YxDbObjectId()));
    EXPECT_EQ(list.ids(), std::vector{ids[1]});
}

TEST(ReactorList, ForgetsARemovedReactorForGood) {
    const Ids ids;
    Reactors list;
    list.add(ids[1]);
    EXPECT_TRUE(list.remove(ids[1]));
    EXPECT_FALSE(list.remove(ids[1]));
    EXPECT_TRUE(list.ids().empty());
}

// Long lists are kept with an index and gaps; a plain vector says what they must hold.
RC_GTEST_PROP(ReactorList, HoldsWhatAPlainVectorWouldHold, (const std::vector<std::pair<bool, std::uint8_t>>& steps)) {
    const Ids ids;
    Reactors list;
    std::vector<YxDbObjectId> expected;
    for (std::size_t i = 0; i < 40; ++i) {
        list.add(ids[i % 24]);
        expected.push_back(ids[i % 24]);
    }
    for (const auto& [isAdded, number] : steps) {
        const YxDbObjectId id = ids[number % 32];
        if (isAdded) {
            list.add(id);
            expected.push_back(id);
            continue;
        }
        const auto found = std::find(expected.begin(), expected.end(), id);
        RC_ASSERT(list.remove(id) == (found != expected.end()));
        if (found != expected.end())
            expected.erase(found);
    }
    RC_ASSERT(list.ids() == expected);
    for (std::size_t i = 0; i < 32; ++i)
        RC_ASSERT(list.count(ids[i]) == std::size_t(std::count(expected.begin(), expected.end(), ids[i])));
}

}  // namespace
}  // namespace holdfast
