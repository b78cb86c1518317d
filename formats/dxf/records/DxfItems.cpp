#include "formats/dxf/records/DxfItems.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "document/text/NumberText.h"
#include "formats/dxf/DxfCodes.h"
#include "formats/dxf/DxfNumber.h"

namespace holdfast::formats {
namespace {

constexpr std::string_view kBlanksAround = " \t\r";

std::string_view takeWholeLine(std::string_view& rest) {
    const std::size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end == std::string_view::npos ? end : end + 1);
    rest.remove_prefix(line.size());
    return line;
}

int codeIn(std::string_view line) {
    const std::size_t first = line.find_first_not_of(" \t+");
    int code = 0;
    if (first != std::string_view::npos)
        std::from_chars(line.data() + first, line.data() + line.size(), code);
    return code;
}

/// Where the value of a group stands on its line.
std::pair<std::size_t, std::size_t> valueIn(std::string_view line, int code) {
    std::size_t end = line.size();
    if (end > 0 && line[end - 1] == '\n')
        --end;
    if (end > 0 && line[end - 1] == '\r')
        --end;
    if (code >= 1 && code <= 9)
        return {0, end};
    const std::size_t first = std::min(end, line.find_first_not_of(kBlanksAround));
    const std::size_t last = line.substr(0, end).find_last_not_of(kBlanksAround);
    return {first, last == std::string_view::npos ? first : last + 1};
}

bool hasExponent(std::string_view number) {
    return number.find_first_of("eE") != std::string_view::npos;
}

std::size_t decimalsIn(std::string_view number) {
    const std::size_t dot = number.find('.');
    return dot == std::string_view::npos ? 0 : number.size() - dot - 1;
}

}  // namespace

DxfItems itemsOf(std::string_view record) {
    DxfItems items;
    while (!record.empty()) {
        const std::string_view head = takeWholeLine(record), line = takeWholeLine(record);
        const int code = codeIn(head);
        if (code == kComment && !items.empty()) {
            items.back().after.append(head).append(line);
            continue;
        }
        const auto [first, last] = valueIn(line, code);
        items.push_back({code, std::string(head).append(line.substr(0, first)),
                         std::string(line.substr(first, last - first)), std::string(line.substr(last))});
    }
    return items;
}

std::string textOf(const DxfItems& items) {
    std::string text;
    for (const DxfItem& item : items)
        text.append(item.before).append(item.value).append(item.after);
    return text;
}

DxfStyle styleOf(const DxfItems& items) {
    DxfStyle style;
    if (items.empty())
        return style;
    const std::string& head = items.front().before;
    const std::size_t end = head.find('\n');
    const bool isReturned = end != std::string::npos && end > 0 && head[end - 1] == '\r';
    style.lineEnd = isReturned ? "\r\n" : "\n";
    style.codeWidth = end == std::string::npos ? 0 : end - (isReturned ? 1 : 0);
    for (const int coordinate : {11, 10})
        if (const auto found = findOwn(items, coordinate))
            style.sample = items[*found].value;
    return style;
}

DxfItem newItem(int code, std::string_view value, const DxfStyle& style) {
    std::string head = std::to_string(code);
    if (head.size() < style.codeWidth)
        head.insert(0, style.codeWidth - head.size(), ' ');
    return {code, head + style.lineEnd, std::string(value), style.lineEnd};
}

DxfItem newNumber(int code, double value, const DxfStyle& style) {
    return newItem(code, numberLike(value, style.sample), style);
}

std::string numberLike(double value, std::string_view sample) {
    constexpr double hugest = 1e16, tiniest = 1e-9;  // beyond them a number is mostly zeros
    const double size = std::abs(value);
    if (hasExponent(sample) || size >= hugest || (size > 0.0 && size < tiniest))
        return numberText(value);
    std::array<char, 64> digits{};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value == 0.0 ? 0.0 : value,
                                            std::chars_format::fixed);
    std::string text(digits.data(), end);
    const std::size_t wanted = decimalsIn(sample), had = decimalsIn(text);
    if (wanted > 0 && text.find('.') == std::string::npos)
        text += '.';
    if (had < wanted)
        text.append(wanted - had, '0');
    return text;
}

std::vector<std::size_t> ownGroups(const DxfItems& items) {
    std::vector<std::size_t> own;
    bool isInList = false;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const DxfItem& item = items[i];
        if (item.code == kEmbedded)
            break;
        if (item.code == kList)
            isInList = item.value.starts_with('{');
        else if (!isInList && item.code < kFirstForeign)
            own.push_back(i);
    }
    return own;
}

std::optional<std::size_t> findOwn(const DxfItems& items, int code) {
    for (const std::size_t i : ownGroups(items))
        if (items[i].code == code)
            return i;
    return std::nullopt;
}

double ownNumber(const DxfItems& items, int code, double otherwise) {
    const auto found = findOwn(items, code);
    return found ? numberIn<double>(items[*found].value).value_or(otherwise) : otherwise;
}

bool looksDown(const DxfItems& items) {
    return ownNumber(items, 230, 1.0) < 0.0;
}

}  // namespace holdfast::formats
