#pragma once

class YxDbDatabase;
class YxDbAssocEvaluationCallback;

/// Runs the evaluation of a database's actions.
class YxDbAssocManager {
public:
    /// Evaluates every group that needs it; true when all of them could be solved.
    static bool evaluateTopLevelNetwork(YxDbDatabase* database, YxDbAssocEvaluationCallback* callback, int mode);
};
