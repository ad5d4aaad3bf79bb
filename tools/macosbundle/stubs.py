"""What a macOS SDK says that the system's libraries export: its .tbd files."""

import functools
import os
import re

LIST = re.compile(r"([\w-]+):\s*\[([^\]]*)\]")
PREFIXES = {
    "symbols": [""],
    "weak-symbols": [""],
    "thread-local-symbols": [""],
    "objc-classes": ["_OBJC_CLASS_$_", "_OBJC_METACLASS_$_"],
    "objc-eh-types": ["_OBJC_EHTYPE_$_"],
    "objc-ivars": ["_OBJC_IVAR_$_"],
}


def _names(text):
    return [name.strip().strip("'\"") for name in text.split(",") if name.strip()]


@functools.cache
def _documents(path, target):
    """{install name: (exported names, libraries that are exported again)} of one file."""
    with open(path, encoding="utf-8") as file:
        texts = file.read().split("--- !tapi-tbd")[1:]
    documents = {}
    for text in texts:
        install_name = re.search(r"^install-name:\s*'?([^'\n]+)'?", text, re.M).group(1)
        exported, again = set(), []
        parts = re.split(r"^([\w-]+):", text, flags=re.M)
        for key, value in zip(parts[1::2], parts[2::2]):
            if key not in ("exports", "reexports", "reexported-libraries"):
                continue
            wanted = False
            for name, values in LIST.findall(value):
                if name == "targets":
                    wanted = target in _names(values)
                elif wanted and name == "libraries":
                    again += _names(values)
                elif wanted and name in PREFIXES:
                    exported.update(prefix + symbol for symbol in _names(values) for prefix in PREFIXES[name])
        documents[install_name] = exported, again
    return documents


class SDK:
    """The libraries of the SDK in a folder, as the programs of one architecture see them."""

    def __init__(self, folder, architecture):
        self.folder = folder
        self.target = architecture + "-macos"
        self.names = {}

    def file_of(self, install_name):
        return self.folder + re.sub(r"(\.dylib)?$", ".tbd", install_name, count=1)

    def has(self, install_name):
        return os.path.exists(self.file_of(install_name))

    def exports(self, install_name, beside=None):
        """All names that one can get from a library, those of what it exports again included."""
        if install_name in self.names:
            return self.names[install_name]
        documents = dict(beside or {})
        if install_name not in documents and self.has(install_name):
            documents.update(_documents(self.file_of(install_name), self.target))
        exported, again = documents.get(install_name, (set(), []))
        names = self.names[install_name] = set(exported)
        for library in again:
            names |= self.exports(library, documents)
        return names
