#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <unordered_set>

#include <YxDbConstraints/LvEvaDataConverter.h>
#include <yxdb/YxDbDatabase.h>

class AssocConstraintHeader;
class YxDbObject;

namespace holdfast {

class HostObserver;

/// What stands behind YxDbAssocManager::evaluateTopLevelNetwork. Answers whether every group could be solved.
using Evaluator = std::function<bool(YxDbDatabase&)>;

/// What one host process knows besides its database.
///
/// The platform's operations name no process, so each thread has a current one, which they mean. One thread at a time
/// uses a state; it may be another one later.
struct HostState {
    HostState() = default;
    HostState(const HostState&) = delete;
    HostState& operator=(const HostState&) = delete;
    ~HostState();

    YxDbDatabase* workingDatabase = nullptr;
    bool servicesUp = true;                                    ///< yxdbHostApplicationServices, service 3
    bool constraintServiceUp = true;                           ///< YxDbConstraintDataProviderLv::isSrvInit
    std::function<void(LvEvaDataConverter&)> staticEvaluator;  ///< what stands behind a converter's evaluate()
    AssocConstraintHeader* headerOfNullGroup = nullptr;        ///< most hosts have none
    Evaluator evaluator;                                       ///< empty: statuses are reset, nothing is solved
    HostObserver* observer = nullptr;                          ///< who listens; null: nobody
    std::unordered_set<const YxDbObject*> copies;              ///< objects alive that no database owns
    std::unordered_set<LvEvaDataConverter*> converters;        ///< converters alive

    /// The object belongs to no database from now on. It may outlive the state, and die on another thread's watch.
    void enter(YxDbObject& copy);
    static void leave(YxDbObject& copy);
    void enter(LvEvaDataConverter& converter);
    static void leave(LvEvaDataConverter& converter);

    /// The process is over: the state forgets everything, and no thread goes back to it.
    void end();
    bool isOver() const { return m_isOver; }

private:
    friend class CurrentHost;
    std::atomic<bool> m_isOver = false;
};

/// The state of this thread's current process; without a process, one that is the thread's own. Constant time: an
/// access to a variable of the thread.
HostState& hostState();

/// Which state is current on this thread.
class CurrentHost {
public:
    /// Null: no process.
    static std::shared_ptr<HostState> get();
    /// The state of a process that is over stands for no process.
    static void set(std::shared_ptr<HostState> state);
    static bool is(const HostState& state);
};

}  // namespace holdfast
