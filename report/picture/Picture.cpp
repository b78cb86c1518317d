#include "report/picture/Picture.h"

#include <array>
#include <map>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "document/BlockContents.h"
#include "report/labels/LabelPlacer.h"
#include "report/marks/MarkDrawing.h"
#include "report/marks/Marks.h"
#include "report/picture/Markup.h"
#include "report/picture/TextElement.h"

namespace holdfast::report {

namespace {

constexpr int kPlaces = 2;  // a hundredth of a picture unit: not seen before a fiftyfold enlargement
constexpr std::size_t kOutlinesOfAPath = 1000;
constexpr std::size_t kTouched = 3;  // the layer on top

std::string_view className(EntityTone tone) {
    static constexpr std::array<std::string_view, 5> names{"", "edited", "followed", "created", "erased"};
    return names[static_cast<std::size_t>(tone)];
}

bool isUnbounded(const Shape& shape) {
    return std::holds_alternative<XlineShape>(shape) || std::holds_alternative<RayShape>(shape);
}

std::string classesOf(const Entity& entity, EntityTone tone) {
    std::string classes = "e";
    if (entity.construction)
        classes += " construction";
    if (entity.fixed)
        classes += " fixed";
    if (isUnbounded(entity.shape))
        classes += " unbounded";
    if (tone != EntityTone::plain)
        classes += " " + std::string(className(tone));
    return classes;
}

/// Reference geometry lies at the bottom, what the edit touched on top.
std::size_t layerOf(const Entity& entity, EntityTone tone) {
    if (tone != EntityTone::plain)
        return kTouched;
    return entity.fixed ? 0 : entity.construction ? 1 : 2;
}

std::string pointElement(Vec2 at, const std::string& classes, const std::string& named, bool fixed) {
    return "<g" + attribute("class", classes + " point") + named + " transform=\"translate(" + decimal(at.x, kPlaces) +
           " " + decimal(at.y, kPlaces) + ")\"><path class=\"z\" d=\"" +
           (fixed ? "M-4.5 0H4.5M0 -4.5V4.5" : "M-3 -3L3 3M-3 3L3 -3") + "\"/></g>\n";
}

/// Outlines of many entities that look alike, as few elements.
class GatheredPaths {
public:
    void add(const std::string& classes, const std::string& path) {
        Gathered& gathered = m_byClasses[classes];
        gathered.path += path;
        if (++gathered.count == kOutlinesOfAPath)
            end(classes, gathered);
    }

    std::string taken() {
        for (auto& [classes, gathered] : m_byClasses)
            if (gathered.count > 0)
                end(classes, gathered);
        m_byClasses.clear();
        return std::exchange(m_elements, {});
    }

private:
    struct Gathered {
        std::string path;
        std::size_t count = 0;
    };

    void end(const std::string& classes, Gathered& gathered) {
        m_elements += "<path" + attribute("class", classes) + " vector-effect=\"non-scaling-stroke\" d=\"" +
                      gathered.path + "\"/>\n";
        gathered = {};
    }

    std::map<std::string, Gathered> m_byClasses;
    std::string m_elements;
};

class BodyWriter {
public:
    explicit BodyWriter(const PictureRequest& request)
        : m_request(request),
          m_frame(request.frame),
          m_reach(m_frame.window.grownBy(request.overscan * std::max(m_frame.window.width(), m_frame.window.height()))),
          m_tolerance(m_frame.window.diagonal() / 20000.0),
          m_ink(m_frame.width, m_frame.height) {}

    std::string body() {
        std::string text = ghost();
        text += geometry();
        if (m_request.marks || m_request.names)
            text += marks();
        return text;
    }

private:
    using Layers = std::array<std::string, kTouched + 1>;

    std::string ghost() const {
        if (m_request.ghost == nullptr)
            return {};
        std::string paths;
        const EntityIndex now(m_request.document);
        for (const Entity& entity : m_request.ghost->entities) {
            const Entity* same = now.find(entity.id);
            if (same == nullptr || same->shape != entity.shape)
                paths += ghostOf(entity);
        }
        forChangedReferences([&](const Entity& part) { paths += ghostOf(part); });
        return paths.empty() ? paths : "<g class=\"ghosts\">\n" + paths + "</g>\n";
    }

    std::string ghostOf(const Entity& entity) const {
        const std::string path = pathData(outlineOf(entity.shape, m_reach, m_tolerance), m_frame, kPlaces);
        return path.empty() ? path
                            : "<path class=\"ghost\" vector-effect=\"non-scaling-stroke\" d=\"" + path + "\"/>\n";
    }

    /// Those of the ghost that look different now.
    template <class Take>
    void forChangedReferences(const Take& take) const {
        std::unordered_map<std::string_view, const BlockReference*> now;
        for (const BlockReference& reference : m_request.document.references)
            now.emplace(reference.id, &reference);
        for (const BlockReference& reference : m_request.ghost->references)
            if (const auto same = now.find(reference.id); same == now.end() || *same->second != reference)
                forEachShownPart(reference, [&](Entity&& part) { take(part); });
    }

    std::string geometry() {
        const bool refers = m_request.crowd != nullptr && m_request.crowd->isDrawn;
        Layers layers;
        for (const Entity& entity : m_request.document.entities)
            if (const EntityTone tone = toneOf(entity.id); !refers || tone != EntityTone::plain)
                add(entity, tone, idToken(entity.id), layers);
        for (const BlockReference& reference : m_request.document.references)
            if (const EntityTone tone = toneOf(reference.id); !refers || tone != EntityTone::plain)
                addParts(reference, tone, layers);
        std::string untouched;
        for (std::size_t i = 0; i < kTouched; ++i)
            untouched += m_gathered[i].taken() + layers[i];
        if (refers)
            untouched = "<use href=\"#untouched\"/>\n";
        else if (m_request.crowd != nullptr)
            untouched = "<g id=\"untouched\">\n" + untouched + "</g>\n";
        if (m_request.crowd != nullptr)
            m_request.crowd->isDrawn = true;
        return "<g class=\"geometry\">\n" + untouched + layers[kTouched] + "</g>\n";
    }

    void add(const Entity& entity, EntityTone tone, const std::string& tokens, Layers& layers) {
        const std::string classes = classesIn(entity, tone);
        const std::size_t layer = layerOf(entity, tone);
        if (m_request.crowd == nullptr || tone != EntityTone::plain)
            layers[layer] += element(entity, classes, attribute("data-e", tokens));
        else if (std::holds_alternative<PointShape>(entity.shape) || std::holds_alternative<TextShape>(entity.shape))
            layers[layer] += element(entity, classes, {});
        else
            m_gathered[layer].add(classes, pathOf(entity));
    }

    EntityTone toneOf(const std::string& id) const {
        const auto noted = m_request.notes.entities.find(id);
        return noted == m_request.notes.entities.end() ? EntityTone::plain : noted->second;
    }

    std::string classesIn(const Entity& entity, EntityTone tone) const {
        const bool isColoured = m_request.colours != nullptr && tone == EntityTone::plain;
        return classesOf(entity, tone) + (isColoured ? m_request.colours->classOf(*entity.look) : "");
    }

    /// Parts carry the name of the reference besides their own.
    void addParts(const BlockReference& reference, EntityTone tone, Layers& layers) {
        forEachShownPart(
            reference, [&](Entity&& part) { add(part, tone, idToken(part.id) + " " + idToken(reference.id), layers); });
    }

    std::string element(const Entity& entity, const std::string& classes, const std::string& named) {
        if (const auto* point = std::get_if<PointShape>(&entity.shape)) {
            m_ink.addSpot(m_frame.toPicture(point->position));
            return pointElement(m_frame.toPicture(point->position), classes, named, entity.fixed);
        }
        if (const auto* text = std::get_if<TextShape>(&entity.shape))
            return textElement(*text, m_frame, attribute("class", classes + " text") + named, kPlaces);
        return "<path" + attribute("class", classes) + named + " vector-effect=\"non-scaling-stroke\" d=\"" +
               pathOf(entity) + "\"/>\n";
    }

    std::string pathOf(const Entity& entity) {
        const Outline outline = outlineOf(entity.shape, m_reach, m_tolerance);
        addInk(outline);
        return pathData(outline, m_frame, kPlaces);
    }

    void addInk(const Outline& outline) {
        for (std::vector<Vec2>& run : flattened(outline, 1.0 / m_frame.scale)) {
            for (Vec2& point : run)
                point = m_frame.toPicture(point);
            m_ink.addRun(run);
        }
    }

    std::string marks() {
        const EntityIndex entities(m_request.document);
        std::vector<Mark> marks;
        const bool isAlone = m_request.crowd != nullptr && m_request.crowd->isAlone;
        if (m_request.marks && m_request.crowd != nullptr && !isAlone)
            marks = marksOf(changedConstraints(), entities, m_frame, m_request.notes.constraints);
        else if (m_request.marks)
            marks = marksOf(m_request.document, entities, m_frame, m_request.notes.constraints);
        if (m_request.names)
            for (Mark& name : namesOf(m_request.document))
                marks.push_back(std::move(name));
        return drawMarks(marks, m_frame, m_ink, m_request.notes,
                         {.dimensionLines = m_request.dimensionLines, .seenWhole = isAlone}, m_request.memory);
    }

    Document changedConstraints() const {
        Document changed;
        for (const Constraint& constraint : m_request.document.constraints)
            if (m_request.notes.constraints.contains(constraint.id))
                changed.constraints.push_back(constraint);
        return changed;
    }

    const PictureRequest& m_request;
    const Frame& m_frame;
    Box m_reach;
    double m_tolerance;
    InkMap m_ink;
    std::array<GatheredPaths, kTouched> m_gathered;
};

}  // namespace

std::string pictureBody(const PictureRequest& request) {
    return BodyWriter(request).body();
}

}  // namespace holdfast::report
