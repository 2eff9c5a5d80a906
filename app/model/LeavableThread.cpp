#include "app/model/LeavableThread.hpp"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>

#include <chrono>
#include <future>
#include <thread>

namespace ostrivane {

namespace {

namespace asio = boost::asio;

} // namespace

struct LeavableThread::Parts {
    /// Shared with the thread, which may outlive its owner.
    struct Work {
        asio::io_context context{1};
        asio::executor_work_guard<asio::io_context::executor_type> guard{context.get_executor()};
    };

    std::shared_ptr<Work> work = std::make_shared<Work>();
    std::chrono::milliseconds grace;
    std::future<void> ended;
    std::thread thread;
};

LeavableThread::LeavableThread(std::chrono::milliseconds grace) : parts(std::make_unique<Parts>()) {
    parts->grace = grace;
    std::promise<void> end;
    parts->ended = end.get_future();
    parts->thread = std::thread([work = parts->work, end = std::move(end)]() mutable {
        work->context.run();
        end.set_value();
    });
}

LeavableThread::~LeavableThread() {
    leave();
}

void LeavableThread::leave() {
    if (!parts->thread.joinable())
        return;
    parts->work->context.stop();
    if (parts->ended.wait_for(parts->grace) == std::future_status::ready)
        parts->thread.join();
    else
        parts->thread.detach();
}

boost::asio::any_io_executor LeavableThread::executor() {
    return parts->work->context.get_executor();
}

} // namespace ostrivane
