#include "host/model/HostAudit.h"

#include <unordered_set>

#include "host/model/NetworkAudit.h"
#include "host/model/state/HostCall.h"
#include "host/src/YxDbConstraints/GroupData.h"
#include "host/src/yxdb/ObjectData.h"

namespace holdfast {

namespace {

using Findings = std::vector<std::string>;

/// The groups of a database, each with its header.
std::vector<YxDbAssoc2dConstraintGroup*> groupsOf(YxDbDatabase& database) {
    std::vector<YxDbAssoc2dConstraintGroup*> groups;
    for (const YxDbObjectId& id : HostAccess::allIds(database))
        if (HostAccess::peek(id)->isKindOf(YxDbAssoc2dConstraintGroup::desc()))
            groups.push_back(static_cast<YxDbAssoc2dConstraintGroup*>(HostAccess::peek(id)));
    return groups;
}

void auditOpens(const HostProcess& host, Findings& findings) {
    for (const YxDbObjectId& id : HostAccess::allIds(host.database())) {
        const YxDbObject& object = *HostAccess::peek(id);
        const int opens = HostAccess::openCount(object);
        if (opens > 0)
            findings.push_back(host.nameOf(&object) + " is left open " + std::to_string(opens) + " times" +
                               (HostAccess::isWritable(object) ? ", for write" : ""));
    }
}

/// Copies that no header adopted and no test keeps.
void auditCopies(HostProcess& host, Findings& findings) {
    std::unordered_set<const YxDbObject*> owned;
    for (YxDbAssoc2dConstraintGroup* group : groupsOf(host.database())) {
        const auto& adopted = HostAccess::adopted(*HostAccess::header(*group));
        owned.insert(adopted.begin(), adopted.end());
    }
    for (const YxDbObject* copy : hostState().copies)
        if (!owned.contains(copy))
            findings.push_back(std::string("a copy of a ") + copy->isA()->name() + " belongs to nobody");
}

/// A converter belongs to a header. Only those for static evaluation are the host's from the start, which frees them at
/// the end of the command.
void auditConverters(HostProcess& host, Findings& findings) {
    std::unordered_set<LvEvaDataConverter*> owned;
    for (YxDbAssoc2dConstraintGroup* group : groupsOf(host.database()))
        owned.insert(HostAccess::header(*group)->converter);
    for (LvEvaDataConverter* converter : hostState().converters) {
        const LvEditorType editor = HostAccess::records(*converter).editorType;
        if (!owned.contains(converter) && editor != kStaticEvaluateEditor)
            findings.push_back("a converter for editor " + std::to_string(editor) + " belongs to nobody");
    }
}

/// What a header names must still be there.
class HeaderAudit {
public:
    HeaderAudit(HostProcess& host, Findings& findings) : m_host(host), m_findings(findings) {
        m_alive.insert(hostState().copies.begin(), hostState().copies.end());
        for (const YxDbObjectId& id : HostAccess::allIds(host.database()))
            m_alive.insert(HostAccess::peek(id));
    }

    void run(YxDbAssoc2dConstraintGroup& group) {
        const AssocConstraintHeader& header = *HostAccess::header(group);
        m_group = m_host.nameOf(&group);
        for (const auto& [id, entity] : header.preEditEntities)
            check(entity, "preEditEntities");
        check(header.polylineEntities, "polylineEntities");
        check(header.unconstrainedEntities, "unconstrainedEntities");
        check(header.entitiesToDraw, "entitiesToDraw");
        if (header.converter != nullptr && !hostState().converters.contains(header.converter))
            complain("converter");
    }

private:
    void check(const YxArray<YxDbEntity*>& entities, const char* field) {
        for (const YxDbEntity* entity : entities)
            check(entity, field);
    }
    void check(const YxDbEntity* entity, const char* field) {
        if (entity != nullptr && !m_alive.contains(entity))
            complain(field);
    }
    void complain(const char* field) {
        m_findings.push_back("the header of " + m_group + " names in " + field + " what is freed");
    }

    HostProcess& m_host;
    Findings& m_findings;
    std::unordered_set<const YxDbObject*> m_alive;
    std::string m_group;
};

}  // namespace

std::vector<std::string> auditHeaders(HostProcess& host) {
    const HostProcess::Scope bound(host);
    const Unwatched unwatched;
    Findings findings;
    HeaderAudit headers(host, findings);
    for (YxDbAssoc2dConstraintGroup* group : groupsOf(host.database()))
        headers.run(*group);
    return findings;
}

std::vector<std::string> auditHost(HostProcess& host) {
    const HostProcess::Scope bound(host);
    const Unwatched unwatched;
    Findings findings = host.misuses();
    auditOpens(host, findings);
    auditCopies(host, findings);
    auditConverters(host, findings);
    const Findings network = auditNetwork(host);
    findings.insert(findings.end(), network.begin(), network.end());
    return findings;
}

}  // namespace holdfast
