#pragma once

#include <yxdb/YxDbObjectId.h>

class AssocConstraintHeader;

/// Finds constraint groups and their evaluation headers.
class YxDbConstraintDataProviderLv {
public:
    virtual ~YxDbConstraintDataProviderLv();

    /// Whether the constraint service runs.
    static bool isSrvInit();
    /// The one instance, or null.
    static YxDbConstraintDataProviderLv* getConstraintDataProviderLvInstance();

    /// The constraint group that holds the entity's constrained geometry, or the null id.
    virtual YxDbObjectId getAssocCons2DGroup(const YxDbObjectId& entity) const = 0;
    /// The header of a group, or null. The host owns it.
    virtual AssocConstraintHeader* getAssocConstraintHeader(const YxDbObjectId& group) const = 0;
};
