#pragma once

#include <vector>

#include "commands/fillet/ConstraintFilletCmdCenter.h"
#include "tests/module/core/PlainSteps.h"

class YxDbPolyline;

namespace holdfast::plain {

/// The fillets on polylines once more, step by step, without any index or clone. Takes the calls of a fillet centre.
class PlainPolylineFillet {
public:
    using TrimMode = ConstraintFilletCmdCenter::PolylineTrimMode;

    void setSelfPolyLineDate(const YxDbEntity* polyline, unsigned int first, unsigned int second, TrimMode mode,
                             bool sharp);
    void setSelfPolyLineConstraint(const YxDbEntity* polyline);
    void setOnePolyLineDate(const YxDbPolyline* polyline) { m_first = recordsOf(*polyline); }
    void setOnePolyLineConstraint(YxDbPolyline* polyline, bool dropBefore, unsigned int segment, const YxGePoint3d&) {
        cutBack(m_first, *polyline, dropBefore, static_cast<int>(segment));
    }
    void setReversePolyLineConstraint(YxDbPolyline* polyline);
    void setTwoPolyLineDate(const YxDbPolyline* first, const YxDbPolyline* second);
    void setFirstPolyLineConstraint(YxDbPolyline* polyline, bool dropBefore, unsigned int segment, const YxGePoint3d&) {
        cutBack(m_first, *polyline, dropBefore, static_cast<int>(segment));
    }
    void setSecondPolyLineConstraint(YxDbPolyline* polyline, bool dropBefore, unsigned int segment,
                                     const YxGePoint3d&) {
        cutBack(m_second, *polyline, dropBefore, static_cast<int>(segment));
    }
    void setTwoPolyLineCloneDate(const YxDbPolyline* first, const YxDbPolyline* second);
    void setTwoPolyLineConstraint(YxDbPolyline* joined, bool reverseFirst, const YxDbPolyline* second,
                                  bool keepSecondDirection);
    int deleteConstraint();

private:
    struct Record {
        Ends ends;
        int startVertexId = 0;
        int endVertexId = 0;
        Points points;
        YxDbAssocGeomDependency* dependency = nullptr;
    };
    using Records = std::vector<Record>;
    struct Vertex {
        YxGePoint3d point;
        int identifier = 0;
    };
    using Vertices = std::vector<Vertex>;

    Records recordsOf(const YxDbPolyline& polyline);
    void remap(YxDbPolyline& polyline, const Records& kept);
    void cutBack(Records& records, const YxDbPolyline& polyline, bool dropBefore, int segment);
    static void turn(Vertices& vertices, Records& records);

    int m_firstVertex = 0;
    int m_secondVertex = 0;
    int m_mode = 0;
    bool m_sharp = false;
    Records m_first;
    Records m_second;
    Vertices m_firstVertices;
    Vertices m_secondVertices;
    Constraints m_collected;
    YxDbAssoc2dConstraintGroup* m_group = nullptr;
};

}  // namespace holdfast::plain
