#include "BusLoop.h"

#include <QAbstractEventDispatcher>

BusLoop::BusLoop(BusContext& context)
    : _context(context)
{
    _timer.setSingleShot(true);
    _timer.setTimerType(Qt::PreciseTimer);
    connect(&_timer, &QTimer::timeout, this, &BusLoop::takeIn);
    // What the context waits for changes in turns as well, which know nothing of the loop.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this, &BusLoop::prepare);
    prepare();
}

void BusLoop::prepare()
{
    const BusContext::Wait wait = _context.nextWait();
    if (wait.timeout)
        _timer.start(*wait.timeout);
    else
        _timer.stop();
    if (wait.descriptors == _descriptors)
        return;
    _descriptors = wait.descriptors;
    _notifiers.clear();
    for (const auto& descriptor : _descriptors) {
        if (descriptor.forReading)
            watch(descriptor, QSocketNotifier::Read);
        if (descriptor.forWriting)
            watch(descriptor, QSocketNotifier::Write);
    }
}

void BusLoop::watch(const BusContext::Wait::Descriptor& descriptor, QSocketNotifier::Type type)
{
    _notifiers.push_back(std::make_unique<QSocketNotifier>(descriptor.number, type));
    connect(_notifiers.back().get(), &QSocketNotifier::activated, this, &BusLoop::takeIn);
}
