#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/model/state/HostCall.h"

namespace holdfast {

/// What a test throws from inside the host.
struct HostFailure : YxError {};

/// Makes host operations fail: by name, for one subject or all, on the n-th call from now on or on every one.
class HostFaults {
public:
    static constexpr int kEvery = 0;

    /// The operation does nothing and answers what failure means for it: null, false, an error status, an empty list.
    void refuse(std::string operation, const YxRxObject* subject = nullptr, int nth = kEvery);
    void answerStatus(std::string operation, Yxrt::ErrorStatus status, const YxRxObject* subject = nullptr,
                      int nth = kEvery);
    /// The operation answers this object instead of its own, whatever its class.
    void answerOther(std::string operation, YxRxObject* other, const YxRxObject* subject = nullptr, int nth = kEvery);
    /// The listing that the operation answers begins with a null entry.
    void answerNullEntry(std::string operation, const YxRxObject* subject = nullptr, int nth = kEvery);
    /// The operation throws HostFailure.
    void throwFrom(std::string operation, const YxRxObject* subject = nullptr, int nth = kEvery);
    /// The named object does not open any more, or not for write. Throws std::invalid_argument for a name that the host
    /// does not know.
    void refuseOpen(std::string_view name, int nth = kEvery) { refuseOpenFor(name, "", nth); }
    void refuseOpenForWrite(std::string_view name, int nth = kEvery) { refuseOpenFor(name, "write", nth); }
    /// The constraint service does not run.
    void serviceDown() { refuse("isSrvInit"); }
    /// The n-th call of any operation at all throws HostFailure or is refused.
    void throwFromCall(int nth);
    void refuseCall(int nth);
    /// From now on nothing fails.
    void clear();

    /// The fault for a call that is being made; throws where a rule says so.
    HostFault faultOf(std::string_view operation, const YxRxObject* subject, std::string_view arguments);
    /// How objects are found by their names.
    using Names = std::function<const YxRxObject*(std::string_view)>;
    void setNames(Names names) { m_names = std::move(names); }
    /// How many calls came since the last clear().
    int calls() const { return m_calls; }

private:
    struct Rule {
        std::string operation;  // empty: any
        const YxRxObject* subject;
        std::string arguments;  // empty: any
        int nth;
        HostFault fault;
        bool throws;
        int seen = 0;
    };
    void add(std::string operation, const YxRxObject* subject, int nth, HostFault fault, bool throws);
    void refuseOpenFor(std::string_view name, std::string_view mode, int nth);

    Names m_names;
    std::vector<Rule> m_rules;
    int m_calls = 0;
};

}  // namespace holdfast
