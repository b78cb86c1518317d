#include "editing/Check.h"

#include "editing/Commands.h"
#include "editing/text/Parse.h"

namespace holdfast::editing {

namespace {

struct Requirer {
    const Drawing& drawing;

    void operator()(const Undo&) const {}
    void operator()(const Redo&) const {}
    template <class Command>
    void operator()(const Command& command) const {
        require(command, drawing);
    }
};

}  // namespace

std::optional<Refusal> check(const Edit& edit, const Drawing& drawing) {
    try {
        std::visit(Requirer{drawing}, edit);
        return std::nullopt;
    } catch (const RefusedWord& error) {
        return error.refusal();
    } catch (const EditError& error) {
        return Refusal{error.what()};
    } catch (const std::exception& error) {
        // Geometry and the host's builders speak of shapes without names: the edit gives them one.
        return Refusal{impossible(toText(edit), error)};
    }
}

}  // namespace holdfast::editing
