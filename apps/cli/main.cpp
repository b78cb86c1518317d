// holdfast: opens constrained drawings, edits them as a CAD user does, and shows what became of every constraint.

#include <CLI/CLI.hpp>

#include <algorithm>
#include <exception>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "apps/cli/Commands.h"
#include "apps/cli/Signals.h"
#include "apps/cli/Usage.h"
#include "apps/cli/telling/ErrorReport.h"
#include "apps/cli/telling/Teller.h"
#include "apps/cli/telling/Terminal.h"
#include "editing/Verbs.h"

namespace {

using namespace holdfast::cli;

constexpr std::string_view kExitCodes =
    "Exit codes: 0 done; 1 faults of the drawing were told; 2 wrong use, or a file or text that cannot be read, or\n"
    "not be written; 3 the drawing does not allow an edit. Unless it is 0 nothing was written. With --json an object\n"
    "on standard output tells the error.";

constexpr int kAnyNumber = 1 << 20;  // of arguments: more than a system takes

constexpr const char* kDrawing =
    "a .json, .dxf or .svg file, or a sketch: part.FCStd#Sketch001, part.slvs; - for standard input";
constexpr const char* kDrawings =
    "a .json, .dxf or .svg file, a sketch (part.FCStd#Sketch001, part.slvs), or several; - for standard input";
constexpr const char* kJson = "tell it as one JSON object";
constexpr const char* kLines = "tell it as JSON, a line for each drawing";

void addTelling(CLI::App* command, TellingOptions& telling) {
    CLI::Option* json = command->add_flag("--json", telling.json, kJson);
    command->add_flag("--jsonl", telling.lines, kLines)->excludes(json);
}

void addFrom(CLI::App* command, std::string& from) {
    command->add_option("--from", from, "the drawing's form, whatever its name: json, dxf, svg, slvs")
        ->check(CLI::IsMember({"json", "dxf", "svg", "slvs"}));
}

void addForms(CLI::App* command, std::string& from, std::string& to) {
    addFrom(command, from);
    command->add_option("--to", to, "the form to write, whatever the name: json, dxf, svg, pdf, slvs")
        ->check(CLI::IsMember({"json", "dxf", "svg", "pdf", "slvs"}));
}

constexpr const char* kIds = "show the names of entities in the picture";

constexpr const char* kNoTies = "add no constraints for what edits cut: no end on its cutter, no pieces in line";

std::string editHelp() {
    std::string help = "Edits:\n";
    for (const EditVerb& verb : editVerbs())
        help += "  " + std::string(verb.usage) + "\n      " + std::string(verb.purpose) +
                (verb.example.empty() ? "" : ": " + std::string(verb.example)) + "\n";
    return help +
           "\nExample:\n  holdfast edit "
           "examples/drawings/mounting-bracket.json "
           "\"lengthen base end by 12\" -o longer.json --report longer.html\n\n" +
           std::string(kExitCodes);
}

void addShow(CLI::App& app, ShowOptions& options, std::function<int()>& action) {
    CLI::App* command = app.add_subcommand("show", "tell what is in a drawing");
    command->add_option("DRAWING", options.drawings, kDrawings)->required();
    addFrom(command, options.from);
    CLI::Option* picture = command->add_option(
        "-o,--output", options.output,
        "draw it with its constraints into this .svg or .pdf file, or into an .html page to pan, zoom and "
        "point in; of several drawings, pictures into this folder");
    command->add_flag("--ids", options.ids, kIds)->needs(picture);
    command->add_flag("--colours", options.colours, "draw it in its own colours, those of entities or of their layers")
        ->needs(picture);
    command->add_flag("--list", options.list,
                      "name every entity with its sizes, its freedom and the constraints on it, and every constraint");
    command->add_flag("--missing", options.missing, "list what it lacks for being fully determined, as edits");
    addTelling(command, options.telling);
    command->footer(
        "Example:\n  holdfast show examples/drawings/mounting-bracket.json -o bracket.svg\n  holdfast show "
        "examples/drawings/mounting-bracket.json -o bracket.html\n\n" +
        std::string(kExitCodes));
    command->callback([&] { action = [&] { return show(options); }; });
}

void addEdit(CLI::App& app, EditOptions& options, std::function<int()>& action) {
    CLI::App* command = app.add_subcommand("edit", "edit a drawing and tell the fate of its constraints");
    command->add_option("DRAWING", options.drawing.path, kDrawing)->required();
    command->add_option("EDIT", options.edits, "edits, each one argument")->required();
    command->add_option("-o,--output", options.output.path,
                        "write the edited drawing (.json, .dxf, .svg, .pdf; - for standard output)");
    addForms(command, options.drawing.form, options.output.form);
    command->add_option("--report", options.report, "write the report as one .html file");
    CLI::Option* picture =
        command->add_option("--picture", options.picture, "draw before and after into this .svg or .pdf file");
    command->add_flag("--ids", options.ids, kIds)->needs(picture);
    addTelling(command, options.telling);
    command->add_flag("-v,--verbose", options.verbose, "tell what stayed as it was, too");
    command->add_flag("--no-ties", options.noTies, kNoTies);
    command->footer(editHelp());
    command->callback([&] { action = [&] { return edit(options); }; });
}

void addRun(CLI::App& app, RunOptions& options, std::function<int()>& action) {
    CLI::App* command = app.add_subcommand("run", "do the edits of a script");
    command
        ->add_option("SCRIPT", options.script,
                     "\"open DRAWING\", then one edit a line, then perhaps \"save DRAWING\"; - for standard input")
        ->required();
    addForms(command, options.from, options.to);
    command->add_option("-j,--jobs", options.threads, "edit so many drawings at once; 1 unless given")
        ->check(CLI::Range(1, 1024));
    command->add_flag("--resume", options.resumes,
                      "go on after an interruption: leave out drawings that were saved since the script and they "
                      "themselves were written");
    command->add_option("--report", options.report, "write the report as one .html file");
    CLI::Option* picture =
        command->add_option("--picture", options.picture, "draw before and after into this .svg or .pdf file");
    command->add_flag("--ids", options.ids, kIds)->needs(picture);
    addTelling(command, options.telling);
    command->add_flag("-v,--verbose", options.verbose, "tell what stayed as it was, too");
    command->add_flag("--no-ties", options.noTies, std::string(kNoTies) + ", whatever the script says");
    command->footer(
        "Names in a script are relative to it and may hold spaces; what follows a # after a space does not "
        "count.\nAfter "
        "a line \"ties off\" edits give no ties, after \"ties on\" they do again.\nA script may open several drawings; "
        "then a table tells what became of each.\n\nExample:\n  holdfast run "
        "examples/commands/break-line.edit --report cut.html\n\n" +
        std::string(kExitCodes) +
        "\nOf several drawings "
        "the largest code counts. Those that went well are written all the same.");
    command->callback([&] { action = [&] { return run(options); }; });
}

void addSolve(CLI::App& app, SolveOptions& options, std::function<int()>& action) {
    CLI::App* command = app.add_subcommand("solve", "make the constraints of a drawing hold again");
    command->add_option("DRAWING", options.drawings, kDrawings)->required();
    command->add_option(
        "-o,--output", options.output,
        "write the solved drawing (.json, .dxf, .svg, .pdf; - for standard output; of several a folder)");
    addForms(command, options.from, options.to);
    command->add_option("--report", options.report, "write what moved as one .html file");
    command->add_flag("--explain", options.explain,
                      "tell the freedom of each part, and which constraints are redundant "
                      "or cannot hold together");
    addTelling(command, options.telling);
    command->footer("Example:\n  holdfast solve examples/drawings/mounting-bracket.json --explain -o solved.json\n\n" +
                    std::string(kExitCodes));
    command->callback([&] { action = [&] { return solveDrawing(options); }; });
}

void addConvert(CLI::App& app, ConvertOptions& options, std::function<int()>& action) {
    CLI::App* command = app.add_subcommand("convert", "turn a drawing into another form");
    command
        ->add_option(
            "IN OUT", options.drawings,
            "a .json, .dxf or .svg file or a sketch (part.FCStd#Sketch001, part.slvs), then a .json, .dxf, "
            ".svg, .pdf, .slvs or .FCStd file; - for the standard streams. Several files, then a folder for what "
            "becomes of them")
        ->required()
        ->expected(2, kAnyNumber);
    addForms(command, options.from, options.to);
    addTelling(command, options.telling);
    command->add_option(
        "--tolerance", options.tolerance,
        "how far polylines deviate from ellipses and splines, which a .dxf file cannot hold; 0.01 unless "
        "given");
    command->add_flag("--polylines", options.polylines, "make polylines of lines and arcs with coincident ends");
    command->footer(
        "Example:\n  holdfast convert examples/drawings/mounting-bracket.json bracket.dxf\n\n.dxf files go out in the "
        "old form that every program reads, without constraints, and as they are when they\ncome from a .dxf file; "
        ".svg and .pdf files in true size, for looking at and printing.\n\n" +
        std::string(kExitCodes));
    command->callback([&] {
        options.output = options.drawings.back();
        options.drawings.pop_back();
        action = [&] { return convert(options); };
    });
}

void addInfer(CLI::App& app, InferCommandOptions& options, std::function<int()>& action) {
    CLI::App* command = app.add_subcommand("infer", "put constraints on a plain drawing");
    command->add_option("DRAWING", options.drawings, kDrawings)->required();
    command->add_option("-o,--output", options.output,
                        "write the constrained drawing (- for standard output; of several a folder)");
    addForms(command, options.from, options.to);
    command->add_option("--tolerance", options.length,
                        "how far points may be apart and lengths differ; 0: a millionth of the drawing");
    command->add_option("--angle", options.angle, "how many degrees directions may differ; 0: 0.00573");
    command->add_flag("--polylines", options.polylines, "make polylines of joined lines and arcs");
    addTelling(command, options.telling);
    command->footer(
        "Example:\n  holdfast infer examples/drawings/split-keyboard-plate.dxf -o plate.json\n\n"
        "Found are coincident ends, concentric circles, horizontal, vertical, collinear, parallel and\n"
        "perpendicular lines, tangent ends, equal radii and lengths. What others imply is left out, and\n"
        "so is what holds within the tolerances but cannot hold exactly.\n\n" +
        std::string(kExitCodes));
    command->callback([&] { action = [&] { return infer(options); }; });
}

void addOpen(CLI::App& app, OpenOptions& options, std::function<int()>& action) {
    CLI::App* command = app.add_subcommand("open", "edit a drawing by hand, in the browser");
    command->add_option("DRAWING", options.drawing, "a .json, .dxf or .svg file")->required();
    command->add_option("--port", options.port, "the port to listen on; any that is free unless given")
        ->check(CLI::Range(0, 65535));
    command->add_flag("--no-browser", options.noBrowser, "tell the address and start no browser");
    command->add_flag("--read-only", options.readOnly,
                      "write nothing: neither the drawing nor what is not saved of it");
    command->add_option("--linger", options.linger, "seconds to go on after the last tab was closed; 10 unless given")
        ->check(CLI::Range(0.0, 86400.0));
    command->footer(
        "Example:\n  holdfast open examples/drawings/mounting-bracket.json\n\nThe page comes from this machine and "
        "is for this machine; its address holds a word that nobody else\nknows. The program ends after the last tab "
        "was closed, or with Ctrl-C. Edits that were not saved are\nkept beside the drawing, in NAME.unsaved.json, "
        "and taken up by the next window.\n\n" +
        std::string(kExitCodes));
    command->callback([&] { action = [&] { return open(options); }; });
}

/// How the user wants to be told of what went wrong, also where the arguments make no sense.
TellingOptions tellingOf(const std::vector<std::string>& arguments) {
    const auto isGiven = [&](const char* option) {
        return std::find(arguments.begin(), arguments.end(), option) != arguments.end();
    };
    return {isGiven("--json"), isGiven("--jsonl")};
}

/// The exit code of what is being thrown, once it is told.
int whenFailed(const ErrorReport& report, TellingOptions telling) {
    complain(report.message);
    if (telling.isForPrograms() && std::cout)
        printError(report, telling.lines);
    return exitOf(report.code);
}

int whenFailed(TellingOptions telling) {
    try {
        return whenFailed(reportOfCurrent(), telling);
    } catch (...) {  // standard output takes nothing, or there is no memory to tell of it
        return kExitBadInput;
    }
}

}  // namespace

int main(int argc, char** argv) {
    keepStandardStreams();
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const TellingOptions telling = tellingOf(arguments);
    CLI::App app("holdfast keeps the constraints of a drawing true while it is edited", "holdfast");
    app.require_subcommand(1);
    app.set_help_all_flag("--help-all", "help on everything");
    app.set_version_flag("--version", "holdfast " HOLDFAST_VERSION);
    app.footer("\"holdfast COMMAND --help\" shows a command's options with an example.\n\n" + std::string(kExitCodes));
    ShowOptions showOptions;
    EditOptions editOptions;
    RunOptions runOptions;
    ConvertOptions convertOptions;
    InferCommandOptions inferOptions;
    SolveOptions solveOptions;
    OpenOptions openOptions;
    std::function<int()> action;
    addShow(app, showOptions, action);
    addEdit(app, editOptions, action);
    addRun(app, runOptions, action);
    addSolve(app, solveOptions, action);
    addConvert(app, convertOptions, action);
    addInfer(app, inferOptions, action);
    addOpen(app, openOptions, action);
    try {
        app.parse(argc, argv);
        if (!app.got_subcommand("open"))  // the window has its own way to end
            endCleanlyOnSignals();
        const int code = action();
        flushStandardOutput();
        return code;
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0)
            return whenFailed({.code = ErrorCode::usage, .message = usageFault(app, error, arguments)}, telling);
        app.exit(error);
        std::cout.flush();
        if (std::cout)
            return kExitDone;
        complain("standard output did not take all that was told");
    } catch (...) {
        return whenFailed(telling);
    }
    return kExitBadInput;
}
