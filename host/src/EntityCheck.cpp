#include "host/src/EntityCheck.h"

#include <array>
#include <charconv>
#include <cmath>
#include <stdexcept>

#include "host/src/yxdb/EntityCall.h"

namespace holdfast {

std::string spelt(double value) {
    if (std::isnan(value))
        return "not a number (NaN)";
    if (std::isinf(value))
        return value > 0.0 ? "infinity" : "minus infinity";
    std::array<char, 32> digits;
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    return {digits.data(), written.ptr};
}

void EntityCheck::refuse(const std::string& message) const {
    throw std::invalid_argument(std::string(m_kind) + ": " + message);
}

void EntityCheck::finite(std::string_view what, double value) const {
    if (!std::isfinite(value))
        refuse(std::string(what) + " is " + spelt(value) + "; give a finite number");
}

void EntityCheck::finite(std::string_view what, const YxGePoint2d& point) const {
    finite(std::string(what) + " x", point.x);
    finite(std::string(what) + " y", point.y);
}

void EntityCheck::finite(std::string_view what, const YxGePoint3d& point) const {
    finite(what, point - YxGePoint3d::kOrigin);
}

void EntityCheck::finite(std::string_view what, const YxGeVector3d& vector) const {
    if (std::isfinite(vector.x) && std::isfinite(vector.y) && std::isfinite(vector.z))
        return;
    finite(std::string(what) + " x", vector.x);
    finite(std::string(what) + " y", vector.y);
    finite(std::string(what) + " z", vector.z);
}

void EntityCheck::positive(std::string_view what, double value) const {
    finite(what, value);
    if (value <= 0.0)
        refuse(std::string(what) + " is " + spelt(value) + "; give a number above 0");
}

void EntityCheck::direction(std::string_view what, const YxGeVector3d& vector) const {
    finite(what, vector);
    if (vector.x == 0.0 && vector.y == 0.0 && vector.z == 0.0)
        refuse(std::string(what) + " has length 0; give a vector that points somewhere");
}

void requireOpenForWrite(const YxDbEntity& entity, const char* operation) {
    if (openForWriteStatus(entity, operation) != Yxrt::eOk)
        throw std::logic_error(std::string(entity.isA()->name()) + "::" + operation +
                               ": the entity is not open for write; open it with mode 1 first");
}

}  // namespace holdfast
