#pragma once

namespace YxDb {
/// Which point of its curve an implicit point is.
enum ImplicitPointType : int {
    kStartImplicit = 0,
    kEndImplicit = 1,
    kMidImplicit = 2,
    kCenterImplicit = 3,
    kControlImplicit = 4  ///< a spline's control point, told by its index
};
}  // namespace YxDb
