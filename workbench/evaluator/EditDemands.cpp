#include "workbench/evaluator/EditDemands.h"

#include <map>
#include <set>
#include <unordered_set>

#include "workbench/drawing/HostShapes.h"
#include "workbench/evaluator/FigureFromDocument.h"
#include "workbench/evaluator/Index.h"

namespace holdfast {

namespace {

const std::string& nameOf(const HostFigure& host, int number) {
    return host.document.entities[at(number)].id;
}

/// Values of an element's first and last point, as a lengthening knows them; -1: it has none.
int valueOfEnd(const FigureEntity& element, bool isStart) {
    switch (element.kind) {
        case FigureKind::line:
            return element.firstValue + (isStart ? 0 : 2);
        case FigureKind::arc:
            return element.firstValue + (isStart ? 3 : 5);
        case FigureKind::ellipticalArc:
            return element.firstValue + (isStart ? 5 : 7);
        case FigureKind::polyline:
            return element.firstValue + (isStart ? 0 : 2 * (element.vertexCount - 1));
        case FigureKind::spline:
            return element.firstValue + (isStart ? 0 : element.valueCount - 2);
        default:
            return -1;
    }
}

}  // namespace

const YxDbEntity& baseOf(const Drawing& drawing, const HostFigure& host, const AssocConstraintHeader& header,
                         int number) {
    const auto copy = header.preEditEntities.find(drawing.id(nameOf(host, number)));
    return copy != header.preEditEntities.end() && copy->second != nullptr ? *copy->second
                                                                           : drawing.entity(nameOf(host, number));
}

EditDemand transformDemand(const HostFigure& host, std::vector<int> edited, const YxGeMatrix3d& transform) {
    EditDemand demand;
    demand.whenBarred = WhenBarred::keepSizes;
    for (const int number : edited)
        demand.ask(host.figure, number, transformed(host.document.entities[at(number)].shape, transform));
    demand.edited = std::move(edited);
    return demand;
}

EditDemand placedDemand(const HostFigure& host, std::vector<int> edited) {
    EditDemand demand;
    demand.whenBarred = WhenBarred::keepSizes;
    for (const int number : edited)
        demand.ask(host.figure, number, host.document.entities[at(number)].shape);
    demand.edited = std::move(edited);
    return demand;
}

EditDemand alignDemand(const Drawing& drawing, HostFigure& host, const AssocConstraintHeader& header,
                       const ConverterFeed& feed) {
    const ConverterRecord* transform = feed.last("setTransform(matrix)");
    if (transform == nullptr)
        return {};
    EditDemand demand;
    demand.whenBarred = WhenBarred::keepSizes;
    demand.edited = host.numbersOf(drawing, header.editedObjectIds);
    for (const int number : demand.edited) {
        const Shape before = readShape(baseOf(drawing, host, header, number));
        host.setReference(number, before);
        demand.ask(host.figure, number, transformed(before, transform->transform));
    }
    return demand;
}

EditDemand lengthenDemand(const Drawing& drawing, HostFigure& host, const AssocConstraintHeader& header,
                          const ConverterFeed& feed) {
    std::set<std::pair<int, bool>> movedEnds;  // element, is its start
    const std::vector<int> listed = host.numbersOf(drawing, header.editedObjectIds);
    const std::unordered_set<int> edited(listed.begin(), listed.end());
    for (const ConverterRecord* record : feed.all("collectAndUpdateInfo")) {
        const int number = host.numberOf(drawing.nameOf(record->id));
        if (!edited.contains(number))
            continue;
        const bool isStart = record->isStart != isSeenFromBelow(drawing.entity(nameOf(host, number)));
        movedEnds.emplace(number, isStart);
    }
    EditDemand demand;
    for (const auto& [number, isStart] : movedEnds) {
        const int value = valueOfEnd(host.figure.entities[at(number)], isStart);
        if (value < 0)
            continue;
        host.setReference(number, readShape(baseOf(drawing, host, header, number)));
        demand.targets.push_back({value, host.figure.values[at(value)]});
        demand.targets.push_back({value + 1, host.figure.values[at(value + 1)]});
        if (demand.edited.empty() || demand.edited.back() != number)
            demand.edited.push_back(number);
    }
    return demand;
}

EditDemand propertiesDemand(const Drawing& drawing, HostFigure& host, const AssocConstraintHeader& header,
                            const ConverterFeed& feed) {
    EditDemand demand;
    demand.edited = host.numbersOf(drawing, header.editedObjectIds);
    std::map<int, const ConverterRecord*> lastOf;
    for (const ConverterRecord* record : feed.all("collectAndUpdateInfo"))
        lastOf[host.numberOf(drawing.nameOf(record->id))] = record;
    for (const int number : demand.edited) {
        const YxDbEntity& base = baseOf(drawing, host, header, number);
        host.setReference(number, readShape(base));
        if (const auto record = lastOf.find(number); record != lastOf.end())
            askProperty(demand, host, number, base, *record->second);
    }
    return demand;
}

}  // namespace holdfast
