#include "commands/break/CurveCut.h"

#include "core/CurveEnds.h"
#include "core/SplineIndices.h"

#include <YxDbConstraints/YxDbAssocGeomDependency.h>
#include <yxdb/YxDbArc.h>
#include <yxdb/YxDbCircle.h>
#include <yxdb/YxDbEllipse.h>
#include <yxdb/YxDbLine.h>
#include <yxdb/YxDbRay.h>
#include <yxdb/YxDbSpline.h>
#include <yxdb/YxDbXline.h>

namespace holdfast::module {
namespace {

// KEEP: appended whole, without a look at what was collected before (BreakCurve.AppendsTheWholeListBesideItself).
void loseAll(const CurveCut& cut) {
    cut.collected.append(cut.allConstraints);
}

template <class T>
const T* as(const YxDbEntity& entity) {
    return entity.isKindOf(T::desc()) ? static_cast<const T*>(&entity) : nullptr;
}

void cutLine(const CurveCut& cut) {
    const YxDbLine* piece = as<YxDbLine>(cut.piece);
    if (piece == nullptr)
        return loseAll(cut);
    Collected collected(cut.collected);
    const auto& uncut = static_cast<const YxDbLine&>(cut.uncut);
    judgeLine(cut.survey, cut.dependencies, lineEnds(uncut), lineEnds(*piece), collected);
}

void cutRay(const CurveCut& cut) {
    const YxDbRay* piece = as<YxDbRay>(cut.piece);
    if (piece == nullptr)
        return loseAll(cut);
    Collected collected(cut.collected);
    const auto& uncut = static_cast<const YxDbRay&>(cut.uncut);
    judgeRay(cut.survey, cut.dependencies, uncut.basePoint(), piece->basePoint(), collected);
}

void cutXline(const CurveCut& cut) {
    if (as<YxDbXline>(cut.piece) == nullptr)
        loseAll(cut);
}

void cutCircle(const CurveCut& cut) {
    if (as<YxDbCircle>(cut.piece) == nullptr)
        loseAll(cut);
}

void judgeArcEnds(const CurveCut& cut, const YxDbCurve& piece) {
    Collected collected(cut.collected);
    const auto& uncut = static_cast<const YxDbCurve&>(cut.uncut);
    judgeArc(cut.survey, cut.dependencies, curveEnds(uncut), curveEnds(piece), collected);
}

void cutArc(const CurveCut& cut) {
    if (const YxDbArc* piece = as<YxDbArc>(cut.piece))
        judgeArcEnds(cut, *piece);
}

void cutEllipse(const CurveCut& cut) {
    if (static_cast<const YxDbEllipse&>(cut.uncut).isClosed()) {
        const YxDbCurve* piece = as<YxDbCurve>(cut.piece);
        if (piece == nullptr || !piece->isClosed())
            loseAll(cut);
        return;
    }
    if (const YxDbEllipse* piece = as<YxDbEllipse>(cut.piece))
        judgeArcEnds(cut, *piece);
}

void cutSpline(const CurveCut& cut) {
    const auto& uncut = static_cast<const YxDbSpline&>(cut.uncut);
    const YxDbSpline* piece = as<YxDbSpline>(cut.piece);
    if (piece == nullptr || piece->numControlPoints() != uncut.numControlPoints())
        return loseAll(cut);
    Collected collected(cut.collected);
    judgeSpline(cut.survey, cut.dependencies, uncut, *piece, collected);
}

struct ClassRule {
    YxRxClass* (*uncutClass)();
    void (*judge)(const CurveCut& cut);
};

// The first class that matches wins; of any other class nothing is collected.
// clang-format off
constexpr ClassRule kClassRules[] = {
    {YxDbLine::desc,    cutLine},
    {YxDbRay::desc,     cutRay},
    {YxDbXline::desc,   cutXline},
    {YxDbCircle::desc,  cutCircle},
    {YxDbArc::desc,     cutArc},
    {YxDbEllipse::desc, cutEllipse},
    {YxDbSpline::desc,  cutSpline},
};
// clang-format on

bool samePoint(const YxDbSpline& before, const YxDbSpline& after, int index) {
    YxGePoint3d pointBefore;
    YxGePoint3d pointAfter;
    before.getControlPointAt(index, pointBefore);
    after.getControlPointAt(index, pointAfter);
    return pointBefore.isEqualTo(pointAfter);
}

}  // namespace

void judgeCut(const CurveCut& cut) {
    for (const ClassRule& rule : kClassRules) {
        if (cut.uncut.isKindOf(rule.uncutClass()))
            return rule.judge(cut);
    }
}

void judgeSpline(GroupSurvey& survey, const Dependencies& dependencies, const YxDbSpline& before,
                 const YxDbSpline& after, Collected& collected) {
    YxArray<int> indices;
    collectWhere(survey, dependencies, collected, [&](const auto& dependency, const auto& constraint) {
        listControlPoints(survey, dependency, constraint, indices);
        for (const int index : indices) {
            if (!samePoint(before, after, index))
                return true;
        }
        return false;
    });
}

}  // namespace holdfast::module
