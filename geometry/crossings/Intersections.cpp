#include "geometry/crossings/Intersections.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "geometry/crossings/Overlaps.h"
#include "geometry/crossings/Sharpening.h"
#include "geometry/crossings/Touching.h"
#include "geometry/curves/Nearest.h"
#include "geometry/occ/OpenCascade.h"

namespace holdfast::geometry {
namespace {

/// Ends and doubles are compared a little more widely than curves are.
constexpr double kSamePlace = 10.0 * kFrameTolerance;

/// A shared stretch shorter than this, in a frame, is a point.
constexpr double kShortStretch = 1e-5;

/// A crossing in the coordinates of the frame, with what tells doubles apart.
struct Found {
    Crossing crossing;
    double speedA = 0.0;  ///< length per parameter of the first curve
};

/// A stretch along which the curves run together, by both owners' parameters, rising on the first curve.
struct Stretch {
    Found first, last;
};

struct BoxedPiece {
    Piece piece;
    Box box;
};

/// The frame of the place where two curves can meet, sized by the smaller one.
Frame sharedFrame(const Box& a, const Box& b) {
    const double size = std::min(a.isBounded() ? a.diagonal() : std::numeric_limits<double>::infinity(),
                                 b.isBounded() ? b.diagonal() : std::numeric_limits<double>::infinity());
    if (!std::isfinite(size) || size == 0.0) {
        return {};
    }
    const Box shared = a.sharedWith(b);
    return frameOf(shared.isBounded() ? shared.centre() : (a.isBounded() ? a : b).centre(), size);
}

std::vector<BoxedPiece> boxedFromLeft(const std::vector<Piece>& pieces, const Frame& frame) {
    std::vector<BoxedPiece> boxed;
    boxed.reserve(pieces.size());
    for (const Piece& piece : pieces) {
        const Piece moved = inFrame(piece, frame);
        boxed.push_back({moved, boundsOf(moved).grownBy(kFrameTolerance)});
    }
    std::sort(boxed.begin(), boxed.end(),
              [](const BoxedPiece& one, const BoxedPiece& other) { return one.box.low.x < other.box.low.x; });
    return boxed;
}

/// A line cut down to where it may meet the other curve.
Piece clipped(const Piece& piece, const Box& near) {
    const auto* line = std::get_if<LineForm>(&piece.form);
    if (line == nullptr || !near.isBounded()) {
        return piece;
    }
    const double middle = dot(near.centre() - line->origin, line->direction);
    const double reach = near.diagonal() + 1.0;
    Piece part = piece;
    part.first = std::max(piece.first, middle - reach);
    part.last = std::min(piece.last, middle + reach);
    return part;
}

bool isAtEnd(const Piece& piece, double t) {
    const double speed = norm(derivatives(piece.form, t).first);
    return std::min(std::abs(t - piece.first), std::abs(t - piece.last)) * speed <= kSamePlace;
}

/// Where curves run together, they do so up to an end of one of them; where they touch, the stretch ends in between.
bool isOverlap(const Piece& a, const Piece& b, const Contact& contact) {
    if (!std::isfinite(contact.firstA) || !std::isfinite(contact.lastA)) {
        return true;
    }
    const Vec2 from = derivatives(a.form, contact.firstA).point;
    const Vec2 middle = derivatives(a.form, 0.5 * (contact.firstA + contact.lastA)).point;
    return distance(from, middle) > kShortStretch && (isAtEnd(a, contact.firstA) || isAtEnd(b, contact.firstB)) &&
           (isAtEnd(a, contact.lastA) || isAtEnd(b, contact.lastB));
}

class Meeting {
public:
    Meeting(const PieceList& a, const PieceList& b)
        : m_a(a), m_b(b), m_frame(sharedFrame(boundsOf(a.pieces), boundsOf(b.pieces))) {}

    std::vector<Crossing> all();

private:
    void sweep();
    void meet(const Piece& fullA, const Piece& fullB);
    void meetEnds(const Piece& a, const Piece& b);
    void take(const Piece& a, const Piece& b, const Contact& contact);
    void addPoint(const Piece& a, const Piece& b, ParamPair rough);
    void addStretch(const Piece& a, const Piece& b, const Contact& contact);
    void joinStretches();
    void endStretches();
    Found foundAt(const Piece& a, const Piece& b, ParamPair at, CrossingKind kind) const;
    bool isOnStretch(const Found& found) const;
    bool isSame(const Found& one, const Found& other) const;
    void dropDoubles();

    const PieceList& m_a;
    const PieceList& m_b;
    Frame m_frame;
    std::vector<Found> m_found;
    std::vector<Stretch> m_stretches;
};

/// From left to right, each piece meets those pieces of the other curve that its box reaches.
void Meeting::sweep() {
    const std::vector<BoxedPiece> all[2] = {boxedFromLeft(m_a.pieces, m_frame), boxedFromLeft(m_b.pieces, m_frame)};
    std::vector<const BoxedPiece*> open[2];
    std::size_t next[2] = {0, 0};
    while (next[0] < all[0].size() || next[1] < all[1].size()) {
        const bool fromB = next[0] == all[0].size() ||
                           (next[1] < all[1].size() && all[1][next[1]].box.low.x < all[0][next[0]].box.low.x);
        const BoxedPiece& arriving = all[fromB][next[fromB]++];
        std::erase_if(open[!fromB], [&](const BoxedPiece* old) { return old->box.high.x < arriving.box.low.x; });
        for (const BoxedPiece* old : open[!fromB]) {
            if (old->box.meets(arriving.box)) {
                fromB ? meet(old->piece, arriving.piece) : meet(arriving.piece, old->piece);
            }
        }
        open[fromB].push_back(&arriving);
    }
}

void Meeting::meet(const Piece& fullA, const Piece& fullB) {
    const Piece a = clipped(fullA, boundsOf(fullB));
    const Piece b = clipped(fullB, boundsOf(fullA));
    if (a.first >= a.last || b.first >= b.last) {
        return;
    }
    const auto shared = sharedCarrierContacts(a, b);
    for (const Contact& contact : shared ? *shared : contactsOf(a, b, kFrameTolerance)) {
        take(a, b, contact);
    }
    if (!shared) {
        meetEnds(a, b);
    }
    for (const ParamPair& place : shared ? std::vector<ParamPair>{} : touchingPlaces(a, b)) {
        m_found.push_back(foundAt(a, b, place, CrossingKind::touching));
    }
}

/// The parameter on a piece of another's end that lies on it.
std::optional<double> paramOfEnd(const Piece& piece, const Piece& other, double end) {
    const Vec2 point = derivatives(other.form, end).point;
    if (!std::isfinite(end) || boundsOf(piece).distanceTo(point) > kFrameTolerance) {
        return std::nullopt;
    }
    const double t = nearestParam(piece, point);
    return distance(derivatives(piece.form, t).point, point) <= kFrameTolerance ? std::optional(t) : std::nullopt;
}

/// An end that lies on the other curve: where the two go on in one direction, the library may not see it.
void Meeting::meetEnds(const Piece& a, const Piece& b) {
    for (const double end : {a.first, a.last}) {
        if (const auto onB = paramOfEnd(b, a, end)) {
            addPoint(a, b, {end, *onB});
        }
    }
    for (const double end : {b.first, b.last}) {
        if (const auto onA = paramOfEnd(a, b, end)) {
            addPoint(a, b, {*onA, end});
        }
    }
}

void Meeting::take(const Piece& a, const Piece& b, const Contact& contact) {
    if (isOverlap(a, b, contact)) {
        addStretch(a, b, contact);
    } else {
        addPoint(a, b, {0.5 * (contact.firstA + contact.lastA), 0.5 * (contact.firstB + contact.lastB)});
    }
}

Found Meeting::foundAt(const Piece& a, const Piece& b, ParamPair at, CrossingKind kind) const {
    const Derivatives onA = derivatives(a.form, at.a);
    return {{onA.point, a.ownerAt(at.a), b.ownerAt(at.b), kind}, norm(onA.first) / std::abs(a.ownerRate)};
}

/// Two rays were met as unbounded lines: what lies before a base point is no meeting.
void Meeting::addPoint(const Piece& a, const Piece& b, ParamPair rough) {
    const ParamPair inside{std::clamp(rough.a, a.first, a.last), std::clamp(rough.b, b.first, b.last)};
    if (gapAt(a, b, inside) > kSamePlace) {
        return;
    }
    const ParamPair at = sharpened(a, b, inside);
    m_found.push_back(foundAt(a, b, at, isTangent(a, b, at) ? CrossingKind::touching : CrossingKind::crossing));
}

void Meeting::addStretch(const Piece& a, const Piece& b, const Contact& contact) {
    const Found one = foundAt(a, b, {contact.firstA, contact.firstB}, CrossingKind::overlapEnd);
    const Found other = foundAt(a, b, {contact.lastA, contact.lastB}, CrossingKind::overlapEnd);
    const bool rises = one.crossing.paramA <= other.crossing.paramA;
    m_stretches.push_back(rises ? Stretch{one, other} : Stretch{other, one});
}

/// Stretches of neighbouring pieces become one.
void Meeting::joinStretches() {
    std::sort(m_stretches.begin(), m_stretches.end(), [](const Stretch& one, const Stretch& other) {
        return one.first.crossing.paramA < other.first.crossing.paramA;
    });
    std::vector<Stretch> joined;
    for (const Stretch& stretch : m_stretches) {
        if (joined.empty() || !(stretch.first.crossing.paramA <= joined.back().last.crossing.paramA ||
                                isSame(joined.back().last, stretch.first))) {
            joined.push_back(stretch);
        } else if (stretch.last.crossing.paramA > joined.back().last.crossing.paramA) {
            joined.back().last = stretch.last;
        }
    }
    m_stretches = joined;
}

/// A point inside a stretch belongs to it; the stretch's ends speak for themselves.
bool Meeting::isOnStretch(const Found& found) const {
    return std::any_of(m_stretches.begin(), m_stretches.end(), [&](const Stretch& stretch) {
        const auto [lowB, highB] = std::minmax(stretch.first.crossing.paramB, stretch.last.crossing.paramB);
        const bool inside = found.crossing.paramA >= stretch.first.crossing.paramA &&
                            found.crossing.paramA <= stretch.last.crossing.paramA && found.crossing.paramB >= lowB &&
                            found.crossing.paramB <= highB;
        return inside || isSame(found, stretch.first) || isSame(found, stretch.last);
    });
}

void Meeting::endStretches() {
    std::erase_if(m_found, [this](const Found& found) { return isOnStretch(found); });
    joinStretches();
    if (!m_stretches.empty() && m_a.period > 0.0 && isSame(m_stretches.front().first, m_stretches.back().last)) {
        if (m_stretches.size() == 1) {
            m_stretches.clear();
            return;
        }
        m_stretches.front().first = m_stretches.back().first;
        m_stretches.pop_back();
    }
    for (const Stretch& stretch : m_stretches) {
        for (const Found& end : {stretch.first, stretch.last}) {
            if (std::isfinite(end.crossing.paramA)) {
                m_found.push_back(end);
            }
        }
    }
}

/// The same place on the first curve: near each other, and with little curve in between.
bool Meeting::isSame(const Found& one, const Found& other) const {
    double apart = std::abs(one.crossing.paramA - other.crossing.paramA);
    apart = m_a.period > 0.0 ? std::min(apart, std::abs(m_a.period - apart)) : apart;
    return distance(one.crossing.point, other.crossing.point) <= kSamePlace &&
           apart * std::max(one.speedA, other.speedA) <= 1e3 * kSamePlace;
}

void Meeting::dropDoubles() {
    for (Found& found : m_found) {
        found.crossing.paramA = m_a.atSeam(found.crossing.paramA);
        found.crossing.paramB = m_b.atSeam(found.crossing.paramB);
    }
    std::sort(m_found.begin(), m_found.end(),
              [](const Found& one, const Found& other) { return one.crossing.paramA < other.crossing.paramA; });
    std::vector<Found> kept;
    for (const Found& found : m_found) {
        if (kept.empty() || !(isSame(kept.back(), found) || isSame(kept.front(), found))) {
            kept.push_back(found);
        }
    }
    m_found = kept;
}

std::vector<Crossing> Meeting::all() {
    sweep();
    endStretches();
    dropDoubles();
    std::vector<Crossing> crossings;
    crossings.reserve(m_found.size());
    for (const Found& found : m_found) {
        crossings.push_back(found.crossing);
        crossings.back().point = m_frame.leave(found.crossing.point);
    }
    return crossings;
}

}  // namespace

std::vector<Crossing> intersect(const Shape& a, const Shape& b, Extent extentA, Extent extentB) {
    const PieceList piecesA = pieceListOf(a, extentA);
    const PieceList piecesB = pieceListOf(b, extentB);
    return Meeting(piecesA, piecesB).all();
}

}  // namespace holdfast::geometry
