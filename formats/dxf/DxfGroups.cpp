#include "formats/dxf/DxfGroups.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "document/text/DrawingError.h"
#include "document/text/Suggest.h"
#include "formats/dxf/DxfCodes.h"
#include "formats/dxf/DxfNumber.h"

namespace holdfast::formats {
namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

bool holdsText(int code) {
    return code >= 0 && code <= 9;
}

}  // namespace

DxfGroups::DxfGroups(std::string_view text, const std::string& fileName)
    : m_text(text), m_rest(text), m_fileName(&fileName) {
    if (text.find('\0') != std::string_view::npos)
        throw DrawingError(fileName, {"", "binary data", "a DXF file in text form; save it as an ASCII DXF"});
    if (trimmed(text.substr(0, text.find('\n'))).empty() && text.find_first_not_of(" \t\r\n") == std::string_view::npos)
        throw DrawingError(fileName, {"", "an empty file", "a DXF file"});
    if (constexpr std::string_view mark = "\xEF\xBB\xBF"; m_rest.starts_with(mark))
        m_rest.remove_prefix(mark.size());  // some editors put it before UTF-8
    advance();
}

void DxfGroups::fail(int line, std::string found, std::string expected) const {
    throw DrawingError(*m_fileName, {"", std::move(found), std::move(expected)}, line);
}

std::string_view DxfGroups::takeLine() {
    const std::size_t end = m_rest.find('\n');
    std::string_view line = m_rest.substr(0, end);
    m_rest.remove_prefix(end == std::string_view::npos ? m_rest.size() : end + 1);
    ++m_line;
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

int DxfGroups::codeOf(std::string_view line) const {
    const std::optional<int> code = numberIn<int>(trimmed(line));
    if (!code)
        fail(m_line, inQuotes(trimmed(line)), "a group code, a whole number; lines come in pairs of code and value");
    return *code;
}

std::optional<std::uint64_t> handleIn(std::string_view text) {
    text = trimmed(text);
    std::uint64_t handle = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), handle, 16);
    if (text.empty() || error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return handle;
}

void DxfGroups::noteHandle(const DxfGroup& group) {
    constexpr int handleOfStyle = 105;
    constexpr std::uint64_t highest = UINT64_MAX / 2;  // one above leaves no room for others: it is none
    if (group.code != kHandle && group.code != handleOfStyle)
        return;
    if (const auto found = handleIn(group.value); found && *found < highest)
        m_highestHandle = std::max(m_highestHandle, *found);
}

void DxfGroups::advance() {
    constexpr int variable = 9;
    const bool isOfVariable = m_next && m_next->code == variable;
    do {
        m_next.reset();
        if (m_rest.find_first_not_of(" \t\r\n") == std::string_view::npos)
            return;
        const std::size_t begin = at();
        const int code = codeOf(takeLine());
        if (m_rest.empty())
            fail(m_line, "the end of the file", "a value for group code " + std::to_string(code));
        const std::string_view value = takeLine();
        m_next = DxfGroup{code, holdsText(code) && code != 0 ? value : trimmed(value), m_line, begin, at()};
    } while (m_next->code == kComment);
    if (!isOfVariable)
        noteHandle(*m_next);
}

DxfGroup DxfGroups::take(const char* expected) {
    if (!m_next)
        fail(m_line, "the end of the file", expected);
    const DxfGroup group = *m_next;
    advance();
    return group;
}

double DxfGroups::number(const DxfGroup& group) const {
    const std::optional<double> value = numberIn<double>(trimmed(group.value));
    if (!value || !std::isfinite(*value))
        fail(group.line, inQuotes(group.value), "a number for group code " + std::to_string(group.code));
    return *value;
}

int DxfGroups::integer(const DxfGroup& group) const {
    const std::optional<int> value = numberIn<int>(trimmed(group.value));
    if (!value)
        fail(group.line, inQuotes(group.value), "a whole number for group code " + std::to_string(group.code));
    return *value;
}

const DxfGroup* DxfEntity::find(int code) const {
    const auto found = std::find_if(groups.begin(), groups.end(), [&](const DxfGroup& g) { return g.code == code; });
    return found == groups.end() ? nullptr : &*found;
}

double DxfEntity::number(int code, double otherwise) const {
    const DxfGroup* group = find(code);
    return group == nullptr ? otherwise : source->number(*group);
}

int DxfEntity::integer(int code, int otherwise) const {
    const DxfGroup* group = find(code);
    return group == nullptr ? otherwise : source->integer(*group);
}

double DxfEntity::required(int code) const {
    const DxfGroup* group = find(code);
    if (group == nullptr)
        fail("a " + std::string(name) + " without group " + std::to_string(code), "that group with a number");
    return source->number(*group);
}

std::string_view DxfEntity::requiredText(int code) const {
    const DxfGroup* group = find(code);
    if (group == nullptr)
        fail("a " + std::string(name) + " without group " + std::to_string(code), "that group with its text");
    return group->value;
}

void DxfEntity::fail(std::string found, std::string expected) const {
    source->fail(line, std::move(found), std::move(expected));
}

DxfEntity takeEntity(DxfGroups& groups) {
    const DxfGroup name = groups.take("an entity");
    DxfEntity entity{name.value, name.line, {}, &groups, name.begin, name.end};
    bool embedded = false, isInList = false;
    while (!groups.peek() || groups.peek()->code != 0) {
        const DxfGroup group = groups.take("EOF as the value of group 0; the file is not complete");
        entity.end = group.end;
        embedded = embedded || group.code == kEmbedded;
        if (group.code == kList)
            isInList = group.value.starts_with('{');
        else if (!embedded && !isInList && group.code < kFirstForeign)
            entity.groups.push_back(group);
    }
    return entity;
}

std::vector<DxfEntity> takeBehind(DxfGroups& groups, std::string_view name, std::size_t& end) {
    std::vector<DxfEntity> behind;
    for (; groups.peek()->value == name; end = behind.back().end)
        behind.push_back(takeEntity(groups));
    if (groups.peek()->value == "SEQEND")
        end = takeEntity(groups).end;
    return behind;
}

}  // namespace holdfast::formats
