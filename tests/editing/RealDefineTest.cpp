// Real drawings finished by "define": as they are, without their dimensions, and without any constraint.

#include <gtest/gtest.h>

#include <chrono>
#include <iostream>
#include <set>

#include "document/Names.h"
#include "editing/Refusal.h"
#include "editing/Session.h"
#include "formats/FileIo.h"
#include "geometry/Tolerances.h"
#include "hosting/DocumentSketch.h"
#include "tests/support/DrawingFolder.h"

namespace holdfast::editing {

using namespace formats;
namespace {

using testing::drawingFiles;

enum class Stripped { nothing, dimensions, all };

Document stripped(Document document, Stripped what) {
    std::erase_if(document.constraints, [&](const Constraint& constraint) {
        return what == Stripped::all || (what == Stripped::dimensions && isDimension(constraint.type));
    });
    return document;
}

std::set<std::string> redundantIn(const Document& document) {
    std::set<std::string> ids;
    for (const auto& each : DocumentSketch(document).diagnose().redundant)
        ids.insert(document.constraints[each.constraint].id);
    return ids;
}

/// What contradicts itself is no freer than it should be: nothing is added to it, which is told.
bool holdsItself(const Document& document) {
    const DocumentSketch sketch(document);
    const std::vector<double> misses = sketch.shortfalls();
    return *std::max_element(misses.begin(), misses.end()) <= kHolds * sketch.size();
}

/// What is wrong with a drawing that was to be finished; empty: nothing.
std::string faultOf(const Document& before, Session& session) {
    const EditResult& result = session.apply("define");
    if (!result.outcome.done())
        return "refused: " + result.outcome.error;
    const Document& after = session.document();
    std::string fault;
    for (std::size_t i = 0; i < before.entities.size(); ++i)
        if (!(before.entities[i].shape == after.entities[i].shape))
            fault += " " + before.entities[i].id + " moved;";
    // Which of two that say the same is named is a choice; how many are is none.
    const std::set<std::string> was = redundantIn(before), is = redundantIn(after);
    for (const std::string& id : is)
        if (is.size() > was.size() && !was.contains(id))
            for (const Constraint& constraint : after.constraints)
                if (constraint.id == id)
                    fault += " " + spokenConstraint(constraint) + " is redundant;";
    if (!holdsItself(before))
        return result.outcome.remarks.empty() ? fault + " what does not hold is not told;" : fault;
    const int freedomBefore = DocumentSketch(before).diagnose().freedom;
    for (const std::string& remark : result.outcome.remarks)
        if (freedomBefore > 0)
            fault += " remark: " + remark + ";";
    if (const int freedom = DocumentSketch(after).diagnose().freedom; freedom != 0)
        fault += " degrees of freedom: " + std::to_string(freedom) + " of " + std::to_string(freedomBefore) + ";";
    return fault;
}

void finishAll(Stripped what) {
    std::size_t added = 0, done = 0;
    double slowest = 0.0;
    for (const auto& file : drawingFiles()) {
        const Document before = stripped(readDrawing(file), what);
        Session session(before);
        const auto start = std::chrono::steady_clock::now();
        const std::string fault = faultOf(before, session);
        slowest = std::max(slowest, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        EXPECT_EQ(fault, "") << file;
        added += session.document().constraints.size() - before.constraints.size();
        ++done;
    }
    std::cout << done << " drawings, " << added << " constraints added, slowest " << slowest << " s\n";
}

TEST(DefineRealDrawing, TakesTheLastFreedomAsItIs) {
    finishAll(Stripped::nothing);
}

TEST(DefineRealDrawing, GivesBackItsDimensions) {
    finishAll(Stripped::dimensions);
}

TEST(DefineRealDrawing, ConstrainsAPlainOne) {
    finishAll(Stripped::all);
}

}  // namespace
}  // namespace holdfast::editing
