#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/module/core/PlainSteps.h"

class YxDbPolyline;

namespace holdfast::plain {

/// The break of a polyline once more, step by step, without any index. Takes the calls of a break centre.
class PlainPolylineBreak {
public:
    PlainPolylineBreak(double startParam, double endParam) : m_startParam(startParam), m_endParam(endParam) {}

    void setFirstCurve(const YxDbObjectId& uncut, const YxDbEntity* piece);
    void setSecondCurve(const YxDbEntity* piece);
    int deleteConstraint();

private:
    struct Record {
        Ends ends;
        int startVertexId = 0;
        int endVertexId = 0;
        YxDbAssocGeomDependency* dependency = nullptr;
    };
    void sort(YxDbAssocGeomDependency& dependency, const YxDbPolyline& uncut, const YxDbPolyline& piece);
    void writeIdentifiers(YxDbPolyline& piece) const;
    void loosen(const YxDbAssocGeomDependency& dependency, const YxDbPolyline& piece);

    double m_startParam;
    double m_endParam;
    int m_case = 0;
    int m_lastVertexId = 0;
    std::vector<int> m_vertexIds;
    std::map<int, int> m_touched;
    std::vector<Record> m_staying;
    std::vector<Record> m_moved;
    Constraints m_collected;
    YxDbAssoc2dConstraintGroup* m_group = nullptr;
};

}  // namespace holdfast::plain
