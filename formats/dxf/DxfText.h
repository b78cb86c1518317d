#pragma once

#include <string>
#include <string_view>

#include "formats/Uses.h"

namespace holdfast::formats {

/// A text in UTF-8. One that is none is taken as the code page that a file names (ANSI_1251, DOS850), and as
/// Windows-1252 where it names none, or one that the system does not know or the text is none of.
std::string utf8Of(std::string_view value, std::string_view codePage = {});

/// The value of a DXF text group in UTF-8: bytes that are not UTF-8 are taken as the code page says, \U+XXXX becomes
/// its character, ^I and ^J a tab and a line feed.
std::string decodedDxfText(std::string_view value, std::string_view codePage = {});

/// What a TEXT entity shows: %%d, %%p and %%c become the signs for degree, plus-minus and diameter, %%nnn a character,
/// %%u, %%o and %%k (underline and such) vanish.
std::string shownText(std::string_view decoded);

/// What an MTEXT entity shows, its lines separated by line feeds: formatting codes vanish, \P begins a line, stacked
/// fractions become numerator/denominator.
std::string shownParagraph(std::string_view decoded);

/// A text as the value of a TEXT entity in ASCII; decodedDxfText and shownText give it back.
std::string encodedDxfText(std::string_view text);

/// The same for an MTEXT entity; decodedDxfText and shownParagraph give it back.
std::string encodedDxfParagraph(std::string_view text);

}  // namespace holdfast::formats
