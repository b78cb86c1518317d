#pragma once

#include <array>
#include <functional>
#include <random>
#include <span>
#include <string>
#include <string_view>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// Edits as a user might type them, of all kinds, on the entities of a drawing as it is now. Many are refused, for good
/// reasons.
class RandomEdits {
public:
    explicit RandomEdits(unsigned seed) : m_random(seed) {}

    std::string next(const Document& document);
    /// Of those that move what is there: rotate, set, stretch, drag and mirror. Empty where a few tries find none.
    std::string moving(const Document& document);
    /// Of an entity and what a constraint ties to it.
    std::string linkedCopy(const Document& document);

private:
    using Maker = std::string (RandomEdits::*)(const Document&);
    std::string byOneOf(std::span<const Maker> makers, const Document& document);
    std::string breakEdit(const Document& document);
    std::string trimEdit(const Document& document);
    std::string extendEdit(const Document& document);
    std::string filletEdit(const Document& document);
    std::string joinEdit(const Document& document);
    std::string lengthenEdit(const Document& document);
    std::string stretchEdit(const Document& document);
    std::string mirrorEdit(const Document& document);
    std::string alignEdit(const Document& document);
    std::string rotateEdit(const Document& document);
    std::string dragEdit(const Document& document);
    std::string setEdit(const Document& document);
    std::string moveEdit(const Document& document);
    std::string copyEdit(const Document& document);
    std::string scaleEdit(const Document& document);
    std::string chamferEdit(const Document& document);
    std::string offsetEdit(const Document& document);
    std::string explodeEdit(const Document& document);
    std::string drawEdit(const Document& document);
    std::string eraseEdit(const Document& document);
    std::string constrainEdit(const Document& document);
    std::string deleteEdit(const Document& document);
    std::string dimensionEdit(const Document& document);
    std::string formulaEdit(const Document& document);
    std::string parameterEdit(const Document& document);
    std::string defineEdit(const Document& document);
    /// Constraints on one piece, on two, on points, and on all that.
    std::string constraintOfOne(const Document& document);
    std::string constraintOfTwo(const Document& document);
    std::string constraintOfPoints(const Document& document);
    std::string constraintOfMixed(const Document& document);
    /// A whole curve, or a segment of a polyline, as it is typed.
    std::string pieceOf(const Entity& entity);
    /// An end, a centre, a middle or a vertex as it is typed, or the whole entity where it has none.
    std::string pointOf(const Entity& entity);
    /// A dimension that may be changed, or null when a few tries find none.
    const Constraint* anyDimension(const Document& document);
    /// One name or two, with blanks between them.
    std::string someEntities(const Document& document);

    double share() { return std::uniform_real_distribution<double>(0.0, 1.0)(m_random); }
    double between(double low, double high) { return low + (high - low) * share(); }
    std::size_t below(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_random); }
    bool chance(double probability) { return share() < probability; }
    const Entity& anyEntity(const Document& document) { return document.entities[below(document.entities.size())]; }
    /// A curve that may be moved, or null when a few tries find none.
    const Entity* anyCurve(const Document& document);
    Vec2 anyPointOn(const Shape& shape);
    /// A curve other than this one that fulfils a condition, or null when a few tries find none.
    const Entity* otherCurve(const Document& document, const Entity& entity,
                             const std::function<bool(const Shape&)>& suits);
    /// Another curve that a constraint ties to this one, else any.
    const Entity& partnerOf(const Document& document, const Entity& entity);
    std::string number(double value);
    std::string point(Vec2 p);
    std::string vector(double size);
    template <std::size_t N>
    std::string oneOf(const std::array<std::string_view, N>& words) {
        return std::string(words[below(N)]);
    }

    std::mt19937 m_random;
};

}  // namespace holdfast::editing
