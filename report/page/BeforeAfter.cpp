#include "report/page/BeforeAfter.h"

#include <utility>

#include "report/marks/Glyphs.h"
#include "report/page/Assets.h"
#include "report/page/HtmlTables.h"
#include "report/page/ReportIndex.h"
#include "report/picture/Frame.h"
#include "report/picture/Markup.h"
#include "report/picture/Picture.h"

namespace holdfast::report {

using report::attribute;
using report::decimal;

namespace {

constexpr double kPaneWidth = 520.0, kPaneGap = 20.0, kCaption = 26.0;

std::string pane(std::string_view name, double left, const report::Frame& frame, const std::string& body) {
    const std::string width = decimal(frame.width, 2), height = decimal(frame.height, 2);
    return "<text class=\"caption\"" + attribute("x", decimal(left + 8.0, 2)) + attribute("y", decimal(17.0, 2)) + ">" +
           std::string(name) + "</text>\n<svg" + attribute("x", decimal(left, 2)) +
           attribute("y", decimal(kCaption, 2)) + attribute("width", width) + attribute("height", height) +
           attribute("viewBox", "0 0 " + width + " " + height) + ">\n" + body + "</svg>\n";
}

}  // namespace

std::string writeBeforeAfter(FateReport report, bool names) {
    const FateReport whole = completed(std::move(report));
    const report::ReportIndex index(whole);
    geometry::Box window = report::windowOf(whole.before);
    window.add(report::windowOf(whole.after));
    const report::Frame frame = report::trimmed(report::frameAround(window, kPaneWidth, 0.35, 1.1), window, 0.4);
    report::SpotMemory memory;
    report::Crowd crowd;
    const auto body = [&](const Document& document, const PictureNotes& notes, const Document* ghost) {
        return report::pictureBody({.document = document,
                                    .notes = notes,
                                    .frame = frame,
                                    .ghost = ghost,
                                    .overscan = 0.0,
                                    .marks = true,
                                    .dimensionLines = true,
                                    .names = names,
                                    .memory = &memory,
                                    .crowd = isCrowd(whole) ? &crowd : nullptr});
    };
    const std::string width = decimal(2.0 * frame.width + kPaneGap, 2), height = decimal(frame.height + kCaption, 2);
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\"" + attribute("width", width) +
                      attribute("height", height) + attribute("viewBox", "0 0 " + width + " " + height) +
                      " role=\"img\">\n<title>" + report::escaped(whole.before.name) +
                      ", before and after</title>\n<style>\n" + std::string(report::kPictureStyle) +
                      std::string(names ? kNameStyle : "") + "</style>\n" + report::glyphSheet() +
                      "<rect class=\"paper\"" + attribute("width", width) + attribute("height", height) + "/>\n";
    svg += pane("Before", 0.0, frame, body(whole.before, index.notesBefore(), nullptr));
    svg += pane("After", frame.width + kPaneGap, frame, body(whole.after, index.notesAfter(), &whole.before));
    return svg + "</svg>\n";
}

}  // namespace holdfast::report
