#pragma once

#include <string>

#include "apps/window/Uses.h"
#include "document/Document.h"

namespace holdfast::window {

/// The window's page in one file, for mail and web sites: it shows the drawing under the name, with its constraints and
/// what is free, can be panned, zoomed and searched, and takes no edits. It needs no other file, no network and no
/// program, and opens from a disk. Cost: a diagnosis of the drawing.
std::string pageAlone(const Document& document, const std::string& name, bool showsNames);

}  // namespace holdfast::window
