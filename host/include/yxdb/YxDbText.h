#pragma once

#include <string>

#include <yxbase/YxGePoint3d.h>
#include <yxdb/YxDbEntity.h>

/// One line of text. rotation() is in radians about the normal.
class YxDbText : public YxDbEntity {
    YX_DECLARE_CLASS();

public:
    YxGePoint3d position() const;
    YxGeVector3d normal() const;
    double rotation() const;

    Yxrt::ErrorStatus transformBy(const YxGeMatrix3d& matrix) override;
    YxRxObject* clone() const override;

private:
    friend struct holdfast::EntityAccess;
    YxDbText() = default;
    YxDbText(const YxDbText&) = default;

    YxGePoint3d m_position;
    YxGeVector3d m_normal{0.0, 0.0, 1.0};
    double m_rotation = 0.0;
    double m_height = 2.5;
    std::string m_text;
};
