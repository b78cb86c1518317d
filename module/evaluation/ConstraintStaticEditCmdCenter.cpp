#include "evaluation/ConstraintStaticEditCmdCenter.h"

ConstraintStaticEditCmdCenter::~ConstraintStaticEditCmdCenter() = default;
