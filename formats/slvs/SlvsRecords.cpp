#include "formats/slvs/SlvsRecords.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <variant>

#include "document/text/DrawingError.h"
#include "document/text/Suggest.h"

namespace holdfast::formats {
namespace {

constexpr std::size_t kMostBytes = std::size_t{64} << 20U, kMostRecords = 600000;
constexpr std::string_view kWord = "SolveSpaceREV";
constexpr std::string_view kMarks[] = {"\xB1\xB2\xB3", "\xC2\xB1\xC2\xB2\xC2\xB3"};  // in Latin-1, and in UTF-8

/// The records that lines of the file fill, one at a time.
struct Current {
    SlvsGroup group;
    SlvsParam param;
    SlvsRequest request;
    SlvsEntity entity;
    SlvsConstraint constraint;
};

/// Where a field's value goes: its kind says how it is written.
using FieldPlace = std::variant<SlvsHandle*, int*, double*, bool*, std::string_view*>;

struct Field {
    std::string_view key;
    FieldPlace (*in)(Current& records);
};

constexpr Field kFields[] = {
    {"Constraint.entityA.v", [](Current& r) -> FieldPlace { return &r.constraint.entityA; }},
    {"Constraint.entityB.v", [](Current& r) -> FieldPlace { return &r.constraint.entityB; }},
    {"Constraint.entityC.v", [](Current& r) -> FieldPlace { return &r.constraint.entityC; }},
    {"Constraint.entityD.v", [](Current& r) -> FieldPlace { return &r.constraint.entityD; }},
    {"Constraint.group.v", [](Current& r) -> FieldPlace { return &r.constraint.group; }},
    {"Constraint.h.v", [](Current& r) -> FieldPlace { return &r.constraint.handle; }},
    {"Constraint.other", [](Current& r) -> FieldPlace { return &r.constraint.other; }},
    {"Constraint.other2", [](Current& r) -> FieldPlace { return &r.constraint.other2; }},
    {"Constraint.ptA.v", [](Current& r) -> FieldPlace { return &r.constraint.pointA; }},
    {"Constraint.ptB.v", [](Current& r) -> FieldPlace { return &r.constraint.pointB; }},
    {"Constraint.reference", [](Current& r) -> FieldPlace { return &r.constraint.isReference; }},
    {"Constraint.type", [](Current& r) -> FieldPlace { return &r.constraint.type; }},
    {"Constraint.valA", [](Current& r) -> FieldPlace { return &r.constraint.value; }},
    {"Constraint.workplane.v", [](Current& r) -> FieldPlace { return &r.constraint.plane; }},
    {"Entity.actNormal.vx", [](Current& r) -> FieldPlace { return &r.entity.turn[1]; }},
    {"Entity.actNormal.vy", [](Current& r) -> FieldPlace { return &r.entity.turn[2]; }},
    {"Entity.actNormal.vz", [](Current& r) -> FieldPlace { return &r.entity.turn[3]; }},
    {"Entity.actNormal.w", [](Current& r) -> FieldPlace { return r.entity.turn.data(); }},
    {"Entity.actPoint.x", [](Current& r) -> FieldPlace { return r.entity.at.data(); }},
    {"Entity.actPoint.y", [](Current& r) -> FieldPlace { return &r.entity.at[1]; }},
    {"Entity.actPoint.z", [](Current& r) -> FieldPlace { return &r.entity.at[2]; }},
    {"Entity.h.v", [](Current& r) -> FieldPlace { return &r.entity.handle; }},
    {"Entity.normal.v", [](Current& r) -> FieldPlace { return &r.entity.normal; }},
    {"Entity.point[0].v", [](Current& r) -> FieldPlace { return r.entity.points.data(); }},
    {"Entity.point[1].v", [](Current& r) -> FieldPlace { return &r.entity.points[1]; }},
    {"Entity.type", [](Current& r) -> FieldPlace { return &r.entity.type; }},
    {"Group.activeWorkplane.v", [](Current& r) -> FieldPlace { return &r.group.plane; }},
    {"Group.h.v", [](Current& r) -> FieldPlace { return &r.group.handle; }},
    {"Group.name", [](Current& r) -> FieldPlace { return &r.group.name; }},
    {"Group.type", [](Current& r) -> FieldPlace { return &r.group.type; }},
    {"Param.h.v", [](Current& r) -> FieldPlace { return &r.param.handle; }},
    {"Param.h.v.", [](Current& r) -> FieldPlace { return &r.param.handle; }},  // as the program writes it
    {"Param.val", [](Current& r) -> FieldPlace { return &r.param.value; }},
    {"Request.construction", [](Current& r) -> FieldPlace { return &r.request.isConstruction; }},
    {"Request.extraPoints", [](Current& r) -> FieldPlace { return &r.request.extraPoints; }},
    {"Request.group.v", [](Current& r) -> FieldPlace { return &r.request.group; }},
    {"Request.h.v", [](Current& r) -> FieldPlace { return &r.request.handle; }},
    {"Request.type", [](Current& r) -> FieldPlace { return &r.request.type; }},
    {"Request.workplane.v", [](Current& r) -> FieldPlace { return &r.request.plane; }},
};
static_assert(std::is_sorted(std::begin(kFields), std::end(kFields),
                             [](const Field& a, const Field& b) { return a.key < b.key; }),
              "a field is found by halving");

/// Lines of the shapes that a file carries for programs that link to it. They are no records.
constexpr std::string_view kShapeWords[] = {"Surface", "SCtrl",   "TrimBy",   "AddSurface", "Curve",
                                            "CCtrl",   "CurvePt", "AddCurve", "Triangle"};
constexpr std::string_view kOwners[] = {"Group", "Param", "Request", "Entity", "Constraint", "Style"};

bool isOneOf(std::span<const std::string_view> words, std::string_view word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

class RecordReader {
public:
    RecordReader(std::string_view text, const std::string& file) : m_rest(text), m_file(file) {}

    SlvsFile read() {
        if (m_rest.size() > kMostBytes)
            throw DrawingError(m_file, {"", "more than 64 MB", "a smaller file"});
        takeHeader();
        while (std::optional<std::string_view> line = nextLine())
            take(*line);
        if (!m_open.empty())
            refuse("the end of the file within a " + std::string(m_open),
                   "\"Add" + std::string(m_open) + "\", which ends it; the file was cut off");
        return std::move(m_out);
    }

private:
    [[noreturn]] void refuse(std::string found, std::string expected) const {
        throw DrawingError(m_file, {"", std::move(found), std::move(expected)}, m_line);
    }

    /// Without its end.
    std::optional<std::string_view> nextLine() {
        if (m_rest.empty())
            return std::nullopt;
        ++m_line;
        const std::size_t end = m_rest.find('\n');
        std::string_view line = m_rest.substr(0, end);
        m_rest.remove_prefix(end == std::string_view::npos ? m_rest.size() : end + 1);
        while (line.ends_with('\r') || line.ends_with(' '))
            line.remove_suffix(1);
        return line;
    }

    void takeHeader() {
        std::string_view line = nextLine().value_or("");
        m_line = 1;
        for (const std::string_view mark : kMarks)
            if (line.starts_with(mark) && line.substr(mark.size()).starts_with(kWord))
                return;
        refuse("another beginning", "a SolveSpace file, whose first line ends in \"SolveSpaceREVa\"");
    }

    void take(std::string_view line) {
        if (line.empty())
            return;
        if (const std::size_t equals = line.find('='); equals != std::string_view::npos)
            return takeField(line.substr(0, equals), line.substr(equals + 1));
        const std::string_view word = line.substr(0, line.find(' '));
        if (isOneOf(kShapeWords, word))
            return;
        if (!line.starts_with("Add") || !isOneOf(kOwners, line.substr(3)))
            refuse(inQuotes(line.substr(0, 40)), "NAME=VALUE, or the end of a record, such as \"AddParam\"");
        add(line.substr(3));
    }

    void takeField(std::string_view key, std::string_view value) {
        const std::string_view owner = key.substr(0, key.find('.'));
        if (!isOneOf(kOwners, owner))
            refuse(inQuotes(key.substr(0, 40)), "a value of a Group, Param, Request, Entity, Constraint or Style");
        if (!m_open.empty() && m_open != owner)
            refuse("a value of a " + std::string(owner) + " within a " + std::string(m_open),
                   "\"Add" + std::string(m_open) + "\" before it");
        m_open = owner;
        if (value == "{")
            return skipList();
        const auto* field =
            std::lower_bound(std::begin(kFields), std::end(kFields), key,
                             [](const Field& each, std::string_view wanted) { return each.key < wanted; });
        if (field != std::end(kFields) && field->key == key)
            std::visit([&](auto* place) { put(*place, value); }, field->in(m_current));
    }

    void skipList() {
        const int start = m_line;
        while (const std::optional<std::string_view> line = nextLine())
            if (*line == "}")
                return;
        m_line = start;
        refuse("a list that does not end", "\"}\" on a line of its own behind it");
    }

    template <class Number>
    Number numberIn(std::string_view value, const char* expected, int base = 10) const {
        Number number{};
        std::from_chars_result result{};
        if constexpr (std::is_floating_point_v<Number>)
            result = std::from_chars(value.data(), value.data() + value.size(), number);
        else
            result = std::from_chars(value.data(), value.data() + value.size(), number, base);
        bool isWhole = result.ec == std::errc() && result.ptr == value.data() + value.size();
        if constexpr (std::is_floating_point_v<Number>)
            isWhole = isWhole && std::isfinite(number);
        if (!isWhole)
            refuse(inQuotes(value.substr(0, 40)), expected);
        return number;
    }

    void put(SlvsHandle& place, std::string_view value) const {
        place = numberIn<SlvsHandle>(value, "a handle of up to eight hexadecimal digits", 16);
    }
    void put(int& place, std::string_view value) const { place = numberIn<int>(value, "a whole number"); }
    void put(double& place, std::string_view value) const { place = numberIn<double>(value, "a number"); }
    void put(bool& place, std::string_view value) const { place = numberIn<int>(value, "0 or 1") != 0; }
    static void put(std::string_view& place, std::string_view value) { place = value; }

    void add(std::string_view owner) {
        if (!m_open.empty() && m_open != owner)
            refuse("\"Add" + std::string(owner) + "\" within a " + std::string(m_open),
                   "\"Add" + std::string(m_open) + "\" before it");
        m_open = {};
        if (++m_records > kMostRecords)
            refuse("more than " + std::to_string(kMostRecords) + " records", "a smaller file");
        if (owner == "Group")
            keep(m_current.group, m_out.groups, m_groupPlaces, "group");
        else if (owner == "Param")
            keep(m_current.param, m_out.params, m_out.paramPlaces, "parameter");
        else if (owner == "Request")
            keep(m_current.request, m_out.requests, m_out.requestPlaces, "request");
        else if (owner == "Entity")
            keep(m_current.entity, m_out.entities, m_out.entityPlaces, "entity");
        else if (owner == "Constraint")
            keep(m_current.constraint, m_out.constraints, m_constraintPlaces, "constraint");
    }

    template <class Record>
    void keep(Record& record, std::vector<Record>& records, std::unordered_map<SlvsHandle, std::uint32_t>& places,
              const char* what) {
        if (record.handle == 0)
            refuse(std::string("a ") + what + " without a handle", "its handle, such as \"h.v=00000001\", before this");
        if (!places.emplace(record.handle, static_cast<std::uint32_t>(records.size())).second)
            refuse(std::string("a second ") + what + " of this handle", "handles that differ");
        records.push_back(record);
        record = {};
    }

    std::string_view m_rest;
    const std::string& m_file;
    int m_line = 0;
    std::size_t m_records = 0;
    std::string_view m_open;  // whose values come now
    Current m_current;
    SlvsFile m_out;
    std::unordered_map<SlvsHandle, std::uint32_t> m_groupPlaces, m_constraintPlaces;
};

}  // namespace

std::string slvsName(char kind, SlvsHandle handle, std::size_t least) {
    char digits[8] = {};
    const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), handle, 16);
    const std::string number(std::begin(digits), end);
    return kind + std::string(number.size() < least ? least - number.size() : 0, '0') + number;
}

SlvsFile slvsRecords(std::string_view text, const std::string& file) {
    return RecordReader(text, file).read();
}

}  // namespace holdfast::formats
