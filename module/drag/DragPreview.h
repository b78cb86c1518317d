#pragma once

class AssocConstraintHeader;
class YxGiWorldDraw;

namespace holdfast::module {

/// Draws the header's entities to draw, each once however often it is listed, and then the unconstrained entities under
/// the drag transform. True when an entity of the first list was drawn; with that list empty nothing is drawn at all.
bool drawPreview(const AssocConstraintHeader& header, YxGiWorldDraw& worldDraw);

}  // namespace holdfast::module
