"""Strings tables and icons: whether a Mac can read them."""

import re
import struct

TOKEN = re.compile(r'\s+|//[^\n]*|/\*.*?\*/|(?P<string>"(?:[^"\\]|\\.)*")|(?P<word>[\w.$-]+)|(?P<mark>[=;])', re.S)
PLACEHOLDER = re.compile(r"%(?:(\d+)\$)?([@a-zA-Z]+|%)")
ICON_PIXELS = {"icp4": 16, "icp5": 32, "icp6": 64, "ic07": 128, "ic08": 256, "ic09": 512, "ic10": 1024, "ic11": 32,
               "ic12": 64, "ic13": 256, "ic14": 512}


def _placeholders(text):
    """The kinds of value in the order of the arguments."""
    found = [(int(place) if place else None, kind) for place, kind in PLACEHOLDER.findall(text) if kind != "%"]
    return sorted((place or index + 1, kind) for index, (place, kind) in enumerate(found))


def strings_complaints(data):
    """What is wrong with the contents of a .strings file."""
    return _read(data)[1]


def entries(data):
    """{key: value} of a .strings file, as they are written."""
    return _read(data)[0]


def _read(data):
    """(entries, complaints)."""
    text = data.decode("utf-16" if data[:2] in (b"\xff\xfe", b"\xfe\xff") else "utf-8-sig")
    tokens, place = [], 0
    while place < len(text):
        found = TOKEN.match(text, place)
        if not found:
            return {}, [f"line {text.count(chr(10), 0, place) + 1} is no part of a strings table"]
        if found.lastgroup:
            tokens.append((found.group(), found.start()))
        place = found.end()
    complaints, seen = [], {}
    while tokens:
        entry, tokens = tokens[:4], tokens[4:]
        line = text.count("\n", 0, entry[0][1]) + 1
        if len(entry) < 4 or entry[1][0] != "=" or entry[3][0] != ";":
            return seen, complaints + [f'line {line} is not of the form "key" = "value";']
        key, value = entry[0][0].strip('"'), entry[2][0].strip('"')
        if key in seen:
            complaints.append(f"line {line} says again what {key} means")
        seen[key] = value
        if set(_placeholders(value)) - set(_placeholders(key)):
            complaints.append(f"line {line} has placeholders that its key has not")
    return seen, complaints


def information_complaints(data, information):
    """What is wrong with an InfoPlist.strings of a bundle with this information dictionary: it translates every text that
    macOS shows to people, and nothing that the dictionary has not."""
    found = entries(data)
    return ([f"does not translate {key}" for key in information
             if key.endswith("UsageDescription") and not found.get(key)] +
            [f"translates {key}, which the information dictionary has not" for key in found if key not in information])


def icon_complaints(data):
    """What is wrong with the contents of an .icns file."""
    if len(data) < 8 or data[:4] != b"icns":
        return ["is no icon file"]
    if struct.unpack_from(">I", data, 4)[0] != len(data):
        return ["has another length than it says"]
    complaints, place, widest = [], 8, 0
    while place < len(data):
        name, length = data[place : place + 4].decode("latin-1"), struct.unpack_from(">I", data, place + 4)[0]
        picture = data[place + 8 : place + length]
        if name not in ICON_PIXELS or length < 32 or picture[:8] != b"\x89PNG\r\n\x1a\n":
            return complaints + [f"has a picture that a Mac cannot read ({name})"]
        width, height = struct.unpack_from(">II", picture, 16)
        if width != height or width != ICON_PIXELS[name]:
            complaints.append(f"has a picture of {width} by {height} pixels under {name}")
        widest = max(widest, width)
        place += length
    return complaints + ([] if widest >= 1024 else ["has no picture for large views"])
