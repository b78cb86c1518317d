#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "host/model/ConstraintKinds.h"
#include "host/model/Scene.h"
#include "host/model/scene/SceneStatement.h"

namespace holdfast {

/// Reads the statements of a scene text into a scene. Throws SceneError.
class SceneReader {
public:
    explicit SceneReader(Scene& scene) : m_scene(scene), m_group(scene.groupId()) {}
    void read(std::string_view text);

private:
    using Geometries = std::vector<YxConstrainedGeometry*>;
    /// What may stand before the kind of a constraint.
    struct Header {
        std::string name;
        bool isInternal = false;
        bool isImplied = false;
    };

    void readStatement(SceneStatement& statement);
    bool readSetting(SceneStatement& statement);
    bool readEntityStatement(SceneStatement& statement);
    void readGroup(SceneStatement& statement);
    void readUcs(SceneStatement& statement);
    void readReactor(SceneStatement& statement);
    void readDependency(SceneStatement& statement);
    void readBareDependency(SceneStatement& statement);
    void readCorners(SceneStatement& statement);

    YxGeomConstraint& readConstraint(SceneStatement& statement);
    Header readHeader(SceneStatement& statement);
    YxGeomConstraint& readKind(SceneStatement& statement, const ConstraintKind& kind);
    YxGeomConstraint& readMembers(SceneStatement& statement, YxCompositeConstraint& composite);
    YxGeomConstraint& readSmooth(SceneStatement& statement);
    void readValue(SceneStatement& statement, YxDimensionConstraint& dimension, YxDimensionConstraint::Kind kind);
    Geometries readPlaces(SceneStatement& statement, int fewest, int most, std::string_view expected);

    BuiltPlace place(SceneStatement& statement, std::string_view text) const;
    YxConstrainedGeometry& geometryAt(SceneStatement& statement, const std::string& text);
    void nameConstraint(SceneStatement& statement, YxGeomConstraint& constraint, const std::string& name);
    void collectNames(std::string_view text);
    /// c1, c2, ...: one number for each constraint of the text, further on when the name is taken.
    std::string freshName();
    YxDbAssoc2dConstraintGroup& group() const { return HostBuilder::group(m_group); }

    Scene& m_scene;
    YxDbObjectId m_group;
    std::unordered_set<std::string> m_takenNames;  // those that the text gives itself
    int m_constraintCount = 0;
};

}  // namespace holdfast
