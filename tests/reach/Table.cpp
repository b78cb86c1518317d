#include "tests/reach/Table.h"

#include <algorithm>
#include <cstdio>
#include <ostream>

#include "benchmarks/Timing.h"

namespace holdfast::reach {

namespace {

template <class... Values>
std::string formatted(const char* format, Values... values) {
    char text[256];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

std::string head() {
    return formatted("%-9s %-17s %6s %6s %8s %8s %7s %7s %7s %8s %6s %9s %9s %6s %8s %8s\n", "drawings", "edit",
                     "tried", "done", "conflict", "unproven", "how far", "FALSE", "ruined", "released", "sizes",
                     "residual", "CPU s", "no ms", "worst no", "worst ms");
}

std::string lineOf(const Row& row) {
    return formatted("%-9s %-17s %6d %6d %8d %8d %7d %7d %7d %8d %6d %9.1e %9.2f %6.0f %8.0f %8.0f\n",
                     row.drawings.c_str(), row.edit.c_str(), row.tried, row.done, row.proven, row.unproven, row.howFar,
                     row.falseRefusals, row.ruined, row.released, row.sizes, row.residual, row.milliseconds / 1e3,
                     row.refusals.empty() ? 0.0 : medianOf(row.refusals),
                     row.refusals.empty() ? 0.0 : *std::max_element(row.refusals.begin(), row.refusals.end()),
                     row.slowest);
}

constexpr const char* kLegend =
    "conflict: refused, each named constraint is needed for it    unproven: not so    how far: refused otherwise\n"
    "FALSE: refused in one go, reached in steps    ruined: done, but something shrank below a hundredth or turned "
    "over\n"
    "released: constraints given up that stay in steps    sizes: changed ones that could have stayed\n"
    "no ms, worst no: the median and the longest time of what was refused, names included\n";

/// What is wrong with a trial and does not fail the run.
std::string remarkOn(const Trial& trial) {
    std::string remark;
    if (trial.isRuined)
        remark += "; ruined";
    if (trial.releasedInVain > 0)
        remark += formatted("; %d released in vain", trial.releasedInVain);
    if (trial.sizesInVain > 0)
        remark += formatted("; %d sizes could have stayed", trial.sizesInVain);
    if (trial.ending == Ending::conflict && !trial.isProven && !trial.isFalseRefusal())
        remark += "; not proven: " + trial.answer;
    if (trial.ending == Ending::howFar && !trial.isFalseRefusal())
        remark += "; " + trial.answer;
    constexpr double tooLong = 1000.0;
    if (trial.milliseconds > tooLong)
        remark += formatted("; %.0f ms", trial.milliseconds);
    return remark;
}

std::string failureOf(const Trial& trial) {
    if (trial.isFalseRefusal())
        return "; " + std::to_string(trial.steps) + " steps reach it: " + trial.answer;
    if (!(trial.residual <= kExact))
        return formatted("; residual %.1e of the size", trial.residual);
    return "";
}

}  // namespace

void Row::add(const Trial& trial) {
    const bool isConflict = trial.ending == Ending::conflict, isFalse = trial.isFalseRefusal();
    Row one;
    one.tried = 1;
    one.done = trial.ending == Ending::done;
    one.falseRefusals = isFalse;
    one.proven = isConflict && trial.isProven;
    one.unproven = isConflict && !trial.isProven && !isFalse;
    one.howFar = trial.ending == Ending::howFar && !isFalse;
    one.ruined = trial.isRuined;
    one.released = trial.releasedInVain;
    one.sizes = trial.sizesInVain;
    one.residual = trial.residual;
    one.milliseconds = one.slowest = trial.milliseconds;
    if (trial.ending != Ending::done)
        one.refusals = {trial.milliseconds};
    add(one);
}

void Row::add(const Row& other) {
    tried += other.tried;
    done += other.done;
    proven += other.proven;
    unproven += other.unproven;
    howFar += other.howFar;
    falseRefusals += other.falseRefusals;
    ruined += other.ruined;
    released += other.released;
    sizes += other.sizes;
    residual = std::max(residual, other.residual);
    milliseconds += other.milliseconds;
    slowest = std::max(slowest, other.slowest);
    refusals.insert(refusals.end(), other.refusals.begin(), other.refusals.end());
}

Row& Table::rowOf(const std::string& drawings, const std::string& edit) {
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
                                    [&](const Row& row) { return row.drawings == drawings && row.edit == edit; });
    if (found != m_rows.end())
        return *found;
    m_rows.emplace_back();
    m_rows.back().drawings = drawings;
    m_rows.back().edit = edit;
    return m_rows.back();
}

void Table::add(const std::string& drawing, const std::string& drawings, const std::string& edit, const Trial& trial) {
    rowOf(drawings, edit).add(trial);
    const std::string name = drawing + " (" + drawings + ") " + trial.what;
    if (const std::string failure = failureOf(trial); !failure.empty())
        m_failures.push_back(name + failure);
    if (const std::string remark = remarkOn(trial); !remark.empty())
        m_remarks.push_back(name + remark);
}

void Table::add(const Table& other) {
    for (const Row& row : other.m_rows)
        rowOf(row.drawings, row.edit).add(row);
    m_failures.insert(m_failures.end(), other.m_failures.begin(), other.m_failures.end());
    m_remarks.insert(m_remarks.end(), other.m_remarks.begin(), other.m_remarks.end());
}

void Table::print(std::ostream& out, bool withDetails) const {
    Row sum;
    sum.drawings = "all";
    out << head();
    for (const Row& row : m_rows) {
        out << lineOf(row);
        sum.add(row);
    }
    out << lineOf(sum) << kLegend;
    if (!m_failures.empty())
        out << "\nfalse refusals and residuals:\n";
    for (const std::string& failure : m_failures)
        out << "  " << failure << "\n";
    if (!withDetails)
        return;
    out << "\nwhat else is not as it should be, and why edits were refused:\n";
    for (const std::string& remark : m_remarks)
        out << "  " << remark << "\n";
}

bool Table::isGood() const {
    return m_failures.empty();
}

}  // namespace holdfast::reach
