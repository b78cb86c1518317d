// What hosts call by position and by name: the classes' calling tables, and the spelling of their operations.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "commands/align/ConstraintAlignCmdCenter.h"
#include "commands/break/ConstraintBreakCmdCenter.h"
#include "commands/break/ConstraintTrimCmdCenter.h"
#include "commands/extend/ConstraintExtendCmdCenter.h"
#include "commands/fillet/ConstraintFilletCmdCenter.h"
#include "commands/join/ConstraintJoinCmdCenter.h"
#include "commands/lengthen/ConstraintLengthenCmdCenter.h"
#include "commands/mirror/ConstraintMirrorCmdCenter.h"
#include "commands/properties/ConstraintPropertiesCmdCenter.h"
#include "commands/stretch/ConstraintStretchCmdCenter.h"
#include "drag/CYxRotateReleaseConstraint.h"
#include "drag/LvConstraintDropData.h"
#include "tests/support/LoadedLibrary.h"

namespace {

constexpr int kNoSlot = -1;
constexpr int kDestructorSlots = 2;  // the complete and the deleting one (Itanium C++ ABI, 2.5.2)

/// The slot of an operation in its class's calling table, or kNoSlot for an ordinary one (Itanium C++ ABI, 2.3).
template <class Operation>
int slotOf(Operation operation) {
    struct {
        std::ptrdiff_t pointer;
        std::ptrdiff_t adjustment;
    } raw;
    static_assert(sizeof raw == sizeof operation);
    std::memcpy(&raw, &operation, sizeof raw);
#if defined(__arm__) || defined(__aarch64__)
    return raw.adjustment & 1 ? static_cast<int>(raw.pointer / sizeof(void*)) : kNoSlot;
#else
    return raw.pointer & 1 ? static_cast<int>((raw.pointer - 1) / static_cast<int>(sizeof(void*))) : kNoSlot;
#endif
}

/// An operation added below a class comes behind all of the class's own slots.
template <class Centre>
struct Below : Centre {
    virtual void next() {}
};

template <class Centre>
int slotsOf() {
    static_assert(std::has_virtual_destructor_v<Centre>);
    return slotOf(&Below<Centre>::next);
}

using Add = void (ConstraintBreakCmdCenter::*)(const YxDbEntity*, const YxGePoint3d&, const YxGePoint3d&);

template <class Centre>
std::vector<int> breakSlots() {
    const Add setPtParam = &ConstraintBreakCmdCenter::setPtParam;
    return {slotOf(static_cast<int (Centre::*)()>(&Centre::deleteConstraint)),
            slotOf(setPtParam),
            slotOf(&Centre::setFirstCurve),
            slotOf(&Centre::setSecondCurve),
            slotOf(&Centre::setSecondPoly),
            slotsOf<Centre>()};
}

TEST(ExportedClasses, KeepTheirSlotOrder) {
    const std::vector<int> breakTable = {2, 3, 4, 5, 6, 7};
    EXPECT_EQ(breakSlots<ConstraintBreakCmdCenter>(), breakTable);
    EXPECT_EQ(breakSlots<ConstraintTrimCmdCenter>(), breakTable);
    EXPECT_EQ(slotOf(&LvEditDeleteConstraint::deleteConstraint), 2);
    EXPECT_EQ(slotOf(static_cast<int (ConstraintExtendCmdCenter::*)()>(&ConstraintExtendCmdCenter::deleteConstraint)),
              2);
    EXPECT_EQ(slotOf(&ConstraintFilletCmdCenter::deleteConstraint), 2);
    EXPECT_EQ(slotOf(&ConstraintStretchCmdCenter::addDataToWork), 2);
}

TEST(ExportedClasses, HaveNoOtherVirtualOperations) {
    EXPECT_EQ(slotsOf<LvEditDeleteConstraint>(), 3);
    EXPECT_EQ(slotsOf<ConstraintExtendCmdCenter>(), 3);
    EXPECT_EQ(slotsOf<ConstraintFilletCmdCenter>(), 3);
    EXPECT_EQ(slotsOf<ConstraintStretchCmdCenter>(), 3);
    EXPECT_EQ(slotsOf<ConstraintStaticEditCmdCenter>(), kDestructorSlots);
    EXPECT_EQ(slotsOf<ConstraintAlignCmdCenter>(), kDestructorSlots);
    EXPECT_EQ(slotsOf<ConstraintMirrorCmdCenter>(), kDestructorSlots);
    EXPECT_EQ(slotsOf<ConstraintPropertiesCmdCenter>(), kDestructorSlots);
    EXPECT_EQ(slotsOf<ConstraintLengthenCmdCenter>(), kDestructorSlots);
    EXPECT_EQ(slotsOf<ConstraintJoinCmdCenter>(), kDestructorSlots);
    static_assert(!std::is_polymorphic_v<LvConstraintDropData>);
    static_assert(!std::is_polymorphic_v<CYxRotateReleaseConstraint>);
}

TEST(ExportedClasses, CallTheirOwnOperationThroughTheHostsBase) {
    struct Followed : ConstraintStretchCmdCenter {
        int steps = 0;
        void addDataToWork() override { ++steps; }
    };
    Followed followed;
    ConstraintDynamicEdit& base = followed;
    base.addDataToWork();
    EXPECT_EQ(followed.steps, 1);
    EXPECT_EQ(slotOf(&ConstraintDynamicEdit::addDataToWork), 2);
}

TEST(ExportedClasses, CanBeCopiedAndAssigned) {
    static_assert(std::is_copy_constructible_v<ConstraintStaticEditCmdCenter>);
    static_assert(std::is_copy_assignable_v<ConstraintAlignCmdCenter>);
    static_assert(std::is_copy_assignable_v<ConstraintMirrorCmdCenter>);
    static_assert(std::is_copy_assignable_v<ConstraintPropertiesCmdCenter>);
    static_assert(std::is_copy_assignable_v<ConstraintLengthenCmdCenter>);
    static_assert(std::is_copy_assignable_v<ConstraintJoinCmdCenter>);
    static_assert(std::is_copy_assignable_v<ConstraintStretchCmdCenter>);
    static_assert(std::is_trivially_move_assignable_v<CYxRotateReleaseConstraint>);
    static_assert(!std::is_default_constructible_v<LvConstraintDropData>);
    ConstraintMirrorCmdCenter first;
    ConstraintMirrorCmdCenter second(first);
    EXPECT_EQ(&(second = first), &second);
}

TEST(ExportedNames, AreSpeltAsHostsCallThem) {
    const holdfast::LoadedLibrary module(HOLDFAST_LIBRARY);
    ASSERT_TRUE(module.isOpen()) << holdfast::LoadedLibrary::whyNot();
    for (const char* name : {
             "_ZN24ConstraintAlignCmdCenter16seperateObjectesE7YxArrayI12YxDbObjectIdE",
             "_ZN26CYxRotateReleaseConstraint19addDataToBoxEvaluteE7YxArrayI12YxDbObjectIdE11YxGePoint3dRS2_",
             "_ZN25ConstraintFilletCmdCenter18setTwoPolyLineDateEPK12YxDbPolylineS2_",
             "_ZN29ConstraintPropertiesCmdCenter25getWithResetDelConsCountsEv",
             "_ZN23ConstraintJoinCmdCenter19dealAssocPlineJoin2Ev",
             "_ZN20LvConstraintDropData5mFlagE",
             "_ZN20LvConstraintDropData8mGroupIdE",
             "_ZN20LvConstraintDropData9mObjIdArrE",
             "_ZN20LvConstraintDropData13mpAssocHeaderE",
         })
        EXPECT_TRUE(module.exports(name)) << name;
    EXPECT_FALSE(module.exports("_ZN8holdfast9findGroupERK12YxDbObjectId")) << "only the classes are exported";
}

}  // namespace
