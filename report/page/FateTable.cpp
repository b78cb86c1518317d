#include "report/page/FateTable.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "report/page/ParameterFates.h"
#include "report/page/ReportIndex.h"
#include "report/page/Wording.h"
#include "report/picture/Markup.h"

namespace holdfast::report {

namespace {

using Cells = std::array<std::string, 5>;

struct Row {
    Cells cells;
    std::string_view colour;  ///< of the first cell
    bool running = false;     ///< the second cell runs over the columns behind it, which are empty
};

constexpr std::string_view kReset = "\x1b[0m", kBold = "\x1b[1m", kFaint = "\x1b[2m";

std::string_view colourOf(ConstraintFate fate) {
    static constexpr std::array<std::string_view, kConstraintFates.size()> colours{"\x1b[31m", "\x1b[33m", "\x1b[33m",
                                                                                   "\x1b[32m", "\x1b[32m", kFaint};
    return colours[static_cast<std::size_t>(fate)];
}

std::string_view colourOf(EntityFate fate) {
    static constexpr std::array<std::string_view, kEntityFates.size()> colours{"\x1b[31m", "\x1b[34m", "\x1b[32m",
                                                                               "\x1b[32m", "\x1b[35m", kFaint};
    return colours[static_cast<std::size_t>(fate)];
}

/// Text that a terminal shows and does not obey: no control characters (C0, DEL, C1), no broken UTF-8.
std::string shown(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const std::size_t size = characterLength(text);
        const std::string_view character = text.substr(0, std::max<std::size_t>(size, 1));
        const auto first = static_cast<unsigned char>(character.front());
        const bool c1 = size == 2 && first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;
        if (character == "\n" || character == "\t")
            out += ' ';
        else if (size == 0 || first < 0x20 || first == 0x7F || c1)
            out += "\xEF\xBF\xBD";
        else
            out += character;
        text.remove_prefix(character.size());
    }
    return out;
}

std::string padded(const std::string& text, std::size_t width) {
    const std::size_t size = textLength(text);
    return size < width ? text + std::string(width - size, ' ') : text;
}

/// Words in lines of at most so many columns; a longer word stands alone.
std::vector<std::string> wrapped(const std::string& text, std::size_t width) {
    std::vector<std::string> lines(1);
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        const std::string word = text.substr(at, end - at);
        if (!lines.back().empty() && textLength(lines.back()) + 1 + textLength(word) > width)
            lines.emplace_back();
        lines.back() += (lines.back().empty() ? "" : " ") + word;
        at = end + 1;
    }
    return lines;
}

/// Rows of aligned cells under a headline; the last cell may run on over several lines.
class Table {
public:
    Table(const TableStyle& style, Cells headline) : m_style(style) { add({std::move(headline), {}}); }

    void add(Row row) {
        for (std::string& cell : row.cells)
            cell = shown(cell);
        m_rows.push_back(std::move(row));
    }

    bool hasRows() const { return m_rows.size() > 1; }

    std::string text() const {
        const auto widths = columnWidths();
        std::string text;
        // Sums alone need no headline.
        const bool hasCells =
            std::any_of(m_rows.begin() + 1, m_rows.end(), [](const Row& row) { return !row.running; });
        for (std::size_t i = hasCells ? 0 : 1; i < m_rows.size(); ++i)
            text += line(m_rows[i], widths, i == 0);
        return text;
    }

private:
    static constexpr std::size_t kLast = std::tuple_size_v<Cells> - 1;
    static constexpr std::size_t kLeastReason = 24;

    /// Columns without any content have none; the headline alone makes no column.
    std::array<std::size_t, kLast> columnWidths() const {
        std::array<std::size_t, kLast> widths{};
        for (const Row& row : std::span(m_rows).subspan(1))
            for (std::size_t i = 0; i < (row.running ? 1 : kLast); ++i)
                widths[i] = std::max(widths[i], textLength(row.cells[i]));
        for (std::size_t i = 0; i < kLast; ++i)
            if (widths[i] > 0)
                widths[i] = std::max(widths[i], textLength(m_rows.front().cells[i]));
        return widths;
    }

    std::string line(const Row& row, const std::array<std::size_t, kLast>& widths, bool isHead) const {
        if (row.running)
            return coloured(padded(row.cells[0], widths[0]), row.colour) + "  " + row.cells[1] + "\n";
        std::string text;
        std::size_t indent = 0;
        for (std::size_t i = 0; i < kLast; ++i) {
            if (widths[i] == 0)
                continue;
            text += coloured(padded(row.cells[i], widths[i]), isHead ? kFaint : i == 0 ? row.colour : "") + "  ";
            indent += widths[i] + 2;
        }
        const std::size_t room = m_style.width == 0
                                     ? std::string::npos
                                     : std::max(kLeastReason, m_style.width - std::min(m_style.width, indent));
        const std::vector<std::string> reason = wrapped(row.cells[kLast], room);
        text += isHead ? coloured(reason.front(), kFaint) : reason.front();
        if (text.back() == ' ')
            text.erase(text.find_last_not_of(' ') + 1);
        text += '\n';
        for (std::size_t i = 1; i < reason.size(); ++i)
            text += std::string(indent, ' ') + reason[i] + '\n';
        return text;
    }

    std::string coloured(const std::string& text, std::string_view colour) const {
        return m_style.colours && !colour.empty() && !text.empty() ? std::string(colour) + text + std::string(kReset)
                                                                   : text;
    }

    const TableStyle& m_style;
    std::vector<Row> m_rows;
};

Row rowOf(const ConstraintOutcome& outcome, const ReportIndex& index) {
    const Constraint* constraint = index.constraint(outcome.constraint);
    std::string kind, on;
    if (constraint != nullptr) {
        kind = std::string(kindName(constraint->type));
        if (const std::string value = valueText(*constraint); !value.empty())
            kind += " " + value;
        on = placeNames(*constraint);
    }
    return {{std::string(fateName(outcome.fate)), outcome.constraint, kind, on, explanation(outcome, "->")},
            colourOf(outcome.fate),
            false};
}

Row rowOf(const EntityOutcome& outcome, const ReportIndex& index, const std::string& unit) {
    return {{std::string(fateName(outcome.fate)),
             outcome.entity,
             std::string(index.kindOf(outcome.entity)),
             {},
             explanation(outcome, unit, "->")},
            colourOf(outcome.fate)};
}

Row rowOf(const ParameterOutcome& outcome) {
    return {{outcome.fate, outcome.name, {}, {}, outcome.explanation("->")},
            outcome.fate == "deleted"   ? colourOf(ConstraintFate::deleted)
            : outcome.fate == "changed" ? colourOf(ConstraintFate::changed)
            : outcome.fate == "added"   ? colourOf(ConstraintFate::added)
                                        : colourOf(ConstraintFate::kept)};
}

std::string foldedCount(std::size_t count, bool afterOthers, std::string_view noun) {
    return afterOthers ? "and " + std::to_string(count) + " more" : counted(count, noun);
}

/// Adds rows fate by fate. Without verbose a long fate is cut and what stayed as it was is only counted.
template <typename Outcome, typename Fate, typename MakeRow>
void addFates(Table& table, const std::vector<Outcome>& outcomes, Fate stayed, std::string_view noun,
              const TableStyle& style, MakeRow makeRow) {
    std::span<const Outcome> rest(outcomes);
    while (!rest.empty()) {
        const Fate fate = rest.front().fate;
        const auto end =
            std::find_if(rest.begin(), rest.end(), [fate](const Outcome& each) { return each.fate != fate; });
        const auto count = static_cast<std::size_t>(end - rest.begin());
        const std::size_t most = style.verbose ? count : fate == stayed ? 0 : style.fold;
        for (const Outcome& outcome : rest.first(std::min(count, most)))
            table.add(makeRow(outcome));
        if (count > most)
            table.add({{std::string(fateName(fate)), foldedCount(count - most, most > 0, noun), {}, {}, {}},
                       colourOf(fate),
                       true});
        rest = rest.subspan(count);
    }
}

std::string editLines(const FateReport& report, const TableStyle& style) {
    std::string text;
    for (const EditOutcome& edit : report.edits) {
        const std::string line = shown(edit.text);
        text += style.colours ? std::string(kBold) + line + std::string(kReset) + "\n" : line + "\n";
        if (!edit.done())
            text += (style.colours ? "  \x1b[31mrefused\x1b[0m: " : "  refused: ") + shown(edit.error) + "\n";
        for (const std::string& remark : edit.remarks)
            text += "  " + shown(remark) + "\n";
    }
    return text.empty() ? text : text + "\n";
}

std::string solverLine(const SolverFigures& solver) {
    std::string text;
    const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
    if (solver.degreesOfFreedom)
        add(*solver.degreesOfFreedom == 1 ? "1 degree of freedom"
                                          : std::to_string(*solver.degreesOfFreedom) + " degrees of freedom");
    if (solver.iterations)
        add(*solver.iterations == 1 ? "1 solver iteration" : std::to_string(*solver.iterations) + " solver iterations");
    if (solver.worstResidual)
        add("worst residual " + residualText(*solver.worstResidual));
    return text.empty() ? text : text + "\n";
}

std::string constraintTotals(const FateReport& report) {
    const auto counts = countFates(report.constraints);
    std::string text;
    for (const ConstraintFate fate : kConstraintFates)
        if (const std::size_t count = counts[static_cast<std::size_t>(fate)]; count > 0)
            text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + std::string(fateName(fate));
    return text.empty() ? "no constraints" : text;
}

std::string entityTotals(const FateReport& report) {
    const auto counts = countFates(report.entities);
    double longest = 0.0;
    for (const EntityOutcome& outcome : report.entities)
        longest = std::max(longest, outcome.fate == EntityFate::followed ? outcome.movedBy : 0.0);
    std::string text;
    for (const EntityFate fate : kEntityFates) {
        const std::size_t count = counts[static_cast<std::size_t>(fate)];
        if (count == 0)
            continue;
        text += text.empty() ? counted(count, "entity") : ", " + std::to_string(count);
        text += " " + std::string(fateName(fate));
        if (fate == EntityFate::followed && longest > 0.0)
            text += " by up to " + measure(longest) + " " + shown(report.after.lengthUnit);
    }
    return text.empty() ? "no entities" : text;
}

}  // namespace

std::string fateSummary(FateReport report) {
    const FateReport whole = completed(std::move(report));
    return constraintTotals(whole) + "; " + entityTotals(whole);
}

std::string writeFateTable(FateReport report, const TableStyle& style) {
    const FateReport whole = completed(std::move(report));
    const ReportIndex index(whole);
    std::string text = editLines(whole, style);
    Table constraints(style, {"FATE", "CONSTRAINT", "KIND", "ON", "WHY"});
    addFates(constraints, whole.constraints, ConstraintFate::kept, "constraint", style,
             [&](const ConstraintOutcome& outcome) { return rowOf(outcome, index); });
    Table entities(style, {"FATE", "ENTITY", "KIND", "", "HOW FAR"});
    addFates(entities, whole.entities, EntityFate::untouched, "entity", style,
             [&](const EntityOutcome& outcome) { return rowOf(outcome, index, whole.after.lengthUnit); });
    for (const Table* table : {&constraints, &entities})
        if (table->hasRows())
            text += table->text() + "\n";
    Table parameters(style, {"FATE", "PARAMETER", "", "", "VALUE"});
    for (const ParameterOutcome& outcome : parameterOutcomes(whole))
        parameters.add(rowOf(outcome));
    if (parameters.hasRows())
        text += parameters.text() + "\n";
    text += constraintTotals(whole) + "; " + entityTotals(whole) + "\n";
    return whole.solver ? text + solverLine(*whole.solver) : text;
}

}  // namespace holdfast::report
