#pragma once

#include <yxbase/YxArray.h>
#include <yxdb/YxDbObjectId.h>

class YxDbEntity;

/// Constraint operations on whole entities.
class YxConstraintModelHelp {
public:
    YxConstraintModelHelp();
    YxConstraintModelHelp(const YxConstraintModelHelp&) = delete;
    YxConstraintModelHelp& operator=(const YxConstraintModelHelp&) = delete;
    ~YxConstraintModelHelp();

    /// Deletes every top-level, non-internal constraint that touches the entities; returns how many.
    int deleteConstraints(const YxArray<YxDbObjectId>& entities);
    /// Whether the entity has constrained geometry of a kind.
    bool checkEntHasGeomType(const YxDbEntity* entity, unsigned int type) const;
};
