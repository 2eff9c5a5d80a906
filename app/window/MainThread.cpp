#include "app/window/MainThread.hpp"

#include <QCoreApplication>
#include <QEvent>

#include <mutex>
#include <utility>
#include <vector>

namespace ostrivane {

/// The lock guards the list and the receiver. One event is under way at most, however much work waits.
struct MainThread::Queue {
    std::mutex mutex;
    std::vector<std::function<void()>> work;
    QObject* receiver = nullptr;

    void post(std::function<void()> one) {
        const std::lock_guard lock(mutex);
        if (!receiver)
            return;
        work.push_back(std::move(one));
        if (work.size() == 1)
            QCoreApplication::postEvent(receiver, new QEvent(QEvent::User));
    }
};

MainThread::MainThread() : queue(std::make_shared<Queue>()) {
    queue->receiver = this;
}

MainThread::~MainThread() {
    std::vector<std::function<void()>> dropped; // outlives the lock: it may hold the last of something that posts
    const std::lock_guard lock(queue->mutex);
    queue->receiver = nullptr;
    dropped.swap(queue->work);
}

std::function<void(std::function<void()>)> MainThread::poster() const {
    return [shared = queue](std::function<void()> work) { shared->post(std::move(work)); };
}

bool MainThread::event(QEvent* happened) {
    if (happened->type() != QEvent::User)
        return QObject::event(happened);
    std::vector<std::function<void()>> due;
    {
        const std::lock_guard lock(queue->mutex);
        due.swap(queue->work);
    }
    for (const auto& one : due)
        one();
    return true;
}

} // namespace ostrivane
