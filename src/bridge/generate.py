#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes the C++ of the bound classes from their tables.

  generate.py list   TABLES            names of the files that it writes
  generate.py write  TABLES FOLDER     writes them (only those that changed)
  generate.py docs   TABLES FILE       writes the reference for people

A table describes one class, a line for each thing that it offers:

  class NAME : BASES                   bases among the bound classes, or I_Convertible, I_RuntimeOnly, I_Signal
  doc, example, include, header        texts and headers
  values LIST                          the class is an enum
  object [IMPL]                        a class of objects; IMPL is the native half that scripts make
  value FIELD / native TYPE            a class of values: the field that holds one, and its C++ type
  new, property, method, static, signal, hook, enum
                                       NAME (PARAMETERS) -> RESULT | sentence
      = get set                        what to call: a member's name, or a lambda without its brackets
      bypass HOOK                      the native function of what a script may override
      as SIGNATURE                     Qt's signature of a signal
  members NAMES                        methods that the C++ handle offers too
  finalizer FUNCTION                   runs when an object goes
"""
import pathlib
import re
import sys

INTERFACES = {"I_Convertible", "I_RuntimeOnly", "I_Signal"}
ENTRY = re.compile(r'^(\w+|"[^"]+")\s*(\(.*\)(?:\s*->\s*.*)?|:\s*.*)?$')


class Entry:
    def __init__(self, kind, head, doc):
        match = ENTRY.match(head)
        self.kind, self.doc = kind, doc
        self.name = match.group(1).strip('"')
        self.rest = (match.group(2) or "").strip()
        self.details = {}

    def signature(self):
        """The signature as the runtime reads it, with the receiver in front."""
        match = re.match(r"\((.*)\)(\s*->\s*.*)?$", self.rest)
        inner, result = match.group(1).strip(), (match.group(2) or "").strip()
        if self.kind == "static":
            parts = [inner] if inner else []
        elif inner == "self" or inner.startswith("self,"):
            parts = [inner]
        else:
            parts = ["self: @self" if self.kind == "hook" else "self"] + ([inner] if inner else [])
        return f"( {', '.join(parts)} )" + (f" {result}" if result else "") if parts else f"(){' ' + result if result else ''}"


class Table:
    def __init__(self, path):
        self.bases, self.includes, self.headers, self.entries, self.members = [], [], [], [], []
        self.doc = self.example = self.native = self.field = self.impl = self.values = None
        self.noncopyable = self.finalizer = None
        self.is_object = False
        self.constructor = None
        self.enums = []
        last = None
        for number, line in enumerate(path.read_text().splitlines(), 1):
            if not line.strip() or line.startswith("#"):
                continue
            try:
                if line.startswith(" "):
                    word, _, text = line.strip().partition(" ")
                    last.details[word] = text.strip()
                    continue
                word, _, text = line.partition(" ")
                last = self.read(word, text.strip()) or last
            except Exception as error:
                sys.exit(f"{path}:{number}: {error}")

    def read(self, word, text):
        if word == "class":
            self.name, _, bases = text.partition(" : ")
            self.bases = [base.strip() for base in bases.split(",") if base.strip()]
        elif word in ("doc", "example", "native", "values", "noncopyable", "finalizer"):
            setattr(self, word, text)
        elif word == "include":
            self.includes += text.split()
        elif word == "value":
            self.field = text
        elif word == "object":
            self.is_object, self.impl = True, text or None
        elif word == "members":
            self.members = text.split()
        elif word == "new":
            self.constructor = Entry("method", "new " + text, "")
            return self.constructor
        elif word == "enum":
            head, _, doc = text.partition(" | ")
            name, _, values = head.partition(" = ")
            self.enums.append((name.strip('"'), values, doc))
        elif word in ("property", "method", "static", "signal", "hook"):
            head, _, doc = text.rpartition(" | ")
            if not head:
                raise ValueError("the sentence is missing")
            entry = Entry(word, head, doc)
            self.entries.append(entry)
            return entry
        else:
            raise ValueError(f'unknown word "{word}"')
        return None

    def is_enum(self):
        return self.values is not None

    def native_type(self):
        return self.native or f"::{self.name}"

    def handle_base(self):
        base = self.bases[0] if self.bases else "handle"
        return f"weft::{base}" if base in INTERFACES or base == "handle" else base


def text(value):
    escaped = value.replace("\\", "\\\\").replace('"', '\\"')
    # Long texts stand in several pieces, which the compiler joins.
    pieces = [escaped[i:i + 4000] for i in range(0, len(escaped), 4000)] or [""]
    return " ".join(f'u"{piece}"' for piece in pieces)


def callee(table, code, hook=None, access=None):
    tail = f", hook::{hook}" if hook else ""
    if re.fullmatch(r"\w+", code):
        return f"internal::bind(&{access or 'Self'}::{code}{tail})"
    return f"internal::bind(+[]{code}{tail})"


def sorted_tables(folder):
    tables = {}
    for path in sorted(pathlib.Path(folder).glob("*.table")):
        table = Table(path)
        if table.name != path.stem:
            sys.exit(f"{path}: describes {table.name}")
        tables[table.name] = table
    done = []

    def visit(table):
        if table in done:
            return
        for base in table.bases:
            if base not in INTERFACES:
                visit(tables[base])
        done.append(table)

    for table in tables.values():
        visit(table)
    return done


def owner_of_native(table, tables):
    """The first class with this native type, which answers for it."""
    return next(other for other in tables if other.field and other.native_type() == table.native_type())


def handles(tables):
    out = ["// Generated from the tables of the bound classes.", "#pragma once", "",
           '#include "bridge/natives.h"', '#include "bridge/convert.h"', ""]
    for table in tables:
        if table.is_object or (table.field and not table.native):
            out.append(f"class {table.name};")
        if table.noncopyable:
            out.append(f"class {table.noncopyable.lstrip(':')};")
    out += ["", "namespace weft::qt {", ""]
    for table in tables:
        name = table.name
        if table.is_enum():
            out += [f"/// {table.doc}", f"class {name}", "{", "public:",
                    "    static const Class_Generic& getClass();",
                    "    static Type typeMask() { return internal::enum_type(getClass()); }",
                    "    static std::int64_t cast(const Any& any) { return internal::enum_cast(any, getClass()); }",
                    "};", ""]
            continue
        base = table.handle_base()
        out += [f"/// {table.doc}", f"class {name} : public {base}", "{", "public:", f"    {name}() = default;",
                f"    explicit {name}(const Any& any) : {base.split('::')[-1]}(any) {{}}"]
        if table.is_object:
            out += [f"    {name}(::{name}& object);", f"    {name}(QPointer<::QObject> object);",
                    "    /// Null when the native object is gone.", f"    ::{name}* get() const;"]
        elif table.field:
            out += [f"    {name}(const {table.native_type()}& value);", f"    {table.native_type()} get() const;"]
        if table.noncopyable:
            out.append(f"    operator {table.noncopyable}*() const;")
        out += ["    static const Class_Generic& getClass();", "    static const Type& typeMask();",
                f"    static {name} cast(const Any& any);"]
        for member in table.members:
            out += ["    template <typename... Args>", f"    Any {member}(const Args&... args) const",
                    "    {", f'        static const method_ident ident = internal::helpers::create_literal_method_identifier("{member}");',
                    "        return details::invoke_member(*this, ident, args...);", "    }"]
        out += ["};", ""]
    out += ["namespace details {", ""]
    for table in tables:
        if table.field and owner_of_native(table, tables) is table:
            out += ["template <>", f"struct handle_of<{table.native_type()}>", "{",
                    f"    using type = qt::{table.name};", "};"]
    out += ["", "} // namespace details", "} // namespace weft::qt", "", "namespace weft::internal {", ""]
    by_name = {table.name: table for table in tables}
    for table in tables:
        base = by_name.get(table.bases[0]) if table.bases else None
        if table.field and base and base.field and base.native_type() != table.native_type():
            out += ["template <>", f"struct native_base<{table.native_type()}>", "{",
                    f"    using type = {base.native_type()};", "};"]
    return out + ["", "} // namespace weft::internal"]


def write_class(table, tables):
    name = table.name
    out = [f"// Generated from {name}.table.", '#include "bridge/class_writer.h"', '#include "bridge/natives.h"',
           '#include "bridge_handles.h"', '#include "weft/init.h"', ""]
    if table.is_object or (table.field and not table.native):
        out.append(f"#include <{name}>")
    if table.impl:
        out.append('#include "bridge/qwidget_impl.h"' if table.impl not in ("qobject_impl", "qmodel_impl")
                   else '#include "bridge/qobject_impl.h"')
    out += [f'#include "{one}.h"'.replace(".h.h", ".h") if "/" in one else f"#include <{one}>" for one in table.includes]
    out += ["", "namespace weft::qt {", ""]
    if table.is_enum():
        out += [f"const Class_Generic& {name}::getClass()", "{",
                f"    static const Class_Generic result = details::build_enum({text(name)}, {text(table.values)}, {text(table.doc)});",
                "    return result;", "}", ""]
    else:
        base = table.handle_base().split("::")[-1]
        if table.is_object:
            out += [f"{name}::{name}(::{name}& object) : {base}(details::create_qobject_instance(&object, getClass())) {{}}",
                    f"{name}::{name}(QPointer<::QObject> object) : {base}(details::create_qobject_instance(object.data(), getClass())) {{}}",
                    f"::{name}* {name}::get() const", "{",
                    f"    return qobject_cast<::{name}*>(details::qobject_of(any()));", "}"]
        elif table.field:
            native = table.native_type()
            out += [f"{name}::{name}(const {native}& value) : {base}(details::make_value<{native}>(getClass(), value)) {{}}",
                    f"{native} {name}::get() const", "{",
                    f"    return *static_cast<{native}*>(details::foreign_argument(any(), typeid({native}), getClass()));", "}"]
        if table.noncopyable:
            out += [f"{name}::operator {table.noncopyable}*() const", "{",
                    f"    return details::raw(get());", "}"]
        out += [f"const Type& {name}::typeMask()", "{",
                f'    static const Type _weft_type = Foreign_Generic::typeMaskInstance("{name}", getClass());',
                "    return _weft_type;", "}", f"{name} {name}::cast(const Any& any)", "{",
                f"    return {name}(internal::cast_object(any, getClass()));", "}", ""]
        protected = [entry for entry in table.entries if entry.kind == "hook" and "=" not in entry.details]
        if protected:
            out += ["namespace {", "", "/// Reaches what the native class keeps to those that derive from it.",
                    f"struct Access : ::{name}", "{"]
            out += [f"    using ::{name}::{entry.name};" for entry in protected]
            out += ["};", "", "} // namespace", ""]
        out += [f"const Class_Generic& {name}::getClass()", "{"]
        if table.is_object or (table.field and not table.native):
            out.append(f"    using Self [[maybe_unused]] = ::{name};")
        out += ["    static const Class_Generic result = [] {",
                f"        details::class_writer c({text(name)}, {text(table.doc)});"]
        for one in table.bases:
            out.append({"I_Convertible": "        c.builder().convertible();",
                        "I_RuntimeOnly": "        c.builder().runtime_only();",
                        "I_Signal": ""}.get(one, f"        c.builder().base({one}::getClass());"))
        if table.example:
            out.append(f"        c.builder().example(String::fromStatic({text(table.example)}));")
        if table.is_object:
            out.append(f"        c.meta(::{name}::staticMetaObject);")
        if table.finalizer:
            out.append(f"        c.builder().finalizer({table.finalizer});")
        if table.field:
            out.append(f'        c.builder().native_field(internal::helpers::create_literal_method_identifier("{table.field}"));')
        if table.constructor:
            code = table.constructor.details["="]
            made = re.fullmatch(r"make\((.*)\)", code)
            if made:
                parameters = made.group(1)
                names = ", ".join(re.findall(r"(\w+)\s*(?:,|$)", parameters))
                impl = table.impl if table.impl == "qmodel_impl" else f"{table.impl}<Self>"
                code = (f"(const Any& self{', ' + parameters if parameters else ''}) "
                        f"{{ details::adopt_qobject(self, new internal::{impl}({names})); }}")
            out.append(f"        c.builder().constructor(String::fromStatic({text(table.constructor.signature())}), internal::bind(+[]{code}));")
        for one, values, doc in table.enums:
            out.append(f"        c.enumeration({text(one)}, {text(values)}, {text(doc)});")
        for entry in table.entries:
            out.append(write_entry(table, entry))
        if table.is_object and name == "QObject":
            out += ['        c.builder().field_entry("_owned", Boolean::typeMask());',
                    '        c.builder().field_entry("_qobject", Type());']
        out += ["        return c.build();", "    }();", "    return result;", "}", ""]
    register = ""
    if table.field and owner_of_native(table, tables) is table:
        register = f" details::register_value_class<{name}, {table.native_type()}>();"
    out += ["namespace {", "",
            f"const bool atStart = (internal::add_init_handler(2, [] {{ {name}::getClass();{register} }}), true);", "",
            "} // namespace", "} // namespace weft::qt"]
    return out


def write_entry(table, entry):
    details, doc, name = entry.details, text(entry.doc), entry.name
    hook = details.get("bypass")
    if entry.kind == "property":
        type_name = text(entry.rest.lstrip(": "))
        if "get" not in details:
            return f'        c.meta_property("{name}", {type_name}, {doc});'
        getter = callee(table, details["get"], hook)
        setter = callee(table, details["set"]) if "set" in details else "nullptr"
        return f'        c.property("{name}", {type_name}, {doc}, {getter}, {setter});'
    if entry.kind == "signal":
        if "get" in details:
            return f'        c.signal_of("{name}", {text(entry.rest)}, {doc}, {callee(table, details["get"])});'
        return f'        c.signal("{name}", {text(entry.rest)}, {doc}, "{details.get("as", "")}");'
    if entry.kind == "hook":
        function = callee(table, details.get("=", name), name, None if "=" in details else "Access")
        kind = ", class_entry::Kind::Hook"
    else:
        function = callee(table, details.get("=", name), hook)
        kind = ", class_entry::Kind::StaticMethod" if entry.kind == "static" else ""
    return f'        c.method("{name}", {text(entry.signature())}, {doc}, {function}{kind});'


def docs(tables):
    out = ["# Classes for scripts", "",
           "The global `qt` holds these classes. Besides what is listed, an object has all properties, signals and slots that Qt",
           "itself describes for its class. Parameters with `= ...` may be left out. The native class behind each is the one of",
           "the same name in Qt.", ""]
    for table in tables:
        bases = [base for base in table.bases if base not in INTERFACES]
        out += [f"## {table.name}", "", table.doc + (f" Derives from {', '.join(bases)}." if bases else ""), ""]
        if table.is_enum():
            out += [f"Values: {table.values}.", ""]
        if table.constructor:
            arguments = re.sub(r"\(\s*self(?:,\s*)?", "( ", table.constructor.signature(), count=1)
            out += ["```js", f"new qt.{table.name}{re.sub(r'[(] +[)]', '()', arguments)}"] + ["```", ""]
        if table.example:
            out += [f"Example: `{table.example}`", ""]
        for name, values, doc in table.enums:
            out += [f"- enum `{name}`: {doc} {values}"] if len(values) < 400 else [f"- enum `{name}`: {doc} {values[:380]} ..."]
        for entry in table.entries:
            word = {"method": "", "static": "static ", "property": "", "signal": "signal ", "hook": "hook "}[entry.kind]
            rest = entry.rest if entry.kind == "property" else " " + re.sub(r"\(\s*self,?\s*", "( ", entry.rest)
            lock = " (read only)" if entry.kind == "property" and "get" in entry.details and "set" not in entry.details else ""
            out.append(f"- {word}`{entry.name}{rest.rstrip()}`{lock}: {entry.doc}")
        out.append("")
    return out


def write(path, lines):
    content = "\n".join(line for line in lines) + "\n"
    if not path.exists() or path.read_text() != content:
        path.write_text(content)


def main():
    action, folder = sys.argv[1:3]
    tables = sorted_tables(folder)
    if action == "list":
        print(";".join(table.name for table in tables))
    elif action == "docs":
        write(pathlib.Path(sys.argv[3]), docs(sorted(tables, key=lambda table: table.name)))
    else:
        target = pathlib.Path(sys.argv[3])
        target.mkdir(parents=True, exist_ok=True)
        write(target / "bridge_handles.h", handles(tables))
        for table in tables:
            write(target / f"{table.name}.gen.cpp", write_class(table, tables))


if __name__ == "__main__":
    main()
