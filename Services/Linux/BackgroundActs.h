#pragma once

#include "Linux/WaitBudget.h"

#include <QObject>

#include <functional>
#include <memory>
#include <vector>

class QThread;

/// Does what the user asked for, each act in a thread of its own, so that no page waits for a desktop that takes its
/// time. The acts that are not done when the program ends get a few more seconds.
class BackgroundActs final : public QObject {
public:
    /// False when it failed. Runs in a QThread, whose quit() asks it to give up.
    using Act = std::function<bool()>;

    explicit BackgroundActs(std::shared_ptr<WaitBudget> budget);
    ~BackgroundActs() override;

    /// Starts the act, and waits a moment: false when it has failed by then. When it fails later, `onFailure` is called
    /// from the event loop of the main thread.
    bool start(Act act, std::function<void()> onFailure);

private:
    std::shared_ptr<WaitBudget> _budget;
    std::vector<std::unique_ptr<QThread>> _threads;
};
