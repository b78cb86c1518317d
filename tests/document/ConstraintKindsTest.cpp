#include "geometry/ConstraintKinds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <utility>

#include "formats/json/JsonTree.h"
#include "formats/json/JsonView.h"

// The table of kinds against the schema of drawing files, which other programs read.

namespace holdfast::document {

using namespace formats;
namespace {

std::string textOf(const char* path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What the schema says of constraints.
class Schema {
public:
    std::vector<std::string> types() const { return texts(constraint().at("properties").at("type").at("enum")); }
    std::vector<std::string> dimensions() const { return texts(definitions().at("dimension_type").at("enum")); }

    /// How many refs a kind has, at least and at most.
    std::pair<int, int> places(std::string_view type) const {
        std::pair<int, int> bounds{0, constraint().at("properties").at("refs").at("maxItems").integer()};
        for (const JsonView& then : consequences(type))
            if (const auto refs = memberOf(then, "refs")) {
                if (const auto fewest = refs->find("minItems"))
                    bounds.first = fewest->integer();
                if (const auto most = refs->find("maxItems"))
                    bounds.second = most->integer();
            }
        return bounds;
    }

    /// "value" bounds as text: ">= 0", "> 0", or empty.
    std::string valueBound(std::string_view type) const {
        for (const JsonView& then : consequences(type))
            if (const auto value = memberOf(then, "value")) {
                if (const auto least = value->find("minimum"))
                    return ">= " + std::to_string(least->integer());
                return "> " + std::to_string(value->at("exclusiveMinimum").integer());
            }
        return {};
    }

    /// The kinds that may have members: all but those whose list of members has to be empty.
    bool mayOwn(std::string_view type) const {
        for (const JsonView& rule : constraint().at("allOf").list())
            if (const auto otherwise = rule.find("else"); otherwise && memberOf(*otherwise, "members"))
                return applies(rule, type);
        return true;
    }

private:
    static std::vector<std::string> texts(const JsonView& list) {
        std::vector<std::string> all;
        for (const JsonView& each : list.list())
            all.push_back(each.text());
        return all;
    }
    static std::optional<JsonView> memberOf(const JsonView& rule, std::string_view name) {
        const auto properties = rule.find("properties");
        return properties ? properties->find(name) : std::nullopt;
    }

    JsonView definitions() const { return JsonView(m_tree, m_name).at("$defs"); }
    JsonView constraint() const { return definitions().at("constraint"); }

    bool applies(const JsonView& rule, std::string_view type) const {
        const JsonView condition = rule.at("if").at("properties").at("type");
        if (const auto only = condition.find("const"))
            return only->text() == type;
        const auto list = condition.find("enum");
        const std::vector<std::string> named = list ? texts(*list) : dimensions();
        return std::find(named.begin(), named.end(), type) != named.end();
    }
    std::vector<JsonView> consequences(std::string_view type) const {
        std::vector<JsonView> all;
        for (const JsonView& rule : constraint().at("allOf").list())
            if (const auto then = rule.find("then"); then && applies(rule, type))
                all.push_back(*then);
        return all;
    }

    std::string m_name = "docs/drawing.schema.json";
    JsonNode m_tree = parseJsonTree(textOf(m_name.c_str()), m_name);
};

TEST(ConstraintKinds, AreThoseOfTheSchema) {
    const Schema schema;
    std::vector<std::string> all, dimensions;
    for (const ConstraintTraits& kind : constraintKinds()) {
        all.emplace_back(kind.name);
        if (kind.isDimension())
            dimensions.emplace_back(kind.name);
    }
    EXPECT_EQ(all, schema.types());
    EXPECT_EQ(dimensions, schema.dimensions());
}

TEST(ConstraintKinds, TakeAsManyPlacesAsTheSchemaSays) {
    const Schema schema;
    for (const ConstraintTraits& kind : constraintKinds()) {
        int fewest = 3, most = 0;
        for (const ConstraintSignature& signature : kind.signatures)
            if (signature.places != ConstraintSignature::kUnused) {
                fewest = std::min(fewest, signature.places);
                most = std::max(most, signature.places);
            }
        EXPECT_EQ(schema.places(kind.name), std::pair(fewest, most)) << kind.name;
    }
}

TEST(ConstraintKinds, BoundTheirValuesAsTheSchemaDoes) {
    const Schema schema;
    for (const ConstraintTraits& kind : constraintKinds()) {
        const std::string bound = kind.value == ConstraintValue::length           ? ">= 0"
                                  : kind.value == ConstraintValue::positiveLength ? "> 0"
                                                                                  : "";
        EXPECT_EQ(schema.valueBound(kind.name), bound) << kind.name;
    }
}

TEST(ConstraintKinds, OwnOthersWhereTheSchemaAllowsMembers) {
    const Schema schema;
    for (const ConstraintTraits& kind : constraintKinds())
        EXPECT_EQ(schema.mayOwn(kind.name), kind.ownsMembers) << kind.name;
}

TEST(ConstraintKinds, HaveWordsForPeople) {
    std::set<std::string_view> labels;
    for (const ConstraintTraits& kind : constraintKinds()) {
        EXPECT_FALSE(kind.takes.empty()) << kind.name;
        EXPECT_FALSE(kind.sign.empty()) << kind.name;
        EXPECT_TRUE(labels.insert(kind.label).second) << kind.label << " means two kinds";
    }
}

TEST(ConstraintKinds, FitOnlyWhenEveryPlaceHasItsRole) {
    using namespace roles;
    const ConstraintSignature pair{2, {point, curve}};
    const unsigned fitting[] = {point | curveEnd, circle}, turned[] = {circle, point}, lonely[] = {point};
    EXPECT_TRUE(pair.fits(fitting));
    EXPECT_FALSE(pair.fits(turned));
    EXPECT_FALSE(pair.fits(lonely));
    EXPECT_FALSE(ConstraintSignature{}.fits({})) << "an unused row fits nothing";
    const unsigned nothing[] = {0};
    EXPECT_TRUE((ConstraintSignature{1, {anything}}.fits(nothing))) << "a whole polyline has no role and can be fixed";
}

}  // namespace
}  // namespace holdfast::document
