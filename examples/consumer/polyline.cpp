// The same host command for a polyline: the segments behind the cut go to a new object, and the module takes their
// constraints there. Prints both objects and what hangs on their segments; expected-polyline.txt is what it prints.

#include <cmath>
#include <cstddef>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <yxdb/YxDbPolyline.h>

#include "commands/break/ConstraintBreakCmdCenter.h"
#include "host/model/Scene.h"
#include "host/model/entities/EntityAccess.h"

using holdfast::EntityAccess;
using holdfast::HostAccess;
using holdfast::PolylineData;

namespace {

// Stairs. Behind each # stands the identifier of the vertex: it names a segment for as long as the segment lives.
constexpr const char* kDrawing = R"(
    polyline p 0,0#11 10,0#12 10,10#13 20,10#14 20,20#15
    line floor 0,-5 20,-5
    line wall 25,0 25,20
    parallel p[1] floor
    vertical p[2]
    horizontal p[3]
    parallel p[4] wall
)";

/// Opens a polyline for write until the end of the caller's block; null when there is none to open.
YxSmartPtr<YxDbPolyline> openPolyline(const YxDbObjectId& id) {
    const YxSmartPtr<YxDbObject> object = YxDbObjectIdImpl::openObject(id, YxDb::kForWrite, false);
    const bool isPolyline = !object.isNull() && object->isKindOf(YxDbPolyline::desc());
    return YxSmartPtr<YxDbPolyline>(isPolyline ? static_cast<YxDbPolyline*>(object.get()) : nullptr);
}

/// The part of a polyline of straight segments between two parameters. A new piece: no vertex has an identifier yet.
std::unique_ptr<YxDbPolyline> partOf(const YxDbPolyline& whole, double from, double to) {
    YxGePoint3d first, last;
    whole.getPointAtParam(from, first);
    whole.getPointAtParam(to, last);
    PolylineData data;
    data.vertices.push_back({.point = {first.x, first.y}});
    for (auto index = static_cast<std::size_t>(std::floor(from)) + 1; static_cast<double>(index) < to; ++index)
        data.vertices.push_back({.point = EntityAccess::vertex(whole, index).point});
    data.vertices.push_back({.point = {last.x, last.y}});
    return EntityAccess::makePolyline(data);
}

void copyReactors(const YxDbPolyline& from, YxDbPolyline& to) {
    for (const YxDbObjectId& reactor : HostAccess::reactors(from))
        HostAccess::addReactor(to, reactor);
}

/// BREAK: takes the part of an open polyline between two points on it out; `from` is the nearer one to its start.
YxDbObjectId breakPolyline(holdfast::HostBuilder& drawing, const YxDbObjectId& id, const YxGePoint3d& from,
                           const YxGePoint3d& to) {
    const YxSmartPtr<YxDbPolyline> polyline = openPolyline(id);
    double fromParam = 0.0, toParam = 0.0;
    if (polyline.isNull() || polyline->getParamAtPoint(from, fromParam) != Yxrt::eOk ||
        polyline->getParamAtPoint(to, toParam) != Yxrt::eOk)
        return {};
    ConstraintBreakCmdCenter centre;
    centre.setPtParam(polyline.get(), from, to);

    const double end = static_cast<double>(EntityAccess::segmentCount(*polyline));
    const std::unique_ptr<YxDbPolyline> first = partOf(*polyline, 0.0, fromParam);
    std::unique_ptr<YxDbPolyline> rest = partOf(*polyline, toParam, end);
    copyReactors(*polyline, *first);
    centre.setFirstCurve(id, first.get());
    EntityAccess::setPolyline(*polyline, EntityAccess::polyline(*first));

    const YxDbObjectId restId = drawing.add(std::move(rest));
    const YxSmartPtr<YxDbPolyline> second = openPolyline(restId);
    centre.setSecondCurve(second.get());
    centre.deleteConstraint();
    return restId;
}

void printList(const std::string& title, std::string list) {
    for (std::size_t at = 0; (at = list.find("; ", at)) != std::string::npos; at += 5)
        list.replace(at, 2, "\n    ");
    std::cout << "  " << title << ":\n    " << list << '\n';
}

void print(const std::string& title, const holdfast::Scene& drawing, const std::vector<std::string>& polylines) {
    std::cout << title << ":\n";
    for (const std::string& name : polylines)
        std::cout << "  " << name << ": " << drawing.vertices(name) << '\n';
    printList("dependencies", drawing.dependencies());
    printList("constraints", drawing.constraints());
}

}  // namespace

int main() {
    holdfast::Scene drawing(kDrawing);
    print("before", drawing, {"p"});
    const YxDbObjectId rest = breakPolyline(drawing.builder(), drawing.id("p"), {5, 0, 0}, {15, 10, 0});
    drawing.nameObject(rest, "rest");
    print("after", drawing, {"p", "rest"});

    const std::vector<std::string> findings = drawing.audit();
    for (const std::string& finding : findings)
        std::cout << "the host is not in order: " << finding << '\n';
    return findings.empty() ? 0 : 1;
}
