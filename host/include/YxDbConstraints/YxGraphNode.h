#pragma once

#include <yxbase/YxRxObject.h>

/// A node of a constraint group: a constrained geometry or a constraint. One number sequence serves both.
class YxGraphNode : public YxRxObject {
    YX_DECLARE_CLASS();

public:
    unsigned int nodeId() const;

private:
    friend struct holdfast::HostAccess;
    unsigned int m_nodeId = 0;
};
