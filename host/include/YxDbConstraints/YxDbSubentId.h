#pragma once

#include <yxdb/YxDbObjectId.h>

namespace YxDb {
enum SubentType : unsigned int { kNullSubentType = 0, kFaceSubentType = 1, kEdgeSubentType = 2, kVertexSubentType = 3 };
}

/// One part of an entity: its kind and its number, counted from 1. Default: the null part.
class YxDbSubentId {
public:
    YxDbSubentId() = default;
    YxDbSubentId(unsigned int type, int index) : m_type(type), m_index(index) {}

    unsigned int type() const { return m_type; }
    int index() const { return m_index; }
    friend bool operator==(const YxDbSubentId&, const YxDbSubentId&) = default;

private:
    unsigned int m_type = YxDb::kNullSubentType;
    int m_index = 0;
};

/// A part of a named entity.
class YxDbFullSubentPath {
public:
    YxDbFullSubentPath() = default;
    YxDbFullSubentPath(YxDbObjectId entity, YxDbSubentId subentity) : m_entity(entity), m_subentity(subentity) {}

    const YxDbObjectId& objectId() const { return m_entity; }
    const YxDbSubentId& subentId() const { return m_subentity; }
    friend bool operator==(const YxDbFullSubentPath&, const YxDbFullSubentPath&) = default;

private:
    YxDbObjectId m_entity;
    YxDbSubentId m_subentity;
};
