// Long edit sessions on real drawings, with what has to hold after every edit. HOLDFAST_SESSION_EDITS says how many
// edits each drawing gets, HOLDFAST_SEED where the dice begin.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>
#include <map>
#include <set>
#include <sstream>
#include <unordered_map>

#include "document/Polylines.h"
#include "document/checks/DocumentCheck.h"
#include "document/formulas/Calculation.h"
#include "editing/Refusal.h"
#include "editing/Session.h"
#include "formats/FileIo.h"
#include "formats/json/JsonWriter.h"
#include "geometry/GeometryError.h"
#include "geometry/curves/Soundness.h"
#include "host/model/HostAudit.h"
#include "hosting/DocumentSketch.h"
#include "hosting/Drawing.h"
#include "tests/editing/RandomEdits.h"
#include "tests/editing/Shorthand.h"
#include "tests/support/DrawingFolder.h"
#include "tests/support/Environment.h"

namespace holdfast::editing {

using namespace formats;
namespace {

/// Parts of a drawing's size within which a constraint holds, before an edit and after it: what held well goes on so,
/// and what held within the digits of its file holds as a user can see.
constexpr double kHeldWell = 1e-10, kHoldsWell = 1e-9, kHeld = 1e-7, kHolds = 1e-5;

/// Part of its size below which an entity that followed has collapsed.
constexpr double kCollapsed = 0.01;

/// A verb that was refused so often is never done at all.
constexpr int kManyTries = 50;

/// The curves with which one cannot reckon: real drawings have lines without length, too.
std::set<std::string> unsoundCurves(const Document& document) {
    std::set<std::string> names;
    for (const Entity& entity : document.entities)
        try {
            if (isCurve(entity.shape))
                requireSound(entity.shape);
        } catch (const GeometryError&) {
            names.insert(entity.id);
        }
    return names;
}

/// What is wrong after an edit that was done; empty when all is well.
std::string faultAfter(const Document& before, const Document& after) {
    try {
        checkDocument(after, "after the edit");
    } catch (const std::exception& error) {
        return error.what();
    }
    const std::set<std::string> unsound = unsoundCurves(before);
    for (const std::string& name : unsoundCurves(after))
        if (!unsound.contains(name))
            return name + " is no proper curve any more";
    const DocumentSketch was(before), is(after);
    const std::vector<double> missesBefore = was.shortfalls(), missesAfter = is.shortfalls();
    std::unordered_map<std::string_view, double> allowed;
    for (std::size_t i = 0; i < before.constraints.size(); ++i)
        if (missesBefore[i] <= kHeld * was.size())
            allowed[before.constraints[i].id] = missesBefore[i] <= kHeldWell * was.size() ? kHoldsWell : kHolds;
    for (std::size_t i = 0; i < after.constraints.size(); ++i)
        if (const auto kept = allowed.find(after.constraints[i].id);
            kept != allowed.end() && !(missesAfter[i] <= kept->second * is.size())) {
            std::ostringstream fault;
            fault << spokenConstraint(after.constraints[i]) << " was kept and is off by " << missesAfter[i];
            return fault.str();
        }
    return {};
}

/// What has followed an edit and is next to nothing now; empty when all is well.
std::string collapsedBy(const EditResult& result) {
    for (const EntityOutcome& entity : result.fates.entities)
        for (const SizeChange& size : entity.sizes)
            if (entity.fate == EntityFate::followed && std::abs(size.after) < kCollapsed * std::abs(size.before))
                return entity.entity + " has followed and collapsed";
    return {};
}

/// What is calculated is what its formula comes to; empty when it is.
std::string faultOfFormulas(const Document& after) {
    Document calculated = after;
    if (!recalculate(calculated))
        return {};
    for (std::size_t i = 0; i < after.constraints.size(); ++i)
        if (const Constraint& is = after.constraints[i];
            is.value && !agrees(*is.value, *calculated.constraints[i].value))
            return spokenConstraint(is) + " is not what its formula comes to";
    return {};
}

/// A refusal speaks of the edit and its entities, not of a shape without a name, as the checks of shapes do.
std::string faultOfRefusal(const std::string& error) {
    static constexpr std::array<std::string_view, 8> kinds{"line",           "arc",    "circle",   "ellipse",
                                                           "elliptical arc", "spline", "polyline", "point"};
    for (const std::string_view kind : kinds)
        if (error.starts_with(std::string(kind) + ": "))
            return "it was refused with \"" + error + "\", which names no entity";
    return {};
}

/// A session with its checks. Knows what every undo and redo has to bring back.
class CheckedSession {
public:
    explicit CheckedSession(const Document& document) : m_session(document) {}

    const Document& document() const { return m_session.document(); }
    bool wasDone() const { return m_session.results().back().outcome.done(); }

    /// What is wrong after one more edit; empty when all is well.
    std::string apply(const std::string& edit) {
        const Document before = document();
        const EditResult& result = m_session.apply(edit);
        if (!result.outcome.done())
            return document() == before ? faultOfRefusal(result.outcome.error) : "a refused edit changed the drawing";
        for (const std::string& finding : auditHost(m_session.drawing().process()))
            return finding;
        if (edit == "undo")
            return went(m_states, m_undone, before) ? "" : "undo did not bring the drawing back";
        if (edit == "redo")
            return went(m_undone, m_states, before) ? "" : "redo did not bring the edit back";
        m_states.push_back(before);
        m_undone.clear();
        for (std::string fault : {collapsedBy(result), faultAfter(before, document()), faultOfFormulas(document())})
            if (!fault.empty())
                return fault;
        return {};
    }

private:
    /// True when the drawing is as the one list has it, here and in the host; the other gets what it was.
    bool went(std::vector<Document>& back, std::vector<Document>& forth, const Document& before) {
        const bool isThere = document() == back.back() && jsonText(document()) == jsonText(back.back()) &&
                             withoutVertexNumbers(m_session.drawing().document()) == withoutVertexNumbers(document());
        back.pop_back();
        forth.push_back(before);
        return isThere;
    }

    Session m_session;
    std::vector<Document> m_states, m_undone;
};

/// The fault that a script of edits runs into, or an empty text.
std::string faultOf(const Document& document, const std::vector<std::string>& edits) {
    CheckedSession session(document);
    for (const std::string& edit : edits)
        if (std::string fault = session.apply(edit); !fault.empty())
            return fault;
    return {};
}

/// A script with as few edits as it takes to run into a fault: leaves out ever smaller runs of edits.
std::vector<std::string> shrunk(const Document& document, std::vector<std::string> edits) {
    for (std::size_t length = std::max<std::size_t>(1, edits.size() / 2); length > 0; length /= 2)
        for (std::size_t at = 0; at + length <= edits.size() && edits.size() > length;) {
            std::vector<std::string> fewer = edits;
            fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(at),
                        fewer.begin() + static_cast<std::ptrdiff_t>(at + length));
            if (faultOf(document, fewer).empty())
                at += length;
            else
                edits = std::move(fewer);
        }
    return edits;
}

struct Tally {
    std::map<std::string, std::pair<int, int>> byVerb;  ///< done, refused

    void count(const std::string& edit, bool done) {
        auto& [ofDone, ofRefused] = byVerb[edit.substr(0, edit.find(' '))];
        ++(done ? ofDone : ofRefused);
    }
};

/// `opening` is the first line of the script that a fault is told with.
void runSession(const Document& document, const std::string& opening, unsigned seed, int editCount, Tally& tally) {
    if (document.entities.empty())
        return;
    RandomEdits edits(seed);
    CheckedSession session(document);
    std::vector<std::string> script;
    for (int i = 0; i < editCount && !session.document().entities.empty(); ++i) {
        const std::string edit = edits.next(session.document());
        script.push_back(edit);
        const std::string fault = session.apply(edit);
        tally.count(edit, session.wasDone());
        if (fault.empty()) {
            if (!session.wasDone())
                script.pop_back();
            continue;
        }
        std::string text = opening + "\n";
        for (const std::string& line : shrunk(document, script))
            text += line + "\n";
        ADD_FAILURE() << fault << "\nwith the script\n" << text;
        return;
    }
}

/// Sessions on every n-th drawing, as it comes from a reader.
template <class Reader>
void runSessions(std::size_t stride, const std::string& opening, const Reader& read) {
    const int editCount = testing::numberFrom("HOLDFAST_SESSION_EDITS", 12);
    const auto seed = static_cast<unsigned>(testing::numberFrom("HOLDFAST_SEED", 1));
    Tally tally;
    const std::vector<std::filesystem::path> files = testing::drawingFiles();
    for (std::size_t i = 0; i < files.size(); i += stride)
        runSession(read(files[i]), opening + files[i].filename().string(), seed * 100003 + static_cast<unsigned>(i),
                   editCount, tally);
    int done = 0;
    for (const auto& [verb, counts] : tally.byVerb) {
        done += counts.first;
        std::cout << verb << ": " << counts.first << " done, " << counts.second << " refused\n";
        EXPECT_TRUE(counts.first > 0 || counts.second < kManyTries) << verb << " was never done";
    }
    std::cout << done << " edits done in all\n";
}

TEST(RandomSessions, KeepTheNetworkTrueEditByEdit) {
    runSessions(1, "open ", [](const std::filesystem::path& file) { return readDrawing(file); });
}

TEST(RandomSessions, KeepTheNetworkTrueOnChainsThatBecamePolylines) {
    runSessions(3, "convert --polylines ",
                [](const std::filesystem::path& file) { return chainsToPolylines(readDrawing(file)).document; });
}

}  // namespace
}  // namespace holdfast::editing
