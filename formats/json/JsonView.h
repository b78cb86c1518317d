#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/json/JsonTree.h"

namespace holdfast::formats {

/// A value of a drawing file that is being read. Every question that the value cannot answer throws a DrawingError
/// with the file, the line, the JSON pointer, what stands there and what is expected. Valid while tree and name live.
class JsonView {
public:
    JsonView(const JsonNode& root, const std::string& fileName) : m_root(&root), m_file(&fileName), m_node(&root) {}

    /// A member of an object; absent: an error.
    JsonView at(std::string_view key) const;
    /// A member of an object, or nothing.
    std::optional<JsonView> find(std::string_view key) const;
    /// Refuses members with other names than these.
    void allowOnly(std::span<const std::string_view> keys) const;

    /// The elements of a list.
    std::vector<JsonView> list() const;
    std::string text() const;
    double number() const;
    int integer() const;
    bool flag() const;
    /// A list of two numbers.
    Vec2 point() const;

    bool isText() const { return m_node->kind == JsonNode::Kind::text; }

    [[noreturn]] void fail(std::string found, std::string expected) const;
    /// Fails with what stands here as what was found.
    [[noreturn]] void failAs(std::string expected) const;

private:
    JsonView(const JsonView& parent, const JsonNode& node)
        : m_root(parent.m_root), m_file(parent.m_file), m_node(&node) {}
    void expect(JsonNode::Kind kind, const char* name) const;

    const JsonNode* m_root;
    const std::string* m_file;
    const JsonNode* m_node;
};

/// A member that is true or false, or what is meant without it.
bool flagOr(const JsonView& view, std::string_view key, bool otherwise);

}  // namespace holdfast::formats
