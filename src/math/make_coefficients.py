#!/usr/bin/env python3
"""Computes the polynomial coefficients of this folder's tables with 60 digits and writes the headers.

    python3 make_coefficients.py          (Debian: python3-mpmath, clang-format-14)

A polynomial on an interval interpolates the function at the Chebyshev points and is written in powers of the
distance from a stated centre; the number of its coefficients is the first that brings the error below the
stated bound.  Nothing here is random: a second run writes the same files.
"""

import pathlib
import subprocess

from mpmath import (atanh, bernoulli, cos, erfc, exp, linspace, log, loggamma, lu_solve, matrix, mp, mpf, nstr, pi,
                    rgamma, sqrt, taylor)

mp.dps = 60
HERE = pathlib.Path(__file__).parent


def interpolate(function, low, high, centre, count):
    """Coefficients of powers of (x - centre), lowest first."""
    low, high, centre = mpf(low), mpf(high), mpf(centre)
    nodes = [(low + high) / 2 + (high - low) / 2 * cos(pi * (2 * i + 1) / (2 * count)) for i in range(count)]
    powers = matrix(count, count)
    values = matrix(count, 1)
    for i, x in enumerate(nodes):
        values[i] = function(x)
        for j in range(count):
            powers[i, j] = (x - centre)**j
    return list(lu_solve(powers, values))


def value_of(coefficients, x):
    total = mpf(0)
    for c in reversed(coefficients):
        total = total * x + c
    return total


def fit(function, low, high, centre, bound, count=None, relative=True):
    while True:
        coefficients = interpolate(function, low, high, centre, count or 4)
        worst = mpf(0)
        for x in linspace(mpf(low), mpf(high), 203)[1:-1]:
            wanted = function(x)
            error = abs(value_of(coefficients, x - centre) - wanted)
            worst = max(worst, error / abs(wanted) if relative else error)
        if worst < bound:
            return coefficients
        count = (count or 4) + 1


def fit_all(pieces, bound, relative=True):
    """Pieces (function, low, high, centre), all with as many coefficients as the longest needs."""
    count = max(len(fit(*piece, bound, relative=relative)) for piece in pieces)
    return [interpolate(*piece, count) for piece in pieces]


def number(value):
    return nstr(value, 20, strip_zeros=False, min_fixed=0, max_fixed=0)


def one_row(name, comment, coefficients):
    values = ", ".join(number(c) for c in coefficients)
    return f"// {comment}\ninline constexpr double {name}[{len(coefficients)}] = {{{values}}};\n"


def many_rows(name, comment, rows):
    values = ",\n".join("{" + ", ".join(number(c) for c in row) + "}" for row in rows)
    comment = comment.replace("\n", "\n// ")
    return f"// {comment}\ninline constexpr double {name}[{len(rows)}][{len(rows[0])}] = {{{values}}};\n"


def write(name, opening, *tables):
    guard = f"VEYRA_MATH_{name.upper()}_H_"
    opening = opening.replace("\n", "\n// ")
    text = (f"// {opening}\n//\n// Written by make_coefficients.py.\n\n#ifndef {guard}\n#define {guard}\n\n"
            "namespace KxMath_940 {\n\n" + "\n".join(tables) + f"\n}}  // namespace KxMath_940\n\n#endif  // {guard}\n")
    path = HERE / f"{name}.h"
    path.write_text(text)
    subprocess.run(["clang-format-14", "-i", str(path)], check=True)
    print(path.name, len(text))


def error_functions():
    start = mpf("3.97886080735226")

    def scaled(t):
        x = start / t - start
        return exp(x * x) * erfc(x) / t if t > mpf("0.01") else 1 / (sqrt(pi) * t * x) * asymptotic(x)

    def asymptotic(x):
        total, term, k = mpf(0), mpf(1), 0
        while abs(term) > mpf(10)**-55 and k < 120:
            total += term
            k += 1
            term *= -mpf(2 * k - 1) / (2 * x * x)
        return total

    small = fit_all([(lambda u: (1 - erfc(sqrt(u))) / sqrt(u) if u else 2 / sqrt(pi), k, k + 1, k)
                     for k in range(5)], mpf("3e-18"))
    middle = fit_all([(lambda x: erfc(x)**(mpf(1) / 16), k, k + 1, k) for k in range(2, 7)], mpf("2e-17"))
    tail = fit(scaled, mpf("1e-9"), 1, mpf("0.5"), mpf("2e-17"), 20)
    write("ErrorFunctionTablesInternal",
          "Polynomials of the error functions, in the pieces of Ooura's error functions (T. Ooura, 1996).",
          many_rows("kErfSmall", "erf(x) / x in powers of x^2 - k, row k for k <= x^2 < k + 1.", small),
          many_rows("kErfcRoot", "erfc(x)^(1/16) in powers of x - k, row k - 2 for k <= x < k + 1.", middle),
          one_row("kErfcScaled", "erfc(x) e^(x^2) / t in powers of t - 1/2, t = 3.97886080735226 / (x + 3.97886080735226).",
                  tail))


def remainder(z):
    return loggamma(z) - (z - mpf(1) / 2) * log(z) + z - log(2 * pi) / 2


def log_gamma():
    reciprocal = fit_all([(lambda x: rgamma(x) / x if x else mpf(1), 0, mpf(1) / 4, 0),
                          (lambda x: rgamma(x) / x, mpf(1) / 4, mpf(1) / 2, mpf(1) / 4)], mpf("3e-18"))
    near_two = fit(lambda x: loggamma(x) / (x - 2) if x != 2 else taylor(loggamma, 2, 1)[1],
                   mpf("1.5"), mpf("2.5"), 2, mpf("2e-17"))
    unit = fit_all([(loggamma, k - mpf(1) / 2, k + mpf(1) / 2, k) for k in range(3, 9)], mpf("2e-17"))
    stirling = [bernoulli(2 * k) / (2 * k * (2 * k - 1)) for k in range(1, 10)]
    rest = fit_all([(remainder, 1, 2, mpf("1.5")), (remainder, 2, 4, 3), (remainder, 4, 8, 6)],
                   mpf("4e-18"), relative=False)
    write("LogGammaTablesInternal",
          "Polynomials of the logarithm of the gamma function.  Stirling's series: Abramowitz and Stegun (1964), 6.1.41.",
          many_rows("kReciprocalGamma", "1 / (x Gamma(x)) for 0 < x < 1/4 in powers of x, for x up to 1/2 in powers of x - 1/4.",
                    reciprocal),
          one_row("kLogGammaNearTwo", "ln Gamma(2 + z) / z in powers of z, |z| <= 1/2.", near_two),
          many_rows("kLogGammaUnit", "ln Gamma(k + z) in powers of z, |z| <= 1/2, row k - 3 for k = 3 .. 8.", unit),
          one_row("kStirling", "Stirling's series: the coefficient of z^-(2k+1), k = 0 ..", stirling),
          many_rows("kStirlingRemainder",
                    "What Stirling's formula leaves: ln Gamma(z) - (z - 1/2) ln z + z - ln(2 pi)/2, in powers of z - 1.5 up to\n"
                    "z = 2, of z - 3 up to 4, of z - 6 up to 8.", rest))


def deficit():
    # (ln((1+v)/(1-v)) - 2v) / (2 v^3) in powers of v^2.
    series = fit(lambda s: (atanh(sqrt(s)) / sqrt(s) - 1) / s if s > mpf("1e-20") else mpf(1) / 3 + s / 5,
                 0, mpf(1) / 9, 0, mpf("2e-17"))
    write("DevianceTablesInternal", "The polynomial of ln(1 + x) without its first terms.",
          one_row("kArtanhRest", "(artanh(v) - v) / v^3 in powers of v^2, |v| <= 1/3.", series))


def uniform_gamma():
    """Temme's coefficients d(k, n): Temme (1979), equation 3.10 and following."""
    levels, degree = 12, 40
    # mu = lambda - 1 as a series in eta, where eta^2 / 2 = mu - ln(1 + mu):  eta (1 + mu) = mu mu'.
    count = degree + 2 * levels + 4
    alpha = [mpf(0), mpf(1)]
    for n in range(2, count):
        # coefficient of eta^n in mu mu' equals that in eta + eta mu.
        known = sum(alpha[i] * alpha[n + 1 - i] * (n + 1 - i) for i in range(2, n))
        alpha.append((alpha[n - 1] - known) / (n + 1))
    gammas = taylor_of_scaled_gamma(levels)
    rows = [[mpf(-1) / 3] + [(n + 2) * alpha[n + 2] for n in range(1, count - 3)]]
    for k in range(1, levels):
        previous = rows[-1]
        rows.append([(-1)**k * gammas[k] * rows[0][n] + (n + 2) * previous[n + 2]
                     for n in range(len(previous) - 2)])
    # What counts at a = 1000 and |eta| = 0.48.
    tables = []
    for k in range(levels):
        used = [n for n in range(len(rows[k])) if abs(rows[k][n]) * mpf("0.48")**n / mpf(1000)**k > mpf("1e-17")]
        if not used:
            break
        tables.append(rows[k][:used[-1] + 1])
    return tables


def taylor_of_scaled_gamma(levels):
    """g_k of Gamma(z) ~ sqrt(2 pi / z) (z/e)^z sum g_k z^-k, from the exponential of Stirling's series."""
    exponent = [mpf(0)] * (levels + 1)
    for k in range(1, levels // 2 + 1):
        exponent[2 * k - 1] = bernoulli(2 * k) / (2 * k * (2 * k - 1))
    result = [mpf(1)]
    for n in range(1, levels + 1):
        result.append(sum(k * exponent[k] * result[n - k] for k in range(1, n + 1)) / n)
    return result


def write_uniform_gamma():
    text = []
    for k, row in enumerate(uniform_gamma()):
        text.append(one_row(f"kTemme{k}", f"c{k}(eta) in powers of eta.", row))
    write("UniformGammaTablesInternal",
          "Coefficients of the uniform asymptotic expansion of the incomplete gamma functions (N. M. Temme, 1979,\n"
          "\"The asymptotic expansion of the incomplete gamma functions\"), as many as count for a >= 1000, |eta| <= 0.48.",
          *text)


if __name__ == "__main__":
    error_functions()
    log_gamma()
    deficit()
    write_uniform_gamma()
