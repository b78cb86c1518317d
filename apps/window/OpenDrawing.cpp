#include "apps/window/OpenDrawing.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <unordered_set>
#include <utility>
#include <variant>

#include "apps/forms/PdfPage.h"
#include "apps/window/Answers.h"
#include "apps/window/DrawingJson.h"
#include "apps/window/DroppedFile.h"
#include "apps/window/ReportPage.h"
#include "document/BlockContents.h"
#include "document/text/DrawingError.h"
#include "formats/FileIo.h"
#include "formats/dxf/DxfReader.h"
#include "formats/dxf/DxfWriter.h"
#include "formats/json/JsonWriter.h"
#include "report/picture/Svg.h"

namespace holdfast::window {

namespace fs = std::filesystem;
using namespace std::string_literals;

namespace {

/// How far curves that a .dxf file cannot hold may deviate there, in the drawing's unit: what `convert` takes.
constexpr double kFlattening = 0.01;

/// Entities and constraints of a drawing in which a whole trial is done within a frame, whatever moves.
constexpr std::size_t kTriedAtOnce = 500;

Json saved(const std::string& error) {
    return {{"done", error.empty()}, {"error", error}};
}

}  // namespace

/// One drawing with its session.
struct OpenDrawing::Shown {
    struct Logged {
        std::string text, error;
        std::vector<std::string> remarks;
    };
    DrawingFile file;
    OpenedFile::Content opened;  ///< as the file has it
    OpenedFile::Place unsaved;   ///< where edits are kept
    std::unique_ptr<Session> session = std::make_unique<Session>(*opened.document);
    std::vector<Logged> log{};
    std::vector<DrawingChange> changes{};  ///< of the edits in the log that were done
    std::vector<char> done{}, undone{};    ///< by edit that can be taken back, or done again: belongs to the one before
    bool isSaved = true, isKept = true;    ///< the file has all edits, or what is kept beside it
    bool isTakenUp = false;
    DroppedFile source{};       ///< what was dropped
    bool isDownloaded = false;  ///< whoever sits there has all edits

    bool isUnsaved() const { return !isSaved && !isDownloaded; }
};

OpenDrawing::OpenDrawing(std::shared_ptr<OpenedFile> file, OpenedFile::Place kept)
    : m_file(std::move(file)), m_shown(fresh()) {
    if (kept)
        takeUp(std::move(kept));
    if (!m_shown->unsaved)
        m_shown->unsaved = m_file->freePlace(false);
}

OpenDrawing::~OpenDrawing() = default;

/// What the file holds; it has no place for its edits yet.
std::unique_ptr<OpenDrawing::Shown> OpenDrawing::fresh() const {
    return std::make_unique<Shown>(Shown{.file = m_file->file(), .opened = m_file->content(), .unsaved = {}});
}

/// Others have written the file since it was read.
bool OpenDrawing::isBehind() const {
    return m_shown->file.takesSaves() && m_file->isOther(m_shown->opened.written);
}

/// Edits are kept as a drawing, whose file holds no references: they are where the opened drawing has them, but those
/// that have been exploded.
void OpenDrawing::addReferences(Document& kept) const {
    std::unordered_set<std::string_view> exploded;
    for (const Entity& entity : kept.entities)
        for (const std::string_view whole : wholesOf(entity.id))
            exploded.insert(whole);
    for (const BlockReference& reference : m_shown->opened.document->references)
        if (!exploded.contains(reference.id))
            kept.references.push_back(reference);
}

/// What cannot be read stays where it is.
void OpenDrawing::takeUp(OpenedFile::Place kept) {
    try {
        Document unsaved = readDrawing(*kept);
        addReferences(unsaved);
        m_shown->session = std::make_unique<Session>(std::move(unsaved));
        m_shown->unsaved = std::move(kept);
        m_shown->isTakenUp = true;
        m_shown->isSaved = false;
        ++m_number;
    } catch (const DrawingError&) {
        m_shown = fresh();
    }
}

std::string OpenDrawing::state() {
    const std::lock_guard lock(m_mutex);
    Json json{{"number", m_number},
              {"name", m_shown->file.name},
              {"file", m_shown->file.fileName()},
              {"readOnly", m_shown->file.isReadOnly},
              {"takesSaves", m_shown->file.takesSaves()},
              {"unsaved", m_shown->isUnsaved()},
              {"forms", formsOut()},
              {"drawings", m_drawings},
              {"dropped", m_opened != nullptr},
              {"own", (m_opened ? *m_opened : *m_shown).file.fileName()},
              {"takenUp", m_shown->isTakenUp},
              {"behind", isBehind() ? m_file->otherInWords() : ""},
              {"canUndo", m_shown->session->canUndo()},
              {"canRedo", m_shown->session->canRedo()}};
    json["log"] = Json::array();
    for (const Shown::Logged& edit : m_shown->log)
        json["log"].push_back({{"text", edit.text}, {"error", edit.error}, {"remarks", edit.remarks}});
    json["drawing"] = drawingJson(m_shown->session->document());
    return textOf(json);
}

std::string OpenDrawing::edit(std::string_view text) {
    const std::lock_guard lock(m_mutex);
    return done(text, false);
}

std::string OpenDrawing::follow(std::string_view text) {
    const std::lock_guard lock(m_mutex);
    const Trial trial = m_shown->session->trial(text);
    return trial.result.outcome.done() ? done(text, true) : told(trial.result, false);
}

/// What belongs together is told by its last edit; the number says that there were more.
std::string OpenDrawing::done(std::string_view text, bool follows) {
    const bool undoes = !m_shown->done.empty() && m_shown->done.back() != 0;
    const EditResult* result = &doOne(text, follows);
    if (result->outcome.done() && std::holds_alternative<Undo>(*result->edit)) {
        for (bool goesOn = undoes; goesOn && result->outcome.done();) {
            goesOn = m_shown->done.back() != 0;
            result = &doOne(text, false);
        }
    } else if (result->outcome.done() && std::holds_alternative<Redo>(*result->edit)) {
        while (!m_shown->undone.empty() && m_shown->undone.back() != 0 && result->outcome.done())
            result = &doOne(text, false);
    }
    return told(*result, result->outcome.done());
}

const EditResult& OpenDrawing::doOne(std::string_view text, bool follows) {
    m_shown->session->document();
    const EditResult& result = m_shown->session->apply(text);
    m_shown->log.push_back({result.outcome.text, result.outcome.error, result.outcome.remarks});
    if (!result.outcome.done())
        return result;
    ++m_number;
    m_shown->isSaved = m_shown->isKept = m_shown->isDownloaded = false;
    m_shown->changes.push_back(m_shown->session->changes().back());
    if (std::holds_alternative<Undo>(*result.edit)) {
        m_shown->undone.push_back(m_shown->done.back());
        m_shown->done.pop_back();
    } else if (std::holds_alternative<Redo>(*result.edit)) {
        m_shown->done.push_back(m_shown->undone.back());
        m_shown->undone.pop_back();
    } else {
        m_shown->done.push_back(follows ? 1 : 0);
        m_shown->undone.clear();
    }
    return result;
}

/// A result, what it has changed, and how the drawing stands.
std::string OpenDrawing::told(const EditResult& result, bool hasChanged) const {
    Json json = resultJson(result);
    if (hasChanged)
        json["change"] = changeJson(m_shown->session->changes().back());
    json["number"] = m_number;
    json["unsaved"] = m_shown->isUnsaved();
    json["canUndo"] = m_shown->session->canUndo();
    json["canRedo"] = m_shown->session->canRedo();
    return textOf(json);
}

std::string OpenDrawing::trial(std::string_view text) {
    const std::lock_guard lock(m_mutex);
    return tried(text);
}

std::string OpenDrawing::pull(std::string_view text, const Box& seen) {
    const std::lock_guard lock(m_mutex);
    const Document& document = m_shown->session->document();
    if (document.entities.size() + document.constraints.size() > kTriedAtOnce)
        if (const std::optional<Glimpse> glimpse = m_shown->session->glimpse(text, seen))
            return glimpseText(*glimpse, text, m_number);
    return tried(text);
}

std::string OpenDrawing::tried(std::string_view text) {
    const Trial trial = m_shown->session->trial(text);
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
        document = m_shown->session->document();
        number = m_number;
    }
    Json json = freedomJson(document);
    json["number"] = number;
    return textOf(json);
}

std::string OpenDrawing::save(bool isOver) {
    const std::lock_guard keeping(m_keeping);
    const std::lock_guard lock(m_mutex);
    if (!m_shown->file.takesSaves())
        return textOf(saved(m_shown->file.isReadOnly
                                ? "the window was opened for reading only; download the drawing instead"
                                : "a " + m_shown->file.opened.extension().string() +
                                      " file holds no constraints; download the drawing instead"));
    OpenedFile::Written written = m_file->write(m_shown->session->document(), m_shown->opened.written, isOver);
    if (!written.error.empty()) {
        Json json = saved(written.error);
        json["asks"] = written.isOthers;
        return textOf(json);
    }
    m_shown->opened = std::move(written.content);
    m_shown->isSaved = m_shown->isKept = true;
    m_shown->isTakenUp = false;
    std::error_code ignored;
    fs::remove(*m_shown->unsaved, ignored);
    return textOf(saved({}));
}

std::string OpenDrawing::behind() {
    const std::lock_guard lock(m_mutex);
    return textOf({{"behind", isBehind() ? m_file->otherInWords() : ""}});
}

std::string OpenDrawing::discard() {
    const std::lock_guard keeping(m_keeping);
    const std::lock_guard lock(m_mutex);
    if (m_shown->file.droppedAs.empty())
        m_shown->opened = m_file->content();
    m_shown->session = std::make_unique<Session>(*m_shown->opened.document);
    m_shown->log.clear();
    m_shown->changes.clear();
    m_shown->done.clear();
    m_shown->undone.clear();
    ++m_number;
    m_shown->isSaved = m_shown->isKept = true;
    m_shown->isTakenUp = false;
    std::error_code ignored;
    if (!m_shown->file.isReadOnly)
        fs::remove(*m_shown->unsaved, ignored);
    return textOf(saved({}));
}

/// The opened drawing waits meanwhile, a dropped one goes: its edits are kept first, or nothing changes.
std::vector<std::string> OpenDrawing::putAside() {
    std::vector<std::string> remarks;
    try {
        const std::optional<Unkept> unkept = takeUnkept();
        if (std::string remark = unkept ? unkept->write() : ""; !remark.empty())
            remarks.push_back(std::move(remark));
    } catch (const DrawingError& failure) {
        if (m_opened)
            throw;
        remarks.push_back("the edits so far cannot be kept beside the drawing: "s + failure.what());
    }
    if (!m_opened)
        m_opened = std::move(m_shown);
    else if (!m_shown->isSaved && !m_shown->file.isReadOnly)
        m_dropped.push_back(*m_shown->unsaved);
    ++m_number;
    ++m_drawings;
    return remarks;
}

std::string OpenDrawing::takeDropped(DroppedFile file) {
    file.name = plainName(file.name);
    try {
        DroppedDrawing dropped = readDropped(file);
        Json json = saved({});
        if (!dropped.sketches.empty()) {
            json["done"] = false;
            for (const DroppedDrawing::Sketch& sketch : dropped.sketches)
                json["sketches"].push_back({{"name", sketch.name}, {"label", sketch.label}});
            return textOf(json);
        }
        const std::lock_guard keeping(m_keeping);
        const std::lock_guard lock(m_mutex);
        DrawingFile own = m_opened ? m_opened->file : m_shown->file;
        own.name = dropped.document.name.empty() ? fs::path(file.name).stem().string() : dropped.document.name;
        own.droppedAs = file.sketch.empty() ? file.name : file.name + "#" + file.sketch;
        file.sketch = dropped.sketch;
        auto taken =
            std::make_unique<Shown>(Shown{.file = std::move(own),
                                          .opened = {std::make_shared<const Document>(std::move(dropped.document))},
                                          .unsaved = m_file->freePlace(true),
                                          .source = std::move(file)});
        for (std::string& remark : putAside())
            dropped.remarks.push_back(std::move(remark));
        m_shown = std::move(taken);
        json["remarks"] = dropped.remarks;
        return textOf(json);
    } catch (const std::exception& failure) {
        return textOf(saved(failure.what()));
    }
}

std::string OpenDrawing::goBack() {
    const std::lock_guard keeping(m_keeping);
    const std::lock_guard lock(m_mutex);
    if (!m_opened)
        return textOf(saved("nothing was dropped here: this is the drawing that was opened"));
    try {
        Json json = saved({});
        json["remarks"] = putAside();
        m_shown = std::move(m_opened);
        return textOf(json);
    } catch (const DrawingError& failure) {
        return textOf(saved("the edits so far cannot be kept: "s + failure.what()));
    }
}

std::string OpenDrawing::nameOf(std::string_view ending) const {
    return fs::path(m_shown->file.fileName()).stem().string() + std::string(ending);
}

/// As a script: what `holdfast run` does from the drawing's file.
std::string OpenDrawing::editLog() const {
    std::string text = "open " + m_shown->file.fileName() + "\n";
    for (const Shown::Logged& edit : m_shown->log)
        if (edit.error.empty())
            text += edit.text + "\n";
    return text;
}

std::optional<OpenDrawing::Copy> OpenDrawing::copy(std::string_view what) {
    const std::lock_guard lock(m_mutex);
    const Document& document = m_shown->session->document();
    if (what == "drawing.json")
        return Copy{jsonText(document), "application/json", nameOf(".json")};
    if (what == "drawing.dxf")
        return Copy{dxfText(document, kFlattening).text, "image/vnd.dxf", nameOf(".dxf")};
    if (what == "picture.svg")
        return Copy{writePicture(document), "image/svg+xml", nameOf(".svg")};
    if (what == "picture.pdf")
        return Copy{pdfPage(writePicture(document), document.name), "application/pdf", nameOf(".pdf")};
    if (what == "report.html")
        return Copy{reportPage(m_shown->session->report(), m_shown->session->results(), m_shown->changes), "text/html",
                    nameOf(".html")};
    if (what == "edits.edit")
        return Copy{editLog(), "text/plain", nameOf(".edit")};
    return std::nullopt;
}

/// That in which it came first.
std::vector<std::string> OpenDrawing::formsOut() const {
    std::vector<std::string> forms{".json", ".dxf", kSlvsForm, ".svg", ".pdf"};
    const std::string own =
        endingOf(m_shown->source.name.empty() ? m_shown->file.opened.filename().string() : m_shown->source.name);
    std::erase(forms, own);
    forms.insert(forms.begin(), own);
    return forms;
}

GoneOut OpenDrawing::saveAs(const std::string& form) {
    const std::lock_guard lock(m_mutex);
    const std::vector<std::string> forms = formsOut();
    if (std::find(forms.begin(), forms.end(), form) == forms.end())
        throw DrawingError("the drawing", {"", "a file that ends in " + form, "one of the forms that it can have"});
    const bool isDropped = !m_shown->source.name.empty();
    CameFrom from{.form = forms.front()};
    std::optional<DxfOriginal> dxf;
    std::optional<SketchOriginal> sketch;
    if (form == ".dxf" && from.form == form) {
        std::string text = isDropped ? m_shown->source.bytes : readFile(m_shown->file.opened);
        DxfDrawing read = readDxf(text, m_shown->file.fileName());
        if (read.document == *m_shown->opened.document)  // else somebody has written it since
            from.dxf = &dxf.emplace(DxfOriginal{std::move(text), std::move(read.layout), std::move(read.document)});
    } else if (form == kSketchForm) {
        from.sketch = &sketch.emplace(SketchOriginal{m_shown->source.bytes, m_shown->source.sketch});
    }
    GoneOut out = goingOut(m_shown->session->document(), form, from, kFlattening);
    if (!m_shown->file.takesSaves() && out.notes.empty() && !isPicture(form))
        m_shown->isDownloaded = true;
    return out;
}

std::uint64_t OpenDrawing::number() const {
    const std::lock_guard lock(m_mutex);
    return m_number;
}

bool OpenDrawing::hasUnsaved() const {
    const std::lock_guard lock(m_mutex);
    return m_shown->isUnsaved() || (m_opened && m_opened->isUnsaved());
}

std::optional<std::size_t> OpenDrawing::editCount() const {
    const std::lock_guard lock(m_mutex);
    return m_shown->isTakenUp ? std::nullopt : std::optional(m_shown->done.size());
}

std::vector<fs::path> OpenDrawing::keptIn() const {
    const std::lock_guard lock(m_mutex);
    std::vector<fs::path> kept = m_dropped;
    for (const Shown* each : {m_opened.get(), m_shown.get()})
        if (each != nullptr && !each->isSaved && !each->file.isReadOnly)
            kept.push_back(*each->unsaved);
    return kept;
}

/// A disk may be slow: edits go on while a copy is written.
std::string OpenDrawing::keep() {
    const std::lock_guard keeping(m_keeping);
    std::optional<Unkept> unkept;
    {
        const std::lock_guard lock(m_mutex);
        unkept = takeUnkept();
    }
    try {
        return unkept ? unkept->write() : std::string();
    } catch (const DrawingError& failure) {
        return failure.what();
    }
}

/// What is to be kept of the drawing that is shown; nothing when all is.
std::optional<OpenDrawing::Unkept> OpenDrawing::takeUnkept() {
    if (m_shown->isKept || m_shown->file.isReadOnly)
        return std::nullopt;
    m_shown->isKept = true;  // what failed once is tried again with the next change
    const Document& document = m_shown->session->document();
    Unkept unkept{document, *m_shown->unsaved, document.references == m_shown->opened.document->references};
    if (m_shown->file.droppedAs.empty()) {
        unkept.goesOnFrom = m_shown->opened.written;
        unkept.file = m_file;
    }
    return unkept;
}

/// What of the edits is not kept there. Throws DrawingError. What does not go on from what the file holds now bears the
/// time of what it goes on from, so that no later window takes it for the newest.
std::string OpenDrawing::Unkept::write() const {
    writeDrawing(document, path);
    std::error_code ignored;
    if (file && file->isOther(goesOnFrom))
        fs::last_write_time(path, goesOnFrom, ignored);
    return isWhole ? std::string() : path.filename().string() + ": what was done to block references is not kept there";
}

}  // namespace holdfast::window
