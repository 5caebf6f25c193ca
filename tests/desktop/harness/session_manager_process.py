# SPDX-License-Identifier: MIT
"""A session manager as desktops have one (XSMP), for programs that it did not start itself.

Prints JSON lines: first {"address": ...} for SESSION_MANAGER; then {"event": "registered"} for a
program that joins the session, {"event": "restarts", "style": n} for how it wants to be started
again, {"event": "saved", "success": ...} and {"event": "left"}. A line "end" on standard input ends
the session: every program is asked to save, and told to die once all have answered.
"""

import ctypes
import json
import select
import sys

_SAVE_BOTH = 2
_INTERACT_NONE = 0
_EVERY_CALLBACK = (1 << 10) - 1
_ERROR_LENGTH = 256

_ice = ctypes.CDLL("libICE.so.6")
_sm = ctypes.CDLL("libSM.so.6")
_pointer = ctypes.c_void_p
_int = ctypes.c_int


class _Value(ctypes.Structure):
    _fields_ = [("length", _int), ("value", _pointer)]


class _Property(ctypes.Structure):
    _fields_ = [("name", ctypes.c_char_p), ("type", ctypes.c_char_p), ("count", _int),
                ("values", ctypes.POINTER(_Value))]


# In the order in which the library keeps them.
_REGISTER = ctypes.CFUNCTYPE(_int, _pointer, _pointer, _pointer)
_NUMBER = ctypes.CFUNCTYPE(None, _pointer, _pointer, _int)
_SAVE_REQUEST = ctypes.CFUNCTYPE(None, _pointer, _pointer, _int, _int, _int, _int, _int)
_PLAIN = ctypes.CFUNCTYPE(None, _pointer, _pointer)
_CLOSE = ctypes.CFUNCTYPE(None, _pointer, _pointer, _int, _pointer)
_SET = ctypes.CFUNCTYPE(None, _pointer, _pointer, _int,
                        ctypes.POINTER(ctypes.POINTER(_Property)))
_KINDS = (_REGISTER, _NUMBER, _NUMBER, _SAVE_REQUEST, _PLAIN, _NUMBER, _CLOSE, _SET, _CLOSE, _PLAIN)
_NEW_CLIENT = ctypes.CFUNCTYPE(_int, _pointer, _pointer, ctypes.POINTER(ctypes.c_ulong),
                               ctypes.POINTER(_pointer), ctypes.POINTER(ctypes.c_char_p))
_ALLOW = ctypes.CFUNCTYPE(_int, ctypes.c_char_p)
_IO_ERROR = ctypes.CFUNCTYPE(None, _pointer)

_ice.IceComposeNetworkIdList.restype = ctypes.c_char_p
_ice.IceAcceptConnection.restype = _pointer
_sm.SmsGenerateClientID.restype = _pointer


def _say(**words):
    print(json.dumps(words), flush=True)


class _SessionManager:
    def __init__(self):
        self._connections = {}  # by descriptor
        self._members = []
        self._unsaved = 0
        self._allow = _ALLOW(lambda host: 1)
        self._new_client = _NEW_CLIENT(self._begin)
        self._io_error = _IO_ERROR(lambda connection: None)
        self._callbacks = [kind(call) for kind, call in zip(_KINDS, (
            self._registered, self._ignored, self._ignored, self._ignored, self._ignored,
            self._saved, self._closed, self._set_properties, self._ignored, self._ignored))]
        error = ctypes.create_string_buffer(_ERROR_LENGTH)
        _ice.IceSetIOErrorHandler(self._io_error)
        if not _sm.SmsInitialize(b"test", b"1", self._new_client, None, self._allow,
                                 _ERROR_LENGTH, error):
            raise SystemExit(error.value)
        count = _int()
        self._listeners = _pointer()
        if not _ice.IceListenForConnections(ctypes.byref(count), ctypes.byref(self._listeners),
                                            _ERROR_LENGTH, error):
            raise SystemExit(error.value)
        array = ctypes.cast(self._listeners, ctypes.POINTER(_pointer))
        self._sockets = {}
        for index in range(count.value):
            listener = _pointer(array[index])
            _ice.IceSetHostBasedAuthProc(listener, self._allow)
            self._sockets[_ice.IceGetListenConnectionNumber(listener)] = listener
        _say(address=_ice.IceComposeNetworkIdList(count, self._listeners).decode())

    def run(self):
        while True:
            ready, _, _ = select.select([sys.stdin, *self._sockets, *self._connections], [], [])
            for source in ready:
                if source is sys.stdin:
                    if sys.stdin.readline().strip() != "end":
                        return
                    self._end()
                elif source in self._sockets:
                    self._accept(self._sockets[source])
                elif source in self._connections:
                    self._serve(source)

    def _accept(self, listener):
        status = _int()
        connection = _ice.IceAcceptConnection(listener, ctypes.byref(status))
        if connection:
            connection = _pointer(connection)
            self._connections[_ice.IceConnectionNumber(connection)] = connection

    def _serve(self, descriptor):
        # 0 is a message that was understood; else the connection has gone.
        if _ice.IceProcessMessages(self._connections[descriptor], None, None) != 0:
            del self._connections[descriptor]
            _say(event="left")

    def _end(self):
        self._unsaved = len(self._members)
        for member in self._members:
            _sm.SmsSaveYourself(_pointer(member), _SAVE_BOTH, 1, _INTERACT_NONE, 0)

    def _begin(self, _member, _data, mask, callbacks, _reason):
        mask[0] = _EVERY_CALLBACK
        for index, callback in enumerate(self._callbacks):
            callbacks[2 * index] = ctypes.cast(callback, _pointer).value
            callbacks[2 * index + 1] = None
        return 1

    def _registered(self, member, _data, previous):
        # A name of an earlier session is not known here: the program then asks for a new one.
        if previous:
            return 0
        identifier = _pointer(_sm.SmsGenerateClientID(_pointer(member)))
        _sm.SmsRegisterClientReply(_pointer(member), identifier)
        self._members.append(member)
        _sm.SmsSaveYourself(_pointer(member), 1, 0, _INTERACT_NONE, 0)  # as every member at first
        _say(event="registered")
        return 1

    def _set_properties(self, _member, _data, count, properties):
        for index in range(count):
            one = properties[index].contents
            if one.name == b"RestartStyleHint":
                style = ctypes.cast(one.values[0].value, ctypes.POINTER(ctypes.c_ubyte))[0]
                _say(event="restarts", style=style)

    def _saved(self, member, _data, success):
        _say(event="saved", success=bool(success))
        if not self._unsaved:
            _sm.SmsSaveComplete(_pointer(member))
            return
        self._unsaved -= 1
        if not self._unsaved:
            for each in self._members:
                _sm.SmsDie(_pointer(each))

    def _closed(self, member, _data, _count, _reasons):
        self._members.remove(member)

    @staticmethod
    def _ignored(*_):
        return None


if __name__ == "__main__":
    _SessionManager().run()
