#pragma once

#include <memory>

#include <YxDbConstraints/YxDbAssocDependency.h>
#include <YxDbConstraints/YxDbAssocPersSubentId.h>
#include <YxDbConstraints/YxDbSubentId.h>

/// A dependency on one part of an entity: its one edge, or a segment of a polyline.
class YxDbAssocGeomDependency : public YxDbAssocDependency {
    YX_DECLARE_CLASS();

public:
    unsigned int subentType() const;
    /// Points the dependency at another part. For a segment k of a polyline the persistent name is made anew from
    /// vertices k - 1 and k mod n; a vertex without an identifier gets a fresh one. Out of range: nothing changes.
    Yxrt::ErrorStatus setSubentity(const YxDbSubentId& subentity);
    /// May be null.
    const YxDbAssocPersSubentId* persistentSubentId() const;

private:
    friend struct holdfast::HostAccess;
    YxDbAssocGeomDependency() = default;

    unsigned int m_subentType = YxDb::kEdgeSubentType;
    std::unique_ptr<YxDbAssocPersSubentId> m_persistentId;
};
