// Turns the chains of every real drawing into polylines and fillets those.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "document/Polylines.h"
#include "formats/FileIo.h"
#include "geometry/Segments.h"
#include "geometry/curves/Geometry.h"
#include "hosting/Drawing.h"
#include "tests/editing/BareSession.h"
#include "tests/editing/RealDrawings.h"

namespace holdfast::editing {

using namespace formats;
namespace {

struct NamedPolyline {
    std::string name;
    PolylineShape shape;
};

/// A drawing with its chains as polylines, whose vertices are numbered where constraints name them.
struct ChainedDrawing {
    explicit ChainedDrawing(const Document& plain) : document(Drawing(chainsToPolylines(plain).document).document()) {
        for (const Entity& entity : document.entities)
            if (const auto* polyline = std::get_if<PolylineShape>(&entity.shape); polyline != nullptr && !entity.fixed)
                polylines.push_back({entity.id, *polyline});
    }
    Document document;
    std::vector<NamedPolyline> polylines;
};

double lengthOfSegment(const PolylineShape& polyline, std::size_t segment) {
    return lengthOf(segmentCurve(polyline, segment));
}

std::size_t segmentBefore(const PolylineShape& polyline, std::size_t vertex) {
    return (vertex + segmentCount(polyline) - 1) % segmentCount(polyline);
}

/// A radius that leaves most of both segments of an ordinary corner.
double radiusAt(const PolylineShape& polyline, std::size_t corner) {
    return 0.2 *
           std::min(lengthOfSegment(polyline, segmentBefore(polyline, corner)), lengthOfSegment(polyline, corner));
}

std::vector<std::size_t> cornersOf(const PolylineShape& polyline) {
    std::vector<std::size_t> corners;
    for (std::size_t i = polyline.closed ? 0 : 1; i < segmentCount(polyline); ++i)
        corners.push_back(i);
    return corners;
}

std::string cornerEdit(const NamedPolyline& polyline, std::size_t corner, double radius) {
    return "fillet " + polyline.name + " corner " + std::to_string(corner) + " radius " + numberWord(radius);
}

void checkChained(const std::function<std::vector<RealEdit>(const ChainedDrawing&)>& editsOf, int least) {
    Tally tally;
    for (const std::filesystem::path& file : drawingFiles()) {
        SCOPED_TRACE(file.filename().string());
        const ChainedDrawing drawing(readDrawing(file));
        for (const RealEdit& edit : editsOf(drawing))
            checkEdit(drawing.document, edit, tally);
        if (::testing::Test::HasFatalFailure())
            return;
    }
    tell(tally, least);
}

/// Only what held on the two segments of the corner may go.
std::vector<RealEdit> cornersOf(const ChainedDrawing& drawing) {
    std::vector<RealEdit> edits;
    for (const NamedPolyline& polyline : drawing.polylines)
        for (const std::size_t corner : cornersOf(polyline.shape)) {
            const auto behind = static_cast<int>(corner);
            const auto before = static_cast<int>(segmentBefore(polyline.shape, corner));
            edits.push_back({cornerEdit(polyline, corner, radiusAt(polyline.shape, corner)),
                             {polyline.name},
                             [=](const Place& place) { return place.index == before || place.index == behind; }});
        }
    return edits;
}

/// Every segment with the next but one, rounded and sharp; over the seam, too. What held on the one between goes.
std::vector<RealEdit> bridgesOf(const ChainedDrawing& drawing) {
    std::vector<RealEdit> edits;
    for (const NamedPolyline& polyline : drawing.polylines) {
        const std::size_t count = segmentCount(polyline.shape);
        for (std::size_t i = 0; count > 4 && i + (polyline.shape.closed ? 0 : 2) < count; ++i) {
            const std::size_t to = (i + 2) % count;
            const auto mayLose = [=](const Place& place) {
                const auto index = static_cast<std::size_t>(place.index);
                return index == i || index == (i + 1) % count || index == to;
            };
            for (const double radius :
                 {0.0, 0.2 * std::min(lengthOfSegment(polyline.shape, i), lengthOfSegment(polyline.shape, to))})
                edits.push_back({"fillet " + polyline.name + " segments " + std::to_string(i) + " " +
                                     std::to_string(to) + " radius " + numberWord(radius),
                                 {polyline.name},
                                 mayLose});
        }
    }
    return edits;
}

/// Open polylines that are closed by an arc, or sharply, from their last segment to their first.
std::vector<RealEdit> closingsOf(const ChainedDrawing& drawing) {
    std::vector<RealEdit> edits;
    for (const NamedPolyline& polyline : drawing.polylines)
        if (const std::size_t count = segmentCount(polyline.shape); !polyline.shape.closed && count > 2)
            for (const double radius : {0.0, 0.2 * lengthOfSegment(polyline.shape, 0)})
                edits.push_back({"fillet " + polyline.name + " segments " + std::to_string(count - 1) + " 0 radius " +
                                     numberWord(radius),
                                 {polyline.name}});
    return edits;
}

/// Open polylines with every other open curve that is no polyline, and with each other.
std::vector<RealEdit> pairsOf(const ChainedDrawing& drawing) {
    std::vector<RealEdit> edits;
    for (const NamedPolyline& polyline : drawing.polylines) {
        if (polyline.shape.closed)
            continue;
        const double radius = 0.1 * lengthOfSegment(polyline.shape, 0);
        int count = 0;
        for (const Entity& other : drawing.document.entities)
            if (count < 6 && other.id != polyline.name && isOpenToEdits(other) && periodOf(other.shape) == 0.0) {
                for (const double each : {0.0, radius})
                    edits.push_back({.text = "fillet " + polyline.name + " " + other.id + " radius " + numberWord(each),
                                     .edited = {polyline.name, other.id},
                                     .mayTurn = true});
                ++count;
            }
    }
    return edits;
}

TEST(RealPolylines, StaySoundWhenEveryCornerIsRounded) {
    checkChained([](const ChainedDrawing& drawing) { return cornersOf(drawing); }, 20);
}

TEST(RealPolylines, StaySoundWhenSegmentsAreBridged) {
    checkChained(&bridgesOf, 20);
}

TEST(RealPolylines, StaySoundWhenTheyAreClosed) {
    checkChained(&closingsOf, 3);
}

TEST(RealPolylines, StaySoundWhenFilletedWithOtherCurves) {
    checkChained(&pairsOf, 20);
}

/// The constraints that hold on whole segments and do not depend on their lengths.
std::string segmentConstraints(const Document& document) {
    std::string found;
    for (const Constraint& constraint : document.constraints)
        if (constraint.type != ConstraintType::equal && !constraint.value &&
            std::all_of(constraint.refs.begin(), constraint.refs.end(),
                        [](const Place& place) { return place.kind == PlaceKind::segment; }))
            found += constraint.id + " ";
    return found;
}

TEST(RealPolylines, RoundedAtAllCornersInOneSessionKeepWhatHoldsOnTheirSegments) {
    int rounded = 0;
    for (const std::filesystem::path& file : drawingFiles()) {
        SCOPED_TRACE(file.filename().string());
        const ChainedDrawing drawing(readDrawing(file));
        BareSession session(drawing.document);
        for (const NamedPolyline& polyline : drawing.polylines) {
            const std::vector<std::size_t> corners = cornersOf(polyline.shape);
            for (auto corner = corners.rbegin(); corner != corners.rend(); ++corner)
                rounded +=
                    session.apply(cornerEdit(polyline, *corner, radiusAt(polyline.shape, *corner))).outcome.done();
        }
        EXPECT_EQ(segmentConstraints(session.document()), segmentConstraints(drawing.document));
    }
    std::cout << rounded << " corners rounded\n";
    EXPECT_GE(rounded, 20);
}

}  // namespace
}  // namespace holdfast::editing
