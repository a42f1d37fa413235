"""Shows the values of RVUtils in gdb: texts, moments, variants, collections, stores.

gdb loads it by itself with a library that came in a Debian package. With any other it takes a line
in ~/.gdbinit: source <prefix>/share/RVUtils/rvutils_gdb.py

Everything is read from memory and nothing of the program is called, so that core files are served,
too. What the memory cannot hold, such as a negative length, is told in angle brackets.

The layouts come from the program's debug information. Where the library has none, the program's own
must hold whole classes: compile it with -g -femit-class-debug-always (g++) or -g -fstandalone-debug
(clang).
"""

import datetime
import math

import gdb
import gdb.printing


class Corrupt(Exception):
    """What memory holds is no value; the argument says why."""


def check_memory(address, size):
    """Raises Corrupt unless the first and the last of `size` bytes can be read."""
    process = gdb.selected_inferior()
    for byte in (address, address + size - 1):
        try:
            process.read_memory(byte, 1)
        except gdb.MemoryError:
            raise Corrupt("no memory at 0x%x" % byte) from None


def read_pointer(pointer):
    """What a pointer points to."""
    if int(pointer) == 0:
        raise Corrupt("null pointer")
    value = pointer.dereference()
    check_memory(int(pointer), value.type.sizeof)
    return value


def pointers(value):
    """The pointers in a value, in order: an owner of the standard library, whichever it is, holds
    its object or its range by them."""
    for field in value.type.strip_typedefs().fields():
        if not hasattr(field, "bitpos"):
            continue
        part = value[field]
        code = part.type.strip_typedefs().code
        if code == gdb.TYPE_CODE_PTR:
            yield part
        elif code == gdb.TYPE_CODE_STRUCT:
            yield from pointers(part)


def vector_range(vector):
    """The first element of a std::vector, as a pointer, and how many there are."""
    found = pointers(vector)
    first, last = next(found), next(found)
    size = first.dereference().type.sizeof
    if size == 0:
        raise Corrupt("%s is not in the debug information" % first.dereference().type)
    count, rest = divmod(int(last) - int(first), size)
    if count < 0 or rest:
        raise Corrupt("elements from 0x%x to 0x%x" % (int(first), int(last)))
    if count:
        check_memory(int(first), count * size)
    return first, count


def characters(first, length):
    """A text of so many characters, NULs among them, in front of its terminator."""
    check_memory(int(first), (length + 1) * first.dereference().type.sizeof)
    if int(first[length]) != 0:
        raise Corrupt("no NUL behind %d characters" % length)
    whole = first.dereference().type.unqualified().array(length)
    # The last NUL of an array is not shown.
    return first.cast(whole.pointer()).dereference().format_string(address=False)


def string_text(string):
    length, capacity = int(string["m_Length"]), int(string["m_Capacity"])
    if not 0 <= length <= capacity:
        raise Corrupt("length %d, capacity %d" % (length, capacity))
    return characters(string["m_Data"], length)


def wide_text(text):
    """A BSTR: its length in bytes stands in front of it."""
    if int(text) == 0:
        return "null"
    prefix = text.cast(gdb.lookup_type("unsigned int").pointer()) - 1
    length = int(read_pointer(prefix)) // text.dereference().type.sizeof
    return characters(text, length)


DAY_0 = datetime.datetime(1899, 12, 30)
FIRST_DAY, LAST_DAY = -657434, 2958465


def moment_text(number):
    """The moment of an OLE Automation date, to the nearest second. Its fraction runs forward
    through the day on both sides of 0."""
    if math.isfinite(number):
        day = int(number)
        seconds = math.floor(abs(number - day) * 86400 + 0.5)
        if FIRST_DAY <= day and day + seconds // 86400 <= LAST_DAY:
            # The four digits of early years are not everywhere those of strftime.
            return (DAY_0 + datetime.timedelta(days=day, seconds=seconds)).isoformat(" ")
    return "no moment: %r" % number


def dated_text(value):
    status, number = int(value["m_status"]), float(value["m_dt"])
    names = ("valid", "invalid", "null")
    if not 0 <= status < len(names):
        raise Corrupt("status %d" % status)
    return "%s (%s)" % (moment_text(number), names[status]) if status == 0 else names[status]


def guid_text(guid):
    data = [int(guid["Data4"][i]) for i in range(8)]
    return "{%08X-%04X-%04X-%02X%02X-%s}" % (
        int(guid["Data1"]), int(guid["Data2"]), int(guid["Data3"]), data[0], data[1],
        "".join("%02X" % byte for byte in data[2:]))


def truth_text(value):
    return {0: "false", -1: "true"}.get(int(value), "%d, neither true nor false" % int(value))


def currency_text(value):
    units, parts = divmod(abs(int(value)), 10000)
    return "%s%d.%04d" % ("-" if int(value) < 0 else "", units, parts)


def address_text(pointer):
    return "0x%x" % int(pointer) if int(pointer) else "null"


def plain_text(value):
    return value.format_string()


# tag: its name, the field that holds a value of it, how that is shown
VARIANT_TAGS = {
    0: ("VT_EMPTY", None, None),
    1: ("VT_NULL", None, None),
    2: ("VT_I2", "iVal", plain_text),
    3: ("VT_I4", "lVal", plain_text),
    4: ("VT_R4", "fltVal", plain_text),
    5: ("VT_R8", "dblVal", plain_text),
    6: ("VT_CY", "long long", currency_text),
    7: ("VT_DATE", "dblVal", lambda value: moment_text(float(value))),
    8: ("VT_BSTR", "bstrVal", wide_text),
    9: ("VT_DISPATCH", "pdispVal", address_text),
    10: ("VT_ERROR", "scode", lambda value: "0x%08X" % (int(value) & 0xFFFFFFFF)),
    11: ("VT_BOOL", "boolVal", truth_text),
    12: ("VT_VARIANT", None, plain_text),
    13: ("VT_UNKNOWN", "punkVal", address_text),
    14: ("VT_DECIMAL", None, None),
    16: ("VT_I1", "cVal", plain_text),
    17: ("VT_UI1", "bVal", plain_text),
    18: ("VT_UI2", "uiVal", plain_text),
    19: ("VT_UI4", "ulVal", plain_text),
    20: ("VT_I8", "long long", plain_text),
    21: ("VT_UI8", "unsigned long long", plain_text),
    22: ("VT_INT", "lVal", plain_text),
    23: ("VT_UINT", "ulVal", plain_text),
}
VT_VARIANT, VT_ARRAY, VT_BYREF = 12, 0x2000, 0x4000


class View:
    """What is shown of a value: text(), and in derived classes parts() with their names."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        try:
            return self.text()
        except (Corrupt, gdb.error) as reason:
            return "<%s>" % reason


class Parts(View):
    def children(self):
        try:
            yield from self.parts()
        except (Corrupt, gdb.error) as reason:
            yield "[...]", "<%s>" % reason


class Text(View):
    def text(self):
        return string_text(self.value)


class WideText(View):
    def text(self):
        return wide_text(self.value["m_str"])


class Moment(View):
    def text(self):
        return dated_text(self.value)


class HeldMoment(View):
    def text(self):
        held = next(pointers(self.value["m_Value"]))
        return dated_text(read_pointer(held)) if int(held) else "no held value"


class Guid(View):
    def text(self):
        return guid_text(self.value)


class GuidNode(View):
    def text(self):
        return "%s -> %s" % (guid_text(self.value["m_Guid"]), address_text(self.value["m_Pointer"]))


class Variant(Parts):
    def __init__(self, value):
        super().__init__(value)
        self.tag = int(value["vt"])
        self.kind = self.tag & ~(VT_ARRAY | VT_BYREF)

    def cell_type(self):
        """The type of a value of this kind, in the variant itself or elsewhere."""
        field = VARIANT_TAGS[self.kind][1]
        if self.kind == VT_VARIANT:
            return gdb.lookup_type("tagVARIANT")
        if field is None:
            raise Corrupt("no value of this type stands outside of a variant")
        return gdb.lookup_type(field) if " " in field else self.value[field].type

    def text(self):
        if self.kind not in VARIANT_TAGS or self.tag == VT_VARIANT:
            raise Corrupt("no tag of a variant: 0x%x" % self.tag)
        name, field, show = VARIANT_TAGS[self.kind]
        if self.tag & VT_ARRAY:
            name = "VT_ARRAY|" + name
        if self.tag & VT_BYREF:
            name = "VT_BYREF|" + name
        try:
            return name + self.held_text(field, show)
        except (Corrupt, gdb.error) as reason:
            return "%s: <%s>" % (name, reason)

    def held_text(self, field, show):
        if self.tag & VT_ARRAY:
            array = self.array()
            return ": null" if array is None else " of %d" % int(array["rgsabound"][0]["cElements"])
        if self.tag & VT_BYREF:
            pointer = self.value["byref"]
            value = read_pointer(pointer.cast(self.cell_type().pointer()))
            return " -> " + show(value)
        if field is None:
            return ""
        if " " in field:
            return ": " + show(self.value["widest"][0].cast(self.cell_type()))
        return ": " + show(self.value[field])

    def array(self):
        """The SAFEARRAY, None for null."""
        pointer = self.value["parray"]
        if self.tag & VT_BYREF:
            pointer = read_pointer(self.value["pparray"])
        if int(pointer) == 0:
            return None
        array = read_pointer(pointer)
        if int(array["cDims"]) != 1:
            raise Corrupt("%d dimensions" % int(array["cDims"]))
        if self.kind in VARIANT_TAGS and int(array["cbElements"]) != self.cell_type().sizeof:
            raise Corrupt("elements of %d bytes" % int(array["cbElements"]))
        return array

    def parts(self):
        if not self.tag & VT_ARRAY or self.kind not in VARIANT_TAGS:
            return
        try:
            array = self.array()
        except (Corrupt, gdb.error):
            return  # text() says so
        if array is None:
            return
        show = VARIANT_TAGS[self.kind][2]
        bound = array["rgsabound"][0]
        first = array["pvData"].cast(self.cell_type().pointer())
        for i in range(int(bound["cElements"])):
            yield "[%d]" % (int(bound["lLbound"]) + i), show(read_pointer(first + i))


class Collection(Parts):
    """A collection says how many elements it holds."""

    def text(self):
        count = self.count()
        if count < 0:
            raise Corrupt("%d elements" % count)
        return "%s of %d" % (self.value.type.unqualified().strip_typedefs().name, count)

    def count(self):
        return int(self.value["m_Count"])


class List(Collection):
    def parts(self):
        node = self.value["m_Head"]
        for i in range(self.count()):
            if int(node) == 0:
                raise Corrupt("the list ends here")
            element = read_pointer(node)
            yield "[%d]" % i, element["m_Data"]
            node = element["m_Next"]


class Map(Collection):
    def parts(self):
        left = self.count()
        if left <= 0:
            return
        table = self.value["m_Table"]
        for bucket in range(int(self.value["m_Buckets"])):
            node = read_pointer(table + bucket)
            while int(node) and left:
                entry = read_pointer(node)
                yield "[%s]" % entry["m_Key"].format_string(), entry["m_Value"]
                node = entry["m_Next"]
                left -= 1
        if left:
            raise Corrupt("%d more are missing" % left)


class StringArray(Collection):
    def count(self):
        return vector_range(self.value["m_Texts"])[1]

    def parts(self):
        first, count = vector_range(self.value["m_Texts"])
        for i in range(count):
            yield "[%d]" % i, first[i]


class NameCache(Collection):
    def count(self):
        return vector_range(self.value["m_Associations"])[1]

    def parts(self):
        first, count = vector_range(self.value["m_Associations"])
        for i in range(count):
            yield "[%d]" % int(first[i]["id"]), first[i]["name"]


class IdTable(Collection):
    def parts(self):
        tags, size = vector_range(self.value["m_Tags"])
        slots, slot_count = vector_range(self.value["m_Slots"])
        if size != slot_count:
            raise Corrupt("%d tags for %d slots" % (size, slot_count))
        for place in range(size):
            if int(tags[place]):
                yield "[%d]" % int(slots[place]["id"]), slots[place]["value"]


class CrossReference(Collection):
    def count(self):
        return int(self.value["m_Links"]["m_Count"])

    def parts(self):
        return IdTable(self.value["m_Links"]).parts()


class Links(View):
    def text(self):
        first, last = int(self.value["first"]), int(self.value["last"])
        if last < first:
            raise Corrupt("links from %d to %d" % (first, last))
        ids = (read_pointer(self.value["ids"] + i) for i in range(first, last))
        return "{%s}" % ", ".join(str(int(link)) for link in ids)


VIEWS = (
    ("^(CString|RVString)$", Text),
    ("^(ATL::)?CComBSTR$", WideText),
    ("^COleDateTime$", Moment),
    ("^RVDateTime$", HeldMoment),
    ("^(tagVARIANT|ATL::CComVariant|RVVariant)$", Variant),
    ("^_?GUID$", Guid),
    ("^RVGUIDNode$", GuidNode),
    ("^CStringArray$", StringArray),
    ("^CList<.*>$", List),
    ("^CMap<.*>$", Map),
    ("^RVNameCache$", NameCache),
    ("^RVDwordCrossRef$", CrossReference),
    ("^RVDwordCrossRef::Links$", Links),
    ("^rv::IdTable<.*>$", IdTable),
)


def make_printer():
    printer = gdb.printing.RegexpCollectionPrettyPrinter("RVUtils")
    for pattern, view in VIEWS:
        printer.add_printer(view.__name__, pattern, view)
    return printer


gdb.printing.register_pretty_printer(gdb.current_objfile(), make_printer(), replace=True)
