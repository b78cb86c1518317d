#pragma once

namespace holdfast {

/// Has the allocation after so many fail, once. Programs with FailingAllocations.cpp among their sources only: it
/// replaces operator new for them and for the libraries that they load.
void failAllocationAfter(long allocations);

/// Lets all allocations go well again; true when one has failed since failAllocationAfter.
bool stopFailing();

}  // namespace holdfast
