"""The stored interface: every function with its types, every record with its size and offsets, one a line; and the same as
abidw describes it.

    interface_baseline.py COMPILER INCLUDE-DIRECTORY    writes the files anew, from the headers
"""

import gzip
import pathlib
import re
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import public_interface  # noqa: E402

DIRECTORY = pathlib.Path(__file__).resolve().parent / "baseline"


def read(name):
    """The lines of a stored file."""
    return (DIRECTORY / name).read_text(encoding="utf-8").splitlines()


def functions(compiler, include_dir):
    """A line for every public function: result, name, parameter types."""
    lines = []
    for function in public_interface.functions(compiler, include_dir):
        types = [parameter.type for parameter in function.parameters] + ["..."] * function.is_variadic
        lines.append(f"{function.result} {function.name}({', '.join(types) or 'void'})")
    return lines


def records(compiler, include_dir, directory):
    """A line for every public record, from a program compiled and run in the directory."""
    program = [f'#include "{name}"\n' for name in public_interface.headers(include_dir)]
    program.append("#include <stdio.h>\nint main(void) {\n")
    for record in public_interface.records(compiler, include_dir):
        formats = " ".join(f"{field.name}@%zu" for field in record.fields)
        offsets = "".join(f", offsetof({record.name}, {field.name})" for field in record.fields)
        program.append(f'printf("{record.name} %zu: {formats}\\n", sizeof({record.name}){offsets});\n')
    program.append("return 0;\n}\n")
    source, binary = pathlib.Path(directory) / "records.c", pathlib.Path(directory) / "records"
    source.write_text("".join(program), encoding="utf-8")
    subprocess.run([compiler, "-std=c11", f"-I{include_dir}", str(source), "-o", str(binary)], check=True)
    return subprocess.run([str(binary)], capture_output=True, encoding="utf-8", check=True).stdout.splitlines()


def library_of_headers(compiler, include_dir, directory, options=("-std=c11",)):
    """A shared library with debug information that defines what the headers declare, and does nothing."""
    text = [f'#include "{name}"\n' for name in public_interface.headers(include_dir)]
    for function in public_interface.functions(compiler, include_dir):
        parameters = []
        for i, parameter in enumerate(function.parameters):
            called = re.fullmatch(r"(.*?)(?:\((\**)\))?(\([^*].*\))", parameter.type)  # A function, or a pointer to one.
            parameters.append(f"{called[1]} ({called[2] or ''}p{i}){called[3]}" if called else f"{parameter.type} p{i}")
        parameters += ["..."] * function.is_variadic
        text.append(f"{function.result} {function.name}({', '.join(parameters) or 'void'}) {{ __builtin_unreachable(); }}\n")
    source, library = pathlib.Path(directory) / "interface.c", pathlib.Path(directory) / "libqoc_interface.so"
    source.write_text("".join(text), encoding="utf-8")
    subprocess.run([compiler, *options, "-g", "-O0", "-fPIC", "-shared", "-DQOC_BUILDING", f"-I{include_dir}", source.name,
                    "-o", library.name], cwd=directory, check=True)
    return library


def main():
    compiler, include_dir = sys.argv[1:]
    DIRECTORY.mkdir(exist_ok=True)
    with tempfile.TemporaryDirectory() as directory:
        for name, lines in (("functions.txt", functions(compiler, include_dir)),
                            ("records.txt", records(compiler, include_dir, directory))):
            (DIRECTORY / name).write_text("\n".join(lines) + "\n", encoding="utf-8")
        library = library_of_headers("gcc", pathlib.Path(include_dir).resolve(), directory)
        description = subprocess.run(["abidw", "--no-show-locs", "--no-comp-dir-path", library.name], cwd=directory,
                                     capture_output=True, check=True).stdout
        (DIRECTORY / "interface.abi.gz").write_bytes(gzip.compress(description, mtime=0))


if __name__ == "__main__":
    main()
