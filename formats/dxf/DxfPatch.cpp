#include "formats/dxf/DxfPatch.h"

#include <algorithm>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "document/BlockContents.h"
#include "document/EntityIndex.h"
#include "formats/LostFacts.h"
#include "formats/PieceNames.h"
#include "formats/dxf/DxfBinary.h"
#include "formats/dxf/DxfOldForm.h"
#include "formats/dxf/blocks/DxfReferences.h"
#include "formats/dxf/dimensions/DxfDimensionPatch.h"
#include "formats/dxf/records/DxfBodies.h"
#include "formats/dxf/records/DxfPolylines.h"
#include "formats/dxf/records/DxfRewrite.h"

namespace holdfast::formats {
namespace {

/// Identifiers of vertices are no part of a DXF file.
bool isDrawnAlike(const Shape& a, const Shape& b) {
    const auto *first = std::get_if<PolylineShape>(&a), *second = std::get_if<PolylineShape>(&b);
    if (first == nullptr || second == nullptr)
        return a == b;
    return first->closed == second->closed && first->vertices == second->vertices && first->bulges == second->bulges;
}

struct Change {
    DxfRange range;
    std::string text;  // instead
};

class Patch {
public:
    Patch(std::string_view text, const DxfLayout& layout, const Document& before, double tolerance)
        : m_text(text), m_layout(layout), m_before(before), m_handles(layout.freeHandle) {
        m_output.tolerance = tolerance;
        for (std::size_t r = 0; r < m_before.entities.size(); ++r)
            m_records.emplace(m_before.entities[r].id, r);
        for (std::size_t r = 0; r < m_before.references.size(); ++r)
            m_referenceRecords.emplace(m_before.references[r].id, r);
    }

    DxfOutput write(const Document& after) {
        sort(after);
        for (std::size_t r = 0; r < m_layout.records.size(); ++r) {
            const Entity* now = m_inPlace[r];
            if (now == nullptr)
                m_changes.push_back({m_layout.records[r], ""});
            else if (!isDrawnAlike(now->shape, m_before.entities[r].shape))
                m_changes.push_back({m_layout.records[r], changed(*now, r, itemsOf(recordText(r)))});
        }
        changeReferences(after);
        changeDimensions(after);
        m_changes.push_back({{m_layout.recordsEnd, m_layout.recordsEnd}, added()});
        if (m_layout.handleSeed && m_handles.next() != m_layout.freeHandle)
            m_changes.push_back({*m_layout.handleSeed, m_handles.nextText()});
        m_output.text = changedText();
        return std::move(m_output);
    }

    /// What was written, in the order of the file.
    const std::vector<Change>& changes() const { return m_changes; }

private:
    std::string_view recordText(std::size_t record) const { return textIn(m_layout.records[record]); }
    std::string_view textIn(DxfRange range) const { return m_text.substr(range.begin, range.end - range.begin); }

    /// The first piece of what is gone takes its place.
    void sort(const Document& after) {
        m_inPlace.assign(m_layout.records.size(), nullptr);
        for (const Entity& entity : after.entities)
            if (const auto record = m_records.find(entity.id); record != m_records.end())
                m_inPlace[record->second] = &entity;
        for (const Entity& entity : after.entities) {
            if (m_records.contains(entity.id))
                continue;
            const std::optional<std::size_t> record = originOf(entity.id);
            if (record && m_inPlace[*record] == nullptr)
                m_inPlace[*record] = &entity;
            else
                m_added.push_back({&entity, record});
        }
    }

    std::optional<std::size_t> originOf(std::string_view name) const {
        return originByName(name, [this](std::string_view known) {
            const auto record = m_records.find(known);
            return record == m_records.end() ? std::nullopt : std::optional(record->second);
        });
    }

    /// Of those that are there still, the record of one that was moved; then what was made of others.
    void changeReferences(const Document& after) {
        std::vector<const BlockReference*> now(m_layout.references.size(), nullptr);
        for (const BlockReference& reference : after.references)
            if (const auto record = m_referenceRecords.find(reference.id); record != m_referenceRecords.end())
                now[record->second] = &reference;
            else
                m_addedReferences.push_back(&reference);
        for (std::size_t r = 0; r < now.size(); ++r)
            if (now[r] == nullptr)
                m_changes.push_back({m_layout.references[r], ""});
            else if (*now[r] != m_before.references[r])
                m_changes.push_back({m_layout.references[r],
                                     moved(*now[r], m_before.references[r], itemsOf(textIn(m_layout.references[r])))});
    }

    /// Those follow whose points are elsewhere now, as far as what they stood on is there still.
    void changeDimensions(const Document& after) {
        m_output.lostConstraints = after.constraints.size();
        if (m_layout.measures.empty())
            return;
        std::unordered_map<std::string_view, const Constraint*> before, now;
        for (const Constraint& constraint : m_before.constraints)
            before.emplace(constraint.id, &constraint);
        for (const Constraint& constraint : after.constraints)
            now.emplace(constraint.id, &constraint);
        const EntityIndex entitiesBefore(m_before), entitiesNow(after);
        for (const DxfMeasure& measure : m_layout.measures) {
            const auto was = before.find(measure.constraint), is = now.find(measure.constraint);
            if (is != now.end() && !is->second->driving)
                --m_output.lostConstraints;
            if (is == now.end() || !change(measure, {entitiesBefore, *was->second}, {entitiesNow, *is->second}))
                m_output.left.push_back(nameOf(measure));
        }
    }

    static std::string nameOf(const DxfMeasure& measure) {
        return measure.reference.empty() ? measure.constraint : measure.reference;
    }

    /// False where it can only stay as it was.
    bool change(const DxfMeasure& measure, const DxfMeasuredIn& before, const DxfMeasuredIn& now) {
        if (!hasMoved(measure, before, now))
            return true;
        DxfItems record = itemsOf(textIn(measure.range));
        if (!rewriteDimension(record, measure, before, now))
            return false;
        m_changes.push_back({measure.range, textOf(record)});
        if (!measure.reference.empty())
            m_output.redrawn.push_back(measure.reference);
        return true;
    }

    std::string moved(const BlockReference& now, const BlockReference& before, DxfItems record) {
        rewriteReference(record, before, now, m_handles);
        return textOf(record);
    }

    /// The reference of the file that a name stands for, as a copy of it perhaps.
    std::optional<std::size_t> referenceCalled(std::string_view name) const {
        const auto find = [this](std::string_view known) {
            const auto record = m_referenceRecords.find(known);
            return record == m_referenceRecords.end() ? std::nullopt : std::optional(record->second);
        };
        const auto found = find(name);
        return found ? found : originByName(name, find);
    }

    /// What a name was in the block of a reference that has been exploded.
    std::optional<PartSource> partCalled(std::string_view name) const {
        const auto wholes = wholesOf(name);
        const auto reference = wholes.empty() ? std::nullopt : referenceCalled(wholes.back());
        return reference ? sourceOf(m_before.references[*reference], name.substr(name.find('/') + 1)) : std::nullopt;
    }

    /// The record in a block, as one of the drawing.
    DxfItems takenOut(DxfRange range, const Look& before, const Look& now) {
        DxfItems record = copied(itemsOf(textIn(range)), m_handles);
        putLook(record, before, now, m_layout.form.owner);
        return record;
    }

    /// Nothing for what is none of a block's parts; attributes are written as the texts that they are now.
    std::optional<std::string> exploded(const Entity& entity) {
        const std::optional<PartSource> source = partCalled(entity.id);
        if (!source || source->block == nullptr || source->part == nullptr)
            return std::nullopt;
        const DxfRange range = m_layout.blocks.find(source->block->name)->second.parts[source->number];
        DxfItems record = takenOut(range, *source->part->look, *entity.look);
        if (canHold(record.front().value, entity.shape)) {
            rewrite(record, source->part->shape, entity.shape, m_handles);
            return textOf(record);
        }
        return another(entity, frameOf(record), styleOf(partsOf(record).front()));
    }

    std::string added(const BlockReference& reference) {
        if (const auto record = referenceCalled(reference.id))
            return moved(reference, m_before.references[*record],
                         copied(itemsOf(textIn(m_layout.references[*record])), m_handles));
        const std::optional<PartSource> source = partCalled(reference.id);
        if (!source || source->reference == nullptr)
            return {};
        const DxfRange range = m_layout.blocks.find(source->block->name)->second.references[source->number];
        return moved(reference, *source->reference, takenOut(range, *source->reference->look, *reference.look));
    }

    /// A record for an entity that was read from it or made of what was.
    std::string changed(const Entity& entity, std::size_t number, DxfItems record) {
        const Shape& before = m_before.entities[number].shape;
        if (!canHold(record.front().value, entity.shape))
            return another(entity, frameOf(record), styleOf(partsOf(record).front()));
        if (!isDrawnAlike(before, entity.shape))
            rewrite(record, before, entity.shape, m_handles);
        return textOf(record);
    }

    /// Records for an entity of another kind, or of none of the file's.
    std::string another(const Entity& entity, DxfFrame frame, const DxfStyle& style) {
        const bool isHeld = canWrite(m_layout.form, entity.shape);
        const OldForm form = isHeld ? OldForm{{entity.shape}} : oldForm(entity.shape, m_output.tolerance);
        if (form.loss)
            m_output.notes.push_back({entity.id, *form.loss, form.pieces});
        std::string text;
        for (const Shape& shape : form.shapes) {
            if (!text.empty())
                frame.head = copied(frame.head, m_handles);
            const DxfItems record = newRecord(frame, shape, m_layout.form, style, m_handles);
            noteKind(entity, record.front().value);
            text += textOf(record);
        }
        return text;
    }

    void noteKind(const Entity& entity, const std::string& kind) {
        if (!m_layout.form.kinds.contains(kind) && m_newKinds.insert(kind).second)
            m_output.notes.push_back({entity.id, DxfLoss::firstOfKind, 0, kind});
    }

    std::string added() {
        std::string text;
        for (const auto& [entity, origin] : m_added) {
            if (origin)
                text += changed(*entity, *origin, copied(itemsOf(recordText(*origin)), m_handles));
            else if (const std::optional<std::string> part = exploded(*entity))
                text += *part;
            else
                text += another(*entity, newFrame(*entity->look, m_layout.form, fileStyle(), m_handles), fileStyle());
        }
        for (const BlockReference* reference : m_addedReferences)
            text += added(*reference);
        if (text.empty() || m_layout.hasEntities)
            return text;
        const DxfStyle& style = fileStyle();
        const DxfItems head{newItem(0, "SECTION", style), newItem(2, "ENTITIES", style)};
        return textOf(head) + text + textOf({newItem(0, "ENDSEC", style)});
    }

    /// That of its first entity or, without one, of the group behind which one would stand.
    const DxfStyle& fileStyle() {
        if (!m_fileStyle) {
            const std::string_view last = m_text.substr(m_layout.recordsEnd);  // ENDSEC or EOF
            const std::size_t second = last.find('\n', last.find('\n') + 1);
            m_fileStyle = styleOf(itemsOf(m_layout.records.empty() ? last.substr(0, second + 1) : recordText(0)));
        }
        return *m_fileStyle;
    }

    std::string changedText() {
        std::stable_sort(m_changes.begin(), m_changes.end(),
                         [](const Change& a, const Change& b) { return a.range.begin < b.range.begin; });
        std::string text;
        std::size_t done = 0;
        for (const Change& change : m_changes) {
            text.append(m_text.substr(done, change.range.begin - done)).append(change.text);
            done = change.range.end;
        }
        return text.append(m_text.substr(done));
    }

    std::string_view m_text;
    const DxfLayout& m_layout;
    const Document& m_before;
    DxfHandles m_handles;
    DxfOutput m_output;
    std::vector<const Entity*> m_inPlace;                                       // by record; null: it goes
    std::vector<std::pair<const Entity*, std::optional<std::size_t>>> m_added;  // with what it was made of
    std::unordered_map<std::string_view, std::size_t> m_records;                // by the name of what was read from it
    std::unordered_map<std::string_view, std::size_t> m_referenceRecords;       // the same of references
    std::vector<const BlockReference*> m_addedReferences;
    std::vector<Change> m_changes;
    std::set<std::string> m_newKinds;
    std::optional<DxfStyle> m_fileStyle;
};

DxfOutput patchedBytes(std::string_view bytes, const DxfLayout& layout, const Document& before, const Document& after,
                       double tolerance) {
    const DxfDecoded decoded = decodedDxf(bytes, after.name);
    Patch patch(decoded.text, layout, before, tolerance);
    DxfOutput output = patch.write(after);
    DxfByteChanges changes(bytes, decoded);
    for (const Change& change : patch.changes())
        changes.replace(change.range.begin, change.range.end, change.text);
    output.text = changes.finished();
    return output;
}

}  // namespace

DxfOutput patchedDxf(std::string_view text, const DxfLayout& layout, const Document& before, const Document& after,
                     double tolerance) {
    checkForDxf(after, tolerance);
    DxfOutput output = isBinaryDxf(text) ? patchedBytes(text, layout, before, after, tolerance)
                                         : Patch(text, layout, before, tolerance).write(after);
    output.lostFacts =
        lostFacts(after, {Fact::layers, Fact::colours, Fact::linetypes, Fact::widths, Fact::invisibility});
    output.lostParameters = after.parameters.size();
    return output;
}

}  // namespace holdfast::formats
