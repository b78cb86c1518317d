#pragma once

#include <functional>

#include "solver/src/Uses.h"
#include "solver/src/solving/Trying.h"
#include "solver/src/solving/Way.h"

namespace holdfast::solver::detail {

/// Follows the way of an edit in steps, each from where the last one has led. A step that fails begins where the steps
/// before lead when they go on straight, and then a little beside where it stands.
class Following {
public:
    /// The smallest step: a hundred small steps are to find what one large one does.
    static constexpr double kLeastStep = 1.0 / 128;
    /// Smaller steps than this are worth a shake, and doubtful answers a way in such steps.
    static constexpr double kNudged = 1.0 / 16;

    struct Manner {
        double leastStep = kLeastStep;
        /// No step turns a line round as long as a shorter one may do without. Where none does, the way leads through a
        /// place where the line has no length, and the shortest step over it is taken: unless there is an answer
        /// already. Nor does a sweep then change by more than half a turn on the whole way.
        bool mayTurnRound = true;
        bool sparesSmall = false;        ///< small sizes count more from the beginning
        std::vector<int> spared{};       ///< and these entities' much more, ascending
        std::span<const Target> kept{};  ///< constants on the whole way
    };

    /// The sketch is the caller's; afterwards its dimensions are what they were in the last step. `shaken` gives values
    /// a little beside others.
    Following(SketchData& sketch, Trying& trying, const Way& way, Task task,
              std::function<std::vector<double>(const std::vector<double>&)> shaken)
        : m_sketch(sketch), m_trying(trying), m_way(way), m_task(std::move(task)), m_shaken(std::move(shaken)) {}

    /// The last step; of a failure, how far the way was followed, and the values there.
    Answer run(const Manner& manner);

private:
    /// The last two places of the way.
    class Course {
    public:
        explicit Course(std::vector<double> start) : m_values(std::move(start)) {}

        void pass(double part, const std::vector<double>& values);
        /// Where it leads when it goes on straight; empty where it has only begun.
        std::vector<double> ahead(double part) const;

    private:
        std::vector<double> m_before, m_values;
        double m_part = 0.0, m_lastStep = 0.0;
    };

    Answer stepTo(double part, const std::vector<double>& values, const std::vector<double>& from,
                  const std::vector<double>& aims);
    Answer straightOn(double next, const std::vector<double>& values, const std::vector<double>& ahead, Answer found);
    Answer stepOrNudge(double next, double step, const std::vector<double>& values, const std::vector<double>& ahead);

    SketchData& m_sketch;
    Trying& m_trying;
    const Way& m_way;
    const Task m_task;
    const std::function<std::vector<double>(const std::vector<double>&)> m_shaken;
    Manner m_manner;
    std::vector<int> m_spared;
};

}  // namespace holdfast::solver::detail
