#pragma once

#include <algorithm>
#include <ctime>
#include <vector>

namespace holdfast {

/// Processor time of this thread so far, in milliseconds: what else the machine does counts little.
inline double processorTime() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return 1e3 * static_cast<double>(now.tv_sec) + 1e-6 * static_cast<double>(now.tv_nsec);
}

/// Milliseconds that the work takes.
template <class Work>
double timed(Work work) {
    const double start = processorTime();
    work();
    return processorTime() - start;
}

inline double medianOf(std::vector<double> times) {
    std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2), times.end());
    return times[times.size() / 2];
}

/// The work's median time: as often as fits in about so many milliseconds, five to a hundred times; fewer when that is
/// long. Before each run `prepare` is called, untimed.
template <class Prepare, class Work>
double medianTime(Prepare prepare, Work work, double enough = 1000.0) {
    std::vector<double> times;
    double sum = 0.0;
    while (times.size() < 5 || (sum < enough && times.size() < 100)) {
        prepare();
        times.push_back(timed(work));
        sum += times.back();
        if (sum > 2 * enough)
            break;
    }
    return medianOf(times);
}

}  // namespace holdfast
