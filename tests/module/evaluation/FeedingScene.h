#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <YxDbConstraints/AssocConstraintHeader.h>

#include "host/model/Scene.h"
#include "host/model/entities/EntityAccess.h"

namespace holdfast::module {

/// A drawing with two constraint groups, for tests of what an edit hands to the evaluator. The text's constraints and
/// dependencies go to the group "near"; the group "far" holds the line "outsider", and the line "stranger" is free.
/// Its end is the end of the host's command: what stayed open, was misused, is owned by nobody or was not freed fails
/// the test then.
class FeedingScene : public Scene {
public:
    explicit FeedingScene(std::string_view text);
    ~FeedingScene();

    YxArray<YxDbObjectId> ids(std::initializer_list<const char*> names) const;
    /// An object of the database that is no entity.
    void addNonEntity(const std::string& name);
    /// Gives an entity constrained geometry in a group.
    void put(const std::string& group, const std::string& entity);
    YxDbEntity* pointer(std::string_view name) const { return entity<YxDbEntity>(name); }

    AssocConstraintHeader& header(const std::string& group = "near") const;
    int status(const std::string& group = "near") const;
    void setStatus(YxDbAssocStatus status, const std::string& group = "near") const;

    /// Gives every field of a group's header but the converter a value that no operation writes, and remembers both
    /// headers for changes().
    void prefill(const std::string& group = "near");
    void remember();
    /// The fields of a group's header that are not as remembered, in the header's order: "editKind editedObjectIds".
    std::string changes(const std::string& group = "near") const;

    // As text: entities of the database by their names, copies by their geometry.
    std::string nameOf(const YxDbObjectId& id) const;
    std::string text(const YxArray<YxDbObjectId>& ids) const;
    std::string text(const YxArray<YxDbEntity*>& entities) const;
    std::string text(const std::map<YxDbObjectId, YxDbEntity*>& entities) const;
    /// The calls that a converter got, in order: "resetData; setObjectIds b a; collectInfo".
    std::string fed(const std::string& group = "near") const;
    std::string fed(LvEvaDataConverter& converter) const;

    /// The operation fails for one entity or group.
    void refuse(const std::string& operation, const std::string& name);
    int calls(std::string_view operation) { return process().journal().count(operation); }
    /// How many copies of entities are alive.
    int copies() const;

private:
    using Fields = std::vector<std::pair<std::string, std::string>>;
    Fields fields(const AssocConstraintHeader& header) const;
    std::string textOf(const YxDbEntity* entity) const;

    std::map<std::string, Fields> m_remembered;
};

/// "4,0,0" and the like.
std::string textOf(const YxGePoint3d& point);
std::string textOf(const YxGeVector3d& vector);
/// "identity", "translation 1,2,0" or the twelve numbers above the last row.
std::string textOf(const YxGeMatrix3d& matrix);

YxGeMatrix3d translation(double x, double y, double z = 0.0);

/// Runs an edit without a failure, and then twice for each host call that it makes: that call throws, or is refused.
/// Every run has a drawing of its own, whose end sees what was left behind. Returns how many calls were made to fail.
int failEachCall(std::string_view sceneText, const std::function<void(FeedingScene&)>& edit);

}  // namespace holdfast::module
