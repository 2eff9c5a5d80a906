#include "core/sampling/platform/recorded/RecordedMachine.hpp"

#include "core/sampling/platform/recorded/Playback.hpp"
#include "core/sampling/platform/recorded/Questions.hpp"
#include "core/sampling/platform/recorded/RecordedProcesses.hpp"

#include <cstdint>
#include <utility>
#include <vector>

namespace ostrivane {

namespace {

using Questions::about;

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
        return playback.answer<PidMap<std::uint64_t>>(Questions::graphicsTimes).value_or(PidMap<std::uint64_t>());
    }

private:
    using Accelerators = std::vector<AcceleratorReading>;
    using Times = PidMap<std::uint64_t>;

    Playback& playback;
};

class RecordedSystemProcesses final : public SystemProcesses {
public:
    explicit RecordedSystemProcesses(Playback& asked) : playback(asked) {}

    std::optional<PidMap<SystemProcessTotals>> totals() override {
        return playback.answer<PidMap<SystemProcessTotals>>(Questions::systemTotals);
    }

private:
    Playback& playback;
};

class RecordedSockets final : public Sockets {
public:
    explicit RecordedSockets(Playback& asked) : playback(asked) {}

    std::optional<PidMap<TrafficTotals>> traffic() override {
        return playback.answer<PidMap<TrafficTotals>>(Questions::traffic);
    }

private:
    Playback& playback;
};

class RecordedApplications final : public Applications {
public:
    explicit RecordedApplications(Playback& asked) : playback(asked) {}

    std::shared_ptr<const InstalledApplications> installed() override {
        auto now = playback.answer<InstalledApplications>(Questions::installed);
        if (now && (!known || *known != *now))
            known = std::make_shared<const InstalledApplications>(*std::move(now));
        return known;
    }
    BundleFacts bundleFacts(const std::string& path) override {
        return playback.answer<BundleFacts>(about(Questions::bundleFacts, path)).value_or(BundleFacts());
    }

private:
    Playback& playback;
    std::shared_ptr<const InstalledApplications> known;
};

class RecordedFiles final : public Files {
public:
    explicit RecordedFiles(Playback& asked) : playback(asked) {}

    bool exists(const std::string& path) override {
        return playback.answer<bool>(about(Questions::fileExists, path)).value_or(false);
    }
    std::vector<std::string> list(const std::string& folder) override {
        return playback.answer<std::vector<std::string>>(about(Questions::folderList, folder))
            .value_or(std::vector<std::string>());
    }
    std::optional<std::string> read(const std::string& path) override {
        return playback.answer<std::string>(about(Questions::fileText, path));
    }

private:
    Playback& playback;
};

class RecordedMachine final : public Machine {
public:
    explicit RecordedMachine(std::shared_ptr<Playback> asked)
        : playback(std::move(asked)), recordedHost(*playback), recordedProcessor(*playback), recordedMemory(*playback),
          recordedGraphics(*playback), recordedProcesses(*playback), recordedSystemProcesses(*playback),
          recordedSockets(*playback), recordedApplications(*playback), recordedFiles(*playback) {}

    Platform platform() const override { return playback->header().platform; }

    Host& host() override { return recordedHost; }
    Processor& processor() override { return recordedProcessor; }
    Memory& memory() override { return recordedMemory; }
    Graphics& graphics() override { return recordedGraphics; }
    Processes& processes() override { return recordedProcesses; }
    SystemProcesses& systemProcesses() override { return recordedSystemProcesses; }
    Sockets& sockets() override { return recordedSockets; }
    Applications& applications() override { return recordedApplications; }
    Files& files() override { return recordedFiles; }

private:
    std::shared_ptr<Playback> playback;
    RecordedHost recordedHost;
    RecordedProcessor recordedProcessor;
    RecordedMemory recordedMemory;
    RecordedGraphics recordedGraphics;
    RecordedProcesses recordedProcesses;
    RecordedSystemProcesses recordedSystemProcesses;
    RecordedSockets recordedSockets;
    RecordedApplications recordedApplications;
    RecordedFiles recordedFiles;
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
