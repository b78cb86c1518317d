#include "host/model/HostFaults.h"

#include <stdexcept>

#include "host/model/HostJournal.h"

namespace holdfast {

void HostFaults::refuse(std::string operation, const YxRxObject* subject, int nth) {
    add(std::move(operation), subject, nth, {.kind = FaultKind::refuse}, false);
}

void HostFaults::answerStatus(std::string operation, Yxrt::ErrorStatus status, const YxRxObject* subject, int nth) {
    add(std::move(operation), subject, nth, {.kind = FaultKind::errorStatus, .status = status}, false);
}

void HostFaults::answerOther(std::string operation, YxRxObject* other, const YxRxObject* subject, int nth) {
    add(std::move(operation), subject, nth, {.kind = FaultKind::answerOther, .other = other}, false);
}

void HostFaults::answerNullEntry(std::string operation, const YxRxObject* subject, int nth) {
    add(std::move(operation), subject, nth, {.kind = FaultKind::nullEntry}, false);
}

void HostFaults::throwFrom(std::string operation, const YxRxObject* subject, int nth) {
    add(std::move(operation), subject, nth, {}, true);
}

void HostFaults::throwFromCall(int nth) {
    add("", nullptr, nth, {}, true);
}

void HostFaults::refuseCall(int nth) {
    add("", nullptr, nth, {.kind = FaultKind::refuse}, false);
}

void HostFaults::clear() {
    m_rules.clear();
    m_calls = 0;
}

void HostFaults::add(std::string operation, const YxRxObject* subject, int nth, HostFault fault, bool throws) {
    m_rules.push_back({std::move(operation), subject, "", nth, fault, throws});
}

void HostFaults::refuseOpenFor(std::string_view name, std::string_view mode, int nth) {
    const YxRxObject* subject = m_names ? m_names(name) : nullptr;
    if (subject == nullptr)
        throw std::invalid_argument("no object of the host has the name \"" + std::string(name) + "\"");
    for (const char* operation : {"YxDbObjectIdImpl::openObject", "yxdbOpenObject"}) {
        refuse(operation, subject, nth);
        m_rules.back().arguments = mode;
    }
}

HostFault HostFaults::faultOf(std::string_view operation, const YxRxObject* subject, std::string_view arguments) {
    // Giving a reference back cannot fail, in this host as in any.
    if (operation == "release")
        return {};
    ++m_calls;
    HostFault fault;
    for (Rule& rule : m_rules) {
        if (!rule.operation.empty() && !namesOperation(operation, rule.operation))
            continue;
        if (rule.subject != nullptr && rule.subject != subject)
            continue;
        if (!rule.arguments.empty() && rule.arguments != arguments)
            continue;
        ++rule.seen;
        if (rule.nth != kEvery && rule.seen != rule.nth)
            continue;
        if (rule.throws)
            throw HostFailure();
        fault = rule.fault;
    }
    return fault;
}

}  // namespace holdfast
