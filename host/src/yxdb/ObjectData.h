#pragma once

#include <cstddef>
#include <memory>
#include <unordered_set>
#include <vector>

#include <yxbase/YxGeVector3d.h>
#include <yxdb/YxDbObject.h>

#include "host/model/state/HostChanges.h"
#include "host/src/yxdb/ReactorList.h"

namespace holdfast {
struct HostState;
}

/// What an id names: a place in a database that keeps its object.
class YxDbStub {
public:
    YxDbDatabase* database = nullptr;
    std::size_t handle = 0;  ///< in the order in which objects were added
    std::unique_ptr<YxDbObject> object;
};

/// What every database object carries behind its declared members.
struct YxDbObjectData {
    YxDbStub* stub = nullptr;  ///< null for a copy
    holdfast::ReactorList reactors;
    bool erased = false;
    std::vector<char> openModes;  ///< one entry for each reference, the latest last
    int writeOpens = 0;
    bool givenBack = false;                             ///< was open, and is no more
    std::unordered_set<YxDbEntity*>* ledger = nullptr;  ///< of the header that adopted the copy
    holdfast::HostState* home = nullptr;                ///< which counts the copy among those alive
};

struct YxDbDatabaseData {
    std::vector<std::unique_ptr<YxDbStub>> stubs;  ///< by handle, from 1
    std::vector<YxDbStub*> groups;                 ///< those of constraint groups
    YxGeVector3d ucsX, ucsY, paperUcsX, paperUcsY;
    bool tilemode = true;
    holdfast::HostChanges* changes = nullptr;  ///< whom changes are told; null: nobody
    int opens = 0;                             ///< references that hold its objects open
    bool isClosing = false;                    ///< only now may resident objects be freed
    YxDbObjectId modelSpace, paperSpace, currentSpace;
};
