#pragma once

#include <map>
#include <memory>

#include <YxDbConstraints/LvEvaDataConverter.h>
#include <yxbase/YxArray.h>
#include <yxbase/YxGeMatrix3d.h>
#include <yxdb/YxDbObjectId.h>

class YxDbEntity;

/// What the evaluator is told about an edit, one for each constraint group. Lists and the map never own the entities
/// that they name: copies handed over are entered in a ledger with adopt(), and uninit() or the destructor frees them
/// once.
class AssocConstraintHeader {
public:
    AssocConstraintHeader();
    AssocConstraintHeader(const AssocConstraintHeader&) = delete;
    AssocConstraintHeader& operator=(const AssocConstraintHeader&) = delete;
    ~AssocConstraintHeader();

    /// Back to the initial values; the converter and all adopted copies are freed.
    void uninit();
    /// Takes over a copy; null is ignored, twice is once.
    void adopt(YxDbEntity* copy);

    int editKind = 0;
    YxArray<YxDbObjectId> editedObjectIds;
    bool dragActive = false;
    bool rotateEvaluated = false;
    bool collectNeeded = true;
    bool dropCollected = false;
    bool dropChanged = false;
    LvEvaDataConverter* converter = nullptr;  ///< owned
    YxArray<YxDbObjectId> dropObjectIds;      ///< the polylines of a stretch or a drag
    std::map<YxDbObjectId, YxDbEntity*> preEditEntities;
    YxArray<YxGePoint3d> points;
    YxGeMatrix3d dragTransform;
    YxGeMatrix3d staticTransform;
    YxArray<YxDbEntity*> polylineEntities;     ///< parallel to dropObjectIds
    YxArray<YxArray<int>> polylineIndexLists;  ///< parallel to dropObjectIds
    YxArray<YxDbEntity*> unconstrainedEntities;
    YxArray<YxDbEntity*> entitiesToDraw;
    bool boxFlag = false;
    int boxMode = 0;

    /// The next network evaluation solves nothing. Class-wide, of the thread that runs the command; not touched by
    /// uninit().
    static constinit thread_local bool m_isForbidEvaStatic;

private:
    friend struct holdfast::HostAccess;
    struct Ledger;
    std::unique_ptr<Ledger> m_ledger;
};
