#include <YxDbConstraints/LvEvaDataConverter.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/network/SmallHost.h"

namespace holdfast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::unique_ptr<LvEvaDataConverter> converterFor(LvEditorType type) {
    return std::unique_ptr<LvEvaDataConverter>(LvEvaDataConverterFactory::createInstance(type));
}

std::vector<std::string> operations(LvEvaDataConverter& converter) {
    std::vector<std::string> names;
    for (const ConverterRecord& call : HostAccess::records(converter).calls)
        names.push_back(call.operation);
    return names;
}

TEST(ConverterFactory, MakesTheConverterOfTheEditor) {
    EXPECT_NE(dynamic_cast<LvEvaDataConverterLengthenEdit*>(converterFor(kLengthenEditor).get()), nullptr);
    EXPECT_NE(dynamic_cast<LvEvaDataConverterPropertiesEdit*>(converterFor(kPropertiesEditor).get()), nullptr);
    for (const LvEditorType plain : {kStretchEditor, kStaticEvaluateEditor, kAlignEditor}) {
        const auto converter = converterFor(plain);
        ASSERT_NE(converter, nullptr);
        EXPECT_EQ(dynamic_cast<LvEvaDataConverterGripEdit*>(converter.get()), nullptr);
        EXPECT_EQ(HostAccess::records(*converter).editorType, plain);
    }
}

TEST(ConverterFactory, KnowsNoOtherEditors) {
    for (const int number : {-1, 0, 1, 4, 18, 20, 30, 32})
        EXPECT_EQ(converterFor(static_cast<LvEditorType>(number)), nullptr) << number;
}

TEST(ConverterSignatures, TakeIdsByValue) {
    // What a host exports is named after the types of its arguments.
    bool (*const isConstrained)(YxDbObjectId) = &LvEvaDataConverter::hasAssocConstraint;
    bool (*const indices)(YxDbObjectId, YxArray<int>&) = &LvEvaDataConverter::polyLineHasAssocConstraintIndex;
    void (LvEvaDataConverter::*const special)(YxDbObjectId, YxGeMatrix3d, int, double) =
        &LvEvaDataConverter::addSpecialInfo;
    Yxrt::ErrorStatus (YxDbObject::*const remove)(YxDbObjectId) = &YxDbObject::removePersistentReactor;
    EXPECT_TRUE(isConstrained != nullptr && indices != nullptr && special != nullptr && remove != nullptr);
}

TEST(Converter, RecordsTheCallsOfAnAlignInTheirOrder) {
    const auto converter = converterFor(kAlignEditor);
    converter->resetData();
    converter->setObjectIds(YxArray<YxDbObjectId>());
    converter->setTransform(YxGeMatrix3d());
    converter->collectInfo();
    EXPECT_THAT(operations(*converter),
                ElementsAre("resetData", "setObjectIds", "setTransform(matrix)", "collectInfo"));
    EXPECT_TRUE(HostAccess::records(*converter).dirty);
}

TEST(Converter, RecordsTheCallsOfAStretchStepInTheirOrder) {
    const auto converter = converterFor(kStretchEditor);
    converter->beginStep();
    converter->resetData(YxArray<YxArray<int>>());
    converter->setTransform(YxGeVector3d(1, 2, 3));
    converter->addSpecialInfo({}, YxGeMatrix3d(), 4, 2.5);
    converter->addObjectOffset();
    converter->addObjectOffset({}, YxGeVector3d());
    converter->evaluate();
    EXPECT_THAT(operations(*converter),
                ElementsAre("beginStep", "resetData(lists)", "setTransform(vector)", "addSpecialInfo",
                            "addObjectOffset", "addObjectOffset(id)", "evaluate"));
}

TEST(Converter, KeepsDeepCopiesOfWhatItWasTold) {
    SmallHost host;
    const auto converter = converterFor(kStretchEditor);
    YxArray<YxDbObjectId> ids;
    ids.append(host.groupId);
    YxArray<YxArray<int>> lists;
    lists.append(YxArray<int>());
    lists[0].append(7);
    converter->setObjectIds(ids);
    converter->resetData(lists);
    ids[0] = YxDbObjectId();
    lists[0][0] = 8;
    const auto& calls = HostAccess::records(*converter).calls;
    EXPECT_THAT(listed(calls[0].ids), ElementsAre(host.groupId));
    EXPECT_THAT(listed(calls[1].indexLists[0]), ElementsAre(7));
}

TEST(Converter, RecordsASpecialEntity) {
    SmallHost host;
    const auto converter = converterFor(kStretchEditor);
    YxGeMatrix3d shift;
    shift.setToTranslation({1, 2, 3});
    converter->addSpecialInfo(host.groupId, shift, 4, 2.5);
    const ConverterRecord& call = HostAccess::records(*converter).calls.front();
    EXPECT_EQ(call.id, host.groupId);
    EXPECT_EQ(call.transform, shift);
    EXPECT_EQ(call.number, 4);
    EXPECT_EQ(call.value1, 2.5);
}

TEST(LengthenConverter, RecordsTheMovedEnd) {
    SmallHost host;
    const auto converter = converterFor(kLengthenEditor);
    static_cast<LvEvaDataConverterLengthenEdit&>(*converter)
        .collectAndUpdateInfo(host.groupId, LvEvaDataConverterGripEdit::kArc, true, {3, 0, 0});
    const ConverterRecord& call = HostAccess::records(*converter).calls.front();
    EXPECT_EQ(call.operation, "collectAndUpdateInfo");
    EXPECT_EQ(call.id, host.groupId);
    EXPECT_EQ(call.entType, 6);
    EXPECT_TRUE(call.isStart);
    EXPECT_EQ(call.vector.x, 3.0);
}

TEST(PropertiesConverter, RecordsTheChangedProperty) {
    SmallHost host;
    const auto converter = converterFor(kPropertiesEditor);
    YxGeMatrix3d turn;
    turn.setToRotation(1.0, YxGeVector3d::kZAxis);
    static_cast<LvEvaDataConverterPropertiesEdit&>(*converter)
        .collectAndUpdateInfo(host.groupId, LvEvaDataConverterGripEdit::kText, 7, {1, 2, 0}, 5.0, 6.0, turn);
    const ConverterRecord& call = HostAccess::records(*converter).calls.front();
    EXPECT_EQ(call.entType, 9);
    EXPECT_EQ(call.number, 7);
    EXPECT_EQ(call.vector.y, 2.0);
    EXPECT_EQ(call.value1, 5.0);
    EXPECT_EQ(call.value2, 6.0);
    EXPECT_EQ(call.transform, turn);
}

TEST(Converter, EvaluatesThroughTheHostsEvaluator) {
    SmallHost host;
    const LvEvaDataConverter* evaluated = nullptr;
    hostState().staticEvaluator = [&](LvEvaDataConverter& converter) { evaluated = &converter; };
    const auto converter = converterFor(kStaticEvaluateEditor);
    converter->evaluate();
    EXPECT_EQ(evaluated, converter.get());
}

TEST(Converter, ThatNobodyFreedIsFreedByTheHostAtTheEndOfTheCommand) {
    SmallHost host;
    LvEvaDataConverterFactory::createInstance(kStaticEvaluateEditor);
    EXPECT_EQ(hostState().converters.size(), 1U);
    host.process.endOfCommand();
    EXPECT_THAT(hostState().converters, IsEmpty());
}

}  // namespace
}  // namespace holdfast
