#include "report/page/HtmlReport.h"

#include <algorithm>
#include <utility>

#include "report/marks/Glyphs.h"
#include "report/page/Assets.h"
#include "report/page/HtmlTables.h"
#include "report/page/Wording.h"
#include "report/picture/Markup.h"
#include "report/picture/Picture.h"

namespace holdfast::report {

namespace {

constexpr std::size_t kLongestOpenEdits = 10;
constexpr double kPaneWidth = 640.0, kWidePaneWidth = 1300.0;
constexpr double kWideFrom = 2.3;  // width over height from which the pictures stand one above the other

/// What is restored is shown and hidden with what was added, what has changed with what was re-pointed.
constexpr std::array kFilteredFates{ConstraintFate::deleted, ConstraintFate::rePointed, ConstraintFate::added,
                                    ConstraintFate::kept};

class Page {
public:
    Page(const FateReport& report, const LiveView* view) : m_report(report), m_index(report), m_view(view) {
        m_window = windowOf(report.before);
        m_window.add(windowOf(report.after));
        m_wide = m_window.width() > kWideFrom * m_window.height();
        m_same = report.before == report.after || (report.before.entities.empty() && report.before.constraints.empty());
    }

    std::string text() const {
        return "<!DOCTYPE html>\n<html xmlns=\"http://www.w3.org/1999/xhtml\" lang=\"en\">\n" + head() + "<body>\n" +
               filters() + "<div class=\"page\">\n" + header() + summary() + "<main>\n" + panes() +
               constraintSection(m_report, m_index) + entitySection(m_report, m_index) + parameterSection(m_report) +
               "</main>\n" + footer() + "</div>\n<div id=\"tip\" hidden=\"hidden\"></div>\n" + script() +
               "</body>\n</html>\n";
    }

private:
    std::string title() const {
        const std::string& own = m_report.after.name.empty() ? m_report.before.name : m_report.after.name;
        const std::string& best = m_report.title.empty() ? own : m_report.title;
        return escaped(best.empty() ? "Untitled drawing" : best);
    }

    std::string head() const {
        return "<head>\n<meta charset=\"utf-8\"/>\n<meta name=\"viewport\" content=\"width=device-width, "
               "initial-scale=1\"/>\n<meta name=\"color-scheme\" content=\"light dark\"/>\n"
               "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'; "
               "script-src 'unsafe-inline'\"/>\n<title>" +
               title() +
               ": what the edits kept</title>\n"
               "<style>/*<![CDATA[*/\n" +
               std::string(kPictureStyle) + std::string(kReportStyle) +
               std::string(m_view == nullptr ? std::string_view() : m_view->style) + "/*]]>*/</style>\n</head>\n";
    }

    std::string script() const {
        constexpr std::string_view kEnd = "/*]]>*/</script>\n";
        if (m_view == nullptr)
            return "<script>/*<![CDATA[*/\n" + std::string(kReportScript) + std::string(kEnd);
        return m_view->data + "\n<script type=\"module\">/*<![CDATA[*/\n" + std::string(m_view->script) +
               std::string(kEnd);
    }

    /// Check boxes before everything that they filter: styles alone do the rest.
    static std::string filters() {
        std::string boxes;
        for (const ConstraintFate fate : kFilteredFates)
            boxes += "<input type=\"checkbox\" class=\"filter\" id=\"show-" + std::string(fateClass(fate)) +
                     "\" checked=\"checked\" aria-label=\"show " + std::string(fateName(fate)) + " constraints\"/>\n";
        return boxes;
    }

    std::string header() const {
        std::string text = "<header>\n<p class=\"eyebrow\">Holdfast &#183; fate report</p>\n<h1>" + title() + "</h1>\n";
        return text + edits() + "</header>\n";
    }

    std::string edits() const {
        if (m_report.edits.empty())
            return {};
        std::string items;
        for (const EditOutcome& edit : m_report.edits)
            items += editItem(edit);
        std::string list = "<ol class=\"edits\">\n" + items + "</ol>\n";
        if (m_report.edits.size() <= kLongestOpenEdits)
            return list;
        const auto refused = static_cast<std::size_t>(std::count_if(
            m_report.edits.begin(), m_report.edits.end(), [](const EditOutcome& each) { return !each.done(); }));
        return "<details class=\"many\"><summary>" + counted(m_report.edits.size(), "edit") +
               (refused > 0 ? ", " + std::to_string(refused) + " refused" : "") + "</summary>\n" + list +
               "</details>\n";
    }

    static std::string editItem(const EditOutcome& edit) {
        std::string remarks;
        for (const std::string& remark : edit.remarks)
            remarks += "<p>" + escaped(remark) + "</p>";
        if (edit.done())
            return "<li class=\"done\">" + fateIcon("kept") + "<code>" + escaped(edit.text) + "</code>" + remarks +
                   "</li>\n";
        return "<li class=\"refused\">" + fateIcon("deleted") + "<code>" + escaped(edit.text) +
               "</code><p><b>Refused:</b> " + escaped(edit.error) + "</p></li>\n";
    }

    std::string summary() const {
        return "<section class=\"summary\" aria-label=\"Summary\">\n" + chips() + bar() + figures() + "</section>\n";
    }

    static std::string chip(const std::string& classes, std::string_view name, std::size_t count) {
        return "<label class=\"chip " + classes + (count == 0 ? " zero" : "") + "\" for=\"show-" + classes + "\">" +
               fateIcon(classes) + "<b>" + std::to_string(count) + "</b> <span>" + std::string(name) +
               "</span></label>\n";
    }

    std::string chips() const {
        const auto counts = countFates(m_report.constraints);
        std::string text = "<div class=\"chips\">\n";
        for (const ConstraintFate fate : kConstraintFates)
            if (const std::size_t count = counts[static_cast<std::size_t>(fate)];
                count > 0 || (fate != ConstraintFate::restored && fate != ConstraintFate::changed))
                text += chip(std::string(fateClass(fate)), fateName(fate), count);
        return text + "</div>\n";
    }

    std::string bar() const {
        if (m_report.constraints.empty())
            return {};
        const auto counts = countFates(m_report.constraints);
        std::string text = "<div class=\"bar\" aria-hidden=\"true\">";
        for (const ConstraintFate fate : kConstraintFates)
            if (const std::size_t count = counts[static_cast<std::size_t>(fate)]; count > 0)
                text += "<span class=\"" + std::string(fateClass(fate)) +
                        "\" style=\"flex-grow:" + std::to_string(count) + "\"></span>";
        return text + "</div>\n";
    }

    static std::string figure(std::string_view name, const std::string& value) {
        return "<div><dt>" + std::string(name) + "</dt><dd>" + escaped(value) + "</dd></div>\n";
    }

    std::string figures() const {
        std::string text;
        const auto counts = countFates(m_report.entities);
        for (const EntityFate fate : kEntityFates)
            if (const std::size_t count = counts[static_cast<std::size_t>(fate)]; count > 0)
                text += figure("entities " + std::string(fateName(fate)), std::to_string(count));
        double longest = 0.0;
        for (const EntityOutcome& outcome : m_report.entities)
            longest = std::max(longest, outcome.fate == EntityFate::followed ? outcome.movedBy : 0.0);
        if (longest > 0.0)
            text += figure("longest move", measure(longest) + " " + m_report.after.lengthUnit);
        if (m_report.solver)
            text += solverFigures(*m_report.solver);
        return text.empty() ? text : "<dl>\n" + text + "</dl>\n";
    }

    static std::string solverFigures(const SolverFigures& solver) {
        std::string text;
        if (solver.degreesOfFreedom)
            text += figure("degrees of freedom", std::to_string(*solver.degreesOfFreedom));
        if (solver.iterations)
            text += figure("solver iterations", std::to_string(*solver.iterations));
        if (solver.worstResidual)
            text += figure("worst residual", residualText(*solver.worstResidual));
        return text;
    }

    std::string panes() const {
        const Frame frame = m_wide
                                ? frameAround(m_window, kWidePaneWidth, 0.12, 0.5)
                                : frameAround(m_window, m_same ? kWidePaneWidth : kPaneWidth, 0.45, m_same ? 0.5 : 1.1);
        std::string text = std::string("<section class=\"pictures") + (m_wide ? " wide" : "") + (m_same ? " one" : "") +
                           "\" aria-label=\"Pictures\">\n<svg class=\"sheet\" width=\"0\" height=\"0\" "
                           "aria-hidden=\"true\">" +
                           glyphSheet() + "</svg>\n<div class=\"panes\">\n";
        SpotMemory memory;
        Crowd crowd;
        Crowd* const shared = isCrowd(m_report) ? &crowd : nullptr;
        if (!m_same)
            text += pane("Before", m_report.before, m_index.notesBefore(), frame, nullptr, memory, shared);
        text += pane(m_same ? "Drawing" : "After", m_report.after, m_index.notesAfter(), frame,
                     m_same ? nullptr : &m_report.before, memory, shared);
        return text + "</div>\n" + legend() + "</section>\n";
    }

    static std::string pane(std::string_view name, const Document& document, const PictureNotes& notes,
                            const Frame& frame, const Document* ghost, SpotMemory& memory, Crowd* crowd) {
        const std::string width = decimal(frame.width, 2), height = decimal(frame.height, 2);
        return "<figure>\n<figcaption><h2>" + std::string(name) + "</h2><span>" +
               counted(document.entities.size(), "entity") + ", " + counted(document.constraints.size(), "constraint") +
               "</span></figcaption>\n<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"picture\" viewBox=\"0 0 " +
               width + " " + height + "\" tabindex=\"0\" role=\"img\" aria-label=\"" + std::string(name) + "\">\n" +
               pictureBody({.document = document,
                            .notes = notes,
                            .frame = frame,
                            .ghost = ghost,
                            .overscan = 1.0,
                            .marks = true,
                            .dimensionLines = true,
                            .names = false,
                            .memory = &memory,
                            .colours = nullptr,
                            .crowd = crowd}) +
               "</svg>\n</figure>\n";
    }

    static std::string swatch(std::string_view classes, std::string_view name) {
        return "<span><svg class=\"swatch\" viewBox=\"0 0 28 8\" aria-hidden=\"true\"><path class=\"" +
               std::string(classes) + "\" d=\"M1 4H27\"/></svg>" + std::string(name) + "</span> ";
    }

    bool hasEntity(bool Entity::*flag) const {
        return std::any_of(m_report.after.entities.begin(), m_report.after.entities.end(),
                           [flag](const Entity& entity) { return entity.*flag; });
    }

    /// The kinds of lines that the pictures have, and no others.
    std::string legend() const {
        std::string text = "<p class=\"legend\">";
        const auto counts = countFates(m_report.entities);
        for (const EntityFate fate : kEntityFates)
            if (fate != EntityFate::untouched && counts[static_cast<std::size_t>(fate)] > 0)
                text += swatch("e " + std::string(fateClass(fate)), fateName(fate));
        if (hasEntity(&Entity::construction))
            text += swatch("e construction", "construction");
        if (hasEntity(&Entity::fixed))
            text += swatch("e fixed", "fixed");
        if (!m_same)
            text += swatch("ghost", "where it was");
        if (isCrowd(m_report))
            text += "<span class=\"left-out\">the pictures leave out the signs of what was kept</span> ";
        return text +
               "<span class=\"keys\">Drag to pan, Ctrl + wheel to zoom, double click for a closer look; click a row to "
               "find it.</span></p>\n";
    }

    std::string footer() const {
        std::string text = "<footer>Drawn by Holdfast.";
        if (m_report.after.source && !m_report.after.source->repository.empty())
            text += " Drawing from " + escaped(m_report.after.source->repository) + ".";
        if (!m_report.after.license.empty())
            text += " Licence of the drawing: " + escaped(m_report.after.license) + ".";
        return text + "</footer>\n";
    }

    const FateReport& m_report;
    ReportIndex m_index;
    const LiveView* m_view;
    Box m_window;
    bool m_wide = false, m_same = false;
};

}  // namespace

std::string writeHtmlReport(FateReport report) {
    const FateReport whole = completed(std::move(report));
    return Page(whole, nullptr).text();
}

std::string writeHtmlReport(const FateReport& whole, const LiveView& view) {
    return Page(whole, &view).text();
}

}  // namespace holdfast::report
