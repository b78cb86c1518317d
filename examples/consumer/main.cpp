// A host command that calls the module: BREAK takes a part out of a line, and the module decides which constraints go.
// Prints the constraints before and after; expected.txt is what it prints.

#include <cstddef>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <yxdb/YxDbLine.h>

#include "commands/break/ConstraintBreakCmdCenter.h"
#include "host/model/Scene.h"
#include "host/model/entities/EntityAccess.h"

using holdfast::EntityAccess;
using holdfast::HostAccess;

namespace {

// A rectangle: the base is tied to both uprights, horizontal, and as long as the top.
constexpr const char* kDrawing = R"(
    line base 0,0 10,0
    line left 0,0 0,5
    line right 10,0 10,5
    line top 0,5 10,5
    coincident base.start left.start
    coincident base.end right.start
    horizontal base
    parallel base top
    equal base top
)";

/// Opens an entity until the end of the caller's block; null when it cannot be opened or is no line.
YxSmartPtr<YxDbLine> openLine(const YxDbObjectId& id, YxDb::OpenMode mode) {
    const YxSmartPtr<YxDbObject> object = YxDbObjectIdImpl::openObject(id, mode, false);
    const bool isLine = !object.isNull() && object->isKindOf(YxDbLine::desc());
    return YxSmartPtr<YxDbLine>(isLine ? static_cast<YxDbLine*>(object.get()) : nullptr);
}

/// What is left of the line before the cut. It is no part of the drawing, but knows what the line is tied to.
std::unique_ptr<YxDbLine> firstPieceOf(const YxDbLine& line, const YxGePoint3d& end) {
    std::unique_ptr<YxDbLine> piece = EntityAccess::makeLine(line.startPoint(), end);
    for (const YxDbObjectId& reactor : HostAccess::reactors(line))
        HostAccess::addReactor(*piece, reactor);
    return piece;
}

struct Broken {
    YxDbObjectId secondPiece;
    int deletedConstraints = 0;
};

/// BREAK: takes the part of a line between two points on it out; `from` is the nearer one to its start.
Broken breakLine(holdfast::HostBuilder& drawing, const YxDbObjectId& lineId, const YxGePoint3d& from,
                 const YxGePoint3d& to) {
    const YxSmartPtr<YxDbLine> line = openLine(lineId, YxDb::kForWrite);
    if (line.isNull())
        return {};
    ConstraintBreakCmdCenter centre;
    centre.setPtParam(line.get(), from, to);

    const std::unique_ptr<YxDbLine> first = firstPieceOf(*line, from);
    centre.setFirstCurve(lineId, first.get());  // compares with the uncut line

    const YxGePoint3d end = line->endPoint();
    EntityAccess::setLine(*line, line->startPoint(), from);

    const YxDbObjectId secondId = drawing.add(EntityAccess::makeLine(to, end));
    const YxSmartPtr<YxDbLine> second = openLine(secondId, YxDb::kForWrite);
    centre.setSecondCurve(second.get());
    return {secondId, centre.deleteConstraint()};
}

void print(const std::string& title, std::string list) {
    for (std::size_t at = 0; (at = list.find("; ", at)) != std::string::npos; at += 3)
        list.replace(at, 2, "\n  ");
    std::cout << title << ":\n  " << list << '\n';
}

}  // namespace

int main() {
    holdfast::Scene drawing(kDrawing);
    print("before", drawing.constraints());

    const Broken broken = breakLine(drawing.builder(), drawing.id("base"), {4, 0, 0}, {6, 0, 0});
    drawing.nameObject(broken.secondPiece, "rest");
    std::cout << "deleted: " << broken.deletedConstraints << '\n';
    print("after", drawing.constraints());

    const std::vector<std::string> findings = drawing.audit();
    for (const std::string& finding : findings)
        std::cout << "the host is not in order: " << finding << '\n';
    return findings.empty() ? 0 : 1;
}
