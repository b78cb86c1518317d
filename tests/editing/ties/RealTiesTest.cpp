// Cuts and fillets of real drawings with ties and without: nothing moves for a tie, none says what is said already, and
// less freedom is left. Prints how much. HOLDFAST_TIE_EDITS says how many edits each drawing gets, HOLDFAST_SEED where
// the dice begin; with HOLDFAST_TIE_CASES=1 the edits are told that leave more freedom than they need.

#include <gtest/gtest.h>

#include <array>
#include <iomanip>
#include <iostream>
#include <map>

#include "document/EntityIndex.h"
#include "document/checks/ConstraintCheck.h"
#include "editing/Refusal.h"
#include "editing/Session.h"
#include "formats/FileIo.h"
#include "geometry/Tolerances.h"
#include "hosting/DocumentSketch.h"
#include "tests/editing/RandomEdits.h"
#include "tests/editing/ties/CutNeed.h"
#include "tests/support/DrawingFolder.h"
#include "tests/support/Environment.h"

namespace holdfast::editing {
namespace {

/// Larger drawings take longer to count than to edit.
constexpr std::size_t kMostEntities = 400;

bool isCut(const std::string& edit) {
    constexpr std::array<std::string_view, 4> verbs{"break ", "trim ", "extend ", "fillet "};
    return std::any_of(verbs.begin(), verbs.end(), [&](std::string_view verb) { return edit.starts_with(verb); });
}

/// Edits by the freedom that they add.
struct Histogram {
    std::map<int, std::array<int, 3>> counts;  ///< without ties, with ties, what the edit needs
    int edits = 0, ties = 0, beyondNeed = 0;
    std::array<long, 3> sums{};

    void add(int bare, int tied, int needed) {
        ++edits;
        beyondNeed += tied > needed ? 1 : 0;
        const std::array<int, 3> all{bare, tied, needed};
        for (std::size_t i = 0; i < all.size(); ++i) {
            ++counts[std::clamp(all[i], -4, 12)][i];
            sums[i] += all[i];
        }
    }

    void print() const {
        std::cout << edits << " edits, " << ties << " constraints more with ties, " << beyondNeed
                  << " edits leave more freedom than they need\nfreedom   without      with    needed\n";
        for (const auto& [freedom, all] : counts) {
            std::cout << std::setw(7) << freedom;
            for (const int count : all)
                std::cout << std::setw(10) << count;
            std::cout << '\n';
        }
        std::cout << "   mean" << std::setprecision(3);
        for (const long sum : sums)
            std::cout << std::setw(10) << static_cast<double>(sum) / std::max(edits, 1);
        std::cout << '\n';
    }
};

/// The constraints that are said twice, and what the edit has added.
std::string told(const DocumentDiagnosis& diagnosis, const Document& after, const Document& before) {
    std::string text;
    for (const auto& [number, isWhole] : diagnosis.redundant)
        text += (isWhole ? "\n  redundant: " : "\n  redundant in part: ") + spokenConstraint(after.constraints[number]);
    for (const Constraint& constraint : after.constraints)
        if (std::find(before.constraints.begin(), before.constraints.end(), constraint) == before.constraints.end())
            text += "\n  added: " + spokenConstraint(constraint);
    return text;
}

/// The edit with what became of the constraints, to see where freedom was left.
void tell(const EditResult& result, const Document& before, const Document& after) {
    for (const ConstraintOutcome& outcome : result.fates.constraints)
        for (const Constraint& constraint : (outcome.fate == ConstraintFate::deleted ? before : after).constraints)
            if (constraint.id == outcome.constraint)
                std::cout << "    " << fateName(outcome.fate) << " " << spokenConstraint(constraint) << ": "
                          << outcome.reason << '\n';
}

/// Compares one edit with ties and without. False for one that is refused.
bool compare(const Document& document, const DocumentDiagnosis& before, const std::string& edit, Histogram& histogram) {
    Session bare(document), tied(document);
    bare.giveTies(false);
    if (!bare.apply(edit).outcome.done())
        return false;
    const EditResult& result = tied.apply(edit);
    EXPECT_EQ(result.outcome.error, "") << edit;
    if (!result.outcome.done())
        return false;
    EXPECT_EQ(bare.document().entities, tied.document().entities) << "something moved for a tie of " << edit;
    const DocumentDiagnosis without = DocumentSketch(bare.document()).diagnose();
    const DocumentDiagnosis with = DocumentSketch(tied.document()).diagnose();
    EXPECT_LE(with.redundant.size(), without.redundant.size())
        << "redundant ties after " << edit << told(with, tied.document(), document);
    EXPECT_LE(with.freedom, without.freedom) << edit;
    const int needed = needOfCut(result, document, tied.document()), left = with.freedom - before.freedom;
    if (left > needed && testing::numberFrom("HOLDFAST_TIE_CASES", 0) > 0) {
        std::cout << edit << ": freedom " << left << " instead of " << needed << '\n';
        tell(result, document, tied.document());
    }
    histogram.add(without.freedom - before.freedom, left, needed);
    histogram.ties +=
        static_cast<int>(tied.document().constraints.size()) - static_cast<int>(bare.document().constraints.size());
    return true;
}

TEST(RealTies, LeaveLessFreedomAndSayNothingTwice) {
    const int editCount = testing::numberFrom("HOLDFAST_TIE_EDITS", 3);
    const auto seed = static_cast<unsigned>(testing::numberFrom("HOLDFAST_SEED", 1));
    Histogram histogram;
    const auto files = testing::drawingFiles();
    for (std::size_t i = 0; i < files.size(); ++i) {
        const Document document = formats::readDrawing(files[i]);
        if (document.entities.empty() || document.entities.size() > kMostEntities)
            continue;
        SCOPED_TRACE(files[i].filename().string());
        RandomEdits edits(seed * 100003 + static_cast<unsigned>(i));
        const DocumentDiagnosis before = DocumentSketch(document).diagnose();
        if (testing::numberFrom("HOLDFAST_TIE_CASES", 0) > 0)
            std::cout << files[i].filename().string() << '\n';
        for (int done = 0, tries = 0; done < editCount && tries < 60 * editCount; ++tries)
            if (const std::string edit = edits.next(document); isCut(edit))
                done += compare(document, before, edit, histogram) ? 1 : 0;
    }
    histogram.print();
    EXPECT_LT(histogram.sums[1], histogram.sums[0]);
}

}  // namespace
}  // namespace holdfast::editing
