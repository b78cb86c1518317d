#include "tests/module/commands/fillet/FilletOutcome.h"

#include <vector>

namespace holdfast::module {
namespace {

const std::vector<std::string> kChanges = {"deleteConstraint",     "setIsImplied",     "setStatus",
                                           "setSubentity",         "detachFromObject", "attachToObject",
                                           "setVertexIdentifierAt"};

// Copies of the polylines p, q and r do not belong to the drawing.
bool isCopy(const Scene& scene, const YxRxObject* subject) {
    for (const char* name : {"p", "q", "r"}) {
        if (subject != nullptr && scene.entity(name) == subject)
            return false;
    }
    return true;
}

std::string changes(Scene& scene) {
    std::string text;
    for (const JournalEntry& entry : scene.process().journal().entries()) {
        if (namesOperation(entry.operation, "setVertexIdentifierAt") && isCopy(scene, entry.subject))
            continue;
        for (const std::string& change : kChanges) {
            if (namesOperation(entry.operation, change))
                text += entry.operation + " " + entry.subjectName + " (" + entry.arguments + ")\n";
        }
    }
    return text;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    return out << outcome.deleted << " deleted\n"
               << outcome.changes << outcome.text << "\n"
               << outcome.dependencies << "\n";
}

Outcome outcomeOf(Scene& scene, int deleted) {
    return {.deleted = deleted, .changes = changes(scene), .text = scene.text(), .dependencies = scene.dependencies()};
}

bool isElsewhereUntouched(const Scene& scene) {
    const std::string text = scene.text();
    return text.find("line away 0,500 9,500") != std::string::npos &&
           text.find("line far 0,600 9,600") != std::string::npos &&
           scene.constraints().starts_with("parallel away far; fixed away.end") &&
           scene.dependencies().starts_with("away: away; far: far");
}

}  // namespace holdfast::module
