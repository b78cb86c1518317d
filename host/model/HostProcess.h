#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/model/HostAccess.h"
#include "host/model/HostFaults.h"
#include "host/model/HostJournal.h"

namespace holdfast {

/// One run of the host: its services, its working database, and what watches them. There is one at a time; its
/// destructor puts the process back to how it was.
class HostProcess {
public:
    HostProcess();
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

    void setServicesUp(bool up) { hostState().servicesUp = up; }
    void setConstraintServiceUp(bool up) { hostState().constraintServiceUp = up; }
    void setEvaluator(Evaluator evaluator) { hostState().evaluator = std::move(evaluator); }
    void setWorkingDatabase(YxDbDatabase* database) { hostState().workingDatabase = database; }
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

    std::unique_ptr<YxDbDatabase> m_database;
    HostFaults m_faults;
    HostJournal m_journal;
    std::vector<std::string> m_misuses;
    std::unordered_map<const YxRxObject*, std::string> m_names;
    std::unique_ptr<Watch> m_watch;
};

}  // namespace holdfast
