#pragma once

#include <string>
#include <string_view>

#include <yxbase/YxGePoint2d.h>
#include <yxbase/YxGePoint3d.h>
#include <yxdb/YxDbEntity.h>

namespace holdfast {

/// Refuses data that makes no entity. `kind` is the kind of entity, which starts every message.
class EntityCheck {
public:
    constexpr explicit EntityCheck(std::string_view kind) : m_kind(kind) {}

    void finite(std::string_view what, double value) const;
    void finite(std::string_view what, const YxGePoint2d& point) const;
    void finite(std::string_view what, const YxGePoint3d& point) const;
    void finite(std::string_view what, const YxGeVector3d& vector) const;
    void positive(std::string_view what, double value) const;
    /// Finite and longer than 0.
    void direction(std::string_view what, const YxGeVector3d& vector) const;
    [[noreturn]] void refuse(const std::string& message) const;

private:
    std::string_view m_kind;
};

/// A number as a person would write it.
std::string spelt(double value);

/// Complains when an entity of a database is changed without being open for write.
void requireOpenForWrite(const YxDbEntity& entity, const char* operation);

}  // namespace holdfast
