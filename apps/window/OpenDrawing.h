#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/forms/GoingOut.h"
#include "apps/window/OpenedFile.h"
#include "apps/window/Uses.h"
#include "document/Document.h"
#include "editing/Session.h"
#include "geometry/Box.h"

namespace holdfast::window {

struct DroppedFile;

/// The drawing of one tab, with the session in which it is edited there, and, once one was dropped on the page, that
/// one in its place. Answers are JSON for the page. Any thread may call: edits take turns.
class OpenDrawing {
public:
    /// What the file holds; or, where an earlier window has kept edits, those, to go on with.
    explicit OpenDrawing(std::shared_ptr<OpenedFile> file, OpenedFile::Place kept = {});
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
    /// The same for a hand that pulls and asks again and again. Of a large drawing a glimpse, where there is one: it
    /// says so, tells of what lies where the page looks, and a trial tells the rest.
    std::string pull(std::string_view text, const Box& seen);
    /// Degrees of freedom, contradictions. Works on a copy: edits need not wait for it.
    std::string freedom();
    /// Into the file that was opened. What others have written there since is left alone, and it is asked, unless
    /// `isOver`.
    std::string save(bool isOver);
    /// Whether others have written the file since, and who, in words.
    std::string behind();
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
    /// The drawing as "drawing.json", "drawing.dxf", "picture.svg", "picture.pdf", "report.html", or its edits as
    /// "edits.edit"; nothing for another name.
    std::optional<Copy> copy(std::string_view what);

    /// The drawing in the form of an ending that state() lists, and what is lost in it. One that cannot be saved into
    /// its own file counts as saved then, if nothing is lost. Throws DrawingError for what cannot be written so.
    GoneOut saveAs(const std::string& form);

    /// Counts up with each change.
    std::uint64_t number() const;
    /// There are edits that are in no file that somebody has chosen.
    bool hasUnsaved() const;
    /// Writes what is not saved beside the file, if it is not there yet. An empty text, or why it cannot be.
    std::string keep();
    /// Edits of what is shown that were done and not taken back; none where others have done them before.
    std::optional<std::size_t> editCount() const;
    /// Where edits are kept that were not saved.
    std::vector<std::filesystem::path> keptIn() const;

private:
    struct Shown;
    std::string done(std::string_view text, bool follows);
    std::string tried(std::string_view text);
    std::string told(const EditResult& result, bool hasChanged) const;
    const EditResult& doOne(std::string_view text, bool follows);
    std::string editLog() const;
    std::string nameOf(std::string_view ending) const;
    std::vector<std::string> formsOut() const;
    std::unique_ptr<Shown> fresh() const;
    void takeUp(OpenedFile::Place kept);
    bool isBehind() const;
    void addReferences(Document& kept) const;
    /// A copy of what is to be kept.
    struct Unkept {
        Document document;
        std::filesystem::path path;
        bool isWhole = true;
        OpenedFile::Time goesOnFrom{};             ///< what the file held, by its time
        std::shared_ptr<const OpenedFile> file{};  ///< none: the drawing was dropped
        std::string write() const;
    };
    std::optional<Unkept> takeUnkept();
    std::vector<std::string> putAside();

    const std::shared_ptr<OpenedFile> m_file;
    std::mutex m_keeping;  ///< whoever writes or removes what is kept; taken before the other one
    mutable std::mutex m_mutex;
    std::unique_ptr<Shown> m_shown;
    std::unique_ptr<Shown> m_opened;               ///< while a dropped one is shown
    std::vector<std::filesystem::path> m_dropped;  ///< where edits of others are kept that were dropped
    std::uint64_t m_number = 1, m_drawings = 1;
};

}  // namespace holdfast::window
