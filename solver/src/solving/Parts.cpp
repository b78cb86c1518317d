#include "solver/src/solving/Parts.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <exception>
#include <limits>
#include <memory>
#include <mutex>
#include <numeric>
#include <system_error>
#include <thread>
#include <utility>

#include "solver/src/diagnosis/Extract.h"
#include "solver/src/sketch/Connections.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/solving/Stopwatch.h"

namespace holdfast::solver::detail {

namespace {

/// Entities that are worth a thread of their own: they take longer to solve than it takes to start. Smaller parts are
/// taken together until they are as many, as what each solve costs by itself, some microseconds, is as much as theirs.
constexpr std::size_t kWorthAThread = 100;

/// How often the thread that waits for others asks whether to go on.
constexpr std::chrono::milliseconds kLook{10};

/// Which part each entity belongs to: the number of one of its entities. Fixed entities belong to none.
class Membership {
public:
    Membership(const SketchData& sketch, std::span<const int> constraints) : m_sketch(sketch) {
        m_next.resize(sketch.entities.size());
        std::iota(m_next.begin(), m_next.end(), 0);
        for (const int c : constraints) {
            int first = -1;
            for (const SketchPlace& place : sketch.constraints[at(c)].refs) {
                if (sketch.entities[at(place.entity)].fixed)
                    continue;
                const int root = partOf(place.entity);
                if (first >= 0)
                    m_next[at(std::max(first, root))] = std::min(first, root);
                first = first < 0 ? root : std::min(first, root);
            }
        }
    }

    /// Near to constant.
    int partOf(int entity) {
        while (m_next[at(entity)] != entity)
            entity = m_next[at(entity)] = m_next[at(m_next[at(entity)])];
        return entity;
    }

    /// -1: it holds on fixed entities alone.
    int partOfConstraint(int constraint) {
        for (const SketchPlace& place : m_sketch.constraints[at(constraint)].refs)
            if (!m_sketch.entities[at(place.entity)].fixed)
                return partOf(place.entity);
        return -1;
    }

private:
    const SketchData& m_sketch;
    std::vector<int> m_next;  ///< towards the part's first entity, which leads to itself
};

/// A part that does not hold.
struct Part {
    Surroundings members{};              ///< ascending
    std::unique_ptr<Extract> extract{};  ///< none: another part stands for it
    SolveResult result{};
};

/// The parts of a sketch in which something does not hold, and the worst of all that does.
class BrokenParts {
public:
    BrokenParts(const SketchData& sketch, std::span<const int> constraints, Membership& membership)
        : m_sketch(sketch), m_membership(membership), m_system(buildSystem(sketch, constraints)) {
        m_marks.assign(sketch.entities.size(), Mark::none);
        markMerged();
        markEquations();
        for (const Contradiction& contradiction : m_system.contradictions) {
            for (const int c : contradiction.others)
                markConstraint(c, Mark::contradicts);
            markConstraint(contradiction.constraint, Mark::contradicts);
        }
    }

    /// Something that does not hold belongs to no part.
    bool leavesSome() const { return m_leavesSome; }

    /// What contradicts itself first, then as they come in the sketch.
    std::vector<Part> take(std::span<const int> constraints) {
        std::vector<Part> parts;
        std::vector<int> numbers(m_sketch.entities.size(), -1);
        for (const bool contradicting : {true, false})
            for (int i = 0; i < static_cast<int>(m_marks.size()); ++i)
                if (m_marks[at(i)] == (contradicting ? Mark::contradicts : Mark::broken)) {
                    numbers[at(i)] = static_cast<int>(parts.size());
                    parts.emplace_back();
                }
        for (int i = 0; i < static_cast<int>(m_marks.size()); ++i)
            if (const int n = m_sketch.entities[at(i)].fixed ? -1 : numbers[at(m_membership.partOf(i))]; n >= 0)
                parts[at(n)].members.entities.push_back(i);
        for (const int c : constraints)
            if (const int part = m_membership.partOfConstraint(c); part >= 0 && numbers[at(part)] >= 0)
                parts[at(numbers[at(part)])].members.constraints.push_back(c);
        return parts;
    }

    /// The constraint that holds worst of those in parts that hold.
    void noteWorst(SolveResult& result) {
        for (int e = 0; e < static_cast<int>(m_system.set.equations.size()); ++e) {
            const int part = partOfEquation(e);
            const double residual = m_system.residualOf(e);
            if ((part >= 0 && m_marks[at(part)] != Mark::none) || residual <= result.residual)
                continue;
            result.residual = residual;
            result.worstConstraint = m_system.set.equations[at(e)].constraint;
        }
    }

private:
    enum class Mark : char { none, broken, contradicts };

    void mark(int part, Mark how) {
        if (part >= 0)
            m_marks[at(part)] = std::max(m_marks[at(part)], how);
        else
            m_leavesSome = true;
    }

    void markConstraint(int constraint, Mark how) {
        if (constraint >= 0)
            mark(m_membership.partOfConstraint(constraint), how);
    }

    int partOfEntity(int entity) const {
        return m_sketch.entities[at(entity)].fixed ? -1 : m_membership.partOf(entity);
    }

    /// Values that are merged and differ, or are to be another constant. Half of what counts, as each is compared with
    /// the mean of all: what is marked too much holds when it is looked at by itself.
    void markMerged() {
        const double most = m_system.tolerance / 2.0;
        std::vector<double> means(at(m_system.unknownCount));
        for (int u = 0; u < m_system.unknownCount; ++u)
            means[at(u)] = m_system.meanOf(u);
        for (std::size_t v = 0; v < m_system.entityOfValue.size(); ++v) {
            const ValueLink& link = m_system.links[v];
            const double wished = link.offset + (link.unknown < 0 ? 0.0 : link.sign * means[at(link.unknown)]);
            const int entity = m_system.entityOfValue[v];
            if (!m_sketch.entities[at(entity)].fixed &&
                !(std::abs(m_system.values[v] - wished) * m_system.metric[v] <= most))
                mark(m_membership.partOf(entity), Mark::broken);
        }
    }

    void markEquations() {
        for (int e = 0; e < static_cast<int>(m_system.set.equations.size()); ++e) {
            if (m_system.residualOf(e) <= m_system.tolerance)
                continue;
            const auto inputs = m_system.set.inputsOf(m_system.set.equations[at(e)]);
            const bool isConstant =
                std::all_of(inputs.begin(), inputs.end(), [&](int v) { return m_system.links[at(v)].unknown < 0; });
            mark(partOfEquation(e), isConstant ? Mark::contradicts : Mark::broken);
        }
    }

    int partOfEquation(int equation) {
        const Equation& rule = m_system.set.equations[at(equation)];
        if (rule.constraint >= 0)
            return m_membership.partOfConstraint(rule.constraint);
        for (const int v : m_system.set.inputsOf(rule))
            if (at(v) < m_system.entityOfValue.size())
                return partOfEntity(m_system.entityOfValue[at(v)]);
        return -1;
    }

    const SketchData& m_sketch;
    Membership& m_membership;
    EquationSystem m_system;
    std::vector<Mark> m_marks;  ///< by the number of the part
    bool m_leavesSome = false;
};

/// The parts' solves, shared out among threads.
class Crew {
public:
    Crew(const SketchData& sketch, std::span<Part> parts, const SolveRequest& request)
        : m_sketch(sketch), m_parts(parts), m_request(request), m_size(sketch.size()), m_firstFailed(parts.size()) {
        // With shapes kept, what is amiss in one part decides how it is solved, and may not decide for another.
        std::size_t entities = 0;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (i == 0 || request.keepsShapes || entities >= kWorthAThread) {
                m_batches.push_back({i, i});
                entities = 0;
            }
            entities += parts[i].members.entities.size();
            m_batches.back().end = i + 1;
        }
    }
    Crew(const Crew&) = delete;
    Crew& operator=(const Crew&) = delete;

    /// The number of the first part that failed; as many as there are: none did. There is at least one.
    std::size_t run() {
        std::vector<std::jthread> others;
        const Stopping stopping(m_isStopped);  // before the threads are waited for, whatever is thrown
        try {
            for (std::size_t more = threadCount() - 1; more > 0; --more)
                others.emplace_back([this] { help(); });
        } catch (const std::system_error&) {
            // The machine has no more: those that there are do the work.
        }
        work(m_request.budget);
        wait(others.size());
        if (m_fault)
            std::rethrow_exception(m_fault);
        if (m_firstFailed < m_parts.size() && m_request.budget != nullptr)
            (void)m_request.budget->isOver();  // what ended another thread's part ends this solve
        return m_firstFailed;
    }

private:
    class Stopping {
    public:
        explicit Stopping(std::atomic<bool>& isStopped) : m_isStopped(isStopped) {}
        ~Stopping() { m_isStopped = true; }
        Stopping(const Stopping&) = delete;
        Stopping& operator=(const Stopping&) = delete;

    private:
        std::atomic<bool>& m_isStopped;
    };

    std::size_t threadCount() const {
        std::size_t entities = 0;
        for (const Part& part : m_parts) {
            entities += part.members.entities.size();
            for (const int c : part.members.constraints)
                if (m_sketch.constraints[at(c)].own)
                    return 1;
        }
        if (m_request.budget != nullptr && m_request.budget->countsIterations())
            return 1;
        const int asked = m_request.threads > 0 ? m_request.threads : threadsOfMachine();
        return std::min({static_cast<std::size_t>(asked), m_batches.size(), entities / kWorthAThread + 1});
    }

    /// Parts that are solved as one where that succeeds.
    struct Batch {
        std::size_t begin, end;
    };

    /// Takes batch after batch until none is left or a part before has failed.
    void work(Budget* budget) {
        SolveRequest request = m_request;
        request.budget = budget;
        for (std::size_t i = m_next++; i < m_batches.size() && !m_isStopped; i = m_next++) {
            const auto [begin, end] = m_batches[i];
            if (begin >= m_firstFailed)
                return;
            if (end > begin + 1 && solveTogether(begin, end, request))
                continue;
            for (std::size_t k = begin; k < end; ++k)
                if (!solvePart(m_parts[k], request)) {
                    const std::scoped_lock lock(m_mutex);
                    m_firstFailed = std::min<std::size_t>(m_firstFailed, k);
                    break;
                }
        }
    }

    bool solvePart(Part& part, const SolveRequest& request) {
        part.extract = std::make_unique<Extract>(m_sketch, part.members);
        part.extract->sketch().sizeAround = m_size;
        part.result = solveWhole(part.extract->sketch(), request);
        return part.result.isSolved();
    }

    /// The first of the parts then stands for all of them.
    bool solveTogether(std::size_t begin, std::size_t end, const SolveRequest& request) {
        Part all;
        for (std::size_t i = begin; i < end; ++i) {
            const auto& [entities, constraints] = m_parts[i].members;
            all.members.entities.insert(all.members.entities.end(), entities.begin(), entities.end());
            all.members.constraints.insert(all.members.constraints.end(), constraints.begin(), constraints.end());
        }
        SolveRequest quick = request;
        quick.namesConflicts = false;
        if (!solvePart(all, quick))
            return false;
        m_parts[begin] = std::move(all);
        return true;
    }

    void help() {
        const auto deadline =
            m_request.budget != nullptr ? m_request.budget->deadline() : Budget::Clock::time_point::max();
        Budget budget(std::numeric_limits<int>::max(), deadline, [this] { return m_isStopped.load(); });
        try {
            work(&budget);
        } catch (...) {
            const std::scoped_lock lock(m_mutex);
            m_fault = std::current_exception();
            m_isStopped = true;
        }
        const std::scoped_lock lock(m_mutex);
        ++m_done;
        m_isDone.notify_one();
    }

    void wait(std::size_t helpers) {
        std::unique_lock lock(m_mutex);
        while (m_done < helpers) {
            m_isDone.wait_for(lock, kLook);
            lock.unlock();
            if (m_request.budget != nullptr && m_request.budget->isOver())
                m_isStopped = true;
            lock.lock();
        }
    }

    const SketchData& m_sketch;
    const std::span<Part> m_parts;
    const SolveRequest& m_request;
    const double m_size;
    std::vector<Batch> m_batches;
    std::atomic<std::size_t> m_next = 0, m_firstFailed;
    std::atomic<bool> m_isStopped = false;
    std::mutex m_mutex;
    std::condition_variable m_isDone;
    std::size_t m_done = 0;
    std::exception_ptr m_fault;
};

/// A part's numbers as the sketch's.
class Numbers {
public:
    explicit Numbers(const Part& part) : m_entities(part.extract->taken()), m_constraints(part.members.constraints) {}

    int entity(int number) const { return number < 0 ? number : m_entities[at(number)]; }
    int constraint(int number) const { return number < 0 ? number : m_constraints[at(number)]; }
    void constraints(std::vector<int>& numbers) const {
        for (int& number : numbers)
            number = constraint(number);
    }

    SolveResult translated(SolveResult result) const {
        result.worstConstraint = constraint(result.worstConstraint);
        constraints(result.conflicting);
        constraints(result.leftAlone);
        if (result.degeneracy) {
            result.degeneracy->entity = entity(result.degeneracy->entity);
            result.degeneracy->constraint = constraint(result.degeneracy->constraint);
        }
        if (result.reached)
            for (ValueGoal& dimension : result.reached->dimensions)
                dimension.constraint = constraint(dimension.constraint);
        for (Movement& movement : result.movements)
            movement.entity = entity(movement.entity);
        return result;
    }

private:
    std::span<const int> m_entities, m_constraints;
};

void addCosts(const SolveResult& part, SolveResult& sum) {
    sum.iterations += part.iterations;
    sum.work += part.work;
    sum.factorWork += part.factorWork;
    sum.times.building += part.times.building;
    sum.times.iterating += part.times.iterating;
    sum.times.explaining += part.times.explaining;
}

/// Of what was solved. Everything but times is in the order of the sketch.
void add(SolveResult part, SolveResult& sum) {
    addCosts(part, sum);
    sum.level = std::max(sum.level, part.level);
    if (part.status == SolveStatus::solved)
        sum.status = SolveStatus::solved;
    if (part.residual > sum.residual) {
        sum.residual = part.residual;
        sum.worstConstraint = part.worstConstraint;
    }
    sum.movements.insert(sum.movements.end(), part.movements.begin(), part.movements.end());
    sum.leftAlone.insert(sum.leftAlone.end(), part.leftAlone.begin(), part.leftAlone.end());
}

void takeValues(const Extract& part, SketchData& sketch) {
    for (std::size_t i = 0; i < part.taken().size(); ++i) {
        const SketchEntity& here = sketch.entities[at(part.taken()[i])];
        const SketchEntity& there = part.sketch().entities[i];
        if (!here.fixed)
            std::copy_n(part.sketch().values.begin() + there.firstValue, there.valueCount,
                        sketch.values.begin() + here.firstValue);
    }
}

/// Whether constraints connect more than one part.
bool hasParts(std::span<const int> constraints, Membership& membership) {
    int first = -1;
    for (const int c : constraints) {
        const int part = membership.partOfConstraint(c);
        if (first >= 0 && part >= 0 && part != first)
            return true;
        first = part >= 0 ? part : first;
    }
    return false;
}

}  // namespace

std::optional<SolveResult> solvePartByPart(SketchData& sketch, const SolveRequest& request) {
    const std::vector<int> constraints = bindingConstraints(sketch);
    Membership membership(sketch, constraints);
    if (!hasParts(constraints, membership))
        return std::nullopt;
    const Stopwatch building;
    BrokenParts broken(sketch, constraints, membership);
    if (broken.leavesSome())
        return std::nullopt;
    SolveResult sum;
    broken.noteWorst(sum);
    std::vector<Part> parts = broken.take(constraints);
    sum.times.building = building.seconds();
    if (parts.empty())
        return sum;
    const bool mayBegin = request.budget == nullptr || !request.budget->isOver();
    if (const std::size_t failed = mayBegin ? Crew(sketch, parts, request).run() : parts.size();
        failed < parts.size()) {
        for (std::size_t i = 0; i < failed; ++i)
            addCosts(parts[i].result, parts[failed].result);
        return Numbers(parts[failed]).translated(std::move(parts[failed].result));
    }
    if (isSpent(request.budget)) {
        sum.status = SolveStatus::unreached;
        return sum;
    }
    for (Part& part : parts) {
        if (!part.extract)
            continue;
        takeValues(*part.extract, sketch);
        add(Numbers(part).translated(std::move(part.result)), sum);
    }
    std::sort(sum.leftAlone.begin(), sum.leftAlone.end());
    std::sort(sum.movements.begin(), sum.movements.end(),
              [](const Movement& a, const Movement& b) { return a.entity < b.entity; });
    return sum;
}

int threadsOfMachine() {
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

}  // namespace holdfast::solver::detail
