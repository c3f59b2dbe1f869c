"""Makes descriptions of binary interfaces small, and independent of what is inside the types of other libraries."""

import re
import xml.etree.ElementTree as ElementTree

FOREIGN = re.compile(r"^(Q[A-Z]|Qt|_|std$|typedef )")
REFERENCES = ("type-id", "naming-typedef-id")
TYPES = {"class-decl", "union-decl", "enum-decl", "typedef-decl", "pointer-type-def", "reference-type-def",
         "qualified-type-def", "array-type-def", "function-type", "type-decl", "subrange"}


def is_foreign(element, scopes):
    """Whether others own the type: of theirs only name and size are part of our contract."""
    return any(FOREIGN.match(name) for name in [*scopes, element.get("name", "")])


def reduced(text):
    """The description with the types that exported functions lead to, those of other libraries without their parts."""
    root = ElementTree.fromstring(text)
    types, foreign, parents = {}, set(), {}

    def enter(element, scopes):
        if element.tag in TYPES and (identity := element.get("id")):
            types[identity] = element
            if is_foreign(element, scopes):
                foreign.add(element)
        inner = [*scopes, element.get("name", "")] if element.tag in ("class-decl", "namespace-decl") else scopes
        for child in element:
            parents[child] = element
            enter(child, inner)

    enter(root, [])
    needed = set()

    def need(element, with_parts=True):
        waiting = [(element, with_parts)]
        while waiting:
            current, whole = waiting.pop()
            for name in REFERENCES:
                target = types.get(current.get(name))
                if target is not None and target not in needed:
                    needed.add(target)
                    waiting.append((target, target.tag != "class-decl" or target not in foreign))
            if whole:
                waiting.extend((child, True) for child in current)

    roots = [element for element in root.iter("function-decl") if element.get("elf-symbol-id")]
    for element in roots:
        need(element)
    keep = needed | set(roots)
    for element in list(keep):
        while (element := parents.get(element)) is not None:
            keep.add(element)

    def prune(element):
        is_shell = element in foreign and element.tag == "class-decl"
        for child in list(element):
            if child in keep:
                prune(child)
            elif is_shell or child.tag in TYPES | {"namespace-decl", "function-decl", "var-decl", "member-type"} and (
                    element.tag in ("abi-instr", "namespace-decl")):
                element.remove(child)

    for unit in root.iter("abi-instr"):
        unit.attrib.pop("path", None)  # of the machine that made it
        prune(unit)
    ElementTree.indent(root, " ")
    return ElementTree.tostring(root, encoding="unicode") + "\n"
