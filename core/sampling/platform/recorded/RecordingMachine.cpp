#include "core/sampling/platform/recorded/RecordingMachine.hpp"

#include "core/sampling/platform/recorded/Questions.hpp"
#include "core/sampling/platform/recorded/RecordingProcesses.hpp"
#include "core/sampling/platform/recorded/TickNotes.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ostrivane {

namespace {

using Questions::about;

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

class RecordingSystemProcesses final : public SystemProcesses {
public:
    RecordingSystemProcesses(SystemProcesses& other, TickNotes& kept) : asked(other), notes(kept) {}

    std::optional<PidMap<SystemProcessTotals>> totals() override {
        return notes.keep(Questions::systemTotals, asked.totals());
    }

private:
    SystemProcesses& asked;
    TickNotes& notes;
};

class RecordingSockets final : public Sockets {
public:
    RecordingSockets(Sockets& other, TickNotes& kept) : asked(other), notes(kept) {}

    std::optional<PidMap<TrafficTotals>> traffic() override { return notes.keep(Questions::traffic, asked.traffic()); }

private:
    Sockets& asked;
    TickNotes& notes;
};

class RecordingApplications final : public Applications {
public:
    RecordingApplications(Applications& other, TickNotes& kept) : asked(other), notes(kept) {}

    std::shared_ptr<const InstalledApplications> installed() override {
        auto now = asked.installed();
        if (now && now != noted)
            notes.keep(Questions::installed, *now);
        return noted = std::move(now);
    }
    BundleFacts bundleFacts(const std::string& path) override {
        return notes.keep(about(Questions::bundleFacts, path), asked.bundleFacts(path));
    }

private:
    Applications& asked;
    TickNotes& notes;
    std::shared_ptr<const InstalledApplications> noted;
};

/// The same few questions come back every time that projects are looked up; an answer is noted when it is a new one.
class RecordingFiles final : public Files {
public:
    RecordingFiles(Files& other, TickNotes& kept) : asked(other), notes(kept) {}

    bool exists(const std::string& path) override {
        return note(existing, Questions::fileExists, path, asked.exists(path));
    }
    std::vector<std::string> list(const std::string& folder) override {
        return note(folders, Questions::folderList, folder, asked.list(folder));
    }
    std::optional<std::string> read(const std::string& path) override {
        return note(texts, Questions::fileText, path, asked.read(path));
    }

private:
    template <class Answer>
    using Noted = std::unordered_map<std::string, Answer>;

    template <class Answer>
    Answer note(Noted<Answer>& noted, std::string_view question, const std::string& path, Answer answer) {
        const auto [known, isNew] = noted.try_emplace(path, answer);
        if (isNew || known->second != answer)
            notes.keep(about(question, path), answer);
        known->second = answer;
        return answer;
    }

    Files& asked;
    TickNotes& notes;
    Noted<bool> existing;
    Noted<std::vector<std::string>> folders;
    Noted<std::optional<std::string>> texts;
};

class RecordingMachine final : public Machine {
public:
    RecordingMachine(std::unique_ptr<Machine> other, std::shared_ptr<TickNotes> kept)
        : asked(std::move(other)), notes(std::move(kept)), hostAsked(asked->host(), *notes),
          processorAsked(asked->processor(), *notes), memoryAsked(asked->memory(), *notes),
          graphicsAsked(asked->graphics(), *notes), processesAsked(asked->processes(), *notes),
          systemProcessesAsked(asked->systemProcesses(), *notes), socketsAsked(asked->sockets(), *notes),
          applicationsAsked(asked->applications(), *notes), filesAsked(asked->files(), *notes) {}

    Platform platform() const override { return asked->platform(); }

    Host& host() override { return hostAsked; }
    Processor& processor() override { return processorAsked; }
    Memory& memory() override { return memoryAsked; }
    Graphics& graphics() override { return graphicsAsked; }
    Processes& processes() override { return processesAsked; }
    SystemProcesses& systemProcesses() override { return systemProcessesAsked; }
    Sockets& sockets() override { return socketsAsked; }
    Applications& applications() override { return applicationsAsked; }
    Files& files() override { return filesAsked; }

private:
    std::unique_ptr<Machine> asked;
    std::shared_ptr<TickNotes> notes;
    RecordingHost hostAsked;
    RecordingProcessor processorAsked;
    RecordingMemory memoryAsked;
    RecordingGraphics graphicsAsked;
    RecordingProcesses processesAsked;
    RecordingSystemProcesses systemProcessesAsked;
    RecordingSockets socketsAsked;
    RecordingApplications applicationsAsked;
    RecordingFiles filesAsked;
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
