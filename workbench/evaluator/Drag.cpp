#include "workbench/evaluator/Drag.h"

#include <algorithm>
#include <cmath>

#include "workbench/evaluator/Workspace.h"

namespace holdfast {

namespace {

/// Weight of a handle against other values: compliance 1e-9 in the squares.
constexpr double kHandleEmphasis = 3e4;

/// Handles closer to their goals than this part of the figure's size have reached them.
constexpr double kReached = 1e-7;

/// Wider rings are worth it when they bring the handles nearer by this much.
constexpr double kWorthwhile = 0.9;

constexpr int kFirstRings = 2;

std::size_t at(int i) {
    return static_cast<std::size_t>(i);
}

}  // namespace

struct DragSession::State {
    Figure& figure;
    std::vector<int> handles;
    Reach reach;
    Workspace workspace;
    std::vector<int> seeds;
    std::vector<double> goals;
    std::unique_ptr<Region> region;
    std::vector<int> entities;  ///< of the region
    int rings = kFirstRings;
    bool isWidest = false;

    State(Figure& f, std::vector<int> h, Reach r)
        : figure(f), handles(std::move(h)), reach(r), workspace(figure, buildSystem(figure)) {
        for (const int v : handles) {
            if (const int unknown = workspace.system().links[at(v)].unknown; unknown >= 0)
                seeds.push_back(unknown);
        }
        std::sort(seeds.begin(), seeds.end());
        seeds.erase(std::unique(seeds.begin(), seeds.end()), seeds.end());
        makeRegion();
    }

    void makeRegion() {
        Neighbourhood& neighbourhood = workspace.neighbourhood();
        const Neighbourhood::Rings around = reach == Reach::part
                                                ? Neighbourhood::Rings{neighbourhood.partOf(seeds), true}
                                                : neighbourhood.around(seeds, rings);
        isWidest = around.isWhole;
        region = std::make_unique<Region>(workspace.system(), around.unknowns);
        entities = workspace.entitiesOf(around.unknowns);
    }

    double miss() {
        const EquationSystem& system = workspace.system();
        double worst = 0.0;
        for (std::size_t i = 0; i < goals.size(); ++i) {
            const std::size_t v = at(handles[i]);
            worst = std::max(worst, std::abs(system.values[v] - goals[i]) * system.metric[v]);
        }
        return worst;
    }

    void setGoals(std::span<const double> wanted) {
        goals.assign(wanted.begin(), wanted.end());
        for (std::size_t i = 0; i < goals.size(); ++i)
            workspace.wish(handles[i], goals[i], kHandleEmphasis);
    }

    /// Tries wider and wider regions until the handles are there or a wider one no longer helps.
    Attempt solve() {
        const std::vector<double> before = region->read();
        Attempt attempt = workspace.trySettling(*region, before, {});
        int iterations = attempt.iterations;
        while (!isWidest && (!attempt.isSolved || miss() > kReached * workspace.system().size)) {
            const bool wasSolved = attempt.isSolved;
            const double missBefore = miss();
            const std::vector<double> found = region->read();
            std::unique_ptr<Region> narrow = std::move(region);
            if (!wasSolved)
                narrow->write(before);
            rings *= 2;
            makeRegion();
            attempt = workspace.trySettling(*region, region->read(), {});
            iterations += attempt.iterations;
            if (wasSolved && (!attempt.isSolved || miss() > kWorthwhile * missBefore)) {
                keepNarrow(std::move(narrow), found);
                attempt.isSolved = true;
                break;
            }
        }
        attempt.iterations = iterations;
        return attempt;
    }

    /// Where the way to the goals is barred, another way may be open from where the session began.
    Attempt solveFromStart(Attempt attempt) {
        const double missBefore = miss();
        if (attempt.isSolved && (attempt.isNearest || missBefore <= kReached * workspace.system().size))
            return attempt;
        const std::vector<double> found = region->read();
        std::vector<double> x;
        for (const int u : region->unknowns())
            x.push_back(workspace.system().meanOf(u, workspace.startValues()));
        Attempt again = workspace.trySettling(*region, x, {});
        again.iterations += attempt.iterations;
        if (again.isSolved && (!attempt.isSolved || miss() < kWorthwhile * missBefore))
            return again;
        region->write(found);
        attempt.iterations = again.iterations;
        return attempt;
    }

    /// The wider region did not help: back to the narrow one's solution, which no later step widens again.
    void keepNarrow(std::unique_ptr<Region> narrow, std::span<const double> found) {
        undo();
        region = std::move(narrow);
        region->write(found);
        entities = workspace.entitiesOf(region->unknowns());
        rings /= 2;
        isWidest = true;
    }

    /// The system's values of the region as the figure has them.
    void undo() {
        EquationSystem& system = workspace.system();
        for (const int u : region->unknowns()) {
            for (const int v : system.valuesOfUnknown[u]) {
                if (v < system.figureValueCount)
                    system.values[at(v)] = figure.values[at(v)];
            }
        }
    }

    void takeOver(SolveResult& result) {
        const EquationSystem& system = workspace.system();
        for (const int number : entities) {
            const FigureEntity& entity = figure.entities[at(number)];
            double way = 0.0;
            for (std::size_t v = at(entity.firstValue); v < at(entity.firstValue + entity.valueCount); ++v) {
                way = std::max(way, std::abs(system.values[v] - figure.values[v]) * system.metric[v]);
                figure.values[v] = system.values[v];
            }
            if (way > 0.0)
                result.movements.push_back({number, way});
        }
        result.status = result.movements.empty() ? SolveStatus::unchanged : SolveStatus::solved;
    }
};

DragSession::DragSession(Figure& figure, std::vector<int> handles, Reach reach)
    : m_state(std::make_unique<State>(figure, std::move(handles), reach)) {}

DragSession::~DragSession() = default;
DragSession::DragSession(DragSession&&) noexcept = default;
DragSession& DragSession::operator=(DragSession&&) noexcept = default;

SolveResult DragSession::step(std::span<const double> goals) {
    State& state = *m_state;
    state.setGoals(goals);
    const Attempt attempt = state.solveFromStart(state.solve());
    SolveResult result;
    result.iterations = attempt.iterations;
    result.residual = attempt.residual;
    result.flaw = attempt.flaw;
    if (attempt.isSolved) {
        state.takeOver(result);
        return result;
    }
    result.status = attempt.flaw ? SolveStatus::ruined : SolveStatus::unreached;
    state.undo();
    return result;
}

double DragSession::miss() const {
    return m_state->miss();
}

int DragSession::freedom() const {
    return m_state->region->columnCount();
}

}  // namespace holdfast
