"""What is shown of the values of values.cpp: by gdb's own views, and by the natvis file."""

import os
import sys

import gdb

sys.path.insert(0, os.path.dirname(__file__))
from natvis import Natvis

SAME = "as gdb shows it"
# a value, what gdb shows, what the natvis file shows (where it does not leave it to its debugger)
EXPECTED = (
    ("empty_text", '""', SAME),
    ("short_text", '"caf\\303\\251"'),
    ("long_text", '"a text that has to have its own block"', SAME),
    ("nul_inside", '"a\\000b"', '"a\0b"'),
    ("zero_text.value", "<no memory at 0x0>", "no text: null"),
    ("wild_text.value", "<length -286331154, capacity -286331154>",
     "no text: length -286331154, capacity -286331154"),
    ("wide_text", 'L"wide \\254\\040\\000\\000"', 'L"wide \u20ac"'),
    ("wide_nul", 'L"x\\000y"'),
    ("no_wide_text", "null", SAME),
    ("moment", "2024-02-29 23:59:58 (valid)", "2024-2-29 23:59:58 (valid)"),
    ("late_moment", "9999-12-31 23:59:59 (valid)", SAME),
    ("invalid_moment", "invalid", SAME),
    ("unheld_moment.value", "no held value", SAME),
    ("wild_moment.value", "<no memory at 0xeeeeeeeeeeeeeeee>"),
    ("first_day", "0100-01-01 00:00:00 (valid)", "100-1-1 0:0:0 (valid)"),
    ("before_day_0", "1899-12-29 06:00:00 (valid)", "1899-12-29 6:0:0 (valid)"),
    ("almost_midnight", "1900-01-01 00:00:00 (valid)", "1900-1-1 0:0:0 (valid)"),
    ("beyond", "no moment: 3000000.0 (valid)", "no moment: 3000000 (valid)"),
    ("not_a_number", "no moment: nan (valid)"),
    ("null_moment", "null", SAME),
    ("wild_status", "<status 17>", "no status: 17"),
    ("no_value", "VT_EMPTY", SAME),
    ("truth", "VT_BOOL: true", SAME),
    ("number", "VT_I4: -7", SAME),
    ("real", "VT_R8: 2.5", SAME),
    ("text", 'VT_BSTR: L"in a variant"', SAME),
    ("letter", "VT_I1: 65 'A'", SAME),
    ("null_text", "VT_BSTR: null", SAME),
    ("money", "VT_CY: -1.5000"),
    ("day", "VT_DATE: 1899-12-31 12:00:00"),
    ("status", "VT_ERROR: 0x80004005", SAME),
    ("large", "VT_UI8: 18446744073709551615", SAME),
    ("by_reference", "VT_BYREF|VT_I2 -> 12"),
    ("array", "VT_ARRAY|VT_I2 of 3 = {[5] = 0, [6] = 10, [7] = 20}",
     "array of 3, type 2 = 0, 10, 20"),
    ("broken_array", "VT_ARRAY|VT_I4: <elements of 2 bytes>"),
    ("no_tag", "<no tag of a variant: 0x1ee>", "tag 494"),
    ("wild_text_variant", "VT_BSTR: <no memory at 0xc>"),
    ("no_texts", "CStringArray of 0"),
    ("texts", 'CStringArray of 2 = {[0] = "one", [1] = "two"}', '2 texts = "one", "two"'),
    ("list", "CList<int, int const&> of 3 = {[0] = 3, [1] = 1, [2] = 2}", "3 elements = 3, 1, 2"),
    ("zero_list.value", "CList<int, int const&> of 0", "0 elements"),
    ("wild_list.value", "<-1229782938247303442 elements>"),
    ("no_map", "CMap<int, int, CString, char const*> of 0"),
    ("map", 'CMap<int, int, CString, char const*> of 2 = {[18] = "second", [1] = "first"}',
     '2 entries = [18] "second", [1] "first"'),
    ("wild_map.value",
     "CMap<int, int, int, int> of 1229782938247303441 = "
     "{[...] = <no memory at 0x1111111111111111>}"),
    ("guid", "{01234567-89AB-CDEF-FEDC-BA9876543210}"),
    ("node", "{01234567-89AB-CDEF-FEDC-BA9876543210} -> null"),
    ("cache", 'RVNameCache of 1 = {[77] = "a name"}', '1 names = 77: "a name"'),
    ("links", "RVDwordCrossRef of 1 = {[9] = {5, 6, 5}}", "links from 1 ids = [9] 3 links"),
)

# Bytes of a text are then shown in one way everywhere.
gdb.execute("set charset ASCII")
natvis = Natvis(gdb.convenience_variable("natvis_file").string())
wrong = 0
for name, by_gdb, *by_natvis in EXPECTED:
    value = gdb.parse_and_eval(name)
    views = [(value.format_string(), by_gdb)]
    if by_natvis:
        views.append((natvis.whole(value), by_gdb if by_natvis == [SAME] else by_natvis[0]))
    for shown, expected in views:
        if shown != expected:
            print("%s is shown as %r, not %r" % (name, shown, expected))
            wrong += 1
print("%d views are wrong" % wrong)
