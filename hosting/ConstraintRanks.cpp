#include "hosting/ConstraintRanks.h"

#include <string>
#include <unordered_map>

#include "hosting/DocumentSketch.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/diagnosis/Ranks.h"

namespace holdfast::hosting {

struct ConstraintRanks::Inside {
    Ranks ranks;
    std::unordered_map<std::string, int> numbers{};  ///< of entities

    Inside(const Document& document, std::size_t firstProposal) : ranks(sketchFrom(document), firstProposal) {
        for (std::size_t i = 0; i < document.entities.size(); ++i)
            numbers.emplace(document.entities[i].id, static_cast<int>(i));
    }
    SketchPlace placeOf(const Place& place) const { return {numbers.at(place.entity), place.kind, place.index}; }
};

ConstraintRanks::ConstraintRanks(const Document& document, std::size_t firstProposal) try
    : m_inside(std::make_unique<Inside>(document, firstProposal)) {
} catch (const SketchError& error) {
    throw UnsolvableDocument(error.what());
}

ConstraintRanks::~ConstraintRanks() = default;
ConstraintRanks::ConstraintRanks(ConstraintRanks&&) noexcept = default;
ConstraintRanks& ConstraintRanks::operator=(ConstraintRanks&&) noexcept = default;

void ConstraintRanks::hold(std::size_t entity) {
    m_inside->ranks.hold(static_cast<int>(entity));
}

int ConstraintRanks::freedomOf(const Place& place) {
    return m_inside->ranks.freedomOf(m_inside->placeOf(place));
}

bool ConstraintRanks::isDetermined(const Place& place, int coordinate) {
    return m_inside->ranks.isDetermined(m_inside->placeOf(place), coordinate);
}

int ConstraintRanks::freedomOf(std::size_t entity) {
    return m_inside->ranks.freedomOf(static_cast<int>(entity));
}

int ConstraintRanks::take(std::size_t proposal) {
    return m_inside->ranks.take(static_cast<int>(proposal));
}

int ConstraintRanks::takePart(std::size_t proposal) {
    return m_inside->ranks.takePart(static_cast<int>(proposal));
}

}  // namespace holdfast::hosting
