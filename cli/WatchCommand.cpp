#include "cli/Commands.hpp"
#include "cli/Output.hpp"
#include "cli/Session.hpp"
#include "cli/Terminal.hpp"
#include "cli/WatchState.hpp"
#include "cli/WatchView.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/thread_pool.hpp>
#include <fmt/format.h>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

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
        Session session(sampling.get_executor(), source, [this] { asio::post(context, [this] { replayEnded(); }); });
        if (auto problem = session.problem())
            return problem;
        // Before the terminal library looks: it leaves signals alone that somebody handles.
        // On the other thread: this one may wait for a terminal that takes no more. What it has not taken is dropped
        // then.
        asio::signal_set endings(sampling, SIGINT, SIGTERM, SIGHUP);
        endings.add(SIGQUIT);
        endings.async_wait([this](const boost::system::error_code& error, int) {
            if (error)
                return;
            // Held by Ctrl-S it goes on only after it was held by a call, too.
            ::tcflow(STDOUT_FILENO, TCOOFF);
            ::tcflow(STDOUT_FILENO, TCOON);
            ::tcflush(STDOUT_FILENO, TCOFLUSH);
            context.stop();
        });
        asio::signal_set resizing(context, SIGWINCH);
        Terminal screen;
        if (auto problem = screen.open())
            return problem;
        terminal = &screen;
        current = &session;
        followSize(resizing);
        asio::posix::stream_descriptor keyboard(context, openKeyboard());
        followKeys(keyboard);
        session.engine().addConsumer([this](const SharedSnapshot& snapshot, const SamplingEngine::Turn& turn) {
            // Holding the turn: on a slow line no tick overtakes the drawing of the last.
            asio::post(context, [this, snapshot, turn] {
                latest = snapshot;
                draw();
            });
        });
        session.engine().start();
        context.run();
        sampling.stop();
        sampling.join();
        farewell = session.remark();
        return session.problem();
    }

    void draw() {
        if (!latest)
            return;
        const Terminal::Size size = terminal->size();
        state = settled(std::move(state), *latest, size.height);
        terminal->draw(presentWatch(*latest, state,
                                    {.source = source.replay.empty() ? "Live" : source.replay,
                                     .remark = footnote,
                                     .limits = current->limits(),
                                     .width = size.width,
                                     .height = size.height}));
    }

    void replayEnded() {
        if (current->problem())
            return context.stop();
        footnote = current->remark().value_or("The recording has ended.");
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
                                    return context.stop();
                                bool any = false;
                                while (const auto key = terminal->key()) {
                                    any = true;
                                    act(*key);
                                }
                                if (any)
                                    draw();
                                // Readable and nothing to read: the terminal is gone.
                                if (!any && ++emptyReads > 8)
                                    return context.stop();
                                if (any)
                                    emptyReads = 0;
                                followKeys(keyboard);
                            });
    }

    void act(const Key& key) {
        const SystemSnapshot& shown = latest ? *latest : nothing;
        WatchStep step = handleKey(std::move(state), key, shown, terminal->size().height);
        state = std::move(step.state);
        switch (step.action) {
        case WatchAction::none:
            return;
        case WatchAction::quit:
            return context.stop();
        case WatchAction::refresh:
            return current->engine().refreshNow();
        case WatchAction::repaint:
            return terminal->resized();
        }
    }

    const Source& source;
    asio::io_context context{1};
    asio::thread_pool sampling{1};
    Terminal* terminal = nullptr;
    Session* current = nullptr;
    SharedSnapshot latest;
    const SystemSnapshot nothing; ///< stands in for the first one until it comes
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
        "Tab goes from the overview to the applications and the processes. There the arrows, j, k, Page Up,\n"
        "Page Down, Home and End move the selection, s changes the order, / filters, Esc goes back a step.\n"
        "q quits, r reads at once.");
    command->callback([source, &status] { status = WatchRun(*source).run(); });
}

} // namespace ostrivane::cli
