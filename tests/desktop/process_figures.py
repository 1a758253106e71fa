# SPDX-License-Identifier: MIT
"""What a running process holds and how often it wakes."""

import collections
import ctypes
import ctypes.util
import pathlib
import time

from desktop import Failure, wait_for


class _ClientIdSpec(ctypes.Structure):
    _fields_ = [("client", ctypes.c_ulong), ("mask", ctypes.c_uint)]


class _ClientIdValue(ctypes.Structure):
    _fields_ = [("spec", _ClientIdSpec), ("length", ctypes.c_long), ("value", ctypes.c_void_p)]


class _Type(ctypes.Structure):
    _fields_ = [("resource_type", ctypes.c_ulong), ("count", ctypes.c_uint)]


def _library(name):
    path = ctypes.util.find_library(name)
    if path is None:
        raise Failure(f"the library {name} is not installed")
    return ctypes.CDLL(path)


class XResources:
    """What the display server holds for the clients of a process (the X-Resource extension)."""

    LOCAL_CLIENT_PID = 2

    def __init__(self):
        self.x, self.xres = _library("X11"), _library("XRes")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.x.XGetAtomName.restype = ctypes.c_void_p
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(None))
        if not self.display:
            raise Failure("no display")

    def clients(self, pid):
        """The resource base of each connection of the process."""
        spec = _ClientIdSpec(0, self.LOCAL_CLIENT_PID)
        count, values = ctypes.c_long(), ctypes.POINTER(_ClientIdValue)()
        self.xres.XResQueryClientIds(self.display, ctypes.c_long(1), ctypes.byref(spec),
                                     ctypes.byref(count), ctypes.byref(values))
        found = [values[i].spec.client for i in range(count.value)
                 if self.xres.XResGetClientPid(ctypes.byref(values[i])) == pid]
        self.xres.XResClientIdsDestroy(count, values)
        return found

    def name(self, atom):
        text = self.x.XGetAtomName(self.display, ctypes.c_ulong(atom))
        try:
            return ctypes.string_at(text).decode()
        finally:
            self.x.XFree(ctypes.c_void_p(text))

    def of(self, pid):
        """How many resources of each type the process has, its connections included."""
        clients = self.clients(pid)
        if not clients:
            raise Failure(f"process {pid} has no connection to the display")
        totals = collections.Counter(connections=len(clients))
        for client in clients:
            count, types = ctypes.c_int(), ctypes.POINTER(_Type)()
            self.xres.XResQueryClientResources(self.display, ctypes.c_ulong(client),
                                               ctypes.byref(count), ctypes.byref(types))
            for i in range(count.value):
                totals[self.name(types[i].resource_type)] += types[i].count
            self.x.XFree(types)
        return dict(totals)


def _fields(path):
    return dict(line.split(":", 1) for line in path.read_text().splitlines() if ":" in line)


def wake_ups(pid):
    """How often the process's threads have been switched to, in all; by thread name."""
    by_thread = {}
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        try:
            status = _fields(task / "status")
        except (FileNotFoundError, ProcessLookupError):
            continue  # the thread ended since the folder was listed
        by_thread[f"{status['Name'].strip()}/{task.name}"] = (
            int(status["voluntary_ctxt_switches"]) + int(status["nonvoluntary_ctxt_switches"]))
    return by_thread


def wait_until_quiet(pid, seconds=2.5, deadline=60.0):
    """Waits until the process has not woken for a time: longer than its threads linger."""
    woken = {}

    def quiet():
        before = wake_ups(pid)
        time.sleep(seconds)
        now = wake_ups(pid)
        woken.clear()
        woken.update({name: count - before.get(name, 0) for name, count in now.items()
                      if count != before.get(name)})
        return now == before
    try:
        wait_for(quiet, "the process to rest", deadline)
    except Failure as failure:
        raise Failure(f"{failure}; in the last {seconds:g} s woke {woken}") from None


def memory_kb(pid):
    rollup = _fields(pathlib.Path(f"/proc/{pid}/smaps_rollup"))
    return {name: int(rollup[name].split()[0]) for name in ("Rss", "Anonymous")}


def _status_kb(pid, name):
    return int(_fields(pathlib.Path(f"/proc/{pid}/status"))[name].split()[0])


def resident_kb(pid):
    return _status_kb(pid, "VmRSS")


def peak_kb(pid):
    """The most that was resident since the start, or since reset_peak()."""
    return _status_kb(pid, "VmHWM")


def reset_peak(pid):
    pathlib.Path(f"/proc/{pid}/clear_refs").write_text("5")


def descriptors(pid):
    return len(list(pathlib.Path(f"/proc/{pid}/fd").iterdir()))


def size_of(path):
    return path.stat().st_size if path.exists() else 0
