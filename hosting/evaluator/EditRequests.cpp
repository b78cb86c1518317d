#include "hosting/evaluator/EditRequests.h"

#include <map>
#include <set>
#include <unordered_set>
#include <utility>

#include "hosting/HostShapes.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Layout.h"

namespace holdfast::hosting {

namespace {

const std::string& nameOf(const HostSketch& host, int number) {
    return host.document.entities[at(number)].id;
}

}  // namespace

const YxDbEntity& baseOf(const Drawing& drawing, const HostSketch& host, const AssocConstraintHeader& header,
                         int number) {
    const auto copy = header.preEditEntities.find(drawing.id(nameOf(host, number)));
    return copy != header.preEditEntities.end() && copy->second != nullptr ? *copy->second
                                                                           : drawing.entity(nameOf(host, number));
}

EditRequest transformDemand(const HostSketch& host, std::vector<int> edited, const YxGeMatrix3d& transform) {
    EditRequest request;
    request.whenInfeasible = WhenInfeasible::keepSizes;
    for (const int number : edited)
        request.ask(host.sketch, number, transformed(host.document.entities[at(number)].shape, transform));
    request.edited = std::move(edited);
    return request;
}

EditRequest placedDemand(const HostSketch& host, std::vector<int> edited) {
    EditRequest request;
    request.whenInfeasible = WhenInfeasible::keepSizes;
    for (const int number : edited)
        request.ask(host.sketch, number, host.document.entities[at(number)].shape);
    request.edited = std::move(edited);
    return request;
}

void knowBefore(HostSketch& host, const std::vector<int>& edited, const HostSketch& before) {
    for (const int number : edited)
        if (const int then = before.numberOf(nameOf(host, number)); then >= 0)
            host.setReference(number, before.document.entities[at(then)].shape);
}

EditRequest alignDemand(const Drawing& drawing, HostSketch& host, const AssocConstraintHeader& header,
                        const ConverterFeed& feed) {
    const ConverterRecord* transform = feed.last("setTransform(matrix)");
    if (transform == nullptr)
        return {};
    EditRequest request;
    request.whenInfeasible = WhenInfeasible::keepSizes;
    request.edited = host.numbersOf(drawing, header.editedObjectIds);
    for (const int number : request.edited) {
        const Shape before = readShape(baseOf(drawing, host, header, number));
        host.setReference(number, before);
        request.ask(host.sketch, number, transformed(before, transform->transform));
    }
    return request;
}

EditRequest lengthenDemand(const Drawing& drawing, HostSketch& host, const AssocConstraintHeader& header,
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
    EditRequest request;
    for (const auto& [number, isStart] : movedEnds) {
        const Layout layout = layoutOf(host.sketch.entities[at(number)]);
        const int value = isStart ? layout.start : layout.end;
        if (value < 0)
            continue;
        host.setReference(number, readShape(baseOf(drawing, host, header, number)));
        request.targets.push_back({value, host.sketch.values[at(value)]});
        request.targets.push_back({value + 1, host.sketch.values[at(value + 1)]});
        if (request.edited.empty() || request.edited.back() != number)
            request.edited.push_back(number);
    }
    request.keepOthers(host.sketch, host.sketch.values);
    return request;
}

EditRequest propertiesDemand(const Drawing& drawing, HostSketch& host, const AssocConstraintHeader& header,
                             const ConverterFeed& feed) {
    EditRequest request;
    request.edited = host.numbersOf(drawing, header.editedObjectIds);
    std::map<int, const ConverterRecord*> lastOf;
    for (const ConverterRecord* record : feed.all("collectAndUpdateInfo"))
        lastOf[host.numberOf(drawing.nameOf(record->id))] = record;
    for (const int number : request.edited) {
        const YxDbEntity& base = baseOf(drawing, host, header, number);
        host.setReference(number, readShape(base));
        if (const auto record = lastOf.find(number); record != lastOf.end())
            askProperty(request, host, number, base, *record->second);
    }
    if (!request.targets.empty())
        request.keepOthers(host.sketch, host.sketch.reference);
    return request;
}

}  // namespace holdfast::hosting
