#!/usr/bin/python3
"""Makes a manual page for each function of quilp.h from the header's comments.

Usage: manual_pages.py HEADER LIBQUILP.3 FOLDER

The date and the version in the headings are those of LIBQUILP.3. A function is an error that has no
comment, or returns something and does not say what.
"""

import pathlib
import re
import sys

COMMENT = r"/\*\*((?:(?!\*/).)*)\*/\s*"
FUNCTION = re.compile(COMMENT + r"QUILP_EXPORT ([^;]*\b(quilp_\w+)\([^;]*\));", re.S)
ENUM = re.compile(COMMENT + r"typedef enum (\w+) \{(.*?)\}", re.S)
CALLBACK = re.compile(COMMENT + r"typedef (void \(\*(\w+)\)\([^;]*\));", re.S)
VALUE = re.compile(r"(QUILP_\w+) = \d+,?(?: +/\*\*< (.*?) \*/)?", re.S)
FAMILIES = ("quilp_request_", "quilp_answer_")


def words(text):
    """The text of a comment without its frame, its blank lines kept."""
    lines = (re.sub(r"^\s*\* ?", "", line).strip() for line in text.strip().split("\n"))
    return "\n".join(lines).strip()


def marked(text):
    """Names in bold, a sentence a line."""
    text = " ".join(text.split()).replace("\\", "\\e").replace("-", "\\-")
    text = re.sub(r"\bquilp\\-addon\(7\)", r"\\fBquilp\\-addon\\fP(7)", text)
    text = re.sub(r"\b(quilp_\w+)", r"\\fB\1\\fP(3)", text)
    text = re.sub(r"\b(QUILP_\w+)", r"\\fB\1\\fP", text)
    return re.sub(r"([.:]) (?=[A-Z])", r"\1\n", text)


def synopsis(declaration):
    """The declaration with its parameters in italics, one a line where there are several."""
    start, parameters = re.fullmatch(r"(.*\()([^()]*)\)", " ".join(declaration.split())).groups()
    if parameters == "void":
        return f'.B "{start}void);"'
    lines, parameters = [], parameters.split(", ")
    for i, parameter in enumerate(parameters):
        kind, name = re.fullmatch(r"(.*?)(\w+)", parameter).groups()
        end = "," if i + 1 < len(parameters) else ");"
        lines.append(f'.BI "{start if i == 0 else "        "}{kind}" {name} {end}')
    return "\n".join(lines)


def types(header):
    """What a page says about a type that its function takes or returns."""
    found = {}
    for comment, declaration, name in CALLBACK.findall(header):
        text, *parameters = words(comment).split("@param ")
        entries = "\n".join(".TP\n.I {}\n{}".format(*map(marked, entry.split(None, 1)))
                            for entry in parameters)
        found[name] = (f".SS {name}\n.nf\n{synopsis(declaration)}\n.fi\n.PP\n{marked(text)}\n"
                       f"{entries}")
    for comment, name, body in ENUM.findall(header):
        values = "\n".join(f".TP\n.B {value}\n{marked(words(text)) or chr(92) + '&'}"
                           for value, text in VALUE.findall(body))
        found[name] = f".SS {name}\n{marked(words(comment))}\n{values}"
    return found


def page(name, comment, declaration, known, heading, others):
    text, _, result = words(comment).partition("@return ")
    if not text or bool(result) == declaration.startswith("void "):
        sys.exit(f"quilp.h: the comment of {name} does not say what it does, or what it returns")
    brief = re.split(r"\.(?:\s|$)", text)[0]
    brief = marked(brief[0].lower() + brief[1:]).replace("\n", " ").replace("\\fP(3)", "\\fP")
    parts = [f".TH {name.upper()} 3{heading}", ".SH NAME", f"{name} \\- {brief}", ".SH SYNOPSIS",
             ".nf", ".B #include <quilp.h>", ".PP", synopsis(declaration), ".fi", ".SH DESCRIPTION",
             marked(text)]
    named = declaration.replace(name + "(", "")
    for kind in known:
        if re.search(rf"\b{kind}\b", named):
            parts.append(known[kind])
            named += known[kind]
    if result:
        parts += [".SH RETURN VALUE", marked(result[0].upper() + result[1:] + ".")]
    family = next((f for f in FAMILIES if name.startswith(f)), None)
    wanted = sorted({*re.findall(r"\bquilp_(?!addon)\w+", comment),
                     *(other for other in others if family and other.startswith(family)),
                     "quilp_run"} & set(others) - {name})
    see = [f".BR {other} (3)," for other in wanted] + [".BR libquilp (3)"]
    return "\n".join(parts + [".SH SEE ALSO", *see, ""])


def main(header, overview, folder):
    header = pathlib.Path(header).read_text()
    heading = re.match(r"\.TH LIBQUILP 3(.*)", pathlib.Path(overview).read_text())[1]
    functions = FUNCTION.findall(header)
    names = [name for _, _, name in functions]
    if len(names) != header.count("\nQUILP_EXPORT "):
        sys.exit("quilp.h: a function has no comment")
    known = types(header)
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    for comment, declaration, name in functions:
        (folder / f"{name}.3").write_text(page(name, comment, declaration, known, heading, names))


main(*sys.argv[1:])
