#pragma once

#include <string_view>
#include <vector>

#include "host/model/state/HostAccess.h"
#include "hosting/Uses.h"

namespace holdfast::hosting {

/// What a header's converter was told since the last evaluation. Reading does not change it; consume() marks it as
/// read, so that the same edit is not done twice.
class ConverterFeed {
public:
    /// Null, and a converter that serves another command, have nothing to tell.
    ConverterFeed(LvEvaDataConverter* converter, LvEditorType editor);

    bool isNew() const { return !m_calls.empty(); }
    /// The converter was made for another command: what this one has done can only be seen in the database.
    bool isForeign() const { return m_isForeign; }
    /// No evaluation has read this converter yet: it begins an edit.
    bool isFirst() const { return m_isFirst; }

    /// The last call of an operation, or null.
    const ConverterRecord* last(std::string_view operation) const;
    /// All calls of an operation, in order.
    std::vector<const ConverterRecord*> all(std::string_view operation) const;
    /// Those of them that came after the last call of another operation.
    std::vector<const ConverterRecord*> allSince(std::string_view start, std::string_view operation) const;

    static void consume(LvEvaDataConverter* converter);

private:
    std::vector<const ConverterRecord*> m_calls;
    bool m_isFirst = true;
    bool m_isForeign = false;
};

}  // namespace holdfast::hosting
