// What inferring costs, and how that grows with the drawing: benchmark_infer [MOST [SECONDS]]. Drawings of one kind of
// entities each, and of all five, from 1,000 to MOST (100,000) by doubling. Processor time of all cores; constraints
// are those that were found, and the ratio that of the time to the one before. What takes more than SECONDS (60) is
// ended, and its kind goes no further. Exits with 1 where 100,000 entities of all kinds take more than 20 seconds, or
// are not reached.
//
// Among thousands of lines in random directions some are parallel, or of one length, by chance: twice as many lines
// have up to four times as many such ties, which connect most of the drawing to one part with many rings.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "editing/InferredDrawing.h"
#include "geometry/Angles.h"

namespace holdfast::editing {
namespace {

constexpr double kMostMilliseconds = 20'000.0;
constexpr std::size_t kFirst = 1000, kWanted = 100'000;

double allProcessorTime() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return 1e3 * static_cast<double>(now.tv_sec) + 1e-6 * static_cast<double>(now.tv_nsec);
}

class Field {
public:
    Document document;

    /// Upright ones with gaps between them.
    void addRectangles(std::size_t count) {
        const auto side = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(count) / 4.0)));
        for (std::size_t i = 0; i < count / 4; ++i) {
            const Vec2 low{10.0 * static_cast<double>(i % side), 10.0 * static_cast<double>(i / side)};
            const Vec2 corners[] = {low, low + Vec2{6, 0}, low + Vec2{6, 6}, low + Vec2{0, 6}};
            for (std::size_t k = 0; k < 4; ++k)
                add(LineShape{corners[k], corners[(k + 1) % 4]});
        }
    }

    /// As thick as the rectangles stand.
    void addRandomLines(std::size_t count) {
        const double side = 5.0 * std::sqrt(static_cast<double>(count));
        for (std::size_t i = 0; i < count; ++i) {
            const Vec2 start{-50.0 - side * share(), side * share()};
            add(LineShape{start, start + (1.0 + 19.0 * share()) * polar(kTurn * share())});
        }
    }

    /// Half circles of one radius, up and down, in rows of up to a hundred.
    void addWaves(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            const double row = static_cast<double>(i / 100);
            const double from = i % 2 == 0 ? 0.0 : kPi;
            add(ArcShape{{2.0 + 4.0 * static_cast<double>(i % 100), -20.0 - 10.0 * row}, 2.0, from, from + kPi});
        }
    }

    /// That differ by more than what counts as one direction, and by less.
    void addNearlyParallel(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            const Vec2 start{500.0, 0.4 * static_cast<double>(i)};
            add(LineShape{start, start + (100.0 + static_cast<double>(i % 7)) * polar(2e-3 * (share() - 0.5))});
        }
    }

    /// Of a thousand pieces each, which wander.
    void addLongPolylines(std::size_t count) {
        Vec2 at;
        for (std::size_t i = 0; i < count; ++i) {
            if (i % 1000 == 0)
                at = {-500.0 - 1000.0 * share(), 1000.0 * share()};
            const Vec2 next = at + Vec2{18.0 * (share() - 0.5), 18.0 * (share() - 0.5)};
            add(LineShape{at, next});
            at = next;
        }
    }

    void addAll(std::size_t count) {
        addRectangles(count / 5);
        addRandomLines(count / 5);
        addWaves(count / 5);
        addNearlyParallel(count / 5);
        addLongPolylines(count - document.entities.size());
    }

private:
    double share() { return std::uniform_real_distribution<double>()(m_random); }
    void add(Shape shape) {
        document.entities.push_back({.id = "g" + std::to_string(document.entities.size()), .shape = std::move(shape)});
    }

    std::mt19937 m_random{7};
};

struct Scene {
    const char* name;
    void (Field::*add)(std::size_t count);
};

constexpr Scene kScenes[] = {
    {"rectangles", &Field::addRectangles},        {"random lines", &Field::addRandomLines},
    {"tangent arcs", &Field::addWaves},           {"nearly parallel", &Field::addNearlyParallel},
    {"long polylines", &Field::addLongPolylines}, {"all of them", &Field::addAll}};

struct Measured {
    std::size_t constraints = 0;
    double time = 0.0;  ///< in milliseconds
};

/// In a process of its own, which ends where it takes longer than it may; nothing then.
std::optional<Measured> measured(const Document& document, double seconds) {
    int ends[2];
    if (pipe(ends) != 0)
        return std::nullopt;
    const pid_t child = fork();
    if (child == 0) {
        const auto most = static_cast<rlim_t>(std::ceil(seconds));
        const rlimit limit{most, most};
        setrlimit(RLIMIT_CPU, &limit);
        const double start = allProcessorTime();
        const InferredDrawing found = inferredDrawing(document, {});
        const Measured told{found.document.constraints.size(), allProcessorTime() - start};
        _exit(write(ends[1], &told, sizeof told) == sizeof told ? 0 : 1);
    }
    close(ends[1]);
    Measured told;
    const bool isDone = read(ends[0], &told, sizeof told) == sizeof told;
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return isDone ? std::optional(told) : std::nullopt;
}

/// The time for 100,000 entities; none where that many were not reached.
std::optional<double> measure(const Scene& scene, std::size_t most, double seconds) {
    double before = 0.0;
    for (std::size_t count = kFirst;; count = std::min(2 * count, most)) {
        Field field;
        (field.*scene.add)(count);
        std::printf("%-16s %9zu ", scene.name, field.document.entities.size());
        std::fflush(stdout);
        const std::optional<Measured> found = measured(field.document, seconds);
        if (!found) {
            std::printf("%12s more than %g s\n", "", seconds);
            return std::nullopt;
        }
        std::printf("%12zu %11.1f", found->constraints, found->time);
        std::printf(before > 0.0 ? " %8.2f\n" : "\n", found->time / before);
        if (count == most)
            return count >= kWanted ? std::optional(found->time) : std::nullopt;
        before = found->time;
    }
}

int measureAll(std::size_t most, double seconds) {
    std::printf("%-16s %9s %12s %11s %8s\n", "drawing of", "entities", "constraints", "ms", "ratio");
    std::optional<double> last;
    for (const Scene& scene : kScenes)
        last = measure(scene, most, seconds);
    return last && *last <= kMostMilliseconds ? 0 : 1;
}

}  // namespace
}  // namespace holdfast::editing

int main(int argc, char** argv) {
    const long most = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 100'000;
    const double seconds = argc > 2 ? std::strtod(argv[2], nullptr) : 60.0;
    if (most < 1000) {
        std::fprintf(stderr, "usage: benchmark_infer [MOST [SECONDS]], with 1000 or more\n");
        return 2;
    }
    return holdfast::editing::measureAll(static_cast<std::size_t>(most), seconds);
}
