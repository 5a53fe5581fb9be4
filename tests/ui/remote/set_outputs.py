#!/usr/bin/python3
"""set_outputs.py SOCKET WIDTHxHEIGHT+X+Y...

Gives the X server whose viewers come to SOCKET these outputs, as a viewer with so many monitors would; the first is the
primary one. Those that it had before are gone.
"""
import re
import socket
import struct
import sys

PLACE = re.compile(r"(\d+)x(\d+)\+(\d+)\+(\d+)")

# From the viewer.
SET_ENCODINGS = 2
UPDATE_REQUEST = 3
SET_DESKTOP_SIZE = 251
# From the server.
UPDATE = 0
COLOURS = 1
BELL = 2
CLIPBOARD = 3
RAW = 0
DESKTOP_SIZE = -308

NO_SECURITY = 1
THIS_VIEWER = 1
DONE = 0


class Server:
    def __init__(self, path):
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.settimeout(30)
        self._socket.connect(path)
        self._read(12)
        self._socket.sendall(b"RFB 003.008\n")
        if NO_SECURITY not in self._read(self._unpack("!B")[0]):
            raise SystemExit("set_outputs: the server wants a password")
        self._socket.sendall(bytes([NO_SECURITY]))
        if self._unpack("!I")[0] != 0:
            raise SystemExit("set_outputs: the server lets no viewer in")
        beside_others = 1
        self._socket.sendall(bytes([beside_others]))
        *_, pixel_bits, name_length = self._unpack("!HHB15xI")
        self._pixel_length = pixel_bits // 8
        self._read(name_length)
        self._send("!BxHii", SET_ENCODINGS, 2, RAW, DESKTOP_SIZE)

    def set_outputs(self, places):
        # Only a viewer that was told of the outputs may set them.
        self._ask_for_update(0)
        self._wait_for_outputs(lambda reason: True)
        width = max(width + x for width, _, x, _ in places)
        height = max(height + y for _, height, _, y in places)
        self._send("!BxHHBx", SET_DESKTOP_SIZE, width, height, len(places))
        for index, (width, height, x, y) in enumerate(places):
            self._send("!IHHHHI", index, x, y, width, height, 0)
        self._ask_for_update(1)
        outcome = self._wait_for_outputs(lambda reason: reason == THIS_VIEWER)
        if outcome != DONE:
            raise SystemExit(f"set_outputs: the server does not take these outputs ({outcome})")

    def _ask_for_update(self, only_changes):
        self._send("!BBHHHH", UPDATE_REQUEST, only_changes, 0, 0, 1, 1)

    def _wait_for_outputs(self, is_sought):
        while True:
            message = self._unpack("!B")[0]
            if message == UPDATE:
                for _ in range(self._unpack("!xH")[0]):
                    reason, outcome, width, height, encoding = self._unpack("!HHHHi")
                    if encoding == RAW:
                        self._read(width * height * self._pixel_length)
                        continue
                    self._read(16 * self._unpack("!B3x")[0])
                    if is_sought(reason):
                        return outcome
            elif message == COLOURS:
                self._read(6 * self._unpack("!3xH")[0])
            elif message == CLIPBOARD:
                self._read(self._unpack("!3xI")[0])
            elif message != BELL:
                raise SystemExit(f"set_outputs: the server says {message}")

    def _send(self, layout, *values):
        self._socket.sendall(struct.pack(layout, *values))

    def _unpack(self, layout):
        return struct.unpack(layout, self._read(struct.calcsize(layout)))

    def _read(self, length):
        data = b""
        while len(data) < length:
            part = self._socket.recv(length - len(data))
            if not part:
                raise SystemExit("set_outputs: the server has gone")
            data += part
        return data


def main():
    places = [PLACE.fullmatch(argument) for argument in sys.argv[2:]]
    if not places or not all(places):
        raise SystemExit("usage: set_outputs.py SOCKET WIDTHxHEIGHT+X+Y...")
    Server(sys.argv[1]).set_outputs([tuple(map(int, place.groups())) for place in places])


main()
