#include <YxDbConstraints/AssocConstraintHeader.h>

#include <unordered_set>
#include <utility>

#include <yxdb/YxDbEntity.h>

#include "host/model/state/HostAccess.h"
#include "host/model/state/HostCall.h"
#include "host/src/yxdb/ObjectData.h"

constinit thread_local bool AssocConstraintHeader::m_isForbidEvaStatic = false;

struct AssocConstraintHeader::Ledger {
    Ledger() = default;
    Ledger(const Ledger&) = delete;
    Ledger& operator=(const Ledger&) = delete;
    ~Ledger() { clear(); }
    void clear() {
        for (YxDbEntity* copy : std::exchange(copies, {})) {
            holdfast::HostAccess::data(*copy).ledger = nullptr;
            delete copy;
        }
    }

    std::unordered_set<YxDbEntity*> copies;
};

AssocConstraintHeader::AssocConstraintHeader() : m_ledger(std::make_unique<Ledger>()) {}

AssocConstraintHeader::~AssocConstraintHeader() {
    delete converter;
}

void AssocConstraintHeader::uninit() {
    holdfast::hostCall("AssocConstraintHeader::uninit", nullptr);
    editKind = 0;
    dragActive = rotateEvaluated = dropCollected = dropChanged = boxFlag = false;
    collectNeeded = true;
    boxMode = 0;
    delete converter;
    converter = nullptr;
    editedObjectIds.setLogicalLength(0);
    dropObjectIds.setLogicalLength(0);
    preEditEntities.clear();
    points.setLogicalLength(0);
    dragTransform.setToIdentity();
    staticTransform.setToIdentity();
    polylineEntities.setLogicalLength(0);
    polylineIndexLists.setLogicalLength(0);
    unconstrainedEntities.setLogicalLength(0);
    entitiesToDraw.setLogicalLength(0);
    m_ledger->clear();
}

void AssocConstraintHeader::adopt(YxDbEntity* copy) {
    if (copy == nullptr)
        return;
    auto*& ledger = holdfast::HostAccess::data(*copy).ledger;
    if (ledger != nullptr)  // of another header perhaps, which frees it no more
        ledger->erase(copy);
    ledger = &m_ledger->copies;
    ledger->insert(copy);
}

const std::unordered_set<YxDbEntity*>& holdfast::HostAccess::adopted(const AssocConstraintHeader& header) {
    return header.m_ledger->copies;
}
