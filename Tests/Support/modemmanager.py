"""A ModemManager of python3-dbusmock: modems with slots, SIMs in them, and the networks they are registered with.

Modems are added by `AddModem`, SIMs by `AddSim`; what they are like is set with the mock's own `UpdateProperties`.
"""

import dbus
import dbusmock

BUS_NAME = "org.freedesktop.ModemManager1"
MAIN_OBJ = "/org/freedesktop/ModemManager1"
MAIN_IFACE = "org.freedesktop.ModemManager1"
SYSTEM_BUS = True
IS_OBJECT_MANAGER = False

MODEM = "org.freedesktop.ModemManager1.Modem"
NETWORK = "org.freedesktop.ModemManager1.Modem.Modem3gpp"
SIM = "org.freedesktop.ModemManager1.Sim"
CONTROL = "com.vexil.Mock"

REGISTERED = 8
REGISTERED_AT_HOME = 1
NO_LOCK = 1

MANAGED_OBJECTS = """
ret = dbus.Dictionary({
    dbus.ObjectPath(path): dbus.Dictionary(
        {name: objects[path].props[name] for name in ("%s", "%s")}, signature="sa{sv}")
    for path in self.modems}, signature="oa{sa{sv}}")
""" % (MODEM, NETWORK)


def load(mock, _parameters):
    mock.modems = []
    mock.sims = 0
    mock.AddMethod("org.freedesktop.DBus.ObjectManager", "GetManagedObjects", "", "a{oa{sa{sv}}}", MANAGED_OBJECTS)


@dbus.service.method(CONTROL, in_signature="su", out_signature="s")
def AddModem(self, device, slots):
    """A modem with that many empty slots. More than one makes a modem that tells of slots. Returns its path."""
    path = f"{MAIN_OBJ}/Modem/{len(self.modems)}"
    empty = dbus.ObjectPath("/")
    self.AddObject(path, MODEM, {
        "Device": dbus.String(device),
        "Sim": empty,
        "SimSlots": dbus.Array([empty] * slots if slots > 1 else [], signature="o"),
        "PrimarySimSlot": dbus.UInt32(1 if slots > 1 else 0),
        "OwnNumbers": dbus.Array([], signature="s"),
        "UnlockRequired": dbus.UInt32(NO_LOCK),
        "State": dbus.Int32(REGISTERED),
    }, [])
    modem = dbusmock.mockobject.objects[path]
    modem.AddProperties(NETWORK, {
        "Imei": dbus.String("490154203237518"),
        "RegistrationState": dbus.UInt32(0),
        "OperatorCode": dbus.String(""),
        "OperatorName": dbus.String(""),
    })
    self.modems.append(path)
    return path


@dbus.service.method(CONTROL, in_signature="susss", out_signature="s")
def AddSim(self, modem_path, slot, iccid, network, name):
    """A SIM in the slot, the first of which is 1. The one in slot 1 is the one in use. Returns its path."""
    self.sims += 1
    path = f"{MAIN_OBJ}/SIM/{self.sims}"
    self.AddObject(path, SIM, {
        "Active": dbus.Boolean(slot == 1),
        "SimIdentifier": dbus.String(iccid),
        "Imsi": dbus.String(network + "0123456789"),
        "OperatorIdentifier": dbus.String(network),
        "OperatorName": dbus.String(name),
    }, [])
    properties = dbusmock.mockobject.objects[modem_path].props[MODEM]
    if len(properties["SimSlots"]) > 0:
        properties["SimSlots"][slot - 1] = dbus.ObjectPath(path)
    if slot == 1:
        properties["Sim"] = dbus.ObjectPath(path)
    return path


@dbus.service.method(CONTROL, in_signature="su", out_signature="")
def RemoveSim(_self, modem_path, slot):
    properties = dbusmock.mockobject.objects[modem_path].props[MODEM]
    if len(properties["SimSlots"]) > 0:
        properties["SimSlots"][slot - 1] = dbus.ObjectPath("/")
    if slot == 1:
        properties["Sim"] = dbus.ObjectPath("/")


@dbus.service.method(CONTROL, in_signature="suss", out_signature="")
def Register(_self, modem_path, state, code, name):
    """The modem is in that network: 1 for the home network, 5 for roaming."""
    network = dbusmock.mockobject.objects[modem_path].props[NETWORK]
    network["RegistrationState"] = dbus.UInt32(state)
    network["OperatorCode"] = dbus.String(code)
    network["OperatorName"] = dbus.String(name)


@dbus.service.method(CONTROL, in_signature="sas", out_signature="")
def SetOwnNumbers(_self, modem_path, numbers):
    dbusmock.mockobject.objects[modem_path].props[MODEM]["OwnNumbers"] = dbus.Array(numbers, signature="s")
