#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavrelle {

// The texts of a table's cells, packed: a file of a million samples makes tens of millions of
// cells, most of them alleles of one to three digits. Each cell is a 4-byte slot; a text of up to
// three bytes lives in its slot, a longer one (at most 255 bytes) in one shared buffer with a
// length byte in front. Texts come back byte for byte. Space freed by overwritten and erased
// cells is reclaimed once it outweighs the texts still in use.
class CellStore {
public:
    static constexpr std::size_t kMaxTextLength = 255;

    std::size_t Size() const { return slots_.size(); }
    void Reserve(std::size_t cells) { slots_.reserve(cells); }
    // Appends empty cells.
    void AppendEmpty(std::size_t count) { slots_.insert(slots_.end(), count, kEmpty); }
    void Erase(std::size_t first, std::size_t count);

    std::string Text(std::size_t cell) const;
    // A text over kMaxTextLength is the caller's to refuse; here it is a program error.
    void Set(std::size_t cell, std::string_view text);

private:
    // A slot with the top bit set points into spill_; otherwise bits 24-30 hold the length and
    // the bytes below the text, first byte lowest.
    static constexpr std::uint32_t kSpilled = 0x80000000u;
    static constexpr std::uint32_t kEmpty = 0;
    static constexpr std::size_t kInlineLength = 3;

    std::size_t SpilledLength(std::uint32_t slot) const;
    // Forgets the spilled text of a slot about to change or go.
    void Release(std::uint32_t slot);
    // Makes room for `bytes` more in spill_, compacting first when that reclaims enough.
    void MakeRoom(std::size_t bytes);
    void Compact();

    std::vector<std::uint32_t> slots_;
    std::string spill_;
    std::size_t unused_ = 0;  // bytes of spill_ no slot points to
};

}  // namespace tavrelle
