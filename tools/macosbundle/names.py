"""The resources that the code asks for by name."""

import re
from dataclasses import dataclass

IMAGES = ["png", "icns", "pdf", "tiff"]
SOUNDS = ["wav", "aiff", "aif", "caf", "m4a", "mp3"]
LITERAL = r'@?"([^"]*)"'
ARGUMENT = rf'(?:{LITERAL}|([A-Za-z_]\w*)\b(?!\s*\())'
# What is asked for, and the types that it may have; none for one that the call names itself.
CALLS = [
    (re.compile(rf"\b(?:imageNamed|imageForResource):\s*{ARGUMENT}"), IMAGES),
    (re.compile(rf"\.icon\s*=\s*{ARGUMENT}"), IMAGES),
    (re.compile(rf"\bsoundNamed:\s*{ARGUMENT}"), SOUNDS),
    (re.compile(rf"\b(?:pathForResource|URLForResource):\s*{ARGUMENT}(?:\s*(?:ofType|withExtension):\s*{ARGUMENT})?"),
     None),
]


@dataclass(frozen=True)
class Wanted:
    """`name` is None where the code does not say it as a constant."""

    place: str  # file:line
    name: str | None
    types: tuple


def _constant(text, literal, identifier):
    if not identifier:
        return literal
    if identifier in ("nil", "nullptr"):
        return ""
    definition = re.search(rf"\b{identifier}(?:\[\])?\s*(?:=|\{{)\s*{LITERAL}", text)
    return definition.group(1) if definition else None


def wanted(path, text):
    """What one source file asks for."""
    for call, types in CALLS:
        for found in call.finditer(text):
            place = f"{path}:{text.count(chr(10), 0, found.start()) + 1}"
            name = _constant(text, found.group(1), found.group(2))
            own = [_constant(text, found.group(3), found.group(4)) or ""] if types is None else types
            yield Wanted(place, name, tuple(own))


def wanted_by_interface(path, text):
    """The images that a user-interface file shows."""
    listed = re.search(r"<resources>(.*?)</resources>", text, re.S)
    for name in re.findall(r'<image\s+name="([^"]*)"', listed.group(1) if listed else ""):
        yield Wanted(path, name, tuple(IMAGES))


def file_names(item):
    """The names of files that answer it."""
    return [item.name + "." + kind if kind else item.name for kind in item.types]
