#include "UIKit/UIViewAnimation.h"

#include "UIKit/UIView.h"

#include <algorithm>
#include <chrono>

UIViewAnimations& UIViewAnimations::shared()
{
    static UIViewAnimations animations;
    return animations;
}

void UIViewAnimations::setClock(Clock clock)
{
    _clock = std::move(clock);
    _animations.clear();
}

double UIViewAnimations::now() const
{
    if (_clock)
        return _clock();
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void UIViewAnimations::run(double seconds, const std::function<void()>& animations)
{
    /// Puts the outer block's duration back, also when the inner one raises.
    struct Block {
        Block(double& duration, double seconds)
            : current(duration)
            , outer(std::exchange(duration, seconds))
        {
        }
        ~Block() { current = outer; }
        double& current;
        double outer;
    };
    const Block block(_blockDuration, seconds);
    if (animations)
        animations();
}

void UIViewAnimations::alphaWillChange(UIView& view, float alpha)
{
    std::erase_if(_animations, [&](const UIViewAnimation& animation) { return animation.view.lock().get() == &view; });
    if (!(_blockDuration > 0) || view.alpha() == alpha)
        return;
    forgetFinished();
    _animations.push_back({ view.self(), view.alpha(), alpha, now(), _blockDuration });
    if (_observer)
        _observer(_animations.back());
}

float UIViewAnimations::presentedAlpha(const UIView& view)
{
    forgetFinished();
    for (const UIViewAnimation& animation : _animations) {
        if (animation.view.lock().get() != &view)
            continue;
        const double progress = std::clamp((now() - animation.begin) / animation.duration, 0.0, 1.0);
        const double eased = progress * progress * (3 - 2 * progress);
        return animation.from + static_cast<float>(eased) * (animation.to - animation.from);
    }
    return view.alpha();
}

bool UIViewAnimations::isRunning()
{
    forgetFinished();
    return !_animations.empty();
}

void UIViewAnimations::forgetFinished()
{
    std::erase_if(_animations, [time = now()](const UIViewAnimation& animation) {
        return animation.view.expired() || time >= animation.begin + animation.duration;
    });
}
