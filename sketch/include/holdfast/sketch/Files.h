#pragma once

#include "holdfast/formats/FileIo.h"
#include "holdfast/formats/dxf/DxfPatch.h"
#include "holdfast/formats/dxf/DxfReader.h"
#include "holdfast/formats/dxf/DxfWriter.h"
#include "holdfast/formats/json/JsonReader.h"
#include "holdfast/formats/json/JsonWriter.h"

namespace holdfast::sketch {

// Files that hold all of a drawing.
using formats::jsonText;
using formats::readDrawing;
using formats::readJson;
using formats::writeDrawing;

// Geometry alone, to and from others.
using formats::DxfDrawing;
using formats::DxfLayout;
using formats::DxfLoss;
using formats::DxfNote;
using formats::DxfNotice;
using formats::DxfOutput;
using formats::dxfText;
using formats::patchedDxf;
using formats::readDxf;
using formats::readFile;
using formats::writeFile;

}  // namespace holdfast::sketch
