#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Documents as another program writes them, as far as sketches are concerned: the archive and its text.

namespace holdfast::formats {

struct ZipEntry {
    std::string name, bytes;
    std::uint32_t claimedSize = 0;  ///< 0: the true one
};

inline std::uint32_t checksumOf(std::string_view bytes) {
    static const std::vector<std::uint32_t> table = [] {
        std::vector<std::uint32_t> made(256);
        for (std::uint32_t i = 0; i < made.size(); ++i) {
            made[i] = i;
            for (int bit = 0; bit < 8; ++bit)
                made[i] = (made[i] >> 1U) ^ ((made[i] & 1U) != 0 ? 0xEDB88320U : 0U);
        }
        return made;
    }();
    std::uint32_t sum = 0xFFFFFFFFU;
    for (const char c : bytes)
        sum = (sum >> 8U) ^ table[(sum ^ static_cast<unsigned char>(c)) & 0xFFU];
    return ~sum;
}

class ZipText {
public:
    ZipText& number(std::uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            m_text += static_cast<char>(value >> (8U * static_cast<unsigned>(i)));
        return *this;
    }
    ZipText& text(std::string_view text) {
        m_text += text;
        return *this;
    }
    const std::string& whole() const { return m_text; }
    std::uint32_t size() const { return static_cast<std::uint32_t>(m_text.size()); }

private:
    std::string m_text;
};

/// An archive of entries that are not packed.
inline std::string zipped(const std::vector<ZipEntry>& entries) {
    ZipText archive, directory;
    for (const ZipEntry& entry : entries) {
        const std::uint32_t start = archive.size(), sum = checksumOf(entry.bytes);
        const auto size = static_cast<std::uint32_t>(entry.bytes.size());
        const std::uint32_t claimed = entry.claimedSize == 0 ? size : entry.claimedSize;
        const auto facts = [&](ZipText& out) {
            out.number(20, 2).number(0, 2).number(0, 2).number(0x6000, 2).number(0x5521, 2);
            out.number(sum, 4).number(claimed, 4).number(claimed, 4);
            out.number(static_cast<std::uint32_t>(entry.name.size()), 2).number(0, 2);
        };
        archive.text("PK\3\4");
        facts(archive);
        archive.text(entry.name).text(entry.bytes);
        directory.text("PK\1\2").number(20, 2);
        facts(directory);
        directory.number(0, 2).number(0, 2).number(0, 2).number(0, 4).number(start, 4).text(entry.name);
    }
    const auto count = static_cast<std::uint32_t>(entries.size());
    const std::uint32_t start = archive.size();
    archive.text(directory.whole()).text("PK\5\6").number(0, 4).number(count, 2).number(count, 2);
    archive.number(directory.size(), 4).number(start, 4).number(0, 2);
    return archive.whole();
}

/// A piece of geometry with what newer documents say beside the shape.
inline std::string geometry(const std::string& type, const std::string& shape, bool isConstruction = false) {
    return "                        <Geometry  type=\"Part::Geom" + type +
           "\">\n                            <GeoExtensions count=\"1\">\n                                "
           "<GeoExtension "
           "type=\"Sketcher::SketchGeometryExtension\" internalGeometryType=\"0\" "
           "geometryModeFlags=\"000000000000000000000000000000" +
           (isConstruction ? "10" : "00") +
           "\" geometryLayer=\"0\"/>\n                            </GeoExtensions>\n                            " +
           shape + "\n                        </Geometry>\n";
}

inline std::string lineGeometry(const std::string& x1, const std::string& y1, const std::string& x2,
                                const std::string& y2, bool isConstruction = false) {
    return geometry("LineSegment",
                    "<LineSegment StartX=\"" + x1 + "\" StartY=\"" + y1 + "\" StartZ=\"0\" EndX=\"" + x2 +
                        "\" EndY=\"" + y2 + "\" EndZ=\"0\"/>",
                    isConstruction);
}

struct Constrain {
    int type = 0;
    std::array<int, 6> refs{-2000, 0, -2000, 0, -2000, 0};
    std::string value = "0.0", name{}, more{};
};

inline std::string constrain(const Constrain& c) {
    const auto field = [](const char* name, const std::string& value) {
        return std::string(name) + "=\"" + value + "\" ";
    };
    const auto ref = [&](std::size_t i) { return std::to_string(c.refs[i]); };
    return "                        <Constrain " + field("Name", c.name) + field("Type", std::to_string(c.type)) +
           c.more + field("Value", c.value) + field("First", ref(0)) + field("FirstPos", ref(1)) +
           field("Second", ref(2)) + field("SecondPos", ref(3)) + field("Third", ref(4)) + field("ThirdPos", ref(5)) +
           "LabelDistance=\"12.5\" LabelPosition=\"0.0\" " +
           (c.more.find("IsDriving") == std::string::npos ? "IsDriving=\"1\" " : "") + "IsInVirtualSpace=\"0\" " +
           (c.more.find("IsActive") == std::string::npos ? "IsActive=\"1\" " : "") + "/>\n";
}

struct SketchText {
    std::string name = "Sketch", label = "Outline";
    std::vector<std::string> geometry{}, constraints{}, expressions{};
    std::string more{};  ///< further properties
};

inline std::string listText(const char* name, const std::vector<std::string>& items) {
    std::string text =
        std::string("                    <") + name + " count=\"" + std::to_string(items.size()) + "\">\n";
    for (const std::string& item : items)
        text += item;
    return text + "                    </" + name + ">\n";
}

inline std::string objectText(const SketchText& sketch) {
    const auto property = [](const char* name, const char* type, const std::string& content) {
        return std::string("                <Property name=\"") + name + "\" type=\"" + type + "\">\n" + content +
               "                </Property>\n";
    };
    return "        <Object name=\"" + sketch.name + "\" Extensions=\"True\">\n            <Properties Count=\"5\">\n" +
           property("Constraints", "Sketcher::PropertyConstraintList", listText("ConstraintList", sketch.constraints)) +
           property("ExpressionEngine", "App::PropertyExpressionEngine",
                    listText("ExpressionEngine", sketch.expressions)) +
           property("Geometry", "Part::PropertyGeometryList", listText("GeometryList", sketch.geometry)) +
           property("Label", "App::PropertyString", "                    <String value=\"" + sketch.label + "\"/>\n") +
           sketch.more + "            </Properties>\n        </Object>\n";
}

inline std::string documentText(const std::vector<SketchText>& sketches,
                                const std::string& version = "0.20R29177 (Git)") {
    std::string objects, data;
    for (const SketchText& sketch : sketches) {
        objects += "        <Object type=\"Sketcher::SketchObject\" name=\"" + sketch.name + "\" id=\"7\" />\n";
        data += objectText(sketch);
    }
    const std::string pad =
        "        <Object name=\"Pad\">\n            <Properties Count=\"1\">\n                <Property name=\"Label\" "
        "type=\"App::PropertyString\">\n                    <String value=\"a &lt;pad&gt;\"/>\n                "
        "</Property>\n            </Properties>\n        </Object>\n";
    return "<?xml version='1.0' encoding='utf-8'?>\n<!--\n a comment with <tags> -->\n<Document SchemaVersion=\"4\" "
           "ProgramVersion=\"" +
           version +
           "\" FileVersion=\"1\">\n    <Properties Count=\"1\">\n        <Property name=\"Comment\" "
           "type=\"App::PropertyString\">\n            <String value=\"1 &gt; 0 > -1\"/>\n        </Property>\n    "
           "</Properties>\n    <Objects Count=\"2\">\n        <Object type=\"PartDesign::Pad\" name=\"Pad\" id=\"3\" "
           "/>\n" +
           objects + "    </Objects>\n    <ObjectData Count=\"2\">\n" + pad + data + "    </ObjectData>\n</Document>\n";
}

inline std::string archiveOf(const std::string& text) {
    return zipped({{"Document.xml", text},
                   {"PartShape.brp", "DBRep_DrawableShape\nnot a text\x01"},
                   {"GuiDocument.xml", "<a/>"}});
}

inline std::string documentOf(const SketchText& sketch) {
    return archiveOf(documentText({sketch}));
}

/// Two lines that meet at a corner, one of them level, with dimensions of which the second is half the first.
inline SketchText cornerSketch() {
    SketchText sketch;
    sketch.geometry = {lineGeometry("0.0", "0.0", "10.0000000000000000", "0.0"),
                       lineGeometry("10.0", "0.0", "10.0", "5.0")};
    sketch.constraints = {constrain({1, {0, 1, -1, 1, -2000, 0}}),
                          constrain({1, {0, 2, 1, 1, -2000, 0}}),
                          constrain({2, {0, 0, -2000, 0, -2000, 0}}),
                          constrain({3, {1, 0, -2000, 0, -2000, 0}}),
                          constrain({7, {0, 1, 0, 2, -2000, 0}, "10.0", "width"}),
                          constrain({6, {1, 0, -2000, 0, -2000, 0}, "5.0"})};
    sketch.expressions = {
        "                        <Expression path=\"Constraints[5]\" expression=\".Constraints.width / 2\"/>\n"};
    return sketch;
}

}  // namespace holdfast::formats
