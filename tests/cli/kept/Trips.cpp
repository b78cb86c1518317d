#include "tests/cli/kept/Trips.h"

#include <filesystem>
#include <random>
#include <utility>

#include "apps/cli/files/DrawingFiles.h"
#include "apps/cli/files/OutputFiles.h"
#include "apps/cli/files/SketchFiles.h"
#include "apps/cli/telling/Terminal.h"
#include "formats/dxf/DxfReader.h"
#include "tests/fcstd/Documents.h"
#include "tests/formats/DxfLines.h"

namespace holdfast::cli::kept {
namespace {

using namespace formats;

/// A folder for one file, which goes with it.
class Folder {
public:
    Folder() : m_path(std::filesystem::temp_directory_path() / ("kept-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directory(m_path);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { std::filesystem::remove_all(m_path); }

    std::string file(const std::string& ending) const { return (m_path / ("kept" + ending)).string(); }

private:
    std::filesystem::path m_path;
};

Trip through(const std::string& ending, const Document& drawing, const DrawingFile& from) {
    const Folder folder;
    const DrawingTarget target{folder.file(ending)};
    Trip trip;
    {
        KeptComplaints complaints;
        OutputFiles outputs({drawingNamed(target)});
        outputs.addDrawing(target, drawing, from);
        outputs.write();
        trip.told = complaints.taken();
    }
    KeptComplaints complaints;  // of what is read
    trip.back = readAnyDrawing({target.path});
    complaints.taken();
    return trip;
}

Trip throughJson(const Feature& feature) {
    return through(".json", feature.drawing, {});
}
Trip throughNewDxf(const Feature& feature) {
    return through(".dxf", feature.drawing, {});
}
Trip throughSlvs(const Feature& feature) {
    return through(kSlvsForm, feature.drawing, {});
}
Trip throughSvg(const Feature& feature) {
    return through(".svg", feature.drawing, {});
}

/// A file of a version that knows every kind, with a line that has some groups, an insert, and a layer.
std::string dxfFileWith(const std::string& groups) {
    const std::string head =
        "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1015\n9 $INSUNITS\n70 1\n0 ENDSEC\n0 SECTION\n2 TABLES\n0 TABLE\n"
        "2 LAYER\n0 LAYER\n2 Cut\n70 1\n0 ENDTAB\n0 ENDSEC\n0 SECTION\n2 BLOCKS\n0 BLOCK\n2 PLUG\n10 0\n20 0\n"
        "0 LINE\n10 0\n20 0\n11 1\n21 1\n0 ENDBLK\n0 ENDSEC\n";
    const std::string line = "0 LINE\n" + groups + "\n10 0\n20 0\n11 10\n21 5\n0 INSERT\n2 PLUG\n10 0\n20 0";
    return dxfLines(head) + (groups.empty() ? dxfFile("") : dxfFile(line));
}

/// What a file has stays there when its line is edited; other things are drawn into it.
Trip throughChangedDxf(const Feature& feature) {
    DrawingFile file;
    std::string text = dxfFileWith(feature.groups);
    DxfDrawing read = readDxf(text, "kept.dxf");
    Document now = feature.groups.empty() ? feature.drawing : read.document;
    if (!feature.groups.empty())
        std::get<LineShape>(now.entities.front().shape).end = {20.0, 5.0};
    file.dxf = DxfOriginal{std::move(text), std::move(read.layout), std::move(read.document)};
    return through(".dxf", now, file);
}

/// Into an empty sketch of a document of a version that keeps outside geometry.
Trip throughFcstd(const Feature& feature) {
    DrawingFile file;
    file.sketch = SketchOriginal{archiveOf(documentText({SketchText{}}, "1.0.0")), "Sketch"};
    return through(kSketchForm, feature.drawing, file);
}

constexpr Form kForms[] = {{".json", throughJson},   {".dxf, new", throughNewDxf}, {".dxf, changed", throughChangedDxf},
                           {".FCStd", throughFcstd}, {".slvs", throughSlvs},       {".svg", throughSvg}};

}  // namespace

std::span<const Form> forms() {
    return kForms;
}

}  // namespace holdfast::cli::kept
