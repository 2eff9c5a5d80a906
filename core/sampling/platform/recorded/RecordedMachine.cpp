#include "core/sampling/platform/recorded/RecordedMachine.hpp"

#include "core/sampling/platform/recorded/Playback.hpp"
#include "core/sampling/platform/recorded/Questions.hpp"

#include <cstdint>
#include <utility>
#include <vector>

namespace ostrivane {

namespace {

class RecordedHost final : public Host {
public:
    explicit RecordedHost(Playback& asked) : playback(asked) {}

    HostInfo info() override { return playback.header().host; }
    std::optional<double> uptime() override { return playback.answer<double>(Questions::uptime); }

private:
    Playback& playback;
};

class RecordedProcessor final : public Processor {
public:
    explicit RecordedProcessor(Playback& asked) : playback(asked) {}

    std::optional<CPUTicks> ticks() override { return playback.answer<CPUTicks>(Questions::ticks); }
    std::optional<LoadAverage> loadAverage() override { return playback.answer<LoadAverage>(Questions::loadAverage); }

private:
    Playback& playback;
};

class RecordedMemory final : public Memory {
public:
    explicit RecordedMemory(Playback& asked) : playback(asked) {}

    std::optional<MemoryReading> reading() override { return playback.answer<MemoryReading>(Questions::memory); }

private:
    Playback& playback;
};

class RecordedGraphics final : public Graphics {
public:
    explicit RecordedGraphics(Playback& asked) : playback(asked) {}

    std::vector<AcceleratorReading> accelerators() override {
        return playback.answer<Accelerators>(Questions::accelerators).value_or(Accelerators());
    }
    PidMap<std::uint64_t> processTimes() override {
        return playback.answer<Times>(Questions::graphicsTimes).value_or(Times());
    }

private:
    using Accelerators = std::vector<AcceleratorReading>;
    using Times = PidMap<std::uint64_t>;

    Playback& playback;
};

class RecordedMachine final : public Machine {
public:
    explicit RecordedMachine(std::shared_ptr<Playback> asked)
        : playback(std::move(asked)), recordedHost(*playback), recordedProcessor(*playback), recordedMemory(*playback),
          recordedGraphics(*playback) {}

    Host& host() override { return recordedHost; }
    Processor& processor() override { return recordedProcessor; }
    Memory& memory() override { return recordedMemory; }
    Graphics& graphics() override { return recordedGraphics; }

private:
    std::shared_ptr<Playback> playback;
    RecordedHost recordedHost;
    RecordedProcessor recordedProcessor;
    RecordedMemory recordedMemory;
    RecordedGraphics recordedGraphics;
};

class RecordedClock final : public Clock {
public:
    RecordedClock(std::shared_ptr<Playback> asked, std::unique_ptr<Clock> waitingClock, double playbackSpeed,
                  std::function<void()> atEnd)
        : playback(std::move(asked)), waiting(std::move(waitingClock)), speed(playbackSpeed), ended(std::move(atEnd)) {}

    Date now() override { return playback->clock(); }
    Date beginTick() override { return playback->advance(); }
    bool wait(double /*seconds*/, std::function<void()> wake) override {
        if (playback->hasNext())
            return waiting->wait(playback->secondsToNext() / speed, std::move(wake));
        ended();
        return false;
    }
    void cancel() override { waiting->cancel(); }

private:
    std::shared_ptr<Playback> playback;
    std::unique_ptr<Clock> waiting;
    double speed;
    std::function<void()> ended;
};

} // namespace

std::unique_ptr<Machine> recordedMachine(std::shared_ptr<Playback> playback) {
    return std::make_unique<RecordedMachine>(std::move(playback));
}

std::unique_ptr<Clock> recordedClock(std::shared_ptr<Playback> playback, std::unique_ptr<Clock> waiting, double speed,
                                     std::function<void()> ended) {
    return std::make_unique<RecordedClock>(std::move(playback), std::move(waiting), speed, std::move(ended));
}

} // namespace ostrivane
