#include "cli/Reading.hpp"

#include "cli/Output.hpp"
#include "cli/Session.hpp"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>

#include <algorithm>
#include <optional>

namespace ostrivane::cli {

ExitStatus eachSnapshot(const Source& source,
                        const std::function<bool(const SharedSnapshot&, const Session& session)>& take) {
    boost::asio::io_context context{1};
    Session session(context.get_executor(), source, [&] { context.stop(); });
    if (const auto problem = session.problem()) {
        writeError(*problem);
        return failed;
    }
    session.engine().addConsumer([&](const SharedSnapshot& snapshot, const SamplingEngine::Turn&) {
        // No snapshot is made of damaged answers.
        if (session.problem() || !take(snapshot, session))
            context.stop();
    });
    session.engine().start();
    context.run();
    if (const auto problem = session.problem()) {
        writeError(*problem);
        return failed;
    }
    if (const auto remark = session.remark())
        writeError(*remark);
    return succeeded;
}

ReadingOfNow snapshotOfNow(const Source& source, double seconds, ExitStatus& status) {
    constexpr double slack = 0.05; // of a timer that fires a little early
    ReadingOfNow last;
    std::optional<double> first;
    status = eachSnapshot(source, [&](const SharedSnapshot& snapshot, const Session& session) {
        last = {snapshot, session.limits()};
        const double now = snapshot->timestamp.seconds;
        first = std::min(first.value_or(now), now); // the clock may be set back
        const bool isEnough = snapshot->interval > 0 && now - *first >= seconds - slack;
        return !source.replay.empty() || !isEnough;
    });
    return status == succeeded ? last : ReadingOfNow();
}

} // namespace ostrivane::cli
