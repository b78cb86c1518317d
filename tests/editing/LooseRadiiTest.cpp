// What runs on into one another in lines and arcs follows a drag or a longer line without other radii, as long as it
// can shift, turn or stretch its lines. HOLDFAST_ROUND_EDITS says how many edits are done, HOLDFAST_SEED where the dice
// begin.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <map>

#include "editing/Session.h"
#include "formats/json/JsonWriter.h"
#include "tests/editing/RoundFigures.h"
#include "tests/support/Environment.h"

namespace holdfast::editing {
namespace {

/// Edits in a row of one figure.
constexpr int kOfOneFigure = 3;

/// Parts of edits that may change a radius, and that may be refused.
constexpr double kMayChange = 0.05, kMayBeRefused = 0.05;

/// Radii that differ by less than this part of themselves are the same.
constexpr double kSame = 1e-6;

std::string changedRadius(const Document& before, const Document& after) {
    for (std::size_t i = 0; i < before.entities.size(); ++i) {
        const auto* was = std::get_if<ArcShape>(&before.entities[i].shape);
        const auto* is = std::get_if<ArcShape>(&after.entities[i].shape);
        if (was != nullptr && std::abs(is->radius - was->radius) > kSame * was->radius)
            return before.entities[i].id + " from " + std::to_string(was->radius) + " to " + std::to_string(is->radius);
    }
    return "";
}

struct Count {
    int done = 0, changed = 0, refused = 0;
};

TEST(LooseRadii, StayInDragsAndLengthenings) {
    const int wanted = testing::numberFrom("HOLDFAST_ROUND_EDITS", 300);
    const bool tells = std::getenv("HOLDFAST_TELL") != nullptr;
    RoundFigures figures(static_cast<unsigned>(testing::numberFrom("HOLDFAST_SEED", 1)));
    std::map<std::string, Count> counts;
    Count all;
    while (all.done < wanted) {
        const Document figure = figures.next();
        Session session(figure);
        for (int i = 0; i < kOfOneFigure; ++i) {
            const Document before = session.document();
            const std::string edit = figures.editOf(before);
            const EditResult& result = session.apply(edit);
            Count& count = counts[figure.name + ", " + edit.substr(0, edit.find(' '))];
            const std::string changed = changedRadius(before, session.document());
            for (Count* each : {&count, &all})
                ++(!result.outcome.done() ? each->refused : each->done);
            for (Count* each : {&count, &all})
                each->changed += changed.empty() ? 0 : 1;
            if (tells && (!changed.empty() || !result.outcome.done()))
                std::cout << formats::jsonText(before) << edit << ": " << changed << result.outcome.error << "\n";
        }
    }
    for (const auto& [what, count] : counts)
        std::cout << what << ": " << count.done << " done, of which " << count.changed << " changed a radius, "
                  << count.refused << " refused\n";
    EXPECT_LE(all.changed, kMayChange * all.done);
    EXPECT_LE(all.refused, kMayBeRefused * all.done);
}

}  // namespace
}  // namespace holdfast::editing
