#pragma once

#include "tests/module/core/PlainCurves.h"

namespace holdfast::plain {

/// The fillet of two curves once more, step by step. Takes the calls of a fillet centre.
class PlainCurveFillet {
public:
    void setEntityInfo(const YxDbEntity* first, const YxDbEntity* second);
    int deleteConstraint();

private:
    /// One constrained curve before the fillet.
    struct Before {
        const YxDbEntity* curve = nullptr;
        bool isClosed = false;
        Points ends;
        std::vector<YxGePoint3d> controlPoints;
        std::vector<std::vector<int>> indices;  // by dependency and constraint
    };
    Before stateOf(const YxDbEntity& curve) const;
    void judge(const Before& before);
    void judgeEllipse(const Before& before, const Constraints& all);
    void judgeSpline(const Before& before, const Constraints& all);

    YxDbAssoc2dConstraintGroup* m_group = nullptr;
    std::vector<Before> m_before;
    Constraints m_collected;
};

}  // namespace holdfast::plain
