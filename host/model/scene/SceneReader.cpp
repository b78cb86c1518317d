#include "host/model/scene/SceneReader.h"

#include "host/model/scene/SceneEntities.h"
#include "host/model/scene/ScenePlaces.h"

namespace holdfast {

namespace {

std::string takeName(SceneStatement& statement, std::string_view expected) {
    std::string name = statement.take(expected);
    if (!isSceneName(name))
        statement.fail("\"" + name + "\" is no name; begin with a letter and use letters, digits, _ and - only");
    return name;
}

}  // namespace

void SceneReader::read(std::string_view text) {
    collectNames(text);
    for (SceneStatement& statement : sceneStatements(text)) {
        // Entities and builders say what is wrong, the statement says where.
        try {
            readStatement(statement);
        } catch (const SceneError&) {
            throw;
        } catch (const std::invalid_argument& error) {
            statement.fail(error.what());
        }
        statement.expectEnd();
    }
}

void SceneReader::collectNames(std::string_view text) {
    for (std::size_t colon = text.find(':'); colon != std::string_view::npos; colon = text.find(':', colon + 1)) {
        std::size_t begin = colon;
        while (begin > 0 && isSceneName("a" + std::string(1, text[begin - 1])))
            --begin;
        m_takenNames.emplace(text.substr(begin, colon - begin));
    }
}

void SceneReader::readStatement(SceneStatement& statement) {
    if (!readSetting(statement) && !readEntityStatement(statement))
        readConstraint(statement);
}

bool SceneReader::readSetting(SceneStatement& statement) {
    if (statement.accept("group"))
        readGroup(statement);
    else if (statement.accept("ucs"))
        readUcs(statement);
    else if (statement.accept("paper"))
        m_scene.m_process.setPaperSpace(true);
    else if (statement.accept("reactor"))
        readReactor(statement);
    else if (statement.accept("dependency"))
        readDependency(statement);
    else if (statement.accept("bare"))
        readBareDependency(statement);
    else if (statement.accept("corners"))
        readCorners(statement);
    else
        return false;
    return true;
}

void SceneReader::readGroup(SceneStatement& statement) {
    const std::string name = takeName(statement, "a name for the group");
    const YxDbObjectId known = m_scene.id(name);
    if (known.isValid() && !HostAccess::peek(known)->isKindOf(YxDbAssoc2dConstraintGroup::desc()))
        statement.fail("the name \"" + name + "\" is taken by an entity; choose another");
    m_group = known.isValid() ? known : m_scene.addGroup(name);
}

void SceneReader::readUcs(SceneStatement& statement) {
    const bool isPaper = statement.accept("paper");
    const YxGeVector3d x = statement.vector("the x direction");
    const YxGeVector3d y = statement.vector("the y direction");
    if (isPaper)
        m_scene.m_process.setPaperUcs(x, y);
    else
        m_scene.m_process.setUcs(x, y);
}

void SceneReader::readReactor(SceneStatement& statement) {
    const BuiltPlace at = place(statement, statement.take("an entity"));
    m_scene.m_builder.addOtherReactor(at.entity);
}

void SceneReader::readDependency(SceneStatement& statement) {
    geometryAt(statement, statement.take("an entity or a segment"));
}

void SceneReader::readBareDependency(SceneStatement& statement) {
    statement.expect("dependency");
    const std::string text = statement.take("an entity or a segment");
    const YxDbAssocGeomDependency& dependency = m_scene.m_builder.addBareDependency(group(), place(statement, text));
    m_scene.nameDependency(text, HostAccess::idOf(dependency));
}

void SceneReader::readCorners(SceneStatement& statement) {
    const std::string name = statement.take("a polyline");
    if (m_scene.entity<YxDbPolyline>(name) == nullptr)
        statement.fail("there is no polyline \"" + name + "\"; only polylines have corners");
    const std::size_t before = HostAccess::constraints(group()).size();
    m_scene.m_builder.addCornerCoincidences(group(), m_scene.id(name));
    const std::vector<YxGeomConstraint*> all = HostAccess::constraints(group());
    for (std::size_t i = before; i < all.size(); ++i)
        nameConstraint(statement, *all[i], freshName());
}

bool SceneReader::readEntityStatement(SceneStatement& statement) {
    if (!isEntityKind(statement.peek()))
        return false;
    const std::string kind = statement.take("a kind of entity");
    const std::string name = takeName(statement, "a name");
    if (m_scene.id(name).isValid())
        statement.fail("the name \"" + name + "\" is taken; choose another");
    m_scene.add(name, readEntity(kind, statement));
    return true;
}

SceneReader::Header SceneReader::readHeader(SceneStatement& statement) {
    Header header;
    header.name = freshName();
    if (statement.peek().ends_with(":")) {
        header.name = statement.take("a name");
        header.name.pop_back();
        if (!isSceneName(header.name))
            statement.fail("\"" + header.name +
                           "\" is no name; begin with a letter and use letters, digits, _ and - only");
    }
    header.isInternal = statement.accept("internal");
    header.isImplied = statement.accept("implied");
    return header;
}

YxGeomConstraint& SceneReader::readConstraint(SceneStatement& statement) {
    const Header header = readHeader(statement);
    const std::string word = statement.take("a kind of constraint");
    YxGeomConstraint* made = nullptr;
    if (word == "composite")
        made = &readMembers(statement, HostAccess::addConstraint<YxCompositeConstraint>(group(), {}));
    else if (word == "smooth")
        made = &readSmooth(statement);
    else if (const ConstraintKind* kind = constraintKindNamed(word))
        made = &readKind(statement, *kind);
    else
        statement.fail("\"" + word + "\" is no kind of entity, setting or constraint");
    HostAccess::setInternal(*made, header.isInternal);
    HostAccess::setImplied(*made, header.isImplied);
    nameConstraint(statement, *made, header.name);
    return *made;
}

YxGeomConstraint& SceneReader::readKind(SceneStatement& statement, const ConstraintKind& kind) {
    const bool isHelper = kind.type() == YxInternalConstraint::desc();
    const std::string role = isHelper ? statement.take("a role such as focus1 or major_diameter") : "";
    YxGeomConstraint& made = kind.add(group(), readPlaces(statement, kind.fewestPlaces, kind.mostPlaces, kind.places));
    if (isHelper)
        HostAccess::setRole(static_cast<YxInternalConstraint&>(made), role);
    if (kind.dimension)
        readValue(statement, static_cast<YxDimensionConstraint&>(made), *kind.dimension);
    return made;
}

YxGeomConstraint& SceneReader::readMembers(SceneStatement& statement, YxCompositeConstraint& composite) {
    for (SceneStatement& member : statement.block("members")) {
        HostAccess::own(composite, readConstraint(member));
        member.expectEnd();
    }
    return composite;
}

YxGeomConstraint& SceneReader::readSmooth(SceneStatement& statement) {
    auto& smooth = HostAccess::addConstraint<YxG2SmoothConstraint>(group(), {});
    if (statement.peek().starts_with("{"))
        return readMembers(statement, smooth);
    auto& joint = HostAccess::addConstraint<YxPointCoincidenceConstraint>(
        group(), readPlaces(statement, 2, 2, "the two ends that meet"));
    nameConstraint(statement, joint, freshName());
    HostAccess::own(smooth, joint);
    return smooth;
}

void SceneReader::readValue(SceneStatement& statement, YxDimensionConstraint& dimension,
                            YxDimensionConstraint::Kind kind) {
    statement.expect("=");
    const bool isAngle = kind == YxDimensionConstraint::kAngle;
    const double value = isAngle ? statement.angle("the value") : statement.number("the value");
    HostAccess::setDimension(dimension, kind, value, !statement.accept("measured"));
}

SceneReader::Geometries SceneReader::readPlaces(SceneStatement& statement, int fewest, int most,
                                                std::string_view expected) {
    Geometries geometries;
    while (!statement.atEnd() && statement.peek() != "=")
        geometries.push_back(&geometryAt(statement, statement.take("a place")));
    const auto count = static_cast<int>(geometries.size());
    if (count < fewest || count > most)
        statement.fail("expected " + std::string(expected) + ", found " + std::to_string(count) + " places");
    return geometries;
}

BuiltPlace SceneReader::place(SceneStatement& statement, std::string_view text) const {
    try {
        return scenePlace(m_scene, text);
    } catch (const std::invalid_argument& error) {
        statement.fail(error.what());
    }
}

YxConstrainedGeometry& SceneReader::geometryAt(SceneStatement& statement, const std::string& text) {
    const BuiltPlace at = place(statement, text);
    YxConstrainedGeometry& geometry = m_scene.m_builder.geometry(group(), at);
    const std::size_t dot = text.find('.');
    const std::string curve = at.isPosition ? text : text.substr(0, dot);
    m_scene.nameDependency(curve, HostAccess::idOf(*m_scene.m_builder.dependency(group(), at)));
    return geometry;
}

void SceneReader::nameConstraint(SceneStatement& statement, YxGeomConstraint& constraint, const std::string& name) {
    if (!m_scene.nameConstraint(constraint, name))
        statement.fail("the name \"" + name + "\" is taken; choose another");
}

std::string SceneReader::freshName() {
    std::string name;
    do {
        name = "c" + std::to_string(++m_constraintCount);
    } while (m_scene.constraint(name) != nullptr || m_takenNames.contains(name));
    return name;
}

}  // namespace holdfast
