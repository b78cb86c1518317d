#include "editing/commands/copy/Copying.h"

namespace holdfast::editing {

MadeCopies addCopies(Drawing& drawing, const std::vector<std::string>& originals, const CopiedConstraints& constraints,
                     const PlaneTransform& transform, CopiedKinds kinds) {
    MadeCopies made;
    std::vector<std::string> polylines;
    for (const std::string& name : originals) {
        Shape image = transformed(drawing.shape(name), transform);
        auto* polyline = std::get_if<PolylineShape>(&image);
        if (polyline != nullptr)
            polyline->ids.assign(polyline->vertices.size(), 0);
        const std::string copy = drawing.add(image, name);
        if (polyline != nullptr)
            polylines.push_back(copy);
        made.names.emplace(name, copy);
    }
    made.leftOut = constraints.addTo(drawing, made.names, transform, kinds);
    for (const std::string& polyline : polylines)
        drawing.tieCorners(polyline);
    return made;
}

}  // namespace holdfast::editing
