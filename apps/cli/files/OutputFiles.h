#pragma once

#include <filesystem>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/cli/Uses.h"
#include "apps/cli/files/DrawingFiles.h"
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
    bool takesDevices = false;  ///< which have no ending: what they are given is plain
};

/// A drawing, which goes out in the form that its ending names unless another is said; a picture; a picture or a page
/// to look at, by the ending; a report page.
OutputName drawingNamed(const DrawingTarget& target);
OutputName pictureNamed(const std::string& path);
OutputName viewNamed(const std::string& path);
OutputName reportNamed(const std::string& path);

/// The ending of a file's name in small letters, with its dot.
std::string endingOf(const std::filesystem::path& path);

/// What becomes of one of several drawings: a file of its name in a folder, with the ending of a form ("svg") or, where
/// none is said, its own. Empty without a folder.
std::string outputIn(const std::string& folder, const std::string& drawing, const std::string& form);
/// UsageError when several drawings are to be written to what is no folder, or two of them would have one name there.
void refuseSharedNames(const std::vector<std::string>& drawings, const std::string& folder, const std::string& form);

/// The files that one run writes, one of which may be standard output. Their names are checked before any work is done;
/// they are written together when all of it has succeeded, so that a run that is refused has written nothing.
class OutputFiles {
public:
    /// Throws UsageError for a name whose ending is that of something else, and for one file that two options name;
    /// what the command tells as JSON takes standard output as well.
    OutputFiles(std::initializer_list<OutputName> names, bool tellsJson = false);

    /// Each takes a file unless its path is empty. A drawing is read back by the same ending: .json, .dxf (what that
    /// form cannot hold is told on standard error when the file is written) or, for looking at only, .svg and .pdf in
    /// true size.
    void add(const std::string& path, std::string text);
    /// A picture (SVG), which becomes a page where the ending is .pdf.
    void addPicture(const std::string& path, std::string picture, const std::string& title);
    /// What was read as DXF goes out as DXF by changing that: the file that the drawing comes from.
    void addDrawing(const DrawingTarget& target, const Document& document, const DrawingFile& from,
                    double tolerance = kFlattening);

    /// Writes all of them or, with an error, none. `tell` puts on standard output what the command has found, which
    /// has to succeed, too; it is left out when one of the files takes standard output. True when it was called.
    bool write(const std::function<void()>& tell = {});

private:
    std::vector<NamedText> m_files;
    std::optional<std::string> m_standardOutput;
    std::vector<std::string> m_notes;
};

}  // namespace holdfast::cli
