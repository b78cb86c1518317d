#include "formats/json/JsonTree.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>

#include "document/text/DrawingError.h"
#include "document/text/NumberText.h"
#include "document/text/Suggest.h"

namespace holdfast::formats {
namespace {

/// Hands out the characters of a text and counts the lines on the way, so that the tree knows where it came from.
class LineCountingIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    LineCountingIterator(const char* position, int* line) : m_position(position), m_line(line) {}
    reference operator*() const { return *m_position; }
    LineCountingIterator& operator++() {
        if (*m_position == '\n')
            ++*m_line;
        ++m_position;
        return *this;
    }
    LineCountingIterator operator++(int) {
        const LineCountingIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const LineCountingIterator& other) const { return m_position == other.m_position; }
    bool operator!=(const LineCountingIterator& other) const { return m_position != other.m_position; }

private:
    const char* m_position;
    int* m_line;
};

std::string lineAndColumn(std::string_view text, std::size_t offset) {
    const std::string_view before = text.substr(0, std::min(offset, text.size()));
    const auto lines = std::count(before.begin(), before.end(), '\n');
    const std::size_t lineStart = before.rfind('\n') + 1;  // npos + 1 is 0: the first line
    return "line " + std::to_string(lines + 1) + ", column " + std::to_string(before.size() - lineStart);
}

/// The word of a text that holds the character before an offset: up to white space or a sign of JSON.
std::string wordAt(std::string_view text, std::size_t offset) {
    constexpr std::string_view limits = " \t\r\n,:[]{}\"";
    const std::size_t last = std::min(offset, text.size()) - 1;
    const std::size_t begin = text.find_last_of(limits, last) + 1;  // npos + 1 is 0: the first word
    const std::size_t end = std::min(text.find_first_of(limits, begin), text.size());
    return std::string(text.substr(begin, end - begin));
}

/// Builds the tree from the parser's events. Only the last item of a list ever grows, so pointers to the open nodes
/// stay good.
class TreeBuilder {
public:
    TreeBuilder(std::string_view text, const std::string& fileName, const int& line, const TakeListed& takeListed)
        : m_text(text), m_fileName(fileName), m_line(line), m_takeListed(takeListed) {}

    bool null() { return add(JsonNode::Kind::null) != nullptr; }
    bool boolean(bool value) {
        add(JsonNode::Kind::flag)->flag = value;
        return true;
    }
    bool number_integer(std::int64_t value) {
        add(JsonNode::Kind::integer)->number = static_cast<double>(value);
        return true;
    }
    bool number_unsigned(std::uint64_t value) {
        add(JsonNode::Kind::integer)->number = static_cast<double>(value);
        return true;
    }
    bool number_float(double value, const std::string& /*digits*/) {
        add(JsonNode::Kind::number)->number = value;
        return true;
    }
    bool string(std::string& value) {
        add(JsonNode::Kind::text)->text = std::move(value);
        return true;
    }
    bool binary(nlohmann::json::binary_t& /*bytes*/) { return false; }
    bool start_object(std::size_t /*size*/) { return open(JsonNode::Kind::object); }
    bool start_array(std::size_t /*size*/) { return open(JsonNode::Kind::list); }
    bool key(std::string& name) {
        m_open.back()->keys.push_back(std::move(name));
        m_keyLine = m_line;
        return true;
    }
    bool end_object() {
        refuseTwins(*m_open.back());
        m_open.pop_back();
        if (m_takeListed && m_open.size() == 2 && m_open.back()->kind == JsonNode::Kind::list &&
            m_root.kind == JsonNode::Kind::object) {
            m_takeListed(m_root.keys.back(), m_open.back()->items.back());
            recycle(m_open.back()->items.back());
            m_open.back()->items.pop_back();
        }
        return true;
    }
    bool end_array() {
        m_open.pop_back();
        return true;
    }
    bool parse_error(std::size_t offset, const std::string& lastToken, const nlohmann::json::exception& error) {
        const std::string token = tokenAt(offset, lastToken, error.what());
        fail(offset, foundIn(token, error.what()), expectedBy(token, error));
    }

    JsonNode take() { return std::move(m_root); }

private:
    JsonNode* add(JsonNode::Kind kind) {
        JsonNode* node = &m_root;
        if (!m_open.empty()) {
            m_open.back()->items.emplace_back();
            node = &m_open.back()->items.back();
        }
        node->kind = kind;
        node->line = kind == JsonNode::Kind::object ? m_line : std::max(m_keyLine, 1);
        return node;
    }

    bool open(JsonNode::Kind kind) {
        constexpr std::size_t deepest = 64;
        if (m_open.size() >= deepest)
            throw DrawingError(m_fileName, {"", "lists and objects nested more than 64 deep", "a drawing"}, m_line);
        m_open.push_back(add(kind));
        if (kind == JsonNode::Kind::list)
            m_open.back()->line = m_line;
        reuse(m_open.back()->items, m_spareItems);
        if (kind == JsonNode::Kind::object)
            reuse(m_open.back()->keys, m_spareKeys);
        return true;
    }

    template <class List>
    static void reuse(List& list, std::vector<List>& spare) {
        if (spare.empty())
            return;
        list = std::move(spare.back());
        spare.pop_back();
    }

    template <class List>
    static void keepSpare(List& list, std::vector<List>& spare) {
        constexpr std::size_t enough = 64,
                              ample = 32;  // for the objects of a drawing; long lists give their memory back
        list.clear();
        if (list.capacity() > 0 && list.capacity() <= ample && spare.size() < enough)
            spare.push_back(std::move(list));
    }

    /// The lists of a node that has been handed over serve the next one.
    void recycle(JsonNode& node) {
        for (JsonNode& item : node.items)
            recycle(item);
        keepSpare(node.items, m_spareItems);
        keepSpare(node.keys, m_spareKeys);
    }

    void refuseTwins(const JsonNode& object) {
        std::vector<std::string_view>& names = m_names;
        names.assign(object.keys.begin(), object.keys.end());
        std::sort(names.begin(), names.end());
        const auto twin = std::adjacent_find(names.begin(), names.end());
        if (twin == names.end())
            return;
        throw DrawingError(m_fileName,
                           {pointerTo(m_root, object), "the name " + inQuotes(*twin) + " twice in one object",
                            "each name once; remove or rename one of the two"},
                           object.line);
    }

    [[noreturn]] void fail(std::size_t offset, std::string found, std::string expected) {
        throw DrawingError(m_fileName, {lineAndColumn(m_text, offset), std::move(found), std::move(expected)});
    }

    /// What the parser read last; of a misspelt literal or number it keeps too much or too little.
    std::string tokenAt(std::size_t offset, const std::string& lastToken, std::string_view message) const {
        const bool isWord = message.find("invalid literal") != std::string_view::npos ||
                            message.find("invalid number") != std::string_view::npos;
        std::string word = isWord && offset > 0 ? wordAt(m_text, offset) : std::string();
        if (!word.empty())
            return word;
        return lastToken.substr(std::min(lastToken.find_first_not_of(" \t\r\n"), lastToken.size()));
    }

    static std::string foundIn(const std::string& lastToken, std::string_view message) {
        if (message.find("unexpected end of input") != std::string_view::npos || lastToken.empty())
            return "the end of the text";
        return inQuotes(lastToken);
    }

    static std::string expectedBy(const std::string& lastToken, const nlohmann::json::exception& error) {
        constexpr int outOfRange = 406;
        if (error.id == outOfRange)
            return "a number that fits into a double";
        if (lastToken.starts_with("N") || lastToken.starts_with("I") || lastToken.starts_with("-I"))
            return "a finite number";
        const std::string_view message = error.what();
        const std::size_t mark = message.rfind("; expected ");
        if (mark != std::string_view::npos && message.find("unexpected") != std::string_view::npos)
            return std::string(message.substr(mark + 11));
        return message.find("UTF-8") != std::string_view::npos ? "text in UTF-8" : "a JSON value";
    }

    std::string_view m_text;
    const std::string& m_fileName;
    const int& m_line;
    const TakeListed& m_takeListed;
    int m_keyLine = 1;
    JsonNode m_root;
    std::vector<JsonNode*> m_open;
    std::vector<std::vector<JsonNode>> m_spareItems;
    std::vector<std::vector<std::string>> m_spareKeys;
    std::vector<std::string_view> m_names;  // of the object that has just ended
};

std::string escaped(std::string_view key) {
    std::string text;
    for (const char c : key) {
        if (c == '~')
            text += "~0";
        else if (c == '/')
            text += "~1";
        else
            text += c;
    }
    return text;
}

std::string stepTo(const JsonNode& parent, std::size_t item) {
    return '/' + (parent.kind == JsonNode::Kind::object ? escaped(parent.keys[item]) : std::to_string(item));
}

/// Appends the way from a node to another below it; false when it is not below.
bool appendPath(const JsonNode& from, const JsonNode& to, std::string& path) {
    if (&from == &to)
        return true;
    const std::size_t length = path.size();
    for (std::size_t i = 0; i < from.items.size(); ++i) {
        path += stepTo(from, i);
        if (appendPath(from.items[i], to, path))
            return true;
        path.resize(length);
    }
    return false;
}

}  // namespace

JsonNode parseJsonTree(std::string_view text, const std::string& fileName) {
    return parseJsonTree(text, fileName, {});
}

JsonNode parseJsonTree(std::string_view text, const std::string& fileName, const TakeListed& take) {
    if (text.find_first_not_of(" \t\r\n") == std::string_view::npos)
        throw DrawingError(fileName, {"", "an empty file", "a drawing in JSON"});
    int line = 1;
    TreeBuilder builder(text, fileName, line, take);
    nlohmann::json::sax_parse(LineCountingIterator(text.data(), &line),
                              LineCountingIterator(text.data() + text.size(), &line), &builder);
    return builder.take();
}

std::string describe(const JsonNode& node) {
    switch (node.kind) {
        case JsonNode::Kind::null:
            return "nothing (null)";
        case JsonNode::Kind::flag:
            return node.flag ? "true" : "false";
        case JsonNode::Kind::integer:
        case JsonNode::Kind::number:
            return "the number " + numberText(node.number);
        case JsonNode::Kind::text:
            return "the text " + inQuotes(node.text);
        case JsonNode::Kind::list:
            return "a list of " + std::to_string(node.items.size()) + (node.items.size() == 1 ? " item" : " items");
        case JsonNode::Kind::object:
            return "an object";
    }
    return "nothing";
}

std::string pointerTo(const JsonNode& root, const JsonNode& node) {
    std::string path;
    appendPath(root, node, path);
    return path;
}

const JsonNode& nodeNear(const JsonNode& root, std::string_view pointer) {
    const JsonNode* node = &root;
    while (!pointer.empty()) {
        const std::size_t length = pointer.find('/', 1);
        const std::string_view step = pointer.substr(0, length);
        pointer.remove_prefix(step.size());
        std::size_t item = 0;
        while (item < node->items.size() && stepTo(*node, item) != step)
            ++item;
        if (item == node->items.size())
            return *node;
        node = &node->items[item];
    }
    return *node;
}

}  // namespace holdfast::formats
