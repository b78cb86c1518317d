// report_samples FOLDER [DRAWING.json ...]: writes report pages for the browser test.
// plate.html is small with every fate in it; each drawing gets a page with a deletion and a moved line.

#include <filesystem>
#include <fstream>
#include <iostream>

#include "report/page/HtmlReport.h"
#include "tests/report/Samples.h"

namespace {

using namespace holdfast::report;

/// Every fifth line cut to half its length; the constraints on its end are gone.
FateReport shortened(const Document& drawing) {
    FateReport report;
    report.before = report.after = drawing;
    std::size_t number = 0;
    for (Entity& entity : report.after.entities) {
        auto* line = std::get_if<LineShape>(&entity.shape);
        if (line == nullptr || entity.fixed || ++number % 5 != 1)
            continue;
        line->end = {(line->start.x + line->end.x) / 2, (line->start.y + line->end.y) / 2};
        report.entities.push_back({entity.id, EntityFate::edited, 0.0});
        report.edits.push_back({"lengthen " + entity.id + " end to its middle", ""});
        std::erase_if(report.after.constraints, [&](const Constraint& constraint) {
            for (const Place& place : constraint.refs)
                if (place.entity == entity.id && place.kind == PlaceKind::end)
                    return true;
            return false;
        });
    }
    for (ConstraintOutcome& outcome : (report = completed(report)).constraints)
        if (outcome.fate == ConstraintFate::deleted)
            outcome.reason = "the end of its line went to the middle";
    return report;
}

void write(const std::filesystem::path& path, const FateReport& report) {
    std::ofstream(path, std::ios::binary) << writeHtmlReport(report);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: report_samples FOLDER [DRAWING.json ...]\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::filesystem::create_directories(folder);
    write(folder / "plate.html", test::brokenPlate());
    FateReport shapes;
    shapes.before = shapes.after = test::everyShape();
    write(folder / "shapes.html", shapes);
    for (int i = 2; i < argc; ++i) {
        const std::filesystem::path drawing = argv[i];
        write(folder / (drawing.stem().string() + ".html"), shortened(test::readDrawing(drawing)));
    }
    return 0;
}
