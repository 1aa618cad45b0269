"""A simulator as a process of its own, at an address and a terminal of its own."""

import fcntl
import os
import pty
import subprocess
import termios


class Server:
    def __init__(self, words):
        host = os.getpid() * 4 % (60 << 16)  # of this process alone, so that tests side by side never meet
        self.address = f"127.{192 + (host >> 16)}.{host >> 8 & 255}.{host & 255 | 1}"
        self.words = [*words, "--address", self.address]
        self.start()

    def start(self):
        """Returns when it listens."""
        self.keyboard, terminal = pty.openpty()
        self.process = subprocess.Popen(self.words, stdin=terminal, stdout=subprocess.PIPE, start_new_session=True,
                                        preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY))
        os.close(terminal)
        line = self.process.stdout.readline()
        assert line.startswith(b"listening on"), f"the server said {line}"

    def ask_to_end(self):
        """By Ctrl-C, on which it saves what it has."""
        os.write(self.keyboard, b"\3")

    def stop(self):
        self.ask_to_end()
        code = self.process.wait()
        self.close()
        assert code == 0, f"the server ended with {code}"

    def restart(self):
        self.stop()
        self.start()

    def kill(self):
        """Its exit code: 0 if it had ended by itself."""
        self.process.kill()
        self.close()
        return self.process.wait()

    def close(self):
        if not self.process.stdout.closed:
            self.process.stdout.close()
            os.close(self.keyboard)
