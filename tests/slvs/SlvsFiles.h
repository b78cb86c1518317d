#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "formats/slvs/SlvsWriter.h"

namespace holdfast::formats {

/// What every file begins with: the header, the three planes, a group in the xy plane.
inline std::string slvsBeginning() {
    return slvsText({}, 0.01).text;
}

inline std::string slvsParam(const std::string& handle, double value) {
    return "Param.h.v.=" + handle + "\nParam.val=" + std::to_string(value) + "\nAddParam\n\n";
}

/// A request in group 2 with the coordinates of its points.
inline std::string slvsRequest(const std::string& handle, int type, const std::vector<double>& coordinates,
                               const std::string& more = "", const std::string& group = "00000002",
                               const std::string& plane = "80020000") {
    std::string text;
    for (std::size_t i = 0; i < coordinates.size(); ++i) {
        const std::size_t number = 0x10 + 3 * (i / 2) + i % 2;
        constexpr const char* digits = "0123456789abcdef";
        text += slvsParam(handle.substr(4) + "00" + digits[number / 16] + digits[number % 16], coordinates[i]);
    }
    return text + "Request.h.v=" + handle + "\nRequest.type=" + std::to_string(type) +
           "\nRequest.workplane.v=" + plane + "\nRequest.group.v=" + group + "\nRequest.construction=0\n" + more +
           "AddRequest\n\n";
}

inline std::string slvsConstraint(const std::string& handle, int type, const std::string& more) {
    std::string lines;
    for (const char each : more)
        lines += each == ' ' ? std::string("\nConstraint.") : std::string(1, each);
    return "Constraint.h.v=" + handle + "\nConstraint.type=" + std::to_string(type) +
           "\nConstraint.group.v=00000002\nConstraint.workplane.v=80020000\nConstraint." + lines +
           "\nConstraint.reference=0\nAddConstraint\n\n";
}

}  // namespace holdfast::formats
