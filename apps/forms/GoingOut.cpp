#include "apps/forms/GoingOut.h"

#include <algorithm>
#include <utility>

#include "apps/forms/PdfPage.h"
#include "document/text/Suggest.h"
#include "editing/Session.h"
#include "formats/LostFacts.h"
#include "formats/dxf/DxfPatch.h"
#include "formats/fcstd/FcstdPatch.h"
#include "formats/json/JsonWriter.h"
#include "formats/slvs/SlvsWriter.h"
#include "report/page/Wording.h"
#include "report/picture/Svg.h"

namespace holdfast::forms {

namespace {

std::string noteOf(const DxfNote& note, const DxfOutput& output, const std::string& unit) {
    switch (note.loss) {
        case DxfLoss::flattened:
            return note.entity + " went out as a polyline of " + report::counted(note.pieces, "segment") + ", within " +
                   shortNumber(output.tolerance) + " " + unit;
        case DxfLoss::split:
            return note.entity + " went out as " + report::counted(note.pieces, "single line") + " of text";
        case DxfLoss::firstOfKind:
            return note.entity + " is the first " + note.kind + " in the file, in the oldest form that it can have";
        case DxfLoss::leftOut:
            break;
    }
    return note.entity + " was left out, a line without end";
}

/// Some of many names.
std::string firstOf(const std::vector<std::string>& names) {
    constexpr std::size_t most = 5;
    std::string text;
    for (std::size_t i = 0; i < std::min(most, names.size()); ++i)
        text += (i == 0 ? "" : ", ") + names[i];
    return text + (names.size() > most ? " and " + std::to_string(names.size() - most) + " more" : "");
}

std::string namesOf(const std::vector<BlockReference>& references) {
    std::vector<std::string> names;
    names.reserve(references.size());
    for (const BlockReference& reference : references)
        names.push_back(reference.id);
    return firstOf(names);
}

/// "2 block references and 1 hatched area were left out".
std::string leftOutReferences(const Document& document) {
    using Kind = BlockReference::Kind;
    const auto countOf = [&](Kind kind, bool isMeasured = false) {
        return static_cast<std::size_t>(
            std::count_if(document.references.begin(), document.references.end(), [&](const BlockReference& reference) {
                return reference.kind == kind && reference.measure.empty() != isMeasured;
            }));
    };
    std::vector<std::string> counted;
    const auto add = [&](std::size_t count, const char* word) {
        if (count > 0)
            counted.push_back(report::counted(count, word));
    };
    add(countOf(Kind::insert), "block reference");
    add(countOf(Kind::dimension), "dimension");
    add(countOf(Kind::dimension, true), "dimension picture");
    add(countOf(Kind::hatch), "hatched area");
    return allOf(counted) + (document.references.size() == 1 ? " was" : " were") +
           " left out: " + namesOf(document.references) +
           (countOf(Kind::insert) > 0 ? "; \"explode\" makes entities of a block reference" : "");
}

void addLeftOut(std::size_t count, const char* word, std::vector<std::string>& notes) {
    if (count > 0)
        notes.push_back(report::counted(count, word) + (count == 1 ? " was" : " were") + " left out");
}

void addLosses(const Document& document, const DxfOutput& output, std::vector<std::string>& notes) {
    for (const DxfNote& note : output.notes)
        notes.push_back(noteOf(note, output, document.lengthUnit));
    if (!output.redrawn.empty())
        notes.push_back("the pictures of dimensions that have changed are as the file has them: " +
                        firstOf(output.redrawn));
    if (!output.left.empty())
        notes.push_back("dimensions that the drawing has no more stay as the file has them: " + firstOf(output.left));
    if (!output.lostFacts.empty())
        notes.push_back(output.lostFacts);
    addLeftOut(output.lostConstraints, "constraint", notes);
    addLeftOut(output.lostParameters, "parameter", notes);
}

/// The drawing with its polylines as lines and arcs, and a note on each.
Document withoutPolylines(const Document& drawing, std::vector<std::string>& notes) {
    Explode explode;
    for (const Entity& entity : drawing.entities)
        if (std::holds_alternative<PolylineShape>(entity.shape))
            explode.entities.push_back(entity.id);
    if (explode.entities.empty())
        return drawing;
    Session session(drawing);
    if (!session.apply(explode).outcome.done())
        return drawing;
    for (const Name& polyline : explode.entities)
        notes.push_back(polyline.value + ", a polyline, went out as lines and arcs");
    return session.document();
}

void addAll(std::vector<std::string>& notes, std::vector<std::string>& more) {
    notes.insert(notes.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

/// The document that the drawing comes from, with the drawing as it is now.
void writeSketch(const Document& document, const SketchOriginal& from, GoneOut& out) {
    FcstdOutput patched =
        patchedFcstd(from.bytes, from.sketch, withoutPolylines(document, out.notes), "the document of " + from.sketch);
    out.bytes = std::move(patched.archive);
    addAll(out.notes, patched.notes);
}

void writeSlvs(const Document& document, bool wasOne, double tolerance, GoneOut& out) {
    if (wasOne)
        out.notes.emplace_back(
            "a new file with this sketch alone; names, styles and views are not those of the old one");
    SlvsOutput output = slvsText(withoutPolylines(document, out.notes), tolerance);
    out.bytes = std::move(output.text);
    addAll(out.notes, output.notes);
}

/// Of the entities of a kind, or of some, what becomes of them.
template <class... Shapes>
void addAltered(const Document& document, const std::string& what, std::vector<std::string>& notes) {
    std::vector<std::string> names;
    for (const Entity& entity : document.entities)
        if ((std::holds_alternative<Shapes>(entity.shape) || ...))
            names.push_back(entity.id);
    if (!names.empty())
        notes.push_back(what + firstOf(names));
}

/// What somebody who takes the picture for the drawing would miss.
void addPictureLosses(const Document& document, const std::string& form, std::vector<std::string>& notes) {
    addAltered<RayShape, XlineShape>(document, "lines without end stop where the drawing does: ", notes);
    if (form == ".svg")
        addAltered<TextShape>(document, "texts are there to be looked at, and are not read back: ", notes);
    addLeftOut(document.constraints.size(), "constraint", notes);
    addLeftOut(document.parameters.size(), "parameter", notes);
    if (std::string lost = lostFacts(document, {}); !lost.empty())
        notes.push_back(std::move(lost));
    if (!document.references.empty())
        notes.push_back("drawn as what they show: " + namesOf(document.references));
}

/// A picture in true size.
void writePage(const Document& document, const std::string& form, GoneOut& out) {
    addPictureLosses(document, form, out.notes);
    out.bytes = writeTrueSizeSvg(document);
    if (form == ".pdf")
        out.bytes = pdfPage(out.bytes, document.name);
}

void writeDxf(const Document& document, const DxfOriginal* from, double tolerance, GoneOut& out) {
    DxfOutput output = from != nullptr ? patchedDxf(from->text, from->layout, from->drawing, document, tolerance)
                                       : dxfText(document, tolerance);
    addLosses(document, output, out.notes);
    if (from == nullptr && document.lengthUnit != "mm")
        out.notes.push_back("numbers are in the unit " + inQuotes(document.lengthUnit) +
                            ", which the file does not say");
    out.bytes = std::move(output.text);
}

}  // namespace

bool isPicture(const std::string& form) {
    return form == ".svg" || form == ".pdf";
}

GoneOut goingOut(const Document& document, const std::string& form, const CameFrom& from, double tolerance) {
    GoneOut out;
    if (!isPicture(form) && from.dxf == nullptr && !document.references.empty())
        out.notes.push_back(leftOutReferences(document));
    if (form == ".json")
        out.bytes = jsonText(document);
    else if (isPicture(form))
        writePage(document, form, out);
    else if (from.sketch != nullptr && form == kSketchForm)
        writeSketch(document, *from.sketch, out);
    else if (form == kSlvsForm)
        writeSlvs(document, from.form == kSlvsForm, tolerance, out);
    else
        writeDxf(document, from.dxf, tolerance, out);
    return out;
}

}  // namespace holdfast::forms
