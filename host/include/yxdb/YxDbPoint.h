#pragma once

#include <yxbase/YxGePoint3d.h>
#include <yxdb/YxDbEntity.h>

class YxDbPoint : public YxDbEntity {
    YX_DECLARE_CLASS();

public:
    YxGePoint3d position() const;

    Yxrt::ErrorStatus transformBy(const YxGeMatrix3d& matrix) override;
    YxRxObject* clone() const override;

private:
    friend struct holdfast::EntityAccess;
    YxDbPoint() = default;
    YxDbPoint(const YxDbPoint&) = default;

    YxGePoint3d m_position;
};
