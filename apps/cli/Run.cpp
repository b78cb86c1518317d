#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <iomanip>
#include <iostream>
#include <optional>

#include "apps/cli/Commands.h"
#include "apps/cli/EditRun.h"
#include "apps/cli/batch/InOrder.h"
#include "apps/cli/batch/Script.h"
#include "apps/cli/batch/ScriptFiles.h"
#include "apps/cli/files/DrawingFiles.h"
#include "apps/cli/files/OutputFiles.h"
#include "apps/cli/telling/Progress.h"
#include "apps/cli/telling/Teller.h"
#include "apps/cli/telling/Terminal.h"
#include "editing/Session.h"
#include "report/page/ReportObject.h"
#include "report/page/Wording.h"
#include "report/picture/Markup.h"

namespace holdfast::cli {

namespace {

/// What the table and the JSON tell of one drawing, or of all.
struct Totals {
    std::size_t done = 0, edits = 0;
    std::array<std::size_t, kConstraintFates.size()> constraints{};
    std::array<std::size_t, kEntityFates.size()> entities{};

    void count(const FateReport& report) {
        constraints = countFates(report.constraints);
        entities = countFates(report.entities);
    }
    void add(const Totals& more) {
        done += more.done;
        edits += more.edits;
        for (std::size_t i = 0; i < constraints.size(); ++i)
            constraints[i] += more.constraints[i];
        for (std::size_t i = 0; i < entities.size(); ++i)
            entities[i] += more.entities[i];
    }
    std::size_t of(ConstraintFate fate) const { return constraints[static_cast<std::size_t>(fate)]; }
    std::size_t of(EntityFate fate) const { return entities[static_cast<std::size_t>(fate)]; }
};

/// What became of one drawing of a script.
struct Line {
    std::string drawing;
    Totals totals;
    std::optional<ErrorReport> error;
    bool isSkipped = false;            ///< it had been saved by an earlier run
    nlohmann::ordered_json fates;      ///< as `edit` tells them; only where programs ask
    std::vector<std::string> remarks;  ///< for standard error
};

/// The work on the drawings of a script.
class Runner {
public:
    Runner(const RunOptions& options, const std::vector<ScriptPart>& parts)
        : m_options(options), m_parts(parts), m_lines(parts.size()) {}

    /// Throws nothing.
    void work(std::size_t number) {
        KeptComplaints kept;
        Line& line = m_lines[number];
        line.drawing = m_parts[number].drawing.substr(m_parts[number].drawing.find_last_of('/') + 1);
        line.totals.edits = m_parts[number].edits.size();
        try {
            if (m_options.resumes && isSavedAlready(m_parts[number], m_options.script))
                line.isSkipped = true;
            else
                edit(m_parts[number], line);
        } catch (...) {
            line.error = reportOfCurrent();
            nameScript(*line.error, m_parts[number].line);
        }
        line.remarks = kept.taken();
    }

    Line& line(std::size_t number) { return m_lines[number]; }
    const std::vector<Line>& lines() const { return m_lines; }

private:
    void edit(const ScriptPart& part, Line& line) const {
        const DrawingTarget target{part.output, m_options.to};
        OutputFiles outputs{drawingNamed(target)};
        DrawingFile file = readDrawingFor(target, {part.drawing, m_options.from});
        Session session(std::move(file.document));
        applyAll(session, part, line);
        const FateReport report = completed(m_options.telling.isForPrograms() ? reportOf(session) : session.report());
        line.totals.count(report);
        if (m_options.telling.isForPrograms())
            line.fates = reportJson(report);
        if (line.error)
            return;
        outputs.addDrawing(target, session.document(), file);
        outputs.write();
    }

    void applyAll(Session& session, const ScriptPart& part, Line& line) const {
        for (std::size_t& done = line.totals.done; done < part.edits.size(); ++done) {
            session.giveTies(!m_options.noTies && part.ties[done]);
            const EditResult& result = session.apply(part.edits[done]);
            if (result.outcome.done())
                continue;
            line.error = reportOf(result, done);
            line.error->message =
                "line " + std::to_string(part.lines[done]) + ", " + part.edits[done] + ": " + result.outcome.error;
            nameScript(*line.error, part.lines[done]);
            return;
        }
    }

    /// Where the error names no file, the script is to blame.
    void nameScript(ErrorReport& error, int line) const {
        if (!error.file.empty())
            return;
        error.file = m_options.script;
        error.line = line;
    }

    const RunOptions& m_options;
    const std::vector<ScriptPart>& m_parts;
    std::vector<Line> m_lines;
};

void tellRow(const std::string& name, int width, const Totals& totals) {
    std::cout << std::left << std::setw(width) << name << std::right << std::setw(8)
              << std::to_string(totals.done) + "/" + std::to_string(totals.edits) << std::setw(9)
              << totals.of(ConstraintFate::deleted) << std::setw(12) << totals.of(ConstraintFate::rePointed)
              << std::setw(7) << totals.of(ConstraintFate::kept) << std::setw(10) << totals.of(EntityFate::followed)
              << '\n';
}

void tellSummary(const std::vector<Line>& lines) {
    const std::string all = report::counted(lines.size(), "drawing");
    std::size_t width = all.size();
    for (const Line& line : lines)
        width = std::max(width, report::textLength(line.drawing));
    std::cout << std::left << std::setw(static_cast<int>(width) + 2) << "drawing" << std::right << std::setw(8)
              << "edits" << std::setw(9) << "deleted" << std::setw(12) << "re-pointed" << std::setw(7) << "kept"
              << std::setw(10) << "followed" << '\n';
    Totals sum;
    for (const Line& line : lines) {
        sum.add(line.totals);
        // setw counts bytes; the columns count characters.
        const std::size_t bytes = width + 2 + line.drawing.size() - report::textLength(line.drawing);
        tellRow(line.drawing, static_cast<int>(bytes), line.totals);
        if (line.isSkipped)
            std::cout << "  left as it was saved before\n";
        if (line.error)
            std::cout << "  refused: " << line.error->message << '\n';
    }
    tellRow(all, static_cast<int>(width) + 2, sum);
}

template <typename Fates>
nlohmann::ordered_json countsJson(const Fates& fates, const Totals& totals) {
    nlohmann::ordered_json json = nlohmann::ordered_json::object();
    for (const auto fate : fates)
        json[std::string(fateName(fate))] = totals.of(fate);
    return json;
}

/// Rows of what nothing has become of are left out.
nlohmann::ordered_json withoutFate(const nlohmann::ordered_json& rows, std::string_view fate) {
    nlohmann::ordered_json told = nlohmann::ordered_json::array();
    for (const nlohmann::ordered_json& row : rows)
        if (row.at("fate") != fate)
            told.push_back(row);
    return told;
}

nlohmann::ordered_json jsonOf(const Line& line) {
    nlohmann::ordered_json json{{"drawing", line.drawing}, {"done", line.totals.done}, {"edits", line.totals.edits}};
    if (line.isSkipped)
        json["skipped"] = true;
    if (line.error)
        json["error"] = errorJson(*line.error);
    if (!line.fates.is_null()) {
        json["constraints"] = withoutFate(line.fates.at("constraints"), fateName(ConstraintFate::kept));
        json["entities"] = withoutFate(line.fates.at("entities"), fateName(EntityFate::untouched));
    }
    json["totals"] = {{"constraints", countsJson(kConstraintFates, line.totals)},
                      {"entities", countsJson(kEntityFates, line.totals)}};
    return json;
}

/// A line of its own has what `edit` would tell of the drawing alone.
nlohmann::ordered_json lineOf(const Line& line, const std::string& file) {
    nlohmann::ordered_json json{{"file", file}};
    if (line.isSkipped)
        json["skipped"] = true;
    else if (line.error)
        json["error"] = errorJson(*line.error);
    else
        json.update(line.fates);
    return json;
}

int worstExit(const std::vector<Line>& lines) {
    int code = kExitDone;
    for (const Line& line : lines)
        if (line.error)
            code = std::max(code, exitOf(line.error->code));
    return code;
}

void tellAll(const std::vector<Line>& lines, const RunOptions& options) {
    if (options.telling.lines)
        return;  // told already, one by one
    if (!options.telling.json) {
        tellSummary(lines);
        return;
    }
    nlohmann::ordered_json json{{"drawings", nlohmann::ordered_json::array()}};
    for (const Line& line : lines)
        json["drawings"].push_back(jsonOf(line));
    printJson(json, false);
}

/// Standard streams belong to one drawing.
void refuseStreams(const std::vector<ScriptPart>& parts, const RunOptions& options) {
    for (const ScriptPart& part : parts)
        if (part.drawing == kStandardStream || part.output == kStandardStream)
            throw ReportedError({.code = ErrorCode::usage,
                                 .message = scriptPlace(options.script, part.line) +
                                            "standard input and output are for a script with one drawing that is told "
                                            "as text; name a file instead of \"-\"",
                                 .file = options.script,
                                 .line = part.line});
}

int runSeveral(const std::vector<ScriptPart>& parts, const RunOptions& options) {
    refuseStreams(parts, options);
    if (options.resumes)
        refuseToResume(parts, options.script);
    Runner runner(options, parts);
    {
        Progress progress("drawings", parts.size());
        doInOrder({.after = filesBefore(parts),
                   .work =
                       [&](std::size_t number) {
                           runner.work(number);
                           progress.step();
                       },
                   .ended =
                       [&](std::size_t number) {
                           Line& line = runner.line(number);
                           for (const std::string& remark : line.remarks)
                               complain(remark);
                           if (!options.telling.lines)
                               return;
                           printJson(lineOf(line, parts[number].drawing), true);
                           line.fates = {};
                       }},
                  options.threads);
    }
    tellAll(runner.lines(), options);
    return worstExit(runner.lines());
}

}  // namespace

int run(const RunOptions& options) {
    const std::vector<ScriptPart> parts = readScript(options.script);
    const bool showsOne = !options.report.empty() || !options.picture.empty();
    if (parts.size() > 1 && showsOne)
        throw UsageError(options.script, std::to_string(parts.size()) + " drawings",
                         "one, as --report and --picture show one drawing; give each its own script");
    if (parts.size() > 1 || ((options.telling.lines || options.resumes) && !showsOne))
        return runSeveral(parts, options);
    const ScriptPart& part = parts.front();
    return edit({.drawing = {part.drawing, options.from},
                 .edits = part.edits,
                 .script = options.script,
                 .lines = part.lines,
                 .output = {part.output, options.to},
                 .report = options.report,
                 .picture = options.picture,
                 .telling = options.telling,
                 .verbose = options.verbose,
                 .noTies = options.noTies,
                 .ties = part.ties,
                 .ids = options.ids});
}

}  // namespace holdfast::cli
