// A drawing is edited in one run, or written and read again in between: it comes out the same, names included.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "editing/Session.h"
#include "formats/json/JsonReader.h"
#include "formats/json/JsonWriter.h"
#include "tests/editing/SweptEdits.h"

namespace holdfast::editing {
namespace {

Document edited(const Document& document, const std::vector<std::string>& edits, std::size_t from, std::size_t to) {
    Session session(document);
    for (std::size_t i = from; i < to; ++i)
        EXPECT_EQ(session.apply(edits[i]).outcome.error, "");
    return session.document();
}

Document rewritten(const Document& document) {
    return formats::readJson(formats::jsonText(document), "between.json");
}

void expectTheSameFromEverySplit(const Document& document, const std::vector<std::string>& edits) {
    const Document atOnce = edited(document, edits, 0, edits.size());
    for (std::size_t split = 1; split < edits.size(); ++split)
        EXPECT_EQ(formats::jsonText(edited(rewritten(edited(document, edits, 0, split)), edits, split, edits.size())),
                  formats::jsonText(atOnce))
            << "written before " << edits[split];
}

TEST(SplitRuns, NameWhatIsNewAsASingleRunDoes) {
    expectTheSameFromEverySplit(
        frameDrawing(), {"break base at 4,0", "erase base_2", "draw line 0,0 3,3", "constrain equal line1 right as k40",
                         "delete k40", "constrain fixed line1.start", "break base at 2,0", "erase line1",
                         "draw line 0,0 2,2", "constrain distance line1", "copy line1 by 20,0 linked"});
}

TEST(SplitRuns, NameWhatEveryCommandMakesAsASingleRunDoes) {
    std::vector<std::string> done;
    Session session(sweptDrawing());
    for (const std::string& edit : sweptEdits())
        if (session.apply(edit).outcome.done())
            done.push_back(edit);
    expectTheSameFromEverySplit(sweptDrawing(), done);
}

TEST(SplitRuns, GiveNoNumberAgainThatAnUndoneEditDidNotKeep) {
    Session session(frameDrawing());
    session.apply("constrain equal base left");
    session.apply("undo");
    EXPECT_EQ(session.document(), frameDrawing());
    EXPECT_EQ(session.document().constraintNumbers, 0u);
}

}  // namespace
}  // namespace holdfast::editing
