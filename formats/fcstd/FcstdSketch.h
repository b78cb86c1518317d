#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/fcstd/FcstdConstraints.h"
#include "formats/fcstd/FcstdExpressions.h"
#include "formats/fcstd/FcstdObjects.h"

namespace holdfast::formats {

/// A record of a sketch's geometry, and what it is in the drawing.
struct FcstdGeometryRecord {
    enum class Use { entity, control, knot, unread };

    pugi::xml_node record;
    Use use = Use::unread;
    std::string id;                     ///< g3; of an entity the one in the drawing
    std::size_t spline = 0, index = 0;  ///< of control points and knots: the number of their spline, and theirs in it
};

/// A record of a sketch's constraints.
struct FcstdConstraintRecord {
    pugi::xml_node record;
    std::string id;           ///< c3
    bool isRead = false;      ///< the drawing has it
    bool isFolded = false;    ///< it only says how a helper of a spline belongs to it
    std::string companion{};  ///< of a blocked line, which is one with both ends fixed: the constraint on its end
};

/// A sketch as its document has it, with the drawing that was read from it.
class FcstdSketch {
public:
    /// The text of the document has to stay as long as this.
    FcstdSketch(std::string_view text, const std::string& sketch, const std::string& file);
    FcstdSketch(const FcstdSketch&) = delete;
    FcstdSketch& operator=(const FcstdSketch&) = delete;

    /// The property's tree and where it stands; null where the sketch has none.
    struct Part {
        XmlRange range{};
        pugi::xml_document tree;

        pugi::xml_node list(const char* name) const { return tree.document_element().child(name); }
    };
    Part geometry, constraints, expressions, outside;
    std::vector<FcstdGeometryRecord> geometryRecords;
    std::vector<FcstdConstraintRecord> constraintRecords;
    FcstdNames names;
    bool isNewer = false;  ///< written by version 1.0 or later

    Document drawing;
    std::vector<std::string> notUnderstood;
    std::map<std::string, FcstdRef, std::less<>> outsideNumbers;  ///< of the drawing's entities that stand for it

private:
    void load(std::string_view text, const FcstdObject& object, const char* property, Part& part);
    void listRecords();
    void findHelpers();
    void readEntities();
    void readOutside();
    void addReference(const std::string& id, Shape shape);
    void readConstraints();
    void addOutsidePoints();
    void readFormulas();
    void takeFormulas();
    std::optional<Place> place(FcstdRef ref, bool isDirection) const;
    std::optional<Place> axisPlace(FcstdRef ref, bool isDirection) const;
    std::optional<Place> outsidePlace(FcstdRef ref) const;
    std::optional<Place> placeOn(const std::string& entity, FcstdRef ref) const;
    const Shape* shapeOf(const std::string& entity) const;
    std::string refusalOf(const FcstdConstraintRecord& record) const;
    bool isFolded(const pugi::xml_node& record) const;
    void take(FcstdConstraintRecord& record, Constraint found);

    std::string m_file;
    std::map<std::string, std::size_t, std::less<>> m_entities;  // by name: the number in the drawing
    std::map<FcstdRef, std::string> m_outsidePoints;             // the entities that stand for them
};

}  // namespace holdfast::formats
