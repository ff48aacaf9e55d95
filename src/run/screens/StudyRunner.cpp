#include "run/screens/StudyRunner.h"

#include <exception>
#include <memory>
#include <utility>

#include "run/StudyRun.h"

namespace tavrelle {

StudyRunner::StudyRunner(QObject* parent) : QObject(parent) {}

StudyRunner::~StudyRunner() {
    cancel_ = true;
    if (worker_.joinable()) worker_.join();
}

bool StudyRunner::Start(std::vector<StudyPopulation> populations, RunSettings settings) {
    if (Running()) return false;
    populations_ = std::move(populations);
    settings_ = std::move(settings);
    total_ = static_cast<int>(populations_.size());
    delivered_ = 0;
    cancel_ = false;
    worker_ = std::thread([this] {
        try {
            RunStudy(
                populations_, settings_,
                [this](PopulationResult&& result) {
                    // A queued call carries a copy of its function: the result goes in a shared
                    // box, as it cannot be copied.
                    auto shared = std::make_shared<PopulationResult>(std::move(result));
                    QMetaObject::invokeMethod(
                        this,
                        [this, shared] {
                            ++delivered_;
                            if (delivered) delivered(std::move(*shared));
                        },
                        Qt::QueuedConnection);
                },
                &cancel_);
        } catch (const std::exception& failure) {
            const std::string message = std::string("The study run failed: ") + failure.what();
            QMetaObject::invokeMethod(
                this,
                [this, message] {
                    if (failed) failed(message);
                },
                Qt::QueuedConnection);
        }
        QMetaObject::invokeMethod(
            this, [this] { Finish(); }, Qt::QueuedConnection);
    });
    return true;
}

void StudyRunner::Finish() {
    if (worker_.joinable()) worker_.join();
    populations_.clear();
    if (finished) finished();
}

}  // namespace tavrelle
