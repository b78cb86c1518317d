#include <cmath>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>

#include "benchmarks/solver/Workloads.h"
#include "workbench/drawing/Names.h"
#include "workbench/evaluator/Solve.h"

// Feeds the comparison with an independent solver. Without arguments: prints figures as they were disturbed or edited,
// and our solutions, as JSON. With "resolve": reads solutions of somebody else, {case: values}, and prints how far each
// moves when it is solved again, {case: distance}.

namespace holdfast {
namespace {

using Json = nlohmann::ordered_json;

struct Case {
    std::string name;
    Workload work;  ///< its figure is where the solve begins
    bool isEdit = false;
    Vec2 goal;

    SolveRequest request() const {
        SolveRequest request{.reach = Reach::part};
        if (isEdit)
            request.targets = {{work.handle, goal.x}, {work.handle + 1, goal.y}};
        return request;
    }
};

Case disturbedCase(Workload work) {
    Case result{work.name + " disturbed", std::move(work), false, {}};
    disturb(result.work.figure, 0.3);
    return result;
}

Case editedCase(Workload work) {
    const auto v = static_cast<std::size_t>(work.handle);
    const Vec2 goal{work.figure.values[v] + 0.9, work.figure.values[v + 1] + 0.4};
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

Json jsonOf(const FigureConstraint& constraint) {
    Json refs = Json::array();
    for (const FigurePlace& ref : constraint.refs) {
        const char* place = ref.kind == PlaceKind::end ? "end" : ref.kind == PlaceKind::start ? "start" : "whole";
        refs.push_back({{"entity", ref.entity}, {"place", place}});
    }
    return {{"type", std::string(typeName(constraint.type))}, {"refs", refs}};
}

Json solved(const Case& one) {
    Json entities = Json::array(), constraints = Json::array();
    for (const FigureEntity& entity : one.work.figure.entities)
        entities.push_back({{"kind", entity.kind == FigureKind::arc ? "arc" : "line"}, {"first", entity.firstValue}});
    for (const FigureConstraint& constraint : one.work.figure.constraints)
        constraints.push_back(jsonOf(constraint));
    Figure figure = one.work.figure;
    const bool isSolved = solve(figure, one.request()).isSolved();
    Json result{{"name", one.name},           {"size", figure.size()},           {"entities", entities},
                {"constraints", constraints}, {"start", one.work.figure.values}, {"solved", isSolved},
                {"values", figure.values}};
    if (one.isEdit)
        result["edit"] = {{"value", one.work.handle}, {"goal", {one.goal.x, one.goal.y}}};
    return result;
}

double movedBySolving(const Case& one, const std::vector<double>& values) {
    Figure figure = one.work.figure;
    figure.values = values;
    if (!solve(figure, one.request()).isSolved())
        return 1e300;
    double most = 0.0;
    for (std::size_t v = 0; v < values.size(); ++v)
        most = std::max(most, std::abs(figure.values[v] - values[v]));
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
}  // namespace holdfast

int main(int count, char** words) {
    if (count > 1 && std::string(words[1]) == "resolve")
        holdfast::resolve(std::cin, std::cout);
    else
        holdfast::print(std::cout);
}
