"""The self-test of the bundle check: every way to break a bundle, and the complaint that it must lead to."""

import pathlib
import plistlib
import re
import shutil
import struct
import sys
import tempfile

from . import headers, information, macho

PROGRAM, TOOL = "Contents/MacOS/VelmoraInstaller", "Contents/Resources/train"
INFORMATION, RESOURCES = "Contents/Info.plist", "Contents/Resources"


def removing(name):
    def apply(folder):
        (folder / name).unlink()
    return apply


def writing(name, data):
    def apply(folder):
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        (folder / name).write_bytes(data)
    return apply


def replacing(name, old, new):
    """Bytes of a file, as many as there were."""
    def apply(folder):
        data = (folder / name).read_bytes()
        assert old in data and len(old) == len(new), (name, old, new)
        (folder / name).write_bytes(data.replace(old, new))
    return apply


def saying(key, value):
    """Another value in the information dictionary, or none."""
    def apply(folder):
        information = plistlib.loads((folder / INFORMATION).read_bytes())
        information[key] = value
        if value is None:
            del information[key]
        (folder / INFORMATION).write_bytes(plistlib.dumps(information))
    return apply


def saying_twice(key):
    def apply(folder):
        data = (folder / INFORMATION).read_bytes()
        entry = re.search(rb"\t<key>%s</key>\n.*\n" % key.encode(), data).group()
        (folder / INFORMATION).write_bytes(data.replace(entry, entry * 2))
    return apply


def patching(name, change):
    """`change` gets the bytes of a program and its image."""
    def apply(folder):
        data = bytearray((folder / name).read_bytes())
        change(data, macho.images(bytes(data))[0])
        (folder / name).write_bytes(data)
    return apply


def packing(form, offset, *values):
    return lambda data, image: struct.pack_into("<" + form, data, image.start + offset, *values)


def clearing_flag(flag):
    return lambda data, image: struct.pack_into("<I", data, image.start + 24, image.flags & ~flag)


def needing_other_system(data, image):
    (command,) = image.of_kind(macho.LC_VERSION_MIN_MACOSX, macho.LC_BUILD_VERSION)
    place = command.offset + (8 if command.kind == macho.LC_VERSION_MIN_MACOSX else 12)
    struct.pack_into("<I", data, place, 10 << 16 | 15 << 8)


def without_command(kind):
    def change(data, image):
        for command in image.of_kind(kind):
            struct.pack_into("<I", data, command.offset, 0x1B)  # one that only carries a number
    return change


def naming_library(old, new):
    """Another library under a command that has room for its name."""
    def change(data, image):
        for command in image.of_kind(macho.LC_LOAD_DYLIB):
            if image.text_of(command).endswith(old):
                room = command.size - 24
                data[command.offset + 24 : command.offset + command.size] = new.encode().ljust(room, b"\0")[:room]
    return change


def with_search_path(data, image):
    (command,) = image.of_kind(0x1B)
    struct.pack_into("<III8s", data, command.offset, macho.LC_RPATH, command.size, 12, b"/tmp/l\0\0")


BREAKAGES = [
    ("a file beside Contents", writing("ReadMe", b"text"), "lies outside Contents"),
    ("a link", lambda folder: (folder / RESOURCES / "link").symlink_to("/"), "is a link"),
    ("no Info.plist", removing(INFORMATION), "has no Info.plist"),
    ("an Info.plist that is cut off", writing(INFORMATION, b"<plist><dict>"), "is no property list"),
    ("a key twice", saying_twice("CFBundleName"), "says CFBundleName twice"),
    ("no program name", saying("CFBundleExecutable", None), "under CFBundleExecutable"),
    ("another program name", saying("CFBundleExecutable", "Other"), "Other is no program"),
    ("a version of letters", saying("CFBundleVersion", "one"), "under CFBundleVersion"),
    ("a long signature", saying("CFBundleSignature", "VmInn"), "under CFBundleSignature"),
    ("events without a reason", saying("NSAppleEventsUsageDescription", None), "under NSAppleEventsUsageDescription"),
    ("another package type", writing("Contents/PkgInfo", b"BNDL????"), "PkgInfo says"),
    ("a prompt that one language lacks", removing(RESOURCES + "/fr.lproj/InfoPlist.strings"), "fr.lproj has no InfoPlist"),
    ("a prompt that is not translated", writing(RESOURCES + "/fr.lproj/InfoPlist.strings", b"/* nothing */"),
     "does not translate NSAppleEventsUsageDescription"),
    ("a translation of nothing", writing(RESOURCES + "/fr.lproj/InfoPlist.strings", b'"NSOther" = "Autre";'),
     "translates NSOther"),
    ("an older system than the program's", saying("LSMinimumSystemVersion", "10.12"), "is for macOS"),
    ("no icon file", removing(RESOURCES + "/AppIcon.icns"), "has no icon file"),
    ("an icon file that is cut off", writing(RESOURCES + "/AppIcon.icns", b"icns\0\0\1\0"), "another length"),
    ("an icon of the wrong size", replacing(RESOURCES + "/AppIcon.icns", b"ic07", b"ic08"), "pixels under ic08"),
    ("no user-interface file", saying("NSMainNibFile", "Menu"), "has no user-interface file"),
    ("a table that does not end", writing(RESOURCES + "/en.lproj/Localizable.strings", b'"a" = "b"'), "not of the form"),
    ("a table with a placeholder too many",
     writing(RESOURCES + "/en.lproj/Localizable.strings", b'"a %@" = "b %2$@";'), "placeholders that its key has not"),
    ("a program that may not be executed", lambda folder: (folder / PROGRAM).chmod(0o644), "is not executable"),
    ("a tool that is text", writing(PROGRAM, b"#!/bin/sh\n"), "is no program"),
    ("no privileged tool", removing(TOOL), "has no train"),
    ("no picture", removing(RESOURCES + "/checkmark.png"), "has no checkmark"),
    ("no picture for alerts", removing(RESOURCES + "/AlertStopIcon.png"), "has no AlertStopIcon"),
    ("no sound", removing(RESOURCES + "/Done.wav"), "has no Done"),
    ("another processor", patching(PROGRAM, packing("I", 4, 0x01000012)), "is for another processor"),
    ("a library instead of a program", patching(PROGRAM, packing("I", 12, 6)), "is no program"),
    ("no entry", patching(PROGRAM, without_command(macho.LC_MAIN)), "is no program"),
    ("a fixed address", patching(PROGRAM, clearing_flag(macho.FLAG_PIE)), "has a fixed address"),
    ("one name space", patching(PROGRAM, clearing_flag(macho.FLAG_TWOLEVEL)), "does not say what it gets"),
    ("a newer system", patching(TOOL, needing_other_system), r"is for macOS \(10, 15\)"),
    ("a search path", patching(TOOL, with_search_path), "looks for libraries in /tmp/l"),
    ("a library of another place", patching(PROGRAM, naming_library("/AppKit", "/opt/lib/AppKit")), "no library of the system"),
    ("a library that is not there", patching(PROGRAM, naming_library("/AppKit", "/System/Library/Frameworks/AppKat")),
     "which the SDK does not have"),
    ("a name expected of another library",
     patching(PROGRAM, naming_library("/AppKit", "/System/Library/Frameworks/IOKit.framework/Versions/A/IOKit")),
     "which does not have it|which it does not load"),
    ("a method under another name", replacing(PROGRAM, b"processWithSignatureString:", b"processWithSignatureStrong:"),
     r"lacks \+\[KRProcess processWithSignatureString:\]"),
    ("a method of a category under another name", replacing(PROGRAM, b"applicationSoundFiles\0", b"applicationSoundFilet\0"),
     r"lacks \+\[NSSound applicationSoundFiles\]"),
]

PRODUCT_BREAKAGES = [
    ("a product that sends events without a reason", saying("NSAppleEventsUsageDescription", None),
     "under NSAppleEventsUsageDescription"),
    ("a product without an icon", removing(RESOURCES + "/NotesIcon.icns"), "has no icon file"),
]


def _broken(name, apply, expected, bundle, run):
    """Whether the run complains as expected about a copy of the bundle that is broken so."""
    with tempfile.TemporaryDirectory() as scratch:
        copy = pathlib.Path(scratch) / pathlib.Path(bundle).name
        shutil.copytree(bundle, copy)
        apply(copy)
        complaints = run(copy).complaints
    if any(re.search(expected, complaint) for complaint in complaints):
        return True
    print(f"macOS bundle: {name} leads to {complaints}, not to \"{expected}\"", file=sys.stderr)
    return False


def _list_is_held(check, bundle):
    """Whether a method that is taken off the list of what is published, and one that is put on it, lead to complaints."""
    true_list, (gone, *rest) = check.published_list, sorted(headers.listed(check.published_list))
    with tempfile.TemporaryDirectory() as scratch:
        check.published_list = pathlib.Path(scratch) / "published"
        check.published_list.write_text("\n".join(rest + ["-[KRProcess dance]"]), encoding="utf-8")
        complaints = "\n".join(check.run(bundle).complaints)
    check.published_list = true_list
    held = f"does not list {gone}" in complaints and "lists -[KRProcess dance], which no header" in complaints
    if not held:
        print(f"macOS bundle: a wrong list of methods leads to {complaints}", file=sys.stderr)
    return held


def _entitlements_are_held():
    """Whether entitlements with a comment, and without what they are to grant, lead to complaints."""
    with tempfile.TemporaryDirectory() as scratch:
        path = pathlib.Path(scratch) / "Some.entitlements"
        path.write_bytes(plistlib.dumps({}) + b"<!-- why -->")
        complaints = "\n".join(information.entitlement_complaints(path))
    held = "grants {}" in complaints and "has a comment" in complaints
    if not held:
        print(f"macOS bundle: wrong entitlements lead to {complaints}", file=sys.stderr)
    return held


def run(check, bundle, *products):
    """0 when every broken copy leads to its complaint; the others are named."""
    found = [_broken(*breakage, bundle, check.run) for breakage in BREAKAGES]
    for product in products:
        found += [_broken(*breakage, product, check.run_product) for breakage in PRODUCT_BREAKAGES]
    found += [_list_is_held(check, bundle), _entitlements_are_held()]
    print(f"self-test: {sum(found)} of {len(found)} mistakes found")
    return 0 if all(found) else 1
