#include <gtest/gtest.h>

#include <string>

#include <yxbase/YxSmartPtr.h>

#include "host/model/state/ImplementClass.h"
#include "host/model/state/ProtocolExtensions.h"

namespace {

class Shape : public YxRxObject {
    YX_DECLARE_CLASS();
};
class Square : public Shape {
    YX_DECLARE_CLASS();
};
class Naming : public YxRxObject {
    YX_DECLARE_CLASS();
};
YX_IMPLEMENT_CLASS(Shape, YxRxObject)
YX_IMPLEMENT_CLASS(Square, Shape)
YX_IMPLEMENT_CLASS(Naming, YxRxObject)

/// An extension of a class for as long as the test needs it.
class Extended {
public:
    Extended(const YxRxClass* owner, YxRxObject& extension) : m_owner(owner), m_kind(extension.isA()) {
        holdfast::setProtocolExtension(m_owner, m_kind, &extension);
    }
    ~Extended() { holdfast::setProtocolExtension(m_owner, m_kind, nullptr); }
    Extended(const Extended&) = delete;
    Extended& operator=(const Extended&) = delete;

private:
    const YxRxClass* m_owner;
    const YxRxClass* m_kind;
};

}  // namespace

TEST(RunTimeClass, KnowsItsNameAndWhatItIsDerivedFrom) {
    EXPECT_STREQ(Square::desc()->name(), "Square");
    EXPECT_EQ(Square::desc()->parent(), Shape::desc());
    EXPECT_EQ(YxRxObject::desc()->parent(), nullptr);
    EXPECT_TRUE(Square::desc()->isDerivedFrom(YxRxObject::desc()));
    EXPECT_FALSE(Shape::desc()->isDerivedFrom(Square::desc()));
}

TEST(RunTimeClass, OfAnObjectIsTheClassThatItWasMadeAs) {
    const Square square;
    const Shape& shape = square;
    EXPECT_EQ(shape.isA(), Square::desc());
    EXPECT_TRUE(shape.isKindOf(Shape::desc()));
    EXPECT_FALSE(shape.isKindOf(Naming::desc()));
    EXPECT_FALSE(shape.isKindOf(nullptr));
}

TEST(ClassQuery, AnswersTheObjectItselfForItsOwnClasses) {
    const Square square;
    EXPECT_EQ(square.queryX(Shape::desc()), &square);
    EXPECT_EQ(square.queryX(Naming::desc()), nullptr);
    EXPECT_EQ(square.queryX(nullptr), nullptr);
}

TEST(ClassQuery, AnswersTheExtensionOfTheNearestClassThatHasOne) {
    const Square square;
    Naming ofShapes, ofSquares;
    const Extended shapes(Shape::desc(), ofShapes);
    EXPECT_EQ(square.queryX(Naming::desc()), &ofShapes);
    {
        const Extended squares(Square::desc(), ofSquares);
        EXPECT_EQ(square.queryX(Naming::desc()), &ofSquares);
    }
    EXPECT_EQ(square.queryX(Naming::desc()), &ofShapes);
    EXPECT_EQ(Naming().queryX(Shape::desc()), nullptr);
}

TEST(PlainObject, IsNotCopiedUnlessItsClassSaysHow) {
    EXPECT_EQ(Square().clone(), nullptr);
}

TEST(SmartPointerConversion, AnswersTheSameObjectAsAnotherClass) {
    Square square;
    const YxSmartPtr<YxRxObject> object(&square);
    const YxSmartPtr<Shape> shape(object);
    EXPECT_EQ(shape.get(), &square);
}

TEST(SmartPointerConversion, OfNullIsNull) {
    const YxSmartPtr<Shape> shape{YxSmartPtr<YxRxObject>()};
    EXPECT_TRUE(shape.isNull());
}

TEST(SmartPointerConversion, ToAnotherKindOfClassThrowsBothClasses) {
    Square square;
    const YxSmartPtr<YxRxObject> object(&square);
    try {
        const YxSmartPtr<Naming> naming(object);
        FAIL() << "a square is no naming";
    } catch (const YxError_NotThatKindOfClass& error) {
        EXPECT_EQ(error.actualClass(), Square::desc());
        EXPECT_EQ(error.wantedClass(), Naming::desc());
    }
    EXPECT_THROW(const YxSmartPtr<Naming> again(object), YxError);
}
