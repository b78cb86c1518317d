#include "editing/commands/cut/RingCutting.h"

#include <cmath>

#include "editing/SegmentNames.h"
#include "editing/commands/fillet/PolylineCorner.h"
#include "editing/commands/join/OpenPolyline.h"
#include "geometry/curves/Polylines.h"

namespace holdfast::editing {

namespace {

void openAt(const EditContext& context, const std::string& name, std::size_t vertex) {
    context.drawing.write(name, countedFrom(polylineShape(context.drawing, name), vertex));
    openSeam(context.drawing, name);
}

/// Puts what is left of a segment behind a cut before the start, where it led to while the polyline was closed.
void putBefore(const EditContext& context, const std::string& name, const PolylineShape& piece) {
    PolylineShape polyline = polylineShape(context.drawing, name);
    polyline.vertices.insert(polyline.vertices.begin(), piece.vertices.front());
    polyline.bulges.insert(polyline.bulges.begin(), piece.bulges.front());
    polyline.ids.insert(polyline.ids.begin(), 0);
    context.drawing.write(name, polyline);
}

/// A cut within one segment: with that counted last, the cut leads to the end, and what is left of the segment behind
/// the cut to the start.
void cutWithinSegment(const EditContext& context, const std::string& name, double from, double to, const OpenCut& cut) {
    const double segment = std::floor(from);
    const double count = static_cast<double>(segmentCount(polylineShape(context.drawing, name)));
    openAt(context, name, static_cast<std::size_t>(segment + 1.0 < count ? segment + 1.0 : 0.0));
    const PolylineShape behind =
        polylinePart(polylineShape(context.drawing, name), count - 1.0 + (to - segment), count);
    cut(count - 1.0 + (from - segment), count);
    putBefore(context, name, behind);
}

}  // namespace

void cutRing(const EditContext& context, const std::string& name, double fromParam, double toParam,
             const OpenCut& cut) {
    const double count = static_cast<double>(segmentCount(polylineShape(context.drawing, name)));
    const double from = std::fmod(fromParam, count), to = std::fmod(toParam, count);
    const double seam = std::ceil(from);
    const double behindSeam = to < from ? to + (count - seam) : to - seam;
    if (behindSeam < 0.0)
        return cutWithinSegment(context, name, from, to, cut);
    openAt(context, name, static_cast<std::size_t>(seam < count ? seam : 0.0));
    const double kept = 1.0 - (seam - from);  // of the last segment, unless all of it
    if (from < seam)
        cut(count - 1.0 + kept, count);
    // Where both cuts lie in the last segment, that is shorter by now.
    const double inLast = behindSeam - (count - 1.0);
    if (behindSeam > 0.0)
        cut(0.0, from < seam && inLast > 0.0 ? count - 1.0 + inLast / kept : behindSeam);
}

}  // namespace holdfast::editing
