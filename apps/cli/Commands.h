#pragma once

#include <string>
#include <vector>

#include "apps/cli/Uses.h"

namespace holdfast::cli {

// The program's subcommands. Each returns the exit code, and throws DrawingError or EditError for bad input before it
// has written anything.

struct ShowOptions {
    std::string drawing;
    std::string output;  ///< an SVG file, or empty
    bool json = false;
    bool list = false;     ///< every entity and constraint by name
    bool missing = false;  ///< what it lacks for being fully determined
    bool ids = false;      ///< the picture shows the names of entities
};
int show(const ShowOptions& options);

struct EditOptions {
    std::string drawing;
    std::vector<std::string> edits;
    std::vector<std::string> places = {};  ///< of the edits in a script, to begin an error with; empty: no script
    std::string output;                    ///< the edited drawing, or empty
    std::string report;                    ///< an HTML file, or empty
    std::string picture;                   ///< an SVG file with before and after, or empty
    bool json = false;
    bool verbose = false;
    bool noTies = false;          ///< edits leave the drawing as bare as the module does
    std::vector<bool> ties = {};  ///< whether each edit of a script gives ties; empty: no script
    bool ids = false;             ///< the picture shows the names of entities
};
int edit(const EditOptions& options);

struct RunOptions {
    std::string script;
    std::string report;
    std::string picture;
    bool json = false;
    bool verbose = false;
    bool noTies = false;  ///< whatever the script says
    bool ids = false;     ///< the picture shows the names of entities
};
int run(const RunOptions& options);

struct SolveOptions {
    std::string drawing;
    std::string output;  ///< the solved drawing, or empty
    std::string report;  ///< an HTML file, or empty
    bool explain = false;
    bool json = false;
};
int solveDrawing(const SolveOptions& options);

struct ConvertOptions {
    std::string input;
    std::string output;
    double tolerance = 0.01;  ///< of curves that a DXF file cannot hold
    bool polylines = false;   ///< chains of lines and arcs become polylines
};
int convert(const ConvertOptions& options);

struct InferCommandOptions {
    std::string input;
    std::string output;
    double length = 0.0;     ///< 0: a millionth of the drawing
    double angle = 0.0;      ///< degrees; 0: those of InferOptions
    bool polylines = false;  ///< chains of lines and arcs become polylines
    bool json = false;
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
