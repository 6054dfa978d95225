#pragma once

#include "Linux/Bus/BusContext.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>
#include <vector>

/// Has the window's event loop wait for the phone's buses too, whichever kind of loop the toolkit was built with.
class BusLoop final : public QObject {
    Q_OBJECT
public:
    explicit BusLoop(BusContext& context);

private:
    void prepare();
    void watch(const BusContext::Wait::Descriptor& descriptor, QSocketNotifier::Type type);
    void takeIn() { _context.takeIn(); }

    BusContext& _context;
    std::vector<BusContext::Wait::Descriptor> _descriptors;
    std::vector<std::unique_ptr<QSocketNotifier>> _notifiers;
    QTimer _timer;
};
