#!/usr/bin/env python3
"""Doubles and the texts they have in SQL, by decimal arithmetic, for SdkUtil_test.cpp.

    number_text_vectors.py COUNT > number_text_vectors.txt

The words are, in turn, the bits of a double, sixteen hexadecimal digits, and its text. COUNT is how
many of each random kind there are. The test reads the file beside it, or that which the environment
variable RVUTILS_NUMBER_TEXTS names.
"""
import decimal
import math
import random
import struct
import sys

decimal.getcontext().prec = 400


def text_of(value):
    if not math.isfinite(value):
        return "NULL"
    if abs(value) < 1e-14:
        return "0"
    # repr() gives the fewest digits that read back as the same double.
    number = decimal.Decimal(repr(value))
    rounded = number.quantize(decimal.Decimal("1e-15"), decimal.ROUND_HALF_UP)
    first = rounded.adjusted()
    cut = rounded.quantize(decimal.Decimal((0, (1,), first - 14)), decimal.ROUND_DOWN)
    text = format(cut, "f")
    return text.rstrip("0").rstrip(".") if "." in text else text


def kinds():
    """One double of each random kind."""
    bits = random.getrandbits(64)
    yield struct.unpack("<d", struct.pack("<Q", bits))[0]
    # Between the band around zero and what has no fraction any more.
    yield random.choice((1, -1)) * math.ldexp(random.getrandbits(53), random.randint(-105, 15))
    yield random.randint(-10**random.randint(1, 12), 10**9) / 100
    yield float(random.randint(-10**random.randint(1, 18), 10**17))
    yield float("%de%d" % (random.randint(1, 10**random.randint(1, 6)), random.randint(-16, 20)))
    # Halves of the 15th decimal.
    yield float("%d5e-16" % random.randint(1, 10**random.randint(1, 15)))
    yield random.random()


def neighbours(value):
    yield from (math.nextafter(value, -math.inf), value, math.nextafter(value, math.inf))


def fixed():
    yield from (0.0, -0.0, math.inf, -math.inf, math.nan, sys.float_info.max, 5e-324)
    yield from (0.1 + 0.2, 2 / 3, 10 / 3, 1234.56789012345678, 123456789012345.678, 8.2, 19.99)
    yield from (0.9999999999999999, 1.9999999999999998, 9.999999999999999e22)
    for power in range(-17, 24):
        yield from neighbours((-1) ** power * float("1e%d" % power))
    for power in (-300, -45, 50, 51, 52, 53, 54, 100, 300):
        yield from neighbours(float("1e%d" % power))
        yield from neighbours(2.0**power)
    for digits in ("25", "35", "99", "125", "999", "99999999999999", "123456789012344"):
        yield from neighbours(float(digits + "5e-16"))


def main():
    random.seed(1)
    values = list(fixed())
    for _ in range(int(sys.argv[1])):
        values.extend(kinds())
    line = ""
    for value in values:
        words = " %016x %s" % (struct.unpack("<Q", struct.pack("<d", value))[0], text_of(value))
        if line and len(line) + len(words) > 101:
            print(line[1:])
            line = ""
        line += words
    print(line[1:])


main()
