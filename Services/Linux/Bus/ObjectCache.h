#pragma once

#include "Linux/Bus/DaemonState.h"

/// The objects of a daemon that has an object manager.
class ObjectCache : public DaemonState {
public:
    /// `managerPath` is the path of the object manager.
    ObjectCache(
        std::shared_ptr<Bus> bus, std::string daemon, std::string managerPath, std::shared_ptr<FirstWait> group);

protected:
    /// Called after objects have come, changed or gone.
    virtual void objectsChanged() { }

    // DaemonState
    void listen() override;
    void request() override;

private:
    void take(const BusReply& reply);
    void addInterfaces(const BusSignal& heard);
    void removeInterfaces(const BusSignal& heard);
    void changeProperties(const BusSignal& heard);
    void noteObjects();

    std::string _managerPath;
};
