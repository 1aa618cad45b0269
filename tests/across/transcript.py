#!/usr/bin/env python3
"""Goes through a transcript with the command line and the simulator of two systems: every byte must be as written.

    transcript.py SKUANCTL SKUAN_SIM TRANSCRIPT

Programs that end in .exe are Windows ones. In a transcript "$ " begins a command, "< " a line of its input, "# " a
remark; all else is what the command says, and at its end its exit code in brackets if that is not 0. Ends with 77,
for a skipped test, where the folder of a program is not there.
"""

import os
import subprocess
import sys
import tempfile

RUN = os.path.join(os.path.dirname(__file__), "../../scripts/windows/run.sh")
ADDRESS = f"127.255.{os.getpid() >> 8 & 255}.{os.getpid() & 255}"


def program(path, *words):
    return [RUN] * path.endswith(".exe") + [path, *words]


def steps(lines):
    """Its commands: each with its input and what it says, a line by itself."""
    found = []
    for line in lines:
        if line[:2] in (b"# ", b"$ "):
            found.append([])
        found[-1].append(line)
    return [step for step in found if step[0].startswith(b"$ ")]


def said_by(command, given):
    """All that it writes, what it says of errors last, and its exit code if that is not 0."""
    # Files: a pipe stays open as long as what wine itself starts, with the first program that wants it.
    with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
        code = subprocess.run(command, input=given, stdout=out, stderr=err, timeout=60).returncode
        out.seek(0)
        err.seek(0)
        return out.read() + err.read() + (b"[%d]\n" % code if code else b"")


def main():
    skuanctl, simulator, transcript = sys.argv[1:]
    for folder in {os.path.dirname(skuanctl), os.path.dirname(simulator)}:
        if not os.path.isdir(folder):
            print(f"Skipped: there is no {folder} to take programs from.")
            return 77
    server = subprocess.Popen(program(simulator, "--address", ADDRESS, "--name", "STUDIO <é>"),
                              stdout=subprocess.PIPE)
    assert server.stdout.readline().rstrip() == f"listening on {ADDRESS}:8913".encode()
    different = count = 0
    try:
        with open(transcript, "rb") as file:
            for command, *rest in steps(file):
                words = command[2:].decode().replace("\\e", "\x1b").split()
                given = [line for line in rest if line.startswith(b"< ")]
                said = said_by(program(skuanctl, "--host", ADDRESS, *words), b"".join(line[2:] for line in given))
                written = b"".join(rest[len(given):])
                count += 1
                if said != written:
                    different += 1
                    print(f"{command.decode()}wanted {written!r}\ngot    {said!r}")
    finally:
        server.terminate()
        server.wait()
    print(f"{count} commands of {skuanctl} to {simulator}, {different} answers are different")
    return different > 0 or count == 0


if __name__ == "__main__":
    sys.exit(main())
