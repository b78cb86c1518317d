#pragma once

#include <yxbase/YxGePoint3d.h>
#include <yxbase/YxGeVector3d.h>

/// An affine transform of space: entry[row][column], points as columns.
class YxGeMatrix3d {
public:
    YxGeMatrix3d();  ///< the identity

    static const YxGeMatrix3d kIdentity;

    YxGeMatrix3d& setToIdentity();
    YxGeMatrix3d& setToTranslation(const YxGeVector3d& offset);
    /// Rotation by an angle in radians about the axis through centre, right-handed. The axis is normalised; a zero axis
    /// gives the identity.
    YxGeMatrix3d& setToRotation(double angle, const YxGeVector3d& axis,
                                const YxGePoint3d& centre = YxGePoint3d::kOrigin);
    /// This becomes left * this.
    YxGeMatrix3d& preMultBy(const YxGeMatrix3d& left);
    /// A column is a zero vector, or the unit columns' volume is within the vector tolerance: independent of the scale.
    bool isSingular(const YxGeTol& tol = YxGeContext::gTol) const;
    /// The three columns are mutually orthogonal and equally long within the tolerance, whatever the scale;
    /// reflections pass, flat matrices do not.
    bool isUniScaledOrtho(const YxGeTol& tol = YxGeContext::gTol) const;
    double det() const;
    bool isEqualTo(const YxGeMatrix3d& other, const YxGeTol& tol = YxGeContext::gTol) const;

    double operator()(int row, int column) const { return entry[row][column]; }
    double& operator()(int row, int column) { return entry[row][column]; }
    friend bool operator==(const YxGeMatrix3d&, const YxGeMatrix3d&) = default;

    double entry[4][4];
};

YxGePoint3d operator*(const YxGeMatrix3d& matrix, const YxGePoint3d& point);
YxGeVector3d operator*(const YxGeMatrix3d& matrix, const YxGeVector3d& vector);
