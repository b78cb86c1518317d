#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/model/HostFaults.h"
#include "host/model/HostJournal.h"
#include "host/model/state/HostAccess.h"
#include "host/model/state/HostState.h"

namespace holdfast {

/// One run of the host: its services, its working database, and what watches them.
///
/// There may be many. The platform's operations name none of them: they mean the one that is current on the thread
/// that calls. A process is current where it is made, until another one is or it ends, when the one before it is
/// current again; a Scope makes it current wherever it is needed. One thread at a time uses a process. Before it moves
/// to another thread, the first one lets it go: it is made inside a Scope that keeps the former one.
class HostProcess {
public:
    /// While one lives, a process is current on this thread; then the one is that was so before, unless it has ended.
    /// Constant time.
    class Scope {
    public:
        explicit Scope(const HostProcess& process);
        /// Makes no other process current now, but takes back at its end what was made current meanwhile.
        Scope();
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        std::shared_ptr<HostState> m_former;
    };

    HostProcess();
    /// Copies of entities may outlive their process; what it made current and watched is over.
    ~HostProcess();
    HostProcess(const HostProcess&) = delete;
    HostProcess& operator=(const HostProcess&) = delete;

    YxDbDatabase& database() const { return *m_database; }
    HostFaults& faults() { return m_faults; }
    HostJournal& journal() { return m_journal; }
    const HostJournal& journal() const { return m_journal; }

    /// Watching costs time: journal, faults and misuse are seen only while it is on.
    void watch(bool on);
    bool isWatched() const;
    /// What callers did that a real host would punish.
    const std::vector<std::string>& misuses() const { return m_misuses; }

    /// The name under which the journal shows an object.
    void name(const YxRxObject* object, std::string name);
    std::string nameOf(const YxRxObject* object) const;

    void setServicesUp(bool up) { m_state->servicesUp = up; }
    void setConstraintServiceUp(bool up) { m_state->constraintServiceUp = up; }
    void setEvaluator(Evaluator evaluator) { m_state->evaluator = std::move(evaluator); }
    /// What stands behind a converter's evaluate().
    void setStaticEvaluator(std::function<void(LvEvaDataConverter&)> evaluator) {
        m_state->staticEvaluator = std::move(evaluator);
    }
    void setWorkingDatabase(YxDbDatabase* database) { m_state->workingDatabase = database; }
    void setUcs(const YxGeVector3d& x, const YxGeVector3d& y);
    void setPaperUcs(const YxGeVector3d& x, const YxGeVector3d& y);
    /// Paper space: tile mode off and a current space other than the model space.
    void setPaperSpace(bool paper);
    void setTilemode(bool on);

    /// What the host does when a command ends: every header goes back to its empty state with its converter and
    /// copies, and converters that nobody kept are freed.
    void endOfCommand();

private:
    class Watch;

    std::shared_ptr<HostState> m_former;  // on the thread where this one was made
    std::shared_ptr<HostState> m_state;
    std::unique_ptr<YxDbDatabase> m_database;
    HostFaults m_faults;
    HostJournal m_journal;
    std::vector<std::string> m_misuses;
    std::unordered_map<const YxRxObject*, std::string> m_names;
    std::unique_ptr<Watch> m_watch;
};

}  // namespace holdfast
