#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "document/BlockContents.h"
#include "geometry/Angles.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

/// A line and a circle, the line on layer 0.
SharedBlock plug() {
    Look red;
    red.layer = "Cut";
    red.colour = {Colour::Kind::index, 1};
    return SharedBlock(
        {.name = "Plug", .parts = {{LineShape{{0, 0}, {4, 0}}}, {CircleShape{{2, 0}, 1}, SharedLook(red)}}});
}

BlockReference referenceTo(SharedBlock block, std::string id, Vec2 at) {
    Look look;
    look.layer = "Parts";
    return {.id = std::move(id), .placement = {.at = at}, .look = SharedLook(look), .block = std::move(block)};
}

/// A base line, a plug, a socket with a plug in it, a hatch.
Document drawingWithBlocks() {
    Document document;
    document.entities = {lineEntity("base", {0, 0}, {10, 0})};
    BlockReference inner = referenceTo(plug(), "insert:0", {1, 1});
    inner.look = {};
    const SharedBlock socket({.name = "Socket", .parts = {{LineShape{{0, 0}, {0, 4}}}}, .references = {inner}});
    BlockReference hatch = referenceTo(plug(), "hatch:2", {});
    hatch.kind = BlockReference::Kind::hatch;
    document.references = {referenceTo(plug(), "insert:0", {1, 2}), referenceTo(socket, "insert:1", {20, 0}), hatch};
    return document;
}

const BlockReference& referenceIn(const Session& session, std::string_view id) {
    for (const BlockReference& reference : session.document().references)
        if (reference.id == id)
            return reference;
    ADD_FAILURE() << "no " << id;
    static const BlockReference none;
    return none;
}

std::vector<std::string> namesIn(const Session& session) {
    std::vector<std::string> names;
    for (const Entity& entity : session.document().entities)
        names.push_back(entity.id);
    for (const BlockReference& reference : session.document().references)
        names.push_back(reference.id);
    return names;
}

void expectDone(Session& session, std::string_view edit) {
    EXPECT_EQ(session.apply(edit).outcome.error, "") << edit;
}

TEST(BlockReferences, AreMovedRotatedAndMirroredAsAWhole) {
    Session session(drawingWithBlocks());
    expectDone(session, "move insert:0 by 2,3");
    EXPECT_EQ(referenceIn(session, "insert:0").placement, (Placement{.at = {3, 5}}));
    expectDone(session, "rotate insert:0 about 3,5 by 90");
    EXPECT_EQ(referenceIn(session, "insert:0").placement, (Placement{.at = {3, 5}, .rotation = kPi / 2}));
    expectDone(session, "mirror insert:0 about 0,0 0,1");
    const Placement& mirrored = referenceIn(session, "insert:0").placement;
    EXPECT_EQ(mirrored.at, (Vec2{-3, 5}));
    EXPECT_EQ(mirrored.yScale, -1);
    EXPECT_EQ(session.document().entities, drawingWithBlocks().entities);
}

TEST(BlockReferences, AreMovedTogetherWithEntities) {
    Session session(drawingWithBlocks());
    const EditResult& result = session.apply("move base insert:1 by 0,5");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_EQ(std::get<LineShape>(session.document().entities[0].shape), (LineShape{{0, 5}, {10, 5}}));
    EXPECT_EQ(referenceIn(session, "insert:1").placement.at, (Vec2{20, 5}));
    ASSERT_EQ(result.fates.entities.size(), 2u);
    EXPECT_EQ(result.fates.entities[1], (EntityOutcome{"insert:1", EntityFate::edited, 5.0}));
}

TEST(BlockReferences, AreCopiedAndErased) {
    Session session(drawingWithBlocks());
    expectDone(session, "copy insert:0 base by 0,10 times 2");
    EXPECT_THAT(namesIn(session), testing::ElementsAre("base", "base_2", "base_3", "insert:0", "insert:1", "hatch:2",
                                                       "insert:0_2", "insert:0_3"));
    EXPECT_EQ(referenceIn(session, "insert:0_3").placement.at, (Vec2{1, 22}));
    expectDone(session, "mirror insert:1 about 0,0 1,0 keep");
    EXPECT_EQ(referenceIn(session, "insert:1_2").placement.yScale, -1);
    expectDone(session, "erase insert:0 insert:1_2");
    EXPECT_THAT(namesIn(session),
                testing::ElementsAre("base", "base_2", "base_3", "insert:1", "hatch:2", "insert:0_2", "insert:0_3"));
}

TEST(BlockReferences, AreExplodedIntoEntitiesUnderTheNamesOfTheirParts) {
    Session session(drawingWithBlocks());
    expectDone(session, "explode insert:0 insert:1");
    EXPECT_THAT(namesIn(session), testing::ElementsAre("base", "insert:0/g0", "insert:0/g1", "insert:1/g0", "hatch:2",
                                                       "insert:1/insert:0"));
    const std::vector<Entity>& entities = session.document().entities;
    EXPECT_EQ(std::get<LineShape>(entities[1].shape), (LineShape{{1, 2}, {5, 2}}));
    EXPECT_EQ(entities[1].look->layer, "Parts");
    EXPECT_EQ(entities[2].look->layer, "Cut");
    EXPECT_EQ(referenceIn(session, "insert:1/insert:0").placement.at, (Vec2{21, 1}));
    EXPECT_EQ(referenceIn(session, "insert:1/insert:0").look->layer, "Parts");
    expectDone(session, "explode insert:1/insert:0");
    expectDone(session, "trim insert:1/insert:0/g1 at 23,2 by insert:1/insert:0/g0");
}

TEST(BlockReferences, ExplodeWhatStandsInThemWhereNoReferenceIsSoSlanted) {
    Document document = drawingWithBlocks();
    BlockReference inner = referenceTo(plug(), "insert:0", {});
    inner.placement.rotation = kPi / 4;
    document.references = {referenceTo(SharedBlock({.name = "Tilted", .references = {inner}}), "insert:0", {})};
    document.references[0].placement.xScale = 2;
    Session session(document);
    expectDone(session, "explode insert:0");
    EXPECT_THAT(namesIn(session), testing::ElementsAre("base", "insert:0/insert:0/g0", "insert:0/insert:0/g1"));
    EXPECT_TRUE(std::holds_alternative<EllipseShape>(session.document().entities[2].shape));
}

TEST(BlockReferences, ComeBackWithUndo) {
    const Document before = drawingWithBlocks();
    for (const char* edit : {"move insert:0 by 1,1", "erase insert:1", "copy insert:0 by 5,5",
                             "explode insert:0 insert:1", "mirror insert:0 base about 0,0 1,1"}) {
        Session session(before);
        expectDone(session, edit);
        const Document after = session.document();
        EXPECT_NE(after, before) << edit;
        expectDone(session, "undo");
        EXPECT_EQ(session.document(), before) << edit;
        EXPECT_EQ(session.original(), before) << edit;
        expectDone(session, "redo");
        EXPECT_EQ(session.document(), after) << edit;
        expectDone(session, "undo");
        EXPECT_EQ(session.trial(edit).change.references.empty(), false);
        EXPECT_EQ(session.document(), before) << edit;
    }
}

TEST(BlockReferences, AreLeftAsTheyWereByARefusedEdit) {
    const Document before = drawingWithBlocks();
    Session session(before);
    EXPECT_NE(session.apply("move insert:0 nothing by 1,1").outcome.error, "");
    EXPECT_NE(session.apply("copy insert:0 by 1,1 times 60000").outcome.error, "");
    EXPECT_EQ(session.document(), before);
}

TEST(BlockReferences, SayWhatCanBeDoneWithThemInOtherCommands) {
    const std::string whole =
        "; it is moved, rotated, mirrored, copied and erased as a whole, and \"explode insert:1\" makes entities of it";
    const std::string drawn = "; it is drawn, and cannot be edited";
    struct Row {
        const char* edit;
        std::string said, hint;
    };
    const Row rows[] = {
        {"trim insert:1/g0 at 1,1 by base",
         "column 6: insert:1/g0 is a part of the block reference insert:1, found \"insert:1/g0\"", whole},
        {"move insert:1/insert:0/g1 by 1,1", "insert:1/insert:0/g1 is a part of the block reference insert:1", whole},
        {"move insert:1/insert:0 by 1,1", "insert:1/insert:0 is a part of the block reference insert:1", whole},
        {"fillet insert:1 base radius 1", "insert:1 is a block reference", whole},
        {"constrain horizontal insert:1/g0", "insert:1/g0 is a part of the block reference insert:1", whole},
        {"scale insert:1 about 0,0 by 2", "insert:1 is a block reference", whole},
        {"move insert:1/g9 by 1,1", "the drawing has no entity insert:1/g9", ""},
        {"move insert:9 by 1,1", "the drawing has no entity insert:9", ""},
        {"move hatch:2 by 1,1", "hatch:2 is a hatch, which is drawn and cannot be edited", ""},
        {"explode hatch:2", "hatch:2 is a hatch, which is drawn and cannot be edited", ""},
        {"trim hatch:2/g0 at 1,1 by base", "hatch:2/g0 is a part of the hatch hatch:2", drawn},
        {"move insert:0 insert:0 by 1,1", "insert:0 is named twice; name each block reference once", ""},
        {"draw line 0,0 1,1 as insert:0", "the drawing has a block reference insert:0 already; choose another name",
         ""},
    };
    Session session(drawingWithBlocks());
    for (const Row& row : rows)
        EXPECT_THAT(session.apply(row.edit).outcome.error,
                    testing::AllOf(testing::HasSubstr(row.said), testing::HasSubstr(row.hint)))
            << row.edit;
    EXPECT_EQ(session.document(), drawingWithBlocks());
}

TEST(BlockReferences, AreNotCopiedBeyondWhatCanBeDrawn) {
    Document document = drawingWithBlocks();
    document.references[0].placement.columns = 200;
    document.references[0].placement.rows = 100;
    Session session(document);
    EXPECT_THAT(session.apply("copy insert:0 by 0,5 times 2").outcome.error,
                testing::HasSubstr("block references would show more than 100000 parts"));
    EXPECT_EQ(session.document(), document);
}

TEST(BlockReferences, AreTakenAlongByTheReportOfARun) {
    Session session(drawingWithBlocks());
    session.apply("erase insert:0");
    session.apply("move insert:1 by 1,1");
    const FateReport report = completed(session.report());
    std::vector<std::pair<std::string, EntityFate>> fates;
    for (const EntityOutcome& outcome : report.entities)
        fates.emplace_back(outcome.entity, outcome.fate);
    EXPECT_THAT(fates, testing::ElementsAre(
                           std::pair("insert:0", EntityFate::erased), std::pair("insert:1", EntityFate::edited),
                           std::pair("base", EntityFate::untouched), std::pair("hatch:2", EntityFate::untouched)));
}

}  // namespace
}  // namespace holdfast::editing
