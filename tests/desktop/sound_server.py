# SPDX-License-Identifier: MIT
"""A sound server of a test's own, whose null device is heard by the test."""

import array
import contextlib
import os
import signal
import subprocess
import tempfile
import time

RATE = 44100
SILENCE = 40
DEADLINE = 15


def wait_until(condition):
    end = time.monotonic() + DEADLINE
    while time.monotonic() < end:
        if condition():
            return True
        time.sleep(0.02)
    return False


class SoundServer:
    """A pulseaudio with nothing but a null device, in a home of its own."""

    def __init__(self):
        self.folder = tempfile.TemporaryDirectory()
        runtime = os.path.join(self.folder.name, "run")
        os.mkdir(runtime, 0o700)
        self.address = f"unix:{runtime}/sound"
        self.environment = {
            "PATH": os.environ["PATH"], "HOME": self.folder.name, "XDG_RUNTIME_DIR": runtime,
            "PULSE_SERVER": self.address, "LANG": "C.UTF-8"}
        self.process = None
        self.start()

    def start(self):
        self.process = subprocess.Popen(
            ["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
             "-L", f"module-native-protocol-unix socket={self.address[5:]} auth-anonymous=1",
             "-L", f"module-null-sink sink_name=heard rate={RATE} channels=1"],
            env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        answers = wait_until(lambda: subprocess.run(
            ["pactl", "info"], env=self.environment, capture_output=True).returncode == 0)
        assert answers, "the sound server does not answer"

    def stop(self):
        self.process.send_signal(signal.SIGCONT)
        self.process.kill()
        self.process.wait()

    def close(self):
        self.stop()
        self.folder.cleanup()

    @contextlib.contextmanager
    def recording(self):
        """Records what is played meanwhile; afterwards the list given holds its bursts."""
        path = os.path.join(self.folder.name, "heard.raw")
        bursts = []
        with open(path, "wb") as output:
            recorder = subprocess.Popen(
                ["parec", "--latency-msec=20", "--device=heard.monitor", f"--rate={RATE}",
                 "--channels=1", "--format=s16le", "--raw"],
                env=self.environment, stdout=output)
            try:
                assert wait_until(lambda: os.path.getsize(path) > 0), "nothing is recorded"
                yield bursts
                # Half a second more, so that what was played last is in it.
                end = os.path.getsize(path) + RATE
                wait_until(lambda: os.path.getsize(path) >= end)
            finally:
                recorder.terminate()
                recorder.wait()
        with open(path, "rb") as recorded:
            data = recorded.read()
        bursts += heard_bursts(array.array("h", data[:len(data) // 2 * 2]))


def heard_bursts(samples):
    """(start in ms, length in ms, peak) of what is not silence, cut at 60 ms of silence."""
    bursts = []
    gap = RATE * 60 // 1000
    last = None
    for position, sample in enumerate(samples):
        if abs(sample) <= SILENCE:
            continue
        if last is None or position - last > gap:
            bursts.append([position, position, 0])
        last = position
        bursts[-1][1] = position
        bursts[-1][2] = max(bursts[-1][2], abs(sample))
    return [(start * 1000 / RATE, (end - start) * 1000 / RATE, peak) for start, end, peak in bursts]
