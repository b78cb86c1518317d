#include <yxbase/YxRxClass.h>

YxRxClass::YxRxClass(const char* name, const YxRxClass* parent) : m_name(name), m_parent(parent) {}

const char* YxRxClass::name() const {
    return m_name;
}

const YxRxClass* YxRxClass::parent() const {
    return m_parent;
}

bool YxRxClass::isDerivedFrom(const YxRxClass* other) const {
    if (other == nullptr)
        return false;
    const YxRxClass* level = this;
    while (level != nullptr && level != other)
        level = level->m_parent;
    return level != nullptr;
}
