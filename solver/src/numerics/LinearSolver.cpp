#include "solver/src/numerics/LinearSolver.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <Eigen/SparseCholesky>

namespace holdfast::solver::detail {

namespace {

using Matrix = Eigen::SparseMatrix<double, Eigen::ColMajor, int>;
using Vector = Eigen::VectorXd;

using Permutation = Eigen::AMDOrdering<int>::PermutationType;

/// The orderings that were found last on this thread: the places of a drag lead to the same few patterns again and
/// again, and looking whether one is known takes a twentieth of ordering it. Small ones are ordered as fast.
class KnownOrderings {
public:
    static KnownOrderings& ofThisThread() {
        thread_local KnownOrderings known;
        return known;
    }

    const Permutation* find(const Matrix& matrix) const {
        for (const Known& known : m_known)
            if (matrix.cols() >= kSmall && known.starts.size() == static_cast<std::size_t>(matrix.cols()) + 1 &&
                known.rows.size() == static_cast<std::size_t>(matrix.nonZeros()) &&
                std::equal(known.starts.begin(), known.starts.end(), matrix.outerIndexPtr()) &&
                std::equal(known.rows.begin(), known.rows.end(), matrix.innerIndexPtr()))
                return &known.permutation;
        return nullptr;
    }

    void add(const Matrix& matrix, const Permutation& permutation) {
        if (matrix.cols() < kSmall || matrix.nonZeros() > kLarge)
            return;
        Known& known = m_known[m_next];
        m_next = (m_next + 1) % m_known.size();
        known.starts.assign(matrix.outerIndexPtr(), matrix.outerIndexPtr() + matrix.cols() + 1);
        known.rows.assign(matrix.innerIndexPtr(), matrix.innerIndexPtr() + matrix.nonZeros());
        known.permutation = permutation;
    }

private:
    static constexpr Eigen::Index kSmall = 200, kLarge = 500'000;  // columns, and entries: two megabytes
    struct Known {
        std::vector<int> starts, rows;
        Permutation permutation;
    };
    std::array<Known, 8> m_known;
    std::size_t m_next = 0;
};

/// Approximate minimum degree of a matrix that comes with both of its halves alike: Eigen's own adds its transpose to
/// it first, for the same ordering, which takes longer than finding that.
struct Ordering {
    using PermutationType = Permutation;
    void operator()(const Matrix& symmetric, PermutationType& permutation) const {
        KnownOrderings& known = KnownOrderings::ofThisThread();
        if (const Permutation* found = known.find(symmetric)) {
            permutation = *found;
            return;
        }
        Eigen::AMDOrdering<int>()(symmetric.selfadjointView<Eigen::Lower>(), permutation);
        known.add(symmetric, permutation);
    }
};

using Factors = Eigen::SimplicialLDLT<Matrix, Eigen::Lower, Ordering>;

/// Refinements of an answer: each gains the digits that the damping costs. They end at this part of the right side, or
/// when one leaves more than this part of the residual before.
constexpr int kMostRefinements = 4;
constexpr double kRounding = 1e-15, kGains = 0.25;

}  // namespace

struct LinearSolver::Data {
    int columns = 0, rows = 0;
    Matrix matrix;  // lower triangle: below each weight the curvature, then a column of J; last the damping
    std::vector<int> curvatureCounts;  // per column
    Factors factors;
    bool hasFactors = false;
    double multiplications = 0.0;  // of one factorisation; 0: not counted yet
    Vector inversePivots;
    Vector right, solution, residual, step, work;

    /// Squares of what each column of the factors holds.
    void count() {
        const Matrix& lower = factors.matrixL().nestedExpression();
        for (int j = 0; j < lower.cols(); ++j) {
            const double entries = lower.outerIndexPtr()[j + 1] - lower.outerIndexPtr()[j];
            multiplications += entries * entries;
        }
    }

    /// x = matrix^-1 b by the factors, in one pass down and one up.
    void apply(const Vector& b, Vector& x) {
        const Matrix& lower = factors.matrixL().nestedExpression();
        const int* place = factors.permutationP().indices().data();
        const int *starts = lower.outerIndexPtr(), *inner = lower.innerIndexPtr();
        const double* values = lower.valuePtr();
        const int size = static_cast<int>(b.size());
        work.resize(size);
        for (int i = 0; i < size; ++i)
            work[place[i]] = b[i];
        for (int j = 0; j < size; ++j) {
            const double y = work[j];
            for (int k = starts[j]; k < starts[j + 1]; ++k)
                work[inner[k]] -= values[k] * y;
        }
        for (int j = size - 1; j >= 0; --j) {
            double y = work[j] * inversePivots[j];
            for (int k = starts[j]; k < starts[j + 1]; ++k)
                y -= values[k] * work[inner[k]];
            work[j] = y;
        }
        x.resize(size);
        for (int i = 0; i < size; ++i)
            x[i] = work[place[i]];
    }

    /// residual = right - matrix * solution, without the damping.
    double computeResidual() {
        residual = right;
        const double* values = matrix.valuePtr();
        const int* inner = matrix.innerIndexPtr();
        const int* outer = matrix.outerIndexPtr();
        for (int j = 0; j < columns; ++j) {
            double sum = values[outer[j]] * solution[j];
            for (int k = outer[j] + 1; k < outer[j + 1]; ++k) {
                sum += values[k] * solution[inner[k]];
                residual[inner[k]] -= values[k] * solution[j];
            }
            residual[j] -= sum;
        }
        return residual.lpNorm<Eigen::Infinity>();
    }

    void refine() {
        double before = computeResidual();
        const double enough = kRounding * right.lpNorm<Eigen::Infinity>();
        for (int i = 0; i < kMostRefinements && before > enough; ++i) {
            apply(residual, step);
            solution += step;
            const double after = computeResidual();
            if (!(after < before)) {
                solution -= step;
                return;
            }
            if (after > kGains * before)
                return;
            before = after;
        }
    }
};

LinearSolver::LinearSolver() = default;
LinearSolver::~LinearSolver() = default;
LinearSolver::LinearSolver(LinearSolver&&) noexcept = default;
LinearSolver& LinearSolver::operator=(LinearSolver&&) noexcept = default;

void LinearSolver::analyse(const ColumnPattern& pattern, const ColumnPattern& curvature) {
    if (!m_data)
        m_data = std::make_unique<Data>();
    Data& d = *m_data;
    d.columns = pattern.columnCount();
    d.rows = pattern.rowCount;
    const int size = d.columns + d.rows;
    d.matrix.resize(size, size);
    d.matrix.resizeNonZeros(static_cast<int>(pattern.rows.size() + curvature.rows.size()) + size);
    const bool isCurved = curvature.columnCount() == d.columns;
    d.curvatureCounts.assign(static_cast<std::size_t>(d.columns), 0);
    int* outer = d.matrix.outerIndexPtr();
    int* inner = d.matrix.innerIndexPtr();
    int next = 0;
    for (int j = 0; j < d.columns; ++j) {
        outer[j] = next;
        inner[next++] = j;
        const auto column = static_cast<std::size_t>(j);
        for (int k = isCurved ? curvature.starts[column] : 0; isCurved && k < curvature.starts[column + 1]; ++k) {
            inner[next++] = curvature.rows[static_cast<std::size_t>(k)];
            ++d.curvatureCounts[column];
        }
        for (int k = pattern.starts[column]; k < pattern.starts[column + 1]; ++k)
            inner[next++] = d.columns + pattern.rows[static_cast<std::size_t>(k)];
    }
    for (int i = 0; i < d.rows; ++i) {
        outer[d.columns + i] = next;
        inner[next++] = d.columns + i;
    }
    outer[size] = next;
    std::fill_n(d.matrix.valuePtr(), next, 1.0);
    d.factors.analyzePattern(d.matrix);
    d.hasFactors = false;
    d.multiplications = 0.0;
}

bool LinearSolver::factorise(std::span<const double> weights, std::span<const double> jacobian,
                             std::span<const double> damping, std::span<const double> curvature) {
    Data& d = *m_data;
    double* values = d.matrix.valuePtr();
    const int* outer = d.matrix.outerIndexPtr();
    std::size_t next = 0, nextCurvature = 0;
    for (int j = 0; j < d.columns; ++j) {
        int k = outer[j];
        values[k++] = weights[static_cast<std::size_t>(j)];
        for (int i = 0; i < d.curvatureCounts[static_cast<std::size_t>(j)]; ++i)
            values[k++] = curvature[nextCurvature++];
        while (k < outer[j + 1])
            values[k++] = jacobian[next++];
    }
    for (int i = 0; i < d.rows; ++i)
        values[outer[d.columns + i]] = -damping[static_cast<std::size_t>(i)];
    d.factors.factorize(d.matrix);
    if (d.multiplications == 0.0)
        d.count();
    d.inversePivots = d.factors.vectorD().cwiseInverse();
    d.hasFactors = d.factors.info() == Eigen::Success && d.factors.vectorD().allFinite();
    return d.hasFactors;
}

bool LinearSolver::hasPattern() const {
    return m_data != nullptr;
}

bool LinearSolver::hasFactors() const {
    return m_data && m_data->hasFactors;
}

int LinearSolver::negativePivots() const {
    return static_cast<int>((m_data->factors.vectorD().array() < 0.0).count());
}

double LinearSolver::multiplications() const {
    return m_data ? m_data->multiplications : 0.0;
}

void LinearSolver::solve(std::span<double> g, std::span<double> h, bool isExact) {
    Data& d = *m_data;
    d.right.resize(d.columns + d.rows);
    d.right.head(d.columns) = Eigen::Map<const Vector>(g.data(), d.columns);
    d.right.tail(d.rows) = Eigen::Map<const Vector>(h.data(), d.rows);
    d.apply(d.right, d.solution);
    if (isExact)
        d.refine();
    Eigen::Map<Vector>(g.data(), d.columns) = d.solution.head(d.columns);
    Eigen::Map<Vector>(h.data(), d.rows) = d.solution.tail(d.rows);
}

}  // namespace holdfast::solver::detail
