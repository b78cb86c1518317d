#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "tests/reach/Trial.h"

namespace holdfast::reach {

/// The trials of one sort of edit on one kind of drawing: a row of the table.
struct Row {
    std::string drawings;  ///< "stored", "loose", "inferred"
    std::string edit;      ///< "dimension x 1.05"
    int tried = 0, done = 0, proven = 0, unproven = 0, howFar = 0, falseRefusals = 0;
    int ruined = 0, released = 0, sizes = 0;
    double residual = 0.0, milliseconds = 0.0, slowest = 0.0;
    std::vector<double> refusals{};  ///< milliseconds of each

    void add(const Trial& trial);
    void add(const Row& other);
};

/// What all trials came to; rows in the order in which they were first met.
class Table {
public:
    void add(const std::string& drawing, const std::string& drawings, const std::string& edit, const Trial& trial);
    void add(const Table& other);

    /// With details, every trial that is not as it should be is listed; without, only those that fail the run.
    void print(std::ostream& out, bool withDetails) const;

    /// No false refusals, and everything that was done holds.
    bool isGood() const;

private:
    Row& rowOf(const std::string& drawings, const std::string& edit);

    std::vector<Row> m_rows;
    std::vector<std::string> m_failures;  ///< a line each
    std::vector<std::string> m_remarks;
};

}  // namespace holdfast::reach
