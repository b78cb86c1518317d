#include "formats/fcstd/FcstdObjects.h"

#include <algorithm>
#include <initializer_list>
#include <sstream>
#include <unordered_map>

#include "document/text/DrawingError.h"

namespace holdfast::formats {
namespace {

/// Documents nest about ten deep.
constexpr XmlRules kFcstdRules{.place = "Document.xml",
                               .whole = "a whole document",
                               .withoutType = "a document without one, as every document of FreeCAD is",
                               .shallower = "elements as deep as documents nest them"};

constexpr std::string_view kSketchType = "Sketcher::SketchObject";  // also the first letters of its kin
constexpr const char* kIndent = "    ";                             // of the program's own writer

/// What an element and an attribute of a tree cost, in bytes.
constexpr std::size_t kElementSize = 64, kAttributeSize = 40, kLargestTree = 100U << 20U;

/// The value of an attribute as it stands in a tag. Trees cost too much for documents of many objects.
std::string_view rawAttribute(std::string_view tag, std::string_view name) {
    for (std::size_t at = tag.find(name); at != std::string_view::npos; at = tag.find(name, at + 1)) {
        const std::size_t quote = at + name.size() + 1;
        if (quote >= tag.size() || tag[quote - 1] != '=' ||
            std::string_view(" \t\r\n").find(tag[at - 1]) == std::string_view::npos)
            continue;
        const std::size_t end = tag.find(tag[quote], quote + 1);
        return end == std::string_view::npos ? std::string_view() : tag.substr(quote + 1, end - quote - 1);
    }
    return {};
}

std::string decoded(std::string_view value) {
    if (value.find('&') == std::string_view::npos)
        return std::string(value);
    const std::string element = "<v v=\"" + std::string(value) + "\"/>";
    pugi::xml_document tree;
    tree.load_buffer(element.data(), element.size(), pugi::parse_default, pugi::encoding_utf8);
    return tree.document_element().attribute("v").value();
}

class ObjectReader {
public:
    ObjectReader(std::string_view text, const std::string& file)
        : m_text(text), m_file(file), m_tags(text, file, kFcstdRules) {}

    FcstdObjects read() {
        bool isFirst = true;
        while (const std::optional<XmlTag> tag = m_tags.next()) {
            if (isFirst && tag->name != "Document")
                throw DrawingError(m_file, {"Document.xml", "<" + std::string(tag->name) + ">", "<Document>"});
            if (isFirst)
                m_found.programVersion = attribute(*tag, "ProgramVersion");
            isFirst = false;
            take(*tag);
        }
        if (isFirst)
            throw DrawingError(m_file, {"Document.xml", "no element", "<Document>"});
        return std::move(m_found);
    }

private:
    std::string attribute(const XmlTag& tag, std::string_view name) const {
        return decoded(rawAttribute(m_text.substr(tag.range.begin, tag.range.end - tag.range.begin), name));
    }

    /// What stands around a tag: an opening one has entered its own element already.
    std::size_t depthAround(const XmlTag& tag) const {
        return m_tags.path().size() - (tag.kind == XmlTag::Kind::opening ? 1 : 0);
    }
    bool standsIn(std::size_t depth, std::initializer_list<std::string_view> path) const {
        return depth == path.size() && std::equal(path.begin(), path.end(), m_tags.path().begin());
    }

    void take(const XmlTag& tag) {
        const std::size_t depth = depthAround(tag);
        if (tag.name == "Object" && tag.kind != XmlTag::Kind::closing && standsIn(depth, {"Document", "Objects"}))
            declare(tag);
        else if (tag.name == "Object" && standsIn(depth, {"Document", "ObjectData"}))
            open(tag);
        else if (m_isSketch && tag.name == "Property" &&
                 standsIn(depth, {"Document", "ObjectData", "Object", "Properties"}))
            takeProperty(tag);
    }

    void declare(const XmlTag& tag) {
        if (!attribute(tag, "type").starts_with(kSketchType))
            return;
        const std::string name = attribute(tag, "name");
        if (m_byName.emplace(name, m_found.sketches.size()).second)
            m_found.sketches.push_back({name, "", {}});
    }

    void open(const XmlTag& tag) {
        m_isSketch = false;
        if (tag.kind == XmlTag::Kind::closing)
            return;
        const auto sketch = m_byName.find(attribute(tag, "name"));
        m_isSketch = tag.kind == XmlTag::Kind::opening && sketch != m_byName.end();
        if (m_isSketch)
            m_sketch = sketch->second;
    }

    void takeProperty(const XmlTag& tag) {
        if (tag.kind == XmlTag::Kind::opening) {
            m_property = attribute(tag, "name");
            m_begin = tag.range.begin;
        } else if (tag.kind == XmlTag::Kind::closing) {
            FcstdObject& sketch = m_found.sketches[m_sketch];
            const XmlRange range{m_begin, tag.range.end};
            sketch.properties[m_property] = range;
            if (m_property == "Label")
                sketch.label = labelIn(range);
        }
    }

    std::string labelIn(XmlRange range) const {
        pugi::xml_document tree;
        loadPart(tree, m_text, range, m_file);
        return tree.document_element().child("String").attribute("value").value();
    }

    std::string_view m_text;
    const std::string& m_file;
    XmlTags m_tags;
    FcstdObjects m_found;
    std::unordered_map<std::string, std::size_t> m_byName;
    bool m_isSketch = false;
    std::size_t m_sketch = 0, m_begin = 0;
    std::string m_property;
};

}  // namespace

FcstdObjects objectsIn(std::string_view text, const std::string& file) {
    return ObjectReader(text, file).read();
}

void loadPart(pugi::xml_document& tree, std::string_view text, XmlRange range, const std::string& file) {
    const std::string_view part = text.substr(range.begin, range.end - range.begin);
    const auto count = [&](char c) { return static_cast<std::size_t>(std::count(part.begin(), part.end(), c)); };
    if (count('<') * kElementSize + count('=') * kAttributeSize > kLargestTree)
        throw DrawingError(file, {"Document.xml", "a property with more than a million elements or attributes",
                                  "a sketch of at most some ten thousand entities"});
    const pugi::xml_parse_result result =
        tree.load_buffer(part.data(), part.size(), pugi::parse_default, pugi::encoding_utf8);
    if (result)
        return;
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(range.begin) + result.offset;
    throw DrawingError(file, {"Document.xml", result.description(), "a well-formed document"},
                       static_cast<int>(1 + std::count(text.begin(), end, '\n')));
}

namespace {

/// The program reads on to the next end tag of a list, so that it misses that of an empty one in short form.
void keepEndTags(pugi::xml_document& tree) {
    for (pugi::xml_node list : tree.document_element().children())
        if (list.attribute("count") && list.first_child().empty())
            list.append_child(pugi::node_pcdata).set_value("\n");
}

}  // namespace

std::string partText(pugi::xml_document& tree, std::string_view text, XmlRange range) {
    keepEndTags(tree);
    const std::size_t newline = text.rfind('\n', range.begin);
    const std::size_t column = range.begin - (newline == std::string_view::npos ? 0 : newline + 1);
    std::ostringstream out;
    tree.document_element().print(out, kIndent, pugi::format_indent, pugi::encoding_utf8,
                                  static_cast<unsigned>(column / std::string_view(kIndent).size()));
    const std::string whole = out.str();
    const std::size_t begin = whole.find_first_not_of(" \n"), end = whole.find_last_not_of(" \n");
    return whole.substr(begin, end + 1 - begin);
}

}  // namespace holdfast::formats
