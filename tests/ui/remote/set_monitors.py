#!/usr/bin/python3
"""set_monitors.py WIDTHxHEIGHT+X+Y...

Divides the screen of the X server DISPLAY into these monitors; the first is the primary one. What was divided before is
taken back.
"""
import ctypes
import re
import sys

display_library = ctypes.CDLL("libX11.so.6")
monitor_library = ctypes.CDLL("libXrandr.so.2")
PLACE = re.compile(r"(\d+)x(\d+)\+(\d+)\+(\d+)")


class Monitor(ctypes.Structure):
    _fields_ = [
        ("name", ctypes.c_ulong),
        ("primary", ctypes.c_int),
        ("automatic", ctypes.c_int),
        ("output_count", ctypes.c_int),
        ("x", ctypes.c_int),
        ("y", ctypes.c_int),
        ("width", ctypes.c_int),
        ("height", ctypes.c_int),
        ("width_in_millimetres", ctypes.c_int),
        ("height_in_millimetres", ctypes.c_int),
        ("outputs", ctypes.POINTER(ctypes.c_ulong)),
    ]


class ScreenResources(ctypes.Structure):
    _fields_ = [
        ("time", ctypes.c_ulong),
        ("configured", ctypes.c_ulong),
        ("controller_count", ctypes.c_int),
        ("controllers", ctypes.POINTER(ctypes.c_ulong)),
        ("output_count", ctypes.c_int),
        ("outputs", ctypes.POINTER(ctypes.c_ulong)),
    ]


display_library.XOpenDisplay.restype = ctypes.c_void_p
display_library.XDefaultRootWindow.restype = ctypes.c_ulong
display_library.XInternAtom.restype = ctypes.c_ulong
monitor_library.XRRAllocateMonitor.restype = ctypes.POINTER(Monitor)
monitor_library.XRRGetMonitors.restype = ctypes.POINTER(Monitor)
monitor_library.XRRGetScreenResources.restype = ctypes.POINTER(ScreenResources)


def forget_monitors(display, root):
    count = ctypes.c_int()
    known = monitor_library.XRRGetMonitors(display, root, 0, ctypes.byref(count))
    for monitor in known[: count.value]:
        if not monitor.automatic:
            monitor_library.XRRDeleteMonitor(display, root, ctypes.c_ulong(monitor.name))


def main():
    places = [PLACE.fullmatch(argument) for argument in sys.argv[1:]]
    if not places or not all(places):
        raise SystemExit("usage: set_monitors.py WIDTHxHEIGHT+X+Y...")
    opened = display_library.XOpenDisplay(None)
    if not opened:
        raise SystemExit("set_monitors: there is no display")
    display = ctypes.c_void_p(opened)
    root = ctypes.c_ulong(display_library.XDefaultRootWindow(display))
    forget_monitors(display, root)
    resources = monitor_library.XRRGetScreenResources(display, root)
    for index, place in enumerate(places):
        # A monitor that has the screen's output takes the place of the one that the server itself makes of it.
        output_count = 1 if index == 0 and resources[0].output_count else 0
        monitor = monitor_library.XRRAllocateMonitor(display, output_count)
        if output_count:
            monitor[0].outputs[0] = resources[0].outputs[0]
        monitor[0].name = display_library.XInternAtom(display, f"monitor-{index}".encode(), 0)
        monitor[0].primary = 1 if index == 0 else 0
        monitor[0].width, monitor[0].height, monitor[0].x, monitor[0].y = map(int, place.groups())
        monitor[0].width_in_millimetres = monitor[0].width * 254 // 960
        monitor[0].height_in_millimetres = monitor[0].height * 254 // 960
        monitor_library.XRRSetMonitor(display, root, monitor)
    display_library.XSync(display, 0)


main()
