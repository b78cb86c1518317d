#include "formats/fcstd/FcstdPatch.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>
#include <utility>

#include "formats/LostFacts.h"
#include "formats/fcstd/FcstdArchive.h"
#include "formats/fcstd/FcstdConstraintPatch.h"
#include "formats/fcstd/FcstdExpressionPatch.h"
#include "formats/fcstd/FcstdGeometryPatch.h"
#include "formats/fcstd/FcstdSketch.h"

namespace holdfast::formats {
namespace {

/// Lists say how many records they have.
void putCount(pugi::xml_node list, const char* name) {
    const auto all = list.children(name);
    const auto number = std::distance(all.begin(), all.end());
    if (pugi::xml_attribute attribute = list.attribute("count"); attribute.as_llong() != number)
        attribute.set_value(static_cast<long long>(number));
}

/// Constraints name geometry by its numbers, and expressions constraints by theirs. What constraints make of geometry
/// is known behind them all.
std::vector<std::string> patchProperties(FcstdSketch& sketch, const Document& after) {
    std::vector<std::string> notes;
    FcstdGeometryPatch geometry(sketch, after, notes);
    geometry.apply();
    FcstdConstraintPatch constraints(sketch, after, geometry, notes);
    constraints.apply();
    geometry.putUses(constraints.uses());
    FcstdExpressionPatch(sketch, after, constraints, notes).apply();
    putCount(sketch.geometry.list("GeometryList"), "Geometry");
    putCount(sketch.constraints.list("ConstraintList"), "Constrain");
    putCount(sketch.expressions.list("ExpressionEngine"), "Expression");
    return notes;
}

/// The text of the document with other properties of the sketch.
std::string patchedText(std::string_view text, FcstdSketch& sketch) {
    std::vector<FcstdSketch::Part*> parts{&sketch.geometry, &sketch.constraints, &sketch.expressions};
    std::sort(parts.begin(), parts.end(), [](const auto* a, const auto* b) { return a->range.begin < b->range.begin; });
    std::string patched;
    std::size_t done = 0;
    for (FcstdSketch::Part* part : parts) {
        if (part->range.end == 0)
            continue;
        patched.append(text.substr(done, part->range.begin - done)).append(partText(part->tree, text, part->range));
        done = part->range.end;
    }
    return patched.append(text.substr(done));
}

/// What outside geometry has stays there.
std::string lostOf(const Document& before, Document after) {
    std::set<std::string_view> outside;
    for (const Entity& entity : before.entities)
        if (entity.fixed)
            outside.insert(entity.id);
    std::erase_if(after.entities, [&](const Entity& entity) { return outside.contains(entity.id); });
    return lostFacts(after, {Fact::construction});
}

}  // namespace

FcstdOutput patchedFcstd(std::string_view archive, const std::string& sketch, const Document& after,
                         const std::string& file) {
    const std::string text = documentTextOf(archive, file);
    FcstdSketch original(text, sketch, file);
    if (original.drawing == after)
        return {std::string(archive), {}};
    std::vector<std::string> notes = patchProperties(original, after);
    for (const Parameter& parameter : after.parameters)
        notes.push_back("the parameter " + parameter.name + " was left out");
    if (after.lengthUnit != original.drawing.lengthUnit)
        notes.push_back("numbers are in the unit \"" + after.lengthUnit + "\", where the document has mm");
    if (std::string lost = lostOf(original.drawing, after); !lost.empty())
        notes.push_back(std::move(lost));
    return {withDocumentText(archive, patchedText(text, original), file), std::move(notes)};
}

}  // namespace holdfast::formats
