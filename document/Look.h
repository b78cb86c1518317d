#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "document/Uses.h"

namespace holdfast::document {

/// What an entity or a layer is drawn in.
struct Colour {
    enum class Kind : std::uint8_t { byLayer, byBlock, index, rgb };

    Kind kind = Kind::byLayer;
    std::uint32_t value = 0;  ///< index: 1 to 255 in the palette of the program that drew it; rgb: 0xRRGGBB

    friend bool operator==(const Colour&, const Colour&) = default;
};

// Widths of lines that are no width: what the layer, the block or the program's own setting says.
inline constexpr int kWeightByLayer = -1, kWeightByBlock = -2, kWeightDefault = -3;

/// How an entity is drawn, as far as its file says so.
struct Look {
    std::string layer{};          ///< empty: the layer "0", which every drawing has
    Colour colour{};              ///< usually that of the layer
    std::string linetype{};       ///< empty: that of the layer
    int weight = kWeightByLayer;  ///< hundredths of a millimetre, 0 to 211, or one of the three above
    bool visible = true;

    friend bool operator==(const Look&, const Look&) = default;
};

/// A look that entities share, for drawings have many entities and few looks. Never changed, only replaced.
class SharedLook {
public:
    SharedLook() = default;
    explicit SharedLook(Look look) : m_look(look == Look() ? nullptr : std::make_shared<const Look>(std::move(look))) {}

    const Look& operator*() const { return m_look == nullptr ? usual() : *m_look; }
    const Look* operator->() const { return &**this; }
    bool isUsual() const { return m_look == nullptr; }

    friend bool operator==(const SharedLook& a, const SharedLook& b) { return a.m_look == b.m_look || *a == *b; }

private:
    static const Look& usual() {
        static const Look look;
        return look;
    }

    std::shared_ptr<const Look> m_look;  // null: the usual one
};

/// A layer of a drawing. Entities on one that is off, frozen or locked are there, and are not to be edited by chance.
struct Layer {
    std::string name;
    Colour colour{Colour::Kind::index, 7};
    std::string linetype{};  ///< empty: a continuous line
    int weight = kWeightDefault;
    bool isOff = false, isFrozen = false, isLocked = false;

    friend bool operator==(const Layer&, const Layer&) = default;
};

}  // namespace holdfast::document
