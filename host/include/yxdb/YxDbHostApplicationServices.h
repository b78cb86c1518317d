#pragma once

class YxDbDatabase;

/// The running host application.
class YxDbHostApplicationServices {
public:
    virtual ~YxDbHostApplicationServices();
    /// The current database, or null.
    virtual YxDbDatabase* workingDatabase() const = 0;
};

/// The host application's services, or null before it is up.
YxDbHostApplicationServices* yxdbHostApplicationServices();
