#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace ostrivane {

/// Has work of other threads done in the event loop of the thread that made it, in the order of its arrival. What is
/// still waiting when it goes is dropped.
class MainThread final : public QObject {
public:
    MainThread();
    ~MainThread() override;

    /// For any thread, also after the end of this object.
    std::function<void(std::function<void()>)> poster() const;

protected:
    bool event(QEvent* event) override;

private:
    struct Queue;
    std::shared_ptr<Queue> queue;
};

} // namespace ostrivane
