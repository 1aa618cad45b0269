"""A simulator as a process of its own, at an address of its own."""

import os
import subprocess


class Server:
    def __init__(self, program, *options):
        host = os.getpid() * 4 % (60 << 16)  # of this process alone, so that tests side by side never meet
        self.address = f"127.{192 + (host >> 16)}.{host >> 8 & 255}.{host & 255 | 1}"
        self.words = [program, "--address", self.address, *options]
        self.start()

    def start(self):
        """Returns when it listens."""
        self.process = subprocess.Popen(self.words, stdout=subprocess.PIPE)
        line = self.process.stdout.readline()
        assert line.startswith(b"listening on"), f"the server said {line}"

    def stop(self):
        """In good order, which saves what it has."""
        self.process.terminate()
        code = self.process.wait()
        self.process.stdout.close()
        assert code == 0, f"the server ended with {code}"

    def restart(self):
        self.stop()
        self.start()

    def kill(self):
        """Its exit code: 0 if it had ended by itself."""
        self.process.kill()
        self.process.stdout.close()
        return self.process.wait()
