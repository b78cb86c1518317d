#include "apps/window/Bundle.h"

#include <zlib.h>

#include <algorithm>
#include <new>
#include <stdexcept>
#include <unordered_set>
#include <vector>

#include "apps/window/Assets.h"

namespace holdfast::window {

namespace {

/// A module becomes a function that gives what it exports. Imports and exports stand at the beginning of a line of
/// their own.
class Bundle {
public:
    explicit Bundle(std::string_view main) { add(main); }

    const std::string& text() const { return m_text; }

private:
    static std::string variableOf(std::string_view module) {
        std::string name(module.substr(0, module.find('.')));
        return name + "Module";
    }

    void add(std::string_view module) {
        if (!m_known.insert(std::string(module)).second)
            return;
        std::string body;
        std::vector<std::string> exports;
        std::string_view rest = textOfAsset(module);
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find('\n'), rest.size());
            addLine(rest.substr(0, end), body, exports);
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
        m_text += "const " + variableOf(module) + " = (() => {\n" + body + "return {";
        for (const std::string& name : exports)
            m_text += " " + name + ",";
        m_text += " };\n})();\n";
    }

    void addLine(std::string_view line, std::string& body, std::vector<std::string>& exports) {
        constexpr std::string_view kImport = "import ", kExport = "export ", kFrom = " from './";
        if (line.starts_with(kImport)) {
            const std::size_t from = line.find(kFrom);
            const std::string_view path = line.substr(from + kFrom.size());
            const std::string_view module = path.substr(0, path.find('\''));
            add(module);
            std::string_view names = line.substr(kImport.size(), from - kImport.size());
            constexpr std::string_view kAll = "* as ";
            if (names.starts_with(kAll))
                names.remove_prefix(kAll.size());
            body.append("const ").append(names).append(" = ").append(variableOf(module)).append(";\n");
            return;
        }
        if (line.starts_with(kExport)) {
            line.remove_prefix(kExport.size());
            exports.push_back(nameIn(line));
        }
        body.append(line).append("\n");
    }

    /// Of "class X ...", "function x(...", "async function x(...", "const x = ...".
    static std::string nameIn(std::string_view declaration) {
        constexpr std::string_view kAsync = "async ";
        if (declaration.starts_with(kAsync))
            declaration.remove_prefix(kAsync.size());
        const std::string_view rest = declaration.substr(declaration.find(' ') + 1);
        return std::string(rest.substr(0, rest.find_first_of(" (")));
    }

    std::string m_text;
    std::unordered_set<std::string> m_known;
};

/// Bytes that people look at in the source of a page.
constexpr std::size_t kMostReadable = 1 << 18;

std::string escapedInElement(std::string_view json) {
    std::string text;
    for (const char c : json)
        if (c == '<')
            text += "\\u003c";
        else if (c == '>')
            text += "\\u003e";
        else if (c == '&')
            text += "\\u0026";
        else
            text += c;
    return text;
}

/// RFC 1952, by the library that everybody has. Speed counts more than the last percents.
std::string gzipped(std::string_view text) {
    constexpr int kLevel = 4, kGzip = 16, kMemory = 8;
    z_stream stream{};
    if (deflateInit2(&stream, kLevel, Z_DEFLATED, kGzip + MAX_WBITS, kMemory, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc();
    std::string packed(deflateBound(&stream, static_cast<uLong>(text.size())), '\0');
    stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    const int ending = deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    if (ending != Z_STREAM_END)
        throw std::logic_error("what was packed is longer than it can be");
    return packed;
}

/// RFC 4648, section 4.
std::string inLetters(std::string_view bytes) {
    constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    const auto byte = [&](std::size_t i) -> unsigned {
        return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U;
    };
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const unsigned three = byte(i) << 16U | byte(i + 1) << 8U | byte(i + 2);
        for (const unsigned shift : {18U, 12U, 6U, 0U})
            text += kLetters[three >> shift & 63U];
    }
    for (std::size_t i = 0; i < (3 - bytes.size() % 3) % 3; ++i)
        text[text.size() - 1 - i] = '=';
    return text;
}

}  // namespace

std::string_view textOfAsset(std::string_view name) {
    const Asset* asset = assetNamed(name);
    if (asset == nullptr)
        throw std::logic_error("the page has no " + std::string(name));
    return asset->text;
}

std::string bundled(std::string_view main) {
    return Bundle(main).text();
}

std::string heldJson(std::string_view id, std::string_view json) {
    const bool isPacked = json.size() > kMostReadable;
    return "<script id=\"" + std::string(id) + "\" type=\"application/json\"" +
           (isPacked ? " data-packed=\"gzip\">" + inLetters(gzipped(json)) : ">" + escapedInElement(json)) +
           "</script>";
}

}  // namespace holdfast::window
