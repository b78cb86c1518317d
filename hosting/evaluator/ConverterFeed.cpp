#include "hosting/evaluator/ConverterFeed.h"

namespace holdfast::hosting {

namespace {

/// Stands in a converter's records for all that an evaluation has read.
constexpr std::string_view kEvaluated = "evaluated";

}  // namespace

ConverterFeed::ConverterFeed(LvEvaDataConverter* converter, LvEditorType editor) {
    m_isForeign = converter != nullptr && HostAccess::records(*converter).editorType != editor;
    if (converter == nullptr || m_isForeign)
        return;
    for (const ConverterRecord& call : HostAccess::records(*converter).calls) {
        if (call.operation == kEvaluated)
            m_isFirst = false;
        else
            m_calls.push_back(&call);
    }
}

const ConverterRecord* ConverterFeed::last(std::string_view operation) const {
    for (auto call = m_calls.rbegin(); call != m_calls.rend(); ++call)
        if ((*call)->operation == operation)
            return *call;
    return nullptr;
}

std::vector<const ConverterRecord*> ConverterFeed::all(std::string_view operation) const {
    std::vector<const ConverterRecord*> found;
    for (const ConverterRecord* call : m_calls)
        if (call->operation == operation)
            found.push_back(call);
    return found;
}

std::vector<const ConverterRecord*> ConverterFeed::allSince(std::string_view start, std::string_view operation) const {
    std::vector<const ConverterRecord*> found;
    for (const ConverterRecord* call : m_calls) {
        if (call->operation == start)
            found.clear();
        else if (call->operation == operation)
            found.push_back(call);
    }
    return found;
}

void ConverterFeed::consume(LvEvaDataConverter* converter) {
    if (converter == nullptr)
        return;
    ConverterRecords& records = HostAccess::records(*converter);
    records.calls.clear();
    records.calls.emplace_back().operation = kEvaluated;
    records.dirty = false;
}

}  // namespace holdfast::hosting
