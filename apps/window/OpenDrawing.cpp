#include "apps/window/OpenDrawing.h"

#include <nlohmann/json.hpp>

#include <unordered_set>
#include <utility>
#include <variant>

#include "apps/window/Answers.h"
#include "apps/window/DrawingJson.h"
#include "apps/window/ReportPage.h"
#include "document/BlockContents.h"
#include "document/text/DrawingError.h"
#include "formats/FileIo.h"
#include "formats/dxf/DxfWriter.h"
#include "formats/json/JsonWriter.h"
#include "report/picture/Svg.h"

namespace holdfast::window {

namespace fs = std::filesystem;

namespace {

/// How far curves that a .dxf file cannot hold may deviate there, in the drawing's unit: what `convert` takes.
constexpr double kFlattening = 0.01;

Json saved(const std::string& error) {
    return {{"done", error.empty()}, {"error", error}};
}

}  // namespace

fs::path DrawingFile::unsaved() const {
    fs::path path = opened;
    if (path.extension() == ".json")
        return path.replace_extension(".unsaved.json");
    return path += ".unsaved.json";  // a plate.json beside a plate.dxf has its own
}

OpenDrawing::OpenDrawing(DrawingFile file, Document document)
    : m_file(std::move(file)), m_opened(std::move(document)), m_session(std::make_unique<Session>(m_opened)) {
    noteFile();
    takeUp();
}

OpenDrawing::~OpenDrawing() = default;

/// Whether nobody has written the file since it was looked at last; looks at it.
bool OpenDrawing::noteFile() {
    std::error_code missing;
    const fs::file_time_type written = fs::last_write_time(m_file.opened, missing);
    return std::exchange(m_written, written) == written;
}

/// Edits are kept as a drawing, whose file holds no references: they are where the opened drawing has them, but those
/// that have been exploded.
void OpenDrawing::addReferences(Document& kept) const {
    std::unordered_set<std::string_view> exploded;
    for (const Entity& entity : kept.entities)
        for (const std::string_view whole : wholesOf(entity.id))
            exploded.insert(whole);
    for (const BlockReference& reference : m_opened.references)
        if (!exploded.contains(reference.id))
            kept.references.push_back(reference);
}

/// What cannot be read, or is older than the drawing, stays where it is until something else is to be kept there.
void OpenDrawing::takeUp() {
    std::error_code missing;
    const auto kept = fs::last_write_time(m_file.unsaved(), missing);
    if (missing || m_file.isReadOnly || kept < fs::last_write_time(m_file.opened, missing))
        return;
    try {
        Document unsaved = readDrawing(m_file.unsaved());
        addReferences(unsaved);
        m_session = std::make_unique<Session>(std::move(unsaved));
        m_isTakenUp = true;
        m_kept = ++m_number;
    } catch (const DrawingError&) {
        m_session = std::make_unique<Session>(m_opened);
    }
}

std::string OpenDrawing::state() {
    const std::lock_guard lock(m_mutex);
    Json json{{"number", m_number},
              {"name", m_file.name},
              {"file", m_file.opened.filename().string()},
              {"readOnly", m_file.isReadOnly},
              {"takesSaves", m_file.takesSaves()},
              {"unsaved", m_number != m_saved},
              {"takenUp", m_isTakenUp},
              {"canUndo", m_session->canUndo()},
              {"canRedo", m_session->canRedo()}};
    json["log"] = Json::array();
    for (const Logged& edit : m_log)
        json["log"].push_back({{"text", edit.text}, {"error", edit.error}, {"remarks", edit.remarks}});
    json["drawing"] = drawingJson(m_session->document());
    return textOf(json);
}

std::string OpenDrawing::edit(std::string_view text) {
    const std::lock_guard lock(m_mutex);
    return done(text, false);
}

std::string OpenDrawing::follow(std::string_view text) {
    const std::lock_guard lock(m_mutex);
    const Trial trial = m_session->trial(text);
    return trial.result.outcome.done() ? done(text, true) : told(trial.result, false);
}

/// What belongs together is told by its last edit; the number says that there were more.
std::string OpenDrawing::done(std::string_view text, bool follows) {
    const bool undoes = !m_done.empty() && m_done.back() != 0;
    const EditResult* result = &doOne(text, follows);
    if (result->outcome.done() && std::holds_alternative<Undo>(*result->edit)) {
        for (bool goesOn = undoes; goesOn && result->outcome.done();) {
            goesOn = m_done.back() != 0;
            result = &doOne(text, false);
        }
    } else if (result->outcome.done() && std::holds_alternative<Redo>(*result->edit)) {
        while (!m_undone.empty() && m_undone.back() != 0 && result->outcome.done())
            result = &doOne(text, false);
    }
    return told(*result, result->outcome.done());
}

const EditResult& OpenDrawing::doOne(std::string_view text, bool follows) {
    m_session->document();
    const EditResult& result = m_session->apply(text);
    m_log.push_back({result.outcome.text, result.outcome.error, result.outcome.remarks});
    if (!result.outcome.done())
        return result;
    ++m_number;
    m_changes.push_back(m_session->changes().back());
    if (std::holds_alternative<Undo>(*result.edit)) {
        m_undone.push_back(m_done.back());
        m_done.pop_back();
    } else if (std::holds_alternative<Redo>(*result.edit)) {
        m_done.push_back(m_undone.back());
        m_undone.pop_back();
    } else {
        m_done.push_back(follows ? 1 : 0);
        m_undone.clear();
    }
    return result;
}

/// A result, what it has changed, and how the drawing stands.
std::string OpenDrawing::told(const EditResult& result, bool hasChanged) const {
    Json json = resultJson(result);
    if (hasChanged)
        json["change"] = changeJson(m_session->changes().back());
    json["number"] = m_number;
    json["unsaved"] = m_number != m_saved;
    json["canUndo"] = m_session->canUndo();
    json["canRedo"] = m_session->canRedo();
    return textOf(json);
}

std::string OpenDrawing::trial(std::string_view text) {
    const std::lock_guard lock(m_mutex);
    const Trial trial = m_session->trial(text);
    Json json = resultJson(trial.result);
    json["change"] = changeJson(trial.change);
    json["number"] = m_number;
    return textOf(json);
}

std::string OpenDrawing::freedom() {
    Document document;
    std::uint64_t number = 0;
    {
        const std::lock_guard lock(m_mutex);
        document = m_session->document();
        number = m_number;
    }
    Json json = freedomJson(document);
    json["number"] = number;
    return textOf(json);
}

std::string OpenDrawing::save() {
    const std::lock_guard lock(m_mutex);
    if (!m_file.takesSaves())
        return textOf(saved(m_file.isReadOnly ? "the window was opened for reading only; download the drawing instead"
                                              : "a " + m_file.opened.extension().string() +
                                                    " file holds no constraints; download the drawing instead"));
    if (!noteFile())
        return textOf(saved("somebody else has written " + m_file.opened.filename().string() +
                            " since it was opened; save once more to write over that"));
    try {
        writeDrawing(m_session->document(), m_file.opened);
        noteFile();
    } catch (const DrawingError& failure) {
        return textOf(saved(failure.what()));
    }
    m_opened = m_session->document();
    m_saved = m_kept = m_number;
    m_isTakenUp = false;
    std::error_code ignored;
    fs::remove(m_file.unsaved(), ignored);
    return textOf(saved({}));
}

std::string OpenDrawing::discard() {
    const std::lock_guard lock(m_mutex);
    m_session = std::make_unique<Session>(m_opened);
    m_log.clear();
    m_changes.clear();
    m_done.clear();
    m_undone.clear();
    m_saved = m_kept = ++m_number;
    m_isTakenUp = false;
    std::error_code ignored;
    if (!m_file.isReadOnly)
        fs::remove(m_file.unsaved(), ignored);
    return textOf(saved({}));
}

std::string OpenDrawing::nameOf(std::string_view ending) const {
    return m_file.opened.stem().string() + std::string(ending);
}

/// As a script: what `holdfast run` does from the drawing's file.
std::string OpenDrawing::editLog() const {
    std::string text = "open " + m_file.opened.filename().string() + "\n";
    for (const Logged& edit : m_log)
        if (edit.error.empty())
            text += edit.text + "\n";
    return text;
}

std::optional<OpenDrawing::Copy> OpenDrawing::copy(std::string_view what) {
    const std::lock_guard lock(m_mutex);
    const Document& document = m_session->document();
    if (what == "drawing.json")
        return Copy{jsonText(document), "application/json", nameOf(".json")};
    if (what == "drawing.dxf")
        return Copy{dxfText(document, kFlattening).text, "image/vnd.dxf", nameOf(".dxf")};
    if (what == "picture.svg")
        return Copy{writePicture(document), "image/svg+xml", nameOf(".svg")};
    if (what == "report.html")
        return Copy{reportPage(m_session->report(), m_session->results(), m_changes), "text/html", nameOf(".html")};
    if (what == "edits.edit")
        return Copy{editLog(), "text/plain", nameOf(".edit")};
    return std::nullopt;
}

std::uint64_t OpenDrawing::number() const {
    const std::lock_guard lock(m_mutex);
    return m_number;
}

bool OpenDrawing::hasUnsaved() const {
    const std::lock_guard lock(m_mutex);
    return m_number != m_saved && !m_file.isReadOnly;
}

std::string OpenDrawing::keep() {
    const std::lock_guard lock(m_mutex);
    if (m_number == m_kept || m_file.isReadOnly)
        return {};
    m_kept = m_number;  // what failed once is tried again with the next change
    try {
        writeDrawing(m_session->document(), m_file.unsaved());
        return m_session->document().references == m_opened.references
                   ? std::string()
                   : m_file.unsaved().filename().string() + ": what was done to block references is not kept there";
    } catch (const DrawingError& failure) {
        return failure.what();
    }
}

}  // namespace holdfast::window
