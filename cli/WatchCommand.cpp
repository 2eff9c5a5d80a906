#include "cli/Commands.hpp"
#include "cli/ModelRun.hpp"
#include "cli/Output.hpp"
#include "cli/Session.hpp"
#include "cli/Terminal.hpp"
#include "cli/WatchJudgement.hpp"
#include "cli/WatchState.hpp"
#include "cli/WatchView.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/signal_set.hpp>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace ostrivane::cli {

namespace {

namespace asio = boost::asio;

/// The keyboard as an open file of its own: waiting for it makes the file non-blocking, and standard input is mostly
/// the same open file as standard output and as the shell's.
int openKeyboard() {
    const char* name = ::ttyname(STDIN_FILENO);
    const int opened = name ? ::open(name, O_RDONLY | O_NOCTTY | O_CLOEXEC) : -1;
    return opened >= 0 ? opened : ::dup(STDIN_FILENO);
}

/// Started in the background, the program stops here until it is brought forward, as long as its signals do what they
/// always do.
void waitForForeground() {
    for (pid_t inFront = ::tcgetpgrp(STDIN_FILENO); inFront >= 0 && inFront != ::getpgrp();
         inFront = ::tcgetpgrp(STDIN_FILENO))
        ::kill(0, SIGTTIN);
}

/// The alerts that somebody who looks up may want to see.
constexpr std::size_t shownAlerts = 20;

/// The live view: draws each snapshot, follows keys, signals and the size of the window until it is told to end. The
/// engine runs on a thread of its own, so that keys are answered during a long tick; everything here runs on the
/// caller's.
class WatchRun {
public:
    explicit WatchRun(const Source& shown) : source(shown) {}

    int run() {
        if (const auto problem = watch()) {
            writeError(*problem);
            return failed;
        }
        if (farewell)
            writeError(*farewell);
        return succeeded;
    }

private:
    /// Answers what went wrong, once the terminal is given back.
    std::optional<std::string> watch() {
        waitForForeground();
        ModelRun machine(source, {.engineHasThread = true, .ended = [this] { replayEnded(); }});
        if (auto problem = machine.problem())
            return problem;
        current = &machine;
        // Before the terminal library looks: it leaves signals alone that somebody handles.
        // On the other thread: this one may wait for a terminal that takes no more. What it has not taken is dropped
        // then.
        asio::signal_set endings(machine.engineExecutor(), SIGINT, SIGTERM, SIGHUP);
        endings.add(SIGQUIT);
        endings.async_wait([&machine](const boost::system::error_code& error, int) {
            if (error)
                return;
            // Held by Ctrl-S it goes on only after it was held by a call, too.
            ::tcflow(STDOUT_FILENO, TCOOFF);
            ::tcflow(STDOUT_FILENO, TCOON);
            ::tcflush(STDOUT_FILENO, TCOFLUSH);
            machine.stop();
        });
        asio::signal_set resizing(machine.context(), SIGWINCH);
        Terminal screen;
        if (auto problem = screen.open())
            return problem;
        terminal = &screen;
        followSize(resizing);
        asio::posix::stream_descriptor keyboard(machine.context(), openKeyboard());
        followKeys(keyboard);
        // The engine waits for the drawing: on a slow line no tick overtakes that of the last.
        const Subscription watching = machine.model().observe([this](const ModelChanges&) { draw(); });
        machine.demandEverything();
        machine.model().start();
        machine.run();
        farewell = machine.session().remark();
        return machine.problem();
    }

    void draw() {
        const AppState& shown = current->model().state();
        if (shown.tick == 0)
            return;
        const Terminal::Size size = terminal->size();
        const WatchFrame frame{.source = source.replay.empty() ? "Live" : source.replay,
                               .remark = footnote,
                               .limits = current->session().limits(),
                               .judgement = judgementOf(shown),
                               .width = size.width,
                               .height = size.height};
        const bool isReading = state.page == WatchPage::judgement;
        state = settled(std::move(state), *shown.snapshot, size.height,
                        isReading ? judgementLines(frame.judgement, size.width).size() : 0);
        terminal->draw(presentWatch(*shown.snapshot, state, frame));
    }

    static WatchJudgement judgementOf(const AppState& shown) {
        const auto alerts = static_cast<std::ptrdiff_t>(std::min(shown.alerts.size(), shownAlerts));
        return {.summary = shown.statusSummary(),
                .health = shown.health,
                .insights = shown.insights,
                .alerts = {shown.alerts.begin(), shown.alerts.begin() + alerts}};
    }

    void replayEnded() {
        if (current->problem())
            return current->stop();
        footnote = current->session().remark().value_or("The recording has ended.");
        draw();
    }

    void followSize(asio::signal_set& resizing) {
        resizing.async_wait([this, &resizing](const boost::system::error_code& error, int) {
            if (error)
                return;
            terminal->resized();
            draw();
            followSize(resizing);
        });
    }

    void followKeys(asio::posix::stream_descriptor& keyboard) {
        keyboard.async_wait(asio::posix::stream_descriptor::wait_read,
                            [this, &keyboard](const boost::system::error_code& error) {
                                if (error)
                                    return current->stop();
                                bool any = false;
                                while (const auto key = terminal->key()) {
                                    any = true;
                                    act(*key);
                                }
                                if (any)
                                    draw();
                                // Readable and nothing to read: the terminal is gone.
                                if (!any && ++emptyReads > 8)
                                    return current->stop();
                                if (any)
                                    emptyReads = 0;
                                followKeys(keyboard);
                            });
    }

    void act(const Key& key) {
        const SystemSnapshot& shown = *current->model().state().snapshot;
        WatchStep step = handleKey(std::move(state), key, shown, terminal->size().height);
        state = std::move(step.state);
        switch (step.action) {
        case WatchAction::none:
            return;
        case WatchAction::quit:
            return current->stop();
        case WatchAction::refresh:
            return current->model().engine().refreshNow();
        case WatchAction::repaint:
            return terminal->resized();
        }
    }

    const Source& source;
    Terminal* terminal = nullptr;
    ModelRun* current = nullptr;
    WatchState state;
    std::string footnote;
    std::optional<std::string> farewell; ///< to be said when the view is gone
    int emptyReads = 0;
};

} // namespace

void addWatchCommand(CLI::App& app, int& status) {
    auto source = std::make_shared<Source>();
    CLI::App* command = app.add_subcommand("watch", "Show live what the computer does");
    addIntervalOption(*command, *source);
    addReplayOption(*command, *source);
    command->add_option("--speed", source->speed, "How many recorded seconds pass in one")
        ->type_name("X")
        ->check(within(0.001, 1e6))
        ->capture_default_str();
    command->footer(
        "Tab goes from the overview to the applications, the processes, and what the figures mean. There the\n"
        "arrows, j, k, Page Up, Page Down, Home and End move the selection or the text, s changes the order,\n"
        "/ filters, Esc goes back a step.\n"
        "q quits, r reads at once.");
    command->callback([source, &status] { status = WatchRun(*source).run(); });
}

} // namespace ostrivane::cli
