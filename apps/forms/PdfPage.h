#pragma once

#include <string>

#include "apps/forms/Uses.h"

namespace holdfast::forms {

/// A picture (SVG) as a PDF file of one page, as large as the picture says it is: lines as lines within a 500th of a
/// point (0.7 micrometres), texts as texts, in the types that this machine has. Nothing tells when or where it was
/// made, so that the same picture gives the same file. Throws FileError for a picture larger than a page can be (5.08
/// m), and where the library that draws it (librsvg) is not there, or cannot.
std::string pdfPage(const std::string& picture, const std::string& title);

}  // namespace holdfast::forms
