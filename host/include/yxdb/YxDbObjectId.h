#pragma once

class YxDbDatabase;
class YxDbStub;
namespace holdfast {
struct HostAccess;
}

/// Names one object of a database; safe to keep while the database lives. Default: the null id.
class YxDbObjectId {
public:
    constexpr YxDbObjectId() = default;

    /// False exactly for the null id.
    bool isValid() const { return m_stub != nullptr; }
    bool isNull() const { return m_stub == nullptr; }
    YxDbDatabase* database() const;

    friend bool operator==(const YxDbObjectId& a, const YxDbObjectId& b) { return a.m_stub == b.m_stub; }
    friend bool operator!=(const YxDbObjectId& a, const YxDbObjectId& b) { return a.m_stub != b.m_stub; }
    /// In the order in which the objects were added to their database; the null id first.
    friend bool operator<(const YxDbObjectId& a, const YxDbObjectId& b) { return a.precedes(b); }

private:
    friend struct holdfast::HostAccess;
    bool precedes(const YxDbObjectId& other) const;

    YxDbStub* m_stub = nullptr;
};
