#pragma once

#include <memory>

#include <YxDbConstraints/YxConstrainedGeometry.h>
#include <YxDbConstraints/YxDbAssocAction.h>
#include <YxDbConstraints/YxDbAssocGeomDependency.h>
#include <YxDbConstraints/YxGeomConstraint.h>

struct YxDbConstraintGroupData;

/// The constraints of one plane and the geometries that they hold on.
class YxDbAssoc2dConstraintGroup : public YxDbAssocAction {
    YX_DECLARE_CLASS();

public:
    ~YxDbAssoc2dConstraintGroup() override;

    /// The geometry on a dependency, or null: itself with a null type, else its implicit point of that type and index.
    Yxrt::ErrorStatus getConstrainedGeometry(const YxDbAssocGeomDependency* dependency,
                                             YxConstrainedGeometry*& geometry, YxDb::ImplicitPointType* type = nullptr,
                                             int index = -1, bool create = false) const;
    /// The geometry on a part of an entity, or null.
    Yxrt::ErrorStatus getConstrainedGeometry(const YxDbFullSubentPath& path, YxConstrainedGeometry*& geometry,
                                             bool create = false) const;
    /// All geometries in the group's order. Fills the array from its start.
    void getConstrainedGeometries(YxArray<YxConstrainedGeometry*>& geometries) const;
    /// The node of that number, or null.
    YxGraphNode* getGroupNodePtr(unsigned int nodeId) const;
    /// Takes a constraint out of the group and of its geometries; a composite takes its members along. The group must
    /// be open for write.
    Yxrt::ErrorStatus deleteConstraint(YxGeomConstraint* constraint);

private:
    friend struct holdfast::HostAccess;
    YxDbAssoc2dConstraintGroup();

    std::unique_ptr<YxDbConstraintGroupData> m_groupData;
};
