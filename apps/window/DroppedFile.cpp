#include "apps/window/DroppedFile.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "document/text/DrawingError.h"
#include "formats/dxf/DxfReader.h"
#include "formats/fcstd/FcstdReader.h"
#include "formats/json/JsonReader.h"
#include "formats/slvs/SlvsReader.h"
#include "formats/svg/SvgReader.h"
#include "report/page/Wording.h"

namespace holdfast::window {

namespace {

/// As long as file systems have them.
constexpr std::size_t kLongestName = 255;

template <class Notice>
void addNotices(std::vector<std::string>& remarks, const char* what, const std::vector<Notice>& notices) {
    std::string list;
    for (const Notice& notice : notices)
        list += (list.empty() ? "" : ", ") + notice.what +
                (notice.count > 1 ? " (" + std::to_string(notice.count) + " times)" : "");
    if (!list.empty())
        remarks.push_back(what + (": " + list));
}

void addNotices(std::vector<std::string>& remarks, const std::vector<std::string>& notUnderstood) {
    std::string list;
    for (const std::string& each : notUnderstood)
        list += (list.empty() ? "" : ", ") + each;
    if (!list.empty())
        remarks.push_back("not understood and left out: " + list);
}

template <class Plain>
DroppedDrawing plainDrawing(Plain&& read) {
    DroppedDrawing drawing{std::move(read.document)};
    addNotices(drawing.remarks, "not understood and left out", read.notUnderstood);
    addNotices(drawing.remarks, "dropped", read.dropped);
    return drawing;
}

DroppedDrawing pictureIn(const DroppedFile& file) {
    SvgDrawing picture = readSvg(file.bytes, file.name);
    const bool isMeasured = picture.isMeasured;
    const auto roundCubics = static_cast<std::size_t>(picture.roundCubics);
    DroppedDrawing drawing = plainDrawing(std::move(picture));
    if (roundCubics > 0)
        drawing.remarks.push_back("read as the arcs that they stand for: " + counted(roundCubics, "cubic piece"));
    if (!isMeasured)
        drawing.remarks.emplace_back("it says no unit of length, and is taken as pixels, 96 an inch");
    return drawing;
}

/// One sketch of a document: the one that was chosen, or the only one.
template <class Names, class Read>
DroppedDrawing sketchIn(const DroppedFile& file, Names names, Read read) {
    std::string sketch = file.sketch;
    if (sketch.empty()) {
        DroppedDrawing choice;
        for (auto& each : names(file.bytes, file.name))
            choice.sketches.push_back({std::move(each.name), std::move(each.label)});
        if (choice.sketches.empty())
            throw DrawingError(file.name, {"", "a document without a sketch", "one with a sketch"});
        if (choice.sketches.size() > 1)
            return choice;
        sketch = choice.sketches.front().name;
    }
    auto drawn = read(file.bytes, sketch, file.name);
    DroppedDrawing drawing{std::move(drawn.document)};
    addNotices(drawing.remarks, drawn.notUnderstood);
    drawing.sketch = std::move(sketch);
    return drawing;
}

}  // namespace

std::string endingOf(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    std::string ending(dot == std::string_view::npos ? std::string_view() : name.substr(dot));
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending;
}

std::string plainName(std::string_view name) {
    name.remove_prefix(std::min(name.size(), name.find_last_of("/\\") + 1));
    std::string plain;
    for (const char c : name.substr(0, kLongestName))
        plain += static_cast<unsigned char>(c) < ' ' || c == '\x7f' ? '_' : c;
    return plain.empty() || plain == "." || plain == ".." ? "drawing" : plain;
}

DroppedDrawing readDropped(const DroppedFile& file) {
    const std::string ending = endingOf(file.name);
    if (ending == ".json")
        return {readJson(file.bytes, file.name)};
    if (ending == ".dxf")
        return plainDrawing(readDxf(file.bytes, file.name));
    if (ending == ".svg")
        return pictureIn(file);
    if (ending == ".fcstd")
        return sketchIn(file, sketchesInFcstd, readFcstd);
    if (ending == ".slvs")
        return sketchIn(file, sketchesInSlvs, readSlvs);
    throw DrawingError(file.name, {"", ending.empty() ? "a name without an ending" : "a name that ends in " + ending,
                                   "a drawing whose name ends in .json, .dxf, .svg, .slvs or .FCStd"});
}

}  // namespace holdfast::window
