#pragma once

#include <limits>
#include <memory>
#include <optional>
#include <unordered_map>

#include "hosting/Uses.h"
#include "hosting/evaluator/EditRequest.h"
#include "hosting/evaluator/HostSketch.h"
#include "solver/src/dragging/Drag.h"

namespace holdfast::hosting {

/// Edited entities that follow a transform step by step, from where they were when the drag began, and the previews of
/// what moves with them. Where the header lists points, the user holds the edited entities at these only: the points
/// follow the transform as far as the constraints let them, and the rest follows the points. Entities that are held
/// whole keep their sizes where they cannot follow.
///
/// Constraints that do not hold when the drag begins are met where they can be; where that would break others, or where
/// nothing would move, they are left as they are.
///
/// Looks at the surroundings of the edited entities, and from the first step that moves what lies farther away on at
/// all that hangs on them.
class HostDrag {
public:
    /// The names are those of the edited entities and of all that may not hold.
    HostDrag(Drawing& drawing, const AssocConstraintHeader& header, std::vector<std::string> names);
    HostDrag(const HostDrag&) = delete;
    HostDrag& operator=(const HostDrag&) = delete;

    /// Solves for the transform since the beginning. A failed step leaves the one before it in place.
    SolveResult step(const YxGeMatrix3d& transform);

    /// A drag of one step that ends there, whatever steps and places came before it. Nothing, as long as nobody looks
    /// farther, where what lies around the edited entities does not tell.
    std::optional<SolveResult> place(const YxGeMatrix3d& transform);
    /// From now on at all that hangs on the edited entities.
    void lookFarther();
    /// Some constraint did not hold when the drag began.
    bool hasBroken() const { return !m_broken.empty(); }

    /// Takes away what the last step has left open: the edited entities are where they were asked to be, or as near to
    /// it as the constraints let them, to the last digits. The others come from where they were when the drag began:
    /// those that can follow by shifting or turning keep their sizes, which a step has no time to look for.
    void land(const YxGeMatrix3d& transform);

    /// How far the last step stayed behind the transform, at worst.
    double miss() const { return m_miss; }
    const std::vector<int>& edited() const { return m_edited; }
    /// The drawing as it was when the drag began, and the sketch as the last step has left it.
    const HostSketch& host() const { return m_host; }

    /// The constraints that keep the edited entities from following the transform, ascending; those of a smallest set
    /// where one can be found. Costs a refused solve.
    std::vector<int> holdingBack(const YxGeMatrix3d& transform) const;

    /// Constraints that did not hold when the drag began and do not hold now, ascending. Linear in the drawing if there
    /// were any.
    std::vector<int> leftAlone() const;

    /// Puts a copy of everything that has moved into the header's list of what is drawn, edited entities first. The
    /// header owns the copies and they are used again in the next step.
    void preview(const Drawing& drawing, AssocConstraintHeader& header);

private:
    /// What a session moves, and the session.
    struct Following {
        Following(const SketchData& drawn, const std::vector<int>& handles, const KeptSizes& sizes);
        SketchData sketch;
        DragSession session;
    };

    void begin();
    SolveResult repeated() const;
    SolveResult stepAnew(const YxGeMatrix3d& transform);
    SolveResult stepWithin(const YxGeMatrix3d& transform);
    bool isNearEnough(const SolveResult& result) const;
    EditRequest demandFor(const YxGeMatrix3d& transform) const;
    SolveResult follow(const EditRequest& request, const std::vector<double>& goals);
    SolveResult yield(const EditRequest& request, const std::vector<double>& goals, const SolveResult& followed);
    void restart();
    /// In several shorter drags, each from where the last one has led; false where one falls short.
    bool goInLegs(const YxGeMatrix3d& transform, int legs);
    bool goFarther(const YxGeMatrix3d& transform);
    bool keepShapes(const EditRequest& request, std::vector<double>& led);
    bool isTaken(const std::vector<double>& values);
    bool isTurnedOver(const std::vector<double>& values) const;
    std::vector<int> vanishingLines(const std::vector<double>& values) const;
    bool turnsOnly(const std::vector<int>& lines, const std::vector<double>& values) const;
    std::vector<int> brokenNow() const;
    bool breaksWhatHeld() const;
    void leaveBroken();
    void take(const std::vector<double>& values, double miss);

    Drawing& m_drawing;
    std::vector<std::string> m_names;
    YxArray<YxDbObjectId> m_editedIds;
    YxArray<YxGePoint3d> m_points;
    HostSketch m_host;
    SketchData m_drawn;                  ///< as the drag began, without what is left alone
    std::optional<SketchData> m_shaped;  ///< the same, but for the values, which landing works with
    EquationShelf m_shelf;               ///< of that
    std::vector<int> m_edited;
    std::vector<int> m_held;  ///< the first of each two coordinates of a held point; empty: all of the edited is held
    std::vector<int> m_handles;
    std::unique_ptr<Following> m_free, m_firm;  ///< the second keeps the edited entities' sizes
    Following* m_taken = nullptr;               ///< whose values the last step took; null: neither's
    std::vector<int> m_broken;                  ///< constraints that did not hold when the drag began
    bool m_isLeaving = false;
    int m_steps = 0;
    SolveResult m_last;  ///< of the last step
    YxGeMatrix3d m_lastTransform;
    std::unordered_map<int, YxDbEntity*> m_previews;
    double m_miss = 0.0;
    /// Of all solves, as SolveResult::factorWork counts it, and what it may be.
    long m_work = 0, m_mostWork = std::numeric_limits<long>::max();
};

}  // namespace holdfast::hosting
