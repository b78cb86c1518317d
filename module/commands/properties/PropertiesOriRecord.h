#pragma once

#include <YxDbConstraints/LvEvaDataConverter.h>

class YxDbEntity;

/// What a changed property amounts to for one entity, as the evaluator takes it.
struct PropertiesOriRecord {
    int changeKind = 0;  ///< by entity type; of polylines and splines the vertex number
    YxGeVector3d delta;
    double value1 = 0.0;
    double value2 = 0.0;
    YxGeMatrix3d transform;
    YxDbEntity* preEditCopy = nullptr;  ///< the centre's until it is handed over, then the header's
    LvEvaDataConverterGripEdit::EntType entType = LvEvaDataConverterGripEdit::kLine;
};
