#pragma once

#include <memory>
#include <unordered_map>

class AssocConstraintHeader;
class YxDbEntity;

namespace holdfast::module {

/// The copies of entities that a centre has made for a header and not handed over yet. A centre and its copies know
/// the same pointers, so they share what stands behind this object; the last of them frees what no header took.
class CopiesInWaiting {
public:
    CopiesInWaiting();

    /// Takes over a copy; null is ignored.
    void keep(YxDbEntity* copy);
    /// The header owns the copy from now on. A copy that was handed over before stays with its first header.
    void handOver(YxDbEntity* copy, AssocConstraintHeader& header);

private:
    using Copies = std::unordered_map<YxDbEntity*, std::unique_ptr<YxDbEntity>>;

    std::shared_ptr<Copies> m_copies;
};

}  // namespace holdfast::module
