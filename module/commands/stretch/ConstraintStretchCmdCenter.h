#pragma once

#include "core/Export.h"

#include <yxbase/YxArray.h>
#include <yxbase/YxGeMatrix3d.h>
#include <yxcore/ConstraintDynamicEdit.h>
#include <yxdb/YxDbObjectId.h>

class YxDbEntity;

/// How an entity changes that a plain translation does not describe. What a kind of entity does not set is zero, and
/// nothing reads it.
struct StretchSpecialInfo {
    YxDbObjectId objectId;
    YxGeMatrix3d xform;   ///< from the entity in the database to its source copy
    int segIndex = 0;     ///< polylines: the stretched index, taken as a segment's
    double radius = 0.0;  ///< arcs and arc segments of polylines: the radius of the source copy
};

/// Hands a STRETCH, which moves chosen grip points by one vector, to the evaluator step by step.
///
/// Calls:  init  setStartPnt  setSourceInfo  ( addDataToWork+ | addDataToStaticEvaluate )
/// Source entities and index lists are parallel to the ids of init. Sources are borrowed from the host, the header from
/// the data provider; serves one command.
class HOLDFAST_EXPORT ConstraintStretchCmdCenter : public ConstraintDynamicEdit {
public:
    // KEEP: the order of the virtual operations is the host's calling table (ExportedClasses.KeepTheirSlotOrder).
    ConstraintStretchCmdCenter() = default;
    ConstraintStretchCmdCenter(const ConstraintStretchCmdCenter&) = default;
    ConstraintStretchCmdCenter& operator=(const ConstraintStretchCmdCenter&) = default;
    ~ConstraintStretchCmdCenter() override;
    /// One step of the drag: fills header and converter and marks the group changed. Only the first step of a header
    /// writes edit kind, ids and start point. Nothing is written without group, header or constrained object, or when
    /// the lists are not equally long; a step without a converter ends after what the first step writes.
    void addDataToWork() override;

    /// Takes group, header and ids from the edited objects and sets the header back to its beginning.
    void init(const YxArray<YxDbObjectId>& ids);
    /// The stretch vector, the host's source copy of each object (YxDbEntity*) and the indices of its stretched grips.
    /// Finds the special entities.
    void setSourceInfo(const YxGeVector3d& displacement, const YxArray<void*>& sources,
                       const YxArray<YxArray<int>>& stretchedIndices);
    /// The base point of the stretch.
    void setStartPnt(YxGePoint3d point);
    /// Has the host evaluate all objects where they are, with a converter of its own.
    void addDataToStaticEvaluate();

protected:
    friend struct LvTestAccess;

    YxGeVector3d m_displacement;
    YxArray<YxArray<int>> m_stretchedIndices;
    YxArray<StretchSpecialInfo> m_specialInfos;
    YxGePoint3d m_startPoint;

private:
    struct StepLists;

    void addSpecialEntityInfo();
    void addXLineInfo(YxDbObjectId id, YxDbEntity* entity, YxDbEntity* source, YxArray<int> stretchedIndices);
    void addArcInfo(YxDbObjectId id, YxDbEntity* entity, YxDbEntity* source, YxArray<int> stretchedIndices);
    void addRayInfo(YxDbObjectId id, YxDbEntity* entity, YxDbEntity* source, YxArray<int> stretchedIndices);
    void addPolylineInfo(YxDbObjectId id, YxDbEntity* entity, YxDbEntity* source, YxArray<int> stretchedIndices);

    YxDbEntity* sourceAt(int index) const;
    bool listsMatch() const;
    StepLists sortObjects() const;
    bool startHeader(const StepLists& lists);
    void feedConverter(const StepLists& lists) const;
};
