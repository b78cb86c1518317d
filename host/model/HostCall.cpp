#include "host/model/HostCall.h"

#include <cstdio>

namespace holdfast {

HostObserver* g_hostObserver = nullptr;

std::string describe(const YxRxObject* object) {
    return g_hostObserver == nullptr ? "" : g_hostObserver->nameOf(object);
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
    if (g_hostObserver != nullptr)
        g_hostObserver->misused(complaint);
}

}  // namespace holdfast
