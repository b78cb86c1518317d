#pragma once

#include <YxDbConstraints/AssocConstraintHeader.h>

namespace holdfast::module {

/// Which edit the evaluator is to model: the host's codes for AssocConstraintHeader::editKind.
enum class EditKind : int {
    rotate = 4,
    dragEnd = 7,
    stretch = 8,
    align = 9,
    lengthen = 10,
    properties = 12,
    mirror = 14,
    drag = 18
};

inline void setEditKind(AssocConstraintHeader& header, EditKind kind) {
    header.editKind = static_cast<int>(kind);
}

/// The constraint group that holds an entity's constrained geometry; the null id without a data provider or a group.
YxDbObjectId findGroup(const YxDbObjectId& entity);

/// The evaluation header of a group, which the host owns; null without a data provider or a header. The null id is
/// asked for like any other.
AssocConstraintHeader* findHeader(const YxDbObjectId& group);

/// Where the evaluator learns about an edit.
struct HeaderOfGroup {
    YxDbObjectId group;
    AssocConstraintHeader* header = nullptr;  ///< the host's; null when there is none
};

/// The group of an entity with its header; an entity without a group has no header.
HeaderOfGroup findHeaderOf(const YxDbObjectId& entity);

/// Afterwards the header has a converter: the one that it had, of whatever type, else a new one of this type. False
/// when none can be made.
bool ensureConverter(AssocConstraintHeader& header, LvEditorType type);

/// Sets a group's status to changed, with notice to the owning network, unless it is changed already. An id that does
/// not open as a group is left alone.
void markChanged(const YxDbObjectId& group);

/// Has the host evaluate the network of its current database now.
void evaluateNetwork();

}  // namespace holdfast::module
