"""Information dictionaries of application bundles."""

import plistlib
import re

VERSION = r"\d+(\.\d+){0,2}"
REQUIRED = {
    "CFBundleExecutable": r"[^/]+",
    "CFBundleIdentifier": r"[A-Za-z0-9-]+(\.[A-Za-z0-9-]+){2,}",
    "CFBundleInfoDictionaryVersion": r"6\.0",
    "CFBundleName": r".+",
    "CFBundlePackageType": r"APPL",
    "CFBundleShortVersionString": VERSION,
    "CFBundleSignature": r"[ -~]{4}",
    "CFBundleVersion": VERSION,
    "LSMinimumSystemVersion": VERSION,
    "NSPrincipalClass": r"NSApplication",
}

# Without this text macOS 10.14 and later let no event through to another application.
SENDS_EVENTS = {"NSAppleEventsUsageDescription": r".+"}


# Without this entitlement the hardened runtime lets none through. Signing takes no file with a comment in it.
ENTITLEMENTS = {"com.apple.security.automation.apple-events": True}


def entitlement_complaints(path):
    """What is wrong with the entitlements of a program that sends events."""
    entitlements, found = read(path)
    if entitlements != ENTITLEMENTS:
        found.append(f"grants {entitlements}, not {ENTITLEMENTS}")
    return found + (["has a comment"] if b"<!--" in path.read_bytes() else [])


def read(path):
    """(dictionary, complaints) of a property list."""
    with open(path, "rb") as file:
        data = file.read()
    try:
        information = plistlib.loads(data)
    except Exception as error:  # the reader lets through what its parsers throw
        return {}, [f"is no property list: {error}"]
    if not isinstance(information, dict):
        return {}, ["is no dictionary"]
    keys = re.findall(r"^\t<key>([^<]*)</key>", data.decode("utf-8", "replace"), re.M)
    return information, [f"says {key} twice" for key in sorted({key for key in keys if keys.count(key) > 1})]


def complaints(information, pkg_info, required):
    """What is wrong with the dictionary of an application whose PkgInfo holds these bytes. Under the required keys it must
    have texts of these forms."""
    found = []
    for key, form in required.items():
        value = information.get(key)
        if not isinstance(value, str) or not re.fullmatch(form, value):
            found.append(f"has {value!r} under {key}")
    kind = str(information.get("CFBundlePackageType")) + str(information.get("CFBundleSignature"))
    if pkg_info != kind.encode():
        found.append(f"says {kind!r}, PkgInfo says {pkg_info!r}")
    return found


def minimum_system(information):
    """(major, minor) of LSMinimumSystemVersion; (0, 0) where it has none."""
    parts = re.findall(r"\d+", str(information.get("LSMinimumSystemVersion", "")))[:2]
    return tuple(int(part) for part in (parts + ["0", "0"])[:2])
