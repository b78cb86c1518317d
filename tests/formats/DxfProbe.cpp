// Reads or writes one DXF file for the test that compares with another program's reading of it.
// Usage: wb_drawing_dxf_probe read IN.dxf OUT.json | write IN.json OUT.dxf TOLERANCE

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include "formats/FileIo.h"
#include "formats/dxf/DxfReader.h"
#include "formats/dxf/DxfWriter.h"

namespace holdfast::formats {
namespace {

void print(const char* head, const std::vector<DxfNotice>& notices) {
    for (const DxfNotice& notice : notices)
        std::cout << head << '\t' << notice.count << '\t' << notice.what << '\n';
}

void read(const std::string& in, const std::string& out) {
    const DxfDrawing drawing = readDxf(readFile(in), in);
    print("not understood", drawing.notUnderstood);
    print("dropped", drawing.dropped);
    writeDrawing(drawing.document, out);
}

void write(const std::string& in, const std::string& out, double tolerance) {
    const DxfOutput output = dxfText(readDrawing(in), tolerance);
    for (const DxfNote& note : output.notes)
        std::cout << note.entity << '\t' << static_cast<int>(note.loss) << '\t' << note.pieces << '\n';
    writeFile(out, output.text);
}

}  // namespace
}  // namespace holdfast::formats

int main(int count, char** arguments) {
    try {
        const std::string mode = count > 3 ? arguments[1] : "";
        if (mode == "read")
            holdfast::formats::read(arguments[2], arguments[3]);
        else if (mode == "write" && count == 5)
            holdfast::formats::write(arguments[2], arguments[3], std::atof(arguments[4]));
        else
            return 2;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
