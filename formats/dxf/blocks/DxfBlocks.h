#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/dxf/DxfGroups.h"
#include "formats/dxf/DxfLayout.h"

namespace holdfast::formats {

/// What is drawn as a whole as it stands in a file, before the blocks are known.
struct DxfReference {
    BlockReference reference;  ///< without its name; of a hatch with its block, of all others without
    std::string block;         ///< the name of that, as keyOf has it; empty for a hatch
    std::string record;        ///< the name of the record: INSERT
    DxfRange range;
};

/// What became of a record that refers to a block.
struct DxfReferenceReading {
    std::optional<DxfReference> reference;
    std::string reason;  ///< without one: what it is that is not understood
};

/// Gives names: each kind is counted from 0 by itself.
class ReferenceNames {
public:
    std::string next(BlockReference::Kind kind) {
        return std::string(typeName(kind)) + ":" + std::to_string(m_counts[static_cast<std::size_t>(kind)]++);
    }

private:
    std::array<std::size_t, 3> m_counts{};
};

/// True for INSERT, the DIMENSION of every kind, and HATCH.
bool isDxfReference(std::string_view record);

/// Reads one of them, an INSERT with the ATTRIBs behind it. In paper space, on a tilted plane, without a block's name
/// or scaled to nothing it is not understood, nor with groups that are faulty.
DxfReferenceReading readDxfReference(const DxfEntity& entity, std::span<const DxfEntity> attributes, DxfRange range);

/// Names of blocks differ in more than small and capital letters.
std::string keyOf(std::string_view blockName);

/// A definition as it stands in a file.
struct DxfBlock {
    Block block;  ///< without what stands in it by reference
    std::vector<DxfRange> parts;
    std::vector<DxfReference> references;
    std::vector<std::string> notUnderstood;  ///< of what else stands in it
    std::string fault;                       ///< why it cannot be shown at all, or empty
};

/// Takes a definition, from BLOCK to what comes behind ENDBLK. What is wrong within it is no fault of the drawing: it
/// is not understood.
DxfBlock takeBlock(DxfGroups& groups);

/// "INSERT of block "PLUG", which is not there".
std::string spokenFault(const DxfReference& reference, const std::string& fault);

/// Puts blocks together of their definitions. References that lead round in a circle show nothing.
class DxfBlocks {
public:
    /// Of two definitions of a name the first one counts.
    void add(DxfBlock block);

    /// The block of a reference, or why it has none.
    struct Found {
        std::optional<SharedBlock> block;
        std::string fault;
        int depth = 0;  ///< so many blocks stand in each other there
    };
    Found find(const DxfReference& reference) { return find(reference, 0); }

    /// What is not understood in the blocks that were found, once for each time that it stands there.
    const std::vector<std::string>& notUnderstood() const { return m_notUnderstood; }
    /// Definitions that nobody has asked for.
    int unused() const;
    /// Where the parts of those stand that were found.
    std::map<std::string, DxfBlockRecords, std::less<>> takeRecords() { return std::move(m_records); }

private:
    struct Known {
        DxfBlock definition;
        enum class State { unasked, beingFound, found } state = State::unasked;
        Found found{};
    };
    Found find(const DxfReference& reference, int depth);
    Found shown(Known& known, int depth);

    std::unordered_map<std::string, Known> m_known;
    std::vector<std::string> m_notUnderstood;
    std::map<std::string, DxfBlockRecords, std::less<>> m_records;
};

}  // namespace holdfast::formats
