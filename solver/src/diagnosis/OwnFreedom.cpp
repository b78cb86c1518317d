#include "solver/src/diagnosis/OwnFreedom.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "geometry/Vec2.h"
#include "solver/src/diagnosis/GaussianElimination.h"
#include "solver/src/residuals/EquationSystem.h"
#include "solver/src/residuals/Operands.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::solver::detail {

namespace {

using Entries = GaussianElimination::Entries;

/// The equations of a sketch as rows in its unknowns, and in how much each line turns and grows.
class LineRows {
public:
    explicit LineRows(const EquationSystem& given) : system(given), columnCount(given.unknownCount) {
        for (std::size_t e = 0; e < system.set.equations.size(); ++e)
            addEquation(static_cast<int>(e));
    }

    const EquationSystem& system;
    int columnCount;
    std::vector<Entries> rows;
    std::vector<int> equationOfRow;  ///< -1: what a line's own columns have to do with its ends

private:
    /// The columns of a line: how much it grows, and how far its end moves across it as it turns if it were as long as
    /// the sketch is wide.
    struct Line {
        int grows = -1, turns = -1;
        Vec2 along;
        double length = 0.0;
    };

    void addEquation(int e) {
        const Equation& equation = system.set.equations[at(e)];
        linearise(system.set, equation, system.values, m_slopes);
        const auto inputs = system.set.inputsOf(equation);
        for (std::size_t r = 0; r < equation.rows; ++r) {
            const std::span<double> slopes = std::span(m_slopes).subspan(r * inputs.size(), inputs.size());
            Entries row;
            takeLines(equation, inputs, slopes, row);
            for (std::size_t k = 0; k < inputs.size(); ++k)
                put(inputs[k], slopes[k], row);
            addRow(std::move(row), e);
        }
    }

    /// What an equation reads of lines, but not of where they are.
    void takeLines(const Equation& equation, std::span<const int> inputs, std::span<double> slopes, Entries& row) {
        std::size_t first = 0;
        for (const OperandKind kind : equation.operands) {
            if (kind == OperandKind::splinePoint || kind == OperandKind::splineJet)
                return;
            const auto count = static_cast<std::size_t>(localCount(kind));
            if (kind == OperandKind::segment && first + count <= inputs.size())
                takeLine(inputs.subspan(first, count), slopes.subspan(first, count), row);
            first += count;
        }
    }

    void takeLine(std::span<const int> inputs, std::span<double> slopes, Entries& row) {
        const Vec2 atStart{slopes[0], slopes[1]}, atEnd{slopes[2], slopes[3]};
        const double most = std::max(std::abs(atEnd.x), std::abs(atEnd.y));
        const Vec2 left = atStart + atEnd;
        const bool isOfPlace = std::max(std::abs(left.x), std::abs(left.y)) > GaussianElimination::kRounding * most;
        const Line* line = isOfPlace || !(most > 0.0) ? nullptr : lineOf(inputs);
        if (line == nullptr)
            return;
        const double growing = dot(atEnd, line->along), turning = dot(atEnd, leftOf(line->along));
        if (std::abs(growing) > GaussianElimination::kRounding * most)
            row.emplace_back(line->grows, growing);
        if (std::abs(turning) > GaussianElimination::kRounding * most)
            row.emplace_back(line->turns, turning * line->length / system.size);
        std::fill(slopes.begin(), slopes.end(), 0.0);
    }

    /// Null for one that cannot move, and for one without length.
    const Line* lineOf(std::span<const int> inputs) {
        const auto [found, isNew] = m_lines.try_emplace({inputs[0], inputs[2]});
        Line& line = found->second;
        if (!isNew)
            return line.grows < 0 ? nullptr : &line;
        const Vec2 way{valueOf(inputs[2]) - valueOf(inputs[0]), valueOf(inputs[3]) - valueOf(inputs[1])};
        const bool isHeld =
            std::none_of(inputs.begin(), inputs.end(), [&](int input) { return system.links[at(input)].unknown >= 0; });
        line.length = std::hypot(way.x, way.y);
        if (isHeld || !(line.length > 0.0))
            return nullptr;
        line.along = (1.0 / line.length) * way;
        line.grows = columnCount++;
        line.turns = columnCount++;
        const Vec2 turned = (line.length / system.size) * leftOf(line.along);
        addTie(inputs[0], inputs[2], {{line.grows, -line.along.x}, {line.turns, -turned.x}});
        addTie(inputs[1], inputs[3], {{line.grows, -line.along.y}, {line.turns, -turned.y}});
        return &line;
    }

    double valueOf(int value) const { return system.values[at(value)]; }

    void addTie(int start, int end, Entries row) {
        put(start, -1.0, row);
        put(end, 1.0, row);
        addRow(std::move(row), -1);
    }

    void put(int value, double slope, Entries& row) const {
        const ValueLink& link = system.links[at(value)];
        if (link.unknown >= 0 && slope != 0.0)
            row.emplace_back(link.unknown, link.sign * slope / system.metric[at(value)]);
    }

    /// With one entry for each column that it has.
    void addRow(Entries row, int equation) {
        double most = 0.0;
        for (const auto& [column, value] : row)
            most = std::max(most, std::abs(value));
        std::sort(row.begin(), row.end());
        Entries summed;
        for (const auto& [column, value] : row) {
            if (summed.empty() || summed.back().first != column)
                summed.emplace_back(column, 0.0);
            summed.back().second += value;
        }
        std::erase_if(summed,
                      [&](const auto& e) { return std::abs(e.second) <= GaussianElimination::kRounding * most; });
        rows.push_back(std::move(summed));
        equationOfRow.push_back(equation);
    }

    std::map<std::pair<int, int>, Line> m_lines;  ///< by the first values of start and end
    std::vector<double> m_slopes;
};

/// Takes rows away that have a column which no other row has any more, and which weighs enough in them to be a pivot.
class Peeling {
public:
    explicit Peeling(const LineRows& rows) : m_rows(rows), m_isTaken(rows.rows.size(), 0) {
        std::vector<std::pair<int, int>> uses;
        for (std::size_t r = 0; r < rows.rows.size(); ++r)
            for (const auto& [column, value] : rows.rows[r])
                uses.emplace_back(column, static_cast<int>(r));
        m_rowsOf = tabulate(rows.columnCount, uses);
        for (int column = 0; column < rows.columnCount; ++column) {
            m_useCount.push_back(static_cast<int>(m_rowsOf[column].size()));
            if (m_useCount.back() == 1)
                m_single.push_back(column);
        }
    }

    /// By row.
    std::vector<char> run() {
        while (!m_single.empty()) {
            const int column = m_single.back();
            m_single.pop_back();
            for (const int row : m_rowsOf[column])
                if (!m_isTaken[at(row)] && isPivot(m_rows.rows[at(row)], column))
                    take(row);
        }
        return std::move(m_isTaken);
    }

private:
    static bool isPivot(const Entries& row, int column) {
        double most = 0.0, own = 0.0;
        for (const auto& [each, value] : row) {
            most = std::max(most, std::abs(value));
            if (each == column)
                own = std::abs(value);
        }
        return own >= GaussianElimination::kPivotThreshold * most;
    }

    void take(int row) {
        m_isTaken[at(row)] = 1;
        for (const auto& [column, value] : m_rows.rows[at(row)])
            if (--m_useCount[at(column)] == 1)
                m_single.push_back(column);
    }

    const LineRows& m_rows;
    std::vector<char> m_isTaken;
    ListTable m_rowsOf;
    std::vector<int> m_useCount;  ///< by column: rows that have it and are still there
    std::vector<int> m_single;    ///< columns of one row
};

/// Rows of each constraint, nothing merged, and what was found spare while merging.
std::vector<int> rowCounts(const SketchData& sketch, const EquationSystem& merged) {
    std::vector<int> counts(sketch.constraints.size(), 0);
    for (const Equation& equation : buildPlainSystem(sketch, bindingConstraints(sketch)).set.equations)
        if (equation.constraint >= 0)
            counts[at(equation.constraint)] += equation.rows;
    for (const SpareCount& spare : merged.spares)
        if (spare.constraint >= 0)
            counts[at(spare.constraint)] += spare.equations;
    return counts;
}

}  // namespace

bool nearlyHolds(const SketchData& sketch, const SketchConstraint& constraint, double violation, double size) {
    double smallest = size;
    for (const SketchPlace& place : constraint.refs)
        smallest = std::min(smallest, sizeOf(sketch, curveOf(place), size));
    return violation <= kNearly * smallest;
}

void putOnEquations(EquationSystem& system) {
    for (int u = 0; u < system.unknownCount; ++u)
        system.assign(u, system.meanOf(u));
    for (std::size_t v = 0; v < system.values.size(); ++v)
        if (system.links[v].unknown < 0)
            system.values[v] = system.links[v].offset;
}

std::vector<char> rowsWithOwnFreedom(const EquationSystem& system) {
    const LineRows rows(system);
    const std::vector<char> isTaken = Peeling(rows).run();
    std::vector<char> isOwn;
    for (std::size_t r = 0; r < isTaken.size(); ++r)
        if (rows.equationOfRow[r] >= 0)
            isOwn.push_back(isTaken[r]);
    return isOwn;
}

std::vector<int> constraintsWithOwnFreedom(const SketchData& sketch) {
    EquationSystem system = buildSystem(sketch);
    putOnEquations(system);
    const std::vector<char> isOwn = rowsWithOwnFreedom(system);
    // What of a constraint was merged stands among the others for good.
    std::vector<int> left = rowCounts(sketch, system);
    std::vector<char> isSaid(sketch.constraints.size(), 0);
    std::size_t r = 0;
    for (const Equation& equation : system.set.equations)
        for (std::size_t k = 0; k < equation.rows; ++k, ++r)
            if (equation.constraint >= 0 && isOwn[r]) {
                --left[at(equation.constraint)];
                isSaid[at(equation.constraint)] = 1;
            }
    const std::vector<double> misses = violationsOf(sketch);
    std::vector<int> own;
    for (std::size_t c = 0; c < left.size(); ++c)
        if (isSaid[c] && left[c] == 0 && nearlyHolds(sketch, sketch.constraints[c], misses[c], system.size))
            own.push_back(static_cast<int>(c));
    return own;
}

}  // namespace holdfast::solver::detail
