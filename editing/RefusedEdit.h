#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editing/RefusalFacts.h"
#include "editing/Uses.h"
#include "hosting/evaluator/Evaluation.h"

namespace holdfast::hosting {
class Drawing;
}

namespace holdfast::editing {

class Session;

/// An edit that something was thrown in, told while that is being handled and before the drawing is rolled back: for
/// people and for programs. When the evaluator has failed in the edit it knows better what was in the way than the
/// command that gave up.
struct RefusedEdit {
    std::string_view text;
    const std::vector<std::string>& edited;  ///< the entities that it was about, as far as that was known
    const Session& session;                  ///< its document is without the edit
    const Drawing& drawing;                  ///< as the edit has left it
    const Evaluation& evaluation;            ///< the last one in the edit

    /// Why, in one sentence. Of what has no memory for that, only so much.
    std::string sentence() const noexcept;
    /// The same for programs.
    RefusalFacts facts() const noexcept;

private:
    std::string reason() const;
    std::string solversReason(const std::string& reason) const;
    RefusalFacts blame() const;
    std::optional<RefusalFacts> solversFacts() const;
};

}  // namespace holdfast::editing
