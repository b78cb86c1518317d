#pragma once

#include "editing/Edit.h"
#include "editing/EditContext.h"
#include "editing/Uses.h"

namespace holdfast::editing {

// Each editing command by itself. require() throws RefusedWord, EditError or GeometryError for an edit that cannot be
// understood on the drawing, and changes nothing. perform() requires the same and does the edit; when it throws,
// putting the drawing back is for the caller.

void require(const Break& edit, const Drawing& drawing);
void require(const Trim& edit, const Drawing& drawing);
void require(const Extend& edit, const Drawing& drawing);
void require(const Fillet& edit, const Drawing& drawing);
void require(const FilletCorner& edit, const Drawing& drawing);
void require(const FilletSegments& edit, const Drawing& drawing);
void require(const Join& edit, const Drawing& drawing);
void require(const Lengthen& edit, const Drawing& drawing);
void require(const Stretch& edit, const Drawing& drawing);
void require(const Mirror& edit, const Drawing& drawing);
void require(const Align& edit, const Drawing& drawing);
void require(const Rotate& edit, const Drawing& drawing);
void require(const Drag& edit, const Drawing& drawing);
void require(const Set& edit, const Drawing& drawing);
void require(const SetDimension& edit, const Drawing& drawing);
void require(const SetDriving& edit, const Drawing& drawing);
void require(const Constrain& edit, const Drawing& drawing);
void require(const SetActive& edit, const Drawing& drawing);
void require(const Delete& edit, const Drawing& drawing);
void require(const Erase& edit, const Drawing& drawing);
void require(const Draw& edit, const Drawing& drawing);
void require(const Move& edit, const Drawing& drawing);
void require(const Copy& edit, const Drawing& drawing);
void require(const Scale& edit, const Drawing& drawing);
void require(const Define& edit, const Drawing& drawing);
void require(const SetFormula& edit, const Drawing& drawing);
void require(const SetParameter& edit, const Drawing& drawing);
void require(const Chamfer& edit, const Drawing& drawing);
void require(const ChamferCorner& edit, const Drawing& drawing);
void require(const Explode& edit, const Drawing& drawing);
void require(const Offset& edit, const Drawing& drawing);

void perform(const Break& edit, EditContext& context);
void perform(const Trim& edit, EditContext& context);
void perform(const Extend& edit, EditContext& context);
void perform(const Fillet& edit, EditContext& context);
void perform(const FilletCorner& edit, EditContext& context);
void perform(const FilletSegments& edit, EditContext& context);
void perform(const Join& edit, EditContext& context);
void perform(const Lengthen& edit, EditContext& context);
void perform(const Stretch& edit, EditContext& context);
void perform(const Mirror& edit, EditContext& context);
void perform(const Align& edit, EditContext& context);
void perform(const Rotate& edit, EditContext& context);
void perform(const Drag& edit, EditContext& context);
void perform(const Set& edit, EditContext& context);
void perform(const SetDimension& edit, EditContext& context);
void perform(const SetDriving& edit, EditContext& context);
void perform(const Constrain& edit, EditContext& context);
void perform(const SetActive& edit, EditContext& context);
void perform(const Delete& edit, EditContext& context);
void perform(const Erase& edit, EditContext& context);
void perform(const Draw& edit, EditContext& context);
void perform(const Move& edit, EditContext& context);
void perform(const Copy& edit, EditContext& context);
void perform(const Scale& edit, EditContext& context);
void perform(const Define& edit, EditContext& context);
void perform(const SetFormula& edit, EditContext& context);
void perform(const SetParameter& edit, EditContext& context);
void perform(const Chamfer& edit, EditContext& context);
void perform(const ChamferCorner& edit, EditContext& context);
void perform(const Explode& edit, EditContext& context);
void perform(const Offset& edit, EditContext& context);

/// Refuses a word that is no property of an entity, with those that it has.
[[noreturn]] void refuseProperty(const std::string& entity, const Shape& shape, const Sourced<std::string>& word);

}  // namespace holdfast::editing
