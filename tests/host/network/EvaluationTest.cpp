#include <YxDbConstraints/YxDbAssocManager.h>
#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <yxcore/ConstraintDynamicEdit.h>

#include "tests/host/network/SmallHost.h"

namespace holdfast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void markChanged(const SmallHost& host) {
    const auto open = openedForWrite(host.groupId);
    YxSmartPtr<YxDbAssocAction>(open)->setStatus(kChangedAssocStatus, true, false);
}

TEST(Action, ChangesItsStatusOnlyWhileOpenForWrite) {
    SmallHost host;
    EXPECT_EQ(host.group.setStatus(kChangedAssocStatus, true, false), Yxrt::eNotOpenForWrite);
    EXPECT_EQ(host.group.status(), kUpToDateAssocStatus);
    EXPECT_THAT(host.process.misuses(), ElementsAre("setStatus on an action that is not open for write"));
    markChanged(host);
    EXPECT_EQ(host.group.status(), kChangedAssocStatus);
}

TEST(NetworkEvaluation, WithoutAnEvaluatorTakesGroupsAsSolved) {
    SmallHost host;
    markChanged(host);
    EXPECT_TRUE(YxDbAssocManager::evaluateTopLevelNetwork(&host.process.database(), nullptr, 0));
    EXPECT_EQ(host.group.status(), kUpToDateAssocStatus);
}

TEST(NetworkEvaluation, AsksTheEvaluatorOfTheHost) {
    SmallHost host;
    YxDbDatabase* asked = nullptr;
    host.process.setEvaluator([&](YxDbDatabase& database) {
        asked = &database;
        return false;
    });
    EXPECT_FALSE(YxDbAssocManager::evaluateTopLevelNetwork(&host.process.database(), nullptr, 0));
    EXPECT_EQ(asked, &host.process.database());
}

TEST(NetworkEvaluation, WhenForbiddenSolvesNothingOnce) {
    SmallHost host;
    int asked = 0;
    host.process.setEvaluator([&](YxDbDatabase&) { return ++asked > 0; });
    markChanged(host);
    AssocConstraintHeader::m_isForbidEvaStatic = true;
    EXPECT_TRUE(YxDbAssocManager::evaluateTopLevelNetwork(&host.process.database(), nullptr, 0));
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(host.group.status(), kUpToDateAssocStatus);
    EXPECT_FALSE(AssocConstraintHeader::m_isForbidEvaStatic);
    YxDbAssocManager::evaluateTopLevelNetwork(&host.process.database(), nullptr, 0);
    EXPECT_EQ(asked, 1);
}

TEST(NetworkEvaluation, NeedsADatabase) {
    SmallHost host;
    EXPECT_FALSE(YxDbAssocManager::evaluateTopLevelNetwork(nullptr, nullptr, 0));
}

/// Shows what the base class found.
struct ShownEdit : ConstraintDynamicEdit {
    using ConstraintDynamicEdit::m_editedIds;
    using ConstraintDynamicEdit::m_groupId;
    using ConstraintDynamicEdit::m_header;
};

TEST(DynamicEdit, FindsTheGroupOfTheFirstConstrainedObject) {
    SmallHost host;
    YxArray<YxDbObjectId> ids;
    ids.append(host.line());
    ids.append(host.line());
    host.curve(ids[1]);
    ShownEdit edit;
    edit.setHeader(ids);
    EXPECT_EQ(edit.m_groupId, host.groupId);
    EXPECT_EQ(edit.m_header, HostAccess::header(host.group));
    EXPECT_THAT(listed(edit.m_editedIds), ElementsAre(ids[0], ids[1]));
}

TEST(DynamicEdit, ForgetsAnEarlierGroup) {
    SmallHost host;
    YxArray<YxDbObjectId> ids;
    ids.append(host.line());
    host.curve(ids[0]);
    ShownEdit edit;
    edit.setHeader(ids);
    ids[0] = host.line();
    edit.setHeader(ids);
    EXPECT_TRUE(edit.m_groupId.isNull());
    EXPECT_EQ(edit.m_header, nullptr);
}

}  // namespace
}  // namespace holdfast
