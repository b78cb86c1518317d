#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <holdfast/solver/FreeMotion.h>
#include <holdfast/solver/Solve.h>

#include "document/Document.h"
#include "hosting/Uses.h"
#include "hosting/evaluator/Evaluation.h"

namespace holdfast::hosting {

using solver::Ending;
using solver::EntityMotions;
using solver::FreeMotion;
using solver::MotionKind;

/// The solver can make nothing of a constraint or of a shape: what, where, and what would do.
class UnsolvableDocument : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A drawing's degrees of freedom and what is too much in it. Entities and constraints are told by their numbers in the
/// document, from 0, and listed by them.
struct DocumentDiagnosis {
    /// Entities that constraints tie together.
    struct Part {
        std::vector<std::size_t> entities;
        int freedom = 0;  ///< numbers that remain to be chosen
    };
    /// A constraint that others imply, all of it or some of its equations.
    struct Redundancy {
        std::size_t constraint = 0;
        bool isWhole = false;
    };

    int freedom = 0;                                  ///< of the whole drawing
    std::vector<Part> parts;                          ///< by their first entity; fixed entities belong to none
    std::vector<Redundancy> redundant;                ///< of two that imply each other the later one
    std::vector<std::vector<std::size_t>> conflicts;  ///< sets of constraints that cannot hold together
    double worstResidual = 0.0;                       ///< of the constraint that holds worst, as a length
};

/// What a solve of a drawing came to, in the document's numbers.
struct DocumentSolution {
    Ending ending = Ending::unchanged;  ///< unchanged, solved, conflicting, degenerate or unreached
    int iterations = 0;
    double residual = 0.0;                                  ///< of the constraint that holds worst, as a length
    std::optional<std::size_t> worst;                       ///< that one; nothing: none, or a rule of an entity
    std::vector<std::size_t> conflicting;                   ///< constraints that cannot hold together
    std::string complaint;                                  ///< degenerate: "line g3 would have no length"
    double followed = 0.0;                                  ///< not solved: the part of its way that could be followed
    std::vector<LedDimension> led;                          ///< not solved: how far dimensions could be led
    std::vector<std::pair<std::size_t, double>> movements;  ///< entities that moved, and how far

    bool isSolved() const { return ending == Ending::solved || ending == Ending::unchanged; }
};

/// A drawing as the solver sees it: for those who have a question to the solver about a plain drawing, or want it
/// solved, and need not know how it works. Every function but size and writeTo throws UnsolvableDocument.
class DocumentSketch {
public:
    /// Reads the document once; it may change or go afterwards. Linear in it.
    explicit DocumentSketch(const Document& document);
    ~DocumentSketch();
    DocumentSketch(DocumentSketch&&) noexcept;
    DocumentSketch& operator=(DocumentSketch&&) noexcept;

    /// The diagonal of the box around the drawing; 1 for one without extent.
    double size() const;

    /// How far each constraint is from holding, in the document's order: its largest residual, as a length; 0 for those
    /// that are switched off or only measure. One more number at the end: the rules of the entities themselves (an
    /// arc's ends lie on it), the worst of them. Linear in the drawing.
    std::vector<double> shortfalls() const;
    /// The same for a single one, at the cost of its entities; infinite when they cannot have it.
    double shortfallOf(std::size_t constraint) const;
    /// What a dimension measures now: a length, or radians.
    double measured(std::size_t dimension) const;

    /// Near to linear in the drawing; each conflict costs many solves of the part concerned.
    DocumentDiagnosis diagnose() const;
    /// What others imply, as if no constraints were in conflict. Cost: an elimination of all equations.
    struct Redundancies {
        std::vector<DocumentDiagnosis::Redundancy> constraints;
        int equations = 0;  ///< which of them are spare is a choice in part, how many is none
    };
    Redundancies redundancies() const;
    /// Constraints that the others neither imply nor hinder, as each nearly holds and has something that it alone
    /// can move: many of those that there are, in the document's order. Redundancy and contradiction are to be looked
    /// for beside them. Near to linear in the drawing.
    std::vector<std::size_t> ownFreedoms() const;
    /// How each entity can move, in the document's order. A factorisation of the drawing, and up to 24 solves with it.
    std::vector<EntityMotions> freeMotions() const;

    /// Whether shapes are kept where shifting and turning will do, and whether a failed solve searches for the
    /// constraints in conflict, which costs many solves.
    struct Manner {
        bool keepsShapes = false;
        bool namesConflicts = true;
    };
    /// Moves the entities as little as it takes for all constraints to hold; when that cannot be, nothing moves.
    DocumentSolution solve(const Manner& manner);

    /// Writes where the entities are into the document that was read, shapes that did not move untouched to the last
    /// bit, and measured dimensions at what they measure now.
    void writeTo(Document& document) const;

private:
    struct Inside;
    std::unique_ptr<Inside> m_inside;
};

}  // namespace holdfast::hosting
