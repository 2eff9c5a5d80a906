// From the start of the program to its first frame on an X server, and what it occupies afterwards, beside the same of
// an empty window.

#include "tests/TemporaryFolder.hpp"
#include "tests/app/x11/X11Display.hpp"

#include <benchmark/benchmark.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ostrivane {
namespace {

using SteadyClock = std::chrono::steady_clock;

/// A program, started on a display of its own, whose first frame is waited for.
class Started {
public:
    Started(std::vector<std::string> words, const std::string& display, const std::string& folder) {
        int ends[2];
        if (::pipe2(ends, 0) != 0)
            return;
        std::vector<std::string> variables{"DISPLAY=" + display,
                                           "QT_QPA_PLATFORM=xcb",
                                           "HOME=" + folder,
                                           "PATH=/usr/bin:/bin",
                                           "DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent",
                                           "OSTRIVANE_DATA_DIR=" + folder + "/data",
                                           "OSTRIVANE_CONFIG_DIR=" + folder + "/config",
                                           "LD_PRELOAD=" FIRST_FRAME_LIBRARY,
                                           "OSTRIVANE_FIRST_FRAME=" + std::to_string(ends[1])};
        const auto begin = SteadyClock::now();
        if (::posix_spawn(&program, words.front().c_str(), nullptr, nullptr, pointers(words).data(),
                          pointers(variables).data()) != 0)
            program = 0;
        ::close(ends[1]);
        pollfd told{ends[0], POLLIN, 0};
        char sign = 0;
        if (program > 0 && ::poll(&told, 1, 20'000) == 1 && ::read(ends[0], &sign, 1) == 1)
            seconds = std::chrono::duration<double>(SteadyClock::now() - begin).count();
        ::close(ends[0]);
    }
    ~Started() {
        if (program <= 0)
            return;
        ::kill(program, SIGTERM);
        ::waitpid(program, nullptr, 0);
    }
    Started(const Started&) = delete;
    Started& operator=(const Started&) = delete;

    std::optional<double> firstFrame() const { return seconds; }

    /// MB: all that is resident, and what of it is the program's own.
    double resident() const { return field("VmRSS:"); }
    double own() const { return field("RssAnon:"); }

private:
    static std::vector<char*> pointers(std::vector<std::string>& texts) {
        std::vector<char*> list;
        for (std::string& text : texts)
            list.push_back(text.data());
        list.push_back(nullptr);
        return list;
    }
    double field(const std::string& wanted) const {
        std::ifstream status("/proc/" + std::to_string(program) + "/status");
        std::string name;
        for (std::string line; status >> name && std::getline(status, line);)
            if (name == wanted)
                return std::stod(line) / 1024;
        return 0;
    }

    pid_t program = 0;
    std::optional<double> seconds;
};

/// The second and later starts of a program: its files are in the cache by then.
void firstFrame(benchmark::State& state, const std::vector<std::string>& words) {
    X11Display display;
    const TemporaryFolder folder;
    const auto start = [&] { return std::make_unique<Started>(words, display.name().toStdString(), folder.path()); };
    start();
    for (auto _ : state) {
        const auto program = start();
        if (!program->firstFrame())
            return state.SkipWithError("no frame was painted");
        state.SetIterationTime(*program->firstFrame());
    }
    const auto program = start();
    std::this_thread::sleep_for(std::chrono::seconds(10));
    state.counters["residentMB"] = program->resident();
    state.counters["ownMB"] = program->own();
}
BENCHMARK_CAPTURE(firstFrame, minimalWindow, {MINIMAL_WINDOW})
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(firstFrame, ostrivane, {OSTRIVANE})->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace ostrivane
