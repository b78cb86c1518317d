#include <gtest/gtest.h>

#include <yxdb/YxGiWorldDraw.h>

#include "tests/module/drag/DragSession.h"

namespace holdfast::module {
namespace {

/// A drawing sink that writes down what it is asked to do.
class Sink : public YxGiWorldDraw, public YxGiWorldGeometry {
public:
    explicit Sink(const FeedingScene& scene) : m_scene(scene) {}

    YxGiWorldGeometry& geometry() const override { return const_cast<Sink&>(*this); }
    void pushModelTransform(const YxGeMatrix3d& matrix) override { write("push " + textOf(matrix)); }
    void popModelTransform() override { write("pop"); }
    bool draw(const YxDbEntity* entity) override {
        YxArray<YxDbEntity*> one;
        one.append(const_cast<YxDbEntity*>(entity));
        write("draw " + m_scene.text(one));
        return answer;
    }

    bool answer = true;
    std::string drawn;

private:
    void write(const std::string& what) { drawn += (drawn.empty() ? "" : "; ") + what; }

    const FeedingScene& m_scene;
};

void show(const FeedingScene& scene, std::initializer_list<const char*> names) {
    for (const char* name : names)
        scene.header().entitiesToDraw.append(scene.pointer(name));
}

TEST(DragDraw, DrawsEachEntityOnceInTheOrderOfTheList) {
    DragScene scene(kDragDrawing);
    Sink sink(scene);
    scene.drag({"a"});
    show(scene, {"p", "b", "p", "a", "b", "b"});
    EXPECT_TRUE(LvConstraintDropData::draw(&sink));
    EXPECT_EQ(sink.drawn, "draw p; draw b; draw a");
}

TEST(DragDraw, DrawsFreeClonesUnderTheDragTransform) {
    DragScene scene(kDragDrawing);
    Sink sink(scene);
    scene.drag({"a", "f", "g"});
    scene.step(3, 4);
    scene.header().staticTransform = translation(9, 9);
    show(scene, {"a"});
    EXPECT_TRUE(LvConstraintDropData::draw(&sink));
    EXPECT_EQ(sink.drawn,
              "draw a; push translation 3,4,0; draw (circle 70,0,0 5); pop; "
              "push translation 3,4,0; draw (polyline 40,0 50,0); pop");
}

TEST(DragDraw, DrawsNoFreeCloneWhenThereIsNothingElseToDraw) {
    DragScene scene(kDragDrawing);
    Sink sink(scene);
    scene.drag({"a", "f"});
    scene.step(3, 4);
    EXPECT_FALSE(LvConstraintDropData::draw(&sink));
    EXPECT_EQ(sink.drawn, "");
}

TEST(DragDraw, AnswersFalseWhenOnlyFreeClonesWereDrawn) {
    DragScene scene(kDragDrawing);
    Sink sink(scene);
    scene.drag({"a", "f"});
    scene.step(3, 4);
    scene.header().entitiesToDraw.append(nullptr);
    EXPECT_FALSE(LvConstraintDropData::draw(&sink));
    EXPECT_EQ(sink.drawn, "push translation 3,4,0; draw (circle 70,0,0 5); pop");
}

TEST(DragDraw, SkipsMissingEntities) {
    DragScene scene(kDragDrawing);
    Sink sink(scene);
    scene.drag({"a"});
    scene.header().entitiesToDraw.append(nullptr);
    show(scene, {"b"});
    scene.header().entitiesToDraw.append(nullptr);
    scene.header().unconstrainedEntities.append(nullptr);
    EXPECT_TRUE(LvConstraintDropData::draw(&sink));
    EXPECT_EQ(sink.drawn, "draw b");
}

TEST(DragDraw, CountsAnEntityAsDrawnWhateverTheSinkAnswers) {
    DragScene scene(kDragDrawing);
    Sink sink(scene);
    sink.answer = false;
    scene.drag({"a"});
    show(scene, {"b"});
    EXPECT_TRUE(LvConstraintDropData::draw(&sink));
}

TEST(DragDraw, DrawsNothingWithoutASinkOrASession) {
    DragScene scene(kDragDrawing);
    Sink sink(scene);
    show(scene, {"b"});
    EXPECT_FALSE(LvConstraintDropData::draw(&sink));
    scene.drag({"a"});
    show(scene, {"b"});
    EXPECT_FALSE(LvConstraintDropData::draw(nullptr));
    EXPECT_EQ(sink.drawn, "");
}

}  // namespace
}  // namespace holdfast::module
