#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "apps/window/Uses.h"
#include "document/Document.h"

namespace holdfast::window {

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
};

/// The opened file as all tabs share it: what it holds, and the names beside it under which each of them keeps its
/// edits. Any thread may call.
class OpenedFile : public std::enable_shared_from_this<OpenedFile> {
public:
    using Time = std::filesystem::file_time_type;
    /// A name beside the file that nobody else has meanwhile.
    using Place = std::shared_ptr<const std::filesystem::path>;

    OpenedFile(DrawingFile file, Document document);

    const DrawingFile& file() const { return m_file; }

    /// What the file holds, and when it was written; drawings remember that for write().
    struct Content {
        std::shared_ptr<const Document> document;
        Time written{};
    };
    /// As it is now: what others have written since is read, if it can be.
    Content content();

    /// What became of a write.
    struct Written {
        std::string error{};
        bool isOthers = false;  ///< the error: somebody has written since, which may be written over
        Content content{};
    };
    /// Writes the drawing, which goes on from what was written at `known`. What others have written since is left alone
    /// unless `isOver`.
    Written write(const Document& document, Time known, bool isOver);

    /// Whether somebody has written since `known`.
    bool isOther(Time known) const;
    /// Who has, and that there is a choice.
    std::string otherInWords() const;

    /// The first that is free of "bracket.unsaved.json", "bracket.unsaved-2.json", "plate.dxf.unsaved.json"; of a
    /// dropped drawing "bracket.dropped.json", "bracket.dropped-2.json".
    Place freePlace(bool isDropped);

    /// What earlier windows have kept beside the file.
    struct Kept {
        std::vector<Place> goesOn{};                  ///< from what the file holds
        std::vector<std::filesystem::path> behind{};  ///< from what it held before
    };
    Kept kept();
    /// All that is kept there by now, by whomever; newest first.
    std::vector<std::filesystem::path> allKept() const;
    /// None if somebody has it.
    Place claimed(const std::filesystem::path& path);
    bool isDropped(const std::filesystem::path& kept) const;

private:
    std::filesystem::path numbered(const char* what, int number) const;
    Place claim(std::filesystem::path path);
    Time timeOnDisk() const;

    const DrawingFile m_file;
    mutable std::mutex m_mutex;
    Content m_content;
    std::set<std::filesystem::path> m_claimed;
};

}  // namespace holdfast::window
