#pragma once

#include <memory>

#include <yxbase/YxArray.h>
#include <yxbase/YxGeMatrix3d.h>
#include <yxdb/YxDbObjectId.h>

struct LvEvaDataConverterData;

/// Which editing command a converter serves.
enum LvEditorType : int {
    kStretchEditor = 2,
    kStaticEvaluateEditor = 3,
    kAlignEditor = 19,
    kLengthenEditor = 21,
    kPropertiesEditor = 31
};

/// Takes what an edit hands over to the evaluator.
class LvEvaDataConverter {
public:
    LvEvaDataConverter();
    LvEvaDataConverter(const LvEvaDataConverter&) = delete;
    LvEvaDataConverter& operator=(const LvEvaDataConverter&) = delete;
    virtual ~LvEvaDataConverter();

    virtual void setObjectIds(const YxArray<YxDbObjectId>& ids);
    virtual void resetData();
    virtual void resetData(const YxArray<YxArray<int>>& indexLists);
    virtual void setTransform(const YxGeMatrix3d& transform);
    virtual void setTransform(const YxGeVector3d& displacement);
    virtual void addSpecialInfo(YxDbObjectId id, YxGeMatrix3d transform, int segIndex, double radius);
    virtual void addObjectOffset();
    virtual void addObjectOffset(YxDbObjectId id, YxGeVector3d offset);
    virtual void evaluate();
    virtual void collectInfo();
    virtual void beginStep();

    /// True when the entity has constrained geometry in a constraint group.
    static bool hasAssocConstraint(YxDbObjectId id);
    /// True when the polyline has constrained geometry; fills in the 1-based vertex numbers of the ends of all
    /// constrained segments, ascending, once each.
    static bool polyLineHasAssocConstraintIndex(YxDbObjectId polyline, YxArray<int>& indices);

private:
    friend struct holdfast::HostAccess;
    std::unique_ptr<LvEvaDataConverterData> m_data;
};

/// What converters of edits on single entities have in common.
class LvEvaDataConverterGripEdit : public LvEvaDataConverter {
public:
    enum EntType : int {
        kLine = 1,
        kPolyline = 2,
        kRay = 3,
        kXline = 4,
        kCircle = 5,
        kArc = 6,
        kEllipse = 7,
        kPoint = 8,
        kText = 9,
        kMText = 10,
        kSpline = 11
    };
};

class LvEvaDataConverterLengthenEdit : public LvEvaDataConverterGripEdit {
public:
    /// One end of a curve that moved by an offset.
    void collectAndUpdateInfo(const YxDbObjectId& id, EntType type, bool isStart, const YxGeVector3d& offset);
};

class LvEvaDataConverterPropertiesEdit : public LvEvaDataConverterGripEdit {
public:
    /// One changed property of an entity.
    void collectAndUpdateInfo(const YxDbObjectId& id, EntType type, int changeKind, const YxGeVector3d& delta,
                              double value1, double value2, const YxGeMatrix3d& transform);
};

class LvEvaDataConverterFactory {
public:
    /// A new converter for the editing command, or null for a number that is none.
    static LvEvaDataConverter* createInstance(LvEditorType type);
};
