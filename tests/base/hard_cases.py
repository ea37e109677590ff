#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
#
# Writes HardCases.h: arguments whose results are hard to round, with the nearest doubles, computed
# with 700 binary digits by mpmath (Debian's python3-mpmath).
# Usage: hard_cases.py | clang-format >HardCases.h
import random
from fractions import Fraction

from mpmath import frexp, log, log1p, mp, mpf, power

mp.prec = 700
DIGITS = 53
LEAST = Fraction(1, 2**1074)
ABOVE_ALL = Fraction(2**1024)

# Found by stepping through 2^26 to 2^30 neighbouring arguments: the result is within 2^-26 to 2^-34
# of a double's last digit from halfway between two doubles. The first logarithm, within 2^-61, is
# from Lefevre and Muller, "Worst cases for correct rounding of the elementary functions in double
# precision", 2001.
NATURAL_LOGARITHMS = '''0x1.613955DC802F8p-35 0x1.52e6b447eab3dp-700 0x1.651327849c431p+500
    0x1.128b2fa81b81bp-1000 0x1.1818e86c6915cp-1000 0x1.0ed904db3afe3p-1000'''
LOGARITHMS_10 = '''0x1.6f0367be60c76p+500 0x1.3d9c179a7ae9bp-1000 0x1.1fb17c989deeep-700
    0x1.a170b36651c7cp-1000 0x1.f29d0de461425p-1000'''
POWERS = '''2.72 0x1.a79d7abe278bfp-6  2.72 -0x1.4fce0003d7aa1p-6  10 0x1.6be6ecc0db070p-6
    10 -0x1.a2e24c3a378ddp-6  2 0x1.5d7fd78611e13p-6  2 -0x1.8c5a07f6a70ddp-6
    4 0x1.a0441795f4466p-6  4 -0x1.a537ee5f4dc8fp-6  0.1 0x1.a378fb7291e91p-6
    0.1 -0x1.b76b551209940p-6  1234.5 0x1.58908e5611457p-6  1234.5 -0x1.a5441e0521b48p-6
    0x1.301850deb066bp-14 0.33  0x1.8c38fb4f6cc36p-16 0.333  0x1.907a70eeda7c0p+19 0.5
    0x1.34b9b5fd1de52p+14 -0x1.5555555555555p-2  0x1.6d76b0a7ad7f8p+0 1.5
    0x1.7731af4dfc647p+9 -2  0x1.5c90a976c7f17p-5 5  0x1.cb5c7444095b3p-5 7.3'''


def number(text):
    return float.fromhex(text) if 'x' in text else float(text)


def fraction(value):
    return Fraction(int(value.man)) * Fraction(2) ** int(value.exp) * (-1 if value < 0 else 1)


def nearest(value):
    """The double nearest to an mpf, as text."""
    magnitude = abs(fraction(mpf(value)))
    unit = max(Fraction(2) ** (int(frexp(abs(value))[1]) - DIGITS), LEAST)
    whole = round(magnitude / unit)  # of two equally near the even one
    if whole * unit >= ABOVE_ALL:
        return 'kInfinity'
    return float.hex(float(whole * unit) * (-1 if value < 0 else 1))


def powers_near_one():
    """The power is 1 and an odd number of halves of a digit, but for 2^-50 of one."""
    for base in [2.72, 10.0, 0.1, 3.0, 1e300] + [random.uniform(0.5, 2) for _ in range(5)]:
        for halves in (1, 3, 5, 1001, -1, -3, -7, -2001):
            digit = mpf(2) ** (-52 if halves > 0 else -53)
            yield base, float(log1p(halves * digit / 2) / log(mpf(base)))


def roots_modulo(rest, digits):
    """The numbers below 2^(digits + 1) whose square is `rest` modulo 2^digits."""
    root = 1
    for known in range(3, digits):
        if (root * root - rest) >> known & 1:
            root += 1 << (known - 1)
    half, modulus = 1 << (digits - 1), 1 << digits
    for candidate in {root, modulus - root, root ^ half, modulus - (root ^ half)}:
        assert (candidate * candidate - rest) % modulus == 0
        yield candidate
        yield candidate + modulus


def roots():
    """Squares of numbers of 54 digits, less than 2^-100 away from a double of even exponent."""
    for rest in (1, -7, 9, -15, 17, 33, -31):
        for root in roots_modulo(rest, 54):
            square = root * root - rest
            if root >> 53 == 1 and square < 1 << 107:
                yield float(square >> 54), 0.5


def squares():
    """Squares of 105 digits of which the last 52 are one half and next to nothing."""
    for rest in (2**51 + 1, 2**51 - 7, 2**51 + 9):
        for root in roots_modulo(rest, 52):
            if root >> 52 == 1 and root * root < 1 << 105:
                yield float(root), 2.0


def powers_at_the_ends():
    """Just above and just below half of the least double, three halves of it, and infinity."""
    for base in (2.72, 10.0, 4.0, 0.1, 1.0000001, 1e-300, 5e-324):
        for end in (mpf(2)**-1075, 3 * mpf(2)**-1075, mpf(2)**1024 - mpf(2)**970):
            exponent = float(log(end) / log(mpf(base)))
            step = float(mpf(2) ** (int(frexp(mpf(exponent))[1]) - DIGITS))
            for steps in (-2, -1, 0, 1, 2):
                yield base, exponent + steps * step


def table(name, kind, rows):
    print(f'inline constexpr {kind} {name}[] = {{')
    for row in rows:
        print(f"    {{{', '.join(row)}}},")
    print('};\n')


random.seed(1)
listed = [number(text) for text in POWERS.split()]
pairs = list(zip(listed[::2], listed[1::2]))
for more in (powers_near_one, roots, squares, powers_at_the_ends):
    pairs += more()
print('''// SPDX-License-Identifier: MIT
//
// Arguments whose results are hard to round, with the nearest doubles. Written by hard_cases.py.
#ifndef TALVANE_TESTS_BASE_HARDCASES_H
#define TALVANE_TESTS_BASE_HARDCASES_H

#include "SpecialDoubles.h"

struct HardPower {
    double base;
    double exponent;
    double nearest;
};

struct HardLogarithm {
    double value;
    double nearest;
};
''')
table('kHardPowers', 'HardPower',
      [[b.hex(), e.hex(), nearest(power(mpf(b), mpf(e)))] for b, e in pairs])
for name, values, base in (('kHardNaturalLogarithms', NATURAL_LOGARITHMS, None),
                           ('kHardLogarithms10', LOGARITHMS_10, 10)):
    numbers = [number(text) for text in values.split()]
    scale = log(mpf(base)) if base else mpf(1)
    table(name, 'HardLogarithm', [[x.hex(), nearest(log(mpf(x)) / scale)] for x in numbers])
print('#endif')
