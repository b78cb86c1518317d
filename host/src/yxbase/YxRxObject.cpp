#include <yxbase/YxRxObject.h>

#include "host/model/state/ProtocolExtensions.h"

YxRxObject::YxRxObject() = default;
YxRxObject::YxRxObject(const YxRxObject&) = default;
YxRxObject& YxRxObject::operator=(const YxRxObject&) = default;
YxRxObject::~YxRxObject() = default;

YxRxClass* YxRxObject::desc() {
    static YxRxClass description("YxRxObject", nullptr);
    return &description;
}

YxRxClass* YxRxObject::isA() const {
    return desc();
}

bool YxRxObject::isKindOf(const YxRxClass* wanted) const {
    return isA()->isDerivedFrom(wanted);
}

YxRxObject* YxRxObject::queryX(const YxRxClass* wanted) const {
    // The platform's query is const and answers an object that can be changed.
    return isKindOf(wanted) ? const_cast<YxRxObject*>(this) : holdfast::protocolExtension(isA(), wanted);
}

YxRxObject* YxRxObject::clone() const {
    return nullptr;
}

// Objects that live in no database are not counted: whoever made them deletes them.
void YxRxObject::referenceTaken() const {}
void YxRxObject::referenceReleased() const {}

void yxrxAddRef(const YxRxObject* object) {
    if (object != nullptr)
        object->referenceTaken();
}

void yxrxRelease(const YxRxObject* object) {
    if (object != nullptr)
        object->referenceReleased();
}
