#include "document/formulas/FormulaFunctions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "document/formulas/FormulaError.h"
#include "document/text/NumberText.h"
#include "geometry/Angles.h"

namespace holdfast::document {

namespace {

/// Of a power of a unit; beyond it nobody means it.
constexpr double kGreatestPower = 9.0;

[[noreturn]] void refuse(const FunctionCall& call, const std::string& why) {
    throw FormulaError(std::string(call.name) + " " + why, call.column);
}

/// An angle in degrees; of a plain number exactly that many.
double degreesOf(const FunctionCall& call) {
    const Quantity& angle = call.values[0];
    if (!angle.isNumber() && !angle.isAngle())
        refuse(call, "takes an angle, or a number of degrees, not " + spokenKind(angle));
    return angle.isNumber() ? angle.value : inDegrees(angle.value);
}

/// Exact at the quarters of a turn, where sin and cos of radians are off by rounding.
double sineOf(double degrees) {
    const double turn = std::remainder(degrees, 360.0);
    if (std::remainder(turn, 180.0) == 0.0)
        return 0.0;
    if (std::abs(turn) == 90.0)
        return turn > 0.0 ? 1.0 : -1.0;
    return std::sin(inRadians(turn));
}

Quantity sine(const FunctionCall& call) {
    return {sineOf(degreesOf(call))};
}

Quantity cosine(const FunctionCall& call) {
    return {sineOf(degreesOf(call) + 90.0)};
}

Quantity tangent(const FunctionCall& call) {
    const double degrees = degreesOf(call), cosine = sineOf(degrees + 90.0);
    // Closer to a quarter turn than the digits of an angle in radians tell.
    if (std::abs(cosine) < 1e-15)
        refuse(call, "has no value at " + numberText(degrees) + " degrees");
    return {sineOf(degrees) / cosine};
}

double ratioOf(const FunctionCall& call) {
    const Quantity& ratio = call.values[0];
    if (!ratio.isNumber())
        refuse(call, "takes a number, not " + spokenKind(ratio));
    return ratio.value;
}

double cosineOrSineOf(const FunctionCall& call) {
    const double ratio = ratioOf(call);
    if (!(std::abs(ratio) <= 1.0))
        refuse(call, "takes a number from -1 to 1, not " + numberText(ratio));
    return ratio;
}

Quantity arcSine(const FunctionCall& call) {
    return {std::asin(cosineOrSineOf(call)), 0, 1};
}

Quantity arcCosine(const FunctionCall& call) {
    return {std::acos(cosineOrSineOf(call)), 0, 1};
}

Quantity arcTangent(const FunctionCall& call) {
    return {std::atan(ratioOf(call)), 0, 1};
}

Quantity arcTangentOfTwo(const FunctionCall& call) {
    Quantity y = call.values[0], x = call.values[1];
    bringTogether(y, x, "compared", call.column);
    if (y.value == 0.0 && x.value == 0.0)
        refuse(call, "has no value of 0 and 0");
    return {std::atan2(y.value, x.value), 0, 1};
}

Quantity root(const FunctionCall& call) {
    const Quantity& of = call.values[0];
    if (of.value < 0.0)
        refuse(call, "has no value of a negative number (" + numberText(of.value) + ")");
    if (of.length % 2 != 0 || of.angle % 2 != 0)
        refuse(call, "of " + spokenKind(of) + " is nothing that can be measured; it takes a number or an area");
    return {std::sqrt(of.value), of.length / 2, of.angle / 2};
}

Quantity magnitude(const FunctionCall& call) {
    Quantity of = call.values[0];
    of.value = std::abs(of.value);
    return of;
}

/// All in the units of those that have some.
std::vector<Quantity> together(const FunctionCall& call) {
    std::vector<Quantity> values(call.values.begin(), call.values.end());
    for (int pass = 0; pass < 2; ++pass)
        for (std::size_t i = 1; i < values.size(); ++i)
            bringTogether(values[i - 1], values[i], "compared", call.column);
    for (std::size_t i = values.size() - 1; i > 0; --i)
        bringTogether(values[i - 1], values[i], "compared", call.column);
    return values;
}

bool isLess(const Quantity& a, const Quantity& b) {
    return a.value < b.value;
}

Quantity least(const FunctionCall& call) {
    const std::vector<Quantity> values = together(call);
    return *std::min_element(values.begin(), values.end(), isLess);
}

Quantity greatest(const FunctionCall& call) {
    const std::vector<Quantity> values = together(call);
    return *std::max_element(values.begin(), values.end(), isLess);
}

Quantity hypotenuse(const FunctionCall& call) {
    std::vector<Quantity> values = together(call);
    values[0].value = std::hypot(values[0].value, values[1].value);
    return values[0];
}

/// To whole steps: the second value, or 1 of the drawing's length unit, or a degree.
template <double (*toWhole)(double)>
Quantity stepped(const FunctionCall& call) {
    Quantity of = call.values[0];
    Quantity step = call.values.size() > 1 ? call.values[1] : meantAs({1.0}, of);
    bringTogether(of, step, "compared", call.column);
    if (!(step.value > 0.0))
        refuse(call, "takes a step above 0, not " + numberText(step.value));
    of.value = toWhole(of.value / step.value) * step.value;
    return of;
}

double roundedHalfAway(double value) {
    return std::round(value);
}
double roundedDown(double value) {
    return std::floor(value);
}
double roundedUp(double value) {
    return std::ceil(value);
}

/// With the sign of the divisor, as what is left of a pattern.
Quantity remainderOf(const FunctionCall& call) {
    Quantity of = call.values[0], by = call.values[1];
    bringTogether(of, by, "compared", call.column);
    if (by.value == 0.0)
        refuse(call, "by zero");
    of.value -= by.value * std::floor(of.value / by.value);
    return of;
}

constexpr FormulaFunction kFunctions[] = {
    {"sqrt", 1, 1, &root},
    {"abs", 1, 1, &magnitude},
    {"min", 1, kAnyCount, &least},
    {"max", 1, kAnyCount, &greatest},
    {"round", 1, 2, &stepped<&roundedHalfAway>},
    {"floor", 1, 2, &stepped<&roundedDown>},
    {"ceil", 1, 2, &stepped<&roundedUp>},
    {"mod", 2, 2, &remainderOf},
    {"hypot", 2, 2, &hypotenuse},
    {"sin", 1, 1, &sine},
    {"cos", 1, 1, &cosine},
    {"tan", 1, 1, &tangent},
    {"asin", 1, 1, &arcSine},
    {"acos", 1, 1, &arcCosine},
    {"atan", 1, 1, &arcTangent},
    {"atan2", 2, 2, &arcTangentOfTwo},
};

}  // namespace

std::string FormulaFunction::takes() const {
    if (most == kAnyCount)
        return std::to_string(least) + (least == 1 ? " value or more" : " values or more");
    const std::string count =
        least == most ? std::to_string(least) : std::to_string(least) + " to " + std::to_string(most);
    return count + (most == 1 ? " value" : " values");
}

const FormulaFunction* functionNamed(std::string_view name) {
    for (const FormulaFunction& function : kFunctions)
        if (function.name == name)
            return &function;
    return nullptr;
}

std::span<const std::string_view> functionNames() {
    static constexpr auto names = [] {
        std::array<std::string_view, std::size(kFunctions)> all;
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] = kFunctions[i].name;
        return all;
    }();
    return names;
}

void bringTogether(Quantity& a, Quantity& b, std::string_view how, std::size_t column) {
    const Quantity first = a;
    a = meantAs(a, b);
    b = meantAs(b, first);
    if (!a.measuresAs(b))
        throw FormulaError(spokenKind(a) + " and " + spokenKind(b) + " cannot be " + std::string(how), column);
}

Quantity raised(const Quantity& base, const Quantity& exponent, std::size_t column) {
    if (!exponent.isNumber())
        throw FormulaError("a power is a number, not " + spokenKind(exponent), column);
    const double power = exponent.value;
    const bool isWhole = power == std::floor(power) && std::abs(power) <= kGreatestPower;
    if (!base.isNumber() && !isWhole)
        throw FormulaError(spokenKind(base) + " can be raised to whole powers up to 9 only", column);
    if (base.value == 0.0 && power < 0.0)
        throw FormulaError("division by zero", column);
    if (base.value < 0.0 && power != std::floor(power))
        throw FormulaError("a negative number has no power of " + numberText(power), column);
    const int times = base.isNumber() ? 1 : static_cast<int>(power);
    return {std::pow(base.value, power), base.length * times, base.angle * times};
}

Quantity finite(const Quantity& quantity, std::size_t column) {
    if (!std::isfinite(quantity.value))
        throw FormulaError("the result is beyond what numbers can be", column);
    return quantity;
}

}  // namespace holdfast::document
