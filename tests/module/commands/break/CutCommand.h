#pragma once

#include <memory>
#include <string>

#include "host/model/Scene.h"
#include "host/model/entities/EntityAccess.h"

namespace holdfast::module {

/// The two polylines that a cut leaves; `second` has no vertices when the cut runs up to the end, `first` has none when
/// it begins at the start. Identifiers are 0.
struct CutPieces {
    PolylineData first;
    PolylineData second;
};
CutPieces cutPolyline(const PolylineData& uncut, double startParam, double endParam);

/// The point of a polyline at a parameter.
YxGePoint3d pointAt(const PolylineData& polyline, double param);

/// A copy of the resident entity onto which its reactors were copied, as a host makes the pieces of a cut.
void copyReactors(const YxDbEntity& from, YxDbEntity& to);

/// Puts the data of an entity of the same class into a resident one, identifiers included.
void putInto(const YxDbObjectId& resident, const YxDbEntity& data);

/// What BREAK and TRIM do, but for the set-up of the cut points, which is up to the caller: hands the first piece over
/// while the curve is uncut, cuts the curve, adds the second piece under the name `secondName` and hands it over open.
/// Without a first piece of the same class the curve stays uncut. Answers what deleteConstraint answered.
template <class Centre>
int finishCut(Scene& scene, const std::string& name, Centre& centre, std::unique_ptr<YxDbEntity> first,
              std::unique_ptr<YxDbEntity> second = nullptr, const std::string& secondName = "s") {
    const YxDbObjectId curve = scene.id(name);
    copyReactors(*scene.entity(name), *first);
    centre.setFirstCurve(curve, first.get());
    if (second != nullptr)
        copyReactors(*scene.entity(name), *second);
    putInto(curve, *first);
    if (second != nullptr) {
        const YxDbObjectId added = scene.add(secondName, std::move(second));
        const auto open = YxDbObjectIdImpl::openObject(added, YxDb::kForWrite, false);
        centre.setSecondCurve(static_cast<const YxDbEntity*>(open.get()));
    }
    return centre.deleteConstraint();
}

/// The whole BREAK of a polyline between two parameters. A cut from the start hands the rest over as the first piece,
/// and then the polyline itself as the second.
template <class Centre>
int breakPolyline(Scene& scene, const std::string& name, Centre& centre, double startParam, double endParam) {
    const auto* uncut = scene.entity<YxDbPolyline>(name);
    const PolylineData data = EntityAccess::polyline(*uncut);
    centre.setPtParam(uncut, pointAt(data, startParam), pointAt(data, endParam));
    const CutPieces pieces = cutPolyline(data, startParam, endParam);
    if (!pieces.first.vertices.empty()) {
        return finishCut(scene, name, centre, EntityAccess::makePolyline(pieces.first),
                         pieces.second.vertices.empty() ? nullptr : EntityAccess::makePolyline(pieces.second));
    }
    const auto rest = EntityAccess::makePolyline(pieces.second);
    copyReactors(*uncut, *rest);
    centre.setFirstCurve(scene.id(name), rest.get());
    putInto(scene.id(name), *rest);
    const auto open = YxDbObjectIdImpl::openObject(scene.id(name), YxDb::kForWrite, false);
    centre.setSecondCurve(static_cast<const YxDbEntity*>(open.get()));
    return centre.deleteConstraint();
}

}  // namespace holdfast::module
