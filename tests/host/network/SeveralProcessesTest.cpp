#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <thread>

#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>
#include <yxdb/YxDbHostApplicationServices.h>

#include "host/model/HostAudit.h"
#include "tests/host/network/SmallHost.h"

namespace holdfast {
namespace {

using testing::IsEmpty;

const YxDbDatabase* workingDatabase() {
    return yxdbHostApplicationServices()->workingDatabase();
}

TEST(SeveralProcesses, TheOneMadeLastIsCurrent) {
    const HostProcess first, second;
    EXPECT_EQ(workingDatabase(), &second.database());
}

TEST(SeveralProcesses, WhenOneEndsTheFormerIsCurrentAgain) {
    const HostProcess first;
    { const HostProcess second; }
    EXPECT_EQ(workingDatabase(), &first.database());
}

TEST(SeveralProcesses, MayEndInAnyOrder) {
    std::optional<HostProcess> first(std::in_place);
    {
        const HostProcess second;
        first.reset();
        EXPECT_EQ(workingDatabase(), &second.database());
    }
    EXPECT_EQ(workingDatabase(), nullptr);
}

TEST(SeveralProcesses, AScopeMakesOneCurrentForAWhile) {
    const HostProcess first, second;
    {
        const HostProcess::Scope bound(first);
        EXPECT_EQ(workingDatabase(), &first.database());
    }
    EXPECT_EQ(workingDatabase(), &second.database());
}

TEST(SeveralProcesses, AScopeTakesBackWhatWasMadeCurrentInIt) {
    const HostProcess first;
    std::optional<HostProcess> second;
    {
        const HostProcess::Scope keepsTheFormer;
        second.emplace();
        EXPECT_EQ(workingDatabase(), &second->database());
    }
    EXPECT_EQ(workingDatabase(), &first.database());
}

TEST(SeveralProcesses, AScopeDoesNotGoBackToAProcessThatHasEnded) {
    const HostProcess first;
    std::optional<HostProcess> second(std::in_place);
    {
        const HostProcess::Scope bound(first);
        second.reset();
    }
    EXPECT_EQ(workingDatabase(), nullptr);
}

TEST(SeveralProcesses, EachRecordsItsOwnCalls) {
    SmallHost first, second;
    first.process.journal().clear();
    second.process.journal().clear();
    YxDbConstraintDataProviderLv::isSrvInit();
    {
        const HostProcess::Scope bound(first.process);
        YxDbConstraintDataProviderLv::isSrvInit();
        YxDbConstraintDataProviderLv::isSrvInit();
    }
    EXPECT_EQ(first.process.journal().count("isSrvInit"), 2);
    EXPECT_EQ(second.process.journal().count("isSrvInit"), 1);
}

TEST(SeveralProcesses, EachHasItsOwnServices) {
    HostProcess first, second;
    first.setConstraintServiceUp(false);
    EXPECT_TRUE(YxDbConstraintDataProviderLv::isSrvInit());
    const HostProcess::Scope bound(first);
    EXPECT_FALSE(YxDbConstraintDataProviderLv::isSrvInit());
}

TEST(SeveralProcesses, EachCountsItsOwnCopies) {
    SmallHost first, second;
    std::unique_ptr<YxDbLine> copy = EntityAccess::makeLine({}, {1, 0, 0});
    EXPECT_THAT(auditHost(first.process), IsEmpty());
    EXPECT_EQ(auditHost(second.process).size(), 1U);
    const HostProcess::Scope bound(first.process);
    copy.reset();  // counted where it was made, whichever process is current now
    EXPECT_THAT(auditHost(second.process), IsEmpty());
}

TEST(HostProcess, LeavesCopiesBehindThatAreStillInUse) {
    std::unique_ptr<YxDbLine> copy;
    {
        const HostProcess process;
        copy = EntityAccess::makeLine({}, {1, 0, 0});
    }
    EXPECT_EQ(EntityAccess::line(*copy).end.x, 1.0);
    copy.reset();
    EXPECT_THAT(hostState().copies, IsEmpty());
}

TEST(HostProcess, MayEndOnAnotherThread) {
    std::unique_ptr<SmallHost> host;
    {
        const HostProcess::Scope keepsTheFormer;
        host = std::make_unique<SmallHost>();
        host->curve(host->line());
    }
    std::thread([&] {
        EXPECT_EQ(workingDatabase(), nullptr);
        {
            const HostProcess::Scope bound(host->process);
            EXPECT_EQ(workingDatabase(), &host->process.database());
        }
        host.reset();
    }).join();
    EXPECT_EQ(workingDatabase(), nullptr);
}

TEST(HostProcess, IsOverOnEveryThreadWhenItEndsOnOne) {
    auto host = std::make_unique<SmallHost>();
    std::thread([&] { host.reset(); }).join();
    EXPECT_EQ(workingDatabase(), nullptr);
    EXPECT_EQ(hostObserver(), nullptr);
}

}  // namespace
}  // namespace holdfast
