#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"
#include "tests/support/DrawingFolder.h"

// Edits real drawings and checks what has to hold after any edit.

namespace holdfast::editing {

using testing::drawingFiles;

/// An edit, and what it may change.
struct RealEdit {
    std::string text;
    std::vector<std::string> edited;  ///< the entities that it names
    /// A constraint that goes holds at such a place; empty: at any place on an edited entity.
    std::function<bool(const Place&)> mayLose{};
    /// Polylines may be turned round, whose segments are then found by the points at which they end: nothing can be
    /// said of one that comes back to a point of its own.
    bool mayTurn = false;
};

/// How many edits were done, and for which reasons others were refused.
struct Tally {
    int done = 0;
    int refused = 0;
    std::map<std::string, int> reasons;
};

/// Does one edit in a session of its own and checks that
/// a refused one changed nothing; that nothing but the edited entities was changed, to the last bit; that constraints
/// which were kept hold at points that stayed and on segments that lie where theirs lay; that constraints which went
/// held on what was edited; that the network is sound; that judging the edited curves again finds nothing more.
void checkEdit(const Document& document, const RealEdit& edit, Tally& tally);

/// Checks the edits that a function finds for each drawing, and tells how many there were.
void checkEdits(const std::function<std::vector<RealEdit>(const Document&)>& editsOf, int least);

/// Says how many edits there were. At least so many have to be done.
void tell(const Tally& tally, int least);

/// "x,y" to the last bit.
std::string pointWord(Vec2 point);
std::string numberWord(double number);

bool isOpenToEdits(const Entity& entity);

}  // namespace holdfast::editing
