#include "editing/define/Missing.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/OutOfReach.h"
#include "document/Places.h"
#include "editing/EditContext.h"
#include "editing/define/DatumSearch.h"
#include "editing/define/ProposedRelations.h"
#include "geometry/DisjointSets.h"
#include "geometry/Tolerances.h"
#include "hosting/ConstraintRanks.h"
#include "hosting/DocumentSketch.h"

namespace holdfast::editing {

namespace {

/// Rounds without what made others redundant in those before; few drawings need a second one. In each round so many
/// are left out at most.
constexpr int kMostRounds = 12, kMostTwiceSaid = 24;

/// So many relations are left out in turn where freedom is left.
constexpr std::size_t kMostRelations = 6;

/// A value with the fewest decimals that still says what is measured; one with more than drawings are made with stays.
double plainly(double measured, double same) {
    constexpr int mostDecimals = 6;
    double unit = 1.0;
    for (int decimals = 0; decimals <= mostDecimals; ++decimals, unit *= 10.0) {
        const double rounded = std::round(measured * unit) / unit;
        if (std::abs(rounded - measured) <= same && rounded != 0.0)
            return rounded;
    }
    return measured;
}

class Search {
public:
    Search(const Document& document, const std::vector<std::string>& entities)
        : m_document(document), m_index(document), m_mayMove(document.entities.size(), entities.empty()) {
        for (const std::string& name : entities)
            m_mayMove[*m_index.position(name)] = true;
        if (entities.empty())
            leaveOutOfReach();
        m_isWhole = entities.empty() && m_missing.outOfReach.empty();
    }

    Missing run() {
        const DocumentSketch sketch(m_document);
        m_size = sketch.size();
        m_same = kHoldsAsDrawn * m_size;
        const DocumentDiagnosis given = sketch.diagnose();
        leaveAlone(sketch, given);
        if (given.freedom == 0)
            return std::move(m_missing);
        search(given);
        return std::move(m_missing);
    }

private:
    /// What one way of finishing the drawing comes to.
    struct Outcome {
        Missing missing;
        int freedom = 0;
        std::vector<std::string> inTheWay;  ///< relations that may be, where freedom is left
    };

    /// Where freedom is left because the rest would be said twice, it may be a relation that is in the way, and not
    /// what was left out for it: a point on a curve that it meets in a vertex anyway.
    void search(const DocumentDiagnosis& given) {
        const Missing told = m_missing;
        Outcome best = finished(told, given);
        const std::vector<std::string> relations = best.inTheWay;
        std::unordered_set<std::string> leftOut;
        for (const std::string& relation : relations) {
            m_refused = leftOut;
            m_refused.insert(relation);
            Outcome other = finished(told, given);
            if (other.freedom <= best.freedom)
                leftOut.insert(relation);
            if (other.freedom < best.freedom)
                best = std::move(other);
            if (best.freedom == 0)
                break;
        }
        m_missing = std::move(best.missing);
    }

    /// The relations among what is to be added, without joints and directions of lines, that are on something which the
    /// diagnosis sees move.
    std::vector<std::string> relationsOnFree() const {
        std::unordered_set<std::string_view> free;
        for (const DocumentDiagnosis::Part& part : m_whole.parts)
            for (const std::size_t number : part.entities)
                if (part.freedom > 0 && m_mayMove[number])
                    free.insert(m_document.entities[number].id);
        std::vector<std::string> relations;
        for (const Proposal& proposal : m_missing.constraints) {
            const Constraint& constraint = proposal.constraint;
            const bool isOther = isDimension(constraint.type) || constraint.type == ConstraintType::fixed ||
                                 constraint.type == ConstraintType::coincident || constraint.refs.size() < 2;
            if (!isOther && relations.size() < kMostRelations &&
                std::any_of(constraint.refs.begin(), constraint.refs.end(),
                            [&](const Place& place) { return free.contains(place.entity); }))
                relations.push_back(keyOf(constraint));
        }
        return relations;
    }

    /// Rounds until one leaves nothing out that was in its way, or nothing free; of those before, the one that leaves
    /// the least.
    Outcome finished(const Missing& told, const DocumentDiagnosis& given) {
        std::optional<Outcome> best;
        for (int round = 0; round < kMostRounds; ++round) {
            m_missing = told;
            takeRelations();
            takeDimensions();
            const bool isOneRefused = leavesTwiceSaidOut(given.redundant.size());
            noteStillFree();
            const int freedom = freedomLeft();
            if (!best || freedom < best->freedom)
                best = Outcome{m_missing, freedom, relationsOnFree()};
            if (!isOneRefused || freedom == 0)
                break;
        }
        return std::move(*best);
    }

    /// Parts that do not hold have no freedom that could be told, and those that cannot move need nothing.
    void leaveAlone(const DocumentSketch& sketch, const DocumentDiagnosis& given) {
        m_isAlone.assign(m_document.entities.size(), false);
        m_isRigid.assign(m_document.entities.size(), false);
        const std::vector<double> misses = sketch.shortfalls();
        std::unordered_set<std::string_view> broken;
        for (std::size_t c = 0; c < m_document.constraints.size(); ++c)
            if (misses[c] > kHolds * m_size)
                for (const Place& place : m_document.constraints[c].refs)
                    broken.insert(place.entity);
        for (const DocumentDiagnosis::Part& part : given.parts) {
            const bool isBroken = std::any_of(part.entities.begin(), part.entities.end(), [&](std::size_t number) {
                return broken.contains(m_document.entities[number].id);
            });
            for (const std::size_t number : part.entities) {
                m_isAlone[number] = isBroken;
                m_isRigid[number] = part.freedom == 0;
                if (isBroken && m_mayMove[number])
                    m_missing.leftAlone.push_back(m_document.entities[number].id);
            }
        }
        for (std::size_t i = 0; i < m_mayMove.size(); ++i)
            m_mayMove[i] = m_mayMove[i] && !m_isAlone[i] && !m_document.entities[i].fixed;
    }

    /// The drawing with what is to be added so far.
    Document soFar() const {
        Document document = m_document;
        for (const Proposal& proposal : m_missing.constraints)
            add(document, proposal.constraint);
        return document;
    }

    static void add(Document& document, Constraint constraint) {
        constraint.id = "\nproposed " + std::to_string(document.constraints.size());
        document.constraints.push_back(std::move(constraint));
    }

    ConstraintRanks ranksOf(const Document& document, std::size_t firstProposal) const {
        ConstraintRanks ranks(document, firstProposal);
        for (std::size_t i = 0; i < m_isRigid.size(); ++i)
            if (m_isRigid[i] || m_isAlone[i])
                ranks.hold(i);
        return ranks;
    }

    /// On something that is to be held, and on nothing else that can still move.
    bool isAsked(const Constraint& constraint, ConstraintRanks& ranks) const {
        bool isAsked = false;
        for (const Place& place : constraint.refs) {
            const std::size_t number = *m_index.position(place.entity);
            isAsked = isAsked || m_mayMove[number];
            if (m_isAlone[number] || (!m_isWhole && !m_mayMove[number] && !isHeld(constraint, place, ranks)))
                return false;
        }
        return isAsked;
    }

    /// As far as the constraint reads it: a coordinate, a point, or all of an entity.
    bool isHeld(const Constraint& constraint, const Place& place, ConstraintRanks& ranks) const {
        const ConstraintTraits& traits = traitsOf(constraint.type);
        if (constraint.refs.size() == 2 && traits.coordinate >= 0 && ranks.isDetermined(place, traits.coordinate))
            return true;
        const int freedom = ranks.freedomOf(place);
        return (freedom < 0 ? ranks.freedomOf(*m_index.position(place.entity)) : freedom) == 0;
    }

    /// Takes of the proposals, which are the last constraints of a document, those that say something of their own.
    void takeFrom(const std::vector<Proposal>& proposals, ConstraintRanks& ranks, std::size_t first,
                  const std::vector<double>& misses) {
        for (const bool inPart : {false, true})
            for (std::size_t i = 0; i < proposals.size(); ++i) {
                const Proposal& proposal = proposals[i];
                const std::size_t number = first + i;
                if (misses[number] > m_same || (inPart && !proposal.mayBeImpliedInPart) ||
                    m_refused.contains(keyOf(proposal.constraint)) || !isAsked(proposal.constraint, ranks))
                    continue;
                if ((inPart ? ranks.takePart(number) : ranks.take(number)) > 0)
                    m_missing.constraints.push_back(proposal);
            }
    }

    void takeRelations() {
        if (!m_relations)
            m_relations = proposedRelations(m_document, m_same);
        const std::size_t first = m_document.constraints.size();
        Document document = m_document;
        for (const Proposal& proposal : *m_relations)
            add(document, proposal.constraint);
        ConstraintRanks ranks = ranksOf(document, first);
        takeFrom(*m_relations, ranks, first, DocumentSketch(document).shortfalls());
        m_datum = datumIn(m_document, ranks, m_isAlone, m_mayMove, m_same);
    }

    std::vector<std::vector<std::size_t>> partsOf(const Document& document) const {
        DisjointSets sets(document.entities.size());
        for (const Constraint& constraint : document.constraints) {
            std::optional<std::size_t> first;
            for (const Place& place : constraint.refs) {
                const std::size_t number = *m_index.position(place.entity);
                if (m_document.entities[number].fixed)
                    continue;
                if (first)
                    sets.join(*first, number);
                first = number;
            }
        }
        std::unordered_map<std::size_t, std::size_t> numbers;
        std::vector<std::vector<std::size_t>> parts;
        for (std::size_t i = 0; i < document.entities.size(); ++i) {
            if (!m_mayMove[i])
                continue;
            const auto [found, isNew] = numbers.emplace(sets.find(i), parts.size());
            if (isNew)
                parts.emplace_back();
            parts[found->second].push_back(i);
        }
        return parts;
    }

    void takeDimensions() {
        if (!m_datum)
            return;
        Document document = soFar();
        const std::size_t first = document.constraints.size();
        std::vector<Proposal> proposals;
        if (m_datum->toBeFixed && !m_datum->isHeldInPart)
            proposals.push_back(fixedDatum());
        for (Proposal& dimension : proposedDimensions(document, *m_datum, partsOf(document), m_same))
            proposals.push_back(std::move(dimension));
        addLastResorts(proposals);
        for (const Proposal& proposal : proposals)
            add(document, proposal.constraint);
        measure(document, first, proposals);
        ConstraintRanks ranks = ranksOf(document, first);
        takeFrom(proposals, ranks, first, DocumentSketch(document).shortfalls());
        noteStillFree(ranks);
    }

    Proposal fixedDatum() const {
        Proposal fixed;
        fixed.constraint.type = ConstraintType::fixed;
        fixed.constraint.refs = {*m_datum->toBeFixed};
        fixed.reason = "the datum, from which the rest is measured";
        return fixed;
    }

    /// What the drawing says in part already, but nothing else takes.
    void addLastResorts(std::vector<Proposal>& proposals) const {
        std::vector<Proposal> last = heldEllipses(m_document);
        if (m_datum->toBeFixed && m_datum->isHeldInPart)
            last.insert(last.begin(), fixedDatum());
        for (Proposal& proposal : last) {
            proposal.mayBeImpliedInPart = true;
            proposals.push_back(std::move(proposal));
        }
    }

    void measure(Document& document, std::size_t first, std::vector<Proposal>& proposals) const {
        const DocumentSketch sketch(document);
        for (std::size_t i = 0; i < proposals.size(); ++i) {
            Constraint& wanted = proposals[i].constraint;
            if (!wanted.value)
                continue;
            const double measured = sketch.measured(first + i);
            const bool isAngle = traitsOf(wanted.type).value == ConstraintValue::angle;
            const double said = plainly(spokenValue(wanted.type, measured), isAngle ? kHoldsAsDrawn : 0.5 * m_same);
            wanted.value = keptValue(wanted.type, said);
            document.constraints[first + i].value = wanted.value;
        }
    }

    void noteStillFree(ConstraintRanks& ranks) {
        for (std::size_t i = 0; i < m_document.entities.size(); ++i)
            if (m_mayMove[i] && ranks.freedomOf(i) > 0)
                m_missing.stillFree.push_back(m_document.entities[i].id);
    }

    /// The drawing with the first of what is to be added.
    DocumentDiagnosis diagnosedWith(std::size_t count) const {
        Document document = m_document;
        for (std::size_t i = 0; i < count; ++i)
            add(document, m_missing.constraints[i].constraint);
        return DocumentSketch(document).diagnose();
    }

    /// The first of what is to be added with which the diagnosis finds more too much than before.
    std::size_t firstTwiceSaid(std::size_t given) const {
        std::size_t good = 0, bad = m_missing.constraints.size();
        while (bad - good > 1) {
            const std::size_t middle = good + (bad - good) / 2;
            (diagnosedWith(middle).redundant.size() <= given ? good : bad) = middle;
        }
        return good;
    }

    /// A point that comes to be shared makes another equation of a tangency, which then may say what is said already.
    /// What makes that happen is left out and refused from now on; false where nothing does.
    bool leavesTwiceSaidOut(std::size_t given) {
        for (int found = 0; found < kMostTwiceSaid; ++found) {
            m_whole = diagnosedWith(m_missing.constraints.size());
            if (m_whole.redundant.size() <= given)
                return found > 0;
            const auto culprit = m_missing.constraints.begin() + static_cast<std::ptrdiff_t>(firstTwiceSaid(given));
            m_refused.insert(keyOf(culprit->constraint));
            m_missing.constraints.erase(culprit);
        }
        return true;
    }

    void leaveOutOfReach() {
        const OutOfReach outOfReach(m_document.layers);
        for (std::size_t i = 0; i < m_mayMove.size(); ++i)
            if (outOfReach.holds(*m_document.entities[i].look)) {
                m_mayMove[i] = false;
                m_missing.outOfReach.push_back(m_document.entities[i].id);
            }
    }

    /// What the drawing can still do, whatever the first derivatives show of it.
    void noteStillFree() {
        if (!m_isWhole)
            return;
        std::vector<std::string> free;
        for (const DocumentDiagnosis::Part& part : m_whole.parts)
            for (const std::size_t number : part.entities)
                if (part.freedom > 0 && m_mayMove[number])
                    free.push_back(m_document.entities[number].id);
        if (free.empty() || m_missing.stillFree.empty())
            m_missing.stillFree = std::move(free);
    }

    /// Of the parts with something that is to be held.
    int freedomLeft() const {
        int freedom = 0;
        for (const DocumentDiagnosis::Part& part : m_whole.parts)
            if (std::any_of(part.entities.begin(), part.entities.end(), [&](std::size_t i) { return m_mayMove[i]; }))
                freedom += part.freedom;
        return freedom;
    }

    static std::string keyOf(const Constraint& constraint) {
        std::string key(typeName(constraint.type));
        for (const Place& place : constraint.refs)
            key += '\n' + spokenPlace(place);
        return key;
    }

    const Document& m_document;
    EntityIndex m_index;
    std::vector<bool> m_mayMove;  ///< by entity: it is to be held
    std::vector<bool> m_isAlone, m_isRigid;
    bool m_isWhole = false;
    double m_size = 1.0, m_same = 0.0;
    std::optional<std::vector<Proposal>> m_relations;  ///< the same in every round
    std::optional<Datum> m_datum;
    std::unordered_set<std::string> m_refused;  ///< constraints that make others redundant
    DocumentDiagnosis m_whole;                  ///< of the drawing with what is to be added
    Missing m_missing;
};

}  // namespace

Missing missingIn(const Document& document, const std::vector<std::string>& entities) {
    return Search(document, entities).run();
}

}  // namespace holdfast::editing
