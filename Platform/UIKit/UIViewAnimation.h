#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

class UIView;

/// A change of a view's alpha that is shown over time.
struct UIViewAnimation {
    std::weak_ptr<UIView> view;
    float from = 0;
    float to = 0;
    /// Seconds, on the clock of UIViewAnimations.
    double begin = 0;
    double duration = 0;
};

/// The animations that run. Time comes from a clock that a host or a test may replace; nothing here waits.
class UIViewAnimations {
public:
    using Clock = std::function<double()>;
    using Observer = std::function<void(const UIViewAnimation&)>;

    static UIViewAnimations& shared();

    /// Seconds from any fixed moment. Null stands for the system's monotonic clock.
    void setClock(Clock clock);
    /// Told of each animation as it begins. Null for none.
    void setObserver(Observer observer) { _observer = std::move(observer); }

    void run(double seconds, const std::function<void()>& animations);
    void alphaWillChange(UIView& view, float alpha);
    /// The alpha that the screen shows now: easing in and out between the two values, then the view's own.
    float presentedAlpha(const UIView& view);
    bool isRunning();

private:
    double now() const;
    void forgetFinished();

    Clock _clock;
    Observer _observer;
    /// The duration of the block that runs now, negative outside of one.
    double _blockDuration = -1;
    std::vector<UIViewAnimation> _animations;
};
