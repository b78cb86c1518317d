#pragma once

#include "core/Export.h"
#include "evaluation/ConstraintStaticEditCmdCenter.h"

#include <yxbase/YxArray.h>
#include <yxdb/YxDbObjectId.h>

class YxDbPolyline;

/// Makes the geometry dependencies of one joined polyline follow its vertices into the polyline that JOIN makes.
///
/// Calls:  dealAssocPlineJoin | joinMainPolyline ( joinPolyline | joinLineArc )* dealAssocPlineJoin2
/// The first piece found that carries geometry dependencies is the only one whose vertex identifiers are kept. Runs
/// while the pieces still have their vertices and the result has its final ones. Owns nothing, serves one command.
class HOLDFAST_EXPORT ConstraintJoinCmdCenter : public ConstraintStaticEditCmdCenter {
public:
    ConstraintJoinCmdCenter() = default;
    ConstraintJoinCmdCenter(const ConstraintJoinCmdCenter&) = default;
    ConstraintJoinCmdCenter& operator=(const ConstraintJoinCmdCenter&) = default;
    ~ConstraintJoinCmdCenter() override;

    /// All at once, the pieces in the order of the result. False, and nothing moved, when a piece cannot be opened or
    /// none carries geometry dependencies. False as well when the result does not open as a polyline; the dependencies
    /// have left the piece then. A piece that is no entity throws YxError_NotThatKindOfClass before anything is moved.
    bool dealAssocPlineJoin(YxArray<YxDbObjectId> pieces, YxDbObjectId result);

    /// The first step: the polyline that becomes the result.
    void joinMainPolyline(YxDbObjectId id);
    /// A polyline is joined. first: it is put before the result so far; second: it touches with its start.
    void joinPolyline(const YxDbPolyline* result, const YxDbPolyline* piece, bool first, bool second);
    /// A line or an arc is joined; behind: it is appended.
    void joinLineArc(bool behind);
    /// The last step: writes the identifiers into the result.
    void dealAssocPlineJoin2();

protected:
    friend struct LvTestAccess;
    bool findSource(const YxArray<YxDbObjectId>& pieces, YxDbObjectId& source);
    bool liesReversed(const YxDbPolyline& source, const YxDbPolyline& result) const;

    YxDbObjectId m_mainPolyline;
    int m_vertexShift = 0;  ///< how many vertices of the result come before the dependency-carrying piece
    bool m_hasGeomDependency = false;
    bool m_reversed = false;
    YxArray<int> m_savedIdentifiers;  ///< of the dependency-carrying piece, by vertex index
};
