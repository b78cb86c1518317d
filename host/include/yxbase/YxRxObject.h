#pragma once

#include <yxbase/YxRxClass.h>

namespace holdfast {
struct HostAccess;    ///< builds and inspects platform objects from outside; no platform operation
struct EntityAccess;  ///< the same for entities
}  // namespace holdfast

/// The root of all platform classes that know their own class at run time.
class YxRxObject {
public:
    YxRxObject();
    YxRxObject(const YxRxObject&);
    YxRxObject& operator=(const YxRxObject&);
    virtual ~YxRxObject();

    static YxRxClass* desc();
    virtual YxRxClass* isA() const;
    /// True when the object is of the class or of one derived from it; false for null.
    bool isKindOf(const YxRxClass* wanted) const;
    /// The object itself when it is of the class, else its protocol extension of that class, else null.
    virtual YxRxObject* queryX(const YxRxClass* wanted) const;
    /// A new object with the same values, which the caller owns; null when it cannot be copied.
    virtual YxRxObject* clone() const;

private:
    friend struct holdfast::HostAccess;
    friend void yxrxAddRef(const YxRxObject* object);
    friend void yxrxRelease(const YxRxObject* object);
    virtual void referenceTaken() const;
    virtual void referenceReleased() const;
};

/// Takes one more reference on an open object; null is ignored.
void yxrxAddRef(const YxRxObject* object);
/// Gives one reference on an open object back; null is ignored. The last one closes the object.
void yxrxRelease(const YxRxObject* object);
/// A service of the host by its number, or null. Number 3 is the database service (YxDbDatabaseService).
YxRxObject* yxrxGetService(int number);
