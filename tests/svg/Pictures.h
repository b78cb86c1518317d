#pragma once

#include <cmath>
#include <sstream>
#include <string>
#include <variant>

#include "formats/svg/SvgReader.h"
#include "geometry/Angles.h"

namespace holdfast::formats {

/// A picture of 100 x 100 mm whose unit is a millimetre, so that y in the drawing is 100 - y.
inline std::string pictureOf(const std::string& elements, const std::string& attributes = "") {
    return R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" )"
           R"(xmlns:inkscape="http://www.inkscape.org/namespaces/inkscape" )" +
           (attributes.empty() ? R"(width="100mm" height="100mm" viewBox="0 0 100 100")" : attributes) + ">\n" +
           elements + "\n</svg>\n";
}

inline SvgDrawing readPicture(const std::string& elements, const std::string& attributes = "") {
    return readSvg(pictureOf(elements, attributes), "part.svg");
}

/// Numbers to six digits behind the point, as people write them.
inline std::string shownNumber(double value) {
    std::ostringstream out;
    out.precision(9);
    out << std::round(value * 1e6) / 1e6 + 0.0;
    return out.str();
}
inline std::string shownPoint(Vec2 point) {
    return shownNumber(point.x) + "," + shownNumber(point.y);
}

struct ShownShape {
    std::string operator()(const LineShape& s) const { return "line " + shownPoint(s.start) + " " + shownPoint(s.end); }
    std::string operator()(const ArcShape& s) const {
        return "arc " + shownPoint(s.centre) + " radius " + shownNumber(s.radius) + course(s.startAngle, s.endAngle);
    }
    std::string operator()(const CircleShape& s) const {
        return "circle " + shownPoint(s.centre) + " radius " + shownNumber(s.radius);
    }
    std::string operator()(const EllipseShape& s) const { return "ellipse " + axes(s.centre, s.majorAxis, s.ratio); }
    std::string operator()(const EllipticalArcShape& s) const {
        return "elliptical arc " + axes(s.centre, s.majorAxis, s.ratio) + course(s.startParam, s.endParam);
    }
    std::string operator()(const SplineShape& s) const {
        std::string text = "spline of degree " + std::to_string(s.degree);
        for (const Vec2 control : s.control)
            text += " " + shownPoint(control);
        return text;
    }
    std::string operator()(const PointShape& s) const { return "point " + shownPoint(s.position); }
    template <class Other>
    std::string operator()(const Other&) const {
        return "something else";
    }

private:
    static std::string axes(Vec2 centre, Vec2 major, double ratio) {
        return shownPoint(centre) + " axis " + shownPoint(major) + " ratio " + shownNumber(ratio);
    }
    static std::string course(double from, double to) {
        return " from " + shownNumber(inDegrees(from)) + " to " + shownNumber(inDegrees(to));
    }
};

/// "line 0,0 10,0; circle 5,5 radius 2".
inline std::string shownDrawing(const Document& document) {
    std::string text;
    for (const Entity& entity : document.entities)
        text += (text.empty() ? "" : "; ") + std::visit(ShownShape(), entity.shape);
    return text;
}

/// What elements draw in a picture of 100 x 100 mm.
inline std::string drawnBy(const std::string& elements) {
    return shownDrawing(readPicture(elements).document);
}

/// What a path draws where y looks downwards as in the picture: so that tests read as the path does.
inline std::string drawnByPath(const std::string& data) {
    return drawnBy("<g transform=\"matrix(1 0 0 -1 0 100)\"><path d=\"" + data + "\"/></g>");
}

/// "text (2), image": what was told, in its order.
inline std::string told(const std::vector<SvgNotice>& notices) {
    std::string text;
    for (const SvgNotice& notice : notices)
        text += (text.empty() ? "" : ", ") + notice.what +
                (notice.count > 1 ? " (" + std::to_string(notice.count) + ")" : "");
    return text;
}

}  // namespace holdfast::formats
