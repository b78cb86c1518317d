#include "tests/module/evaluation/FeedingScene.h"

#include <cstdio>
#include <stdexcept>

#include <gtest/gtest.h>

#include "host/src/yxdb/ObjectData.h"

namespace holdfast::module {

namespace {

class PlainObject : public YxDbObject {};

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.12g", value == 0.0 ? 0.0 : value);
    return text;
}

std::string triple(double x, double y, double z) {
    return number(x) + "," + number(y) + "," + number(z);
}

void join(std::string& text, const std::string& more, const char* separator = " ") {
    text += (text.empty() ? "" : separator) + more;
}

std::string shapeOf(const YxDbEntity& entity) {
    if (entity.isKindOf(YxDbLine::desc())) {
        const LineData data = EntityAccess::line(static_cast<const YxDbLine&>(entity));
        return "line " + textOf(data.start) + " " + textOf(data.end);
    }
    if (entity.isKindOf(YxDbCircle::desc())) {
        const CircleData data = EntityAccess::circle(static_cast<const YxDbCircle&>(entity));
        return "circle " + textOf(data.centre) + " " + number(data.radius);
    }
    if (entity.isKindOf(YxDbPolyline::desc())) {
        std::string text = "polyline";
        for (const PolylineVertex& vertex : EntityAccess::polyline(static_cast<const YxDbPolyline&>(entity)).vertices)
            text += " " + number(vertex.point.x) + "," + number(vertex.point.y);
        return text;
    }
    return entity.isA()->name();
}

bool isTranslation(const YxGeMatrix3d& matrix) {
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            if (matrix(row, column) != (row == column ? 1.0 : 0.0))
                return false;
    return true;
}

std::string listText(const YxArray<YxArray<int>>& lists) {
    std::string text;
    for (const YxArray<int>& list : lists) {
        std::string numbers;
        for (const int value : list)
            join(numbers, std::to_string(value), ",");
        join(text, "[" + numbers + "]");
    }
    return text;
}

std::string callText(const FeedingScene& scene, const ConverterRecord& call, LvEditorType editor) {
    if (call.operation == "setObjectIds")
        return "setObjectIds " + scene.text(call.ids);
    if (call.operation == "resetData(lists)")
        return "resetData " + listText(call.indexLists);
    if (call.operation == "setTransform(matrix)")
        return "setTransform " + textOf(call.transform);
    if (call.operation == "setTransform(vector)")
        return "setTransform " + textOf(call.vector);
    if (call.operation == "addSpecialInfo")
        return "addSpecialInfo " + scene.nameOf(call.id) + " " + textOf(call.transform) + " " +
               std::to_string(call.number) + " " + number(call.value1);
    if (call.operation == "addObjectOffset(id)")
        return "addObjectOffset " + scene.nameOf(call.id) + " " + textOf(call.vector);
    if (call.operation == "collectAndUpdateInfo" && editor == kLengthenEditor)
        return scene.nameOf(call.id) + " type " + std::to_string(call.entType) + (call.isStart ? " start " : " end ") +
               textOf(call.vector);
    if (call.operation == "collectAndUpdateInfo")
        return scene.nameOf(call.id) + " type " + std::to_string(call.entType) + " kind " +
               std::to_string(call.number) + " " + textOf(call.vector) + " " + number(call.value1) + " " +
               number(call.value2) + " " + textOf(call.transform);
    return call.operation;
}

}  // namespace

std::string textOf(const YxGePoint3d& point) {
    return triple(point.x, point.y, point.z);
}

std::string textOf(const YxGeVector3d& vector) {
    return triple(vector.x, vector.y, vector.z);
}

std::string textOf(const YxGeMatrix3d& matrix) {
    if (matrix == YxGeMatrix3d::kIdentity)
        return "identity";
    if (isTranslation(matrix))
        return "translation " + triple(matrix(0, 3), matrix(1, 3), matrix(2, 3));
    std::string text;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            join(text, number(matrix(row, column)), ",");
    return text;
}

YxGeMatrix3d translation(double x, double y, double z) {
    YxGeMatrix3d matrix;
    return matrix.setToTranslation({x, y, z});
}

FeedingScene::FeedingScene(std::string_view text)
    : Scene("line outsider 80,0 85,0; dependency outsider; line stranger 90,0 95,0; group near; " + std::string(text)) {
    nameObject(groupId(), "far");
}

FeedingScene::~FeedingScene() {
    host().clear();
    EXPECT_EQ(audit(), std::vector<std::string>());
    process().endOfCommand();
    EXPECT_EQ(copies(), 0) << "copies are left after the end of the command";
}

YxArray<YxDbObjectId> FeedingScene::ids(std::initializer_list<const char*> names) const {
    YxArray<YxDbObjectId> list;
    for (const char* name : names) {
        if (id(name).isNull())
            throw std::invalid_argument(std::string("the scene has no \"") + name + "\"");
        list.append(id(name));
    }
    return list;
}

void FeedingScene::addNonEntity(const std::string& name) {
    nameObject(builder().add(std::make_unique<PlainObject>()), name);
}

void FeedingScene::put(const std::string& groupName, const std::string& entityName) {
    builder().geometry(group(groupName), {.entity = id(entityName)});
}

AssocConstraintHeader& FeedingScene::header(const std::string& groupName) const {
    return *HostAccess::header(group(groupName));
}

int FeedingScene::status(const std::string& groupName) const {
    return HostAccess::status(group(groupName));
}

void FeedingScene::setStatus(YxDbAssocStatus status, const std::string& groupName) const {
    HostAccess::setStatus(group(groupName), status);
}

void FeedingScene::prefill(const std::string& groupName) {
    AssocConstraintHeader& filled = header(groupName);
    YxDbEntity* stranger = pointer("stranger");
    auto* copy = static_cast<YxDbEntity*>(stranger->clone());
    filled.adopt(copy);
    filled.editKind = 77;
    filled.editedObjectIds.append(id("stranger"));
    filled.dragActive = filled.rotateEvaluated = filled.dropCollected = filled.dropChanged = filled.boxFlag = true;
    filled.collectNeeded = false;
    filled.dropObjectIds.append(id("stranger"));
    filled.preEditEntities[id("stranger")] = copy;
    filled.points.append({7.0, 8.0, 9.0});
    filled.dragTransform = translation(1, 2, 3);
    filled.staticTransform = translation(4, 5, 6);
    filled.polylineEntities.append(stranger);
    filled.polylineIndexLists.setLogicalLength(1);
    filled.polylineIndexLists[0].append(9);
    filled.unconstrainedEntities.append(stranger);
    filled.entitiesToDraw.append(stranger);
    filled.boxMode = 5;
    remember();
    process().journal().clear();
}

void FeedingScene::remember() {
    for (const char* groupName : {"near", "far"})
        m_remembered[groupName] = fields(header(groupName));
}

FeedingScene::Fields FeedingScene::fields(const AssocConstraintHeader& read) const {
    auto flag = [](bool value) { return std::string(value ? "true" : "false"); };
    std::string points;
    for (const YxGePoint3d& point : read.points)
        join(points, module::textOf(point));
    char converter[32];
    std::snprintf(converter, sizeof converter, "%p", static_cast<void*>(read.converter));
    return {{"editKind", std::to_string(read.editKind)},
            {"editedObjectIds", text(read.editedObjectIds)},
            {"dragActive", flag(read.dragActive)},
            {"rotateEvaluated", flag(read.rotateEvaluated)},
            {"collectNeeded", flag(read.collectNeeded)},
            {"dropCollected", flag(read.dropCollected)},
            {"dropChanged", flag(read.dropChanged)},
            {"converter", converter},
            {"dropObjectIds", text(read.dropObjectIds)},
            {"preEditEntities", text(read.preEditEntities)},
            {"points", points},
            {"dragTransform", module::textOf(read.dragTransform)},
            {"staticTransform", module::textOf(read.staticTransform)},
            {"polylineEntities", text(read.polylineEntities)},
            {"polylineIndexLists", listText(read.polylineIndexLists)},
            {"unconstrainedEntities", text(read.unconstrainedEntities)},
            {"entitiesToDraw", text(read.entitiesToDraw)},
            {"boxFlag", flag(read.boxFlag)},
            {"boxMode", std::to_string(read.boxMode)}};
}

std::string FeedingScene::changes(const std::string& groupName) const {
    const Fields now = fields(header(groupName));
    const Fields& before = m_remembered.at(groupName);
    std::string changed;
    for (std::size_t i = 0; i < now.size(); ++i)
        if (now[i] != before[i])
            join(changed, now[i].first);
    return changed;
}

std::string FeedingScene::nameOf(const YxDbObjectId& named) const {
    return const_cast<FeedingScene*>(this)->process().nameOf(HostAccess::peek(named));
}

std::string FeedingScene::textOf(const YxDbEntity* entity) const {
    if (entity == nullptr)
        return "null";
    const YxDbObjectId resident = HostAccess::idOf(HostAccess::data(*entity).stub);
    return resident.isValid() ? nameOf(resident) : "(" + shapeOf(*entity) + ")";
}

std::string FeedingScene::text(const YxArray<YxDbObjectId>& ids) const {
    std::string names;
    for (const YxDbObjectId& each : ids)
        join(names, nameOf(each));
    return names;
}

std::string FeedingScene::text(const YxArray<YxDbEntity*>& entities) const {
    std::string names;
    for (const YxDbEntity* each : entities)
        join(names, textOf(each));
    return names;
}

std::string FeedingScene::text(const std::map<YxDbObjectId, YxDbEntity*>& entities) const {
    std::string names;
    for (const auto& [named, entity] : entities)
        join(names, nameOf(named) + textOf(entity));
    return names;
}

std::string FeedingScene::fed(const std::string& groupName) const {
    LvEvaDataConverter* converter = header(groupName).converter;
    return converter == nullptr ? "no converter" : fed(*converter);
}

std::string FeedingScene::fed(LvEvaDataConverter& converter) const {
    const ConverterRecords& records = HostAccess::records(converter);
    std::string calls;
    for (const ConverterRecord& call : records.calls)
        join(calls, callText(*this, call, records.editorType), "; ");
    return calls;
}

void FeedingScene::refuse(const std::string& operation, const std::string& name) {
    host().refuse(operation, HostAccess::peek(id(name)));
}

int FeedingScene::copies() const {
    return static_cast<int>(hostState().copies.size());
}

namespace {

enum class Failure { none, thrown, refused };

/// Returns how many host calls the edit made.
int runOnce(std::string_view sceneText, const std::function<void(FeedingScene&)>& edit, int nth, Failure failure) {
    FeedingScene scene(sceneText);
    if (failure == Failure::thrown)
        scene.host().throwFromCall(nth);
    if (failure == Failure::refused)
        scene.host().refuseCall(nth);
    try {
        edit(scene);
    } catch (const YxError&) {
        // passes through the edit; the scene's end sees what was left behind
    }
    return scene.host().calls();
}

}  // namespace

int failEachCall(std::string_view sceneText, const std::function<void(FeedingScene&)>& edit) {
    const int calls = runOnce(sceneText, edit, 0, Failure::none);
    for (int nth = 1; nth <= calls; ++nth)
        for (const Failure failure : {Failure::thrown, Failure::refused}) {
            SCOPED_TRACE((failure == Failure::thrown ? "thrown from call " : "refused call ") + std::to_string(nth));
            runOnce(sceneText, edit, nth, failure);
        }
    return calls;
}

}  // namespace holdfast::module
