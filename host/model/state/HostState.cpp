#include "host/model/state/HostState.h"

#include <utility>

#include <YxDbConstraints/AssocConstraintHeader.h>

#include "host/model/state/HostAccess.h"
#include "host/model/state/HostCall.h"
#include "host/src/yxdb/ObjectData.h"

namespace holdfast {

namespace {

// The operations of the host ask for the state all the time: a plain pointer is found without the check whether it has
// been made yet, and one whose place is known when the program begins without a call.
#if defined(__ELF__) && defined(__GNUC__)
#define HOLDFAST_THREAD_VARIABLE [[gnu::tls_model("initial-exec")]] constinit thread_local
#else
#define HOLDFAST_THREAD_VARIABLE constinit thread_local
#endif
HOLDFAST_THREAD_VARIABLE HostState* t_state = nullptr;
HOLDFAST_THREAD_VARIABLE bool t_isThreadOver = false;
#undef HOLDFAST_THREAD_VARIABLE

/// Keeps the thread's current state alive, which its process may leave behind when it ends on another thread.
struct Kept {
    std::shared_ptr<HostState> state;

    Kept() = default;
    Kept(const Kept&) = delete;
    Kept& operator=(const Kept&) = delete;
    ~Kept() {
        t_state = nullptr;
        t_isThreadOver = true;
    }
};

Kept& kept() {
    thread_local Kept kept;
    return kept;
}

/// For what is freed after the last thread's variables: it lives as long as the program.
HostState& stateAfterTheEnd() {
    static auto& state = *new HostState();
    return state;
}

HostState& stateWithoutProcess() {
    if (t_isThreadOver)
        return stateAfterTheEnd();
    CurrentHost::set(std::make_shared<HostState>());
    return *t_state;
}

HostState& currentState() {
    return t_state != nullptr ? *t_state : stateWithoutProcess();
}

}  // namespace

HostState& hostState() {
    return currentState();
}

// Every operation of the host asks who listens: here, the state is at hand without a call.
HostObserver* hostObserver() {
    return currentState().observer;
}

HostObserver* setHostObserver(HostObserver* observer) {
    return std::exchange(currentState().observer, observer);
}

std::shared_ptr<HostState> CurrentHost::get() {
    return t_isThreadOver ? nullptr : kept().state;
}

void CurrentHost::set(std::shared_ptr<HostState> state) {
    if (state != nullptr && state->isOver())
        state = nullptr;
    if (state.get() == t_state)
        return;
    t_state = state.get();
    if (!t_isThreadOver)
        kept().state.swap(state);  // the former one is freed when the new one is in its place
}

bool CurrentHost::is(const HostState& state) {
    return t_state == &state;
}

HostState::~HostState() {
    end();
}

void HostState::enter(YxDbObject& copy) {
    copies.insert(&copy);
    HostAccess::data(copy).home = this;
}

void HostState::leave(YxDbObject& copy) {
    if (HostState* home = std::exchange(HostAccess::data(copy).home, nullptr))
        home->copies.erase(&copy);
}

void HostState::enter(LvEvaDataConverter& converter) {
    converters.insert(&converter);
    HostAccess::records(converter).home = this;
}

void HostState::leave(LvEvaDataConverter& converter) {
    if (HostState* home = std::exchange(HostAccess::records(converter).home, nullptr))
        home->converters.erase(&converter);
}

void HostState::end() {
    m_isOver = true;
    for (const YxDbObject* copy : std::exchange(copies, {}))
        HostAccess::data(const_cast<YxDbObject&>(*copy)).home = nullptr;
    for (LvEvaDataConverter* converter : std::exchange(converters, {}))
        HostAccess::records(*converter).home = nullptr;
    workingDatabase = nullptr;
    servicesUp = constraintServiceUp = true;
    staticEvaluator = nullptr;
    headerOfNullGroup = nullptr;
    evaluator = nullptr;
    observer = nullptr;
}

}  // namespace holdfast
