#include <cmath>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>

#include "benchmarks/solver/Workloads.h"
#include "document/Names.h"
#include "solver/src/solving/Solve.h"

// Feeds the comparison with an independent solver. Without arguments: prints sketches as they were disturbed or edited,
// and our solutions, as JSON. With "resolve": reads solutions of somebody else, {case: values}, and prints how far each
// moves when it is solved again, {case: distance}.

namespace holdfast::solver::detail {

using namespace document;
namespace {

using Json = nlohmann::ordered_json;

struct Case {
    std::string name;
    Workload work;  ///< its sketch is where the solve begins
    bool isEdit = false;
    Vec2 goal;

    SolveRequest request() const {
        SolveRequest request{.reach = Scope::part};
        if (isEdit)
            request.targets = {{work.handle, goal.x}, {work.handle + 1, goal.y}};
        return request;
    }
};

Case disturbedCase(Workload work) {
    Case result{work.name + " disturbed", std::move(work), false, {}};
    disturb(result.work.sketch, 0.3);
    return result;
}

Case editedCase(Workload work) {
    const auto v = static_cast<std::size_t>(work.handle);
    const Vec2 goal{work.sketch.values[v] + 0.9, work.sketch.values[v + 1] + 0.4};
    return {work.name + " edited", std::move(work), true, goal};
}

std::vector<Case> allCases() {
    std::vector<Case> cases;
    for (const int size : {50, 100, 200}) {
        for (const auto make : {chainOf, gridOf, islandsOf, mechanismOf}) {
            Workload work = make(size);
            work.name += " of " + std::to_string(size);
            cases.push_back(disturbedCase(work));
            cases.push_back(editedCase(std::move(work)));
        }
    }
    return cases;
}

Json jsonOf(const SketchConstraint& constraint) {
    Json refs = Json::array();
    for (const SketchPlace& ref : constraint.refs) {
        const char* place = ref.kind == PlaceKind::end ? "end" : ref.kind == PlaceKind::start ? "start" : "whole";
        refs.push_back({{"entity", ref.entity}, {"place", place}});
    }
    return {{"type", std::string(typeName(constraint.type))}, {"refs", refs}};
}

Json solved(const Case& one) {
    Json entities = Json::array(), constraints = Json::array();
    for (const SketchEntity& entity : one.work.sketch.entities)
        entities.push_back({{"kind", entity.kind == EntityKind::arc ? "arc" : "line"}, {"first", entity.firstValue}});
    for (const SketchConstraint& constraint : one.work.sketch.constraints)
        constraints.push_back(jsonOf(constraint));
    SketchData sketch = one.work.sketch;
    const bool isSolved = solve(sketch, one.request()).isSolved();
    Json result{{"name", one.name},           {"size", sketch.size()},           {"entities", entities},
                {"constraints", constraints}, {"start", one.work.sketch.values}, {"solved", isSolved},
                {"values", sketch.values}};
    if (one.isEdit)
        result["edit"] = {{"value", one.work.handle}, {"goal", {one.goal.x, one.goal.y}}};
    return result;
}

double movedBySolving(const Case& one, const std::vector<double>& values) {
    SketchData sketch = one.work.sketch;
    sketch.values = values;
    if (!solve(sketch, one.request()).isSolved())
        return 1e300;
    double most = 0.0;
    for (std::size_t v = 0; v < values.size(); ++v)
        most = std::max(most, std::abs(sketch.values[v] - values[v]));
    return most;
}

void resolve(std::istream& in, std::ostream& out) {
    const Json others = Json::parse(in);
    Json result = Json::object();
    for (const Case& one : allCases()) {
        if (others.contains(one.name))
            result[one.name] = movedBySolving(one, others[one.name].get<std::vector<double>>());
    }
    out << result << '\n';
}

void print(std::ostream& out) {
    Json result = Json::array();
    for (const Case& one : allCases())
        result.push_back(solved(one));
    out << result << '\n';
}

}  // namespace
}  // namespace holdfast::solver::detail

int main(int count, char** words) {
    if (count > 1 && std::string(words[1]) == "resolve")
        holdfast::solver::detail::resolve(std::cin, std::cout);
    else
        holdfast::solver::detail::print(std::cout);
}
