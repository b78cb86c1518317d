#pragma once

#include <optional>
#include <string>
#include <vector>

#include <YxDbConstraints/LvEvaDataConverter.h>
#include <yxbase/YxArray.h>
#include <yxbase/YxGeMatrix3d.h>
#include <yxdb/YxDbObjectId.h>

namespace holdfast {

/// One call of a converter, deep-copied; only what the operation takes is set.
struct ConverterRecord {
    std::string operation;
    YxArray<YxDbObjectId> ids;
    YxArray<YxArray<int>> indexLists;
    YxDbObjectId id;
    YxGeMatrix3d transform;
    YxGeVector3d vector;
    int number = 0;  ///< a segment index or a kind of change
    int entType = 0;
    bool isStart = false;
    double value1 = 0.0;  ///< also a radius
    double value2 = 0.0;
};

struct HostState;

struct ConverterRecords {
    LvEditorType editorType{};
    std::vector<ConverterRecord> calls;
    bool dirty = false;         ///< fed since the last evaluation
    HostState* home = nullptr;  ///< which counts the converter among those alive
};

}  // namespace holdfast
