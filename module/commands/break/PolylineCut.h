#pragma once

#include <map>
#include <optional>
#include <utility>

namespace holdfast::module {

/// Where on a polyline a cut point lies: in segment `index`, or at its start vertex.
struct CutPlace {
    int index = 0;
    bool atVertex = false;
};

/// From a curve parameter: vertex index + fraction of the segment. Within 1e-6 above a whole number is at that vertex.
CutPlace cutPlace(double param);

/// The kind of a cut between two places, 1 to 6.
int breakCase(CutPlace first, CutPlace second);

/// The segments that a cut between two places touches: start -> end vertex index.
std::map<int, int> touchedSegments(CutPlace first, CutPlace second);

/// Vertices from `first` on take the identifiers that stood `shift` places further before the cut.
struct IdentifierRun {
    int first = 0;
    int shift = 0;
};

/// Which identifiers a second piece of `pieceCount` vertices gets back after a cut whose last touched segment is the
/// given one of `uncutCount` vertices; none when the uncut polyline has too few.
std::optional<IdentifierRun> identifiersBehindCut(int breakCase, unsigned int pieceCount, int uncutCount,
                                                  std::pair<const int, int> lastTouched);

}  // namespace holdfast::module
