#pragma once

#include "app/model/AppModel.hpp"
#include "app/model/FileKeyValueStore.hpp"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace ostrivane {

/// A clock for an engine that never starts.
class StoppedClock final : public Clock {
public:
    Date now() override { return {}; }
    bool wait(double /*seconds*/, std::function<void()> /*wake*/) override { return false; }
    void cancel() override {}
};

/// A model whose history has no file, on a machine that an engine would have to read. All runs when it is told to.
class ModelAlone {
public:
    ModelAlone() {
        const std::string nowhere = "/nonexistent/ostrivane";
        AppParts parts;
        parts.settings = std::make_unique<AppSettings>(std::make_unique<FileKeyValueStore>(nowhere));
        parts.engine = std::make_unique<SamplingEngine>(context.get_executor(), std::make_unique<Collectors>(),
                                                        std::make_unique<StoppedClock>());
        parts.history = std::make_unique<HistoryStore>(context.get_executor(), nowhere + "/history.sqlite",
                                                       HistoryOptions{HistoryAccess::readOnly, [this] { return now; }});
        parts.onMainThread = onMainThread();
        model.emplace(std::move(parts),
                      AppModelOptions{.duties = {.keepsHistory = false}, .now = [this] { return now; }});
        settle();
    }

    AppModel& operator*() { return *model; }
    std::function<void(std::function<void()>)> onMainThread() {
        return [this](std::function<void()> work) { boost::asio::post(context, std::move(work)); };
    }
    Date time() const { return now; }

    void apply(const SharedSnapshot& snapshot) {
        now = snapshot->timestamp;
        model->apply(snapshot);
        settle(); // sums, asked for once a minute
    }

private:
    void settle() {
        context.restart();
        context.poll();
    }

    Date now{1'700'000'000};
    boost::asio::io_context context;
    std::optional<AppModel> model;
};

/// A desktop at work, seen every so many seconds; its applications and processes come in another order on every tick,
/// as they come by load.
class Desktop {
public:
    static constexpr int applicationCount = 150;
    static constexpr int processCount = 300;
    static constexpr int coreCount = 16;

    explicit Desktop(double seconds) : step(seconds) {
        SystemSnapshot snapshot = SystemSnapshot::empty(Date{1'700'000'000});
        snapshot.interval = step;
        snapshot.memory.total = 32ULL << 30;
        snapshot.memory.used = 12ULL << 30;
        snapshot.thermal.cpuTemperature = 60;
        snapshot.thermal.fans.resize(2);
        snapshot.battery.isPresent = true;
        snapshot.battery.state = BatterySnapshot::State::discharging;
        snapshot.battery.percent = 80;
        snapshot.disk.volumes.resize(1);
        snapshot.disk.volumes.front() = {
            .name = "System", .mountPoint = "/", .total = 500'000'000'000, .available = 200'000'000'000};
        snapshot.disk.volumes.front().isRoot = true;
        for (int at = 0; at < coreCount; ++at)
            snapshot.cpu.cores.push_back({.id = at, .usage = at / 40.0});
        for (int at = 0; at < applicationCount; ++at)
            snapshot.applications.push_back(application(at));
        for (int at = 0; at < processCount; ++at)
            snapshot.processes.push_back(
                {.pid = 1000 + 7 * at,
                 .name = "process-" + std::to_string(at),
                 .cpu = at / 3000.0,
                 .memory = 1'000'000ULL * static_cast<std::uint64_t>(at),
                 .appKey = snapshot.applications[static_cast<std::size_t>(at % applicationCount)].key});
        for (auto& one : views) {
            one = std::make_shared<SystemSnapshot>(snapshot);
            std::ranges::shuffle(one->applications, random);
            std::ranges::shuffle(one->processes, random);
        }
    }

    /// The next snapshot; good until the eighth after it.
    SharedSnapshot next() {
        const std::shared_ptr<SystemSnapshot>& view = views[++tick % views.size()];
        view->timestamp = Date{1'700'000'000} + step * static_cast<double>(tick);
        view->cpu.usage = static_cast<double>(tick % 10) / 20;
        return view;
    }

    /// Every so often an application ends and another one begins.
    void replaceOne() {
        const std::string key = "exe:passer-" + std::to_string(++passers);
        for (auto& view : views)
            for (ApplicationSnapshot& app : view->applications)
                if (app.mainPID == 1) {
                    app.key = key;
                    app.name = key;
                }
    }

private:
    static ApplicationSnapshot application(int at) {
        ApplicationSnapshot app;
        app.name = "Application " + std::to_string(at);
        app.key = at % 2 == 0 ? "/usr/share/applications/org.example.Application" + std::to_string(at) + ".desktop"
                              : "exe:worker-" + std::to_string(at);
        app.pids = {1000 + at, 2000 + at};
        app.cpu = at / 1000.0;
        app.memory = 1'000'000ULL * static_cast<std::uint64_t>(at);
        app.diskWriteRate = at;
        app.netInRate = at;
        app.isRunningApp = at % 5 == 0;
        app.mainPID = at;
        return app;
    }

    double step;
    std::mt19937 random{1815};
    std::vector<std::shared_ptr<SystemSnapshot>> views = std::vector<std::shared_ptr<SystemSnapshot>>(8);
    std::size_t tick = 0;
    int passers = 0;
};

} // namespace ostrivane
