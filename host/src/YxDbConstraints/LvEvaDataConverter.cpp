#include <YxDbConstraints/LvEvaDataConverter.h>

#include <set>

#include <YxDbConstraints/YxDbAssocGeomDependency.h>
#include <yxdb/YxDbPolyline.h>

#include "host/model/state/HostAccess.h"
#include "host/model/state/HostCall.h"
#include "host/src/YxDbConstraints/Provider.h"
#include "host/src/YxDbConstraints/Subentities.h"

using holdfast::ConverterRecord;
using holdfast::HostAccess;
using holdfast::hostCall;

struct LvEvaDataConverterData {
    holdfast::ConverterRecords records;
};

namespace {

void record(LvEvaDataConverter& converter, ConverterRecord call) {
    holdfast::ConverterRecords& records = HostAccess::records(converter);
    records.calls.push_back(std::move(call));
    records.dirty = true;
}

ConverterRecord callNamed(const char* operation) {
    ConverterRecord call;
    call.operation = operation;
    return call;
}

}  // namespace

holdfast::ConverterRecords& HostAccess::records(LvEvaDataConverter& converter) {
    return converter.m_data->records;
}

LvEvaDataConverter::LvEvaDataConverter() : m_data(std::make_unique<LvEvaDataConverterData>()) {
    holdfast::hostState().enter(*this);
}

LvEvaDataConverter::~LvEvaDataConverter() {
    holdfast::HostState::leave(*this);
}

void LvEvaDataConverter::setObjectIds(const YxArray<YxDbObjectId>& ids) {
    hostCall("LvEvaDataConverter::setObjectIds", nullptr, ids.length());
    ConverterRecord call = callNamed("setObjectIds");
    call.ids = ids;
    record(*this, std::move(call));
}

void LvEvaDataConverter::resetData() {
    hostCall("LvEvaDataConverter::resetData", nullptr);
    record(*this, callNamed("resetData"));
}

void LvEvaDataConverter::resetData(const YxArray<YxArray<int>>& indexLists) {
    hostCall("LvEvaDataConverter::resetData", nullptr, indexLists.length());
    ConverterRecord call = callNamed("resetData(lists)");
    call.indexLists = indexLists;
    record(*this, std::move(call));
}

void LvEvaDataConverter::setTransform(const YxGeMatrix3d& transform) {
    hostCall("LvEvaDataConverter::setTransform", nullptr, "matrix");
    ConverterRecord call = callNamed("setTransform(matrix)");
    call.transform = transform;
    record(*this, std::move(call));
}

void LvEvaDataConverter::setTransform(const YxGeVector3d& displacement) {
    hostCall("LvEvaDataConverter::setTransform", nullptr, displacement.x, displacement.y, displacement.z);
    ConverterRecord call = callNamed("setTransform(vector)");
    call.vector = displacement;
    record(*this, std::move(call));
}

void LvEvaDataConverter::addSpecialInfo(YxDbObjectId id, YxGeMatrix3d transform, int segIndex, double radius) {
    hostCall("LvEvaDataConverter::addSpecialInfo", nullptr, HostAccess::peek(id));
    ConverterRecord call = callNamed("addSpecialInfo");
    call.id = id;
    call.transform = transform;
    call.number = segIndex;
    call.value1 = radius;
    record(*this, std::move(call));
}

void LvEvaDataConverter::addObjectOffset() {
    hostCall("LvEvaDataConverter::addObjectOffset", nullptr);
    record(*this, callNamed("addObjectOffset"));
}

void LvEvaDataConverter::addObjectOffset(YxDbObjectId id, YxGeVector3d offset) {
    hostCall("LvEvaDataConverter::addObjectOffset", nullptr, HostAccess::peek(id), offset.x, offset.y, offset.z);
    ConverterRecord call = callNamed("addObjectOffset(id)");
    call.id = id;
    call.vector = offset;
    record(*this, std::move(call));
}

void LvEvaDataConverter::evaluate() {
    hostCall("LvEvaDataConverter::evaluate", nullptr);
    record(*this, callNamed("evaluate"));
    if (holdfast::hostState().staticEvaluator)
        holdfast::hostState().staticEvaluator(*this);
}

void LvEvaDataConverter::collectInfo() {
    hostCall("LvEvaDataConverter::collectInfo", nullptr);
    record(*this, callNamed("collectInfo"));
}

void LvEvaDataConverter::beginStep() {
    hostCall("LvEvaDataConverter::beginStep", nullptr);
    record(*this, callNamed("beginStep"));
}

bool LvEvaDataConverter::hasAssocConstraint(YxDbObjectId id) {
    if (hostCall("LvEvaDataConverter::hasAssocConstraint", HostAccess::peek(id)))
        return false;
    return holdfast::groupOf(id).isValid();
}

bool LvEvaDataConverter::polyLineHasAssocConstraintIndex(YxDbObjectId polyline, YxArray<int>& indices) {
    indices.setLogicalLength(0);
    const YxDbObject* object = HostAccess::peek(polyline);
    if (hostCall("LvEvaDataConverter::polyLineHasAssocConstraintIndex", object))
        return false;
    if (object == nullptr || !object->isKindOf(YxDbPolyline::desc()))
        return false;
    const std::vector<int> vertices = holdfast::constrainedVertices(static_cast<const YxDbPolyline&>(*object));
    for (const int vertex : vertices)
        indices.append(vertex + 1);
    return holdfast::groupOf(polyline).isValid();
}

void LvEvaDataConverterLengthenEdit::collectAndUpdateInfo(const YxDbObjectId& id, EntType type, bool isStart,
                                                          const YxGeVector3d& offset) {
    hostCall("LvEvaDataConverterLengthenEdit::collectAndUpdateInfo", HostAccess::peek(id), int(type), isStart);
    ConverterRecord call = callNamed("collectAndUpdateInfo");
    call.id = id;
    call.entType = type;
    call.isStart = isStart;
    call.vector = offset;
    record(*this, std::move(call));
}

void LvEvaDataConverterPropertiesEdit::collectAndUpdateInfo(const YxDbObjectId& id, EntType type, int changeKind,
                                                            const YxGeVector3d& delta, double value1, double value2,
                                                            const YxGeMatrix3d& transform) {
    hostCall("LvEvaDataConverterPropertiesEdit::collectAndUpdateInfo", HostAccess::peek(id), int(type), changeKind);
    ConverterRecord call = callNamed("collectAndUpdateInfo");
    call.id = id;
    call.entType = type;
    call.number = changeKind;
    call.vector = delta;
    call.value1 = value1;
    call.value2 = value2;
    call.transform = transform;
    record(*this, std::move(call));
}

LvEvaDataConverter* LvEvaDataConverterFactory::createInstance(LvEditorType type) {
    if (hostCall("LvEvaDataConverterFactory::createInstance", nullptr, static_cast<int>(type)))
        return nullptr;
    std::unique_ptr<LvEvaDataConverter> converter;
    switch (type) {
        case kStretchEditor:
        case kStaticEvaluateEditor:
        case kAlignEditor:
            converter = std::make_unique<LvEvaDataConverter>();
            break;
        case kLengthenEditor:
            converter = std::make_unique<LvEvaDataConverterLengthenEdit>();
            break;
        case kPropertiesEditor:
            converter = std::make_unique<LvEvaDataConverterPropertiesEdit>();
            break;
        default:
            return nullptr;
    }
    HostAccess::records(*converter).editorType = type;
    return converter.release();  // the caller stores it in a header, which deletes it
}
