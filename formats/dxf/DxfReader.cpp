#include "formats/dxf/DxfReader.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <unordered_map>
#include <utility>

#include "document/text/Capitals.h"
#include "document/text/Suggest.h"
#include "formats/dxf/DxfBinary.h"
#include "formats/dxf/DxfCodes.h"
#include "formats/dxf/DxfGroups.h"
#include "formats/dxf/DxfLooks.h"
#include "formats/dxf/DxfShapes.h"
#include "formats/dxf/DxfText.h"
#include "formats/dxf/blocks/DxfBlocks.h"
#include "formats/dxf/dimensions/DxfDimension.h"
#include "formats/dxf/dimensions/DxfMeasures.h"

namespace holdfast::formats {
namespace {

void count(std::vector<DxfNotice>& notices, const std::string& what) {
    const auto known = std::find_if(notices.begin(), notices.end(), [&](const DxfNotice& n) { return n.what == what; });
    if (known != notices.end())
        ++known->count;
    else
        notices.push_back({what, 1});
}

/// Codes of the header variable for the unit of length.
constexpr std::array<std::pair<int, const char*>, 6> kUnits = {
    {{1, "in"}, {2, "ft"}, {4, "mm"}, {5, "cm"}, {6, "m"}, {13, "um"}}};

constexpr std::array<std::string_view, 5> kSilentSections = {"CLASSES", "TABLES", "BLOCKS", "OBJECTS",
                                                             "THUMBNAILIMAGE"};

/// The first version of the format with classes of groups, and with ellipses and splines.
constexpr std::string_view kNewerVersion = "AC1012";

/// Every layout of the file has a block of its own; the others are definitions that INSERT entities use.
bool isLayout(std::string_view blockName) {
    const std::string name = inCapitals(blockName);
    return name.starts_with("*MODEL_SPACE") || name.starts_with("*PAPER_SPACE") || name.starts_with("$MODEL_SPACE") ||
           name.starts_with("$PAPER_SPACE");
}

bool isOtherDimension(std::string_view record) {
    return record == "LARGE_RADIAL_DIMENSION";
}

bool isInPaperSpace(const DxfEntity& entity) {
    return entity.integer(67, 0) == 1;
}

class Reader {
public:
    Reader(std::string_view text, const std::string& fileName) : m_text(text), m_groups(text, fileName) {
        m_drawing.document.name = utf8Of(std::filesystem::path(fileName).stem().string());
    }

    DxfDrawing read() {
        while (!atName("EOF")) {
            if (m_lastSection.empty() || m_groups.peek()->code != 0 || m_groups.peek()->value == "SECTION")
                readSection();
            else
                readContents();  // of a section that has ended too early
        }
        // Sections without a place in a drawing are passed over in silence, unless the entities may stand in one.
        if (!m_hasEntities)
            for (const std::string& name : m_otherSections)
                count(m_drawing.notUnderstood, "section " + inQuotes(name) + " instead of \"ENTITIES\"");
        finishReferences();
        finishLayout();
        return std::move(m_drawing);
    }

private:
    /// Blocks may stand behind what refers to them.
    void finishReferences() {
        followDimensions();
        for (DxfReference& read : m_references)
            addReference(std::move(read));
        for (const std::string& what : m_blocks.notUnderstood())
            count(m_drawing.notUnderstood, what);
        for (int i = m_blocks.unused(); i > 0; --i)
            count(m_drawing.notUnderstood, "BLOCK definition");
        m_drawing.layout.blocks = m_blocks.takeRecords();
    }

    /// Those that stand on entities are dimensions of the drawing, with a picture or without.
    void followDimensions() {
        std::vector<DxfFollowing> following = followedDimensions(m_drawing.document.entities, m_dimensions);
        for (std::size_t i = 0; i < following.size(); ++i) {
            const DxfDimension& dimension = m_dimensions[i];
            if (!following[i].constraint) {
                const bool isDrawn = dimension.fault.empty();
                count(isDrawn ? m_drawing.notMeasured : m_drawing.notUnderstood,
                      isDrawn ? following[i].reason : dimension.fault);
                continue;
            }
            std::vector<Constraint>& constraints = m_drawing.document.constraints;
            following[i].constraint->id = "c" + std::to_string(constraints.size());
            m_measureAt.emplace(dimension.range.begin, constraints.size());
            constraints.push_back(std::move(*following[i].constraint));
            m_drawing.layout.measures.push_back(
                {constraints.back().id, {}, dimension.range, std::move(following[i].anchors)});
        }
    }

    void addReference(DxfReference read) {
        const auto measure = m_measureAt.find(read.range.begin);
        const bool isMeasured = measure != m_measureAt.end();
        DxfBlocks::Found found = m_blocks.find(read);
        if (!found.block) {
            if (!isMeasured)
                count(m_drawing.notUnderstood, spokenFault(read, found.fault));
            return;
        }
        BlockReference& reference = read.reference;
        reference.block = std::move(*found.block);
        if (m_shown + costOf(reference) > kMostShown)
            return count(m_drawing.notUnderstood, spokenFault(read, "of which there are more parts than can be drawn"));
        m_shown += costOf(reference);
        std::vector<BlockReference>& references = m_drawing.document.references;
        reference.id = m_referenceNames.next(reference.kind);
        if (isMeasured) {
            reference.measure = m_drawing.document.constraints[measure->second].id;
            m_drawing.layout.measures[measure->second].reference = reference.id;
        }
        m_drawing.layout.references.push_back(read.range);
        references.push_back(std::move(reference));
    }

    void finishLayout() {
        DxfLayout& layout = m_drawing.layout;
        layout.hasEntities = m_hasEntities;
        if (!m_hasEntities)
            layout.recordsEnd = m_groups.peek()->begin;
        layout.freeHandle = std::max(m_groups.highestHandle() + 1, m_seed);
        // What the version allows the entities may do without; what they show, it need not say.
        layout.form.isNewer = m_isNewer || layout.form.hasMarks;
        layout.form.hasMarks = layout.form.hasMarks || (m_isNewer && layout.form.kinds.empty());
        layout.form.hasHandles = layout.form.hasHandles || (m_isNewer && layout.form.kinds.empty());
    }

    /// True at a group 0 of this name; at the end of the text, which ought to come later, an error.
    bool atName(std::string_view name) {
        if (!m_groups.peek())
            m_groups.take("EOF as the value of group 0; the file is not complete");
        return m_groups.peek()->code == 0 && m_groups.peek()->value == name;
    }

    void readSection() {
        const DxfGroup head = m_groups.take("a section");
        if (head.code != 0 || head.value != "SECTION")
            m_groups.fail(head.line, "group " + std::to_string(head.code) + " with " + inQuotes(head.value),
                          "SECTION or EOF as the value of group 0; is this a DXF file?");
        const DxfGroup name = m_groups.take("the name of a section");
        if (name.code != 2)
            m_groups.fail(name.line, "group " + std::to_string(name.code), "the name of a section in group 2");
        m_lastSection = name.value;
        m_hasEnded = {};
        if (name.value == "ENTITIES")
            m_hasEntities = true;
        else if (name.value != "HEADER" &&
                 std::find(kSilentSections.begin(), kSilentSections.end(), name.value) == kSilentSections.end())
            m_otherSections.emplace_back(name.value);
        readContents();
    }

    void readContents() {
        if (m_lastSection == "ENTITIES")
            readEntities();
        else if (m_lastSection == "HEADER")
            readHeader();
        else
            readOther(m_lastSection == "BLOCKS");
        if (atName("ENDSEC"))
            m_groups.take("ENDSEC");
        m_hasEnded = m_lastSection;
    }

    /// The end of a section; of one that goes on behind its end also the next section, and the end of the file.
    bool atEnd() { return atName("ENDSEC") || (m_hasEnded == m_lastSection && (atName("SECTION") || atName("EOF"))); }

    void readHeader() {
        std::string_view variable;
        while (!atEnd()) {
            const DxfGroup group = m_groups.take("a header variable");
            if (group.code == 9)
                variable = group.value;
            else if (variable == "$INSUNITS" && group.code == 70)
                setUnit(m_groups.integer(group));
            else if (variable == "$ACADVER" && group.code == 1)
                m_isNewer = group.value >= kNewerVersion;
            else if (variable == "$DWGCODEPAGE" && group.code == 3)
                m_groups.setCodePage(group.value);
            else if (variable == "$HANDSEED" && group.code == 5)
                setHandleSeed(group);
        }
    }

    void setHandleSeed(const DxfGroup& group) {
        m_seed = handleIn(group.value).value_or(0);
        const auto begin = static_cast<std::size_t>(group.value.data() - m_text.data());
        m_drawing.layout.handleSeed = DxfRange{begin, begin + group.value.size()};
    }

    void setUnit(int code) {
        const auto unit = std::find_if(kUnits.begin(), kUnits.end(), [&](const auto& u) { return u.first == code; });
        if (unit != kUnits.end())
            m_drawing.document.lengthUnit = unit->second;
        else if (code != 0)
            count(m_drawing.notUnderstood, "unit of length " + std::to_string(code) + ", taken as mm");
    }

    void readEntities() {
        while (!atEnd()) {
            const DxfEntity entity = takeNamed();
            if (entity.name == "SEQEND")
                continue;  // the end of the attributes of an INSERT, which is counted itself
            std::vector<DxfEntity> vertices;
            DxfRange range{entity.begin, entity.end};
            if (entity.name == "POLYLINE")
                vertices = takeVertices(range.end);
            noteForm(entity);
            if (isDxfReference(entity.name)) {
                addReference(entity, range);
                continue;
            }
            add(readDxfEntity(entity, vertices), lookOf(entity), range);
        }
        m_drawing.layout.recordsEnd = m_groups.peek()->begin;
    }

    void addReference(const DxfEntity& entity, DxfRange range) {
        std::vector<DxfEntity> attributes;
        if (entity.name == "INSERT")
            attributes = takeBehind(m_groups, "ATTRIB", range.end);
        DxfReferenceReading reading = readDxfReference(entity, attributes, range);
        std::optional<DxfDimension> dimension = readDxfDimension(entity);
        if (reading.reference)
            m_references.push_back(std::move(*reading.reference));
        else if (dimension)
            dimension->fault = std::move(reading.reason);
        else
            count(m_drawing.notUnderstood, reading.reason);
        if (dimension)
            m_dimensions.push_back(std::move(*dimension));
        else if (isOtherDimension(entity.name) && reading.reference)
            count(m_drawing.notMeasured, std::string(entity.name));
    }

    void noteForm(const DxfEntity& entity) {
        DxfForm& form = m_drawing.layout.form;
        if (!form.kinds.contains(entity.name))
            form.kinds.emplace(entity.name);
        form.hasMarks = form.hasMarks || entity.find(kClassMark) != nullptr;
        form.hasHandles = form.hasHandles || entity.find(kHandle) != nullptr;
        if (form.owner.empty() && !isInPaperSpace(entity))
            if (const DxfGroup* owner = entity.find(kOwner))
                form.owner = std::string(owner->value);
    }

    DxfEntity takeNamed() {
        if (m_groups.peek()->code != 0)
            m_groups.fail(m_groups.peek()->line, "group " + std::to_string(m_groups.peek()->code),
                          "an entity's name in group 0");
        return takeEntity(m_groups);
    }

    std::vector<DxfEntity> takeVertices(std::size_t& end) {
        std::vector<DxfEntity> vertices;
        while (atName("VERTEX"))
            vertices.push_back(takeEntity(m_groups));
        if (!atName("SEQEND"))
            m_groups.fail(m_groups.peek()->line,
                          inQuotes(m_groups.peek()->value) + " behind the vertices of a POLYLINE", "VERTEX or SEQEND");
        end = takeEntity(m_groups).end;
        return vertices;
    }

    void add(DxfReading reading, Look look, DxfRange range) {
        if (!reading.shape) {
            count(m_drawing.notUnderstood, reading.reason);
            return;
        }
        for (const std::string& what : reading.dropped)
            count(m_drawing.dropped, what);
        std::vector<Entity>& entities = m_drawing.document.entities;
        m_drawing.layout.records.push_back(range);
        if (*m_look != look)  // most look like the one before them
            m_look = SharedLook(std::move(look));
        entities.push_back(
            {.id = "g" + std::to_string(entities.size()), .shape = std::move(*reading.shape), .look = m_look});
    }

    void addLayer(Layer layer) {
        if (!layer.name.empty() && m_layerNames.insert(layer.name).second)
            m_drawing.document.layers.push_back(std::move(layer));
    }

    void readOther(bool isBlocks) {
        while (!atEnd()) {
            const DxfGroup& next = *m_groups.peek();
            if (m_lastSection == "TABLES" && next.code == 0 && next.value == "LAYER") {
                addLayer(layerOf(takeEntity(m_groups)));
                continue;
            }
            if (!isBlocks || next.code != 0 || next.value != "BLOCK") {
                m_groups.take("ENDSEC");
                continue;
            }
            if (DxfBlock block = takeBlock(m_groups); !isLayout(block.block.name))
                m_blocks.add(std::move(block));
        }
    }

    std::string_view m_text;
    DxfGroups m_groups;
    DxfDrawing m_drawing;
    bool m_isNewer = false;
    std::uint64_t m_seed = 0;
    bool m_hasEntities = false;
    SharedLook m_look;  // of the entity before
    DxfBlocks m_blocks;
    std::vector<DxfReference> m_references;  // of the drawing, in the order of the file
    ReferenceNames m_referenceNames;
    double m_shown = 0.0;  // by references
    std::vector<DxfDimension> m_dimensions;
    std::unordered_map<std::size_t, std::size_t>
        m_measureAt;  // by where its record begins: the number among constraints
    std::set<std::string> m_layerNames;
    std::string_view m_lastSection, m_hasEnded;
    std::vector<std::string> m_otherSections;
};

}  // namespace

DxfDrawing readDxf(std::string_view text, const std::string& fileName) {
    if (!isBinaryDxf(text))
        return Reader(text, fileName).read();
    const DxfDecoded decoded = decodedDxf(text, fileName);
    return Reader(decoded.text, fileName).read();
}

}  // namespace holdfast::formats
