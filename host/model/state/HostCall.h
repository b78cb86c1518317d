#pragma once

#include <string>
#include <string_view>

#include <yxbase/YxError.h>
#include <yxbase/YxErrorStatus.h>
#include <yxbase/YxRxObject.h>

namespace holdfast {

/// What a host operation is told to answer instead of doing its work.
enum class FaultKind {
    none,
    refuse,       ///< null, false, the null id, eFailed, an empty listing
    answerOther,  ///< another object, which may be of another class
    errorStatus,  ///< a status of the test's choice, and nothing done
    nullEntry     ///< a listing with a null entry before the true ones
};

struct HostFault {
    FaultKind kind = FaultKind::none;
    Yxrt::ErrorStatus status = Yxrt::eFailed;
    YxRxObject* other = nullptr;  ///< for answerOther

    explicit operator bool() const { return kind != FaultKind::none; }
};

/// Listens to the host's operations; may make them fail.
class HostObserver {
public:
    virtual ~HostObserver() = default;
    /// Called before an operation does anything. Answers the fault to inject, or throws what the host is to throw.
    virtual HostFault called(std::string_view operation, const YxRxObject* subject, const std::string& arguments) = 0;
    /// Called when a caller does what a real host would punish.
    virtual void misused(const std::string& complaint) = 0;
    /// What to call an object in a record.
    virtual std::string nameOf(const YxRxObject* object) = 0;
};

/// Who listens to this thread's current process; null when nobody does.
HostObserver* hostObserver();
/// From now on this one listens; answers who did before.
HostObserver* setHostObserver(HostObserver* observer);

/// While one lives, nobody listens: for builders and printers, whose own questions are no calls of the module.
class Unwatched {
public:
    Unwatched() : m_observer(setHostObserver(nullptr)) {}
    ~Unwatched() { setHostObserver(m_observer); }
    Unwatched(const Unwatched&) = delete;
    Unwatched& operator=(const Unwatched&) = delete;

private:
    HostObserver* m_observer;
};

std::string describe(const YxRxObject* object);
inline std::string describe(const std::string& text) {
    return text;
}
inline std::string describe(const char* text) {
    return text;
}
inline std::string describe(bool value) {
    return value ? "true" : "false";
}
std::string describe(int value);
std::string describe(unsigned int value);
std::string describe(double value);

/// Every host operation that can fail or is worth recording begins with this: constant time when nobody listens.
/// The arguments are turned into text at once, so that a record holds them as they were.
template <class... Arguments>
HostFault hostCall(const char* operation, const YxRxObject* subject, const Arguments&... arguments) {
    HostObserver* const observer = hostObserver();
    if (observer == nullptr)
        return {};
    std::string text;
    ((text += (text.empty() ? "" : ", ") + describe(arguments)), ...);
    return observer->called(operation, subject, text);
}

/// The status that a refused operation answers.
inline Yxrt::ErrorStatus refusedStatus(const HostFault& fault) {
    return fault.kind == FaultKind::errorStatus ? fault.status : Yxrt::eFailed;
}

void reportMisuse(const std::string& complaint);

}  // namespace holdfast
