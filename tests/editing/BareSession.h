#pragma once

#include <utility>

#include "editing/Session.h"

namespace holdfast::editing {

/// A session that leaves drawings as bare as the module does: for what a command by itself keeps and takes away.
class BareSession : public Session {
public:
    explicit BareSession(Document document) : Session(std::move(document)) { giveTies(false); }
};

}  // namespace holdfast::editing
