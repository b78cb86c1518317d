#include "evaluation/CopiesInWaiting.h"

#include <YxDbConstraints/AssocConstraintHeader.h>
#include <yxdb/YxDbEntity.h>

namespace holdfast::module {

CopiesInWaiting::CopiesInWaiting() : m_copies(std::make_shared<Copies>()) {}

void CopiesInWaiting::keep(YxDbEntity* copy) {
    if (copy != nullptr)
        m_copies->emplace(copy, copy);
}

void CopiesInWaiting::handOver(YxDbEntity* copy, AssocConstraintHeader& header) {
    const auto waiting = m_copies->find(copy);
    if (waiting == m_copies->end())
        return;
    header.adopt(waiting->second.release());
    m_copies->erase(waiting);
}

}  // namespace holdfast::module
