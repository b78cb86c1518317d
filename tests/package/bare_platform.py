#!/usr/bin/env python3
"""Writes a bare second set of the platform's headers: members in the opposite order, other private data, no inline
bodies. What is built against it needs of its host nothing but the public declarations.

Usage: bare_platform.py ROOT OUTPUT_FOLDER
"""
import pathlib
import re
import sys

TEMPLATES = ("YxArray.h", "YxSmartPtr.h")  # templates live in their headers on every platform
# How a host stores its arrays is its own business: what its templates have beyond the operations that the module uses.
HIDDEN = {"YxArray.h": ("physicalLength", "growLength", "setPhysicalLength", "asArrayPtr")}
OTHER_DATA = "private:\n    void* m_otherData[5];\n    float m_otherNumber;\n"


def without_comments(text):
    return re.sub(r"//[^\n]*", "", re.sub(r"/\*.*?\*/", "", text, flags=re.S))


def closing(text, start):
    """The index behind the brace that closes the one at start."""
    depth = 0
    for index in range(start, len(text)):
        depth += {"{": 1, "}": -1}.get(text[index], 0)
        if depth == 0:
            return index + 1
    raise ValueError("unbalanced braces")


def members(body):
    """Splits a class body into access labels and declarations, function bodies dropped."""
    index = 0
    while True:
        label = re.compile(r"\s*(public|protected|private):").match(body, index)
        if label:
            yield label.group(1) + ":"
            index = label.end()
            continue
        macro = re.compile(r"\s*YX_DECLARE_CLASS\(\);").match(body, index)
        if macro:
            yield "YX_DECLARE_CLASS();"
            index = macro.end()
            continue
        semicolon, brace = body.find(";", index), body.find("{", index)
        if semicolon < 0:
            return
        if 0 <= brace < semicolon and "(" in body[index:brace] and "= " not in body[index:brace].split(")")[-1]:
            end = closing(body, brace)
            yield declaration(body[index:brace])
            index = end
        elif 0 <= brace < semicolon:
            end = body.index(";", closing(body, brace)) + 1
            yield body[index:end].strip()
            index = end
        else:
            yield body[index:semicolon + 1].strip()
            index = semicolon + 1


def declaration(head):
    head = re.sub(r"\bconstexpr\b", "", head).strip()
    head = re.sub(r"\)\s*:\s*[\w:]+\(.*$", ")", head, flags=re.S)  # a constructor's initialisers
    return head + ";"


def with_private(text, names):
    """The same, with members of these names private."""
    out, index = "", 0
    for match in re.finditer(rf"^    [\w&* ]*?\b(?:{'|'.join(names)})\([^;]*?\{{", text, flags=re.M):
        end = closing(text, match.end() - 1)
        out += f"{text[index:match.start()]}private:\n{text[match.start():end]}\npublic:"
        index = end
    return out + text[index:]


def bare_class(head, body):
    sections = {"public:": [], "protected:": []}
    first = []
    access = "public:" if head.lstrip().startswith("struct") else "private:"
    for member in members(body):
        if member in ("public:", "protected:", "private:"):
            access = member
        elif member == "YX_DECLARE_CLASS();":
            first.append("    " + member)
            access = "private:"
        elif re.match(r"(enum|struct|class)\b[^;(]*\{", member) and access != "private:":
            first.append(f"{access}\n    {member}")
        elif access != "private:":
            sections[access].append("    " + member)
    text = "\n".join(first)
    for name, declarations in sections.items():
        text += f"\n{name}\n" + "\n".join(reversed(declarations)) + "\n"
    return f"{head}{{\n{OTHER_DATA}{text}}};"


def bare_header(text):
    text, out, index = without_comments(text), "", 0
    for match in re.finditer(r"^(?:class|struct) \w+(?: : public \w+)? \{", text, flags=re.M):
        if match.start() < index:
            continue
        end = closing(text, match.end() - 1)
        out += text[index:match.start()] + bare_class(text[match.start():match.end() - 1], text[match.end():end - 1])
        index = text.index(";", end) + 1
    return out + text[index:]


def write_bare_set(source, target):
    for header in source.rglob("*.h"):
        path = target / header.relative_to(source)
        path.parent.mkdir(parents=True, exist_ok=True)
        text = header.read_text()
        text = text if header.name in TEMPLATES else bare_header(text)
        if header.name in HIDDEN:
            text = with_private(text, HIDDEN[header.name])
        if not path.exists() or path.read_text() != text:
            path.write_text(text)


if __name__ == "__main__":
    write_bare_set(pathlib.Path(sys.argv[1]) / "host/include", pathlib.Path(sys.argv[2]))
