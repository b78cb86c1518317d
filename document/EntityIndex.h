#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "document/Document.h"
#include "document/Uses.h"
#include "document/text/Suggest.h"

namespace holdfast::document {

/// Finds the entities of a document by their ids. Valid while the document's entities stay as they are.
class EntityIndex {
public:
    /// Of entities with the same id, the first is found.
    explicit EntityIndex(const Document& document) : m_document(&document) {
        m_positions.reserve(document.entities.size());
        for (std::size_t i = 0; i < document.entities.size(); ++i)
            m_positions.emplace(document.entities[i].id, i);
    }

    const Entity* find(std::string_view id) const {
        const auto found = m_positions.find(id);
        return found == m_positions.end() ? nullptr : &m_document->entities[found->second];
    }

    std::optional<std::size_t> position(std::string_view id) const {
        const auto found = m_positions.find(id);
        return found == m_positions.end() ? std::nullopt : std::optional<std::size_t>(found->second);
    }

    /// "; did you mean "g3"?" when an entity's id is near, else nothing. Cost: all ids; for messages only.
    std::string suggestionFor(std::string_view id) const {
        std::vector<std::string_view> ids;
        for (const Entity& entity : m_document->entities)
            ids.emplace_back(entity.id);
        return suggestion(id, ids);
    }

private:
    const Document* m_document;
    std::unordered_map<std::string_view, std::size_t> m_positions;
};

}  // namespace holdfast::document
