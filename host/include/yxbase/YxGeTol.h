#pragma once

/// How near is equal: for points in drawing units, for unit vectors without unit. Comparisons are inclusive.
class YxGeTol {
public:
    double equalPoint() const { return m_equalPoint; }
    double equalVector() const { return m_equalVector; }
    void setEqualPoint(double tolerance) { m_equalPoint = tolerance; }
    void setEqualVector(double tolerance) { m_equalVector = tolerance; }

private:
    double m_equalPoint = 1e-10;
    double m_equalVector = 1e-10;
};

/// The host's global settings of geometry.
struct YxGeContext {
    static YxGeTol gTol;
};
