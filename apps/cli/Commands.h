#pragma once

#include <string>
#include <vector>

#include "apps/cli/Uses.h"
#include "apps/cli/files/DrawingFiles.h"
#include "apps/cli/telling/TellingOptions.h"

namespace holdfast::cli {

// The program's subcommands. Each returns the exit code, and throws before it has written anything when it cannot do
// what it was asked for; docs/errors.md lists what. Files that are named "-" are the standard streams.

struct ShowOptions {
    std::vector<std::string> drawings;
    std::string from;    ///< the form of the drawings, or empty: by their endings
    std::string output;  ///< an SVG or PDF file or an HTML page, of several drawings a folder for pictures, or empty
    TellingOptions telling;
    bool list = false;     ///< every entity and constraint by name
    bool missing = false;  ///< what it lacks for being fully determined
    bool ids = false;      ///< the picture shows the names of entities
    bool colours = false;  ///< the picture has the drawing's colours
};
int show(const ShowOptions& options);

struct EditOptions {
    DrawingSource drawing;
    std::vector<std::string> edits;
    std::string script = {};      ///< in which the edits stand; empty: none
    std::vector<int> lines = {};  ///< of the script, for each edit
    DrawingTarget output;         ///< the edited drawing
    std::string report;           ///< an HTML file, or empty
    std::string picture;          ///< an SVG or PDF file with before and after, or empty
    TellingOptions telling;
    bool verbose = false;
    bool noTies = false;          ///< edits leave the drawing as bare as the module does
    std::vector<bool> ties = {};  ///< whether each edit of a script gives ties; empty: no script
    bool ids = false;             ///< the picture shows the names of entities
};
int edit(const EditOptions& options);

struct RunOptions {
    std::string script;
    std::string from, to;  ///< the forms of the drawings, or empty: by their endings
    std::string report;
    std::string picture;
    TellingOptions telling;
    bool verbose = false;
    bool noTies = false;   ///< whatever the script says
    bool ids = false;      ///< the picture shows the names of entities
    unsigned threads = 1;  ///< drawings that are edited at once
    bool resumes = false;  ///< leaves out drawings that were saved before
};
int run(const RunOptions& options);

struct SolveOptions {
    std::vector<std::string> drawings;
    std::string from, to;  ///< the forms of the drawings, or empty: by their endings
    std::string output;    ///< the solved drawing, of several a folder, or empty
    std::string report;    ///< an HTML file, or empty
    bool explain = false;
    TellingOptions telling;
};
int solveDrawing(const SolveOptions& options);

struct ConvertOptions {
    std::vector<std::string> drawings;
    std::string from, to;     ///< the forms of the drawings, or empty: by their endings
    std::string output;       ///< of several drawings a folder
    double tolerance = 0.01;  ///< of curves that a DXF file cannot hold
    bool polylines = false;   ///< chains of lines and arcs become polylines
    TellingOptions telling{.hasText = false};
};
int convert(const ConvertOptions& options);

struct InferCommandOptions {
    std::vector<std::string> drawings;
    std::string from, to;    ///< the forms of the drawings, or empty: by their endings
    std::string output;      ///< the constrained drawing, of several a folder, or empty
    double length = 0.0;     ///< 0: a millionth of the drawing
    double angle = 0.0;      ///< degrees; 0: those of InferOptions
    bool polylines = false;  ///< chains of lines and arcs become polylines
    TellingOptions telling;
};
int infer(const InferCommandOptions& options);

struct OpenOptions {
    std::string drawing;
    int port = 0;  ///< 0: any that is free
    bool noBrowser = false;
    bool readOnly = false;
    double linger = 10.0;  ///< seconds after the last tab has gone
};
int open(const OpenOptions& options);

}  // namespace holdfast::cli
