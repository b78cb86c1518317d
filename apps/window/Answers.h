#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "apps/window/Uses.h"
#include "editing/Glimpse.h"
#include "editing/Session.h"

namespace holdfast::window {

/// What became of an edit: done or refused and why, the fates of constraints and entities.
Json resultJson(const EditResult& result);

/// A glimpse in the form of a result with its change, marked as one.
std::string glimpseText(const Glimpse& glimpse, std::string_view edit, std::uint64_t number);

/// What is free, what is too much, and what does not hold: of the drawing, of each entity, of each constraint. Cost: a
/// diagnosis of the drawing.
Json freedomJson(const Document& document);

/// The kinds of constraints and the verbs of edits that there are: what the page speaks in.
Json languageJson();

/// JSON as it goes out; text that is no UTF-8 is mended.
std::string textOf(const Json& json);

/// An array of what make() gives of each item, a line each.
template <class List, class Make>
std::string listText(const List& list, const Make& make) {
    std::string text = "[";
    for (const auto& each : list)
        text += (text.size() > 1 ? ",\n" : "") + textOf(make(each));
    return text + "]";
}

}  // namespace holdfast::window
