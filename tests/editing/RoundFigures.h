#pragma once

#include <random>
#include <string>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// Figures of lines and arcs that run on into one another, of which no size is given, and edits of them: open chains,
/// slots and rounded rectangles, turned at random. Some chains are held at their beginning; closed figures that are
/// held may have to change a radius.
class RoundFigures {
public:
    explicit RoundFigures(unsigned seed) : m_random(seed) {}

    Document next();
    /// A line that gets longer or shorter, or an entity that is dragged whole or at one of its points.
    std::string editOf(const Document& figure);

private:
    Document chain();
    Document slot();
    Document roundedRectangle();
    std::string lengthening(const Entity& line);
    std::string dragging(const Entity& entity);

    double between(double low, double high) {
        return low + (high - low) * std::uniform_real_distribution<double>(0.0, 1.0)(m_random);
    }
    int below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }
    bool chance(double probability) { return between(0.0, 1.0) < probability; }

    std::mt19937 m_random;
    int m_made = 0;
};

}  // namespace holdfast::editing
