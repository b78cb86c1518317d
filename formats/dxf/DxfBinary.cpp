#include "formats/dxf/DxfBinary.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

#include "document/text/DrawingError.h"
#include "document/text/NumberText.h"
#include "formats/dxf/DxfNumber.h"
#include "formats/dxf/records/DxfItems.h"

namespace holdfast::formats {
namespace {

/// What such a file begins with, behind the name of the program that made the form.
constexpr std::string_view kSentinel(" Binary DXF\r\n\x1a\0", 15);
constexpr std::size_t kNameSize = 7, kHeadSize = kNameSize + kSentinel.size();
constexpr int kWideMark = 255;  // of a code that does not fit into one byte

enum class ValueForm { text, real, small, whole, large, flag, chunk };

struct FormOfCodes {
    int last;  // of the codes from the one behind the row before
    ValueForm form;
};

// The DXF reference, group code value types.
constexpr std::array<FormOfCodes, 32> kValueForms = {
    {{9, ValueForm::text},     {59, ValueForm::real},   {79, ValueForm::small},  {89, ValueForm::text},
     {99, ValueForm::whole},   {109, ValueForm::text},  {149, ValueForm::real},  {159, ValueForm::text},
     {169, ValueForm::large},  {179, ValueForm::small}, {209, ValueForm::text},  {239, ValueForm::real},
     {269, ValueForm::text},   {289, ValueForm::small}, {299, ValueForm::flag},  {309, ValueForm::text},
     {319, ValueForm::chunk},  {369, ValueForm::text},  {389, ValueForm::small}, {399, ValueForm::text},
     {409, ValueForm::small},  {419, ValueForm::text},  {429, ValueForm::whole}, {439, ValueForm::text},
     {459, ValueForm::whole},  {469, ValueForm::real},  {999, ValueForm::text},  {1003, ValueForm::text},
     {1004, ValueForm::chunk}, {1009, ValueForm::text}, {1059, ValueForm::real}, {1070, ValueForm::small}}};

ValueForm valueFormOf(int code) {
    const auto row =
        std::find_if(kValueForms.begin(), kValueForms.end(), [&](const FormOfCodes& f) { return code <= f.last; });
    if (row != kValueForms.end())
        return row->form;
    return code == 1071 ? ValueForm::whole : ValueForm::text;
}

std::size_t sizeOf(ValueForm form) {
    switch (form) {
        case ValueForm::real:
        case ValueForm::large:
            return 8;
        case ValueForm::whole:
            return 4;
        case ValueForm::small:
            return 2;
        default:
            return 1;
    }
}

class Decoder {
public:
    Decoder(std::string_view bytes, const std::string& fileName)
        : m_bytes(bytes), m_fileName(fileName), m_at(kHeadSize) {
        m_decoded.hasWideCodes = bytes.size() > m_at + 1 && bytes[m_at + 1] == '\0';
    }

    DxfDecoded decode() {
        bool isOver = false;
        while (!isOver && m_at < m_bytes.size()) {
            m_decoded.inText.push_back(m_decoded.text.size());
            m_decoded.inBytes.push_back(m_at);
            const int code = takeCode();
            const std::string value = takeValue(valueFormOf(code));
            m_decoded.text.append(std::to_string(code)).append("\n").append(value).append("\n");
            isOver = code == 0 && value == "EOF";  // what some programs put behind it is no group
        }
        m_decoded.inText.push_back(m_decoded.text.size());
        m_decoded.inBytes.push_back(m_at);
        return std::move(m_decoded);
    }

private:
    std::string_view take(std::size_t count) {
        if (m_bytes.size() - m_at < count)
            throw DrawingError(m_fileName, {"", "the end of the file in a group", "a binary DXF file that is complete"},
                               static_cast<int>(m_decoded.inText.size()));
        const std::string_view taken = m_bytes.substr(m_at, count);
        m_at += count;
        return taken;
    }

    std::uint64_t takeBits(std::size_t count) {
        std::uint64_t bits = 0;
        const std::string_view taken = take(count);
        for (std::size_t i = count; i > 0; --i)
            bits = (bits << 8U) | static_cast<unsigned char>(taken[i - 1]);
        return bits;
    }

    int takeCode() {
        if (m_decoded.hasWideCodes)
            return static_cast<int>(takeBits(2));
        const int code = static_cast<int>(takeBits(1));
        return code == kWideMark ? static_cast<int>(takeBits(2)) : code;
    }

    std::string takeValue(ValueForm form) {
        switch (form) {
            case ValueForm::text:
                return takeText();
            case ValueForm::chunk:
                return takeChunk();
            case ValueForm::real:
                return realText(std::bit_cast<double>(takeBits(8)));
            case ValueForm::small:
                return std::to_string(static_cast<std::int16_t>(takeBits(2)));
            case ValueForm::whole:
                return std::to_string(static_cast<std::int32_t>(takeBits(4)));
            case ValueForm::large:
                return std::to_string(static_cast<std::int64_t>(takeBits(8)));
            case ValueForm::flag:
                return std::to_string(takeBits(1));
        }
        return {};
    }

    static std::string realText(double value) { return std::isfinite(value) ? numberText(value) : "nan"; }

    /// Ends of lines within a text are written as texts of the other form have them.
    std::string takeText() {
        const std::size_t end = m_bytes.find('\0', m_at);
        const std::string_view raw = take((end == std::string_view::npos ? m_bytes.size() + 1 : end + 1) - m_at);
        std::string text;
        for (const char c : raw.substr(0, raw.size() - 1)) {
            if (c == '\n' || c == '\r')
                text.append("^").append(1, static_cast<char>(c + '@'));
            else
                text += c;
        }
        return text;
    }

    std::string takeChunk() {
        constexpr std::string_view digits = "0123456789ABCDEF";
        std::string text;
        for (const char c : take(static_cast<std::size_t>(takeBits(1)))) {
            text += digits[static_cast<unsigned char>(c) >> 4U];
            text += digits[static_cast<unsigned char>(c) & 15U];
        }
        return text;
    }

    std::string_view m_bytes;
    const std::string& m_fileName;
    std::size_t m_at;
    DxfDecoded m_decoded;
};

void putBits(std::string& out, std::uint64_t bits, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        out += static_cast<char>((bits >> (8U * i)) & 255U);
}

void putCode(std::string& out, int code, bool isWide) {
    const auto bits = static_cast<std::uint64_t>(code);
    if (!isWide && code < kWideMark)
        return putBits(out, bits, 1);
    if (!isWide)
        putBits(out, kWideMark, 1);
    putBits(out, bits, 2);
}

void putValue(std::string& out, ValueForm form, const std::string& value) {
    if (form == ValueForm::text) {
        out.append(value).append(1, '\0');
    } else if (form == ValueForm::real) {
        putBits(out, std::bit_cast<std::uint64_t>(numberIn<double>(value).value_or(0.0)), sizeOf(form));
    } else if (form == ValueForm::chunk) {
        putBits(out, value.size() / 2, 1);
        for (std::size_t i = 0; i + 1 < value.size(); i += 2) {
            unsigned byte = 0;
            std::from_chars(value.data() + i, value.data() + i + 2, byte, 16);
            putBits(out, byte, 1);
        }
    } else {
        putBits(out, static_cast<std::uint64_t>(numberIn<std::int64_t>(value).value_or(0)), sizeOf(form));
    }
}

std::string encodedGroups(std::string_view text, bool isWide) {
    std::string out;
    for (const DxfItem& item : itemsOf(text)) {
        putCode(out, item.code, isWide);
        putValue(out, valueFormOf(item.code), item.value);
    }
    return out;
}

}  // namespace

bool isBinaryDxf(std::string_view bytes) {
    return bytes.size() >= kHeadSize && bytes.substr(kNameSize).starts_with(kSentinel);
}

DxfDecoded decodedDxf(std::string_view bytes, const std::string& fileName) {
    return Decoder(bytes, fileName).decode();
}

void DxfByteChanges::replace(std::size_t begin, std::size_t end, std::string_view text) {
    const std::vector<std::size_t>& groups = m_decoded.inText;
    const auto first =
        static_cast<std::size_t>(std::upper_bound(groups.begin(), groups.end(), begin) - groups.begin()) - 1;
    const auto last = static_cast<std::size_t>(std::lower_bound(groups.begin(), groups.end(), end) - groups.begin());
    std::string whole = m_decoded.text.substr(groups[first], begin - groups[first]);
    whole.append(text).append(m_decoded.text.substr(end, groups[last] - end));
    m_result.append(m_bytes.substr(m_done, m_decoded.inBytes[first] - m_done));
    m_result.append(encodedGroups(whole, m_decoded.hasWideCodes));
    m_done = m_decoded.inBytes[last];
}

std::string DxfByteChanges::finished() {
    m_result.append(m_bytes.substr(m_done));
    return std::move(m_result);
}

}  // namespace holdfast::formats
