#include "formats/dxf/DxfBinary.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

#include "document/text/DrawingError.h"
#include "formats/dxf/DxfPatch.h"
#include "formats/dxf/DxfReader.h"

namespace holdfast::formats {
namespace {

/// Writes a binary file group by group.
class Bytes {
public:
    explicit Bytes(bool hasWideCodes) : m_hasWideCodes(hasWideCodes) {}

    Bytes& text(int code, const std::string& value) {
        this->code(code);
        m_bytes += value + '\0';
        return *this;
    }
    Bytes& real(int code, double value) {
        this->code(code);
        return bits(std::bit_cast<std::uint64_t>(value), 8);
    }
    Bytes& small(int code, std::uint64_t value) {
        this->code(code);
        return bits(value, 2);
    }
    Bytes& whole(int code, std::uint64_t value) {
        this->code(code);
        return bits(value, 4);
    }
    std::string all() const { return std::string("1234567 Binary DXF\r\n\x1a\0", 22) + m_bytes; }

private:
    void code(int code) {
        if (m_hasWideCodes || code >= 255) {
            if (!m_hasWideCodes)
                m_bytes += '\xFF';
            bits(static_cast<std::uint64_t>(code), 2);
        } else {
            m_bytes += static_cast<char>(code);
        }
    }
    Bytes& bits(std::uint64_t value, int count) {
        for (int i = 0; i < count; ++i)
            m_bytes += static_cast<char>(value >> (8 * i) & 255U);
        return *this;
    }

    bool m_hasWideCodes;
    std::string m_bytes;
};

/// A line on a layer, with a handle, a weight, and groups of every size around it.
std::string lineTo(double x, bool hasWideCodes, const char* seed = "2A", double extra = 0.0) {
    Bytes bytes(hasWideCodes);
    bytes.text(0, "SECTION").text(2, "HEADER").text(9, "$HANDSEED").text(5, seed).text(0, "ENDSEC");
    bytes.text(0, "SECTION").text(2, "ENTITIES");
    for (const double end : {x, extra})
        if (end != 0.0) {
            bytes.text(0, "LINE").text(5, end == x ? "1F" : "2A").text(8, "Cut").small(62, 5).whole(420, 0x112233);
            bytes.real(10, 0.1).real(20, 0.0).real(11, end).real(21, 1.0 / 3.0).text(1001, "THEIRS").small(1070, 65535);
        }
    return bytes.text(0, "ENDSEC").text(0, "EOF").all() + "behind";
}

class DxfBinary : public testing::TestWithParam<bool> {};

TEST_P(DxfBinary, IsReadAsTheTextThatSaysTheSame) {
    const std::string bytes = lineTo(4, GetParam());
    ASSERT_TRUE(isBinaryDxf(bytes));
    const Document document = readDxf(bytes, "a.dxf").document;
    const SharedLook look({.layer = "Cut", .colour = {Colour::Kind::rgb, 0x112233}});
    EXPECT_EQ(document.entities,
              (std::vector<Entity>{{.id = "g0", .shape = LineShape{{0.1, 0}, {4, 1.0 / 3.0}}, .look = look}}));
}

TEST_P(DxfBinary, ComesBackToTheByteButForWhatWasEdited) {
    const std::string bytes = lineTo(4, GetParam());
    const DxfDrawing drawing = readDxf(bytes, "a.dxf");
    EXPECT_EQ(patchedDxf(bytes, drawing.layout, drawing.document, drawing.document).text, bytes);
    Document now = drawing.document;
    std::get<LineShape>(now.entities[0].shape).end.x = 0.1 + 0.2;
    EXPECT_EQ(patchedDxf(bytes, drawing.layout, drawing.document, now).text, lineTo(0.1 + 0.2, GetParam()));
    now.entities.push_back({"g0_2", LineShape{{0.1, 0}, {7, 1.0 / 3.0}}});
    EXPECT_EQ(patchedDxf(bytes, drawing.layout, drawing.document, now).text, lineTo(0.1 + 0.2, GetParam(), "2B", 7));
}

TEST_P(DxfBinary, IsRefusedWhereItBreaksOff) {
    const std::string bytes = lineTo(4, GetParam());
    for (std::size_t size = 22; size + 10 < bytes.size(); ++size)
        EXPECT_THROW(readDxf(bytes.substr(0, size), "a.dxf"), DrawingError) << size;
}

INSTANTIATE_TEST_SUITE_P(BothForms, DxfBinary, testing::Bool());

}  // namespace
}  // namespace holdfast::formats
