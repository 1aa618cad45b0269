"""A simulator as a process of its own, at an address of its own."""

import os
import subprocess


class Server(subprocess.Popen):
    """Listens when it is made; its options follow the program's path."""

    def __init__(self, program, *options):
        host = os.getpid() * 4 % (60 << 16)  # of this process alone, so that tests side by side never meet
        self.address = f"127.{192 + (host >> 16)}.{host >> 8 & 255}.{host & 255 | 1}"
        super().__init__([program, "--address", self.address, *options], stdout=subprocess.PIPE)
        line = self.stdout.readline()
        assert line.startswith(b"listening on"), f"the server said {line}"

    def wait(self, *arguments):
        self.stdout.close()
        return super().wait(*arguments)
