#include "population/CellStore.h"

#include "base/ProgramError.h"

namespace tavrelle {

namespace {
// Offsets into the shared buffer take 31 bits.
constexpr std::size_t kLargestSpill = std::size_t{1} << 31;
// Reclaiming less than this is not worth a pass over every cell.
constexpr std::size_t kSmallestReclaim = std::size_t{1} << 16;

ProgramError OutOfMemory() {
    return {7, "Out of memory"};
}
}  // namespace

void CellStore::Erase(std::size_t first, std::size_t count) {
    if (first > slots_.size() || count > slots_.size() - first)
        throw ProgramError::SubscriptOutOfRange();
    const auto begin = slots_.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = begin + static_cast<std::ptrdiff_t>(count);
    for (auto slot = begin; slot != end; ++slot)
        Release(*slot);
    slots_.erase(begin, end);
}

std::string CellStore::Text(std::size_t cell) const {
    if (cell >= slots_.size()) throw ProgramError::SubscriptOutOfRange();
    const std::uint32_t slot = slots_[cell];
    if ((slot & kSpilled) != 0) return spill_.substr((slot & ~kSpilled) + 1, SpilledLength(slot));
    std::string text(slot >> 24, '\0');
    for (std::size_t i = 0; i < text.size(); ++i)
        text[i] = static_cast<char>((slot >> (8 * i)) & 0xFFu);
    return text;
}

void CellStore::Set(std::size_t cell, std::string_view text) {
    if (cell >= slots_.size()) throw ProgramError::SubscriptOutOfRange();
    if (text.size() > kMaxTextLength) throw ProgramError::InvalidCall();
    std::uint32_t& slot = slots_[cell];
    const std::size_t length = text.size();
    if (length <= kInlineLength) {
        Release(slot);
        slot = static_cast<std::uint32_t>(length) << 24;
        for (std::size_t i = 0; i < length; ++i)
            slot |= static_cast<std::uint32_t>(static_cast<unsigned char>(text[i])) << (8 * i);
        return;
    }
    std::size_t offset = 0;
    if ((slot & kSpilled) != 0 && length <= SpilledLength(slot)) {
        // Rewritten where it stands, as a population saved back over itself mostly is.
        offset = slot & ~kSpilled;
        unused_ += SpilledLength(slot) - length;
    } else {
        Release(slot);
        slot = kEmpty;  // nothing for a compaction to keep
        MakeRoom(1 + length);
        offset = spill_.size();
        spill_.resize(offset + 1 + length);
    }
    spill_[offset] = static_cast<char>(static_cast<unsigned char>(length));
    spill_.replace(offset + 1, length, text);
    slots_[cell] = kSpilled | static_cast<std::uint32_t>(offset);
}

std::size_t CellStore::SpilledLength(std::uint32_t slot) const {
    return static_cast<unsigned char>(spill_[slot & ~kSpilled]);
}

void CellStore::Release(std::uint32_t slot) {
    if ((slot & kSpilled) != 0) unused_ += 1 + SpilledLength(slot);
}

void CellStore::MakeRoom(std::size_t bytes) {
    if (unused_ >= kSmallestReclaim && unused_ > spill_.size() / 2) Compact();
    if (spill_.size() + bytes > kLargestSpill && unused_ > 0) Compact();
    if (spill_.size() + bytes > kLargestSpill) throw OutOfMemory();
}

void CellStore::Compact() {
    std::string kept;
    kept.reserve(spill_.size() - unused_);
    for (std::uint32_t& slot : slots_) {
        if ((slot & kSpilled) == 0) continue;
        const std::size_t offset = slot & ~kSpilled;
        const std::size_t bytes = 1 + SpilledLength(slot);
        slot = kSpilled | static_cast<std::uint32_t>(kept.size());
        kept.append(spill_, offset, bytes);
    }
    spill_ = std::move(kept);
    unused_ = 0;
}

}  // namespace tavrelle
