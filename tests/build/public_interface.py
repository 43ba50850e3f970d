"""What the public headers declare: functions with their parameters, records with their fields.

The headers are preprocessed first, so that families declared by one macro are seen member by member.
"""

import dataclasses
import pathlib
import re
import subprocess

# Stands in for QOC_API, so that the marked declarations can be told from all others after preprocessing.
MARK = "qoc_public_declaration"


@dataclasses.dataclass(frozen=True)
class Parameter:
    """One parameter: its C type without the name, its name; both as they are written but for blanks."""

    type: str
    name: str

    @property
    def is_const(self):
        return self.type.startswith("const ")

    @property
    def depth(self):
        """The number of stars."""
        return self.type.count("*")

    @property
    def base(self):
        """The type without const and stars."""
        return self.type.replace("const ", "").replace("*", "").strip()


@dataclasses.dataclass(frozen=True)
class Function:
    """One function; parameters is empty for (void)."""

    name: str
    result: str
    parameters: tuple
    is_variadic: bool


@dataclasses.dataclass(frozen=True)
class Record:
    """One struct type; fields are Parameters."""

    name: str
    fields: tuple


def headers(include_dir):
    """The C headers below a directory, as they are included."""
    include_dir = pathlib.Path(include_dir)
    return sorted(path.relative_to(include_dir).as_posix() for path in include_dir.rglob("*.h"))


def preprocess(compiler, include_dir, names, *options):
    """The text of the named headers after preprocessing as C11."""
    text = "".join(f'#include "{name}"\n' for name in names)
    done = subprocess.run(
        [compiler, "-E", "-P", "-std=c11", "-x", "c", f"-I{include_dir}", *options, "-"],
        input=text, capture_output=True, encoding="utf-8", check=False)
    if done.returncode != 0:
        raise RuntimeError(f"{compiler} cannot preprocess the headers:\n{done.stderr}")
    return done.stdout


def split_list(text):
    """Splits at the commas that stand in no parenthesis."""
    parts, depth, start = [], 0, 0
    for i, c in enumerate(text):
        depth += (c == "(") - (c == ")")
        if c == "," and depth == 0:
            parts.append(text[start:i])
            start = i + 1
    return [part.strip() for part in [*parts, text[start:]] if part.strip()]


def parameter(text):
    """Reads one declaration of a parameter or a field."""
    text = re.sub(r"\s+", " ", text).strip()
    nested = re.match(r"^(.*?)\(\s*(\**)\s*(\w+)\s*\)\s*\((.*)\)$", text)  # A pointer to a function.
    if nested:
        return Parameter(f"{nested[1].strip()}({nested[2]})({nested[4]})", nested[3])
    function = re.match(r"^(.*?)\b(\w+)\s*\(\s*void\s*\)$", text)  # A function.
    if function:
        return Parameter(f"{function[1].strip()}(void)", function[2])
    array = re.match(r"^(.*)\b(\w+)\s*(\[\w+\])$", text)
    if array:
        return Parameter(f"{array[1].strip()} {array[3]}", array[2])
    plain = re.match(r"^(.*?)\b(\w+)$", text)
    words = re.sub(r"\s*\*\s*", "*", plain[1]).strip()
    words = re.sub(r"^(.*?)(\**)$", lambda m: m[1].strip() + (" " + m[2] if m[2] else ""), words)
    return Parameter(words, plain[2])


def functions(compiler, include_dir, names=None):
    """Every function marked QOC_API, in order of declaration."""
    text = preprocess(compiler, include_dir, names or headers(include_dir), f"-DQOC_API={MARK}")
    text = re.sub(r"__attribute__\s*\(\(.*?\)\)\)?", "", text)
    found = []
    for declaration in re.findall(rf"\b{MARK}\b\s*([^;]*);", text):
        declaration = re.sub(r"\s+", " ", declaration).strip()
        match = re.match(r"^(.*?)(\w+)\s*\((.*)\)$", declaration)
        if not match:
            raise RuntimeError(f"cannot read the declaration: {declaration}")
        result, name, arguments = match[1].strip(), match[2], split_list(match[3])
        is_variadic = "..." in arguments
        parameters = tuple(parameter(a) for a in arguments if a not in ("void", "..."))
        found.append(Function(name, result, parameters, is_variadic))
    return found


def records(compiler, include_dir, names=None):
    """Every struct of the library, in order of definition."""
    text = preprocess(compiler, include_dir, names or headers(include_dir))
    found = []
    for name, body in re.findall(r"\bstruct\s+(q\w+)\s*\{([^{}]*)\}", text):
        fields = []
        for line in body.split(";"):
            if not line.strip():
                continue
            first, *others = split_list(line)
            fields.append(parameter(first))
            fields += [Parameter(fields[-1].type, other) for other in others]
        found.append(Record(name, tuple(fields)))
    return found
