"""Writes tables of every public function and type in C++, for the tests that call them all.

    generate_interface.py COMPILER INCLUDE-DIRECTORY OUTPUT
"""

import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "build"))
import public_interface  # noqa: E402

# Types of single values. Anything that is neither here, nor an object, nor special, stops the build.
SCALARS = {
    "int8_t", "int16_t", "int32_t", "int64_t", "uint8_t", "uint16_t", "uint32_t", "uint64_t", "size_t", "char", "int",
    "unsigned", "float", "double", "qsys_status", "qsys_bool", "Char32", "CharT", "wchar_t", "qoc_ocrDictionaryMode",
    "qoc_ocrDictionaryPositionStatus", "qoc_checkDigitMethod", "qoc_ocrDictionaryOutcome",
}
# Types whose sample is made by hand, in samples.cpp.
SPECIAL = {"qsys_cleanupEntry", "qstd_elementTable", "qsys_memoryTable", "FILE"}


class Generator:
    """Collects the tables."""

    def __init__(self, functions, records):
        self.functions = functions
        self.names = {function.name for function in functions}
        self.records = {record.name: record for record in records}
        self.objects = [name for name in self.records if self.destructor(name)]
        self.scalars = {}
        self.lines = []

    def destructor(self, name):
        return next((name + end for end in ("_destruct", "__destruct") if name + end in self.names), None)

    def is_function_type(self, type_name):
        return "(" in type_name or re.fullmatch(r"q\w+(Handler|CompareEqual)", type_name) is not None

    def reference(self, base):
        """The C++ name of the table entry of a type that can be an element or a field, or None."""
        if base in self.objects:
            return f"type_{base}"
        if base in SCALARS:
            self.scalars[base] = None
            return f"scalar_{base}"
        return None

    def element_of(self, name):
        """The element type of a vector family, or None."""
        for function in self.functions:
            if function.name == f"{name}_pushBack":
                return function.parameters[1].base
        return None

    def write_type(self, name):
        if name == "qstd_vector":  # The core: elements of 4 plain bytes.
            self.scalars["uint32_t"] = None
            self.lines.append(
                "const Type type_qstd_vector = {\"qstd_vector\", sizeof(qstd_vector), constructCoreVector, copyCoreVector,\n"
                "    [](void *o) { return qstd_vector__destruct(static_cast<qstd_vector *>(o)); }, &scalar_uint32_t,\n"
                "    [](void *o, const void *e) { return qstd_vector__pushBack(static_cast<qstd_vector *>(o), e); }, {}};")
            return
        element = self.element_of(name)
        default = "constructEmpty" if element else "construct"
        fields = "{}"
        if not element:
            entries = []
            for field in self.records[name].fields:
                reference = self.reference(field.base)
                if field.depth == 0 and reference:
                    entries.append(f'{{"{field.name}", offsetof({name}, {field.name}), &{reference}, false}}')
                elif field.depth == 1 and field.base in self.objects:
                    entries.append(f'{{"{field.name}", offsetof({name}, {field.name}), &{reference}, true}}')
            if entries:
                self.lines.append(f"const Field fields_{name}[] = {{{', '.join(entries)}}};")
                fields = f"fields_{name}"
        push = "nullptr"
        if element:
            push = (f"[](void *o, const void *e) {{ return {name}_pushBack(static_cast<{name} *>(o), "
                    f"static_cast<const {element} *>(e)); }}")
        reference = f"&{self.reference(element)}" if element else "nullptr"
        self.lines.append(
            f"const Type type_{name} = {{\"{name}\", sizeof({name}),\n"
            f"    [](void *o) {{ return {name}_{default}(static_cast<{name} *>(o)); }},\n"
            f"    [](void *o, const void *s) {{ return {name}_constructCopy(static_cast<{name} *>(o), "
            f"static_cast<const {name} *>(s)); }},\n"
            f"    [](void *o) {{ return {name}_destruct(static_cast<{name} *>(o)); }}, {reference},\n"
            f"    {push}, {fields}}};")

    def role(self, function, parameter):
        """How the test makes the argument: role, type entry."""
        if self.is_function_type(parameter.type) and parameter.depth == 0:
            return "function", "nullptr"
        if parameter.depth == 0:
            if parameter.type not in SCALARS:
                sys.exit(f"{function.name}: no sample for the type {parameter.type} of {parameter.name}")
            return "number", f"&{self.reference(parameter.type)}"
        if parameter.depth == 1 and parameter.base in self.objects:
            return ("input" if parameter.is_const else "object"), f"&{self.reference(parameter.base)}"
        if parameter.depth == 1 and parameter.base in SPECIAL:
            return "special", "nullptr"
        if parameter.depth == 1 and (parameter.base in SCALARS or parameter.base == "void"):
            entry = f"&{self.reference(parameter.base)}" if parameter.base in SCALARS else "nullptr"
            return ("block" if parameter.is_const else "cell"), entry
        if parameter.depth in (1, 2):
            if parameter.depth == 1 and not self.is_function_type(parameter.base):
                sys.exit(f"{function.name}: no sample for the type {parameter.type} of {parameter.name}")
            return "cell", "nullptr"
        sys.exit(f"{function.name}: no sample for the type {parameter.type} of {parameter.name}")

    def write_function(self, function):
        check = re.fullmatch(r"qsys_typeCheck(Ptr|Func|FuncPtr)?_(\w+)", function.name)
        if check:  # They take a value by copy or an address of any kind, and do nothing.
            argument = "nullptr" if check[1] else f"{check[2]}{{}}"
            return f"{{\"{function.name}\", [](const Value *) -> Answer {{ {function.name}({argument}); return {{}}; }}, {{}}}}"
        arguments, parameters = [], []
        for i, parameter in enumerate(function.parameters):
            role, entry = self.role(function, parameter)
            if role == "number":
                arguments.append(f"static_cast<{parameter.type}>(v[{i}].number)")
            elif role == "function":
                arguments.append(f"reinterpret_cast<{parameter.type}>(v[{i}].function)")
            else:
                arguments.append(f"static_cast<{parameter.type}>(v[{i}].pointer)")
            parameters.append(f'{{"{parameter.name}", Role::{role}, {entry}, "{parameter.base}"}}')
        call = f"{function.name}({', '.join(arguments)})"
        if function.result == "qsys_status":
            body = f"return {{{call}, nullptr}};"
        elif function.result == "void":
            body = f"{call}; return {{}};"
        elif function.result == "void *":
            body = f"return ofMemory({call});"
        else:
            body = f"static_cast<void>({call}); return {{}};"
        unused = "v" if arguments else ""
        return (f"{{\"{function.name}\", [](const Value *{unused}) -> Answer {{ {body} }},\n"
                f"   {{{', '.join(parameters)}}}}}")

    def text(self):
        entries = [self.write_function(function) for function in self.functions]
        for name in self.objects:
            self.write_type(name)
        types = self.lines
        forward = [f"extern const Type type_{name};" for name in self.objects]
        scalars = [f'const Type scalar_{name} = {{"{name}", sizeof({name})}};' for name in self.scalars]
        return "\n".join([
            "// Generated from the public headers.", *forward, *scalars, *types,
            f"const Type *const allTypes[] = {{{', '.join('&type_' + name for name in self.objects)}}};",
            "const Function allFunctions[] = {", ",\n".join(entries), "};", ""])


def main():
    compiler, include_dir, output = sys.argv[1:]
    generator = Generator(public_interface.functions(compiler, include_dir),
                          public_interface.records(compiler, include_dir))
    pathlib.Path(output).write_text(generator.text(), encoding="utf-8")


if __name__ == "__main__":
    main()
