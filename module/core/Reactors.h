#pragma once

#include <yxbase/YxArray.h>
#include <yxdb/YxDbObjectId.h>

class YxDbAssocGeomDependency;
class YxDbObject;

namespace holdfast::module {

/// The ids of an object's persistent reactors in the object's own order; none without the host's database service.
YxArray<YxDbObjectId> persistentReactorIds(const YxDbObject* object);

/// True when the id names a geometry dependency that can be opened.
bool isGeomDependency(const YxDbObjectId& id);

/// The geometry dependencies among an object's reactors, in their order, repeated where they repeat. The pointers stay
/// usable while the host command runs.
void listGeomDependencies(const YxDbObject& object, YxArray<YxDbAssocGeomDependency*>& dependencies);

}  // namespace holdfast::module
