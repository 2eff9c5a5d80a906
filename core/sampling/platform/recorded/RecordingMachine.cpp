#include "core/sampling/platform/recorded/RecordingMachine.hpp"

#include "core/sampling/platform/recorded/Questions.hpp"
#include "core/sampling/platform/recorded/TickNotes.hpp"

#include <cstdint>
#include <utility>
#include <vector>

namespace ostrivane {

namespace {

class RecordingHost final : public Host {
public:
    RecordingHost(Host& other, TickNotes& kept) : asked(other), notes(kept) {}

    HostInfo info() override { return asked.info(); } // stands in the header
    std::optional<double> uptime() override { return notes.keep(Questions::uptime, asked.uptime()); }

private:
    Host& asked;
    TickNotes& notes;
};

class RecordingProcessor final : public Processor {
public:
    RecordingProcessor(Processor& other, TickNotes& kept) : asked(other), notes(kept) {}

    std::optional<CPUTicks> ticks() override { return notes.keep(Questions::ticks, asked.ticks()); }
    std::optional<LoadAverage> loadAverage() override {
        return notes.keep(Questions::loadAverage, asked.loadAverage());
    }

private:
    Processor& asked;
    TickNotes& notes;
};

class RecordingMemory final : public Memory {
public:
    RecordingMemory(Memory& other, TickNotes& kept) : asked(other), notes(kept) {}

    std::optional<MemoryReading> reading() override { return notes.keep(Questions::memory, asked.reading()); }

private:
    Memory& asked;
    TickNotes& notes;
};

class RecordingGraphics final : public Graphics {
public:
    RecordingGraphics(Graphics& other, TickNotes& kept) : asked(other), notes(kept) {}

    std::vector<AcceleratorReading> accelerators() override {
        return notes.keep(Questions::accelerators, asked.accelerators());
    }
    PidMap<std::uint64_t> processTimes() override { return notes.keep(Questions::graphicsTimes, asked.processTimes()); }
    void setPageShown(bool shown) override { asked.setPageShown(shown); }

private:
    Graphics& asked;
    TickNotes& notes;
};

class RecordingMachine final : public Machine {
public:
    RecordingMachine(std::unique_ptr<Machine> other, std::shared_ptr<TickNotes> kept)
        : asked(std::move(other)), notes(std::move(kept)), hostAsked(asked->host(), *notes),
          processorAsked(asked->processor(), *notes), memoryAsked(asked->memory(), *notes),
          graphicsAsked(asked->graphics(), *notes) {}

    Host& host() override { return hostAsked; }
    Processor& processor() override { return processorAsked; }
    Memory& memory() override { return memoryAsked; }
    Graphics& graphics() override { return graphicsAsked; }

private:
    std::unique_ptr<Machine> asked;
    std::shared_ptr<TickNotes> notes;
    RecordingHost hostAsked;
    RecordingProcessor processorAsked;
    RecordingMemory memoryAsked;
    RecordingGraphics graphicsAsked;
};

class RecordingClock final : public Clock {
public:
    RecordingClock(std::unique_ptr<Clock> other, std::shared_ptr<TickNotes> kept)
        : asked(std::move(other)), notes(std::move(kept)) {}

    Date now() override {
        const Date now = asked->now();
        notes->noteClock(now);
        return now;
    }
    Date beginTick() override {
        const Date now = asked->beginTick();
        notes->begin(now);
        return now;
    }
    bool wait(double seconds, std::function<void()> wake) override { return asked->wait(seconds, std::move(wake)); }
    void cancel() override { asked->cancel(); }

private:
    std::unique_ptr<Clock> asked;
    std::shared_ptr<TickNotes> notes;
};

} // namespace

std::unique_ptr<Machine> recordingMachine(std::unique_ptr<Machine> asked, std::shared_ptr<TickNotes> notes) {
    return std::make_unique<RecordingMachine>(std::move(asked), std::move(notes));
}

std::unique_ptr<Clock> recordingClock(std::unique_ptr<Clock> asked, std::shared_ptr<TickNotes> notes) {
    return std::make_unique<RecordingClock>(std::move(asked), std::move(notes));
}

} // namespace ostrivane
