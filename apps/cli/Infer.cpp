#include <nlohmann/json.hpp>

#include <cmath>
#include <iostream>
#include <map>

#include "apps/cli/Commands.h"
#include "apps/cli/files/DrawingFiles.h"
#include "apps/cli/files/OutputFiles.h"
#include "apps/cli/telling/Progress.h"
#include "apps/cli/telling/Teller.h"
#include "apps/cli/telling/Terminal.h"
#include "document/Names.h"
#include "document/OutOfReach.h"
#include "editing/InferredDrawing.h"
#include "geometry/Angles.h"
#include "report/page/Wording.h"

namespace holdfast::cli {

namespace {

struct Inferred : InferredDrawing {
    std::string name;
};

std::map<std::string_view, std::size_t> countsOf(const Inferred& found) {
    std::map<std::string_view, std::size_t> counts;
    for (std::size_t i = found.firstNew; i < found.document.constraints.size(); ++i)
        ++counts[typeName(found.document.constraints[i].type)];
    return counts;
}

void tell(const Inferred& found, const InferOptions& options) {
    const Document& document = found.document;
    std::cout << report::counted(document.constraints.size() - found.firstNew, "constraint") << " put on "
              << report::counted(document.entities.size(), "entity") << '\n';
    for (const auto& [name, count] : countsOf(found))
        std::cout << "  " << name << ": " << count << '\n';
    std::cout << "tolerances: " << shortNumber(found.length) << ' ' << document.lengthUnit << ", "
              << shortNumber(inDegrees(options.angle)) << " degrees\n";
    if (found.thinning.implied > 0)
        std::cout << "left out, because these imply them: " << found.thinning.implied << '\n';
    if (found.thinning.contrary > 0)
        std::cout << "left out, because they cannot hold exactly beside these: " << found.thinning.contrary << '\n';
}

nlohmann::ordered_json jsonOf(const Inferred& found, const InferOptions& options) {
    nlohmann::ordered_json json;
    json["drawing"] = found.name;
    json["entities"] = found.document.entities.size();
    json["added"] = nlohmann::ordered_json::object();
    for (const auto& [name, count] : countsOf(found))
        json["added"][std::string(name)] = count;
    json["implied"] = found.thinning.implied;
    json["contrary"] = found.thinning.contrary;
    json["length_tolerance"] = found.length;
    json["angle_tolerance_degrees"] = inDegrees(options.angle);
    return json;
}

InferOptions optionsOf(const InferCommandOptions& command) {
    const auto fits = [](double tolerance) { return tolerance >= 0.0 && std::isfinite(tolerance); };
    if (!fits(command.length))
        throw UsageError("--tolerance", shortNumber(command.length), "a length above 0, such as 0.01");
    if (!fits(command.angle) || command.angle > 45.0)
        throw UsageError("--angle", shortNumber(command.angle), "degrees above 0 and not above 45, such as 0.1");
    InferOptions options{.length = command.length};
    if (command.angle > 0.0)
        options.angle = inRadians(command.angle);
    return options;
}

void refuseContradiction(const Inferred& found, const std::string& drawing) {
    if (found.thinning.holds)
        return;
    throw ReportedError(
        {.code = ErrorCode::notSolved,
         .message =
             !found.thinning.ownHold
                 ? found.name + ": its own constraints cannot hold together; \"holdfast solve --explain\" names them"
                 : found.name + ": what holds within " + shortNumber(found.length) + " " + found.document.lengthUnit +
                       " cannot hold exactly; choose a smaller --tolerance",
         .file = drawing});
}

/// Constraints need the JSON form, unless another is asked for.
DrawingTarget targetFor(const std::string& drawing, const InferCommandOptions& command) {
    if (command.drawings.size() == 1)
        return {command.output, command.to};
    return {outputIn(command.output, drawing, command.to.empty() ? "json" : command.to), command.to};
}

int inferOne(const std::string& drawing, const InferCommandOptions& command, Teller& teller) {
    const DrawingTarget target = targetFor(drawing, command);
    OutputFiles outputs({drawingNamed(target)}, teller.wantsJson());
    InferOptions options = optionsOf(command);
    const DrawingFile file = readDrawingFor(target, {drawing, command.from});
    Document plain = file.document;
    const std::string name = spokenName(plain, drawing);
    const Progress progress("inferring constraints of " + name);
    if (command.polylines)
        plain = withPolylines(plain, options);
    const Inferred found{inferredDrawing(plain, options), name};
    refuseContradiction(found, drawing);
    if (!found.outOfReach.empty())
        complain(name + ": " + leftOutOfReach(found.outOfReach));
    outputs.addDrawing(target, found.document, file);
    outputs.write([&] {
        if (teller.wantsJson())
            teller.tell(jsonOf(found, options));
        else
            tell(found, options);
    });
    return kExitDone;
}

}  // namespace

int infer(const InferCommandOptions& command) {
    refuseSharedNames(command.drawings, command.output, command.to.empty() ? "json" : command.to);
    return tellEach(command.drawings, command.telling,
                    [&](const std::string& drawing, Teller& teller) { return inferOne(drawing, command, teller); });
}

}  // namespace holdfast::cli
