#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/model/state/HostAccess.h"
#include "host/model/state/HostCall.h"
#include "tests/host/entities/Polylines.h"

using holdfast::EntityAccess;
using holdfast::FaultKind;
using holdfast::HostAccess;
using namespace curves;

namespace {

/// Records what the host is asked while it lives, and injects one fault into everything.
class Listener : public holdfast::HostObserver {
public:
    explicit Listener(holdfast::HostFault fault = {}) : m_fault(fault), m_before(holdfast::setHostObserver(this)) {}
    ~Listener() override { holdfast::setHostObserver(m_before); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    holdfast::HostFault called(std::string_view operation, const YxRxObject*, const std::string& arguments) override {
        calls.push_back(std::string(operation) + '(' + arguments + ')');
        return m_fault;
    }
    void misused(const std::string& complaint) override { complaints.push_back(complaint); }
    std::string nameOf(const YxRxObject* object) override { return object->isA()->name(); }

    std::vector<std::string> calls;
    std::vector<std::string> complaints;

private:
    holdfast::HostFault m_fault;
    holdfast::HostObserver* m_before;
};

}  // namespace

TEST(EntityCalls, AreHeardInTheirOrder) {
    const auto line = slot();
    const Listener listener;
    line->numVerts();
    line->segType(1);
    line->setVertexIdentifierAt(1, 20);
    line->isClosed();
    startOf(*line);
    EXPECT_EQ(listener.calls, (std::vector<std::string>{"YxDbPolyline::numVerts()", "YxDbPolyline::segType(1)",
                                                        "YxDbPolyline::setVertexIdentifierAt(1, 20)",
                                                        "YxDbCurve::isClosed()", "YxDbCurve::getStartPoint()"}));
}

TEST(EntityCalls, ThatAreRefusedAnswerTheStatusAndChangeNothing) {
    const auto line = slot();
    {
        const Listener listener({FaultKind::errorStatus, Yxrt::eWasErased, nullptr});
        YxGePoint3d point = kUntouchedPoint;
        EXPECT_EQ(line->getStartPoint(point), Yxrt::eWasErased);
        EXPECT_EQ(line->getPointAt(0, point), Yxrt::eWasErased);
        EXPECT_POINT(point, kUntouchedPoint);
        EXPECT_EQ(line->setVertexIdentifierAt(0, 99), Yxrt::eWasErased);
        EXPECT_EQ(line->reverseCurve(), Yxrt::eWasErased);
        EXPECT_EQ(line->transformBy(translation(1, 1)), Yxrt::eWasErased);
    }
    EXPECT_EQ(identifiers(*line), (std::vector<int>{11, 12, 13, 14}));
    EXPECT_POINT(startOf(*line), {0, 0, 0});
}

TEST(EntityCalls, ThatAreRefusedAnswerNothingWhereThereIsNoStatus) {
    const auto line = slot(true);
    const auto spline = EntityAccess::makeSpline(
        {.degree = 1, .control = {{0, 0, 0}, {1, 1, 0}}, .knots = {0, 0, 1, 1}, .weights = {}});
    const Listener listener({FaultKind::refuse, Yxrt::eFailed, nullptr});
    EXPECT_EQ(line->clone(), nullptr);
    EXPECT_EQ(line->numVerts(), 0U);
    EXPECT_EQ(line->segType(0), YxDbPolyline::kNone);
    EXPECT_FALSE(line->isClosed());
    EXPECT_EQ(spline->numControlPoints(), 0);
}

TEST(EntityCopies, AnswerAnObjectOfAnotherClassWhenTheHostIsToldTo) {
    const auto line = EntityAccess::makeLine({}, {1, 0, 0});
    const auto circle = EntityAccess::makeCircle({});
    const Listener listener({FaultKind::answerOther, Yxrt::eOk, circle.get()});
    EXPECT_EQ(line->clone(), circle.get());
}

TEST(ReadingThroughEntityAccess, IsNoCallOfTheHost) {
    const auto line = slot();
    const Listener listener;
    EntityAccess::polyline(*line);
    EntityAccess::setVertexPoint(*line, 0, {1, 1});
    EXPECT_TRUE(listener.calls.empty());
}

TEST(ResidentEntity, IsChangedOnlyWhileOpenForWrite) {
    const auto database = HostAccess::makeDatabase();
    const YxDbObjectId id = HostAccess::addToDatabase(*database, slot());
    Listener listener;
    const YxSmartPtr<YxDbPolyline> read(YxDbObjectIdImpl::openObject(id, YxDb::kForRead, false));
    EXPECT_EQ(read->setVertexIdentifierAt(0, 5), Yxrt::eNotOpenForWrite);
    EXPECT_EQ(read->reverseCurve(), Yxrt::eNotOpenForWrite);
    EXPECT_EQ(read->transformBy(translation(1, 1)), Yxrt::eNotOpenForWrite);
    EXPECT_THROW(EntityAccess::setClosed(*read, true), std::logic_error);
    EXPECT_EQ(listener.complaints.size(), 4U);
    EXPECT_EQ(listener.complaints[0], "YxDbPolyline::setVertexIdentifierAt on an entity that is not open for write");
    EXPECT_EQ(identifiers(*read)[0], 11);
}

TEST(ResidentEntity, IsChangedWhenItIsOpenForWrite) {
    const auto database = HostAccess::makeDatabase();
    const YxDbObjectId id = HostAccess::addToDatabase(*database, slot());
    const YxSmartPtr<YxDbPolyline> written(YxDbObjectIdImpl::openObject(id, YxDb::kForWrite, false));
    EXPECT_EQ(written->setVertexIdentifierAt(0, 5), Yxrt::eOk);
    EntityAccess::setClosed(*written, true);
    EXPECT_TRUE(written->isClosed());
    EXPECT_EQ(identifiers(*written)[0], 5);
}
