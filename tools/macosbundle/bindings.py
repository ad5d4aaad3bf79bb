"""What an image gets from which library when it starts."""

import re
import subprocess
from dataclasses import dataclass

ROW = re.compile(r"^__\w+\s+__\w+\s+0x([0-9A-Fa-f]+)\s+(?:pointer\s+-?\d+\s+)?(\S+)\s+(_\S+)", re.M)
ANYWHERE = "flat-namespace"


@dataclass(frozen=True)
class Binding:
    address: int
    origin: str  # as the image names it; ANYWHERE for a name that is looked for in all libraries
    symbol: str


def _short(install_name):
    return re.sub(r"\..*", "", install_name.rsplit("/", 1)[-1])


def bindings(objdump, path, image):
    """Those of the image, which is one of the file at the path; none of one that is damaged."""
    reading = subprocess.run([objdump, "--macho", "--bind", "--lazy-bind", "--arch", image.architecture, path],
                             check=False, capture_output=True, text=True)
    text = reading.stdout if reading.returncode == 0 else ""
    libraries = {_short(library): library for library in image.libraries()}
    return [Binding(int(address, 16), libraries.get(library, library), symbol)
            for address, library, symbol in ROW.findall(text)]
