#include <yxdb/YxDbObjectId.h>

#include <functional>

#include "host/src/yxdb/ObjectData.h"

YxDbDatabase* YxDbObjectId::database() const {
    return m_stub == nullptr ? nullptr : m_stub->database;
}

bool YxDbObjectId::precedes(const YxDbObjectId& other) const {
    if (m_stub == nullptr || other.m_stub == nullptr)
        return m_stub == nullptr && other.m_stub != nullptr;
    if (m_stub->handle != other.m_stub->handle)
        return m_stub->handle < other.m_stub->handle;
    return std::less<>()(m_stub, other.m_stub);
}
