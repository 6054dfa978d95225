"""A desktop portal of python3-dbusmock. It keeps the mails and links that it is handed in files of its folder, a line of
JSON each, and responds to each request with the number of its parameter "response": 0 for done, 1 for cancelled by the
user, 2 for failed. "error" refuses the request itself; null leaves the response to `Respond`.
"""

import json
import os
import pathlib

import dbus
import dbusmock

BUS_NAME = "org.freedesktop.portal.Desktop"
MAIN_OBJ = "/org/freedesktop/portal/desktop"
MAIN_IFACE = "org.freedesktop.portal.Settings"
SYSTEM_BUS = False
IS_OBJECT_MANAGER = False

EMAIL = "org.freedesktop.portal.Email"
LINKS = "org.freedesktop.portal.OpenURI"
REQUEST = "org.freedesktop.portal.Request"
CONTROL = "com.vexil.Mock"

MOST_BYTES = 1 << 20


def load(mock, parameters):
    mock.folder = pathlib.Path(parameters["folder"])
    mock.response = parameters["response"]
    mock.requests = []


def keep(mock, name, record):
    with open(mock.folder / name, "a", encoding="utf-8") as file:
        file.write(json.dumps(record) + "\n")


def begin_request(mock):
    path = f"{MAIN_OBJ}/request/1_1/{len(mock.requests)}"
    mock.AddObject(path, REQUEST, {}, [])
    mock.requests.append(path)
    if mock.response is not None:
        mock.Respond(dbus.UInt32(mock.response))
    return dbus.ObjectPath(path)


def refuse_if_wanted(mock):
    if mock.response == "error":
        raise dbus.exceptions.DBusException("no", name="org.freedesktop.portal.Error.Failed")


@dbus.service.method(EMAIL, in_signature="sa{sv}", out_signature="o")
def ComposeEmail(self, parent, options):
    refuse_if_wanted(self)
    files = [file.take() for file in options["attachment_fds"]]
    texts = {name: str(options[name]) for name in ("address", "subject", "body")}
    keep(self, "mails", {"parent": str(parent), **texts, "attachments": [os.read(f, MOST_BYTES).decode() for f in files]})
    return begin_request(self)


@dbus.service.method(LINKS, in_signature="ssa{sv}", out_signature="o")
def OpenURI(self, _parent, uri, _options):
    refuse_if_wanted(self)
    keep(self, "links", str(uri))
    return begin_request(self)


@dbus.service.method(CONTROL, in_signature="u", out_signature="")
def Respond(self, response):
    """The user has decided about the last request."""
    request = dbusmock.mockobject.objects[self.requests[-1]]
    request.EmitSignal(REQUEST, "Response", "ua{sv}", [dbus.UInt32(response), dbus.Dictionary({}, signature="sv")])
