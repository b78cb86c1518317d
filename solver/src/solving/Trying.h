#pragma once

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>
#include <span>
#include <utility>

#include "solver/src/Uses.h"
#include "solver/src/sketch/Degeneracy.h"
#include "solver/src/solving/Run.h"

namespace holdfast::solver::detail {

/// What came of one try.
struct Answer {
    SolveResult result;
    std::vector<double> values, metric;  ///< of a failure the values where its way ended; empty when there was none
    std::vector<double> left;            ///< where a try to mend has ended that failed
    std::vector<char> unchangedSizes;
    std::vector<int> unchangedLengths, changedLengths;
    int inexactLengths = 0;
    std::vector<double> emphasis;
    Run::Changes changes;
    bool leavesBroken = false;  ///< something that the edit does not concern does not hold
    double strain = 0.0;        ///< sum of the changes of sizes that are kept
    bool isBent = false;        ///< anything that is kept has changed at all
    bool isReshaped = false;    ///< a size that is kept has changed, and not only a direction
    bool isTwisted = false;     ///< a size is not what it was by far
    bool keepsPlaces = false;   ///< what is not asked of the edited entities is where it was: sizes give way before it
    bool turnsRound = false;    ///< it would hold, but a line points the other way; it is told as unreached
    bool isContradicted = false;
    std::vector<int> suspects, concerned;
    std::vector<int> spared;  ///< entities that would have become nothing on the way, ascending

    bool isSolved() const { return result.isSolved(); }
};

/// Tries to solve a sketch, from where its values are at the time of each try.
class Trying {
public:
    /// The sketch is the caller's, and changes only for as long as from() takes.
    explicit Trying(SketchData& sketch) : m_sketch(sketch) {}

    /// From now on, the shapes that keepingShapes() looks after, ascending.
    void keepShapes(std::vector<KeptShape> shapes) { m_shapes = std::move(shapes); }
    std::span<const KeptShape> shapes() const { return m_shapes; }
    /// From now on a turn of these entities, ascending, counts this much in their shapes.
    void keepUpright(std::span<const int> entities, double turnWeight);

    /// From now on, how far the edit goes: where a size that is smaller would vanish, such sizes count more.
    void spareBelow(double size) { m_sparedBelow = size; }

    /// From now on, what all tries may cost together at most, as factorWork counts it.
    void limit(long mostFactorWork) { m_limit = mostFactorWork; }

    /// What no other answer is to be exchanged for only because fewer sizes change.
    void shun(std::function<bool(const Answer&)> isShunned) { m_isShunned = std::move(isShunned); }

    /// What is no answer although it holds: what it says of the values of one.
    void refuse(std::function<std::optional<Degeneracy>(std::span<const double>)> flawOf) {
        m_flawOf = std::move(flawOf);
    }

    /// The sketch with other values, for as long as a try takes.
    template <class Try>
    Answer from(const std::vector<double>& values, const Try& attempt) {
        const std::vector<double> kept = std::exchange(m_sketch.values, values);
        Answer answer = attempt();
        m_sketch.values = kept;
        return answer;
    }

    Answer once(const Task& task);

    /// And where something small would vanish, once more with small sizes spared.
    Answer sparingSmall(Task& task);

    /// Adds what has degenerate to what is spared; false when nothing is to be added.
    bool spare(const SolveResult& result, std::vector<int>& spared) const;

    /// With the shapes as wishes; then those sizes that came out as they were are kept exactly. Without any wishes
    /// where that fails.
    Answer keepingShapes(Task task);

    /// How long all tries together have built their equations.
    double secondsBuilding() const { return m_secondsBuilding; }
    /// What all of them have cost, as Run::work counts it.
    long work() const { return m_work; }
    /// The same of their factorisations alone, as Run::factorWork counts them.
    long factorWork() const { return m_factorWork; }
    /// Another try, as dear as the dearest so far, would cost more than it is worth to make better what is solved.
    bool isCostly() const;
    /// They have cost what one request may cost: what is tried now fails at once.
    bool isSpent() const { return m_work >= m_mostWork || m_factorWork >= std::min(m_mostFactorWork, m_limit); }

private:
    Answer bettering(const std::vector<double>& values, const Task& task);
    Answer wishing(Task task);
    Answer changingFewest(Task task, Answer wished);
    void keepAlso(Task& task, std::span<const int> sizes, Answer& best, int most);
    std::vector<KeptShape> unturned() const;

    SketchData& m_sketch;
    std::vector<KeptShape> m_shapes;
    std::function<bool(const Answer&)> m_isShunned;
    std::function<std::optional<Degeneracy>(std::span<const double>)> m_flawOf;
    double m_sparedBelow = 0.0;
    double m_secondsBuilding = 0.0;
    long m_work = 0;
    long m_mostWork = std::numeric_limits<long>::max();
    long m_factorWork = 0;
    long m_mostFactorWork = std::numeric_limits<long>::max();
    long m_limit = std::numeric_limits<long>::max();
    long m_dearest = 0;        ///< of that, what one try has cost at most
    long m_betteringWork = 0;  ///< and what tries have that were to make better what was solved
    long m_keepingWork = 0;    ///< of that, what keeping more sizes exactly has cost
    int m_keepingTries = 0;    ///< that are left
};

}  // namespace holdfast::solver::detail
