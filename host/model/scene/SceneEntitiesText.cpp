#include <numbers>

#include "host/model/entities/EntityAccess.h"
#include "host/model/scene/SceneEntities.h"
#include "host/model/scene/SceneNumbers.h"

namespace holdfast {

namespace {

template <class T>
const T& as(const YxDbEntity& entity) {
    return static_cast<const T&>(entity);
}

std::string normalText(const YxGeVector3d& normal) {
    if (normal.x != 0.0 || normal.y != 0.0)
        return " normal " + vectorText(normal);
    return normal.z < 0.0 ? " normal down" : "";
}

std::string anglesText(double start, double end) {
    return " from " + angleText(start) + " to " + angleText(end);
}

std::string numbersText(const char* word, const std::vector<double>& numbers) {
    std::string text = numbers.empty() ? "" : std::string(" ") + word;
    for (const double number : numbers)
        text += " " + numberText(number);
    return text;
}

std::string lineText(const YxDbEntity& entity) {
    const LineData data = EntityAccess::line(as<YxDbLine>(entity));
    return pointText(data.start) + " " + pointText(data.end);
}

std::string directedText(const DirectedData& data) {
    return pointText(data.base) + " dir " + vectorText(data.direction);
}

std::string rayText(const YxDbEntity& entity) {
    return directedText(EntityAccess::ray(as<YxDbRay>(entity)));
}

std::string xlineText(const YxDbEntity& entity) {
    return directedText(EntityAccess::xline(as<YxDbXline>(entity)));
}

std::string circleText(const YxDbEntity& entity) {
    const CircleData data = EntityAccess::circle(as<YxDbCircle>(entity));
    return "centre " + pointText(data.centre) + " radius " + numberText(data.radius) + normalText(data.normal);
}

std::string arcText(const YxDbEntity& entity) {
    const ArcData data = EntityAccess::arc(as<YxDbArc>(entity));
    return "centre " + pointText(data.centre) + " radius " + numberText(data.radius) +
           anglesText(data.startAngle, data.endAngle) + normalText(data.normal);
}

std::string ellipseText(const YxDbEntity& entity) {
    const EllipseData data = EntityAccess::ellipse(as<YxDbEllipse>(entity));
    const bool isFull = data.startAngle == 0.0 && data.endAngle == 2.0 * std::numbers::pi;
    return "centre " + pointText(data.centre) + " major " + vectorText(data.majorAxis) + " ratio " +
           numberText(data.ratio) + (isFull ? "" : anglesText(data.startAngle, data.endAngle)) +
           normalText(data.normal);
}

std::string splineText(const YxDbEntity& entity) {
    const SplineData data = EntityAccess::spline(as<YxDbSpline>(entity));
    std::string text = "degree " + std::to_string(data.degree) + " at";
    for (const YxGePoint3d& point : data.control)
        text += " " + pointText(point);
    return text + numbersText("knots", data.knots) + numbersText("weights", data.weights) +
           (data.periodic ? " periodic" : "");
}

std::string polylineText(const YxDbEntity& entity) {
    return verticesText(as<YxDbPolyline>(entity));
}

std::string positionText(const YxDbEntity& entity) {
    return pointText(EntityAccess::point(as<YxDbPoint>(entity)));
}

std::string writtenText(const TextData& data) {
    const TextData plain;
    return pointText(data.position) + " rotation " + angleText(data.rotation) +
           (data.height == plain.height ? "" : " height " + numberText(data.height)) + normalText(data.normal) +
           (data.text.empty() ? "" : " \"" + escaped(data.text) + "\"");
}

std::string textText(const YxDbEntity& entity) {
    return writtenText(EntityAccess::text(as<YxDbText>(entity)));
}

std::string mtextText(const YxDbEntity& entity) {
    return writtenText(EntityAccess::mtext(as<YxDbMText>(entity)));
}

struct EntityForm {
    const YxRxClass* type;
    const char* kind;
    std::string (*text)(const YxDbEntity&);
};

const EntityForm* formOf(const YxDbEntity& entity) {
    static const EntityForm forms[] = {
        {YxDbLine::desc(), "line", &lineText},       {YxDbRay::desc(), "ray", &rayText},
        {YxDbXline::desc(), "xline", &xlineText},    {YxDbCircle::desc(), "circle", &circleText},
        {YxDbArc::desc(), "arc", &arcText},          {YxDbEllipse::desc(), "ellipse", &ellipseText},
        {YxDbSpline::desc(), "spline", &splineText}, {YxDbPolyline::desc(), "polyline", &polylineText},
        {YxDbPoint::desc(), "point", &positionText}, {YxDbText::desc(), "text", &textText},
        {YxDbMText::desc(), "mtext", &mtextText},
    };
    for (const EntityForm& form : forms)
        if (entity.isKindOf(form.type))
            return &form;
    return nullptr;
}

}  // namespace

std::string entityText(const std::string& name, const YxDbEntity& entity) {
    const EntityForm* form = formOf(entity);
    if (form == nullptr)
        return std::string("// ") + name + " is a " + entity.isA()->name();
    return std::string(form->kind) + " " + name + " " + form->text(entity);
}

std::string verticesText(const YxDbPolyline& polyline) {
    const PolylineData data = EntityAccess::polyline(polyline);
    std::string text;
    for (const PolylineVertex& vertex : data.vertices) {
        text += (text.empty() ? "" : " ") + pointText(vertex.point);
        text += vertex.identifier == 0 ? "" : "#" + std::to_string(vertex.identifier);
        text += vertex.bulge == 0.0 ? "" : "^" + numberText(vertex.bulge);
    }
    return text + (data.closed ? " closed" : "");
}

}  // namespace holdfast
