#include "formats/svg/SvgTransform.h"

#include <array>
#include <cmath>
#include <string>

#include "document/text/Suggest.h"
#include "formats/svg/SvgFault.h"
#include "formats/svg/SvgNumbers.h"
#include "geometry/Angles.h"

namespace holdfast::formats {
namespace {

/// A transform has at most six numbers.
struct SvgArguments {
    std::array<double, 6> values{};
    std::size_t count = 0;

    double operator[](std::size_t i) const { return values[i]; }
};

Affine shiftedBy(Vec2 by) {
    return {{1.0, 0.0}, {0.0, 1.0}, by};
}

/// Quarter turns are exact.
Affine turnedBy(double degrees) {
    const PlaneTransform turn = rotation({0.0, 0.0}, inRadians(degrees));
    return affineOf(turn);
}

Affine matrixOf(const SvgArguments& a) {
    return {{a[0], a[1]}, {a[2], a[3]}, {a[4], a[5]}};
}
Affine translationOf(const SvgArguments& a) {
    return shiftedBy({a[0], a[1]});
}
Affine scaleOf(const SvgArguments& a) {
    return {{a[0], 0.0}, {0.0, a.count == 1 ? a[0] : a[1]}, {}};
}
Affine turnOf(const SvgArguments& a) {
    if (a.count == 1)
        return turnedBy(a[0]);
    const Vec2 centre{a[1], a[2]};
    return chained(shiftedBy(centre), chained(turnedBy(a[0]), shiftedBy(-centre)));
}
Affine slantOfX(const SvgArguments& a) {
    return {{1.0, 0.0}, {std::tan(inRadians(a[0])), 1.0}, {}};
}
Affine slantOfY(const SvgArguments& a) {
    return {{1.0, std::tan(inRadians(a[0]))}, {0.0, 1.0}, {}};
}

struct SvgTransformKind {
    std::string_view name;
    unsigned counts;  // of numbers that it may have: bit n for n
    Affine (*read)(const SvgArguments&);
};

constexpr unsigned kOne = 1U << 1U, kTwo = 1U << 2U, kThree = 1U << 3U, kSix = 1U << 6U;

constexpr std::array<SvgTransformKind, 6> kTransforms = {{{"matrix", kSix, matrixOf},
                                                          {"translate", kOne | kTwo, translationOf},
                                                          {"scale", kOne | kTwo, scaleOf},
                                                          {"rotate", kOne | kThree, turnOf},
                                                          {"skewX", kOne, slantOfX},
                                                          {"skewY", kOne, slantOfY}}};

const SvgTransformKind& takeKind(SvgNumbers& text) {
    text.peek();  // blanks
    const std::string_view name = text.word();
    for (const SvgTransformKind& kind : kTransforms)
        if (kind.name == name)
            return kind;
    if (name.empty())
        text.fail("a transform, such as translate(10 20)");
    throw SvgFault{"the transform " + inQuotes(name), "matrix, translate, scale, rotate, skewX or skewY"};
}

Affine takeTransform(SvgNumbers& text) {
    const SvgTransformKind& kind = takeKind(text);
    if (text.peek() != '(')
        text.fail("a ( behind the name of the transform");
    text.take();
    SvgArguments numbers;
    while (text.atNumber() && numbers.count < numbers.values.size())
        numbers.values[numbers.count++] = text.number();
    if (text.peek() != ')')
        text.fail("a number or a ) in the transform");
    text.take();
    if ((kind.counts >> numbers.count & 1U) == 0)
        throw SvgFault{std::string(kind.name) + " of " + std::to_string(numbers.count) + " numbers",
                       "as many numbers as that transform has"};
    return kind.read(numbers);
}

}  // namespace

Affine svgTransform(std::string_view text) {
    SvgNumbers numbers(text);
    Affine all;
    while (!numbers.atEnd()) {
        all = svgChained(all, takeTransform(numbers));
        numbers.comma();
    }
    return all;
}

Affine svgChained(const Affine& outer, const Affine& inner) {
    const Affine all = chained(outer, inner);
    for (const double value : {all.xAxis.x, all.xAxis.y, all.yAxis.x, all.yAxis.y, all.offset.x, all.offset.y})
        if (!(std::abs(value) <= kSvgMost))
            throw SvgFault{"transforms that come to more than a thousand millions", "smaller numbers in them"};
    return all;
}

}  // namespace holdfast::formats
