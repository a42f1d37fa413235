"""Evaluates a natvis file on values, member by member, as the debuggers that read it do."""

import re
from xml.etree import ElementTree

import gdb


class Natvis:
    def __init__(self, path):
        self.variables = set()
        text = re.sub(r' xmlns="[^"]*"', "", open(path, encoding="utf-8").read())
        self.types = [(re.escape(node.get("Name")).replace(r"\*", ".*"), node)
                      for node in ElementTree.fromstring(text.encode()).findall("Type")]

    def node_of(self, kind):
        """What the file says of a type, or of the first base that it knows."""
        for pattern, node in self.types:
            if re.fullmatch(pattern, str(kind.unqualified())):
                return node
        bases = [f.type for f in kind.fields() if f.is_base_class] if has_members(kind) else []
        return next(filter(None.__ne__, map(self.node_of, bases)), None)

    def evaluate(self, expression, value, node):
        for intrinsic in reversed(node.findall("Intrinsic")):
            expression = expression.replace(
                intrinsic.get("Name") + "()", "(%s)" % intrinsic.get("Expression"))
        names = dict.fromkeys(members(value.type), "$object->")
        names.update(dict.fromkeys(self.variables, "$"))
        gdb.set_convenience_variable("object", value.address)
        return gdb.parse_and_eval(re.sub(
            r"(?<![\w.>$])[A-Za-z_]\w*",
            lambda word: names.get(word[0], "") + word[0], expression))

    def hole(self, text, value, node):
        expression, form = re.fullmatch(r"(.*?)(?:,(d|x|bstr|\[.*\]s))?", text).groups()
        found = self.evaluate(expression, value, node)
        if form in ("d", "x"):
            return str(int(found)) if form == "d" else hex(int(found) & 0xFFFFFFFF)
        if form == "bstr":
            return 'L"%s"' % found.string()
        if form:
            length = self.evaluate(form[1:-2], value, node)
            return '"%s"' % found.string("latin-1", length=int(length))
        return self.show(found)

    def show(self, value):
        kind = value.type.strip_typedefs()
        node = self.node_of(kind)
        if node is None:
            return value.format_string()
        value = value.cast(kind)
        for display in node.findall("DisplayString"):
            condition = display.get("Condition")
            if condition is None or self.evaluate(condition, value, node):
                return re.sub(r"\{([^{}]*)\}", lambda m: self.hole(m[1], value, node), display.text)
        return None

    def whole(self, value):
        """What is shown of a value, and of its parts."""
        node = self.node_of(value.type.strip_typedefs())
        parts = [part for items in node.findall("Expand/*")
                 if self.evaluate(items.get("Condition", "1"), value, node)
                 for part in self.parts(items, value, node)]
        return self.show(value) + (" = " + ", ".join(parts) if parts else "")

    def parts(self, items, value, node):
        def count():
            return range(int(self.evaluate(items.find("Size").text, value, node)))

        if items.tag == "ExpandedItem":
            inner = self.evaluate(items.text, value, node)
            yield self.whole(inner).partition(" = ")[2]
        elif items.tag == "ArrayItems":
            first = self.evaluate(items.find("ValuePointer").text, value, node)
            for i in count():
                yield self.show(first[i])
        elif items.tag == "LinkedListItems":
            link = self.evaluate(items.find("HeadPointer").text, value, node)
            for _ in count():
                element = link.dereference()
                yield self.show(self.evaluate(items.find("ValueNode").text, element, node))
                link = self.evaluate(items.find("NextPointer").text, element, node)
        elif items.tag == "CustomListItems":
            yield from self.run(items, value, node)

    def run(self, block, value, node):
        """The statements of a list that is built by a program."""
        for statement in block:
            if statement.tag == "Variable":
                self.variables.add(statement.get("Name"))
                self.assign(statement.get("Name"), statement.get("InitialValue"), value, node)
            elif statement.tag == "Exec":
                self.assign(*statement.text.split(" = "), value, node)
            elif statement.tag == "Item":
                name = re.sub(r"\{(.*)\}", lambda m: self.hole(m[1], value, node),
                              statement.get("Name"))
                yield name + " " + self.show(self.evaluate(statement.text, value, node))
            elif statement.tag in ("If", "Loop"):
                while self.evaluate(statement.get("Condition"), value, node):
                    yield from self.run(statement, value, node)
                    if statement.tag == "If":
                        break

    def assign(self, name, expression, value, node):
        gdb.set_convenience_variable(name, self.evaluate(expression, value, node))


def has_members(kind):
    return kind.code in (gdb.TYPE_CODE_STRUCT, gdb.TYPE_CODE_UNION)


def members(kind):
    for field in kind.strip_typedefs().fields():
        if field.name and not field.is_base_class:
            yield field.name
        elif has_members(field.type.strip_typedefs()):
            yield from members(field.type)
