#pragma once

#include <QObject>
#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "run/PopulationResult.h"
#include "run/RunSettings.h"

namespace tavrelle {

// Runs populations through the engine's study run on a worker thread, so that a window stays
// responsive, and hands back on the window's thread each result, in file order, as it is done.
// One run at a time; Cancel() lets the populations under way finish and starts no other. A
// window that analyses one population runs a study of one.
class StudyRunner : public QObject {
    Q_OBJECT
public:
    explicit StudyRunner(QObject* parent = nullptr);
    // Cancels a run under way and waits for it; nothing is delivered after.
    ~StudyRunner() override;

    // Starts the run; false when one is under way. The runner keeps the populations until the
    // run ends.
    bool Start(std::vector<StudyPopulation> populations, RunSettings settings);
    bool Running() const { return worker_.joinable(); }
    void Cancel() { cancel_ = true; }
    bool Cancelling() const { return Running() && cancel_; }
    // Populations in the run under way or the last one, and how many have been delivered.
    int Total() const { return total_; }
    int Delivered() const { return delivered_; }

    // Called on the runner's thread: each result; the message of a run that failed; the end of
    // the run, cancelled or not, once the worker has stopped.
    std::function<void(PopulationResult&&)> delivered;
    std::function<void(const std::string&)> failed;
    std::function<void()> finished;

private:
    void Finish();

    std::vector<StudyPopulation> populations_;
    RunSettings settings_;
    int total_ = 0;
    int delivered_ = 0;
    std::atomic<bool> cancel_{false};
    std::thread worker_;
};

}  // namespace tavrelle
