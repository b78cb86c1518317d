#include "formats/fcstd/FcstdJoints.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <unordered_set>

#include "document/Names.h"
#include "geometry/DisjointSets.h"

namespace holdfast::formats {
namespace {

bool isEnd(const Place& place) {
    return place.kind == PlaceKind::start || place.kind == PlaceKind::end;
}

bool isContact(const Constraint& constraint) {
    return constraint.active && constraint.refs.size() == 2 &&
           (constraint.type == ConstraintType::tangent || constraint.type == ConstraintType::perpendicular);
}

bool isMeeting(const Constraint& constraint) {
    return constraint.active &&
           (constraint.type == ConstraintType::coincident || constraint.type == ConstraintType::concentric);
}

/// The points of a drawing that meet.
class Meetings {
public:
    explicit Meetings(const Document& drawing) : m_drawing(drawing), m_points(pointCount(drawing)) {}

    std::unordered_set<std::string> idle() {
        std::unordered_set<std::string> found;
        for (const Constraint& constraint : m_drawing.constraints)
            if (isContact(constraint) && isEnd(constraint.refs[0]) && isEnd(constraint.refs[1]))
                m_points.join(numberOf(constraint.refs[0]), numberOf(constraint.refs[1]));
        for (const Constraint& constraint : m_drawing.constraints)
            if (isMeeting(constraint) && !m_points.join(numberOf(constraint.refs[0]), numberOf(constraint.refs[1])))
                found.insert(constraint.id);
        takeTouching();
        for (const Constraint& constraint : m_drawing.constraints)
            if (constraint.type == ConstraintType::pointOnCurve && constraint.active &&
                m_touching.contains(onCurve(constraint.refs[0], constraint.refs[1])))
                found.insert(constraint.id);
        return found;
    }

private:
    static std::size_t pointCount(const Document& drawing) {
        std::size_t count = 0;
        for (const Constraint& constraint : drawing.constraints)
            count += constraint.refs.size();
        return count;
    }

    std::size_t numberOf(const Place& place) {
        return m_numbers.emplace(spokenPlace(place), m_numbers.size()).first->second;
    }
    std::string onCurve(const Place& point, const Place& curve) {
        return std::to_string(m_points.find(numberOf(point))) + " " + spokenPlace(curve);
    }

    /// An end that touches a whole curve lies on it.
    void takeTouching() {
        for (const Constraint& constraint : m_drawing.constraints) {
            if (!isContact(constraint) || isEnd(constraint.refs[0]) == isEnd(constraint.refs[1]))
                continue;
            const bool isFirst = isEnd(constraint.refs[0]);
            m_touching.insert(onCurve(constraint.refs[isFirst ? 0 : 1], constraint.refs[isFirst ? 1 : 0]));
        }
    }

    const Document& m_drawing;
    DisjointSets m_points;
    std::unordered_map<std::string, std::size_t> m_numbers;
    std::unordered_set<std::string> m_touching;
};

}  // namespace

std::set<std::string, std::less<>> idleCoincidences(const Document& before, const Document& after) {
    const std::unordered_set<std::string> known = Meetings(before).idle(), found = Meetings(after).idle();
    std::set<std::string, std::less<>> idle;
    std::copy_if(found.begin(), found.end(), std::inserter(idle, idle.end()),
                 [&](const std::string& id) { return !known.contains(id); });
    return idle;
}

}  // namespace holdfast::formats
