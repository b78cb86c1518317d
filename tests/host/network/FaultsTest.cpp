#include "host/model/HostFaults.h"

#include <BondKit/YxConstraintModelHelp.h>
#include <YxDbConstraints/YxDbAssocManager.h>
#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <yxdb/YxDbDatabaseService.h>
#include <yxdb/YxDbHostApplicationServices.h>

#include <functional>

#include "tests/host/network/SmallHost.h"

namespace holdfast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(RefusedOpening, AnswersNullForTheSubjectOnly) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    host.process.faults().refuse("openObject", &host.group);
    EXPECT_TRUE(openedForRead(host.groupId).isNull());
    EXPECT_FALSE(openedForRead(a).isNull());
    EXPECT_EQ(HostAccess::openCount(host.group), 0);
}

TEST(RefusedOpening, CanBeginWithTheNthCall) {
    SmallHost host;
    host.process.faults().refuse("YxDbObjectIdImpl::openObject", nullptr, 2);
    EXPECT_FALSE(openedForRead(host.groupId).isNull());
    EXPECT_TRUE(openedForRead(host.groupId).isNull());
    EXPECT_FALSE(openedForRead(host.groupId).isNull());
}

TEST(FalseOpening, AnswersAnotherObjectWithItsOwnCount) {
    SmallHost host;
    YxDbObject* line = HostAccess::peek(host.line());
    host.process.faults().answerOther("openObject", line, &host.group);
    const auto opened = openedForWrite(host.groupId);
    EXPECT_EQ(opened.get(), line);
    EXPECT_EQ(HostAccess::openCount(*line), 1);
    EXPECT_EQ(HostAccess::openCount(host.group), 0);
}

TEST(FailingStatus, IsAnsweredAndNothingIsDone) {
    SmallHost host;
    YxGeomConstraint& fixed = host.constrain<YxFixedConstraint>({host.curve(host.line())});
    const auto open = openedForWrite(host.groupId);
    host.process.faults().answerStatus("deleteConstraint", Yxrt::eOutOfRange);
    EXPECT_EQ(host.group.deleteConstraint(&fixed), Yxrt::eOutOfRange);
    EXPECT_EQ(host.group.getGroupNodePtr(fixed.nodeId()), &fixed);
    host.process.faults().clear();
    EXPECT_EQ(host.group.deleteConstraint(&fixed), Yxrt::eOk);
}

TEST(ThrowingHost, LeavesNothingDoneAndNothingOpen) {
    SmallHost host;
    host.process.faults().throwFrom("openObject");
    EXPECT_THROW(openedForWrite(host.groupId), HostFailure);
    EXPECT_EQ(HostAccess::openCount(host.group), 0);
}

TEST(ThrowingHost, IsAPlatformErrorToItsCallers) {
    SmallHost host;
    host.process.faults().throwFrom("setStatus");
    const auto open = openedForWrite(host.groupId);
    EXPECT_THROW(host.group.setStatus(kChangedAssocStatus), YxError);
    EXPECT_EQ(host.group.status(), kUpToDateAssocStatus);
}

TEST(FalseListing, CanBeEmptyHoldANullOrAForeignEntry) {
    SmallHost host;
    YxConstrainedGeometry* curve = host.curve(host.line());
    YxGeomConstraint& fixed = host.constrain<YxFixedConstraint>({curve});
    YxGeomConstraint& foreign = host.constrain<YxFixedConstraint>({host.curve(host.line())});
    YxArray<YxGeomConstraint*> found;
    const auto ask = [&] {
        curve->getConnectedConstraints(found);
        host.process.faults().clear();
        return listed(found);
    };
    host.process.faults().answerNullEntry("getConnectedConstraints");
    EXPECT_THAT(ask(), ElementsAre(nullptr, &fixed));
    host.process.faults().answerOther("getConnectedConstraints", &foreign);
    EXPECT_THAT(ask(), ElementsAre(&foreign));
    host.process.faults().answerOther("getConnectedConstraints", &host.group);
    EXPECT_THAT(ask(), ElementsAre(nullptr));
    host.process.faults().refuse("getConnectedConstraints");
    EXPECT_THAT(ask(), IsEmpty());
    EXPECT_THAT(ask(), ElementsAre(&fixed));
}

TEST(FalseListing, OfIdsCanHoldTheNullId) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    const YxDbObjectId dependency = host.dependency(a).objectId();
    host.process.faults().answerNullEntry("getDependenciesOnObject");
    YxArray<YxDbObjectId> ids;
    EXPECT_EQ(YxDbAssocDependency::getDependenciesOnObject(HostAccess::peek(a), true, true, ids), Yxrt::eOk);
    EXPECT_THAT(listed(ids), ElementsAre(YxDbObjectId(), dependency));
}

TEST(FalseId, NamesTheOtherObjectOrNone) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    YxConstrainedGeometry* curve = host.curve(a);
    host.process.faults().answerOther("geomDependencyId", HostAccess::peek(a));
    EXPECT_EQ(curve->geomDependencyId(), a);
    host.process.faults().refuse("geomDependencyId");
    EXPECT_TRUE(curve->geomDependencyId().isNull());
}

// Each row makes one call of the operation that it names.
struct Operation {
    const char* name;
    std::function<void(SmallHost&)> call;
};

const std::vector<Operation>& operations() {
    static const auto provider = [] { return YxDbConstraintDataProviderLv::getConstraintDataProviderLvInstance(); };
    static const auto service = [] { return static_cast<YxDbDatabaseService*>(yxrxGetService(3)); };
    static YxArray<YxDbObjectId> ids;
    static YxArray<YxGeomConstraint*> constraints;
    static YxArray<YxConstrainedGeometry*> geometries;
    static YxConstrainedGeometry* geometry = nullptr;
    static YxDbEntity* entity = nullptr;
    static const auto line = [](SmallHost& host) { return host.line(); };
    static const auto dependency = [](SmallHost& host) -> YxDbAssocGeomDependency& {
        return host.dependency(host.line());
    };
    static const auto fixed = [](SmallHost& host) -> YxGeomConstraint& {
        return host.constrain<YxFixedConstraint>({host.curve(host.line())});
    };
    static const auto implicit = [](SmallHost& host) -> YxConstrainedImplicitPoint& {
        return static_cast<YxConstrainedImplicitPoint&>(*host.point(host.line(), YxDb::kEndImplicit));
    };
    static const std::vector<Operation> rows = {
        {"YxDbObjectIdImpl::openObject", [](SmallHost& host) { openedForRead(host.groupId); }},
        {"yxdbOpenObject", [](SmallHost& host) { yxdbOpenObject(entity, host.groupId, YxDb::kForRead, false); }},
        {"YxDbObject::objectId", [](SmallHost& host) { (void)host.group.objectId(); }},
        {"YxDbObject::removePersistentReactor",
         [](SmallHost& host) { HostAccess::peek(line(host))->removePersistentReactor({}); }},
        {"yxrxGetService", [](SmallHost&) { yxrxGetService(3); }},
        {"YxDbDatabaseService::dependencyManager", [](SmallHost&) { service()->dependencyManager(); }},
        {"YxDbDatabaseService::layoutManager", [](SmallHost&) { service()->layoutManager(); }},
        {"YxDbDependencyManager::getPersistentReactorIds",
         [](SmallHost& host) { service()->dependencyManager()->getPersistentReactorIds(&host.group, ids); }},
        {"YxDbLayoutManager::modelSpaceId", [](SmallHost&) { service()->layoutManager()->modelSpaceId(nullptr); }},
        {"yxdbHostApplicationServices", [](SmallHost&) { yxdbHostApplicationServices(); }},
        {"YxDbHostApplicationServices::workingDatabase",
         [](SmallHost&) { yxdbHostApplicationServices()->workingDatabase(); }},
        {"YxDbDatabase::ucsxdir", [](SmallHost& host) { host.process.database().ucsxdir(); }},
        {"YxDbDatabase::ucsydir", [](SmallHost& host) { host.process.database().ucsydir(); }},
        {"YxDbDatabase::pucsxdir", [](SmallHost& host) { host.process.database().pucsxdir(); }},
        {"YxDbDatabase::pucsydir", [](SmallHost& host) { host.process.database().pucsydir(); }},
        {"YxDbDatabase::tilemode", [](SmallHost& host) { host.process.database().tilemode(); }},
        {"YxDbDatabase::currentSpaceId", [](SmallHost& host) { host.process.database().currentSpaceId(); }},
        {"YxDbConstraintDataProviderLv::isSrvInit", [](SmallHost&) { YxDbConstraintDataProviderLv::isSrvInit(); }},
        {"YxDbConstraintDataProviderLv::getConstraintDataProviderLvInstance", [](SmallHost&) { provider(); }},
        {"YxDbConstraintDataProviderLv::getAssocCons2DGroup",
         [](SmallHost& host) { provider()->getAssocCons2DGroup(line(host)); }},
        {"YxDbConstraintDataProviderLv::getAssocConstraintHeader",
         [](SmallHost& host) { provider()->getAssocConstraintHeader(host.groupId); }},
        {"YxDbAssocDependency::status", [](SmallHost& host) { (void)dependency(host).status(); }},
        {"YxDbAssocDependency::setStatus",
         [](SmallHost& host) {
             const auto& made = dependency(host);
             const auto open = openedForWrite(HostAccess::idOf(made));
             YxSmartPtr<YxDbAssocDependency>(open)->setStatus(kSegmentRemovedAssocStatus);
         }},
        {"YxDbAssocDependency::detachFromObject",
         [](SmallHost& host) {
             const auto open = openedForWrite(HostAccess::idOf(dependency(host)));
             YxSmartPtr<YxDbAssocDependency>(open)->detachFromObject();
         }},
        {"YxDbAssocDependency::attachToObject",
         [](SmallHost& host) {
             const auto open = openedForWrite(HostAccess::idOf(dependency(host)));
             YxSmartPtr<YxDbAssocDependency>(open)->attachToObject({});
         }},
        {"YxDbAssocDependency::owningAction", [](SmallHost& host) { (void)dependency(host).owningAction(); }},
        {"YxDbAssocDependency::getDependenciesOnObject",
         [](SmallHost& host) { YxDbAssocDependency::getDependenciesOnObject(&host.group, true, true, ids); }},
        {"YxDbAssocGeomDependency::subentType", [](SmallHost& host) { (void)dependency(host).subentType(); }},
        {"YxDbAssocGeomDependency::persistentSubentId",
         [](SmallHost& host) { (void)dependency(host).persistentSubentId(); }},
        {"YxDbAssocGeomDependency::setSubentity",
         [](SmallHost& host) {
             const auto open = openedForWrite(HostAccess::idOf(dependency(host)));
             YxSmartPtr<YxDbAssocGeomDependency>(open)->setSubentity({YxDb::kEdgeSubentType, 1});
         }},
        {"YxDbAssocEdgePersSubentId::index1", [](SmallHost&) { (void)HostAccess::makeEdgeId(1, 2)->index1(); }},
        {"YxDbAssocEdgePersSubentId::index2", [](SmallHost&) { (void)HostAccess::makeEdgeId(1, 2)->index2(); }},
        {"YxDbCompoundObjectId::set", [](SmallHost& host) { YxDbCompoundObjectId().set(host.groupId); }},
        {"YxDbCompoundObjectId::setFullPath",
         [](SmallHost&) { YxDbCompoundObjectId().setFullPath(YxArray<YxDbObjectId>()); }},
        {"YxDbAssocAction::status", [](SmallHost& host) { (void)host.group.status(); }},
        {"YxDbAssocAction::setStatus",
         [](SmallHost& host) {
             const auto open = openedForWrite(host.groupId);
             host.group.setStatus(kChangedAssocStatus, true, false);
         }},
        {"YxDbAssoc2dConstraintGroup::getConstrainedGeometry",
         [](SmallHost& host) { host.group.getConstrainedGeometry(&dependency(host), geometry); }},
        {"YxDbAssoc2dConstraintGroup::getConstrainedGeometry(path)",
         [](SmallHost& host) { host.group.getConstrainedGeometry(YxDbFullSubentPath(), geometry); }},
        {"YxDbAssoc2dConstraintGroup::getConstrainedGeometries",
         [](SmallHost& host) { host.group.getConstrainedGeometries(geometries); }},
        {"YxDbAssoc2dConstraintGroup::getGroupNodePtr", [](SmallHost& host) { host.group.getGroupNodePtr(101); }},
        {"YxDbAssoc2dConstraintGroup::deleteConstraint",
         [](SmallHost& host) {
             YxGeomConstraint& made = fixed(host);
             const auto open = openedForWrite(host.groupId);
             host.group.deleteConstraint(&made);
         }},
        {"YxGraphNode::nodeId", [](SmallHost& host) { (void)fixed(host).nodeId(); }},
        {"YxConstrainedGeometry::getConnectedConstraints",
         [](SmallHost& host) { implicit(host).getConnectedConstraints(constraints); }},
        {"YxConstrainedGeometry::geomDependencyId", [](SmallHost& host) { (void)implicit(host).geomDependencyId(); }},
        {"YxConstrainedImplicitPoint::constrainedCurveId",
         [](SmallHost& host) { (void)implicit(host).constrainedCurveId(); }},
        {"YxConstrainedImplicitPoint::pointIndex", [](SmallHost& host) { (void)implicit(host).pointIndex(); }},
        {"YxConstrainedImplicitPoint::pointType", [](SmallHost& host) { (void)implicit(host).pointType(); }},
        {"YxGeomConstraint::isInternal", [](SmallHost& host) { (void)fixed(host).isInternal(); }},
        {"YxGeomConstraint::setIsImplied", [](SmallHost& host) { fixed(host).setIsImplied(false); }},
        {"YxGeomConstraint::getOwningCompositeConstraint",
         [](SmallHost& host) { (void)fixed(host).getOwningCompositeConstraint(); }},
        {"YxGeomConstraint::getConstrainedGeometries",
         [](SmallHost& host) { fixed(host).getConstrainedGeometries(geometries); }},
        {"YxCompositeConstraint::getOwnedConstraints",
         [](SmallHost& host) { host.constrain<YxCompositeConstraint>({}).getOwnedConstraints(constraints); }},
        {"AssocConstraintHeader::uninit", [](SmallHost& host) { HostAccess::header(host.group)->uninit(); }},
        {"LvEvaDataConverterFactory::createInstance",
         [](SmallHost&) { LvEvaDataConverterFactory::createInstance(kAlignEditor); }},
        {"LvEvaDataConverter::hasAssocConstraint",
         [](SmallHost& host) { LvEvaDataConverter::hasAssocConstraint(line(host)); }},
        {"YxDbAssocManager::evaluateTopLevelNetwork",
         [](SmallHost& host) { YxDbAssocManager::evaluateTopLevelNetwork(&host.process.database(), nullptr, 0); }},
        {"ConstraintDynamicEdit::setHeader",
         [](SmallHost&) { ConstraintDynamicEdit().setHeader(YxArray<YxDbObjectId>()); }},
        {"YxConstraintModelHelp::deleteConstraints",
         [](SmallHost&) { YxConstraintModelHelp().deleteConstraints(YxArray<YxDbObjectId>()); }},
        {"YxConstraintModelHelp::checkEntHasGeomType",
         [](SmallHost&) { (void)YxConstraintModelHelp().checkEntHasGeomType(nullptr, 6); }},
        {"YxRxObject::clone",
         [](SmallHost& host) { const std::unique_ptr<YxRxObject> made(HostAccess::peek(line(host))->clone()); }},
    };
    return rows;
}

TEST(EveryOperation, CanThrow) {
    for (const Operation& operation : operations()) {
        SmallHost host;
        host.process.faults().throwFrom(operation.name);
        EXPECT_THROW(operation.call(host), HostFailure) << operation.name;
    }
}

TEST(EveryOperation, CanBeRefusedAndLeavesNothingOpen) {
    for (const Operation& operation : operations()) {
        SmallHost host;
        host.process.faults().refuse(operation.name);
        EXPECT_NO_THROW(operation.call(host)) << operation.name;
        EXPECT_THAT(host.process.misuses(), IsEmpty()) << operation.name;
        for (const YxDbObjectId& id : HostAccess::allIds(host.process.database()))
            EXPECT_EQ(HostAccess::openCount(*HostAccess::peek(id)), 0) << operation.name;
    }
}

TEST(EveryOperation, IsInTheJournalOnce) {
    for (const Operation& operation : operations()) {
        SmallHost host;
        operation.call(host);
        EXPECT_EQ(host.process.journal().count(operation.name), 1) << operation.name;
    }
}

TEST(AnyCall, CanBeTheOneThatThrows) {
    SmallHost host;
    host.process.faults().clear();
    host.process.faults().throwFromCall(2);
    EXPECT_NO_THROW(openedForRead(host.groupId));
    EXPECT_THROW((void)host.group.status(), HostFailure);
    EXPECT_NO_THROW((void)host.group.status());
    EXPECT_EQ(host.process.faults().calls(), 3);
}

}  // namespace
}  // namespace holdfast
