#pragma once

namespace holdfast::module {

/// The piece of a cut as the host has it: open for write, or not database-resident. Only the interface calls it const.
template <class T>
T* writablePiece(const T* piece) {
    return const_cast<T*>(piece);
}

}  // namespace holdfast::module
