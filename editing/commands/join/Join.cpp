#include <algorithm>

#include <yxdb/YxDbPolyline.h>

#include "commands/join/ConstraintJoinCmdCenter.h"
#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/commands/join/Chaining.h"
#include "editing/commands/join/JoinedConstraints.h"
#include "editing/commands/move/Moving.h"
#include "hosting/HostOpening.h"

namespace holdfast::editing {

namespace {

/// The polyline that takes the others up: a constrained one, because its constraints stay, else the first. The number
/// of pieces when there is no polyline among them.
std::size_t mainPiece(const EditContext& context, const std::vector<ChainPiece>& pieces) {
    const auto isPolyline = [](const ChainPiece& piece) { return piece.isPolyline; };
    const auto constrained = std::find_if(pieces.begin(), pieces.end(), [&](const ChainPiece& piece) {
        return piece.isPolyline && isConstrained(context, piece.name);
    });
    const auto main =
        constrained != pieces.end() ? constrained : std::find_if(pieces.begin(), pieces.end(), isPolyline);
    return static_cast<std::size_t>(main - pieces.begin());
}

void tellCentre(const EditContext& context, ConstraintJoinCmdCenter& centre, const YxDbObjectId& result,
                const ChainPiece& piece, const ChainLink& link) {
    if (!piece.isPolyline)
        return centre.joinLineArc(!link.isBefore);
    const auto joined = opened<YxDbPolyline>(result, YxDb::kForRead);
    const auto open = opened<YxDbPolyline>(context.drawing.id(piece.name), YxDb::kForRead);
    centre.joinPolyline(joined.get(), open.get(), link.isBefore, link.touchesStart);
}

/// A ring ends where it starts: the last vertex is the first one.
void closeRing(const EditContext& context, const std::string& name) {
    auto ring = std::get<PolylineShape>(context.drawing.shape(name));
    if (ring.ids.front() == 0)
        ring.ids.front() = ring.ids.back();
    ring.vertices.pop_back();
    ring.bulges.pop_back();
    ring.ids.pop_back();
    ring.closed = true;
    context.drawing.write(name, ring);
}

std::vector<std::string> namesOf(const std::vector<ChainPiece>& pieces) {
    std::vector<std::string> names;
    names.reserve(pieces.size());
    for (const ChainPiece& piece : pieces)
        names.push_back(piece.name);
    return names;
}

/// Joins into the main polyline, or into a new one. The centre runs while the pieces still have their vertices and
/// the result has its final ones.
void applyJoin(const EditContext& context, const std::vector<ChainPiece>& pieces, std::size_t main) {
    const bool isNew = main == pieces.size();
    const std::size_t middle = isNew ? 0 : main;
    const Chain chain = chainOf(pieces, middle);
    Drawing& drawing = context.drawing;
    const Document before = drawing.around(namesOf(pieces));
    const std::string name = isNew ? drawing.add(chain.shape, pieces.front().name) : pieces[main].name;
    ConstraintJoinCmdCenter centre;
    centre.joinMainPolyline(drawing.id(name));
    drawing.write(name, chain.shape);
    for (const ChainLink& link : chain.links)
        tellCentre(context, centre, drawing.id(name), pieces[link.piece], link);
    centre.dealAssocPlineJoin2();
    for (const ChainPiece& piece : pieces)
        if (piece.name != name)
            drawing.erase(piece.name);
    if (chain.isRing)
        closeRing(context, name);
    carryOver(context, before, name, segmentsOf(pieces, middle, chain));
}

std::vector<ChainPiece> resolved(const Join& edit, const Drawing& drawing) {
    const std::vector<std::string> names = requireSelection(drawing, edit.entities);
    if (names.size() < 2)
        throw EditError("it takes two entities to join; name the ones that " + names.front() + " is joined with");
    std::vector<ChainPiece> pieces;
    pieces.reserve(names.size());
    for (const std::string& name : names)
        pieces.push_back(chainPiece(name, drawing.shape(name)));
    return pieces;
}

}  // namespace

void require(const Join& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const Join& edit, EditContext& context) {
    const std::vector<ChainPiece> pieces = resolved(edit, context.drawing);
    context.edited = valuesOf(edit.entities);
    applyJoin(context, pieces, mainPiece(context, pieces));
}

}  // namespace holdfast::editing
