#pragma once

#include <array>
#include <string_view>

#include "editing/Edit.h"
#include "editing/Uses.h"
#include "editing/text/EditText.h"

namespace holdfast::editing {

// One reader for each verb: the words behind it. None of them knows a drawing. EditSyntaxError where a word does not
// fit, or one is missing; words that are left over are not theirs.

Edit parseBreak(EditText& text);
Edit parseTrim(EditText& text);
Edit parseExtend(EditText& text);
Edit parseFillet(EditText& text);
Edit parseJoin(EditText& text);
Edit parseLengthen(EditText& text);
Edit parseStretch(EditText& text);
Edit parseMirror(EditText& text);
Edit parseAlign(EditText& text);
Edit parseRotate(EditText& text);
Edit parseDrag(EditText& text);
Edit parseSet(EditText& text);
Edit parseConstrain(EditText& text);
Edit parseDelete(EditText& text);
Edit parseSuppress(EditText& text);
Edit parseUnsuppress(EditText& text);
Edit parseDraw(EditText& text);
Edit parseErase(EditText& text);
Edit parseMove(EditText& text);
Edit parseCopy(EditText& text);
Edit parseScale(EditText& text);
Edit parseDefine(EditText& text);
Edit parseParameter(EditText& text);
Edit parseChamfer(EditText& text);
Edit parseExplode(EditText& text);
Edit parseOffset(EditText& text);
Edit parseUndo(EditText& text);
Edit parseRedo(EditText& text);

/// The words before the number of a polyline's corner.
inline constexpr std::array<std::string_view, 2> kCorner{"corner", "vertex"};

/// Takes one of them; the second may be the name of an entity as well, behind which no number stands.
bool acceptCorner(EditText& text);

/// "keep corner", or nothing.
bool takeKeepCorner(EditText& text);

}  // namespace holdfast::editing
