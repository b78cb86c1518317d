#include "formats/json/JsonEntities.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>
#include <utility>

#include "document/Names.h"
#include "document/text/Suggest.h"
#include "formats/json/JsonLooks.h"

namespace holdfast::formats {
namespace {

using Fields = std::span<const std::string_view>;

std::vector<Vec2> points(const JsonView& view) {
    std::vector<Vec2> values;
    for (const JsonView& item : view.list())
        values.push_back(item.point());
    return values;
}

std::vector<double> numbers(const JsonView& view) {
    std::vector<double> values;
    for (const JsonView& item : view.list())
        values.push_back(item.number());
    return values;
}

std::vector<int> integers(const JsonView& view) {
    std::vector<int> values;
    for (const JsonView& item : view.list())
        values.push_back(item.integer());
    return values;
}

Shape readLine(const JsonView& view) {
    return LineShape{view.at("start").point(), view.at("end").point()};
}

Shape readArc(const JsonView& view) {
    return ArcShape{view.at("centre").point(), view.at("radius").number(), view.at("start_angle").number(),
                    view.at("end_angle").number()};
}

Shape readCircle(const JsonView& view) {
    return CircleShape{view.at("centre").point(), view.at("radius").number()};
}

Shape readEllipse(const JsonView& view) {
    return EllipseShape{view.at("centre").point(), view.at("major_axis").point(), view.at("ratio").number()};
}

Shape readEllipticalArc(const JsonView& view) {
    return EllipticalArcShape{view.at("centre").point(), view.at("major_axis").point(), view.at("ratio").number(),
                              view.at("start_param").number(), view.at("end_param").number()};
}

Shape readSpline(const JsonView& view) {
    SplineShape spline;
    spline.degree = view.at("degree").integer();
    spline.periodic = view.at("periodic").flag();
    spline.control = points(view.at("control"));
    spline.knots = numbers(view.at("knots"));
    if (const auto weights = view.find("weights"))
        spline.weights = numbers(*weights);
    return spline;
}

Shape readPoint(const JsonView& view) {
    return PointShape{view.at("position").point()};
}

Shape readXline(const JsonView& view) {
    return XlineShape{view.at("point").point(), view.at("direction").point()};
}

Shape readRay(const JsonView& view) {
    return RayShape{view.at("point").point(), view.at("direction").point()};
}

Shape readPolyline(const JsonView& view) {
    PolylineShape polyline;
    polyline.vertices = points(view.at("vertices"));
    const auto bulges = view.find("bulges");
    polyline.bulges = bulges ? numbers(*bulges) : std::vector<double>(polyline.vertices.size(), 0.0);
    const auto ids = view.find("ids");
    polyline.ids = ids ? integers(*ids) : std::vector<int>(polyline.vertices.size(), 0);
    polyline.closed = view.at("closed").flag();
    return polyline;
}

Shape readTextOf(const JsonView& view, bool multiline) {
    return TextShape{view.at("position").point(), view.at("rotation").number(), view.at("height").number(),
                     view.at("text").text(), multiline};
}

Shape readText(const JsonView& view) {
    return readTextOf(view, false);
}

Shape readMtext(const JsonView& view) {
    return readTextOf(view, true);
}

constexpr std::string_view kLine[] = {"start", "end"};
constexpr std::string_view kArc[] = {"centre", "radius", "start_angle", "end_angle"};
constexpr std::string_view kCircle[] = {"centre", "radius"};
constexpr std::string_view kEllipse[] = {"centre", "major_axis", "ratio"};
constexpr std::string_view kEllipticalArc[] = {"centre", "major_axis", "ratio", "start_param", "end_param"};
constexpr std::string_view kSpline[] = {"degree", "periodic", "control", "knots", "weights"};
constexpr std::string_view kPoint[] = {"position"};
constexpr std::string_view kXline[] = {"point", "direction"};
constexpr std::string_view kPolyline[] = {"vertices", "bulges", "ids", "closed"};
constexpr std::string_view kText[] = {"position", "rotation", "height", "text"};

struct Form {
    std::string_view type;
    Fields fields;
    Shape (*read)(const JsonView& view);
};

constexpr std::array<Form, 12> kForms = {{{"line", kLine, readLine},
                                          {"arc", kArc, readArc},
                                          {"circle", kCircle, readCircle},
                                          {"ellipse", kEllipse, readEllipse},
                                          {"elliptical_arc", kEllipticalArc, readEllipticalArc},
                                          {"spline", kSpline, readSpline},
                                          {"point", kPoint, readPoint},
                                          {"xline", kXline, readXline},
                                          {"ray", kXline, readRay},
                                          {"polyline", kPolyline, readPolyline},
                                          {"text", kText, readText},
                                          {"mtext", kText, readMtext}}};

static_assert(std::all_of(kForms.begin(), kForms.end(),
                          [](const Form& form) { return form.fields.size() <= std::size(kSpline); }));

const Form& formOf(const JsonView& view) {
    const JsonView typeView = view.at("type");
    const std::string type = typeView.text();
    for (const Form& form : kForms) {
        if (form.type == type)
            return form;
    }
    typeView.failAs("an entity type: " + oneOf(entityTypeNames()) + suggestion(type, entityTypeNames()));
}

void refuseUnknownFields(const JsonView& view, Fields fields) {
    constexpr std::string_view before[] = {"id", "type"}, behind[] = {"construction", "fixed"};
    constexpr std::size_t most = std::size(kSpline);
    std::array<std::string_view, std::size(before) + most + std::size(behind) + std::size(kLookFields)> allowed;
    auto end = std::copy(std::begin(before), std::end(before), allowed.begin());
    end = std::copy(fields.begin(), fields.end(), end);
    end = std::copy(std::begin(behind), std::end(behind), end);
    end = std::copy(kLookFields.begin(), kLookFields.end(), end);
    view.allowOnly(std::span(allowed.begin(), end));
}

}  // namespace

Entity readEntity(const JsonView& view) {
    const Form& form = formOf(view);
    refuseUnknownFields(view, form.fields);
    return Entity{view.at("id").text(), form.read(view), flagOr(view, "construction", false),
                  flagOr(view, "fixed", false), readLook(view)};
}

}  // namespace holdfast::formats
