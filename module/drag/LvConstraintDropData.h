#pragma once

#include "core/Export.h"

#include <yxbase/YxArray.h>
#include <yxbase/YxGeMatrix3d.h>
#include <yxdb/YxDbObjectId.h>

class AssocConstraintHeader;
class YxDbEntity;
class YxGiWorldDraw;

/// The one drag session of the process: grip drags, drag-and-drop, moves under a transform.
///
/// Calls:  init  ( addDataToWork  evaluate  draw )*  ( setFlag? confirm | cancel )
/// reset drops the session at any time without a word to the header. The header is borrowed from the data provider and
/// owns the clones that it is given. Unguarded: all calls come from the host's command thread.
class HOLDFAST_EXPORT LvConstraintDropData {
public:
    LvConstraintDropData() = delete;

    /// Starts a session on the group of the first constrained object: its header is emptied and its drag is active.
    /// Without a constrained object, a data provider or a header there is no session; the ids are kept all the same.
    static void init(const YxArray<YxDbObjectId>& ids);
    /// Hands the transform since the start of the drag over and marks the group changed. The first step of a session
    /// also hands over the constrained ids and clones of the polylines and of the free objects. False without a session
    /// and when none of the objects that open is constrained; the header is left as it was then.
    static bool addDataToWork(const YxGeMatrix3d& xform);
    /// Has the host evaluate its current database now, session or not.
    static void evaluate();
    /// Draws the preview: what the header has to draw, each entity once, and then the free objects' clones under the
    /// drag transform. True when an entity of the header's list was drawn.
    static bool draw(YxGiWorldDraw* worldDraw);
    /// Ends the session; the final evaluation is the host's.
    static void confirm();
    /// Ends the session with an evaluation of the geometry as it was.
    static void cancel();
    /// How the drag ended, for confirm: 1; 3 or -2; anything else.
    static void setFlag(int flag);
    static void reset();

    static int mFlag;
    static YxDbObjectId mGroupId;
    static YxArray<YxDbObjectId> mObjIdArr;  ///< the dragged objects as the host gave them
    static AssocConstraintHeader* mpAssocHeader;

protected:
    friend struct LvTestAccess;
    static void closeOpenedEnts(YxArray<YxDbEntity*>& entities);
    static void releaseCloneEnts(YxArray<YxDbEntity*>& clones);

private:
    struct Opened;
    struct Collected;

    static bool collect();
};
