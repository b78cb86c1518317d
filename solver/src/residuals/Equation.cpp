#include "solver/src/residuals/Equation.h"

#include <cassert>

#include "geometry/SplineBasis.h"
#include "solver/src/residuals/ClosedForms.h"
#include "solver/src/residuals/Residuals.h"

namespace holdfast::solver::detail {

namespace {

bool isSpline(OperandKind kind) {
    return kind == OperandKind::splinePoint || kind == OperandKind::splineJet;
}

double nearestIn(SplineRange range, double param) {
    if (param < range.first)
        return range.first;
    return param > range.last ? range.last : param;
}

/// How many inputs a spline operand takes, and the basis at its parameter. A free parameter beyond an end of the curve
/// means that end: the curve does not go on, and the point there stands still whatever the parameter does.
struct SplineReading {
    const SplineUse& use;
    const SplineKnots& spline;
    double wanted;
    double param;
    SplineBasis basis;
    int inputCount;

    SplineReading(const EquationSet& set, int useIndex, std::span<const int> inputs, std::span<const double> values)
        : use(set.splineUses[static_cast<std::size_t>(useIndex)]),
          spline((*set.splines)[static_cast<std::size_t>(use.spline)]),
          wanted(use.isParamFree ? values[static_cast<std::size_t>(inputs[0])] : use.param),
          param(use.isParamFree && !spline.periodic ? nearestIn(splineRange(spline), wanted) : wanted),
          basis(splineBasis(spline, param)),
          inputCount(use.isParamFree ? 1 + 2 * spline.controlCount : 2 * basis.count) {}

    bool moves() const { return use.isParamFree && param == wanted; }

    /// The x input of the i-th active control point.
    int controlInput(int i) const { return use.isParamFree ? 1 + 2 * basis.control(i) : 2 * i; }
};

double valueAt(std::span<const double> values, std::span<const int> inputs, int i) {
    return values[static_cast<std::size_t>(inputs[static_cast<std::size_t>(i)])];
}

/// One derivative of the curve: order 0 to 3.
Vec2 derivative(const SplineReading& reading, std::span<const int> inputs, std::span<const double> values, int order) {
    Vec2 sum;
    for (int i = 0; i < reading.basis.count; ++i) {
        const double weight = reading.basis.by[static_cast<std::size_t>(order)][static_cast<std::size_t>(i)];
        sum.x += weight * valueAt(values, inputs, reading.controlInput(i));
        sum.y += weight * valueAt(values, inputs, reading.controlInput(i) + 1);
    }
    return sum;
}

/// Reads the inputs of each operand into locals; splines are evaluated on the way.
struct LocalReader {
    const EquationSet& set;
    const Equation& equation;
    std::span<const double> values;

    template <class Visit>
    void forEachOperand(Visit visit) const {
        std::span<const int> inputs = set.inputsOf(equation);
        int local = 0;
        for (std::size_t k = 0; k < 3 && equation.operands[k] != OperandKind::none; ++k) {
            const int taken = visit(k, local, inputs);
            local += localCount(equation.operands[k]);
            inputs = inputs.subspan(static_cast<std::size_t>(taken));
        }
    }

    void read(double* locals) const {
        forEachOperand([&](std::size_t k, int local, std::span<const int> inputs) {
            const int count = localCount(equation.operands[k]);
            if (!isSpline(equation.operands[k])) {
                for (int i = 0; i < count; ++i)
                    locals[local + i] = valueAt(values, inputs, i);
                return count;
            }
            const SplineReading reading(set, equation.splineUses[k], inputs, values);
            for (int order = 0; 2 * order < count; ++order) {
                const Vec2 part = derivative(reading, inputs, values, order);
                locals[local + 2 * order] = part.x;
                locals[local + 2 * order + 1] = part.y;
            }
            return reading.inputCount;
        });
    }

    /// Carries the slopes by the locals of one row over to the inputs.
    void spread(const double* byLocal, double* byInput) const {
        forEachOperand([&](std::size_t k, int local, std::span<const int> inputs) {
            const int count = localCount(equation.operands[k]);
            if (!isSpline(equation.operands[k])) {
                for (int i = 0; i < count; ++i)
                    byInput[i] = byLocal[local + i];
                byInput += count;
                return count;
            }
            const SplineReading reading(set, equation.splineUses[k], inputs, values);
            std::fill_n(byInput, reading.inputCount, 0.0);
            for (int order = 0; 2 * order < count; ++order)
                spreadSpline(reading, inputs, order, byLocal + local + static_cast<std::ptrdiff_t>(2) * order, byInput);
            byInput += reading.inputCount;
            return reading.inputCount;
        });
    }

    void spreadSpline(const SplineReading& reading, std::span<const int> inputs, int order, const double* slope,
                      double* byInput) const {
        for (int i = 0; i < reading.basis.count; ++i) {
            const double weight = reading.basis.by[static_cast<std::size_t>(order)][static_cast<std::size_t>(i)];
            byInput[reading.controlInput(i)] += weight * slope[0];
            byInput[reading.controlInput(i) + 1] += weight * slope[1];
        }
        if (reading.moves()) {
            const Vec2 next = derivative(reading, inputs, values, order + 1);
            byInput[0] += slope[0] * next.x + slope[1] * next.y;
        }
    }
};

using Rows = std::array<double, EquationSet::kMaxRows>;

template <int N>
Rows lineariseWith(const LocalReader& reader, const double* locals, std::vector<double>& slopes) {
    std::array<Dual<N>, N> seeds;
    for (int i = 0; i < reader.equation.locals; ++i)
        seeds[static_cast<std::size_t>(i)] = Dual<N>::variable(locals[i], i);
    std::array<Dual<N>, EquationSet::kMaxRows> out;
    formulas::evaluate(reader.equation, seeds.data(), out.data());
    Rows rows{};
    for (std::size_t row = 0; row < reader.equation.rows; ++row) {
        rows[row] = out[row].value;
        reader.spread(out[row].slope.data(),
                      slopes.data() + row * static_cast<std::size_t>(reader.equation.inputCount));
    }
    return rows;
}

Rows lineariseLocals(const LocalReader& reader, const double* locals, std::vector<double>& slopes) {
    const int count = reader.equation.locals;
    if (count <= 4)
        return lineariseWith<4>(reader, locals, slopes);
    if (count <= 8)
        return lineariseWith<8>(reader, locals, slopes);
    if (count <= 10)
        return lineariseWith<10>(reader, locals, slopes);
    if (count <= 12)
        return lineariseWith<12>(reader, locals, slopes);
    return lineariseWith<EquationSet::kMaxLocals>(reader, locals, slopes);
}

/// What a wish misses is taken off the first row; it is the last input.
void takeSlack(const Equation& equation, std::span<const double> values, Rows& rows, std::vector<double>& slopes) {
    rows[0] -= values[static_cast<std::size_t>(equation.slack)];
    const auto inputs = static_cast<std::size_t>(equation.inputCount);
    for (std::size_t row = 0; row < equation.rows; ++row)
        slopes[(row + 1) * inputs - 1] = row == 0 ? -1.0 : 0.0;
}

/// Of closed forms every input is a local.
void readDirectly(const EquationSet& set, const Equation& equation, std::span<const double> values, double* locals) {
    const int* inputs = set.inputs.data() + equation.firstInput;
    for (int i = 0; i < equation.locals; ++i)
        locals[i] = values[static_cast<std::size_t>(inputs[i])];
}

/// The inputs of a user's own function, as it wants them.
std::array<double, ResidualFunction::kMaxInputs> inputsOfFunction(const EquationSet& set, const Equation& equation,
                                                                  std::span<const double> values) {
    std::array<double, ResidualFunction::kMaxInputs> read{};
    const auto inputs = set.inputsOf(equation);
    assert(inputs.size() <= read.size());
    for (std::size_t k = 0; k < inputs.size(); ++k)
        read[k] = values[static_cast<std::size_t>(inputs[k])];
    return read;
}

const ResidualFunction& functionOf(const EquationSet& set, const Equation& equation) {
    return *set.functions[static_cast<std::size_t>(equation.function)];
}

}  // namespace

void EquationSet::add(Equation form, std::initializer_list<Operand> operands) {
    assert(operands.size() <= form.operands.size() && form.rows >= 1 && form.rows <= kMaxRows);
    form.firstInput = static_cast<int>(inputs.size());
    std::size_t k = 0;
    int locals = 0;
    for (const Operand& operand : operands) {
        form.operands[k] = operand.kind;
        locals += localCount(operand.kind);
        if (isSpline(operand.kind)) {
            form.splineUses[k] = static_cast<int>(splineUses.size());
            splineUses.push_back(operand.use);
        }
        inputs.insert(inputs.end(), operand.inputs.begin(), operand.inputs.end());
        ++k;
    }
    if (form.slack >= 0)
        inputs.push_back(form.slack);
    assert(form.function >= 0 || locals <= kMaxLocals);
    form.locals = static_cast<std::uint8_t>(locals);
    form.isClosed = hasClosedForm(form);
    form.inputCount = static_cast<int>(inputs.size()) - form.firstInput;
    equations.push_back(form);
}

Rows residuals(const EquationSet& set, const Equation& equation, std::span<const double> values) {
    Rows rows{};
    if (equation.function >= 0) {
        functionOf(set, equation).evaluate(inputsOfFunction(set, equation, values).data(), rows.data());
        return rows;
    }
    std::array<double, EquationSet::kMaxLocals> locals;
    if (equation.isClosed)
        readDirectly(set, equation, values, locals.data());
    if (!equation.isClosed || !evaluateClosed(equation, locals.data(), rows.data())) {
        LocalReader{set, equation, values}.read(locals.data());
        formulas::evaluate(equation, locals.data(), rows.data());
    }
    if (equation.slack >= 0)
        rows[0] -= values[static_cast<std::size_t>(equation.slack)];
    return rows;
}

Rows linearise(const EquationSet& set, const Equation& equation, std::span<const double> values,
               std::vector<double>& slopes) {
    if (!equation.isClosed)
        return lineariseByDuals(set, equation, values, slopes);
    const auto inputs = static_cast<std::size_t>(equation.inputCount);
    slopes.resize(equation.rows * inputs);
    std::array<double, EquationSet::kMaxLocals> locals;
    readDirectly(set, equation, values, locals.data());
    Rows rows{};
    if (!lineariseClosed(equation, locals.data(), rows.data(), slopes.data(), inputs))
        return lineariseByDuals(set, equation, values, slopes);
    if (equation.slack >= 0)
        takeSlack(equation, values, rows, slopes);
    return rows;
}

Rows lineariseByDuals(const EquationSet& set, const Equation& equation, std::span<const double> values,
                      std::vector<double>& slopes) {
    slopes.resize(static_cast<std::size_t>(equation.rows) * static_cast<std::size_t>(equation.inputCount));
    Rows rows{};
    if (equation.function >= 0) {
        functionOf(set, equation).linearise(inputsOfFunction(set, equation, values).data(), rows.data(), slopes.data());
        return rows;
    }
    std::array<double, EquationSet::kMaxLocals> locals;
    const LocalReader reader{set, equation, values};
    reader.read(locals.data());
    rows = lineariseLocals(reader, locals.data(), slopes);
    if (equation.slack >= 0)
        takeSlack(equation, values, rows, slopes);
    return rows;
}

double senseOf(const EquationSet& set, const Equation& equation, std::span<const double> values) {
    std::array<double, EquationSet::kMaxLocals> locals;
    if (equation.isClosed && equation.residualKind == ResidualKind::directions) {
        readDirectly(set, equation, values, locals.data());
        return senseOfClosed(equation, locals.data());
    }
    LocalReader{set, equation, values}.read(locals.data());
    const formulas::Meeting<double> m = formulas::meeting(equation, locals.data());
    return formulas::dot(m.first.direction(m.point), m.second.direction(m.point));
}

}  // namespace holdfast::solver::detail
