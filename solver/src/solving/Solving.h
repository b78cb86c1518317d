#pragma once

#include <optional>
#include <vector>

#include "solver/src/sketch/Corners.h"
#include "solver/src/sketch/SmoothJoins.h"
#include "solver/src/solving/Following.h"
#include "solver/src/solving/Loan.h"
#include "solver/src/solving/Solve.h"
#include "solver/src/solving/Trying.h"
#include "solver/src/solving/Way.h"

namespace holdfast::solver::detail {

/// One request, by all ways that there are.
class Solving {
public:
    Solving(SketchData& sketch, const SolveRequest& request);
    Solving(const Solving&) = delete;
    Solving& operator=(const Solving&) = delete;

    Answer run();

    /// The sketch is as it was from here on; nothing is to be tried after it.
    void giveBack() { m_loan.giveBack(); }

    /// Names what stands in the way, once.
    void explain(const SketchData& asked, Answer& answer);

    const std::vector<ValueGoal>& values() const { return m_values; }
    double secondsExplaining() const { return m_secondsExplaining; }
    double secondsBuilding() const { return m_trying.secondsBuilding(); }
    long work() const { return m_trying.work(); }
    long factorWork() const { return m_trying.factorWork(); }

private:
    Task task(RelaxationLevel level, bool isQuick) const;

    void setGoals() { m_way->setValuesAt(1.0, m_work); }

    /// With the edited entities' other places where they were, if that can be.
    Answer tryKeepingPlaces(Task task);

    /// Where a corner would turn over, its sides are kept from turning if that can be: then they grow or shrink.
    Answer reach(RelaxationLevel level);

    /// Where a dimension becomes a part of what it was, others may have to shrink as much more. They do so only if they
    /// have to.
    Answer shrinkingLess(Answer answer);

    Answer reachAsItComes(RelaxationLevel level);

    /// Where a way has ended, or has led over something that points the other way after it, it is followed again with
    /// what came to nothing there counting more, as long as that leads farther.
    Answer followSparing(Answer followed, bool isAnswered);

    /// An edit that no way leads to may stand where no slope tells one.
    Answer tryNudged(Answer failed);

    /// A plain solve that has failed: dimensions that do not hold are led from what they measure.
    Answer leadDimensions(Answer failed);

    /// A plain solve that has failed by all these ways. What is known to contradict itself begins nowhere else.
    Answer mend(Answer failed);

    /// What the answer concerns and the edit does not name.
    std::vector<int> notNamed(const Answer& answer) const;

    bool isReversed(const Answer& answer) const { return isReversed(answer, m_way->start()); }

    bool isReversed(const Answer& answer, std::span<const double> before) const;

    bool isDoubtful(const Answer& answer) const;

    /// Entities at corners that turn to the other side, but for those that the edit itself moves.
    std::vector<int> turnedOver(const Answer& answer) const;

    /// Those where what the edit itself moves does not meet anything.
    const SmoothJoins& smoothJoins() const;

    /// What the edit itself moves, ascending.
    std::vector<int> movedEntities() const;

    bool isLessSurprising(const Answer& answer, const Answer& other) const;

    /// Nothing but the edited entities has moved yet.
    bool isAtBeginning() const { return m_way->start() == m_work.reference; }

    /// From where everything that is connected with the edited entities has gone along with them. What has an answer
    /// already is worth it only for a turn.
    Answer tryCarried(bool isAnswered);

    /// What would change its shape to stay near goes along, if then nothing changes its shape.
    Answer orAlong(Answer answer);

    /// As near as can be to where everything has gone along with the edited entities: then nothing needs to bend.
    Answer goAlong();

    /// As near to the aims as can be; where there are none, to where everything has gone along.
    Answer fromCarried(std::vector<double> aims);

    /// With the edited entities' other places as constants all the way.
    Answer followKeepingPlaces();

    /// In steps, each from where the last one has led; then as near to where the sketch was as can be.
    Answer follow(const Following::Manner& manner);

    /// Every value that the edit concerns a little elsewhere, always in the same ways.
    std::vector<double> nudged(std::vector<double> values, int number = 0) const;

    /// What is connected with the edit. Linear in the sketch when it is first asked for.
    struct Concerned {
        std::vector<int> entities, values;
    };
    const Concerned& concerned() const;

    /// Constraints that are connected with the edit, are not named by it, and did not hold before it. Where the edit
    /// does not tell how its entities were before, nothing is known of the constraints on them.
    std::vector<int> brokenBefore();

    /// The entities nearest to the edit, as constraints lead from one to the next; edited ones have no say.
    std::vector<KeptShape> shapesAround() const;

    const SolveRequest& m_request;
    SketchData& m_work;  ///< the sketch with the dimensions asked for
    Loan m_loan;
    Trying m_trying{m_work};
    mutable std::optional<Concerned> m_concerned;      ///< made when first asked for
    mutable std::optional<Corners> m_corners;          ///< made when first asked for: a plain solve does not
    mutable std::optional<SmoothJoins> m_smoothJoins;  ///< the same
    std::vector<ValueGoal> m_values;
    std::vector<int> m_dimensions;
    std::vector<int> m_named;
    std::optional<Way> m_way;
    double m_leastWished = SolverState::kLeast;  ///< of what no other size is to shrink below
    double m_least = SolverState::kLeast;        ///< and what it may, where it has to
    bool m_isEdit = false;
    bool m_hasExplained = false;
    double m_secondsExplaining = 0.0;
};

}  // namespace holdfast::solver::detail
