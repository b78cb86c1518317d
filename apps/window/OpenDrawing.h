#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/window/Uses.h"
#include "document/Document.h"
#include "editing/Session.h"

namespace holdfast::window {

/// The file behind a drawing in the window.
struct DrawingFile {
    std::filesystem::path opened;  ///< what was asked for; .json, .dxf or .svg
    std::string name;              ///< what people call the drawing
    bool isReadOnly = false;       ///< neither saved nor kept beside the file

    /// Constraints can be saved there.
    bool takesSaves() const { return !isReadOnly && opened.extension() == ".json"; }
    /// "bracket.unsaved.json", "plate.dxf.unsaved.json": where edits are kept until they are saved, beside the drawing.
    std::filesystem::path unsaved() const;
};

/// A drawing with the one session in which all tabs edit it. Answers are JSON for the page. Any thread may call: edits
/// take turns.
class OpenDrawing {
public:
    /// Takes up edits that an earlier window has kept, when they are younger than the drawing.
    OpenDrawing(DrawingFile file, Document document);
    ~OpenDrawing();

    /// All of it: the drawing, the edits so far, what can be done.
    std::string state();
    /// Does an edit; with what it has changed.
    std::string edit(std::string_view text);
    /// Does an edit that belongs to the one before: both are taken back, and done again, together. One that is refused
    /// is forgotten: it says what holds as drawn, and it may hold already.
    std::string follow(std::string_view text);
    /// What an edit would do.
    std::string trial(std::string_view text);
    /// Degrees of freedom, contradictions. Works on a copy: edits need not wait for it.
    std::string freedom();
    /// Into the file that was opened.
    std::string save();
    /// The drawing as the file has it; what was kept of edits is thrown away.
    std::string discard();

    struct Copy {
        std::string text, type, name;  ///< its type as the web calls it; a name for the file
    };
    /// The drawing as "drawing.json", "drawing.dxf", "picture.svg", "report.html", or its edits as "edits.edit";
    /// nothing for another name.
    std::optional<Copy> copy(std::string_view what);

    /// Counts up with each change.
    std::uint64_t number() const;
    /// Writes what is not saved beside the file, if it is not there yet. An empty text, or why it cannot be.
    std::string keep();
    /// What was not saved is kept beside the file.
    bool hasUnsaved() const;

private:
    struct Logged {
        std::string text, error;
        std::vector<std::string> remarks;
    };
    std::string done(std::string_view text, bool follows);
    std::string told(const EditResult& result, bool hasChanged) const;
    const EditResult& doOne(std::string_view text, bool follows);
    std::string editLog() const;
    std::string nameOf(std::string_view ending) const;
    bool noteFile();
    void takeUp();
    void addReferences(Document& kept) const;

    mutable std::mutex m_mutex;
    DrawingFile m_file;
    Document m_opened;  ///< as the file has it
    std::unique_ptr<Session> m_session;
    std::vector<Logged> m_log;
    std::vector<DrawingChange> m_changes;  ///< of the edits in the log that were done
    std::vector<char> m_done, m_undone;    ///< by edit that can be taken back, or done again: belongs to the one before
    std::uint64_t m_number = 1, m_saved = 1, m_kept = 1;
    std::filesystem::file_time_type m_written{};  ///< the file, when it was looked at last
    bool m_isTakenUp = false;
};

}  // namespace holdfast::window
