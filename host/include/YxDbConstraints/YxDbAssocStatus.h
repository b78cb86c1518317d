#pragma once

/// The evaluation status of actions and dependencies.
enum YxDbAssocStatus : int {
    kUpToDateAssocStatus = 0,
    kChangedAssocStatus = 1,        ///< must be evaluated again
    kSegmentRemovedAssocStatus = 5  ///< on a dependency: an edit removed or re-pointed its segment
};
