// Random edits delete no dimension that still says what is. HOLDFAST_TRUE_EDITS says how many edits are done,
// HOLDFAST_SEED where the dice begin.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <iostream>

#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/checks/ConstraintCheck.h"
#include "editing/Refusal.h"
#include "editing/Session.h"
#include "geometry/Tolerances.h"
#include "hosting/DocumentSketch.h"
#include "tests/editing/RandomEdits.h"
#include "tests/editing/SmallDrawings.h"
#include "tests/support/Environment.h"

namespace holdfast::editing {
namespace {

/// Larger drawings take longer, and lose no other dimensions.
constexpr std::size_t kMostEntities = 120;

/// So many edits at most begin at one drawing as it came.
constexpr int kInARow = 25;

/// Those delete what they are told to.
bool deletesByItself(const std::string& edit) {
    constexpr std::array<std::string_view, 4> verbs{"delete ", "erase ", "undo", "redo"};
    return std::any_of(verbs.begin(), verbs.end(), [&](std::string_view verb) { return edit.starts_with(verb); });
}

bool holdsIn(Document document, const Constraint& constraint) {
    if (faultIn(constraint, EntityIndex(document)))
        return false;
    document.constraints.assign(1, constraint);
    const DocumentSketch sketch(document);
    return sketch.shortfallOf(0) <= kHolds * sketch.size();
}

/// The dimensions that an edit deleted although they held before and hold where they stand.
std::string lostTrueOnes(const Document& before, const Session& session) {
    std::string lost;
    for (const ConstraintOutcome& outcome : session.results().back().fates.constraints) {
        if (outcome.fate != ConstraintFate::deleted)
            continue;
        for (const Constraint& constraint : before.constraints)
            if (constraint.id == outcome.constraint && isDimension(constraint.type) && constraint.active &&
                constraint.driving && holdsIn(before, constraint) && holdsIn(session.document(), constraint))
                lost += " " + spokenConstraint(constraint) + ": " + outcome.reason;
    }
    return lost;
}

TEST(TrueDimensions, OutliveRandomEdits) {
    const int wanted = testing::numberFrom("HOLDFAST_TRUE_EDITS", 200);
    RandomEdits edits(static_cast<unsigned>(testing::numberFrom("HOLDFAST_SEED", 1)));
    const std::vector<Document> drawings = smallDrawings(kMostEntities);
    int done = 0, deleted = 0;
    for (std::size_t next = 0; done < wanted; ++next) {
        const Document& drawing = drawings[next % drawings.size()];
        Session session(drawing);
        for (int i = 0; i < kInARow && done < wanted && !session.document().entities.empty(); ++i) {
            const Document before = session.document();
            const std::string edit = edits.next(before);
            if (!session.apply(edit).outcome.done() || deletesByItself(edit))
                continue;
            ++done;
            const std::string lost = lostTrueOnes(before, session);
            deleted += lost.empty() ? 0 : 1;
            EXPECT_EQ(lost, "") << drawing.name << ": " << edit;
        }
    }
    std::cout << done << " edits, " << deleted << " of them deleted a dimension that holds\n";
}

}  // namespace
}  // namespace holdfast::editing
