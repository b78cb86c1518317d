// Linked copies in real drawings: what ties them to their originals says nothing twice, and nothing moves for it.

#include <gtest/gtest.h>

#include <iostream>
#include <set>

#include "editing/Session.h"
#include "formats/FileIo.h"
#include "hosting/DocumentSketch.h"
#include "tests/editing/RandomEdits.h"
#include "tests/support/DrawingFolder.h"

namespace holdfast::editing {
namespace {

/// Larger drawings take longer, and show nothing else.
constexpr std::size_t kMostEntitiesCopied = 150;

/// The drawing without what leads from copies to originals.
Document withoutTies(const Document& before, Document after) {
    std::set<std::string> originals;
    for (const Entity& entity : before.entities)
        originals.insert(entity.id);
    std::set<std::string> known;
    for (const Constraint& constraint : before.constraints)
        known.insert(constraint.id);
    std::erase_if(after.constraints, [&](const Constraint& constraint) {
        return !known.contains(constraint.id) &&
               std::any_of(constraint.refs.begin(), constraint.refs.end(),
                           [&](const Place& place) { return originals.contains(place.entity); });
    });
    return after;
}

TEST(RealLinkedCopies, SayNothingTwiceAndMoveNothing) {
    int done = 0, ties = 0;
    const auto files = testing::drawingFiles();
    for (std::size_t i = 0; i < files.size(); ++i) {
        const Document document = formats::readDrawing(files[i]);
        if (document.entities.empty() || document.entities.size() > kMostEntitiesCopied)
            continue;
        RandomEdits edits(100003 + static_cast<unsigned>(i));
        for (int times = 0; times < 2; ++times) {
            const std::string edit = edits.linkedCopy(document);
            Session session(document);
            if (!session.apply(edit).outcome.done())
                continue;
            const Document& after = session.document();
            const Document untied = withoutTies(document, after);
            EXPECT_LE(DocumentSketch(after).redundancies().equations, DocumentSketch(untied).redundancies().equations)
                << files[i].filename() << ": " << edit;
            for (const EntityOutcome& outcome : session.results().back().fates.entities)
                EXPECT_EQ(outcome.fate, EntityFate::created) << files[i].filename() << ": " << edit;
            ties += static_cast<int>(after.constraints.size() - untied.constraints.size());
            ++done;
        }
    }
    std::cout << done << " linked copies with " << ties << " ties\n";
    EXPECT_GT(done, 0);
}

}  // namespace
}  // namespace holdfast::editing
