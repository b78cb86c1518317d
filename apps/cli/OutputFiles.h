#pragma once

#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/cli/DrawingFiles.h"
#include "apps/cli/Uses.h"
#include "document/Document.h"
#include "formats/FileIo.h"
#include "formats/dxf/DxfWriter.h"

namespace holdfast::cli {

/// How far curves that a .dxf file cannot hold may deviate there unless the user says otherwise, in the drawing's unit.
inline constexpr double kFlattening = 0.01;

/// A file that an option of the user's names.
struct OutputName {
    std::string path;  ///< empty: the user wants none
    std::vector<std::string_view> endings;
    bool isOneForm = false;  ///< the ending does not choose what is written
};

/// A drawing, which goes out in the form that its ending names; a picture; a report page.
OutputName drawingNamed(const std::string& path);
OutputName pictureNamed(const std::string& path);
OutputName reportNamed(const std::string& path);

/// The ending of a file's name in small letters, with its dot.
std::string endingOf(const std::filesystem::path& path);

/// The files that one run writes. Their names are checked before any work is done; the files are written together when
/// all of it has succeeded, so that a run that is refused has written nothing.
class OutputFiles {
public:
    /// Throws DrawingError for a name whose ending is that of something else, and for one file that two options name.
    OutputFiles(std::initializer_list<OutputName> names);

    /// Each takes a file unless its path is empty. A drawing is read back by the same ending: .json, .dxf (what that
    /// form cannot hold is told on standard error when the file is written) or, for looking at only, .svg in true size.
    void add(const std::string& path, std::string text);
    /// What was read from a .dxf file goes into another one by changing that: the file that the drawing comes from.
    void addDrawing(const std::string& path, const Document& document, const std::optional<DxfOriginal>& from = {},
                    double tolerance = kFlattening);

    /// Writes all of them or, with a DrawingError, none.
    void write();

private:
    void tellLosses(const std::string& path, const Document& document, const DxfOutput& output);

    std::vector<NamedText> m_files;
    std::vector<std::string> m_notes;
};

}  // namespace holdfast::cli
