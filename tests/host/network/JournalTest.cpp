#include "host/model/HostJournal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/network/SmallHost.h"

namespace holdfast {
namespace {

/// A host whose objects have names.
struct NamedHost : SmallHost {
    YxDbObjectId a = line();
    YxGeomConstraint& fixed = constrain<YxFixedConstraint>({curve(a)});

    NamedHost() {
        process.name(&group, "group");
        process.name(HostAccess::peek(a), "a");
        process.name(&fixed, "c1");
        process.journal().clear();
    }
};

TEST(Journal, TellsOpensChangesAndReleasesInTheirOrder) {
    NamedHost host;
    {
        const auto open = openedForWrite(host.groupId);
        host.group.deleteConstraint(&host.fixed);
        host.group.setStatus(kChangedAssocStatus, true, false);
    }
    EXPECT_EQ(host.process.journal().text(),
              "open group for write; delete c1; status of group: 1, true, false; release group");
}

TEST(Journal, LeavesQuestionsOutOfItsText) {
    NamedHost host;
    (void)host.group.status();
    (void)host.fixed.isInternal();
    EXPECT_EQ(host.process.journal().text(), "");
    EXPECT_EQ(host.process.journal().count("isInternal"), 1);
    EXPECT_EQ(host.process.journal().count("YxDbAssocAction::status"), 1);
    EXPECT_EQ(host.process.journal().count("YxDbAssocDependency::status"), 0);
}

TEST(Journal, CanTellOfSomeOperationsOnly) {
    NamedHost host;
    {
        const auto open = openedForWrite(host.groupId);
        host.group.deleteConstraint(&host.fixed);
    }
    EXPECT_EQ(host.process.journal().text({"deleteConstraint"}), "delete c1");
}

TEST(Journal, RecordsArgumentsAsTheyWere) {
    NamedHost host;
    {
        const auto open = openedForWrite(host.groupId);
        host.group.setStatus(kChangedAssocStatus, true, false);
        host.group.setStatus(kUpToDateAssocStatus, false, true);
    }
    const JournalEntry& first = host.process.journal().entries()[1];
    EXPECT_EQ(first.operation, "YxDbAssocAction::setStatus");
    EXPECT_EQ(first.subject, &host.group);
    EXPECT_EQ(first.arguments, "1, true, false");
}

TEST(Journal, IsSilentWhileNobodyWatches) {
    NamedHost host;
    host.process.watch(false);
    openedForWrite(host.groupId);
    host.process.watch(true);
    EXPECT_TRUE(host.process.journal().entries().empty());
}

TEST(OperationNames, MatchInFullOrWithoutTheirClass) {
    EXPECT_TRUE(namesOperation("YxDbAssocAction::setStatus", "setStatus"));
    EXPECT_TRUE(namesOperation("YxDbAssocAction::setStatus", "YxDbAssocAction::setStatus"));
    EXPECT_FALSE(namesOperation("YxDbAssocAction::setStatus", "status"));
    EXPECT_FALSE(namesOperation("YxDbAssocAction::setStatus", "Status"));
    EXPECT_FALSE(namesOperation("setStatus", "YxDbAssocAction::setStatus"));
}

}  // namespace
}  // namespace holdfast
