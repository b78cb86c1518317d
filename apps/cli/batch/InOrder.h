#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "apps/cli/Uses.h"

namespace holdfast::cli {

/// Pieces of work on several threads at once, whose ends are told in the order of their numbers.
struct WorkInOrder {
    /// For each piece those before it that have to be done when it begins. Its size is the number of pieces.
    std::vector<std::vector<std::size_t>> after;
    std::function<void(std::size_t)> work;   ///< on any thread; throws nothing
    std::function<void(std::size_t)> ended;  ///< on the calling thread; when it throws, no other piece is begun
};

/// Does all of it. Cost: that of the work, divided by the threads as far as pieces need not wait.
void doInOrder(const WorkInOrder& pieces, unsigned threads);

}  // namespace holdfast::cli
