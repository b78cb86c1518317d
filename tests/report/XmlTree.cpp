#include "tests/report/XmlTree.h"

#include <cctype>
#include <sstream>

#include "document/text/Utf8.h"

namespace holdfast::report::test {

using namespace document;

namespace {

class Parser {
public:
    explicit Parser(std::string_view text) : m_text(text) {}

    XmlNode document() {
        checkCharacters();
        skipMisc();
        if (lookingAt("<!DOCTYPE"))
            m_at = m_text.find('>', m_at) + 1;
        skipMisc();
        XmlNode root = element();
        skipMisc();
        if (m_at != m_text.size())
            fail("text after the root element");
        return root;
    }

private:
    [[noreturn]] void fail(const std::string& what) const {
        throw XmlError(what + " at byte " + std::to_string(m_at) + ": " + std::string(m_text.substr(m_at, 60)));
    }
    void checkCharacters() const {
        if (!isUtf8(m_text))
            fail("broken UTF-8");
        for (const char c : m_text)
            if (static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t' && c != '\r')
                fail("a control character");
    }
    bool lookingAt(std::string_view what) const { return m_text.substr(m_at, what.size()) == what; }
    bool take(std::string_view what) {
        if (!lookingAt(what))
            return false;
        m_at += what.size();
        return true;
    }
    void expect(std::string_view what) {
        if (!take(what))
            fail("expected " + std::string(what));
    }
    void skipSpace() {
        while (m_at < m_text.size() && std::isspace(static_cast<unsigned char>(m_text[m_at])))
            ++m_at;
    }
    void skipMisc() {
        for (skipSpace(); lookingAt("<!--"); skipSpace())
            m_at = m_text.find("-->", m_at) + 3;
    }
    std::string name() {
        const std::size_t start = m_at;
        while (m_at < m_text.size() && (std::isalnum(static_cast<unsigned char>(m_text[m_at])) ||
                                        std::string_view("-_:.").find(m_text[m_at]) != std::string_view::npos))
            ++m_at;
        if (m_at == start)
            fail("expected a name");
        return std::string(m_text.substr(start, m_at - start));
    }
    std::string reference() {
        const std::size_t end = m_text.find(';', m_at);
        if (end == std::string_view::npos || end - m_at > 10)
            fail("a bare ampersand");
        const std::string_view entity = m_text.substr(m_at, end - m_at + 1);
        m_at = end + 1;
        static const std::map<std::string_view, std::string> known{
            {"&amp;", "&"}, {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&#39;", "'"}, {"&#183;", "\u00B7"}};
        const auto found = known.find(entity);
        if (found == known.end())
            fail("unknown entity " + std::string(entity));
        return found->second;
    }
    void attribute(XmlNode& node) {
        const std::string key = name();
        expect("=\"");
        std::string value;
        while (m_at < m_text.size() && m_text[m_at] != '"') {
            if (m_text[m_at] == '<')
                fail("a bare < in an attribute");
            value += m_text[m_at] == '&' ? reference() : std::string(1, m_text[m_at++]);
        }
        expect("\"");
        if (!node.attributes.emplace(key, value).second)
            fail("attribute " + key + " twice");
    }
    XmlNode element() {
        XmlNode node;
        expect("<");
        node.name = name();
        for (skipSpace(); !lookingAt(">") && !lookingAt("/>"); skipSpace())
            attribute(node);
        if (take("/>"))
            return node;
        expect(">");
        content(node);
        if (name() != node.name)
            fail("end of another element than " + node.name);
        expect(">");
        return node;
    }
    void content(XmlNode& node) {
        while (!take("</")) {
            if (m_at >= m_text.size())
                fail(node.name + " without an end");
            if (take("<![CDATA[")) {
                const std::size_t end = m_text.find("]]>", m_at);
                node.text += m_text.substr(m_at, end - m_at);
                m_at = end + 3;
            } else if (lookingAt("<!--")) {
                skipMisc();
            } else if (lookingAt("<")) {
                node.children.push_back(element());
            } else {
                node.text += lookingAt("&") ? reference() : std::string(1, m_text[m_at++]);
            }
        }
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

void collect(const XmlNode& node, std::vector<const XmlNode*>& out) {
    out.push_back(&node);
    for (const XmlNode& child : node.children)
        collect(child, out);
}

}  // namespace

std::string XmlNode::operator[](const std::string& attribute) const {
    const auto found = attributes.find(attribute);
    return found == attributes.end() ? std::string() : found->second;
}

bool XmlNode::hasClass(std::string_view wanted) const {
    std::istringstream words((*this)["class"]);
    for (std::string word; words >> word;)
        if (word == wanted)
            return true;
    return false;
}

std::vector<const XmlNode*> XmlNode::all(std::string_view elementName) const& {
    std::vector<const XmlNode*> nodes;
    collect(*this, nodes);
    if (!elementName.empty())
        std::erase_if(nodes, [&](const XmlNode* node) { return node->name != elementName; });
    return nodes;
}

std::vector<const XmlNode*> XmlNode::withClass(std::string_view wanted) const& {
    std::vector<const XmlNode*> nodes = all();
    std::erase_if(nodes, [&](const XmlNode* node) { return !node->hasClass(wanted); });
    return nodes;
}

std::string XmlNode::allText() const {
    std::string all = text;
    for (const XmlNode& child : children)
        all += child.allText();
    return all;
}

XmlNode parseXml(std::string_view text) {
    return Parser(text).document();
}

}  // namespace holdfast::report::test
