#include "host/model/state/HostCall.h"

#include <cstdio>

namespace holdfast {

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
