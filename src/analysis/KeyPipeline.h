#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

#include "analysis/RandomNumGen.h"

namespace tavrelle {

// Hands out the generator's keys round by round, locus after locus. The stream is sequential
// (the shuffle table carries state from draw to draw), so it is the floor of a run; with
// `threaded` set, a second thread draws ahead into a ring of buffers while the caller sorts and
// counts, and the keys are the same as drawn in one thread.
class KeyPipeline {
public:
    struct Job {
        std::size_t poolSize;  // keys per round
        int rounds;
    };

    KeyPipeline(RandomNumGen& generator, std::vector<Job> jobs, bool threaded);
    ~KeyPipeline();
    KeyPipeline(const KeyPipeline&) = delete;
    KeyPipeline& operator=(const KeyPipeline&) = delete;

    // The keys of the next round, in draw order; valid until the next call.
    std::span<const std::uint32_t> NextRound();

private:
    static constexpr int kSlots = 4;
    static constexpr int kRoundsPerChunk = 32;

    struct Chunk {
        std::vector<std::uint32_t> keys;
        std::size_t poolSize = 0;
        int rounds = 0;
    };

    // The chunks of all jobs in order: (job, first round, round count).
    struct ChunkPlan {
        std::size_t poolSize;
        int rounds;
    };

    void Fill(Chunk& chunk, const ChunkPlan& plan);
    void Produce();

    RandomNumGen& generator_;
    std::vector<ChunkPlan> plan_;
    std::vector<Chunk> slots_;
    std::size_t nextChunk_ = 0;  // consumer: index into plan_
    int roundInChunk_ = 0;
    bool haveChunk_ = false;

    bool threaded_;
    std::mutex mutex_;
    std::condition_variable filled_;
    std::condition_variable freed_;
    std::size_t produced_ = 0;  // chunks filled so far
    std::size_t consumed_ = 0;  // chunks released so far
    bool stop_ = false;
    std::thread producer_;
};

}  // namespace tavrelle
