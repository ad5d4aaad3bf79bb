"""Whether an application bundle is whole: what tools/check-macos-bundle says of it."""

import glob
import os
import pathlib
from dataclasses import dataclass, field

from . import headers, information, macho, names, objc, stubs, tables
from .bindings import ANYWHERE, bindings

# The C and C++ libraries, of which an SDK may have no stubs.
RUNTIME = ("/usr/lib/libSystem.B.dylib", "/usr/lib/libc++.1.dylib", "/usr/lib/libc++abi.dylib")
SYSTEM_FOLDERS = ("/System/Library/Frameworks/", "/usr/lib/")
# Images that AppKit has under these names.
SYSTEM_IMAGES = ("NSApplicationIcon",)
# Copies with administrator rights, so it loads nothing that it does not need.
TOOL = "train"


@dataclass
class Report:
    complaints: list = field(default_factory=list)
    notes: list = field(default_factory=list)  # what cannot be told, or is missing through no fault of the sources
    figures: dict = field(default_factory=dict)

    def wrong(self, where, complaint):
        self.complaints.append(f"{where} {complaint}")

    def note(self, text):
        if text not in self.notes:
            self.notes.append(text)

    def count(self, what, number):
        self.figures[what] = self.figures.get(what, 0) + number


class Check:
    def __init__(self, sources, sdk, objdump):
        self.sources = pathlib.Path(sources)
        self.sdk_folder = sdk
        self.objdump = objdump
        self.sdks = {}
        self.published_list = pathlib.Path(__file__).parent / "published"

    def run_product(self, folder):
        """The report on the bundle of a product that tells the installer when it has started."""
        report = Report()
        self._sender(pathlib.Path(folder), "samples/notes/Notes.entitlements", report)
        return report

    def run(self, folder):
        """The report on the installer's bundle in the folder, with the bundles inside it."""
        report = Report()
        self._sender(pathlib.Path(folder), "resources/VelmoraInstaller.entitlements", report)
        self._published(pathlib.Path(folder), report)
        self._wanted(pathlib.Path(folder), report)
        return report

    def _sender(self, folder, entitlements, report):
        """An application that sends events to others."""
        self._bundle(folder, information.REQUIRED | information.SENDS_EVENTS, report)
        for complaint in information.entitlement_complaints(self.sources / entitlements):
            report.wrong(entitlements, complaint)

    def _bundle(self, folder, required, report):
        contents = folder / "Contents"
        for item in folder.iterdir():
            if item.name != "Contents":
                report.wrong(item, "lies outside Contents, where a signature cannot cover it")
        if not (contents / "Info.plist").is_file():
            report.wrong(folder, "has no Info.plist")
            return
        info, complaints = information.read(contents / "Info.plist")
        pkg_info = (contents / "PkgInfo").read_bytes() if (contents / "PkgInfo").is_file() else b""
        for complaint in complaints + information.complaints(info, pkg_info, required):
            report.wrong(contents / "Info.plist", complaint)
        self._named_files(folder, info, report)
        for language in sorted(folder.glob("Contents/Resources/*.lproj")):
            if not (language / "InfoPlist.strings").is_file():
                report.wrong(language, "has no InfoPlist.strings")
        for path in sorted(folder.rglob("*")):
            inner = path.relative_to(folder).parts
            if any(part.endswith(".app") for part in inner[:-1]):
                continue
            if path.is_symlink():
                report.wrong(path, "is a link")
            elif path.is_dir() and path.suffix == ".app":
                self._bundle(path, information.REQUIRED, report)
            elif path.is_file():
                self._file(path, info, report)

    @staticmethod
    def _program(folder):
        path = folder / "Contents/Info.plist"
        info, _ = information.read(path) if path.is_file() else ({}, [])
        return folder / "Contents/MacOS" / str(info.get("CFBundleExecutable"))

    def _named_files(self, folder, info, report):
        """The files that the information dictionary names."""
        contents, resources = folder / "Contents", folder / "Contents/Resources"
        program = self._program(folder)
        if not program.is_file() or not macho.images(program.read_bytes()):
            report.wrong(program, "is no program")
        icon = info.get("CFBundleIconFile")
        if icon and not any((resources / name).is_file() for name in (icon, icon + ".icns")):
            report.wrong(folder, f"has no icon file {icon}")
        interface = info.get("NSMainNibFile")
        if not interface or (resources / (interface + ".nib")).exists():
            return
        if (resources / (interface + ".xib")).is_file():
            report.note(f"{interface} is packed as its source, for want of ibtool: the application will not start")
        else:
            report.wrong(folder, f"has no user-interface file {interface}")

    def _file(self, path, info, report):
        data = path.read_bytes()
        images = macho.images(data)
        if images and not os.access(path, os.X_OK):
            report.wrong(path, "is not executable")
        for image in images:
            self._image(path, image, info, report)
        if path.suffix == ".strings":
            for complaint in tables.strings_complaints(data):
                report.wrong(path, complaint)
            report.count("strings tables", 1)
            if path.name == "InfoPlist.strings":
                for complaint in tables.information_complaints(data, info):
                    report.wrong(path, complaint)
        if path.suffix == ".icns":
            for complaint in tables.icon_complaints(data):
                report.wrong(path, complaint)
        if path.parent.name == "MacOS" and not images:
            report.wrong(path, "is no program")

    def _image(self, path, image, info, report):
        where = f"{path} ({image.architecture})"
        if image.architecture not in macho.ARCHITECTURES.values():
            report.wrong(where, "is for another processor")
            return
        if image.kind != "execute" or not image.of_kind(macho.LC_MAIN):
            report.wrong(where, "is no program")
        if not image.flags & macho.FLAG_PIE:
            report.wrong(where, "has a fixed address")
        if not image.flags & macho.FLAG_TWOLEVEL:
            report.wrong(where, "does not say what it gets from which library")
        for command in image.of_kind(macho.LC_RPATH):
            report.wrong(where, f"looks for libraries in {image.text_of(command)}")
        # No Mac with this processor has an older system than 11.
        expected = max(information.minimum_system(info), (11, 0) if image.architecture == "arm64" else (0, 0))
        if image.minimum_system() != expected:
            report.wrong(where, f"is for macOS {image.minimum_system()}, not {expected}")
        self._libraries(path, where, image, report)
        report.count("images", 1)

    def _sdk(self, architecture):
        if architecture not in self.sdks:
            self.sdks[architecture] = stubs.SDK(self.sdk_folder, architecture)
        return self.sdks[architecture]

    def _libraries(self, path, where, image, report):
        sdk = self._sdk(image.architecture)
        for library in image.libraries():
            if not library.startswith(SYSTEM_FOLDERS):
                report.wrong(where, f"loads {library}, which is no library of the system")
            elif not sdk.has(library) and library not in RUNTIME:
                report.wrong(where, f"loads {library}, which the SDK does not have")
            if path.name == TOOL and library.startswith("/System/"):
                report.wrong(where, f"loads {library}, which the privileged tool has no need of")
        if RUNTIME[0] not in image.libraries():
            report.note("linked without the C library, of which the SDK has no stub: the programs will not start")
        bound = bindings(self.objdump, str(path), image)
        if not bound:
            report.wrong(where, "does not say what it gets from the libraries of the system")
        for one in sorted({(one.origin, one.symbol) for one in bound}):
            self._binding(where, *one, image, sdk, report)
        report.count("names bound to a library", len({one.symbol for one in bound if one.origin != ANYWHERE}))

    def _binding(self, where, library, symbol, image, sdk, report):
        if library == ANYWHERE:
            # Those of the C and C++ libraries are tools/macos-runtime-names' matter.
            for loaded in image.libraries():
                if loaded not in RUNTIME and symbol in sdk.exports(loaded):
                    report.wrong(where, f"leaves {symbol} open, which {loaded} has")
        elif library not in image.libraries():
            report.wrong(where, f"expects {symbol} of {library}, which it does not load")
        elif (library not in RUNTIME or sdk.has(library)) and symbol not in sdk.exports(library):
            report.wrong(where, f"expects {symbol} of {library}, which does not have it")

    def _published(self, folder, report):
        """Every published method is in the installer's program, which holds the whole library, and the headers publish those
        of the list and no others."""
        program = self._program(folder)
        images = macho.images(program.read_bytes()) if program.is_file() else []
        # Later systems have shorter lists of methods, which the other architecture may use.
        image = next((image for image in images if image.architecture == "x86_64"), None)
        if image is None:
            report.wrong(program, "has no part for x86_64")
            return
        bound = {one.address: one.symbol for one in bindings(self.objdump, str(program), image)}
        present = objc.methods(image, bound)
        declared = set()
        for path in sorted(glob.glob(str(self.sources / "installer/*.h")) + glob.glob(str(self.sources / "library/*/*.h"))):
            if path.endswith("+Private.h"):
                continue
            with open(path, encoding="utf-8") as file:
                for sign, name, selector in headers.published(file.read()):
                    declared.add(f"{sign}[{name} {selector}]")
                    if selector not in present[sign, name]:
                        report.wrong(program, f"lacks {sign}[{name} {selector}], which {os.path.basename(path)} publishes")
        listed = headers.listed(self.published_list)
        for method in sorted(listed - declared):
            report.wrong(self.published_list, f"lists {method}, which no header publishes")
        for method in sorted(declared - listed):
            report.wrong(self.published_list, f"does not list {method}, which a header publishes")
        report.count("published methods", len(declared))

    def _wanted(self, folder, report):
        """Every resource that the code asks for by name is there."""
        resources = folder / "Contents/Resources"
        items = []
        for pattern in "installer/*.mm", "installer/*.cpp", "library/*/*.mm", "library/*/*.cpp", "platform/cocoa/*.mm":
            for path in sorted(self.sources.glob(pattern)):
                items += names.wanted(path.relative_to(self.sources), path.read_text(encoding="utf-8"))
        for path in sorted(self.sources.glob("resources/*.xib")):
            items += names.wanted_by_interface(path.relative_to(self.sources), path.read_text(encoding="utf-8"))
        if not items:
            report.wrong(self.sources, "asks for no resource")
        for item in items:
            if item.name is None:
                report.note(f"{item.place} asks for a resource under a name that it gets from elsewhere")
            elif item.name in SYSTEM_IMAGES and item.types == tuple(names.IMAGES):
                continue
            elif not any((resources / name).exists() for name in names.file_names(item)):
                report.wrong(resources, f"has no {item.name}, which {item.place} asks for")
        report.count("resources asked for", len(items))
