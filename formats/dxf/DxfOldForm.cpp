#include "formats/dxf/DxfOldForm.h"

#include <cmath>
#include <string_view>
#include <utility>

#include "formats/dxf/Flatten.h"

namespace holdfast::formats {
namespace {

OldForm flat(std::vector<Vec2> points, bool closed) {
    const std::size_t count = points.size();
    PolylineShape polyline{std::move(points), std::vector<double>(count, 0.0), std::vector<int>(count, 0), closed};
    return {{std::move(polyline)}, DxfLoss::flattened, closed ? count : count - 1};
}

/// A paragraph hangs from its top left corner; baselines lie 5/3 of the text height apart.
OldForm linesOf(const TextShape& paragraph) {
    const Vec2 down{std::sin(paragraph.rotation), -std::cos(paragraph.rotation)};
    OldForm form{{}, DxfLoss::split};
    std::string_view rest = paragraph.text;
    for (bool more = true; more; ++form.pieces) {
        const std::size_t end = rest.find('\n');
        const double drop = paragraph.height * (1.0 + static_cast<double>(form.pieces) * 5.0 / 3.0);
        form.shapes.push_back(TextShape{{paragraph.position.x + drop * down.x, paragraph.position.y + drop * down.y},
                                        paragraph.rotation,
                                        paragraph.height,
                                        std::string(rest.substr(0, end)),
                                        false});
        more = end != std::string_view::npos;
        rest.remove_prefix(more ? end + 1 : rest.size());
    }
    return form;
}

struct Former {
    double tolerance;

    OldForm operator()(const EllipseShape& ellipse) const {
        std::vector<Vec2> points = flattened(ellipse, tolerance);
        points.pop_back();
        return flat(std::move(points), true);
    }
    OldForm operator()(const EllipticalArcShape& arc) const { return flat(flattened(arc, tolerance), false); }
    OldForm operator()(const SplineShape& spline) const {
        std::vector<Vec2> points = flattened(spline, tolerance);
        if (spline.periodic)
            points.pop_back();
        return flat(std::move(points), spline.periodic);
    }
    OldForm operator()(const XlineShape&) const { return {{}, DxfLoss::leftOut}; }
    OldForm operator()(const RayShape&) const { return {{}, DxfLoss::leftOut}; }
    OldForm operator()(const TextShape& text) const { return text.multiline ? linesOf(text) : OldForm{{text}}; }
    template <class Other>
    OldForm operator()(const Other& shape) const {
        return {{shape}};
    }
};

}  // namespace

OldForm oldForm(const Shape& shape, double tolerance) {
    return std::visit(Former{tolerance}, shape);
}

}  // namespace holdfast::formats
