#include "report/picture/Frame.h"

#include "document/BlockContents.h"
#include "report/picture/Markup.h"

namespace holdfast::report {

namespace {

constexpr double kMargin = 44.0;  // picture units: room for two rows of marks outside the outermost line

/// Beyond this radius in picture units a viewer's single-precision arc loses its centre; curves by control points
/// do not have one to lose.
constexpr double kLargestArcRadius = 1e5;

class PathWriter {
public:
    PathWriter(const Frame& frame, int places) : m_frame(frame), m_places(places) {}

    void add(const Stroke& stroke) {
        switch (stroke.kind) {
            case Stroke::Kind::move:
                command('M', {stroke.to});
                break;
            case Stroke::Kind::line:
                command('L', {stroke.to});
                break;
            case Stroke::Kind::quadratic:
                command('Q', {stroke.control1, stroke.to});
                break;
            case Stroke::Kind::cubic:
                command('C', {stroke.control1, stroke.control2, stroke.to});
                break;
            case Stroke::Kind::arc:
                addArc(stroke);
                break;
        }
    }
    void close() { m_text += 'Z'; }
    std::string text() && { return std::move(m_text); }

private:
    void number(double value) {
        const std::string text = decimal(value, m_places);
        const bool joins = m_text.empty() || std::isalpha(static_cast<unsigned char>(m_text.back())) || text[0] == '-';
        if (!joins)
            m_text += ' ';
        m_text += text;
    }
    void point(Vec2 inDrawing) {
        const Vec2 at = m_frame.toPicture(inDrawing);
        number(at.x);
        number(at.y);
    }
    void command(char letter, std::initializer_list<Vec2> points) {
        m_text += letter;
        for (const Vec2& each : points)
            point(each);
    }
    void addArc(const Stroke& stroke) {
        const double largest = std::max(norm(stroke.major), norm(stroke.minor)) * m_frame.scale;
        const double sweep = stroke.endParam - stroke.startParam;
        const bool asArcs = largest <= kLargestArcRadius;
        // Three pieces to the turn keep every piece far from the half and full turns at which an arc given by its ends
        // is ambiguous; 64 cubic pieces to the turn are exact to a few parts in 1e11.
        const double longest = asArcs ? 2 * kPi / 3 : kPi / 32;
        const int pieces = static_cast<int>(std::clamp(std::ceil(std::fabs(sweep) / longest - 1e-9), 1.0, 1000.0));
        for (int i = 1; i <= pieces; ++i) {
            const double from = stroke.startParam + sweep * (i - 1) / pieces;
            const double to = stroke.startParam + sweep * i / pieces;
            if (asArcs)
                arcPiece(stroke, to);
            else
                cubicPiece(stroke, from, to);
        }
    }
    static Vec2 on(const Stroke& arc, double t) {
        return arc.centre + arc.major * std::cos(t) + arc.minor * std::sin(t);
    }
    static Vec2 slope(const Stroke& arc, double t) { return arc.minor * std::cos(t) - arc.major * std::sin(t); }

    void arcPiece(const Stroke& arc, double to) {
        const bool round = std::fabs(norm(arc.major) - norm(arc.minor)) <= 1e-12 * norm(arc.major);
        const double turn = round ? 0.0 : -inDegrees(std::atan2(arc.major.y, arc.major.x));
        const bool left = (cross(arc.major, arc.minor) > 0.0) == (arc.endParam > arc.startParam);
        m_text += 'A';
        number(norm(arc.major) * m_frame.scale);
        number(norm(arc.minor) * m_frame.scale);
        number(turn);
        m_text += left ? " 0 0" : " 0 1";
        point(on(arc, to));
    }
    void cubicPiece(const Stroke& arc, double from, double to) {
        const double reach = 4.0 / 3.0 * std::tan((to - from) / 4.0);
        command('C', {on(arc, from) + slope(arc, from) * reach, on(arc, to) - slope(arc, to) * reach, on(arc, to)});
    }

    const Frame& m_frame;
    int m_places;
    std::string m_text;
};

/// A drawing without extent still gets a window to stand in.
Box withExtent(Box box) {
    if (box.isEmpty())
        box.add(Vec2{});
    const double size = box.diagonal();
    return size > 1e-9 * std::max(norm(box.centre()), 1e-3) ? box : box.grownBy(std::max(1.0, norm(box.centre()) / 4));
}

}  // namespace

Box windowOf(const Document& document) {
    Box own, fixed;
    for (const Entity& entity : document.entities)
        (entity.fixed ? fixed : own).add(boundsOf(entity.shape));
    for (const BlockReference& reference : document.references)
        forEachShownPart(reference, [&](Entity&& part) { own.add(boundsOf(part.shape)); });
    if (own.isEmpty())
        return fixed;
    Box all = own;
    all.add(fixed);
    constexpr double farAway = 1.8;
    return all.diagonal() <= farAway * own.diagonal() ? all : own;
}

Frame frameAround(const Box& wanted, double width, double lowest, double highest) {
    const Box window = withExtent(wanted);
    const double inside = width - 2 * kMargin;
    const double height = std::clamp(inside * window.height() / std::max(window.width(), 1e-300) + 2 * kMargin,
                                     lowest * width, highest * width);
    const double scale =
        std::min(inside / std::max(window.width(), 1e-300), (height - 2 * kMargin) / std::max(window.height(), 1e-300));
    return {boxAround(window.centre(), width / scale, height / scale), scale, width, height};
}

Frame trimmed(const Frame& frame, const Box& window, double narrowest) {
    const double wanted = window.width() * frame.scale + 2 * kMargin;
    const double width = std::min(frame.width, std::max(wanted, narrowest * frame.width));
    return {boxAround(frame.window.centre(), width / frame.scale, frame.window.height()), frame.scale, width,
            frame.height};
}

std::string pathData(const Outline& outline, const Frame& frame, int places) {
    PathWriter writer(frame, places);
    for (const Stroke& stroke : outline.strokes)
        writer.add(stroke);
    if (outline.closed)
        writer.close();
    return std::move(writer).text();
}

}  // namespace holdfast::report
