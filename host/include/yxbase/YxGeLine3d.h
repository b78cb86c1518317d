#pragma once

#include <yxbase/YxGePoint3d.h>

/// A straight line of space without ends.
class YxGeLinearEnt3d {
public:
    /// Distance from the line within tol.equalPoint(), inclusive. A line through two equal points is that point.
    bool isOn(const YxGePoint3d& point, const YxGeTol& tol = YxGeContext::gTol) const;

protected:
    YxGeLinearEnt3d(const YxGePoint3d& point, const YxGeVector3d& direction);

private:
    YxGePoint3d m_point;
    YxGeVector3d m_direction;
};

class YxGeLine3d : public YxGeLinearEnt3d {
public:
    YxGeLine3d(const YxGePoint3d& first, const YxGePoint3d& second);
};
