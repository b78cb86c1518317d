#pragma once

#include "document/Document.h"
#include "hosting/Uses.h"

namespace holdfast::hosting {

/// A constraint that was deleted, and by whom.
struct Deletion {
    enum class By {
        module,     ///< a command centre, which does not say why
        host,       ///< somebody asked the drawing for it
        erasure,    ///< the drawing, with the entity that it stood on
        lostPlace,  ///< the drawing, because one of its places was gone
    };

    By by = By::module;
    Constraint constraint;  ///< as it was before the edit
    Place at{};             ///< erasure: the entity; lostPlace: the place before the edit, of no entity if not known
};

}  // namespace holdfast::hosting
