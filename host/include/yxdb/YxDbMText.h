#pragma once

#include <string>

#include <yxbase/YxGePoint3d.h>
#include <yxdb/YxDbEntity.h>

/// A paragraph of text. rotation() is in radians about the normal.
class YxDbMText : public YxDbEntity {
    YX_DECLARE_CLASS();

public:
    YxGePoint3d location() const;
    YxGeVector3d normal() const;
    double rotation() const;

    Yxrt::ErrorStatus transformBy(const YxGeMatrix3d& matrix) override;
    YxRxObject* clone() const override;

private:
    friend struct holdfast::EntityAccess;
    YxDbMText() = default;
    YxDbMText(const YxDbMText&) = default;

    YxGePoint3d m_location;
    YxGeVector3d m_normal{0.0, 0.0, 1.0};
    double m_rotation = 0.0;
    double m_height = 2.5;
    std::string m_text;
};
