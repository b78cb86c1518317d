#include "formats/json/JsonView.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "document/text/DrawingError.h"
#include "document/text/Suggest.h"

namespace holdfast::formats {

void JsonView::fail(std::string found, std::string expected) const {
    throw DrawingError(*m_file, {pointerTo(*m_root, *m_node), std::move(found), std::move(expected)}, m_node->line);
}

void JsonView::failAs(std::string expected) const {
    fail(describe(*m_node), std::move(expected));
}

void JsonView::expect(JsonNode::Kind kind, const char* name) const {
    if (m_node->kind != kind)
        failAs(name);
}

std::optional<JsonView> JsonView::find(std::string_view key) const {
    expect(JsonNode::Kind::object, "an object");
    const auto found = std::find(m_node->keys.begin(), m_node->keys.end(), key);
    if (found == m_node->keys.end())
        return std::nullopt;
    return JsonView(*this, m_node->items[static_cast<std::size_t>(found - m_node->keys.begin())]);
}

JsonView JsonView::at(std::string_view key) const {
    if (const std::optional<JsonView> member = find(key))
        return *member;
    const std::vector<std::string_view> present(m_node->keys.begin(), m_node->keys.end());
    const std::string_view near = nearestWord(key, present);
    fail("no " + inQuotes(key) + (near.empty() ? "" : " (but " + inQuotes(near) + ")"), "the field " + inQuotes(key));
}

void JsonView::allowOnly(std::span<const std::string_view> keys) const {
    expect(JsonNode::Kind::object, "an object");
    for (const std::string& key : m_node->keys) {
        if (std::find(keys.begin(), keys.end(), key) == keys.end())
            fail("the unknown field " + inQuotes(key), "one of the fields " + oneOf(keys) + suggestion(key, keys));
    }
}

std::vector<JsonView> JsonView::list() const {
    expect(JsonNode::Kind::list, "a list");
    std::vector<JsonView> views;
    views.reserve(m_node->items.size());
    for (const JsonNode& item : m_node->items)
        views.push_back(JsonView(*this, item));
    return views;
}

std::string JsonView::text() const {
    expect(JsonNode::Kind::text, "a text");
    return m_node->text;
}

double JsonView::number() const {
    if (m_node->kind != JsonNode::Kind::integer)
        expect(JsonNode::Kind::number, "a number");
    return m_node->number;
}

int JsonView::integer() const {
    expect(JsonNode::Kind::integer, "a whole number");
    if (m_node->number < std::numeric_limits<int>::min() || m_node->number > std::numeric_limits<int>::max())
        failAs("a whole number below 2147483648");
    return static_cast<int>(m_node->number);
}

bool JsonView::flag() const {
    expect(JsonNode::Kind::flag, "true or false");
    return m_node->flag;
}

Vec2 JsonView::point() const {
    if (m_node->kind != JsonNode::Kind::list || m_node->items.size() != 2)
        failAs("a list of two numbers, [x, y]");
    return {JsonView(*this, m_node->items[0]).number(), JsonView(*this, m_node->items[1]).number()};
}

bool flagOr(const JsonView& view, std::string_view key, bool otherwise) {
    const auto member = view.find(key);
    return member ? member->flag() : otherwise;
}

}  // namespace holdfast::formats
