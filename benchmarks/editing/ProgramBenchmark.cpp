// The way of one edit through the program, and each step's share of it: load, open, break the first line, solve,
// write, report. Processor time, medians. What the module takes includes the host's operations that it calls.

#include <cstdio>
#include <optional>
#include <string>

#include "benchmarks/Timing.h"
#include "commands/break/ConstraintBreakCmdCenter.h"
#include "editing/Session.h"
#include "formats/FileIo.h"
#include "formats/json/JsonWriter.h"
#include "host/model/state/HostAccess.h"
#include "hosting/Drawing.h"
#include "hosting/HostShapes.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "report/page/HtmlReport.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::editing {

using namespace formats;
using namespace report;
namespace {

struct Step {
    const char* name;
    double time;
};

const Entity* firstLine(const Document& document) {
    for (const Entity& entity : document.entities)
        if (std::holds_alternative<LineShape>(entity.shape) && !entity.fixed)
            return &entity;
    return nullptr;
}

Vec2 at(const LineShape& line, double share) {
    return {line.start.x + share * (line.end.x - line.start.x), line.start.y + share * (line.end.y - line.start.y)};
}

YxGePoint3d point3(Vec2 p) {
    return {p.x, p.y, 0.0};
}

std::string breakOf(const Entity& entity) {
    const auto& line = std::get<LineShape>(entity.shape);
    const Vec2 from = at(line, 0.4), to = at(line, 0.6);
    char text[200];
    std::snprintf(text, sizeof text, "break %s at %.17g,%.17g to %.17g,%.17g", entity.id.c_str(), from.x, from.y, to.x,
                  to.y);
    return text;
}

/// The calls of a break's command centre alone, on a drawing that is open; the host's own half is not timed.
double moduleTime(const Document& document, const Entity& entity) {
    std::optional<Drawing> drawing;
    const auto& line = std::get<LineShape>(entity.shape);
    return medianTime(
        [&] {
            drawing.reset();
            drawing.emplace(document);
        },
        [&] {
            ConstraintBreakCmdCenter centre;
            YxDbEntity& resident = drawing->entity(entity.id);
            centre.setPtParam(&resident, point3(at(line, 0.4)), point3(at(line, 0.6)));
            const std::unique_ptr<YxDbEntity> piece = makeEntity(LineShape{line.start, at(line, 0.4)});
            for (const YxDbObjectId& reactor : HostAccess::reactors(resident))
                HostAccess::addReactor(*piece, reactor);
            centre.setFirstCurve(drawing->id(entity.id), piece.get());
            centre.deleteConstraint();
        });
}

int measure(const std::string& path) {
    const Document document = readDrawing(path);
    const Entity* line = firstLine(document);
    if (line == nullptr) {
        std::fprintf(stderr, "%s has no line to break\n", path.c_str());
        return 2;
    }
    const std::string edit = breakOf(*line);
    const auto nothing = [] {};
    std::optional<Session> session;
    const auto open = [&] {
        session.reset();
        session.emplace(document);
    };
    std::optional<SketchData> sketch;
    std::string text;
    Step steps[] = {{"load", medianTime(nothing, [&] { readDrawing(path); })},
                    {"open in the host", medianTime(nothing, open)},
                    {"edit", medianTime(open, [&] { session->apply(edit); })},
                    {"solve", medianTime([&] { sketch = sketchFrom(document); }, [&] { solve(*sketch, {}); })},
                    {"write", medianTime(nothing, [&] { text = jsonText(session->document()); })},
                    {"report", medianTime(nothing, [&] { text = writeHtmlReport(session->report()); })}};
    session.reset();
    double total = 0.0;
    for (const Step& step : steps)
        total += step.time;
    std::printf("%s: %zu entities, %zu constraints; %s\n", document.name.c_str(), document.entities.size(),
                document.constraints.size(), edit.substr(0, edit.find(" at")).c_str());
    std::printf("%-24s %10s %8s\n", "step", "ms", "share");
    for (const Step& step : steps)
        std::printf("%-24s %10.3f %7.1f%%\n", step.name, step.time, 100.0 * step.time / total);
    std::printf("%-24s %10.3f\n", "all (at most 100)", total);
    const double module = moduleTime(document, *line);
    std::printf("%-24s %10.3f %7.1f%%\n", "the module (at most 1)", module, 100.0 * module / total);
    return 0;
}

}  // namespace
}  // namespace holdfast::editing

int main(int argc, char** argv) {
    return holdfast::editing::measure(argc > 1 ? argv[1] : HOLDFAST_EXAMPLES "/drawings/honeycomb-grille.json");
}
