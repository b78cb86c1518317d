#pragma once

#include <memory>

#include <yxbase/YxGeVector3d.h>
#include <yxdb/YxDbObjectId.h>

struct YxDbDatabaseData;

/// One drawing: owns its resident objects.
class YxDbDatabase {
public:
    ~YxDbDatabase();
    YxDbDatabase(const YxDbDatabase&) = delete;
    YxDbDatabase& operator=(const YxDbDatabase&) = delete;

    // The axes of the current user coordinate system, in model space and in paper space.
    YxGeVector3d ucsxdir() const;
    YxGeVector3d ucsydir() const;
    YxGeVector3d pucsxdir() const;
    YxGeVector3d pucsydir() const;
    /// True while the model space is worked in without paper views.
    bool tilemode() const;
    YxDbObjectId currentSpaceId() const;

private:
    friend struct holdfast::HostAccess;
    YxDbDatabase();

    std::unique_ptr<YxDbDatabaseData> m_data;
};
