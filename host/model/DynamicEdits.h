#pragma once

#include <YxDbConstraints/AssocConstraintHeader.h>
#include <yxcore/ConstraintDynamicEdit.h>

namespace holdfast {

/// The dynamic edit that has set up a header last and is still alive; null without one.
const ConstraintDynamicEdit* dynamicEditOf(const AssocConstraintHeader& header);

}  // namespace holdfast
