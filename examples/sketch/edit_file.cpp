// Edits of a drawing that is a file, as a user types them; a picture and a report of it. Prints:
//
//     set g0 end 40,0
//       degrees of freedom: 5, before 5
//     fillet g0 g1 radius 5
//       degrees of freedom: 6, before 5
//     edit "trim g7", column 6: the drawing has no entity g7, found "g7"; did you mean "g0"?
//     a page that ends, a picture that ends
//     no such file of the drawing
#include <holdfast/sketch/Sketch.h>

#include <cstdio>
#include <filesystem>

using namespace holdfast::sketch;

namespace {

constexpr const char* kDxf =
    "0\nSECTION\n2\nENTITIES\n"
    "0\nLINE\n8\n0\n10\n0\n20\n0\n11\n30\n21\n0\n"
    "0\nLINE\n8\n0\n10\n30\n20\n0\n11\n30\n21\n20\n"
    "0\nENDSEC\n0\nEOF\n";

/// A plain drawing of somebody else's with constraints of ours.
Document angle() {
    Document drawing = readDxf(kDxf, "angle.dxf").document;
    drawing.constraints = {
        {.id = "c0", .type = ConstraintType::coincident, .refs = {{"g0", PlaceKind::end}, {"g1", PlaceKind::start}}},
        {.id = "c1", .type = ConstraintType::horizontal, .refs = {{"g0"}}}};
    return drawing;
}

}  // namespace

int main() {
    const std::filesystem::path file = std::filesystem::temp_directory_path() / "holdfast-angle.json";
    try {
        writeDrawing(angle(), file);
        Session session(readDrawing(file));
        session.tellFreedom();
        for (const char* text : {"set g0 end 40,0", "fillet g0 g1 radius 5", "trim g7"}) {
            const EditResult result = session.apply(text);
            std::printf("%s\n", result.done() ? toText(*result.edit).c_str() : result.error.c_str());
            if (result.done() && result.freedomAfter)
                std::printf("  degrees of freedom: %d, before %d\n", *result.freedomAfter, *result.freedomBefore);
        }
        const std::string page = writeHtmlReport(session.report()), picture = writePicture(session.document());
        std::printf("a page that %s, a picture that %s\n", page.ends_with("</html>\n") ? "ends" : "breaks off",
                    picture.ends_with("</svg>\n") ? "ends" : "breaks off");
        std::filesystem::remove(file);
        readDrawing(file);
    } catch (const DrawingError& error) {
        std::printf("%s of %s\n", error.found().c_str(), error.file() == file ? "the drawing" : "another file");
    }
}
