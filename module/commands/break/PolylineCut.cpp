#include "commands/break/PolylineCut.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace holdfast::module {
namespace {

constexpr double kAtVertex = 1e-6;
constexpr double kGreatestIndex = 1 << 30;  // so that sums of two indices are numbers

struct CutKind {
    bool firstAtVertex;
    bool secondAtVertex;
    bool inOneSegment;
    int breakCase;
};

// clang-format off
constexpr CutKind kCutKinds[] = {
    // first at vertex, second at vertex, in one segment, case
    { true,             true,             true,           1 },
    { true,             true,             false,          1 },
    { true,             false,            true,           2 },
    { true,             false,            false,          3 },
    { false,            true,             true,           4 },
    { false,            true,             false,          4 },
    { false,            false,            true,           5 },
    { false,            false,            false,          6 },
};
// clang-format on
static_assert(std::size(kCutKinds) == 8, "one row for each answer to three questions");

int wholePart(double param) {
    if (std::isnan(param))
        return 0;
    return static_cast<int>(std::clamp(param, -kGreatestIndex, kGreatestIndex));
}

}  // namespace

CutPlace cutPlace(double param) {
    const int index = wholePart(param);
    return {.index = index, .atVertex = std::abs(param - index) <= kAtVertex};
}

int breakCase(CutPlace first, CutPlace second) {
    const bool inOneSegment = first.index == second.index;
    const auto* const kind = std::find_if(std::begin(kCutKinds), std::end(kCutKinds), [=](const CutKind& row) {
        return row.firstAtVertex == first.atVertex && row.secondAtVertex == second.atVertex &&
               row.inOneSegment == inOneSegment;
    });
    return kind->breakCase;
}

std::map<int, int> touchedSegments(CutPlace first, CutPlace second) {
    if (first.index == second.index)
        return {{first.index, first.index + 1}};
    const int last = second.atVertex ? second.index - 1 : second.index;
    std::map<int, int> segments;
    for (int start = first.index; start <= last; ++start)
        segments.emplace_hint(segments.end(), start, start + 1);
    return segments;
}

std::optional<IdentifierRun> identifiersBehindCut(int breakCase, unsigned int pieceCount, int uncutCount,
                                                  std::pair<const int, int> lastTouched) {
    const bool secondInside = breakCase == 2 || breakCase == 3 || breakCase == 5 || breakCase == 6;
    const bool keepsOwnFirst = breakCase == 3 || breakCase == 5;
    const int shift = keepsOwnFirst ? lastTouched.second - 1 : secondInside ? lastTouched.first : lastTouched.second;
    if (shift < 0 || (keepsOwnFirst && pieceCount < 2))
        return std::nullopt;
    if (static_cast<long long>(pieceCount) + shift > uncutCount)
        return std::nullopt;
    return IdentifierRun{.first = keepsOwnFirst ? 1 : 0, .shift = shift};
}

}  // namespace holdfast::module
