#include "hosting/DocumentSketch.h"

#include <cassert>
#include <limits>

#include "hosting/evaluator/EditRequest.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/diagnosis/Diagnose.h"
#include "solver/src/diagnosis/Extract.h"
#include "solver/src/diagnosis/FreeMotions.h"
#include "solver/src/diagnosis/OwnFreedom.h"
#include "solver/src/sketch/Measure.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::hosting {

struct DocumentSketch::Inside {
    SketchData sketch;
};

namespace {

template <class Work>
auto asUnsolvable(const Work& work) {
    try {
        return work();
    } catch (const SketchError& error) {
        throw UnsolvableDocument(error.what());
    }
}

std::vector<std::size_t> numbersOf(const std::vector<int>& list) {
    return {list.begin(), list.end()};
}

Ending endingOf(SolveStatus status) {
    switch (status) {
        case SolveStatus::unchanged:
            return Ending::unchanged;
        case SolveStatus::solved:
            return Ending::solved;
        case SolveStatus::conflicting:
            return Ending::conflicting;
        case SolveStatus::degenerate:
            return Ending::degenerate;
        case SolveStatus::unreached:
            break;
    }
    return Ending::unreached;
}

std::vector<DocumentDiagnosis::Redundancy> numbered(const std::vector<Redundancy>& found) {
    std::vector<DocumentDiagnosis::Redundancy> redundant;
    redundant.reserve(found.size());
    for (const Redundancy& redundancy : found)
        redundant.push_back({static_cast<std::size_t>(redundancy.constraint), redundancy.isWhole});
    return redundant;
}

DocumentDiagnosis diagnosisOf(const Diagnosis& found) {
    DocumentDiagnosis diagnosis;
    diagnosis.freedom = found.freedom;
    for (const SketchPart& part : found.parts)
        diagnosis.parts.push_back({numbersOf(part.entities), part.freedom});
    diagnosis.redundant = numbered(found.redundant);
    for (const ConflictSet& conflict : found.conflicts)
        diagnosis.conflicts.push_back(numbersOf(conflict.constraints));
    diagnosis.worstResidual = found.worstViolation;
    return diagnosis;
}

DocumentSolution solutionOf(const SketchData& sketch, const SolveResult& found) {
    DocumentSolution solution;
    solution.ending = endingOf(found.status);
    solution.iterations = found.iterations;
    solution.residual = found.residual;
    if (found.worstConstraint >= 0)
        solution.worst = static_cast<std::size_t>(found.worstConstraint);
    solution.conflicting = numbersOf(found.conflicting);
    if (found.degeneracy)
        solution.complaint = found.degeneracy->what;
    solution.followed = found.reached ? found.reached->part : 0.0;
    solution.led = ledDimensions(sketch, found);
    for (const Movement& movement : found.movements)
        solution.movements.emplace_back(movement.entity, movement.distance);
    return solution;
}

}  // namespace

DocumentSketch::DocumentSketch(const Document& document)
    : m_inside(asUnsolvable([&] { return std::make_unique<Inside>(Inside{sketchFrom(document)}); })) {}
DocumentSketch::~DocumentSketch() = default;
DocumentSketch::DocumentSketch(DocumentSketch&&) noexcept = default;
DocumentSketch& DocumentSketch::operator=(DocumentSketch&&) noexcept = default;

double DocumentSketch::size() const {
    return m_inside->sketch.size();
}

std::vector<double> DocumentSketch::shortfalls() const {
    return asUnsolvable([&] { return violationsOf(m_inside->sketch); });
}

double DocumentSketch::shortfallOf(std::size_t constraint) const {
    assert(constraint < m_inside->sketch.constraints.size());
    const int number = static_cast<int>(constraint);
    try {
        return violationsOf(Extract(m_inside->sketch, {&number, 1}).sketch()).front();
    } catch (const SketchError&) {
        return std::numeric_limits<double>::infinity();
    }
}

double DocumentSketch::measured(std::size_t dimension) const {
    assert(dimension < m_inside->sketch.constraints.size());
    return asUnsolvable([&] { return solver::detail::measured(m_inside->sketch, static_cast<int>(dimension)); });
}

DocumentDiagnosis DocumentSketch::diagnose() const {
    return asUnsolvable([&] { return diagnosisOf(solver::detail::diagnose(m_inside->sketch)); });
}

DocumentSketch::Redundancies DocumentSketch::redundancies() const {
    return asUnsolvable([&] {
        const auto found = solver::detail::redundanciesOf(m_inside->sketch);
        return Redundancies{numbered(found.constraints), found.equations};
    });
}

std::vector<std::size_t> DocumentSketch::ownFreedoms() const {
    return asUnsolvable([&] { return numbersOf(solver::detail::constraintsWithOwnFreedom(m_inside->sketch)); });
}

std::vector<EntityMotions> DocumentSketch::freeMotions() const {
    return asUnsolvable([&] { return freeMotionsOf(m_inside->sketch); });
}

DocumentSolution DocumentSketch::solve(const Manner& manner) {
    return asUnsolvable([&] {
        const SolveResult found = solver::detail::solve(
            m_inside->sketch,
            {.keepsShapes = manner.keepsShapes, .threads = 0, .namesConflicts = manner.namesConflicts});
        return solutionOf(m_inside->sketch, found);
    });
}

void DocumentSketch::writeTo(Document& document) const {
    applySketch(m_inside->sketch, document);
}

}  // namespace holdfast::hosting
