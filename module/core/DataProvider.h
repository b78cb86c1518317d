#pragma once

class YxDbConstraintDataProviderLv;

namespace holdfast::module {

/// The host's constraint data provider; null while the constraint service does not run.
const YxDbConstraintDataProviderLv* runningDataProvider();

}  // namespace holdfast::module
