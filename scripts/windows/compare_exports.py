#!/usr/bin/env python3
"""Holds the library's two faces together: what the Linux library exports, the Windows one exports, and no more.

usage: scripts/windows/compare_exports.py LIBRARY.SO LIBRARY.DLL [LIBRARY.SO LIBRARY.DLL]...
       prints the counts and one line per difference; exit code 1 when there is any

Both compilers mangle alike, so names are compared as declarations: functions, static data, virtual tables and
type information. A constructor counts once, however many entry points the compiler makes of it. The width of
the two systems shows in few types (WIDER); what cannot be of the same form is listed (BY_FUNCTION); what each library
exports besides is left out (NOT_OURS).
"""
import itertools
import re
import subprocess
import sys

# A type of x86-64 Linux, and what i686 Windows may have in its place: size_t, uint64_t; ptrdiff_t, int64_t; va_list.
WIDER = {
    "unsigned long": ("unsigned int", "unsigned long long"),
    "long": ("int", "long long"),
    "ul": ("u", "ull"),  # the same in a template's argument, as in 8ul
    "__va_list_tag*": ("char*",),
}
WIDER_HERE = re.compile(r"((?<!long )\b(?:unsigned )?long\b(?! long| double)|(?<=\d)ul\b|__va_list_tag\*)")

# No DLL can export data of each thread's own: there a function gives it.
BY_FUNCTION = {"skuan::block_magazines": "skuan::thread_magazines()"}

# Not ours to compare: the name inside a type information, which goes with it; tables of Qt's and the standard
# library's classes, copied where they are used; and moc's own function, which Qt hides where it can.
NOT_OURS = re.compile(r"typeinfo name for |(?:typeinfo|vtable|VTT) for (?:std::|__gnu_cxx::|Q[A-Z])|"
                      r".*::qt_static_metacall\(")


def output(*command, **more):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True, **more).stdout


def mangled_in_elf(path):
    """Weak are inline functions, templates and inline variables, of which every program has a copy of its own; a
    DLL does not export them. All tables are weak too, and exported by both."""
    for line in output("nm", "-D", "--defined-only", "--without-symbol-versions", path).splitlines():
        _, kind, name = line.split()
        if kind not in "WVu" or name.startswith(("_ZTV", "_ZTI", "_ZTT")):
            yield name


def mangled_in_dll(path):
    table = output("i686-w64-mingw32-objdump", "-p", path).partition("[Ordinal/Name Pointer] Table")[2]
    return re.findall(r"^\s*\[ *\d+\] (\S+)$", table.partition("\n\n")[0], re.MULTILINE)


def declarations(mangled):
    names = output("c++filt", input="\n".join(mangled)).splitlines()
    return {name for name in names if not NOT_OURS.match(name)}


def on_windows(name):
    """Every declaration that may stand for this one of Linux there."""
    pieces = WIDER_HERE.split(BY_FUNCTION.get(name, name))
    return map("".join, itertools.product(*[WIDER.get(piece, (piece,)) for piece in pieces]))


def compare(elf, dll):
    linux, windows = declarations(mangled_in_elf(elf)), declarations(mangled_in_dll(dll))
    only_linux, only_windows = [], windows - linux
    for name in sorted(linux - windows):
        twin = next((other for other in on_windows(name) if other in only_windows), None)
        if twin:
            only_windows.remove(twin)
        else:
            only_linux.append(name)
    for path, count, only in (elf, len(linux), only_linux), (dll, len(windows), sorted(only_windows)):
        print(f"{path}: {count} declarations, {len(only)} of them here only")
        for name in only:
            print(f"  {name}")
    if not linux or not windows:
        print("nothing to compare")
    return linux and windows and not only_linux and not only_windows


def main():
    libraries = sys.argv[1:]
    if not libraries or len(libraries) % 2:
        sys.exit(__doc__)
    same = [compare(*pair) for pair in zip(libraries[::2], libraries[1::2])]
    return 0 if all(same) else 1


if __name__ == "__main__":
    sys.exit(main())
