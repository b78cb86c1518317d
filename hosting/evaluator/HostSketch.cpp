#include "hosting/evaluator/HostSketch.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <unordered_set>

#include <yxbase/YxGeTol.h>

#include "geometry/Angles.h"
#include "hosting/HostShapes.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::hosting {

namespace {

/// A constraint on a cut away segment or an erased entity waits for the end of the command to go.
Document withoutLost(Document document) {
    std::erase_if(document.constraints, [](const Constraint& constraint) {
        return std::any_of(constraint.refs.begin(), constraint.refs.end(),
                           [](const Place& place) { return place.entity.empty() || place.index < 0; });
    });
    return document;
}

}  // namespace

HostSketch::HostSketch(const Drawing& drawing)
    : document(withoutLost(drawing.document())), sketch(sketchFrom(document)), drawn(sketch.values) {
    for (std::size_t i = 0; i < document.entities.size(); ++i)
        m_numbers.emplace(document.entities[i].id, static_cast<int>(i));
}

HostSketch::HostSketch(Drawing& drawing, const std::vector<std::string>& names, int steps)
    : HostSketch(drawing.partAround(names, steps), drawing.extent()) {}

HostSketch::HostSketch(Drawing::Part part, double size)
    : document(std::move(part.document)),
      sketch(sketchFrom(document)),
      drawn(sketch.values),
      isCut(part.isCut),
      m_reach(std::move(part.reach)) {
    sketch.sizeAround = size;
    for (std::size_t i = 0; i < document.entities.size(); ++i) {
        sketch.entities[i].fixed = sketch.entities[i].fixed || m_reach[i] == Drawing::Part::Scope::border;
        m_numbers.emplace(document.entities[i].id, static_cast<int>(i));
    }
}

bool HostSketch::reachesBorder() const {
    const std::vector<int> all = moved();
    return std::any_of(all.begin(), all.end(),
                       [&](int number) { return m_reach[at(number)] != Drawing::Part::Scope::inner; });
}

int HostSketch::numberOf(std::string_view name) const {
    const auto found = m_numbers.find(std::string(name));
    return found == m_numbers.end() ? -1 : found->second;
}

std::vector<int> HostSketch::numbersOf(const Drawing& drawing, const YxArray<YxDbObjectId>& ids) const {
    std::vector<int> numbers;
    std::unordered_set<int> seen;
    for (const YxDbObjectId& id : ids)
        if (const int number = numberOf(drawing.nameOf(id)); number >= 0 && seen.insert(number).second)
            numbers.push_back(number);
    return numbers;
}

void HostSketch::setReference(int entity, const Shape& before) {
    assert(entity >= 0 && at(entity) < sketch.entities.size());
    const std::vector<double> values = parametersOf(before);
    const SketchEntity& element = sketch.entities[at(entity)];
    if (values.size() == at(element.valueCount))
        std::copy(values.begin(), values.end(), sketch.reference.begin() + element.firstValue);
}

Shape HostSketch::shapeOf(int entity) const {
    return shapeFrom(sketch, entity, document.entities[at(entity)].shape);
}

std::vector<int> HostSketch::moved() const {
    std::vector<int> numbers;
    for (std::size_t i = 0; i < sketch.entities.size(); ++i) {
        const SketchEntity& element = sketch.entities[i];
        for (std::size_t v = at(element.firstValue); v < at(element.firstValue + element.valueCount); ++v)
            if (std::abs(sketch.values[v] - drawn[v]) > YxGeContext::gTol.equalPoint()) {
                numbers.push_back(static_cast<int>(i));
                break;
            }
    }
    return numbers;
}

void writeMoved(Drawing& drawing, const HostSketch& host) {
    for (const int number : host.moved())
        if (const std::string& name = host.document.entities[at(number)].id; drawing.id(name).isValid())
            drawing.write(name, host.shapeOf(number));
}

Shape transformed(const Shape& shape, const YxGeMatrix3d& transform) {
    const std::unique_ptr<YxDbEntity> entity = makeEntity(shape);
    entity->transformBy(transform);
    return readShape(*entity);
}

double nearestTurn(double angle, double other) {
    return angle + kTurn * std::round((other - angle) / (kTurn));
}

}  // namespace holdfast::hosting
