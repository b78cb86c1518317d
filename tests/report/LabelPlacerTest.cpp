#include "report/labels/LabelPlacer.h"

#include <gtest/gtest.h>

namespace holdfast::report {

namespace {

constexpr double kWidth = 400.0, kHeight = 300.0;

Label labelAt(Vec2 anchor, int urgency = 1) {
    Label label;
    label.anchor = anchor;
    label.width = label.height = 14.0;
    label.urgency = urgency;
    for (const double reach : {10.0, 18.0})
        for (int turn = 0; turn < 8; ++turn)
            label.spots.push_back({anchor, polar(reach, turn * kPi / 4)});
    return label;
}

LabelPlacement place(const std::vector<Label>& labels, const InkMap& ink = InkMap(kWidth, kHeight)) {
    return placeLabels(labels, ink, kWidth, kHeight);
}

std::vector<Box> boxesAt(int level, const std::vector<Label>& labels, const LabelPlacement& placement) {
    std::vector<Box> boxes;
    for (std::size_t i = 0; i < labels.size(); ++i)
        if (placement.labels[i].level <= level)
            boxes.push_back(boxAround(placement.labels[i].spot.at(level), labels[i].width, labels[i].height));
    for (const LabelCluster& cluster : placement.clusters)
        if (cluster.level == level)
            boxes.push_back(boxAround(cluster.spot.at(level), cluster.width, cluster.height));
    return boxes;
}

std::size_t labelOverlapsIn(const std::vector<Box>& boxes) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < boxes.size(); ++i)
        for (std::size_t j = i + 1; j < boxes.size(); ++j)
            count += boxes[i].overlaps(boxes[j]) ? 1 : 0;
    return count;
}

/// Rows of twenty, 4 units apart: a third of a label's size.
std::vector<Label> crowd(std::size_t count) {
    std::vector<Label> labels;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t column = i % 20, row = i / 20;
        labels.push_back(labelAt({100.0 + 4.0 * static_cast<double>(column), 100.0 + 4.0 * static_cast<double>(row)}));
    }
    return labels;
}

TEST(LabelPlacement, TakesTheFirstSpotWhereNothingIsInTheWay) {
    const LabelPlacement placement = place({labelAt({200, 150})});
    EXPECT_EQ(placement.labels[0].level, 1);
    EXPECT_EQ(placement.labels[0].choice, 0u);
    EXPECT_TRUE(placement.clusters.empty());
}

TEST(LabelPlacement, KeepsOffTheLinesOfTheDrawing) {
    InkMap ink(kWidth, kHeight);
    ink.addRun({{210, 0}, {210, kHeight}});  // through the first spot
    const LabelPlacement placement = place({labelAt({200, 150})}, ink);
    EXPECT_NEAR(ink.shareIn(boxAround(placement.labels[0].spot.at(1), 14, 14)), 0.0, 1e-12);
}

TEST(LabelPlacement, GivesTheBestSpotToTheMoreUrgentLabel) {
    const LabelPlacement placement = place({labelAt({200, 150}, 1), labelAt({200, 150}, -5)});
    EXPECT_EQ(placement.labels[1].choice, 0u);
    EXPECT_NE(placement.labels[0].choice, 0u);
}

TEST(LabelPlacement, StaysInsideThePicture) {
    const std::vector<Label> labels{labelAt({399, 1}), labelAt({1, 299}), labelAt({0, 0})};
    for (const Box& box : boxesAt(1, labels, place(labels))) {
        EXPECT_GE(box.low.x, 0.0);
        EXPECT_GE(box.low.y, 0.0);
        EXPECT_LE(box.high.x, kWidth);
        EXPECT_LE(box.high.y, kHeight);
    }
}

TEST(LabelPlacement, OverlapsNothingHoweverDenseTheCrowd) {
    const std::vector<Label> labels = crowd(400);
    EXPECT_EQ(labelOverlapsIn(boxesAt(1, labels, place(labels))), 0u);
}

TEST(LabelPlacement, CountsEveryLabelThatItDoesNotShow) {
    const std::vector<Label> labels = crowd(400);
    const LabelPlacement placement = place(labels);
    std::size_t shown = 0, counted = 0;
    for (const PlacedLabel& placed : placement.labels)
        shown += placed.level == 1 ? 1 : 0;
    for (const LabelCluster& cluster : placement.clusters)
        counted += cluster.level == 1 ? cluster.labels.size() : 0;
    EXPECT_EQ(shown + counted, labels.size());
    EXPECT_GT(counted, 0u);
}

TEST(LabelPlacement, ShowsMoreLabelsAtEachEnlargement) {
    const std::vector<Label> labels = crowd(400);
    const LabelPlacement placement = place(labels);
    std::size_t last = 0;
    for (const int level : kLevels) {
        const auto shown = static_cast<std::size_t>(
            std::count_if(placement.labels.begin(), placement.labels.end(),
                          [level](const PlacedLabel& placed) { return placed.level <= level; }));
        EXPECT_GE(shown, last);
        last = shown;
    }
    EXPECT_EQ(last, labels.size());
}

TEST(LabelPlacement, NeverMixesFamiliesInACluster) {
    std::vector<Label> labels = crowd(300);
    for (std::size_t i = 0; i < labels.size(); ++i)
        labels[i].family = static_cast<int>(i % 2);
    for (const LabelCluster& cluster : place(labels).clusters)
        for (const std::size_t index : cluster.labels)
            EXPECT_EQ(labels[index].family, labels[cluster.labels.front()].family);
}

TEST(LabelPlacement, LaysDimensionLinesBesideOneAnother) {
    std::vector<Label> labels(2, labelAt({200, 150}, 0));
    for (Label& label : labels) {
        label.line = LabelLine{{100, 150}, {300, 150}, {1, 0}};
        label.spots = {{{200, 150}, {0, -14}}, {{240, 150}, {0, -14}}, {{200, 150}, {0, -40}}};
    }
    const LabelPlacement placement = place(labels);
    EXPECT_EQ(placement.labels[0].choice, 0u);
    EXPECT_EQ(placement.labels[1].choice, 2u);  // the second spot is free, but its line would lie on the first
}

}  // namespace
}  // namespace holdfast::report
