// holdfast: opens constrained drawings, edits them as a CAD user does, and shows what became of every constraint.

#include <CLI/CLI.hpp>

#include <exception>
#include <functional>
#include <string>

#include "workbench/cli/Commands.h"
#include "workbench/cli/Terminal.h"
#include "workbench/editing/Verbs.h"

namespace {

using namespace holdfast;

std::string editHelp() {
    std::string help = "Edits:\n";
    for (const EditVerb* verb : editVerbs())
        help += "  " + std::string(verb->usage) + "\n      " + std::string(verb->purpose) + ": " +
                std::string(verb->example) + "\n";
    return help +
           "  undo\n      takes the last edit back\n\nExample:\n  holdfast edit plate.json \"break g3 at 4,0 to 6,0\" "
           "-o cut.json --report cut.html\n\nExit codes: 0 done; 2 a file, an edit or an argument was refused "
           "and nothing was written.";
}

void addShow(CLI::App& app, ShowOptions& options, std::function<int()>& action) {
    CLI::App* command = app.add_subcommand("show", "tell what is in a drawing");
    command->add_option("DRAWING", options.drawing, "a .json or .dxf file")->required();
    command->add_option("-o,--output", options.output, "draw it into this .svg file");
    command->add_flag("--json", options.json, "tell it as JSON");
    command->footer("Example:\n  holdfast show plate.json -o plate.svg");
    command->callback([&] { action = [&] { return show(options); }; });
}

void addEdit(CLI::App& app, EditOptions& options, std::function<int()>& action) {
    CLI::App* command = app.add_subcommand("edit", "edit a drawing and tell the fate of its constraints");
    command->add_option("DRAWING", options.drawing, "a .json or .dxf file")->required();
    command->add_option("EDIT", options.edits, "edits, each one argument")->required();
    command->add_option("-o,--output", options.output, "write the edited drawing (.json, .dxf, .svg)");
    command->add_option("--report", options.report, "write the report as one HTML file");
    command->add_option("--picture", options.picture, "draw before and after into this .svg file");
    command->add_flag("--json", options.json, "tell the fates as JSON");
    command->add_flag("-v,--verbose", options.verbose, "tell what stayed as it was, too");
    command->footer(editHelp());
    command->callback([&] { action = [&] { return edit(options); }; });
}

void addRun(CLI::App& app, RunOptions& options, std::function<int()>& action) {
    CLI::App* command = app.add_subcommand("run", "do the edits of a script");
    command
        ->add_option("SCRIPT", options.script, "\"open DRAWING\", then one edit a line, then perhaps \"save DRAWING\"")
        ->required();
    command->add_option("--report", options.report, "write the report as one HTML file");
    command->add_option("--picture", options.picture, "draw before and after into this .svg file");
    command->add_flag("--json", options.json, "tell the fates as JSON");
    command->add_flag("-v,--verbose", options.verbose, "tell what stayed as it was, too");
    command->footer(
        "A script may open several drawings; then a table tells what became of each.\n\nExample:\n  holdfast "
        "run examples/commands/break.edit --report cut.html");
    command->callback([&] { action = [&] { return run(options); }; });
}

void addSolve(CLI::App& app, SolveOptions& options, std::function<int()>& action) {
    CLI::App* command = app.add_subcommand("solve", "make the constraints of a drawing hold again");
    command->add_option("DRAWING", options.drawing, "a .json or .dxf file")->required();
    command->add_option("-o,--output", options.output, "write the solved drawing (.json, .dxf, .svg)");
    command->add_option("--report", options.report, "write what moved as one HTML file");
    command->add_flag("--explain", options.explain,
                      "tell the freedom of each part, and which constraints are redundant "
                      "or cannot hold together");
    command->add_flag("--json", options.json, "tell the findings as JSON");
    command->footer(
        "Example:\n  holdfast solve plate.json --explain -o solved.json\n\nExit codes: 0 done; 1 the "
        "constraints cannot hold together and nothing was written; 2 a file or an argument was refused.");
    command->callback([&] { action = [&] { return solveDrawing(options); }; });
}

void addConvert(CLI::App& app, ConvertOptions& options, std::function<int()>& action) {
    CLI::App* command = app.add_subcommand("convert", "turn a drawing into another form");
    command->add_option("IN", options.input, "a .json or .dxf file")->required();
    command->add_option("OUT", options.output, "a .json, .dxf or .svg file")->required();
    command->add_option("--tolerance", options.tolerance, "of curves that a .dxf file cannot hold");
    command->add_flag("--polylines", options.polylines, "make polylines of joined lines and arcs");
    command->footer("Example:\n  holdfast convert plate.json plate.dxf");
    command->callback([&] { action = [&] { return convert(options); }; });
}

void addInfer(CLI::App& app, InferCommandOptions& options, std::function<int()>& action) {
    CLI::App* command = app.add_subcommand("infer", "put constraints on a plain drawing");
    command->add_option("DRAWING", options.input, "a .dxf or .json file")->required();
    command->add_option("-o,--output", options.output, "write the constrained drawing");
    command->add_option("--tolerance", options.length, "how far points may be apart; 0: a millionth of the drawing");
    command->add_flag("--polylines", options.polylines, "make polylines of joined lines and arcs");
    command->footer("Example:\n  holdfast infer plate.dxf -o plate.json");
    command->callback([&] { action = [&] { return infer(options); }; });
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("holdfast keeps the constraints of a drawing true while it is edited", "holdfast");
    app.require_subcommand(1);
    app.set_help_all_flag("--help-all", "help on everything");
    ShowOptions showOptions;
    EditOptions editOptions;
    RunOptions runOptions;
    ConvertOptions convertOptions;
    InferCommandOptions inferOptions;
    SolveOptions solveOptions;
    std::function<int()> action;
    addShow(app, showOptions, action);
    addEdit(app, editOptions, action);
    addRun(app, runOptions, action);
    addSolve(app, solveOptions, action);
    addConvert(app, convertOptions, action);
    addInfer(app, inferOptions, action);
    try {
        app.parse(argc, argv);
        return action();
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kExitDone : kExitBadInput;
    } catch (const std::exception& error) {
        complain(error.what());
        return kExitBadInput;
    }
}
