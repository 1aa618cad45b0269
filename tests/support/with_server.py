#!/usr/bin/env python3
"""Runs a program against a server of its own.

usage: with_server.py SKUAN_SIM [server options...] -- PROGRAM [arguments...]

Starts the server on an address of its own, waits until it is ready, runs the program with each
argument {host} replaced by that address, ends the server, and gives the program's exit code.
"""
import os
import subprocess
import sys


def main():
    split = sys.argv.index("--")
    server_command, program = sys.argv[1:split], sys.argv[split + 1:]
    # Above the addresses that tests/support/loopback_address.h gives.
    number = os.getpid() % (62 << 16)
    host = f"127.{192 + (number >> 16)}.{number >> 8 & 255}.{number & 255}"
    with subprocess.Popen(server_command + ["--address", host], stdout=subprocess.PIPE, text=True) as server:
        try:
            ready = server.stdout.readline()
            if not ready.startswith("listening on"):
                sys.exit(f"the server did not start; it said: {ready!r}")
            return subprocess.run([argument.replace("{host}", host) for argument in program], check=False).returncode
        finally:
            server.terminate()


if __name__ == "__main__":
    sys.exit(main())
