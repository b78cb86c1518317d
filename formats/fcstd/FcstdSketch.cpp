#include "formats/fcstd/FcstdSketch.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>

#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/Places.h"
#include "document/checks/ConstraintCheck.h"
#include "document/checks/DocumentCheck.h"
#include "document/checks/ShapeCheck.h"
#include "document/formulas/Calculation.h"
#include "document/text/DrawingError.h"
#include "document/text/Suggest.h"
#include "formats/fcstd/FcstdShapes.h"

namespace holdfast::formats {
namespace {

using Use = FcstdGeometryRecord::Use;

/// By name or, where only one has it, by label.
const FcstdObject& sketchNamed(const FcstdObjects& objects, const std::string& name, const std::string& file) {
    std::vector<const FcstdObject*> labelled;
    std::vector<std::string_view> names;
    for (const FcstdObject& sketch : objects.sketches) {
        if (sketch.name == name)
            return sketch;
        if (sketch.label == name)
            labelled.push_back(&sketch);
        names.emplace_back(sketch.name);
    }
    if (labelled.size() == 1)
        return *labelled.front();
    if (names.empty())
        throw DrawingError(file, {"", "a document without a sketch", "one with a sketch"});
    throw DrawingError(file,
                       {"", (labelled.empty() ? "no sketch called " : "several sketches labelled ") + inQuotes(name),
                        "the name of a sketch: " + oneOf(names) + suggestion(name, names)});
}

bool isVersionOne(const std::string& version) {
    int major = 0;
    std::from_chars(version.data(), version.data() + version.size(), major);
    return major >= 1;
}

bool comesTo(Calculation& calculation, const Constraint& dimension) {
    try {
        return agrees(*dimension.value, calculation.value(itemOf(dimension)).value);
    } catch (const FormulaError&) {
        return false;
    }
}

bool isSet(const pugi::xml_node& record, FcstdKind kind) {
    return integerIn(record, "Type") == static_cast<int>(kind);
}

}  // namespace

FcstdSketch::FcstdSketch(std::string_view text, const std::string& sketch, const std::string& file) : m_file(file) {
    const FcstdObjects objects = objectsIn(text, file);
    const FcstdObject& object = sketchNamed(objects, sketch, file);
    isNewer = isVersionOne(objects.programVersion);
    names.sketch = object.name;
    names.label = object.label;
    drawing.name = object.label.empty() ? object.name : object.label;
    load(text, object, "Geometry", geometry);
    load(text, object, "Constraints", constraints);
    load(text, object, "ExpressionEngine", expressions);
    load(text, object, "ExternalGeo", outside);
    listRecords();
    findHelpers();
    readEntities();
    readOutside();
    readConstraints();
    readFormulas();
    checkDocument(drawing, file);
}

void FcstdSketch::load(std::string_view text, const FcstdObject& object, const char* property, Part& part) {
    const auto found = object.properties.find(property);
    if (found == object.properties.end())
        return;
    part.range = found->second;
    loadPart(part.tree, text, part.range, m_file);
}

void FcstdSketch::listRecords() {
    for (const pugi::xml_node& record : geometry.list("GeometryList").children("Geometry"))
        geometryRecords.push_back({record, Use::entity, "g" + std::to_string(geometryRecords.size())});
    for (const pugi::xml_node& record : constraints.list("ConstraintList").children("Constrain")) {
        names.constraints.emplace_back(record.attribute("Name").value());
        constraintRecords.push_back({record, "c" + std::to_string(constraintRecords.size())});
    }
}

/// Control points and knots of splines are geometry of their own there.
void FcstdSketch::findHelpers() {
    const auto isRecord = [&](int number) {
        return number >= 0 && static_cast<std::size_t>(number) < geometryRecords.size();
    };
    for (const FcstdConstraintRecord& each : constraintRecords) {
        if (!isSet(each.record, FcstdKind::alignment))
            continue;
        const FcstdRefs refs = refsIn(each.record);
        const auto alignment = static_cast<FcstdAlignment>(integerIn(each.record, "InternalAlignmentType"));
        const bool isControl = alignment == FcstdAlignment::control, isKnot = alignment == FcstdAlignment::knot;
        const int index = integerIn(each.record, "InternalAlignmentIndex", -1);
        if ((!isControl && !isKnot) || !isRecord(refs[0].geometry) || !isRecord(refs[1].geometry) || index < 0)
            continue;
        FcstdGeometryRecord& helper = geometryRecords[static_cast<std::size_t>(refs[0].geometry)];
        helper.use = isControl ? Use::control : Use::knot;
        helper.spline = static_cast<std::size_t>(refs[1].geometry);
        helper.index = static_cast<std::size_t>(index);
    }
}

void FcstdSketch::readEntities() {
    addReference("origin", PointShape{});
    addReference("x_axis", XlineShape{{0.0, 0.0}, {1.0, 0.0}});
    addReference("y_axis", XlineShape{{0.0, 0.0}, {0.0, 1.0}});
    for (FcstdGeometryRecord& each : geometryRecords) {
        if (each.use != Use::entity)
            continue;
        std::optional<Shape> shape = shapeIn(each.record);
        if (!shape || faultIn(*shape)) {
            each.use = Use::unread;
            notUnderstood.push_back(each.id + " (" + std::string(kindOf(each.record)) + ")");
            continue;
        }
        m_entities.emplace(each.id, drawing.entities.size());
        drawing.entities.push_back({each.id, std::move(*shape), isConstruction(each.record)});
    }
}

void FcstdSketch::addReference(const std::string& id, Shape shape) {
    m_entities.emplace(id, drawing.entities.size());
    drawing.entities.push_back({id, std::move(shape), true, true});
}

/// Newer documents hold it, behind the two axes.
void FcstdSketch::readOutside() {
    constexpr std::size_t axes = 2;
    std::size_t number = 0;
    for (const pugi::xml_node& record : outside.list("GeometryList").children("Geometry"))
        if (std::optional<Shape> shape = shapeIn(record); number++ >= axes && shape && !faultIn(*shape)) {
            const std::size_t place = number - 1 - axes;
            addReference("x" + std::to_string(place), std::move(*shape));
            outsideNumbers["x" + std::to_string(place)] = {FcstdRef::kFirstOutside - static_cast<int>(place)};
        }
}

const Shape* FcstdSketch::shapeOf(const std::string& entity) const {
    const auto found = m_entities.find(entity);
    return found == m_entities.end() ? nullptr : &drawing.entities[found->second].shape;
}

std::optional<Place> FcstdSketch::place(FcstdRef ref, bool isDirection) const {
    if (ref.geometry == FcstdRef::kXAxis || ref.geometry == FcstdRef::kYAxis)
        return axisPlace(ref, isDirection);
    if (ref.geometry < 0)
        return outsidePlace(ref);
    const auto number = static_cast<std::size_t>(ref.geometry);
    if (number >= geometryRecords.size())
        return std::nullopt;
    const FcstdGeometryRecord& record = geometryRecords[number];
    if (record.use == Use::entity)
        return placeOn(record.id, ref);
    if (record.use != Use::control || ref.point != FcstdRef::centre || record.spline >= geometryRecords.size())
        return std::nullopt;
    return Place{geometryRecords[record.spline].id, PlaceKind::control, static_cast<int>(record.index)};
}

std::optional<Place> FcstdSketch::axisPlace(FcstdRef ref, bool isDirection) const {
    if (!isDirection && ref.point == FcstdRef::start)
        return Place{.entity = "origin"};
    return placeOn(ref.geometry == FcstdRef::kXAxis ? "x_axis" : "y_axis", ref);
}

std::optional<Place> FcstdSketch::outsidePlace(FcstdRef ref) const {
    if (const auto point = m_outsidePoints.find(ref); point != m_outsidePoints.end())
        return Place{.entity = point->second};
    return placeOn("x" + std::to_string(FcstdRef::kFirstOutside - ref.geometry), ref);
}

std::optional<Place> FcstdSketch::placeOn(const std::string& entity, FcstdRef ref) const {
    const Shape* shape = shapeOf(entity);
    if (shape == nullptr)
        return std::nullopt;
    constexpr PlaceKind kinds[] = {PlaceKind::whole, PlaceKind::start, PlaceKind::end, PlaceKind::centre};
    if (ref.point < FcstdRef::whole || ref.point > FcstdRef::centre)
        return std::nullopt;
    const bool isPoint = std::holds_alternative<PointShape>(*shape);
    const Place found{entity, isPoint ? PlaceKind::whole : kinds[ref.point]};
    return hasPlace(*shape, found) ? std::optional(found) : std::nullopt;
}

/// Where a document does not hold outside geometry, what coincides with its points tells where these are.
void FcstdSketch::addOutsidePoints() {
    constexpr const char* endings[] = {"", "_start", "_end", "_centre"};
    for (const FcstdConstraintRecord& each : constraintRecords) {
        if (!isSet(each.record, FcstdKind::coincident))
            continue;
        FcstdRefs refs = refsIn(each.record);
        if (refs[1].isOutside())
            std::swap(refs[0], refs[1]);
        const std::optional<Place> own = refs[1].isOutside() ? std::nullopt : place(refs[1], false);
        const std::optional<Vec2> point = own ? pointAt(*shapeOf(own->entity), *own) : std::nullopt;
        const bool isPlace =
            refs[0].isOutside() && refs[0].point > FcstdRef::whole && refs[0].point <= FcstdRef::centre;
        if (!isPlace || !point || outsidePlace(refs[0]))
            continue;
        const std::string id =
            "x" + std::to_string(FcstdRef::kFirstOutside - refs[0].geometry) + endings[refs[0].point];
        addReference(id, PointShape{*point});
        outsideNumbers.emplace(id, refs[0]);
        m_outsidePoints.emplace(refs[0], id);
    }
}

void FcstdSketch::readConstraints() {
    addOutsidePoints();
    const EntityIndex entities(drawing);
    for (FcstdConstraintRecord& each : constraintRecords) {
        std::optional<Constraint> found = constraintIn(
            each.record, [this](FcstdRef ref, bool isDirection) { return place(ref, isDirection); },
            [this](const std::string& entity) { return shapeOf(entity); });
        if (found) {
            found->id = each.id;
            if (!faultIn(*found, entities)) {
                take(each, std::move(*found));
                continue;
            }
        }
        each.isFolded = isFolded(each.record);
        if (!each.isFolded)
            notUnderstood.push_back(refusalOf(each));
    }
}

/// A fixed line may slide along itself in drawings, and a blocked one may not.
void FcstdSketch::take(FcstdConstraintRecord& record, Constraint found) {
    record.isRead = true;
    const bool isBlock = found.type == ConstraintType::fixed && found.refs[0].kind == PlaceKind::whole &&
                         std::holds_alternative<LineShape>(*shapeOf(found.refs[0].entity));
    if (isBlock)
        found.refs[0].kind = PlaceKind::start;
    drawing.constraints.push_back(found);
    if (!isBlock)
        return;
    record.companion = record.id + "_end";
    found.id = record.companion;
    found.refs[0].kind = PlaceKind::end;
    drawing.constraints.push_back(std::move(found));
}

/// What only says how the helpers of a spline belong to it.
bool FcstdSketch::isFolded(const pugi::xml_node& record) const {
    for (const FcstdRef ref : refsIn(record)) {
        if (ref.isNothing())
            continue;
        if (ref.geometry < 0 || static_cast<std::size_t>(ref.geometry) >= geometryRecords.size())
            return false;
        const FcstdGeometryRecord& each = geometryRecords[static_cast<std::size_t>(ref.geometry)];
        const bool isSpline = isSet(record, FcstdKind::alignment) && kindOf(each.record) == "BSplineCurve";
        if (each.use != Use::control && each.use != Use::knot && !isSpline)
            return false;
    }
    return true;
}

std::string FcstdSketch::refusalOf(const FcstdConstraintRecord& each) const {
    const FcstdRefs refs = refsIn(each.record);
    const bool isOutside =
        std::any_of(refs.begin(), refs.end(), [this](FcstdRef ref) { return ref.isOutside() && !outsidePlace(ref); });
    return each.id + " (" + spokenKind(integerIn(each.record, "Type")) +
           (isOutside ? " with outside geometry, which the document does not hold)" : ")");
}

/// Only formulas that come to what their dimensions are; what is calculated from one that does not has its value still.
void FcstdSketch::readFormulas() {
    takeFormulas();
    for (bool isSound = false; !isSound;) {
        Calculation calculation = calculationOver(drawing);
        std::vector<Constraint*> unsound;
        for (Constraint& dimension : drawing.constraints)
            if (!dimension.formula.empty() && !comesTo(calculation, dimension))
                unsound.push_back(&dimension);
        for (Constraint* dimension : unsound) {
            notUnderstood.push_back("the expression of " + dimension->id);
            dimension->formula.clear();
        }
        isSound = unsound.empty();
    }
}

void FcstdSketch::takeFormulas() {
    std::unordered_map<std::string, Constraint*> dimensions;
    for (Constraint& constraint : drawing.constraints)
        if (isDimension(constraint.type))
            dimensions.emplace(constraint.id, &constraint);
    const auto nameOf = [&](std::size_t number) -> std::optional<std::string> {
        const auto found = dimensions.find("c" + std::to_string(number));
        if (found == dimensions.end())
            return std::nullopt;
        const std::string& name = found->second->name;
        return name.empty() || dimensions.contains(name) ? found->first : name;
    };
    for (const pugi::xml_node& each : expressions.list("ExpressionEngine").children("Expression")) {
        const std::optional<std::size_t> owner = names.constraintAt(each.attribute("path").value());
        if (!owner)
            continue;
        const auto found = dimensions.find("c" + std::to_string(*owner));
        std::optional<std::string> formula = formulaOf(each.attribute("expression").value(), names, nameOf);
        if (formula && found != dimensions.end() && found->second->driving)
            found->second->formula = std::move(*formula);
        else
            notUnderstood.push_back("the expression of c" + std::to_string(*owner));
    }
}

}  // namespace holdfast::formats
