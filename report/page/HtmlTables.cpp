#include "report/page/HtmlTables.h"

#include "report/page/ParameterFates.h"

#include <algorithm>
#include <span>

#include "report/marks/Glyphs.h"
#include "report/page/Wording.h"
#include "report/picture/Markup.h"
#include "report/picture/Picture.h"

namespace holdfast::report {

namespace {

constexpr std::size_t kLongestOpenList = 12;  // kept constraints beyond this wait behind a fold
constexpr std::size_t kMostRows = 2000;       // of a crowd

std::string cell(std::string_view classes, const std::string& content) {
    return "<td class=\"" + std::string(classes) + "\">" + content + "</td>";
}

std::string fateCell(std::string_view classes, std::string_view name) {
    // What was kept comes in hundreds and needs no sign to stand out.
    const std::string icon = classes == fateClass(ConstraintFate::kept) ? std::string() : fateIcon(classes);
    return cell("fate", icon + "<span>" + std::string(name) + "</span>");
}

std::string tokens(const std::vector<std::string>& ids) {
    std::string all;
    for (const std::string& id : ids)
        all += (all.empty() ? "" : " ") + idToken(id);
    return all;
}

std::string movesText(const ConstraintOutcome& outcome) {
    if (outcome.moves.empty())
        return {};
    const ConstraintOutcome movesOnly{
        .constraint = {}, .fate = outcome.fate, .reason = {}, .moves = outcome.moves, .edit = {}};
    return "<span class=\"moves\">" + escaped(explanation(movesOnly, "\u2192")) + "</span>";
}

class ConstraintRows {
public:
    /// Which edit did it is told where there is more than one.
    ConstraintRows(const FateReport& report, const ReportIndex& index) : m_index(index) {
        for (const ConstraintOutcome& outcome : report.constraints)
            m_withEdit = m_withEdit || (report.edits.size() > 1 && outcome.edit.has_value());
    }

    /// A line each, as a reader of the table would read it aloud.
    std::string lines(std::span<const ConstraintOutcome> outcomes) const {
        std::string text;
        for (const ConstraintOutcome& outcome : outcomes) {
            std::string why = explanation(outcome, "\u2192");
            if (outcome.fate != ConstraintFate::kept)
                why = std::string(fateName(outcome.fate)) + (why.empty() ? "" : ": ") + why;
            text += escaped(titleOf(m_index, outcome.constraint) + besides(outcome.constraint));
            text += (why.empty() ? "" : "  ") + escaped(why) + "\n";
        }
        return "<pre class=\"ids\">" + text + "</pre>\n";
    }

    std::string table(std::span<const ConstraintOutcome> outcomes) const {
        std::string text =
            "<table class=\"constraints\">\n<thead><tr><th scope=\"col\">Fate</th><th scope=\"col\">Id"
            "</th><th scope=\"col\">Constraint</th><th scope=\"col\">On</th>";
        text += std::string(m_withEdit ? "<th scope=\"col\">Edit</th>" : "") +
                "<th scope=\"col\">Why</th></tr></thead>\n<tbody>\n";
        for (const ConstraintOutcome& outcome : outcomes)
            text += row(outcome);
        return text + "</tbody>\n</table>\n";
    }

private:
    std::string row(const ConstraintOutcome& outcome) const {
        const Constraint* constraint = m_index.constraint(outcome.constraint);
        const std::string_view classes = fateClass(outcome.fate);
        std::string text = "<tr" + attribute("class", "row " + std::string(classes)) +
                           attribute("data-c", idToken(outcome.constraint)) +
                           attribute("data-e", tokens(m_index.entitiesOf(outcome.constraint))) + " tabindex=\"0\">" +
                           fateCell(classes, fateName(outcome.fate)) + cell("id", escaped(outcome.constraint)) +
                           cell("kind", kindText(constraint)) +
                           cell("on", constraint == nullptr ? std::string() : escaped(placeNames(*constraint)));
        if (m_withEdit)
            text += cell("edit", outcome.edit ? std::to_string(*outcome.edit + 1) : std::string());
        return text + cell("why", movesText(outcome) + escaped(outcome.reason)) + "</tr>\n";
    }

    std::string besides(const std::string& id) const {
        const Constraint* constraint = m_index.constraint(id);
        if (constraint == nullptr)
            return {};
        return (constraint->name.empty() ? "" : "  " + constraint->name) +
               (constraint->formula.empty() ? "" : "  = " + constraint->formula) +
               (constraint->active ? "" : "  (switched off)");
    }

    static std::string kindText(const Constraint* constraint) {
        if (constraint == nullptr)
            return {};
        std::string text = inlineGlyph(constraint->type) + escaped(kindName(constraint->type));
        if (!constraint->name.empty())
            text += " <i>" + escaped(constraint->name) + "</i>";
        if (const std::string value = valueText(*constraint); !value.empty())
            text += " <b>" + escaped(value) + "</b>";
        if (!constraint->formula.empty())
            text += " <i>= " + escaped(constraint->formula) + "</i>";
        return constraint->active ? text : text + " <i>(switched off)</i>";
    }

    const ReportIndex& m_index;
    bool m_withEdit = false;
};

std::string section(std::string_view id, std::string_view heading, const std::string& content) {
    return "<section id=\"" + std::string(id) + "\">\n<h2>" + std::string(heading) + "</h2>\n" + content +
           "</section>\n";
}

/// What a table has no more rows for.
std::string folded(const std::string& count, const std::string& lines) {
    return "<details><summary>" + count + " more</summary>\n" + lines + "</details>\n";
}

std::string entityRow(const EntityOutcome& outcome, const ReportIndex& index, const std::string& unit) {
    const std::string_view classes = fateClass(outcome.fate);
    return "<tr" + attribute("class", "erow " + std::string(classes)) + attribute("data-e", idToken(outcome.entity)) +
           " tabindex=\"0\">" + fateCell(classes, fateName(outcome.fate)) + cell("id", escaped(outcome.entity)) +
           cell("kind", escaped(index.kindOf(outcome.entity))) +
           cell("why", escaped(explanation(outcome, unit, "\u2192"))) + "</tr>\n";
}

}  // namespace

std::string_view fateClass(ConstraintFate fate) {
    static constexpr std::array<std::string_view, kConstraintFates.size()> names{"deleted", "pointed", "pointed",
                                                                                 "added",   "added",   "kept"};
    return names[static_cast<std::size_t>(fate)];
}

std::string_view fateClass(EntityFate fate) {
    return fateName(fate == EntityFate::restored ? EntityFate::created : fate);
}

std::string fateIcon(std::string_view classes) {
    struct Icon {
        std::string_view classes, drawing;
    };
    static constexpr std::array<Icon, 9> icons{{
        {"deleted", "<path d=\"M-4 -4L4 4M-4 4L4 -4\"/>"},
        {"pointed", "<path d=\"M-5 0H4.4M.8 -3.8L4.6 0L.8 3.8\"/>"},
        {"added", "<path d=\"M-5 0H5M0 -5V5\"/>"},
        {"kept", "<path d=\"M-4.6 .2L-1.6 3.2L4.8 -3.6\"/>"},
        {"erased", "<path d=\"M-4 -4L4 4M-4 4L4 -4\"/>"},
        {"edited", "<path d=\"M-5 5L-4.2 1.8L2.6 -5L5 -2.6L-1.8 4.2Z\"/>"},
        {"created", "<path d=\"M-5 0H5M0 -5V5\"/>"},
        {"followed", "<path d=\"M-5.4 0H-2M0 0H4.6M1.4 -3.6L4.8 0L1.4 3.6\"/>"},
        {"untouched", "<path d=\"M-4.6 .2L-1.6 3.2L4.8 -3.6\"/>"},
    }};
    for (const Icon& icon : icons)
        if (icon.classes == classes)
            return "<svg class=\"icon\" viewBox=\"-8 -8 16 16\" aria-hidden=\"true\">" + std::string(icon.drawing) +
                   "</svg>";
    return {};
}

bool isCrowd(const FateReport& report) {
    return report.constraints.size() + report.entities.size() > kCrowd;
}

std::string constraintSection(const FateReport& report, const ReportIndex& index) {
    if (report.constraints.empty())
        return section("constraints", "Constraints", "<p class=\"none\">The drawing has none.</p>\n");
    const ConstraintRows rows(report, index);
    const std::span<const ConstraintOutcome> all(report.constraints);
    const std::size_t kept = countFates(report.constraints)[static_cast<std::size_t>(ConstraintFate::kept)];
    const std::size_t changed = all.size() - kept;
    const std::size_t listed = isCrowd(report) ? std::min(changed, kMostRows) : changed;
    std::string content =
        changed == 0 ? "<p class=\"none\">Every constraint was kept.</p>\n" : rows.table(all.first(listed));
    if (listed < changed)
        content += folded(counted(changed - listed, "constraint"), rows.lines(all.subspan(listed, changed - listed)));
    if (kept > 0)
        content += std::string("<details class=\"keeps\"") + (kept <= kLongestOpenList ? " open=\"open\"" : "") +
                   "><summary>" + counted(kept, "constraint") + " kept</summary>\n" +
                   (isCrowd(report) ? rows.lines(all.last(kept)) : rows.table(all.last(kept))) + "</details>\n";
    return section("constraints", "Constraints", content);
}

std::string entitySection(const FateReport& report, const ReportIndex& index) {
    std::string rows, lines, untouched;
    std::size_t listed = 0, unlisted = 0, rest = 0;
    for (const EntityOutcome& outcome : report.entities) {
        if (outcome.fate == EntityFate::untouched) {
            untouched += isCrowd(report) ? escaped(outcome.entity) + " "
                                         : "<span" + attribute("data-e", idToken(outcome.entity)) + ">" +
                                               escaped(outcome.entity) + "</span> ";
            ++rest;
        } else if (isCrowd(report) && listed == kMostRows) {
            lines += escaped(outcome.entity + ": " + std::string(fateName(outcome.fate)) + "  " +
                             explanation(outcome, report.after.lengthUnit, "\u2192")) +
                     "\n";
            ++unlisted;
        } else {
            rows += entityRow(outcome, index, report.after.lengthUnit);
            ++listed;
        }
    }
    std::string content = rows.empty() ? "<p class=\"none\">No entity changed.</p>\n"
                                       : "<table class=\"entities\">\n<thead><tr><th scope=\"col\">Fate</th>"
                                         "<th scope=\"col\">Id</th><th scope=\"col\">Kind</th><th scope=\"col\">How far"
                                         "</th></tr></thead>\n<tbody>\n" +
                                             rows + "</tbody>\n</table>\n";
    if (unlisted > 0)
        content += folded(counted(unlisted, "entity"), "<pre class=\"ids\">" + lines + "</pre>\n");
    if (rest > 0)
        content += "<details><summary>" + counted(rest, "entity") + " untouched</summary>\n<p class=\"ids\">" +
                   untouched + "</p></details>\n";
    return section("entities", "Entities", content);
}

std::string parameterSection(const FateReport& report) {
    std::string rows;
    for (const ParameterOutcome& outcome : parameterOutcomes(report)) {
        const std::string_view classes = outcome.fate == "changed" ? "pointed" : std::string_view(outcome.fate);
        rows += "<tr" + attribute("class", "prow " + std::string(classes)) + ">" + fateCell(classes, outcome.fate) +
                cell("id", escaped(outcome.name)) + cell("why", escaped(outcome.explanation("\u2192"))) + "</tr>\n";
    }
    if (rows.empty())
        return {};
    return section("parameters", "Parameters",
                   "<table class=\"entities\">\n<thead><tr><th scope=\"col\">Fate</th><th scope=\"col\">Name</th>"
                   "<th scope=\"col\">Value</th></tr></thead>\n<tbody>\n" +
                       rows + "</tbody>\n</table>\n");
}

}  // namespace holdfast::report
