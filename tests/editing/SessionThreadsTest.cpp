// Sessions in several threads. Built with the preset tsan, this program is watched for races.

#include <gtest/gtest.h>

#include <thread>

#include "tests/editing/EveryKind.h"

namespace holdfast::editing {
namespace {

struct Work {
    Document document;
    std::vector<std::string> edits;
};

const std::string kRefused = "break base at 4,9";

/// Between them all commands, so that two threads are in the same one and in different ones.
std::vector<Work> works() {
    std::vector<std::string> moves;
    for (const char* kind : {"line", "circle", "arc", "poly", "spline", "text"}) {
        const std::string name = kind;
        for (const std::string& edit :
             {"drag " + name + " by 3,2 steps 3", "align " + name + " from 0,0 1,0 to 2,0 2,3",
              "rotate " + name + " about 1,2 by 40", "mirror " + name + " about 1,0 3,1", std::string("undo")})
            moves.push_back(edit);
    }
    moves.push_back("stretch window -10,-10 30,30 by 3,2");
    const std::vector<std::string> cuts{"break base at 4,0 to 6,0",
                                        kRefused,
                                        "undo",
                                        "trim base at 2,0 by post",
                                        "undo",
                                        "extend right end to beam",
                                        "undo",
                                        "fillet base left radius 1",
                                        "undo",
                                        "lengthen right end by 2",
                                        "undo",
                                        "set right end 10,7",
                                        "undo",
                                        "drag left by 1,1",
                                        "join beam beam2"};
    Document frame = frameDrawing();
    for (const Entity& more : {lineEntity("post", {5, -1}, {5, 6}), lineEntity("beam", {-2, 8}, {12, 8}),
                               lineEntity("beam2", {12, 8}, {20, 8})})
        frame.entities.push_back(more);
    return {{heldDrawing(), moves}, {frame, cuts}};
}

/// Every edit with what became of it, and the drawing at the end.
struct Outcome {
    std::vector<std::string> errors;
    Document document;

    bool operator==(const Outcome&) const = default;
};

Outcome outcomeOf(const Work& work, Session& session) {
    Outcome outcome;
    for (const std::string& edit : work.edits)
        outcome.errors.push_back(session.apply(edit).outcome.error);
    outcome.document = session.document();
    return outcome;
}

Outcome outcomeOf(const Work& work) {
    Session session(work.document);
    return outcomeOf(work, session);
}

void expectAsAlone(const Work& work, const Outcome& outcome) {
    for (std::size_t i = 0; i < work.edits.size(); ++i)
        EXPECT_EQ(outcome.errors[i].empty(), work.edits[i] != kRefused) << work.edits[i] << ": " << outcome.errors[i];
    const Outcome alone = outcomeOf(work);
    EXPECT_EQ(outcome.errors, alone.errors);
    EXPECT_EQ(outcome.document, alone.document);
}

TEST(SessionThreads, DoWhatEachSessionDoesAlone) {
    const std::vector<Work> all = works();
    std::vector<Outcome> outcomes(4);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < outcomes.size(); ++i)
        threads.emplace_back([&, i] { outcomes[i] = outcomeOf(all[i % all.size()]); });
    for (std::thread& thread : threads)
        thread.join();
    for (std::size_t i = 0; i < outcomes.size(); ++i)
        expectAsAlone(all[i % all.size()], outcomes[i]);
}

TEST(SessionThreads, TakeSessionsOverFromOneAnother) {
    const std::vector<Work> all = works();
    std::vector<std::unique_ptr<Session>> sessions;
    std::vector<Outcome> outcomes(all.size());
    for (const Work& work : all)
        sessions.push_back(std::make_unique<Session>(work.document));
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < all.size(); ++i)
        threads.emplace_back([&, i] {
            outcomes[i] = outcomeOf(all[i], *sessions[i]);
            sessions[i].reset();
        });
    for (std::thread& thread : threads)
        thread.join();
    for (std::size_t i = 0; i < all.size(); ++i)
        expectAsAlone(all[i], outcomes[i]);
}

}  // namespace
}  // namespace holdfast::editing
