#include "formats/svg/SvgReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <set>
#include <unordered_map>
#include <utility>

#include "document/checks/ShapeCheck.h"
#include "document/text/Suggest.h"
#include "formats/dxf/DxfText.h"
#include "formats/svg/SvgColours.h"
#include "formats/svg/SvgFault.h"
#include "formats/svg/SvgNumbers.h"
#include "formats/svg/SvgShapes.h"
#include "formats/svg/SvgStyles.h"
#include "formats/svg/SvgTransform.h"
#include "formats/svg/SvgTree.h"
#include "formats/svg/SvgViewport.h"
#include "geometry/Angles.h"
#include "geometry/Conics.h"
#include "geometry/Tolerances.h"

namespace holdfast::formats {
namespace {

/// What may be drawn by using things again, which makes much out of little: elements, and what is read for them.
constexpr std::size_t kMostUsed = 200'000, kReadOfOne = 16;

/// Kinds of notices that are told one by one.
constexpr std::size_t kMostNotices = 40;
constexpr std::size_t kLongestName = 40;

constexpr std::array<std::string_view, 15> kUndrawn = {
    "defs",    "symbol", "title",  "desc",     "metadata", "style", "linearGradient", "radialGradient",
    "pattern", "filter", "marker", "clipPath", "mask",     "view",  "script"};

constexpr std::array<const char*, 13> kLost = {"fill",         "stroke-width",   "stroke-dasharray", "opacity",
                                               "fill-opacity", "stroke-opacity", "marker",           "marker-start",
                                               "marker-mid",   "marker-end",     "filter",           "clip-path",
                                               "mask"};

bool isOpacity(std::string_view property) {
    return property.ends_with("opacity");
}

/// What elements have from those around them.
struct SvgSurrounding {
    Affine toDrawing;
    Vec2 window;  // what percentages are of
    std::string_view fill = "black", stroke = "none", colour = "black", cap = "butt";
    std::string_view layer;
    bool isVisible = true;
    bool isUsed = false;  // by a use
    std::size_t depth = 0;
};

/// Arcs begin within the first turn, those that begin on the x axis there and not a rounding before it.
void beginInFirstTurn(double& start, double& end) {
    const double turns = kTurn * std::floor((start + kSameDirection) / kTurn);
    start -= turns;
    end -= turns;
}

Shape tidied(Shape shape) {
    if (auto* arc = std::get_if<ArcShape>(&shape))
        beginInFirstTurn(arc->startAngle, arc->endAngle);
    else if (auto* part = std::get_if<EllipticalArcShape>(&shape))
        beginInFirstTurn(part->startParam, part->endParam);
    return shape;
}

/// An ellipse whose axes are equal but for the few decimals of a transform is a circle; the ends of an arc stay.
Shape asRound(Shape shape) {
    if (const auto* ellipse = std::get_if<EllipseShape>(&shape); ellipse != nullptr && ellipse->ratio > 1.0 - kHolds)
        return CircleShape{ellipse->centre, norm(ellipse->majorAxis) * std::sqrt(ellipse->ratio)};
    const auto* arc = std::get_if<EllipticalArcShape>(&shape);
    if (arc == nullptr || arc->ratio <= 1.0 - kHolds)
        return shape;
    const auto end = [&](double param) { return ellipsePoint(arc->centre, arc->majorAxis, arc->ratio, param); };
    return arcOfBulge(end(arc->startParam), end(arc->endParam), bulgeOfAngle(arc->endParam - arc->startParam));
}

std::string_view labelOf(pugi::xml_node group) {
    for (const pugi::xml_attribute attribute : group.attributes())
        if (std::string_view(attribute.name()).ends_with(":label"))
            return attribute.value();
    return {};
}

std::string_view referenceOf(pugi::xml_node use) {
    for (const pugi::xml_attribute attribute : use.attributes())
        if (const std::string_view name = attribute.name(); name == "href" || name.ends_with(":href"))
            return attribute.value();
    return {};
}

class SvgNotices {
public:
    void count(const std::string& what) {
        if (m_notices.size() >= kMostNotices && !m_places.contains(what))
            return countKnown("other things");
        countKnown(what);
    }
    std::vector<SvgNotice> take() { return std::move(m_notices); }

private:
    void countKnown(const std::string& what) {
        const auto [known, isNew] = m_places.emplace(what, m_notices.size());
        if (isNew)
            m_notices.push_back({what, 0});
        ++m_notices[known->second].count;
    }

    std::vector<SvgNotice> m_notices;
    std::unordered_map<std::string, std::size_t> m_places;
};

class SvgDrawer {
public:
    SvgDrawer(std::string_view text, const std::string& fileName) : m_tree(text, fileName), m_styles(m_tree) {
        m_document.name = utf8Of(std::filesystem::path(fileName).stem().string());
    }

    SvgDrawing read() {
        for (const std::string& rule : m_styles.passedOver())
            m_notUnderstood.count("style rule " + inQuotes(rule));
        const SvgPage page = pageOf(m_tree.root());
        m_document.lengthUnit = page.unit;
        SvgSurrounding around;
        around.toDrawing = page.toDrawing;
        around.window = page.size;
        drawInside(m_tree.root(), around, [&](const SvgSurrounding& inside) { drawChildren(m_tree.root(), inside); });
        return {std::move(m_document), m_notUnderstood.take(), m_dropped.take(), m_roundCubics, page.isMeasured};
    }

private:
    [[noreturn]] void fail(pugi::xml_node node, const SvgFault& fault) const {
        m_tree.fail(node, fault.found, fault.expected);
    }

    SvgPage pageOf(pugi::xml_node root) const {
        try {
            return svgPage(root);
        } catch (const SvgFault& fault) {
            fail(root, fault);
        }
    }

    void drawChildren(pugi::xml_node node, const SvgSurrounding& around) {
        for (const pugi::xml_node child : node.children())
            draw(child, around);
    }

    void draw(pugi::xml_node node, const SvgSurrounding& around) {
        const std::string_view name = m_tree.nameOf(node);
        if (name.empty() || std::find(kUndrawn.begin(), kUndrawn.end(), name) != kUndrawn.end())
            return;
        drawInside(node, around, [&](const SvgSurrounding& inside) { drawNamed(name, node, inside); });
    }

    void drawNamed(std::string_view name, pugi::xml_node node, const SvgSurrounding& around) {
        if (name == "g" || name == "a")
            drawChildren(node, around);
        else if (name == "svg")
            drawWindow(node, node, around);
        else if (name == "switch")
            drawChoice(node, around);
        else if (name == "use")
            drawUsed(node, around);
        else if (const std::optional<SvgPen::Drawn> drawn = svgShapes(name, node, around.window))
            add(name, *drawn, node, around);
        else
            m_notUnderstood.count(name.size() > kLongestName ? inQuotes(name) : std::string(name));
    }

    /// Hands on what the element says for all that is in it, unless it is not shown.
    template <class Draw>
    void drawInside(pugi::xml_node node, const SvgSurrounding& around, Draw&& drawIt) {
        const std::string name(m_tree.nameOf(node));
        if (around.isUsed)
            spend(node);
        if (around.depth == kSvgDeepest)
            m_tree.fail(node, "things used in each other more than " + std::to_string(kSvgDeepest) + " deep",
                        "fewer of them in each other");
        if (m_styles.value(node, "display") == "none")
            return m_notUnderstood.count(spoken(node) + " with display:none");
        noteLost(node);
        try {
            drawIt(surroundingOf(node, name, around));
        } catch (const SvgFault& fault) {
            fail(node, {fault.found + " in <" + name + ">", fault.expected});
        }
    }

    /// Layers are known by their labels.
    std::string spoken(pugi::xml_node node) const {
        const std::string_view label = labelOf(node);
        return std::string(m_tree.nameOf(node)) + (label.empty() ? "" : " " + inQuotes(label));
    }

    SvgSurrounding surroundingOf(pugi::xml_node node, const std::string& name, const SvgSurrounding& around) {
        SvgSurrounding inside = around;
        ++inside.depth;
        for (const auto& [property, place] :
             {std::pair("fill", &inside.fill), std::pair("stroke", &inside.stroke), std::pair("color", &inside.colour),
              std::pair("stroke-linecap", &inside.cap)})
            if (const std::string_view value = m_styles.value(node, property); !value.empty() && value != "inherit")
                *place = value;
        if (const std::string_view seen = m_styles.value(node, "visibility"); !seen.empty() && seen != "inherit")
            inside.isVisible = seen == "visible";
        if (const std::string_view label = labelOf(node); name == "g" && !label.empty())
            inside.layer = label;
        if (const pugi::xml_attribute transform = node.attribute("transform"))
            inside.toDrawing = svgChained(inside.toDrawing, svgTransform(transform.value()));
        return inside;
    }

    void noteLost(pugi::xml_node node) {
        for (const char* property : kLost)
            if (const std::string_view value = m_styles.value(node, property);
                !value.empty() && value != "none" && value != "inherit" && !(isOpacity(property) && value == "1"))
                m_dropped.count(property);
        if (m_styles.value(node, "transform") != std::string_view(node.attribute("transform").value()))
            m_dropped.count("transform in a style");
    }

    /// What is used again costs what is read for it, each time.
    void spend(pugi::xml_node node) {
        std::size_t letters = 0;
        for (const pugi::xml_attribute attribute : node.attributes())
            letters += std::string_view(attribute.value()).size();
        m_spent += 1 + letters / kReadOfOne;
        if (m_spent > kMostUsed)
            m_tree.fail(node, "more than " + std::to_string(kMostUsed) + " parts in what is used again",
                        "fewer of them; a picture that draws them once");
    }

    /// The picture in an element, as large as the element `sized` says.
    void drawWindow(pugi::xml_node node, pugi::xml_node sized, SvgSurrounding around) {
        const auto length = [&](const char* name, double whole, double otherwise) {
            std::optional<double> said = svgLength(sized.attribute(name).value(), whole);
            if (!said && sized != node)
                said = svgLength(node.attribute(name).value(), whole);
            return said.value_or(otherwise);
        };
        const Vec2 whole = around.window;
        SvgBox into{{}, {length("width", whole.x, whole.x), length("height", whole.y, whole.y)}};
        if (m_tree.nameOf(node) == "svg")
            into.corner = {svgLength(node.attribute("x").value(), whole.x).value_or(0.0),
                           svgLength(node.attribute("y").value(), whole.y).value_or(0.0)};
        const std::optional<SvgBox> shown = svgViewBox(node);
        if (shown && (!(into.size.x > 0.0) || !(into.size.y > 0.0)))
            return m_notUnderstood.count(std::string(m_tree.nameOf(node)) + " without size");
        const Affine fit = shown ? svgFit(*shown, into, node.attribute("preserveAspectRatio").value())
                                 : Affine{{1.0, 0.0}, {0.0, 1.0}, into.corner};
        around.toDrawing = svgChained(around.toDrawing, fit);
        around.window = shown ? shown->size : into.size;
        drawChildren(node, around);
    }

    /// The first that needs nothing of a reader.
    void drawChoice(pugi::xml_node node, const SvgSurrounding& around) {
        for (const pugi::xml_node child : node.children())
            if (const std::string_view name = m_tree.nameOf(child); !name.empty() && name != "foreignObject" &&
                                                                    !child.attribute("requiredExtensions") &&
                                                                    !child.attribute("systemLanguage"))
                return draw(child, around);
    }

    void drawUsed(pugi::xml_node use, SvgSurrounding around) {
        const std::string reference(referenceOf(use));
        if (!reference.starts_with('#'))
            return m_notUnderstood.count(reference.empty() ? "use of nothing" : "use of " + inQuotes(reference));
        const pugi::xml_node target = m_tree.find(reference.substr(1));
        if (!target)
            return m_notUnderstood.count("use of " + inQuotes(reference) + ", which is not there");
        if (isInside(target, use) || !m_inUse.insert(target.internal_object()).second)
            return m_notUnderstood.count("use of " + inQuotes(reference) + " in itself");
        const Vec2 by{svgLength(use.attribute("x").value(), around.window.x).value_or(0.0),
                      svgLength(use.attribute("y").value(), around.window.y).value_or(0.0)};
        around.toDrawing = svgChained(around.toDrawing, {{1.0, 0.0}, {0.0, 1.0}, by});
        around.isUsed = true;
        const std::string_view name = m_tree.nameOf(target);
        if (name == "symbol" || name == "svg")
            drawInside(target, around, [&](const SvgSurrounding& inside) { drawWindow(target, use, inside); });
        else
            draw(target, around);
        m_inUse.erase(target.internal_object());
    }

    static bool isInside(pugi::xml_node outer, pugi::xml_node node) {
        while (node && node != outer)
            node = node.parent();
        return node == outer;
    }

    void add(std::string_view name, const SvgPen::Drawn& drawn, pugi::xml_node node, const SvgSurrounding& around) {
        const std::string kind(name);
        if (!around.isVisible)
            return m_notUnderstood.count(kind + " that is hidden");
        if (around.stroke == "none" && around.fill == "none")
            return m_notUnderstood.count(kind + " without stroke and fill");
        if (!(std::abs(around.toDrawing.determinant()) > 0.0))
            return m_notUnderstood.count(kind + " that its transform makes flat");
        if (drawn.shapes.empty() && drawn.dots.empty())
            return m_notUnderstood.count(kind + " without size");
        const SharedLook look = lookOf(around);
        m_roundCubics += drawn.roundCubics;
        for (const Shape& shape : drawn.shapes)
            add(kind, tidied(asRound(transformed(shape, around.toDrawing))), look, node);
        // Round ends make a dot of what has no length.
        for (const Vec2 dot : drawn.dots)
            if (around.cap == "round" && around.stroke != "none")
                add(kind, transformed(PointShape{dot}, around.toDrawing), look, node);
            else
                m_notUnderstood.count(kind + " without size");
    }

    void add(const std::string& kind, Shape shape, const SharedLook& look, pugi::xml_node node) {
        if (const std::optional<Fault> fault = faultIn(shape))
            return m_notUnderstood.count(kind + " with faulty " + fault->place.substr(0, fault->place.find('/')));
        std::vector<Entity>& entities = m_document.entities;
        if (entities.size() == kSvgMostCurves)
            m_tree.fail(node, "more than a million curves", "a smaller picture, or parts of it");
        entities.push_back({.id = "g" + std::to_string(entities.size()), .shape = std::move(shape), .look = look});
    }

    /// Most look like the one before them.
    const SharedLook& lookOf(const SvgSurrounding& around) {
        Look look;
        look.layer = around.layer;
        if (m_layers.insert(look.layer).second && !look.layer.empty())
            m_document.layers.push_back({.name = look.layer});
        const std::string_view stroke = around.stroke == "currentColor" ? around.colour : around.stroke;
        const std::optional<Colour> colour = svgColour(stroke);
        if (colour && colour->value != 0)
            look.colour = *colour;
        if (!colour && stroke != "none")
            m_dropped.count("stroke " + inQuotes(stroke));
        if (look != *m_look)
            m_look = SharedLook(std::move(look));
        return m_look;
    }

    SvgTree m_tree;
    SvgStyles m_styles;
    Document m_document;
    SvgNotices m_notUnderstood, m_dropped;
    int m_roundCubics = 0;
    std::set<pugi::xml_node_struct*> m_inUse;  // what is being drawn by a use
    std::set<std::string> m_layers;
    SharedLook m_look;
    std::size_t m_spent = 0;
};

}  // namespace

SvgDrawing readSvg(std::string_view text, const std::string& fileName) {
    return SvgDrawer(text, fileName).read();
}

}  // namespace holdfast::formats
