#include "host/model/HostCall.h"

#include <cstdio>
#include <utility>

#include "host/model/HostState.h"

namespace holdfast {

HostObserver* hostObserver() {
    return hostState().observer;
}

HostObserver* setHostObserver(HostObserver* observer) {
    return std::exchange(hostState().observer, observer);
}

std::string describe(const YxRxObject* object) {
    HostObserver* const observer = hostObserver();
    return observer == nullptr ? "" : observer->nameOf(object);
}

std::string describe(int value) {
    return std::to_string(value);
}

std::string describe(unsigned int value) {
    return std::to_string(value);
}

std::string describe(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

void reportMisuse(const std::string& complaint) {
    if (HostObserver* const observer = hostObserver())
        observer->misused(complaint);
}

}  // namespace holdfast
