#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

#include "apps/window/Uses.h"
#include "editing/Session.h"

namespace holdfast::window {

/// What became of an edit: done or refused and why, the fates of constraints and entities.
nlohmann::ordered_json resultJson(const EditResult& result);

/// What is free, what is too much, and what does not hold: of the drawing, of each entity, of each constraint. Cost: a
/// diagnosis of the drawing.
nlohmann::ordered_json freedomJson(const Document& document);

/// The kinds of constraints and the verbs of edits that there are: what the page speaks in.
nlohmann::ordered_json languageJson();

/// JSON as it goes out; text that is no UTF-8 is mended.
std::string textOf(const nlohmann::ordered_json& json);

}  // namespace holdfast::window
