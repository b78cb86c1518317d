#include "host/model/HostProcess.h"

#include "host/src/yxdb/ObjectData.h"

namespace holdfast {

class HostProcess::Watch : public HostObserver {
public:
    explicit Watch(HostProcess& process) : m_process(process) {}

    HostFault called(std::string_view operation, const YxRxObject* subject, const std::string& arguments) override {
        m_process.m_journal.add({std::string(operation), subject, m_process.nameOf(subject), arguments});
        return m_process.m_faults.faultOf(operation, subject, arguments);
    }
    void misused(const std::string& complaint) override { m_process.m_misuses.push_back(complaint); }
    std::string nameOf(const YxRxObject* object) override { return m_process.nameOf(object); }

private:
    HostProcess& m_process;
};

namespace {

/// A space of the drawing; the model needs no more of it than its id.
class Space : public YxDbObject {};

}  // namespace

HostProcess::Scope::Scope(const HostProcess& process) : m_former(CurrentHost::get()) {
    CurrentHost::set(process.m_state);
}

HostProcess::Scope::Scope() : m_former(CurrentHost::get()) {}

HostProcess::Scope::~Scope() {
    CurrentHost::set(std::move(m_former));
}

HostProcess::HostProcess()
    : m_former(CurrentHost::get()),
      m_state(std::make_shared<HostState>()),
      m_database(HostAccess::makeDatabase()),
      m_watch(std::make_unique<Watch>(*this)) {
    CurrentHost::set(m_state);
    AssocConstraintHeader::m_isForbidEvaStatic = false;
    m_state->workingDatabase = m_database.get();
    YxDbDatabaseData& data = HostAccess::data(*m_database);
    data.modelSpace = HostAccess::addToDatabase(*m_database, std::make_unique<Space>());
    data.paperSpace = HostAccess::addToDatabase(*m_database, std::make_unique<Space>());
    data.currentSpace = data.modelSpace;
    watch(true);
}

HostProcess::~HostProcess() {
    {
        const Scope bound(*this);
        watch(false);
        endOfCommand();
        m_database.reset();
    }
    m_state->end();
    if (CurrentHost::is(*m_state))
        CurrentHost::set(std::move(m_former));
}

void HostProcess::watch(bool on) {
    m_state->observer = on ? m_watch.get() : nullptr;
}

bool HostProcess::isWatched() const {
    return m_state->observer == m_watch.get();
}

void HostProcess::name(const YxRxObject* object, std::string name) {
    m_names[object] = std::move(name);
}

std::string HostProcess::nameOf(const YxRxObject* object) const {
    const auto found = m_names.find(object);
    if (found != m_names.end())
        return found->second;
    return object == nullptr ? "null" : object->isA()->name();
}

void HostProcess::setUcs(const YxGeVector3d& x, const YxGeVector3d& y) {
    HostAccess::data(*m_database).ucsX = x;
    HostAccess::data(*m_database).ucsY = y;
}

void HostProcess::setPaperUcs(const YxGeVector3d& x, const YxGeVector3d& y) {
    HostAccess::data(*m_database).paperUcsX = x;
    HostAccess::data(*m_database).paperUcsY = y;
}

void HostProcess::setPaperSpace(bool paper) {
    YxDbDatabaseData& data = HostAccess::data(*m_database);
    data.tilemode = !paper;
    data.currentSpace = paper ? data.paperSpace : data.modelSpace;
}

void HostProcess::setTilemode(bool on) {
    HostAccess::data(*m_database).tilemode = on;
}

void HostProcess::endOfCommand() {
    const Scope bound(*this);
    const bool watched = isWatched();
    watch(false);
    for (const YxDbStub* stub : HostAccess::groupStubs(*m_database))
        if (stub->object != nullptr)
            HostAccess::header(static_cast<YxDbAssoc2dConstraintGroup&>(*stub->object))->uninit();
    while (!m_state->converters.empty())
        delete *m_state->converters.begin();
    watch(watched);
}

}  // namespace holdfast
