// Which edits of real drawings are reached, and which are refused although small steps reach them.
// scripts/reach runs it and tells its options.

#include <algorithm>
#include <atomic>
#include <charconv>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <mutex>
#include <string_view>
#include <thread>

#include "document/Names.h"
#include "editing/constraints/ImpliedConstraints.h"
#include "formats/json/JsonReader.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "inference/Infer.h"
#include "solver/src/sketch/Index.h"
#include "tests/reach/Judge.h"
#include "tests/reach/Table.h"
#include "tests/support/DrawingFolder.h"

namespace holdfast::reach {

namespace {

namespace fs = std::filesystem;

struct Options {
    std::string folder;
    int first = 0, stride = 1;
    int limit = 0;  ///< edits of one sort on one drawing; 0: all
    int jobs = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    bool withDetails = false;
    Judging judging = Judging::whole;
    std::string edits = "dimensions,lengthen,rotate,set,drag";
    std::string drawings = "stored,loose,inferred";

    bool wants(const std::string& list, std::string_view word) const {
        return ("," + list + ",").find("," + std::string(word) + ",") != std::string::npos;
    }
};

constexpr double kFactors[] = {1.05, 1.2, 1.5, 2.0, 0.8, 0.5};
constexpr double kLengthenings[] = {0.5, 2.0};
constexpr double kRotations[] = {30.0, 45.0, 90.0};
constexpr double kSettings[] = {1.5, 0.5};
constexpr double kDrags[] = {0.3, 1.0};

std::string withNumber(const std::string& words, double number) {
    std::string digits = std::to_string(number);
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.')
        digits.pop_back();
    return words + " " + digits;
}

/// At most `limit` of them, spread evenly.
template <class T>
std::vector<T> spread(const std::vector<T>& all, int limit) {
    if (limit == 0 || all.size() <= at(limit))
        return all;
    std::vector<T> some;
    for (std::size_t i = 0; i < at(limit); ++i)
        some.push_back(all[i * all.size() / at(limit)]);
    return some;
}

/// The trials of one drawing as it is stored, without its dimensions, or as it is inferred.
class Drawing {
public:
    Drawing(std::string name, std::string kind, const Document& document, const Options& options, Table& table)
        : m_name(std::move(name)), m_kind(std::move(kind)), m_document(document), m_options(options), m_table(table) {}

    void run() {
        if (m_options.wants(m_options.edits, "dimensions"))
            dimensions();
        if (m_options.wants(m_options.edits, "lengthen"))
            lengthen();
        if (m_options.wants(m_options.edits, "rotate"))
            rotate();
        if (m_options.wants(m_options.edits, "set"))
            set();
        if (m_options.wants(m_options.edits, "drag"))
            drag();
    }

private:
    void dimensions() {
        const SketchData sketch = heldSketch(m_document);
        std::vector<int> driving;
        for (int c = 0; c < static_cast<int>(sketch.constraints.size()); ++c) {
            const SketchConstraint& constraint = sketch.constraints[at(c)];
            if (constraint.binds() && isDimension(constraint.type) && constraint.value != 0.0)
                driving.push_back(c);
        }
        for (const int c : spread(driving, m_options.limit)) {
            for (const double factor : kFactors)
                note(withNumber("dimension x", factor), tryDimension(sketch, c, factor, m_options.judging));
        }
    }

    std::vector<const Entity*> lines() const {
        std::vector<const Entity*> found;
        for (const Entity& entity : m_document.entities) {
            const auto* line = std::get_if<LineShape>(&entity.shape);
            if (line != nullptr && !entity.fixed && !(line->start == line->end))
                found.push_back(&entity);
        }
        return spread(found, m_options.limit);
    }

    void lengthen() {
        for (const Entity* line : lines()) {
            for (const double part : kLengthenings)
                note(withNumber("lengthen by", part), tryLengthening(m_document, *line, part, m_options.judging));
        }
    }

    void rotate() {
        for (const Entity* line : lines()) {
            for (const double degrees : kRotations)
                note(withNumber("rotate by", degrees), tryRotation(m_document, *line, degrees, m_options.judging));
        }
    }

    void set() {
        std::vector<const Entity*> found;
        for (const Entity& entity : m_document.entities)
            if (!entity.fixed && radiusOf(entity.shape) > 0.0)
                found.push_back(&entity);
        for (const Entity* round : spread(found, m_options.limit)) {
            for (const double factor : kSettings)
                note(withNumber("set radius x", factor), trySetting(m_document, *round, factor, m_options.judging));
        }
    }

    void drag() {
        for (const Entity* line : lines()) {
            for (const double part : kDrags)
                note(withNumber("drag across by", part), tryDragging(m_document, *line, part, m_options.judging));
        }
    }

    void note(const std::string& edit, const Trial& trial) { m_table.add(m_name, m_kind, edit, trial); }

    std::string m_name, m_kind;
    const Document& m_document;
    const Options& m_options;
    Table& m_table;
};

Document withoutDimensions(Document document) {
    std::erase_if(document.constraints, [](const Constraint& constraint) { return isDimension(constraint.type); });
    return document;
}

Document inferredAnew(Document document) {
    document.constraints.clear();
    Document inferred = inference::inferConstraints(document).document;
    editing::thinOut(inferred, 0);
    return inferred;
}

/// Every drawing begins with its constraints met to the last digit; false for one that cannot.
bool settle(Document& document) {
    SketchData sketch = heldSketch(document);
    if (!solve(sketch, {.namesConflicts = false}).isSolved())
        return false;
    hosting::applySketch(sketch, document);
    return worstResidual(sketch, heldSketch(document)) <= kExact;
}

bool tryDrawing(const fs::path& file, const Options& options, Table& table) {
    std::ifstream in(file);
    const std::string name = file.stem().string();
    const Document stored = formats::readJson(in, file.filename().string());
    const std::pair<const char*, Document (*)(Document)> kinds[] = {
        {"stored", [](Document document) { return document; }},
        {"loose", &withoutDimensions},
        {"inferred", &inferredAnew}};
    bool isComplete = true;
    for (const auto& [kind, made] : kinds) {
        if (!options.wants(options.drawings, kind))
            continue;
        Document document = made(stored);
        if (settle(document))
            Drawing(name, kind, document, options, table).run();
        else
            isComplete = false;
    }
    return isComplete;
}

/// Drawings are taken one by one by as many threads as the options say; the table is in their order all the same.
Table tryAll(const std::vector<fs::path>& files, const Options& options) {
    std::vector<Table> tables(files.size());
    std::atomic<std::size_t> next{0}, finished{0};
    std::mutex telling;
    const auto work = [&] {
        for (std::size_t i = next++; i < files.size(); i = next++) {
            std::string complaint;
            try {
                if (!tryDrawing(files[i], options, tables[i]))
                    complaint = "does not hold as it is";
            } catch (const std::exception& error) {
                complaint = error.what();
            }
            const std::lock_guard lock(telling);
            std::cerr << ++finished << " of " << files.size() << ": " << files[i].stem().string()
                      << (complaint.empty() ? "" : ": " + complaint) << "\n";
        }
    };
    std::vector<std::jthread> threads;
    for (int i = 0; i < options.jobs; ++i)
        threads.emplace_back(work);
    threads.clear();
    Table all;
    for (const Table& table : tables)
        all.add(table);
    return all;
}

bool readNumber(std::string_view text, int least, int& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && number >= least;
}

/// False for what is no option.
bool read(int count, char** words, Options& options) {
    for (int i = 1; i < count; ++i) {
        const std::string_view word = words[i];
        if (word == "--details") {
            options.withDetails = true;
            continue;
        }
        if (word == "--at-once") {
            options.judging = Judging::atOnce;
            continue;
        }
        if (!word.starts_with("--")) {
            options.folder = word;
            continue;
        }
        if (++i == count)
            return false;
        const std::string_view value = words[i];
        const bool isRead = word == "--stride"     ? readNumber(value, 1, options.stride)
                            : word == "--first"    ? readNumber(value, 0, options.first)
                            : word == "--limit"    ? readNumber(value, 0, options.limit)
                            : word == "--jobs"     ? readNumber(value, 1, options.jobs)
                            : word == "--edits"    ? !(options.edits = value).empty()
                            : word == "--drawings" ? !(options.drawings = value).empty()
                                                   : false;
        if (!isRead)
            return false;
    }
    return !options.folder.empty();
}

std::vector<fs::path> filesOf(const Options& options) {
    if (!fs::is_directory(options.folder))
        return {options.folder};
    return testing::everyNth(testing::drawingsIn(options.folder), at(options.first), at(options.stride));
}

}  // namespace

}  // namespace holdfast::reach

int main(int argc, char** argv) {
    using namespace holdfast::reach;
    Options options;
    if (!read(argc, argv, options)) {
        std::cerr << "unknown or incomplete options; scripts/reach --help tells them\n";
        return 2;
    }
    try {
        const Table table = tryAll(filesOf(options), options);
        table.print(std::cout, options.withDetails);
        return table.isGood() ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return 2;
    }
}
