#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/model/Scene.h"

namespace holdfast {

/// Reads the statements of a scene text into a scene.
class SceneReader {
public:
    SceneReader(Scene& scene, std::string_view text);
    void readAll();

    /// "a", "a.end", "p[2].start" as a place of the scene.
    BuiltPlace place(std::string_view text) const;

private:
    using Words = std::vector<std::string>;

    void splitStatements(std::string_view text);
    void readStatement();
    bool readSetting(const std::string& first);
    bool readEntity(const std::string& kind);
    void readPolyline(const std::string& name);
    void readSpline(const std::string& name);
    void readArc(const std::string& name);
    void readEllipse(const std::string& name);
    void readText(const std::string& kind, const std::string& name);
    YxGeomConstraint& readConstraint();
    YxGeomConstraint& readComposite(const std::string& kind);
    YxGeomConstraint& readSmooth();
    YxGeomConstraint& readDimension(const std::string& kind);
    void nameConstraint(YxGeomConstraint& constraint, std::string name);
    void nameDependency(const std::string& text, const YxDbObjectId& id);
    std::vector<YxConstrainedGeometry*> readGeometries();
    YxConstrainedGeometry& geometryAt(const std::string& text);

    bool atEnd() const { return m_next >= m_words.size(); }
    std::string take(const char* expected);
    bool accept(const char* word);
    void expect(const char* word);
    YxGePoint3d point(const char* expected);
    YxGeVector3d vector(const char* expected);
    double number(const char* expected);
    double angle(const char* expected);
    [[noreturn]] void fail(const std::string& message) const;

    Scene& m_scene;
    std::vector<std::string> m_statements;
    std::string m_statement;
    Words m_words;
    std::size_t m_next = 0;
    YxDbObjectId m_group;
    int m_constraintCount = 0;
};

}  // namespace holdfast
