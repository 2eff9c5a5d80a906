#include "tests/app/pages/PageHarness.hpp"

#include "app/widgets/Type.hpp"
#include "tests/app/model/DayPlayer.hpp"

#include <QApplication>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <stdexcept>

namespace ostrivane {

namespace {

std::vector<SharedSnapshot> read(const std::string& recording) {
    std::vector<SharedSnapshot> snapshots;
    const auto playback = std::make_shared<Playback>(fixture(recording));
    if (playback->problem())
        throw std::runtime_error(*playback->problem());
    boost::asio::io_context context;
    SamplingEngine engine(
        context.get_executor(), std::make_unique<DayCollectors>(playback),
        recordedClock(playback, std::make_unique<HastyClock>(), std::numeric_limits<double>::infinity(), [] {}));
    engine.addConsumer(
        [&](const SharedSnapshot& snapshot, const SamplingEngine::Turn&) { snapshots.push_back(snapshot); });
    engine.setDemand({.windowVisible = true, .pages = {"network", "ports", "projects", "gpu"}});
    engine.start();
    context.run();
    return snapshots;
}

std::string repeated(std::string_view piece, std::size_t times) {
    std::string whole;
    for (std::size_t count = 0; count < times; ++count)
        whole += piece;
    return whole;
}

/// Names that a process can give itself.
std::vector<std::string> oddNames() {
    return {"",
            " ",
            repeated("W", 4096),
            repeated("\xE2\x80\xAE", 4096),                       // turns the direction of writing
            repeated("\xD7\xA9", 40),                             // right to left
            "\xFF\xFE\xC0 no text",                               // no UTF-8
            "two\nlines\tand\x01 more",                           // characters of control
            "<b>bold</b> &amp; <img src=x>",                      // no markup is meant
            "e" + repeated("\xCC\x81", 4096),                     // accents on one letter
            "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB tools", // one sign of three
            "%1 %n {} {0}"};
}

constexpr double nothing = std::numeric_limits<double>::quiet_NaN();
constexpr double endless = std::numeric_limits<double>::infinity();
constexpr std::array<double, 6> oddFigures{nothing, endless, -endless, -1, 1e300, 0};
constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();

void addProcesses(SystemSnapshot& snapshot) {
    const std::vector<std::string> names = oddNames();
    for (std::size_t index = 0; index < names.size() * oddFigures.size(); ++index) {
        const std::string& name = names[index % names.size()];
        const double figure = oddFigures[index % oddFigures.size()];
        ProcessSnapshot process;
        process.pid = index == 0 ? -1 : static_cast<std::int32_t>(index);
        process.ppid = process.pid; // its own parent
        process.name = name;
        process.user = name;
        process.state = name;
        process.appKey = index % 2 == 0 ? "app " + std::to_string(index) : name;
        process.cpu = figure;
        process.memory = index % 3 == 0 ? most : 0;
        process.memoryIsRSS = index % 2 == 0;
        process.diskReadRate = figure;
        process.diskWriteRate = figure;
        process.diskReadTotal = most;
        snapshot.processes.push_back(std::move(process));
    }
    snapshot.processCount = -1;
    snapshot.restrictedProcessCount = std::numeric_limits<std::int64_t>::max();
}

void addApplications(SystemSnapshot& snapshot) {
    const std::vector<std::string> names = oddNames();
    for (std::size_t index = 0; index < 500; ++index) {
        ApplicationSnapshot app;
        app.key = "app " + std::to_string(index);
        app.name = names[index % names.size()];
        app.cpu = oddFigures[index % oddFigures.size()];
        app.memory = index % 3 == 0 ? most : index;
        app.diskWriteRate = oddFigures[(index + 1) % oddFigures.size()];
        app.pids = {static_cast<std::int32_t>(index), 1'000'000};
        snapshot.applications.push_back(std::move(app));
    }
}

} // namespace

const std::vector<SharedSnapshot>& recordedSnapshots(const std::string& recording) {
    static std::map<std::string, std::vector<SharedSnapshot>> known;
    const auto [place, isNew] = known.try_emplace(recording);
    if (isNew)
        place->second = read(recording);
    return place->second;
}

SystemSnapshot damagedSnapshot() {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{1'700'000'100});
    snapshot.interval = 1e-9;
    snapshot.macModel = repeated("W", 4096);
    snapshot.cpu.brand = "";
    snapshot.cpu.usage = endless;
    snapshot.cpu.user = nothing;
    snapshot.cpu.uptime = nothing;
    snapshot.cpu.loadAverage = {endless, nothing, -1};
    for (std::int64_t index = 0; index < 128; ++index) {
        const double load = oddFigures[static_cast<std::size_t>(index) % oddFigures.size()];
        CoreLoad core;
        core.id = index;
        core.usage = load;
        core.user = load;
        snapshot.cpu.cores.push_back(core);
    }
    snapshot.cpu.logicalCoreCount = 128;
    snapshot.memory.total = 1;
    snapshot.memory.used = most;
    snapshot.memory.app = most;
    snapshot.memory.swapUsed = most;
    snapshot.memory.swapInRate = nothing;
    snapshot.memory.availablePercent = -400;
    snapshot.disk.readBytesPerSec = nothing;
    snapshot.disk.writeBytesPerSec = endless;
    VolumeInfo volume;
    volume.name = repeated("W", 4096);
    volume.available = most;
    volume.isRoot = true;
    snapshot.disk.volumes.push_back(std::move(volume));
    snapshot.network.inRate = endless;
    snapshot.network.outRate = nothing;
    snapshot.battery.isPresent = true;
    snapshot.battery.percent = 4'000'000'000;
    snapshot.thermal.hasFans = true;
    FanReading fan;
    fan.rpm = nothing;
    snapshot.thermal.fans.push_back(fan);
    addProcesses(snapshot);
    addApplications(snapshot);
    return snapshot;
}

PageHarness::PageHarness(const PlatformWords& words)
    : ModelHarness({.words = words}), page{.model = *model,
                                           .words = words,
                                           .loginItem = loginItem,
                                           .onMainThread =
                                               [this](std::function<void()> work) {
                                                   boost::asio::post(context, std::move(work));
                                               },
                                           .now = [this] { return now; },
                                           .wayBack = [this] { return wayBack; },
                                           .reveal = [this](const std::string& shown) { revealed.push_back(shown); }} {}

void PageHarness::play(const std::string& recording, std::size_t ticks) {
    const std::vector<SharedSnapshot>& snapshots = recordedSnapshots(recording);
    for (std::size_t tick = 0; tick < std::min(ticks, snapshots.size()); ++tick)
        take(snapshots[tick]);
}

void PageHarness::take(const SharedSnapshot& snapshot) {
    now = snapshot->timestamp;
    model->apply(snapshot);
    settle();
}

void PageHarness::show(PageView& view, bool narrow) {
    view.setNarrow(narrow);
    view.resize(narrow ? QSize(Type::px(764), Type::px(620)) : QSize(Type::px(1024), Type::px(800)));
    view.show();
    settle();
    QApplication::processEvents();
}

} // namespace ostrivane
