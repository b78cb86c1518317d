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
    Bundle(std::string_view main, const TextOfModule& textOf) : m_textOf(textOf) { add(main); }

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
        std::string_view rest = m_textOf(module);
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find('\n'), rest.size());
            addLine(module, rest.substr(0, end), body, exports);
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
        m_text += "const " + variableOf(module) + " = (() => {\n" + body + "return {";
        for (const std::string& name : exports)
            m_text += " " + name + ",";
        m_text += " };\n})();\n";
    }

    void addLine(std::string_view module, std::string_view line, std::string& body, std::vector<std::string>& exports) {
        constexpr std::string_view kExport = "export ";
        if (startsWithWord(line, "import"))
            return addImport(module, line, body);
        if (startsWithWord(line, "export")) {
            const std::string_view declaration = line.substr(std::min(kExport.size(), line.size()));
            exports.push_back(nameIn(module, line, declaration));
            line = declaration;
        }
        body.append(line).append("\n");
    }

    /// "import { a, b as c } from './other.js';" and "import * as other from './other.js';", on one line.
    void addImport(std::string_view module, std::string_view line, std::string& body) {
        constexpr std::string_view kImport = "import ", kFrom = " from './", kEnd = "';", kAll = "* as ";
        const std::size_t from = line.find(kFrom), path = from + kFrom.size();
        const std::size_t end = from == std::string_view::npos ? from : line.find(kEnd, path);
        if (end == std::string_view::npos || end + kEnd.size() != line.size())
            refuse(module, line);
        const std::string_view other = line.substr(path, end - path);
        std::string_view names = line.substr(kImport.size(), from - kImport.size());
        add(other);
        if (names.starts_with(kAll) && isName(names.substr(kAll.size())))
            body.append("const ").append(names.substr(kAll.size()));
        else if (names.starts_with('{') && names.ends_with('}'))
            body.append("const {").append(taken(module, line, names.substr(1, names.size() - 2))).append(" }");
        else
            refuse(module, line);
        body.append(" = ").append(variableOf(other)).append(";\n");
    }

    /// "a, b as c" as what takes an object apart: " a, b: c,".
    static std::string taken(std::string_view module, std::string_view line, std::string_view names) {
        constexpr std::string_view kAs = " as ";
        std::string result;
        while (!names.empty()) {
            const std::size_t end = std::min(names.find(','), names.size());
            const std::string_view name = trimmed(names.substr(0, end));
            names.remove_prefix(std::min(end + 1, names.size()));
            const std::size_t as = name.find(kAs);
            const std::string_view own = name.substr(0, as);
            const std::string_view here = as == std::string_view::npos ? own : name.substr(as + kAs.size());
            if (name.empty() && trimmed(names).empty())
                break;  // a comma at the end
            if (!isName(own) || !isName(here))
                refuse(module, line);
            result.append(" ").append(own);
            if (own != here)
                result.append(": ").append(here);
            result += ',';
        }
        return result;
    }

    /// Of "class X ...", "function x(...", "async function x(...", "const x = ...".
    static std::string nameIn(std::string_view module, std::string_view line, std::string_view declaration) {
        constexpr std::string_view kAsync = "async ";
        if (declaration.starts_with(kAsync))
            declaration.remove_prefix(kAsync.size());
        const std::string_view kind = declaration.substr(0, declaration.find(' '));
        const std::string_view rest = declaration.substr(std::min(kind.size() + 1, declaration.size()));
        const std::string_view name = rest.substr(0, rest.find_first_of(" ("));
        if ((kind != "class" && kind != "function" && kind != "const") || !isName(name))
            refuse(module, line);
        return std::string(name);
    }

    static bool isName(std::string_view word) {
        constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_$";
        return !word.empty() && word.find_first_not_of(kLetters) == std::string_view::npos;
    }

    static bool startsWithWord(std::string_view line, std::string_view word) {
        return line.starts_with(word) && !isName(line.substr(word.size(), 1)) &&
               !line.substr(word.size()).starts_with('(');
    }

    static std::string_view trimmed(std::string_view text) {
        const std::size_t from = std::min(text.find_first_not_of(' '), text.size());
        return text.substr(from, text.find_last_not_of(' ') + 1 - from);
    }

    [[noreturn]] static void refuse(std::string_view module, std::string_view line) {
        throw std::logic_error(std::string(module) + ": \"" + std::string(line) +
                               "\" is no way of importing or exporting that pages in one file know");
    }

    const TextOfModule& m_textOf;
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

std::string bundled(std::string_view main, const TextOfModule& textOf) {
    return Bundle(main, textOf).text();
}

std::string heldJson(std::string_view id, std::string_view json) {
    const bool isPacked = json.size() > kMostReadable;
    return "<script id=\"" + std::string(id) + "\" type=\"application/json\"" +
           (isPacked ? " data-packed=\"gzip\">" + inLetters(gzipped(json)) : ">" + escapedInElement(json)) +
           "</script>";
}

}  // namespace holdfast::window
