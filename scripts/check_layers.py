#!/usr/bin/env python3
"""Holds the house in shape: who may include whom, and where an operating system may be named.

usage: scripts/check_layers.py      prints one line per breach; exit code 1 when there is any
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# Each room of skuan/ and the rooms below it. A new room gets its row here.
BELOW = {
    "platform": [],
    "foundation": ["platform"],
    "markup": ["platform", "foundation"],
    "protocol": ["platform", "foundation", "markup"],
    "time": ["platform", "foundation", "markup", "protocol"],
    "config": ["platform", "foundation", "markup", "protocol", "time"],
    "monitors": ["platform", "foundation", "markup", "protocol", "time", "config"],
    "session": ["platform", "foundation", "markup", "protocol", "time", "config", "monitors"],
}

# The one knot: a session makes the models that it owns, and they hold it. Headers declare, sources include.
KNOT = {("config", "session"), ("monitors", "session")}

PRODUCT = ("skuan", "simulator", "tools", "examples")

INCLUDE = re.compile(r'^\s*#\s*include\s*(["<])([^">]+)[">]')
# Macros of processors, of compilers and of sanitizers are nobody's secret; these tell systems apart.
PREPROCESSOR = re.compile(r"^\s*#\s*(if|ifdef|ifndef|elif)\b")
SYSTEM_MACRO = re.compile(
    r"\b(_*WIN(32|64|NT)_*|_*(linux|gnu_linux|unix|APPLE|MACH|FreeBSD|ELF|CYGWIN|MINGW\w*)_*|_WIN32_WINNT|_POSIX_\w+|"
    r"__GLIBC__|_MSC_\w+|WINVER|_GNU_SOURCE|Q_OS_\w+|Q_CC_(MSVC|MINGW))\b|__has_include *\( *<(?!sanitizer/)")
SYSTEM_HEADER = re.compile(
    r"^(sys|netinet|arpa|linux|net|asm|bits)/|^(unistd|pthread|semaphore|sched|netdb|poll|fcntl|dlfcn|link|malloc|termios|"
    r"pty|dirent|spawn|ifaddrs|pwd|syslog|ucontext|execinfo|windows|winsock2?|ws2\w+|mswsock|iphlpapi|process|io|direct|"
    r"conio|psapi|tlhelp32|mmsystem|timeapi|synchapi|intrin)\.h$", re.IGNORECASE)
# What waits on an atomic in the standard library of MinGW's g++ 12 looks at it before it takes the lock under
# which it is woken: a wake-up in between is lost.
LOSES_WAKE_UPS = ("barrier", "latch", "semaphore")
MODULE_HEADER = re.compile(
    r"^(Qt\w+/)?Qt(Core|Network|Gui|Widgets|Test|Xml|DBus|Concurrent|Sql|OpenGL|PrintSupport)$")


def is_private(header):
    """Headers that are not installed: *_p.h, and the platform room, which the library hides."""
    return header.endswith("_p.h") or header.startswith("skuan/platform/")


def tests_of_one_system():
    """Programs that are not even built for the other system."""
    rows = (ROOT / "tests/one_system_only.txt").read_text(encoding="utf-8").splitlines()
    return {row.split()[1] for row in rows if re.match(r"\w+ +\w+ +\* ", row)}


ONE_SYSTEM = tests_of_one_system()


def names_system(source):
    """The platform room; one system's source of a program, which cannot see that room; and what tests ask of the
    system, with those tests that exist on one only."""
    path = source.as_posix()
    return re.match(r"skuan/platform/|(simulator|tools/\w+)/platform\w*_(linux|windows)\.cpp$|"
                    r"tests/support/(linux|windows)/", path) or (
        source.parts[0] == "tests" and re.sub(r"[/.]", "_", path[len("tests/"):-len(source.suffix)]) in ONE_SYSTEM)


def uses_system(source):
    """Benchmarks measure on Linux alone and are built there only: they may include its headers."""
    return names_system(source) or source.parts[0] == "bench"


def include_breach(source, quote, header):
    """Why `source` (path from the root) may not include `header`; None when it may."""
    top = source.parts[0]
    ours = header.startswith(("skuan/", "simulator/"))
    if MODULE_HEADER.match(header):
        return f"<{header}> brings a whole Qt module; name the class's own header"
    if quote == '"' and top in PRODUCT and not header.endswith(".moc") and not header.startswith("moc_"):
        return f'"{header}": write the full path in angle brackets, <skuan/room/name.h>'
    if SYSTEM_HEADER.match(header) and not uses_system(source):
        return f"<{header}> belongs to one system; only skuan/platform/ and its like may include it"
    if header in LOSES_WAKE_UPS and top != "bench":
        return f"<{header}> may sleep for ever on Windows; <skuan/foundation/semaphore.h> does not"
    if not ours:
        return None
    if top == "simulator" and header.startswith("skuan/"):
        return f"<{header}>: the simulator shares no code with the library it faces"
    if is_private(header):
        if top in ("tools", "examples"):
            return f"<{header}> is not installed; programs see installed headers only"
        if source.suffix == ".h" and top in ("skuan", "simulator") and not is_private(source.as_posix()):
            return f"<{header}> is not installed, but this header is"
    if top == "skuan":
        if header.startswith("simulator/"):
            return f"<{header}>: the library does not know the simulator"
        parts = header.split("/")
        if len(source.parts) > 2 and len(parts) > 2:
            room, other = source.parts[1], parts[1]
            if room not in BELOW:
                return f"room {room} has no row in scripts/check_layers.py"
            if (room, other) in KNOT and source.suffix == ".cpp":
                return None
            if other != room and other not in BELOW[room]:
                return f"<{header}>: {room} may only include from rooms below it ({', '.join(BELOW[room]) or 'none'})"
    return None


def breaches(path):
    source = path.with_suffix("") if path.suffix == ".in" else path
    text = (ROOT / path).read_text(encoding="utf-8")
    whole = re.sub(r"(?:.*\\\n)+.*", lambda lines: lines[0].replace("\\\n", " ") + "\n" * lines[0].count("\n"), text)
    for number, line in enumerate(whole.splitlines(), 1):
        found = INCLUDE.match(line)
        reason = include_breach(source, *found.groups()) if found else None
        if not reason and not names_system(source) and PREPROCESSOR.match(line) and SYSTEM_MACRO.search(line):
            reason = "tells systems apart; that is for skuan/platform/ and its like, a source for each"
        if reason:
            yield f"{path}:{number}: {reason}"


def main():
    tops = ["skuan", "simulator", "tools", "examples", "tests", "bench", "fuzz"]
    sources = [path.relative_to(ROOT) for top in tops for path in sorted((ROOT / top).rglob("*"))
               if re.search(r"\.(h|cpp)(\.in)?$", path.name)]
    found = [breach for source in sources for breach in breaches(source)]
    print("\n".join(found) if found else f"{len(sources)} files, every include points downwards")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
