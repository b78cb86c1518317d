#pragma once

#include <functional>
#include <limits>

#include "host/src/yxdb/curves/BernsteinSlope.h"
#include "host/src/yxdb/curves/CurveMath.h"

namespace holdfast {

/// Finds the parameter at which a curve comes nearest to a point, among all of its pieces and not just near a guess.
///
/// Each piece is known twice: as a rational Bezier curve, whose hull tells where nothing nearer can be and where the
/// distance falls and rises just once; and as the curve itself, on which that one lowest place is found to the last
/// digits. Of equally near points it keeps the one that it met first.
class NearestParam {
public:
    struct Piece {
        BezierPoints control;                         ///< at least two points
        std::function<double(double)> paramAt;        ///< the curve's parameter at a place in [0, 1], rising
        std::function<CurveSample(double)> sampleAt;  ///< the curve at its own parameter
    };

    explicit NearestParam(const YxGePoint3d& target) : m_target(target) {}

    void offer(double param, const YxGePoint3d& point);
    /// Offers the ends of the piece and all places on it that may be the nearest.
    void search(const Piece& piece);

    double param() const { return m_param; }
    double distance() const { return m_distance; }

private:
    void searchPart(const Piece& piece, const BezierPoints& part, double from, double to, double error, int depth);
    double slope(const CurveSample& at) const { return (at.point - m_target).dotProduct(at.derivative); }
    double refined(const Piece& piece, double from, double to) const;

    YxGePoint3d m_target;
    double m_param = 0.0;
    double m_distance = std::numeric_limits<double>::infinity();
};

}  // namespace holdfast
