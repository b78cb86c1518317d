#include <algorithm>
#include <cmath>

#include "solver/src/residuals/EquationBuilder.h"

/// The intrinsic sizes of the entities, for edits that may turn and shift but not stretch them.
namespace holdfast::solver::detail {

namespace {

/// How much more a size may count because it is small.
constexpr double kScarcest = 1e2;

/// And where it would come to nothing on a way: radii and bends that are tied to it rather grow by many times.
constexpr double kSpared = 1e4;

/// Parts of the sketch's size below which a length is none: so short a piece points nowhere.
constexpr double kNothing = 1e-6;

/// Adds the sizes of one shape, each at the value that it has at the reference.
class Keeper {
public:
    Keeper(EquationBuilder& builder, const KeptShape& shape, const KeptSizes& sizes)
        : m_builder(builder), m_shape(shape), m_sizes(sizes) {}

    void length(int firstX, int secondX, SizeRow::Kind kind = SizeRow::Kind::length) {
        keep(formOf(ResidualKind::lineLength), {between(firstX, secondX)}, kind);
    }

    /// The direction from one point to another.
    void turn(int firstX, int secondX) {
        const double reach = reachOf(firstX, secondX);
        if (m_shape.turnWeight <= 0.0 || !hasDirection(reach))
            return;
        Equation form = formOf(ResidualKind::heading);
        form.scale = reach;
        keep(form, {between(firstX, secondX)}, SizeRow::Kind::turn);
    }

    /// The angle between two pieces that meet.
    void corner(int firstX, int middleX, int lastX) {
        const double reach = std::min(reachOf(firstX, middleX), reachOf(middleX, lastX));
        if (!hasDirection(reach))
            return;
        Equation form = formOf(ResidualKind::directions);
        form.mode = static_cast<std::uint8_t>(DirectionMode::angle);
        form.scale = reach;
        keep(form, {between(firstX, middleX), between(middleX, lastX)}, SizeRow::Kind::bend);
    }

    void scalar(int value, double scale) {
        Equation form = formOf(ResidualKind::scalarIs);
        form.scale = scale;
        keep(form, {Operand{OperandKind::scalar, {value}, {}}}, SizeRow::Kind::bend);
    }

    /// A sweep follows from where the neighbours lead to: kept like a radius it would change lengths on both sides.
    void arc() {
        const CurveRef curve{m_shape.entity, -1};
        const Operand circle = *circleAt(sketch(), curve);
        const std::initializer_list<Operand> operands = {circle, *startOf(sketch(), curve), *endOf(sketch(), curve)};
        Equation form = formOf(ResidualKind::arcSweep);
        form.scale = sizeOf(sketch(), curve, m_builder.size());
        form.value = 0.0;
        // Of an arc that is short for its radius it is the sweep that is spared, by a radius that gives way.
        const bool isFlat = std::abs(m_builder.residualAtReference(form, operands)) < form.scale;
        keep(formOf(ResidualKind::radiusIs), {circle}, SizeRow::Kind::bend, !isFlat);
        keep(form, operands, SizeRow::Kind::sweep);
        turn(entity().firstValue, entity().firstValue + 3);
    }

    void ellipse() {
        const int zero = m_builder.addConstant(0.0), axis = entity().firstValue + 2;
        keep(formOf(ResidualKind::lineLength), {Operand{OperandKind::segment, {zero, zero, axis, axis + 1}, {}}},
             SizeRow::Kind::bend);
        scalar(entity().firstValue + 4, 1.0);
    }

    /// Like as many lines and arcs.
    void polyline() {
        for (int i = 0; i < entity().segmentCount(); ++i) {
            const int start = sketch().vertexValue(m_shape.entity, i);
            const int end = sketch().vertexValue(m_shape.entity, i + 1);
            turn(start, end);
            length(start, end);
            const int bulge = entity().bulgeValues[static_cast<std::size_t>(i)];
            if (bulge >= 0)
                scalar(bulge, sizeOf(sketch(), {m_shape.entity, i}, m_builder.size()));
        }
    }

    /// The legs of the control polygon, and the angles between them: legs alone would let it flex like a chain.
    void spline() {
        const int first = entity().firstValue;
        for (int i = 2; i < entity().valueCount; i += 2)
            length(first + i - 2, first + i, SizeRow::Kind::bend);
        for (int i = 4; i < entity().valueCount; i += 2)
            corner(first + i - 4, first + i - 2, first + i);
        turn(first, first + 2);
    }

    const SketchEntity& entity() const { return sketch().entities[static_cast<std::size_t>(m_shape.entity)]; }

private:
    const SketchData& sketch() const { return m_builder.sketch(); }

    double reachOf(int firstX, int secondX) const {
        const auto v = m_builder.values(When::reference);
        const std::size_t a = static_cast<std::size_t>(firstX), b = static_cast<std::size_t>(secondX);
        return std::hypot(v[b] - v[a], v[b + 1] - v[a + 1]);
    }

    bool hasDirection(double reach) const { return reach > kNothing * m_builder.size(); }

    static Operand between(int firstX, int secondX) {
        return {OperandKind::segment, {firstX, firstX + 1, secondX, secondX + 1}, {}};
    }

    void keep(Equation form, std::initializer_list<Operand> operands, SizeRow::Kind kind, bool mayBeSpared = true) {
        form.value = 0.0;
        form.value = m_builder.residualAtReference(form, operands) / form.scale;
        const std::size_t number = m_builder.sizeCount();
        const bool isFirm = number < m_sizes.isFirm.size() && m_sizes.isFirm[number] != 0;
        const double given = number < m_sizes.emphasis.size() ? m_sizes.emphasis[number] : 1.0;
        const double scarce = scarcity(form.value * form.scale, mayBeSpared);
        const double emphasis = given * (kind == SizeRow::Kind::turn ? 1.0 : scarce);
        const double weight = kind == SizeRow::Kind::bend   ? m_shape.bendWeight
                              : kind == SizeRow::Kind::turn ? m_shape.turnWeight
                                                            : m_shape.lengthWeight;
        m_builder.addSize(form, operands, isFirm ? 0.0 : emphasis * weight, kind);
    }

    double scarcity(double size, bool mayBeSpared) const {
        if (mayBeSpared && std::binary_search(m_sizes.spared.begin(), m_sizes.spared.end(), m_shape.entity))
            return m_sizes.sparesFirst ? kSpared : kScarcest;
        return std::clamp(m_sizes.sparedBelow / std::max(std::abs(size), m_builder.size() * kNothing), 1.0, kScarcest);
    }

    EquationBuilder& m_builder;
    const KeptShape& m_shape;
    const KeptSizes& m_sizes;
};

}  // namespace

void addKeptSizes(EquationBuilder& builder, const KeptShape& shape, const KeptSizes& sizes) {
    Keeper keeper(builder, shape, sizes);
    const int first = keeper.entity().firstValue;
    switch (keeper.entity().kind) {
        case EntityKind::line:
            keeper.length(first, first + 2);
            keeper.turn(first, first + 2);
            break;
        case EntityKind::circle:
            keeper.scalar(first + 2, 1.0);
            break;
        case EntityKind::arc:
            keeper.arc();
            break;
        case EntityKind::ellipse:
        case EntityKind::ellipticalArc:
            keeper.ellipse();
            break;
        case EntityKind::polyline:
            keeper.polyline();
            break;
        case EntityKind::spline:
            keeper.spline();
            break;
        case EntityKind::ray:
        case EntityKind::xline:
        case EntityKind::point:
        case EntityKind::text:
            break;
    }
}

}  // namespace holdfast::solver::detail
