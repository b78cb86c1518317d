#pragma once

#include <memory>
#include <string>
#include <vector>

#include "commands/stretch/ConstraintStretchCmdCenter.h"
#include "tests/module/evaluation/FeedingScene.h"
#include "tests/module/evaluation/LvTestAccess.h"

namespace holdfast::module {

/// A host's STRETCH in front of a scene: it keeps the source copies while its centre uses them.
class Stretch {
public:
    explicit Stretch(const FeedingScene& scene) : m_scene(scene) {}

    /// An object with a source copy, moved, and its stretched grips.
    Stretch& object(const char* name, std::initializer_list<int> indices, double dx = 0.0, double dy = 0.0) {
        const Unwatched unwatched;  // the host's own copying is no call of the centre
        std::unique_ptr<YxDbEntity> source(static_cast<YxDbEntity*>(m_scene.pointer(name)->clone()));
        if (source)
            source->transformBy(translation(dx, dy));
        return object(name, indices, std::move(source));
    }
    Stretch& object(const char* name, std::initializer_list<int> indices, std::unique_ptr<YxDbEntity> source) {
        m_ids.append(m_scene.id(name));
        m_sources.append(source.get());
        m_copies.push_back(std::move(source));
        m_indexLists.setLogicalLength(m_ids.length());
        for (const int index : indices)
            m_indexLists[m_ids.length() - 1].append(index);
        return *this;
    }
    /// The set-up before the first step.
    Stretch& begin(const YxGeVector3d& displacement = {}, const YxGePoint3d& start = {}) {
        centre.init(m_ids);
        centre.setStartPnt(start);
        return move(displacement);
    }
    Stretch& move(const YxGeVector3d& displacement) {
        centre.setSourceInfo(displacement, m_sources, m_indexLists);
        return *this;
    }
    /// "x translation 1,0,0 0 0" for each special record.
    std::string specials() const {
        std::string text;
        for (const StretchSpecialInfo& info : LvTestAccess::specials(centre))
            text += (text.empty() ? "" : "; ") + m_scene.nameOf(info.objectId) + " " + textOf(info.xform) + " " +
                    std::to_string(info.segIndex) + " " + textOf(YxGePoint3d(info.radius, 0, 0));
        return text;
    }
    YxArray<void*>& sources() { return m_sources; }
    YxArray<YxArray<int>>& indexLists() { return m_indexLists; }

    ConstraintStretchCmdCenter centre;

private:
    const FeedingScene& m_scene;
    YxArray<YxDbObjectId> m_ids;
    YxArray<void*> m_sources;
    YxArray<YxArray<int>> m_indexLists;
    std::vector<std::unique_ptr<YxDbEntity>> m_copies;
};

}  // namespace holdfast::module
