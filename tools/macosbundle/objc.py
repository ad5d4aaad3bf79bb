"""The classes and categories of an image and their methods, read off its Objective-C metadata."""

from collections import defaultdict

CLASS_PREFIX = "_OBJC_CLASS_$_"
# struct class_t: isa, superclass, cache, vtable, data. struct class_ro_t: flags, instanceStart, instanceSize, reserved,
# ivarLayout, name, baseMethods ... struct category_t: name, class, instanceMethods, classMethods ...
DATA_FLAGS = 7


def _read_only(image, address):
    return image.unpack("Q", address + 32)[0] & ~DATA_FLAGS


def _methods(image, address):
    if address == 0:
        return []
    entry, count = image.unpack("II", address)
    entry &= 0xFFFC
    return [image.text_at(image.unpack("Q", address + 8 + entry * index)[0]) for index in range(count)]


def _class_name(image, address):
    return image.text_at(image.unpack("Q", _read_only(image, address) + 24)[0])


def methods(image, bound):
    """{(sign, class): set of selectors}. `bound` tells the symbol of an address that is filled at start."""
    found = defaultdict(set)
    for _, address in image.pointers("__objc_classlist"):
        metaclass = image.unpack("Q", address)[0]
        for sign, description in ("-", address), ("+", metaclass):
            found[sign, _class_name(image, address)].update(
                _methods(image, image.unpack("Q", _read_only(image, description) + 32)[0]))
    for _, address in image.pointers("__objc_catlist"):
        _, owner, instance, of_class = image.unpack("4Q", address)
        symbol = bound.get(address + 8, "")
        # A category of a class that nothing tells belongs to none.
        name = _class_name(image, owner) if owner else symbol.removeprefix(CLASS_PREFIX)
        found["-", name].update(_methods(image, instance))
        found["+", name].update(_methods(image, of_class))
    return found
