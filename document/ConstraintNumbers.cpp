#include "document/ConstraintNumbers.h"

#include <algorithm>
#include <charconv>

namespace holdfast::document {

std::size_t constraintNumberOf(std::string_view id) {
    std::size_t number = 0;
    if (id.size() < 2 || id.front() != 'k' || id[1] == '0')
        return 0;
    const auto [end, error] = std::from_chars(id.data() + 1, id.data() + id.size(), number);
    return error == std::errc() && end == id.data() + id.size() && number <= kMostConstraintNumbers ? number : 0;
}

std::size_t constraintNumbersTold(const Document& document) {
    std::size_t told = document.constraints.size();
    for (const Constraint& constraint : document.constraints)
        told = std::max(told, constraintNumberOf(constraint.id));
    return told;
}

void keepConstraintNumbers(Document& document, std::size_t used) {
    document.constraintNumbers = used > constraintNumbersTold(document) ? used : 0;
}

}  // namespace holdfast::document
