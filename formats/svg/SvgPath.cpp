#include "formats/svg/SvgPath.h"

#include <cctype>
#include <optional>
#include <string>

#include "document/text/Suggest.h"
#include "formats/svg/SvgFault.h"
#include "formats/svg/SvgNumbers.h"
#include "geometry/Angles.h"

namespace holdfast::formats {
namespace {

class SvgPathReader {
public:
    SvgPathReader(std::string_view data, SvgPen& pen) : m_numbers(data), m_pen(pen) {}

    void read() {
        if (m_numbers.atEnd() || m_numbers.rest() == "none")
            return;
        if (m_numbers.peek() != 'M' && m_numbers.peek() != 'm')
            m_numbers.fail("M or m, with which a path begins");
        while (!m_numbers.atEnd())
            readCommand(takeCommand());
    }

private:
    char takeCommand() {
        const char letter = m_numbers.peek();
        if (std::string_view("MmLlHhVvCcSsQqTtAaZz").find(letter) == std::string_view::npos)
            m_numbers.fail("a number, or one of the letters M L H V C S Q T A Z");
        return m_numbers.take();
    }

    /// The numbers of a command may come again without its letter; behind those of a move they say lines.
    void readCommand(char letter) {
        char command = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
        m_isRelative = letter != command;
        if (command == 'Z')
            return closeSubpath();
        do {
            // Behind the end of a subpath the next one begins where that began.
            if (m_isClosed && command != 'M')
                m_pen.moveTo(m_pen.at());
            m_isClosed = false;
            readPiece(command);
            if (command == 'M')
                command = 'L';
        } while (m_numbers.atNumber());
    }

    void closeSubpath() {
        m_pen.close();
        m_isClosed = true;
        m_curve = m_bow = std::nullopt;
    }

    void readPiece(char command) {
        const Vec2 from = m_pen.at();
        std::optional<Vec2> curve, bow;
        switch (command) {
            case 'M':
                m_pen.moveTo(point());
                break;
            case 'L':
                m_pen.lineTo(point());
                break;
            case 'H':
                m_pen.lineTo({m_numbers.number() + (m_isRelative ? from.x : 0.0), from.y});
                break;
            case 'V':
                m_pen.lineTo({from.x, m_numbers.number() + (m_isRelative ? from.y : 0.0)});
                break;
            case 'C':
            case 'S':
                curve = drawCubic(command == 'C' ? point() : mirrored(m_curve));
                break;
            case 'Q':
            case 'T':
                bow = command == 'Q' ? point() : mirrored(m_bow);
                m_pen.quadTo(*bow, point());
                break;
            default:
                drawArc();
        }
        m_curve = curve;
        m_bow = bow;
    }

    Vec2 drawCubic(Vec2 first) {
        const Vec2 second = point();
        m_pen.cubicTo(first, second, point());
        return second;
    }

    void drawArc() {
        SvgPen::Arc arc;
        arc.xRadius = m_numbers.number();
        arc.yRadius = m_numbers.number();
        arc.turn = inRadians(m_numbers.number());
        arc.isLarge = m_numbers.flag();
        arc.isForward = m_numbers.flag();
        m_pen.arcTo(arc, point());
    }

    /// A smooth curve goes on as the one before it ended; behind any other piece it begins with its start.
    Vec2 mirrored(std::optional<Vec2> control) const {
        const Vec2 at = m_pen.at();
        return control ? 2.0 * at - *control : at;
    }

    Vec2 point() {
        const double x = m_numbers.number(), y = m_numbers.number();
        return m_isRelative ? m_pen.at() + Vec2{x, y} : Vec2{x, y};
    }

    SvgNumbers m_numbers;
    SvgPen& m_pen;
    bool m_isRelative = false, m_isClosed = false;
    std::optional<Vec2> m_curve, m_bow;  // the last control point of a cubic, of a quadratic piece
};

}  // namespace

void drawSvgPath(std::string_view data, SvgPen& pen) {
    SvgPathReader(data, pen).read();
}

}  // namespace holdfast::formats
