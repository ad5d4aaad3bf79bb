"""The methods that Objective-C headers publish."""

import re

COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.S)
INTERFACE = re.compile(r"@interface\s+(\w+)(.*?)@end", re.S)
METHOD = re.compile(r"^([-+])\s*\(.*?;", re.S | re.M)
PROPERTY = re.compile(r"^@property\s*(?:\(([^)]*)\))?[^;]*?(\w+)\s*;", re.S | re.M)


def _without_parentheses(text):
    while re.search(r"\([^()]*\)", text):
        text = re.sub(r"\([^()]*\)", " ", text)
    return text


def selector_of(declaration):
    """"- (int)add:(int)one to:(int)other;" -> "add:to:"."""
    text = re.sub(r"\b(NS_|API_|__)\w+", " ", _without_parentheses(declaration[1:].rstrip(";")))
    parts = re.findall(r"(\w*)\s*:", text)
    return "".join(part + ":" for part in parts) if parts else text.split()[0]


def _accessors(attributes, name):
    names = dict(re.findall(r"\b(getter|setter)\s*=\s*([\w:]+)", attributes or ""))
    yield names.get("getter", name)
    if "readonly" not in (attributes or ""):
        yield names.get("setter", "set" + name[0].upper() + name[1:] + ":")


def listed(path):
    """The methods in the list of all that are published, as "+[Class selector]"; "#" begins a comment."""
    with open(path, encoding="utf-8") as file:
        lines = [line.strip() for line in file]
    return {line for line in lines if line and not line.startswith("#")}


def published(text):
    """(sign, class, selector) of every method and property that a header declares for a class or category."""
    for name, body in INTERFACE.findall(COMMENT.sub("", text)):
        for found in METHOD.finditer(body):
            yield found.group(1), name, selector_of(found.group(0))
        for attributes, variable in PROPERTY.findall(body):
            sign = "+" if "class" in re.findall(r"\w+", attributes or "") else "-"
            for selector in _accessors(attributes, variable):
                yield sign, name, selector
