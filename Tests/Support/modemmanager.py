"""A ModemManager of python3-dbusmock: modems with slots, SIMs in them, and the networks they are registered with.

Modems are added by `AddModem`, SIMs by `AddSim`; what they are like is set with the mock's own `UpdateProperties`. Its
signals tell of each change, as those of the daemon do.
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
OBJECT_MANAGER = "org.freedesktop.DBus.ObjectManager"
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
    interfaces = dbus.Dictionary({name: modem.props[name] for name in (MODEM, NETWORK)}, signature="sa{sv}")
    self.EmitSignal(OBJECT_MANAGER, "InterfacesAdded", "oa{sa{sv}}", [dbus.ObjectPath(path), interfaces])
    return path


@dbus.service.method(CONTROL, in_signature="s", out_signature="")
def RemoveModem(self, path):
    self.modems.remove(path)
    self.RemoveObject(path)
    names = dbus.Array([MODEM, NETWORK], signature="s")
    self.EmitSignal(OBJECT_MANAGER, "InterfacesRemoved", "oas", [dbus.ObjectPath(path), names])


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
    put_into_slot(modem_path, slot, dbus.ObjectPath(path))
    return path


def put_into_slot(modem_path, slot, sim):
    modem = dbusmock.mockobject.objects[modem_path]
    slots = list(modem.props[MODEM]["SimSlots"])
    changed = {}
    if slots:
        slots[slot - 1] = sim
        changed["SimSlots"] = dbus.Array(slots, signature="o")
    if slot == 1:
        changed["Sim"] = sim
    change(modem, MODEM, changed)


def change(mocked, interface, changed):
    # The mock's own way cannot pass paths on.
    mocked.props[interface].update(changed)
    arguments = [interface, dbus.Dictionary(changed, signature="sv"), dbus.Array([], signature="s")]
    mocked.EmitSignal(dbus.PROPERTIES_IFACE, "PropertiesChanged", "sa{sv}as", arguments)


@dbus.service.method(CONTROL, in_signature="su", out_signature="")
def RemoveSim(_self, modem_path, slot):
    put_into_slot(modem_path, slot, dbus.ObjectPath("/"))


@dbus.service.method(CONTROL, in_signature="suss", out_signature="")
def Register(_self, modem_path, state, code, name):
    """The modem is in that network: 1 for the home network, 5 for roaming."""
    change(dbusmock.mockobject.objects[modem_path], NETWORK, {
        "RegistrationState": dbus.UInt32(state),
        "OperatorCode": dbus.String(code),
        "OperatorName": dbus.String(name),
    })


@dbus.service.method(CONTROL, in_signature="sas", out_signature="")
def SetOwnNumbers(_self, modem_path, numbers):
    changed = {"OwnNumbers": dbus.Array(numbers, signature="s")}
    change(dbusmock.mockobject.objects[modem_path], MODEM, changed)
