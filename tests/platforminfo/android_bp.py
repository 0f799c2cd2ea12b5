"""Compares the plug-in's build in Android.bp with CMake's: sources, language, flags and exports.

android_bp.py SOURCE_FOLDER COMPILE_COMMANDS
"""

import json
import os
import re
import shlex
import sys

# What the library is linked from.
TARGETS = ("zelvan_objects", "zelvan_formats", "zelvan_tables")
# Soong compiles a shared library so without being told.
SOONG_DOES = {"-fPIC", "-ffunction-sections", "-fdata-sections"}
# Soong compiles without exceptions, g++ and clang with them, unless they are told.
UNTOLD = {"-fexceptions"}


def value_of(text, key):
    """The texts that a property of the library's module holds."""
    module = text[text.index("cc_library_shared {"):]
    found = re.search(rf'^    {key}: (?:"([^"]*)"|\[(.*?)\]),$', module, re.MULTILINE | re.DOTALL)
    if not found:
        sys.exit(f"Android.bp: no {key}")
    return [found[1]] if found[1] is not None else re.findall(r'"([^"]*)"', found[2])


def main(source, database):
    with open(os.path.join(source, "Android.bp"), encoding="utf-8") as file:
        blueprint = file.read()
    with open(database, encoding="utf-8") as file:
        commands = [entry for entry in json.load(file)
                    if any(f"/{target}.dir/" in "/" + entry["command"] for target in TARGETS)]
    sources = sorted(os.path.relpath(entry["file"], source) for entry in commands)
    # The plug-in's own objects have the flags; what stands in other libraries is only hidden in it.
    flags = {flag for entry in commands if "/zelvan_objects.dir/" in entry["command"]
             for flag in shlex.split(entry["command"]) if re.match(r"-(f|std=|D|m)", flag)}
    flags = {flag for flag in flags if not flag.startswith(("-fsanitize", "-fno-sanitize", "-fno-omit-frame"))}
    flags -= {"-DNDEBUG"} | SOONG_DOES
    soong = set(value_of(blueprint, "cflags")) | set(value_of(blueprint, "cppflags"))
    soong = {flag for flag in soong if flag.startswith(("-f", "-D", "-m"))}
    soong.add("-std=" + value_of(blueprint, "cpp_std")[0])
    wrong = [f"{what}: {sorted(cmake - android)} in CMake alone, {sorted(android - cmake)} in Android.bp alone"
             for what, cmake, android in [
                 ("sources", set(sources), set(value_of(blueprint, "srcs"))),
                 ("flags", flags | UNTOLD, soong),
                 ("version script", {"platforminfo/Exports.map"}, set(value_of(blueprint, "version_script"))),
             ] if cmake != android]
    print("\n".join(wrong) or f"{len(sources)} sources, {len(soong)} flags")
    return 1 if wrong or not sources else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
