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

struct DroppedFile;

/// The file behind a drawing in the window.
struct DrawingFile {
    std::filesystem::path opened;  ///< what was asked for; .json, .dxf or .svg
    std::string name;              ///< what people call the drawing
    bool isReadOnly = false;       ///< neither saved nor kept beside the file
    /// What a drawing is called that was dropped on the page; empty: it is the opened one.
    std::string droppedAs{};

    /// Constraints can be saved there.
    bool takesSaves() const { return !isReadOnly && droppedAs.empty() && opened.extension() == ".json"; }
    /// What scripts and downloads call it.
    std::string fileName() const { return droppedAs.empty() ? opened.filename().string() : droppedAs; }
    /// "bracket.unsaved.json", "plate.dxf.unsaved.json": where edits are kept until they are saved, beside the drawing.
    /// Those of a dropped one: "bracket.dropped.json", "bracket.dropped-2.json", the first name that is free.
    std::filesystem::path unsaved() const;
};

/// A drawing with the one session in which all tabs edit it, and, once one was dropped on the page, that one in its
/// place. Answers are JSON for the page. Any thread may call: edits take turns.
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
    /// Shows a dropped drawing; the opened one waits until goBack(). Edits of what is shown until then are kept as at
    /// the window's end. What cannot be read is told, and nothing has changed.
    std::string takeDropped(DroppedFile file);
    /// The opened drawing again, as it was left.
    std::string goBack();

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
    /// Where edits are kept that were not saved.
    std::vector<std::filesystem::path> keptIn() const;

private:
    struct Shown;
    std::string done(std::string_view text, bool follows);
    std::string told(const EditResult& result, bool hasChanged) const;
    const EditResult& doOne(std::string_view text, bool follows);
    std::string editLog() const;
    std::string nameOf(std::string_view ending) const;
    bool noteFile();
    void takeUp();
    void addReferences(Document& kept) const;
    /// A copy of what is to be kept.
    struct Unkept {
        Document document;
        std::filesystem::path path;
        bool isWhole = true;
        std::string write() const;
    };
    std::optional<Unkept> takeUnkept();
    std::vector<std::string> putAside();

    std::mutex m_keeping;  ///< whoever writes or removes what is kept; taken before the other one
    mutable std::mutex m_mutex;
    std::unique_ptr<Shown> m_shown;
    std::unique_ptr<Shown> m_opened;               ///< while a dropped one is shown
    std::vector<std::filesystem::path> m_dropped;  ///< where edits of others are kept that were dropped
    std::uint64_t m_number = 1, m_drawings = 1;
};

}  // namespace holdfast::window
