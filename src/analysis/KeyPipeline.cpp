#include "analysis/KeyPipeline.h"

#include <algorithm>

#include "base/ProgramError.h"

namespace tavrelle {

KeyPipeline::KeyPipeline(RandomNumGen& generator, std::vector<Job> jobs, bool threaded)
    : generator_(generator), threaded_(threaded) {
    for (const Job& job : jobs) {
        for (int first = 0; first < job.rounds; first += kRoundsPerChunk)
            plan_.push_back({job.poolSize, std::min(kRoundsPerChunk, job.rounds - first)});
    }
    slots_.resize(threaded_ ? kSlots : 1);
    if (threaded_ && !plan_.empty()) producer_ = std::thread([this] { Produce(); });
}

KeyPipeline::~KeyPipeline() {
    if (producer_.joinable()) {
        {
            std::lock_guard lock(mutex_);
            stop_ = true;
        }
        freed_.notify_all();
        producer_.join();
    }
}

void KeyPipeline::Fill(Chunk& chunk, const ChunkPlan& plan) {
    chunk.poolSize = plan.poolSize;
    chunk.rounds = plan.rounds;
    chunk.keys.resize(plan.poolSize * static_cast<std::size_t>(plan.rounds));
    for (std::uint32_t& key : chunk.keys)
        key = generator_.GeneratedKey();
}

void KeyPipeline::Produce() {
    for (std::size_t c = 0; c < plan_.size(); ++c) {
        {
            std::unique_lock lock(mutex_);
            freed_.wait(lock, [&] { return stop_ || produced_ - consumed_ < slots_.size(); });
            if (stop_) return;
        }
        // The slot is free: the consumer is done with it and won't read it until it's published.
        Fill(slots_[c % slots_.size()], plan_[c]);
        {
            std::lock_guard lock(mutex_);
            ++produced_;
        }
        filled_.notify_one();
    }
}

std::span<const std::uint32_t> KeyPipeline::NextRound() {
    if (haveChunk_ && roundInChunk_ == slots_[(nextChunk_ - 1) % slots_.size()].rounds) {
        haveChunk_ = false;
        if (threaded_) {
            {
                std::lock_guard lock(mutex_);
                ++consumed_;
            }
            freed_.notify_one();
        }
    }
    if (!haveChunk_) {
        if (nextChunk_ >= plan_.size()) throw ProgramError::SubscriptOutOfRange();
        if (threaded_) {
            std::unique_lock lock(mutex_);
            filled_.wait(lock, [&] { return produced_ > nextChunk_; });
        } else {
            Fill(slots_[0], plan_[nextChunk_]);
        }
        ++nextChunk_;
        roundInChunk_ = 0;
        haveChunk_ = true;
    }
    const Chunk& chunk = slots_[(nextChunk_ - 1) % slots_.size()];
    std::span<const std::uint32_t> keys(
        chunk.keys.data() + chunk.poolSize * static_cast<std::size_t>(roundInChunk_),
        chunk.poolSize);
    ++roundInChunk_;
    return keys;
}

}  // namespace tavrelle
