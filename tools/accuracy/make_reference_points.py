#!/usr/bin/env python3
"""Computes the reference points of the distribution functions with 40 digits and more and writes them to
tests/math/reference/.

    python3 make_reference_points.py [NAME...]          (Debian: python3-mpmath)

Every file has one point a line: the arguments, which are doubles, then the values (17 digits) and the slopes (4
digits) that its first line names.  The arguments cover centre, both tails down to 1e-300, small and large parameters
and the seams between methods.  Seeds are fixed: a second run writes the same files.

The values come from positive series, evaluated in fixed-point numbers of as many digits as the smaller tail needs:
another method than the library's, except for the sums that define a distribution.
"""

import math
import pathlib
import random
import sys

from mpmath import erf, erfc, exp, fabs, floor, log, log1p, loggamma, mp, mpf, nstr, pi, sqrt

REFERENCE = pathlib.Path(__file__).parents[2] / "tests" / "math" / "reference"
DIGITS = 45
SMALLEST = mpf("1e-300")
# At least 2,000 of each function; not every point of a distribution has a quantile to look for, or tells a parameter.
ROWS = 2100
ROWS_OF = {"gamma": 2900, "beta": 2900, "f": 2900, "t": 2900, "noncentral_chi": 2700, "noncentral_f": 2500,
           "noncentral_t": 2500}


def short(value, digits=7):
    """A double whose text is short."""
    return float(f"{float(value):.{digits}g}")


def text(value):
    return repr(value)[:-2] if isinstance(value, float) and repr(value).endswith(".0") else repr(value)


def row(arguments, values, slopes=()):
    return " ".join([text(a) for a in arguments] + [nstr(mpf(v), 17, min_fixed=-3, max_fixed=5) for v in values] +
                    [nstr(mpf(s), 4, min_fixed=-3, max_fixed=5) for s in slopes])


class Points:
    """Rows without repetitions; those with a value that is no ordinary double are left out."""

    def __init__(self):
        self.rows = {}

    def add(self, arguments, values, slopes=()):
        if all(v == 0 or SMALLEST <= abs(v) < mpf("1e300") for v in values) and any(v != 0 for v in values):
            self.rows[tuple(arguments)] = row(arguments, values, slopes)

    def __len__(self):
        return len(self.rows)


# --- tails of the gamma and the beta distribution


def fixed(value, bits):
    return int(floor(mpf(value) * mpf(2)**bits))


def with_enough_digits(compute):
    """compute() gives two values that sum to 1; both come back with DIGITS digits."""
    for digits in (DIGITS + 15, DIGITS + 90, DIGITS + 330):
        mp.dps = digits
        lower, upper = compute(digits)
        enough = min(lower, upper) > mpf(10)**(DIGITS - 10 - digits)
        if enough:
            break
    mp.dps = DIGITS
    return (+lower, +upper) if enough else (mpf(0), mpf(0))


def gamma_tails(a, x):
    def compute(digits):
        bits = int(digits * 3.33) + 10
        scale, point, shape = 1 << bits, fixed(x, bits), fixed(a, bits)
        total, term, k = scale, scale, 0
        while term:
            k += 1
            term = term * point // (shape + (k << bits))
            total += term
        lower = exp(a * log(mpf(x)) - x - loggamma(mpf(a) + 1)) * total / mpf(scale)
        return lower, 1 - lower
    return with_enough_digits(compute)


def gamma_density(a, x):
    return exp((mpf(a) - 1) * log(mpf(x)) - x - loggamma(mpf(a)))


def beta_tails(a, b, point):
    """`point` gives x and 1 - x with the digits in force."""
    def compute(digits):
        x, y = point()
        if x > y:
            upper = series(b, a, y, x, digits)
            return 1 - upper, upper
        lower = series(a, b, x, y, digits)
        return lower, 1 - lower

    def series(a, b, x, y, digits):
        a, b = mpf(a), mpf(b)
        bits = int(digits * 3.33) + 10
        one = 1 << bits
        at, both, first = fixed(x, bits), fixed(a + b, bits), fixed(a + 1, bits)
        total, term, k = one, one, 0
        while term:
            term = (term * (both + (k << bits)) // (first + (k << bits)) * at) >> bits
            total += term
            k += 1
        return exp(a * log(x) + b * log(y) - log(a) - log_beta(a, b)) * total / mpf(one)
    return with_enough_digits(compute)


def log_beta(a, b):
    return loggamma(a) + loggamma(b) - loggamma(a + b)


def beta_density(a, b, x, y):
    a, b = mpf(a), mpf(b)
    return exp((a - 1) * log(x) + (b - 1) * log(y) - log_beta(a, b))


# --- arguments


def shapes(random_, index, least=1e-3):
    """Mostly between 1e-3 and 1e3, some up to 1e8, some where methods meet."""
    if index % 10 == 0:
        return short(10**random_.uniform(3, 8 if index % 40 == 0 else 6))
    if index % 10 == 1:
        return random_.choice([0.5, 1.0, 1.5, 2.0, 8.0, 10.0, 19.99, 20.0, 20.5, 50.0, 1000.0])
    if index % 10 == 2:
        return short(10**random_.uniform(math.log10(least), -1))
    return short(10**random_.uniform(-1.5, 3))


def deviate(random_):
    """Standard normal deviates from the centre to a tail of 1e-300."""
    return random_.choice([random_.uniform(-3, 3), random_.uniform(-10, 10), random_.uniform(-37, 37)])


def is_hopeless(a, b, odds):
    """Whether a beta variable lies so far out that its tail is below 1e-300."""
    x = odds / (1 + odds)
    n = a + b
    return a * math.log(n * x / a) + b * math.log(n * (1 - x) / b) < -740 if 0 < x < 1 else a + b > 1e4


def gamma_point(random_, a, index):
    kind = index % 7
    if kind == 0:
        return short(a * random_.choice([1, 0.6, 1.4, 0.599, 1.401, 1.0001, 0.9999]))
    if kind == 1 and a < 1e4:
        return short(math.exp((random_.uniform(-690, 0) + math.lgamma(a + 1)) / a)) if a > 0.9 else \
            short(10**random_.uniform(-250, 0))
    if kind == 2 and a < 100:
        return short(random_.uniform(0, 690) + 1e-3)
    u = 1 / (9 * a)
    x = a * (1 - u + deviate(random_) * math.sqrt(u))**3
    if x <= 0 or a < 0.3:
        x = 10**random_.uniform(-6, 1.5)
    return short(x, 7 if a < 1e4 else 10)


def generate(name, add_one):
    random_ = random.Random(f"reference points of {name}")
    points, index, rows = Points(), 0, ROWS_OF.get(name, ROWS)
    while len(points) < rows and index < 6 * rows:
        try:
            add_one(points, random_, index)
        except (OverflowError, ValueError, ZeroDivisionError):
            pass
        index += 1
    return points


# --- files: name, columns, one point


def normal(points, random_, index):
    x = short(deviate(random_) if index % 3 else random_.choice([-1, 1]) * 10**random_.uniform(-20, 1.56), 9)
    z = mpf(x)
    density = exp(-z * z / 2) / sqrt(2 * pi)
    points.add([x], [erfc(-z / sqrt(mpf(2))) / 2, density], [density, fabs(z) * density])


def general_normal(points, random_, index):
    mean = short(random_.uniform(-1, 1) * 10**random_.uniform(-3, 4))
    sd = short(10**random_.uniform(-3, 4))
    x = short(mean + sd * deviate(random_), 12)
    z = (mpf(x) - mpf(mean)) / mpf(sd)
    density = exp(-z * z / 2) / sqrt(2 * pi) / mpf(sd)
    points.add([x, mean, sd], [erfc(-z / sqrt(mpf(2))) / 2, density], [density, fabs(z) * density / mpf(sd)])


def error_function(points, random_, index):
    kind = index % 4
    x = 10**random_.uniform(-30, 0) if kind == 0 else random_.uniform(0, 7) if kind == 1 else random_.uniform(0, 26.2)
    if kind == 3:
        x = random_.choice([1, math.sqrt(2), math.sqrt(3), 2, 2.2, 3, 4, 5, 6, 6.9]) + random_.uniform(-1e-6, 1e-6)
    x = short(x * random_.choice([-1, 1]), 9)
    z = mpf(x)
    points.add([x], [erf(z), erfc(z)], [2 / sqrt(pi) * exp(-z * z)])


def probability(random_, index):
    """From 1e-300 to 1 - 1e-15."""
    kind = index % 4
    if kind == 0:
        return short(10**random_.uniform(-300, -1))
    if kind == 1:
        return 1 - short(10**random_.uniform(-15, -1))
    if kind == 2:
        return random_.choice([0.075, 0.925, 0.5, math.exp(-25), 1e-3]) + random_.uniform(-1e-9, 1e-9)
    return short(random_.uniform(0, 1), 9)


def normal_quantile(points, random_, index):
    p = probability(random_, index)
    if not 0 < p < 1:
        return
    mp.dps = 60
    tail = min(mpf(p), 1 - mpf(p))
    x = sqrt(-2 * log(tail)) if tail < 0.1 else mpf(0.5)
    for _ in range(200):
        # Newton's iteration on the logarithm of the tail.
        value = erfc(x / sqrt(mpf(2))) / 2
        step = log(value / tail) * value / (exp(-x * x / 2) / sqrt(2 * pi))
        x += step
        if abs(step) < mpf(10)**-45:
            break
    density = exp(-x * x / 2) / sqrt(2 * pi)
    mp.dps = DIGITS
    points.add([p], [x if p > 0.5 else -x], [1 / density])


def log_gamma(points, random_, index):
    kind = index % 4
    x = [10**random_.uniform(-300, 0), random_.uniform(0, 9), 10**random_.uniform(0, 300),
         random_.choice([1, 2, 0.25, 0.5, 1.5, 2.5, 3.5, 8]) + random_.choice([-1, 1]) * 10**random_.uniform(-15, -2)][kind]
    x = short(x, 16)
    mp.dps = 80
    value, slope = loggamma(mpf(x)), mp.digamma(mpf(x))
    mp.dps = DIGITS
    points.add([x], [value], [abs(slope)])


def log_binomial(points, random_, index):
    n = float(int(10**random_.uniform(0, 8 if index % 8 == 0 else 3)))
    k = float(random_.randint(0, int(n)) if index % 2 else int(n * 10**random_.uniform(-8, 0)))
    mp.dps = 80
    value = loggamma(mpf(n) + 1) - loggamma(mpf(k) + 1) - loggamma(mpf(n) - k + 1)
    mp.dps = DIGITS
    points.add([n, k], [value if 0 < k < n else mpf(0)])


def exponential(points, random_, index):
    rate = short(10**random_.uniform(-8, 8))
    x = short(10**random_.uniform(-290, 1) / rate if index % 2 else random_.uniform(0, 40) / rate)
    points.add([x, rate], [-mp.expm1(-mpf(x) * mpf(rate))], [mpf(rate) * exp(-mpf(x) * mpf(rate))])


def cauchy(points, random_, index):
    t = short(10**random_.uniform(-20, 299) if index % 2 else 10**random_.uniform(-2, 2))
    t = random_.choice([-1, 1]) * t
    upper = mp.atan2(1, mpf(t)) / pi
    density = 1 / (pi * (1 + mpf(t)**2))
    points.add([t], [mp.atan2(1, -mpf(t)) / pi, upper], [density])


def gamma(points, random_, index):
    a = shapes(random_, index)
    x = gamma_point(random_, a, index)
    if not 1e-300 < x < 1e300 or a * math.log(x / a) - (x - a) < -740:
        return
    lower, upper = gamma_tails(a, x)
    density = gamma_density(a, x)
    points.add([x, a], [lower, upper, density], [density, density * abs((mpf(a) - 1) / x - 1)])


def beta_arguments(random_, index):
    a, b = shapes(random_, index), shapes(random_, random_.randrange(10))
    if index % 40 == 0 and random_.random() < 0.7:
        b = short(a * 10**random_.uniform(-2, 0))
    if random_.random() < 0.5:
        a, b = b, a
    return a, b


def beta_odds(random_, a, b, index):
    kind = index % 6
    if kind == 0:
        return (a + 1) / (b + 1) * random_.choice([1, 1.0001, 0.9999])
    if kind == 1 and a < 1e4:
        return math.exp(max(-650, random_.uniform(-690, 0) / a))
    if kind == 2 and b < 1e4:
        return math.exp(min(650, random_.uniform(0, 690) / b))
    # About normal deviates of the logarithm of the odds.
    return a / b * math.exp(min(600, max(-600, deviate(random_) * math.sqrt(1 / a + 1 / b))))


def beta(points, random_, index):
    a, b = beta_arguments(random_, index)
    odds = beta_odds(random_, a, b, index)
    if is_hopeless(a, b, odds):
        return
    x = short(odds / (1 + odds), 12) if odds > 1e-6 else short(odds)
    if not 1e-300 < x < 1:
        return
    point = lambda: (mpf(x), 1 - mpf(x))
    lower, upper = beta_tails(a, b, point)
    density = beta_density(a, b, *point())
    points.add([x, a, b], [lower, upper], [density])


def f_distribution(points, random_, index):
    df1, df2 = beta_arguments(random_, index)
    if index % 9 == 0:
        df1 = 1.0
    x = short(beta_odds(random_, df1 / 2, df2 / 2, index) * df2 / df1, 10)
    if not 1e-290 < x < 1e290 or is_hopeless(df1 / 2, df2 / 2, x * df1 / df2):
        return

    def point():
        product = mpf(df1) * mpf(x)
        return product / (df2 + product), df2 / (df2 + product)
    lower, upper = beta_tails(df1 / 2, df2 / 2, point)
    at = point()
    density = beta_density(df1 / 2, df2 / 2, *at) * at[0] * at[1] / x
    points.add([x, df1, df2], [lower, upper], [density])


def student(points, random_, index):
    df = shapes(random_, index)
    if df == 1:
        return
    kind = index % 4
    if kind == 0:
        t = random_.choice([1, 0.9999, 1.0001, 10**random_.uniform(-10, 0)])
    elif kind == 1:
        t = 10**min(140, random_.uniform(0, 300 / df))
    else:
        t = math.sqrt(df * math.expm1(min(300, deviate(random_)**2 / df)))
    t = short(t, 9) * random_.choice([-1, 1])
    if t == 0 or is_hopeless(0.5, df / 2, t * t / df):
        return

    def point():
        square = mpf(t) * mpf(t)
        return df / (df + square), square / (df + square)
    outer, _ = beta_tails(df / 2, 0.5, point)
    d = mpf(df)
    density = exp(loggamma((d + 1) / 2) - loggamma(d / 2) - log(d * pi) / 2 - (d + 1) / 2 * log1p(mpf(t)**2 / d))
    slope = density * (d + 1) * abs(mpf(t)) / (d + mpf(t)**2)
    lower, upper = (1 - outer / 2, outer / 2) if t > 0 else (outer / 2, 1 - outer / 2)
    points.add([t, df], [lower, upper, density], [density, slope])


def quantile(name):
    """Points of another file, with p a double and the quantile refined to the p that it is."""
    tails_of = {
        "gamma": lambda x, a: (*gamma_tails(a, x), gamma_density(a, x)),
        "beta": lambda x, a, b: (*beta_tails(a, b, lambda: (mpf(x), 1 - mpf(x))), beta_density(a, b, x, 1 - x)),
        "f": lambda x, df1, df2: f_tails(x, df1, df2),
        "t": lambda t, df: t_tails(t, df),
    }[name]

    def add_one(points, lines):
        for line in lines:
            if len(points) >= ROWS:
                return
            arguments = [float(v) for v in line.split()[:1 + (2 if name in ("beta", "f") else 1)]]
            x, parameters = mpf(arguments[0]), arguments[1:]
            lower, upper, density = tails_of(x, *parameters)
            p = float(lower)
            if not 1e-300 <= p <= 1 - 1e-15 or density == 0:
                continue
            mp.dps = 60
            for _ in range(6):
                wanted = min(mpf(p), 1 - mpf(p))
                tail = lower if p < 0.5 else upper
                relative = log(tail / wanted)
                if abs(relative) < mpf("1e-15"):
                    x += (mpf(p) - lower if p < 0.5 else upper - (1 - mpf(p))) / density
                    break
                x += (-1 if p < 0.5 else 1) * relative * tail / density
                if x <= 0 and name != "t" or x >= 1 and name == "beta":
                    break
                lower, upper, density = tails_of(x, *parameters)
                mp.dps = 60
            else:
                continue
            mp.dps = DIGITS
            if name != "t" and not (x > 0 and (x < 1 or name != "beta")):
                continue
            points.add([p] + parameters, [x], [min(mpf(p), 1 - mpf(p)) / density])
    return add_one


def f_tails(x, df1, df2):
    def point():
        product = mpf(df1) * x
        return product / (df2 + product), df2 / (df2 + product)
    lower, upper = beta_tails(df1 / 2, df2 / 2, point)
    at = point()
    return lower, upper, beta_density(df1 / 2, df2 / 2, *at) * at[0] * at[1] / x


def t_tails(t, df):
    def point():
        return df / (df + t * t), t * t / (df + t * t)
    outer, _ = beta_tails(df / 2, 0.5, point)
    d = mpf(df)
    density = exp(loggamma((d + 1) / 2) - loggamma(d / 2) - log(d * pi) / 2 - (d + 1) / 2 * log1p(t * t / d))
    lower, upper = (1 - outer / 2, outer / 2) if t > 0 else (outer / 2, 1 - outer / 2)
    return lower, upper, density


def binomial_distribution(points, random_, index):
    n = float(int(10**random_.uniform(3, 8 if index % 40 == 0 else 5) if index % 10 == 0 else 10**random_.uniform(0, 3)))
    p = short(random_.choice([random_.uniform(0, 1), 10**random_.uniform(-8, 0), 0.5, 1 - 10**random_.uniform(-4, 0)]))
    if not 0 < p < 1:
        return
    k = math.floor(n * p + deviate(random_) * math.sqrt(n * p * (1 - p)) + random_.uniform(-1, 2))
    k = float(min(max(k, 0), n - 1))
    lower, _ = beta_tails(n - k, k + 1, lambda: (1 - mpf(p), mpf(p)))
    mp.dps = 80
    term = exp(loggamma(mpf(n) + 1) - loggamma(mpf(k) + 1) - loggamma(mpf(n) - k + 1) + k * log(mpf(p)) +
               (mpf(n) - k) * log(1 - mpf(p)))
    mp.dps = DIGITS
    points.add([k, n, p], [lower, term])


def negative_binomial(points, random_, index):
    r = shapes(random_, index)
    p = short(random_.choice([random_.uniform(0, 1), 10**random_.uniform(-6, 0), 0.5]))
    if not 0 < p < 1:
        return
    mean, deviation = r * (1 - p) / p, math.sqrt(r * (1 - p)) / p
    x = float(max(0, math.floor(mean + random_.uniform(-6, 30) * deviation)))
    if x > 1e8:
        return
    mp.dps = 80
    term = exp(loggamma(x + mpf(r)) - loggamma(mpf(x) + 1) - loggamma(mpf(r)) + r * log(mpf(p)) + x * log1p(-mpf(p)))
    mp.dps = DIGITS
    points.add([x, r, p], [term])


def hypergeometric(points, random_, index):
    total = int(10**random_.uniform(3, 8 if index % 40 == 0 else 5) if index % 10 == 0 else 10**random_.uniform(0.3, 3))
    sample, successes = random_.randint(1, total), random_.randint(1, total)
    if index % 3 == 0:
        sample = max(1, int(total * 10**random_.uniform(-3, 0)))
    low, high = max(0, sample - total + successes), min(sample, successes)
    mean = sample * successes / total
    deviation = math.sqrt(max(0.0, mean * (total - sample) / total * (total - successes) / max(1, total - 1)))
    x = min(max(round(mean + deviate(random_) * deviation), low), high)
    mp.dps = 80
    log_choose = lambda n, k: loggamma(mpf(n) + 1) - loggamma(mpf(k) + 1) - loggamma(mpf(n - k) + 1)
    term = exp(log_choose(successes, x) + log_choose(total - successes, sample - x) - log_choose(total, sample))
    # The sum below x relative to the term at x, in fixed-point numbers.
    bits = 260
    relative = total_sum = 1 << bits
    for i in range(x, low, -1):
        relative = relative * (i * (total - successes - sample + i)) // ((successes - i + 1) * (sample - i + 1))
        if not relative:
            break
        total_sum += relative
    lower = term * total_sum / mpf(2)**bits
    mp.dps = DIGITS
    points.add([float(x), float(total), float(sample), float(successes)], [min(lower, mpf(1)), term])


def poisson_mixture(mean, shape, lower_at, drop):
    """Sum of Poisson weights times lower_at(j), which falls by drop(j) = (value, ratio to the one before)."""
    top = int(mean + 30 * math.sqrt(mean + 1) + 400)
    p = lower_at(top)
    g = drop(top)
    m = mpf(mean)
    w = exp(-m + top * log(m) - loggamma(mpf(top) + 1))
    total = w * p
    for j in range(top, 0, -1):
        g = g * shape(j)
        p += g
        w = w * j / m
        total += w * p
        if j < mean and w * p < total * mpf(10)**-mp.dps:
            break
    return total


def degrees(random_, index):
    """Of freedom, some so few that the density falls over many powers of ten."""
    return short(10**random_.uniform(-3, -1)) if index % 8 == 7 else short(10**random_.uniform(-1, 3))


def noncentral_chi(points, random_, index):
    df = degrees(random_, index)
    lam = short(10**random_.uniform(3, 6.5) if index % 40 == 0 else 10**random_.uniform(-3, 3))
    mean, deviation = df + lam, math.sqrt(2 * (df + 2 * lam))
    x = mean + deviate(random_) * deviation
    if x <= 0:
        x = 10**random_.uniform(-8, 1)
    x = short(x)
    mp.dps = 60

    def value(df):
        a, half = mpf(df) / 2, mpf(x) / 2
        prefactor = lambda j: exp((a + j) * log(half) - half - loggamma(a + j + 1))
        return poisson_mixture(lam / 2, lambda j: (a + j) / half, lambda j: gamma_series(a + j, half), prefactor)
    lower, more = value(mpf(df)), value(mpf(df) + 2)
    density = x_density_chi(x, df, lam)
    mp.dps = DIGITS
    points.add([x, df, lam], [lower], [density, (lower - more) / 2])


def gamma_series(a, x):
    bits = int(mp.dps * 3.33) + 10
    scale, point, shape = 1 << bits, fixed(x, bits), fixed(a, bits)
    total, term, k = scale, scale, 0
    while term:
        k += 1
        term = term * point // (shape + (k << bits))
        total += term
    return exp(a * log(x) - x - loggamma(a + 1)) * total / mpf(scale)


def x_density_chi(x, df, lam):
    x, df, lam = mpf(x), mpf(df), mpf(lam)
    logarithm = -(x + lam) / 2 + (df / 4 - mpf(1) / 2) * log(x / lam) - log(2)
    return exp(logarithm) * mp.besseli(df / 2 - 1, sqrt(lam * x))


def beta_lower_series(a, b, x, y):
    bits = int(mp.dps * 3.33) + 10
    one = 1 << bits
    at, both, first = fixed(x, bits), fixed(a + b, bits), fixed(a + 1, bits)
    total, term, k = one, one, 0
    while term:
        term = (term * (both + (k << bits)) // (first + (k << bits)) * at) >> bits
        total += term
        k += 1
    return exp(a * log(x) + b * log(y) - log(a) - log_beta(a, b)) * total / mpf(one)


def noncentral_f(points, random_, index):
    df1, df2 = degrees(random_, index), degrees(random_, index // 2)
    lam = short(10**random_.uniform(3, 6) if index % 40 == 0 else 10**random_.uniform(-3, 3))
    width = math.sqrt(2 * (df1 + 2 * lam)) / (df1 + lam) + math.sqrt(2 / df2)
    x = short((df1 + lam) / df1 * math.exp(min(30, max(-300, deviate(random_) / 2 * width))))
    mp.dps = 60
    product = mpf(df1) * x
    u, v = product / (df2 + product), df2 / (df2 + product)
    a, b = mpf(df1) / 2, mpf(df2) / 2

    def value(a):
        drop = lambda j: exp((a + j) * log(u) + b * log(v) - log(a + j) - log_beta(a + j, b))
        return poisson_mixture(lam / 2, lambda j: (a + j) / ((a + b + j - 1) * u),
                               lambda j: beta_lower_series(a + j, b, u, v), drop)
    if v < 1e-2:
        return
    lower, more = value(a), value(a + 1)
    # The density by differences of the mixture's terms: dF/dx from F at a + j, exact in the same sum.
    density = poisson_density(lam / 2, a, b, u, v) * u * v / x
    mp.dps = DIGITS
    points.add([x, df1, df2, lam], [lower], [density, (lower - more) / 2])


def poisson_density(mean, a, b, u, v):
    top = int(mean + 30 * math.sqrt(mean + 1) + 400)
    m, total = mpf(mean), mpf(0)
    term = exp(-m + top * log(m) - loggamma(mpf(top) + 1) + (a + top - 1) * log(u) + (b - 1) * log(v) -
               log_beta(a + top, b))
    for j in range(top, -1, -1):
        total += term
        if j < mean and term < total * mpf(10)**-mp.dps:
            break
        if j:
            term = term * j / m * (a + j - 1) / ((a + b + j - 1) * u)
    return total


def t_series(t, df, delta):
    """P(T <= t) for t > 0 (Lenth 1989), with digits for what cancels."""
    t, df, delta = mpf(t), mpf(df), mpf(delta)
    x, y = t * t / (df + t * t), df / (df + t * t)
    half = delta * delta / 2
    b = df / 2
    top = int(half + 40 * sqrt(half + 1) + 800)
    total = mpf(0)
    for odd in (0, 1):
        a = mpf(1 + odd) / 2
        incomplete = beta_lower_series(a + top, b, x, y)
        drop = exp((a + top) * log(x) + b * log(y) - log(a + top) - log_beta(a + top, b))
        if odd == 0:
            w = exp(-half + top * log(half) - loggamma(mpf(top) + 1))
        else:
            w = delta / sqrt(mpf(2)) * exp(-half + top * log(half) - loggamma(top + mpf(3) / 2))
        total += w * incomplete
        for j in range(top, 0, -1):
            drop = drop * (a + j) / ((a + b + j - 1) * x)
            incomplete += drop
            w = w * (j if odd == 0 else j + mpf(1) / 2) / half
            total += w * incomplete
    return erfc(delta / sqrt(mpf(2))) / 2 + total / 2


def noncentral_t(points, random_, index):
    df = degrees(random_, index)
    delta = short(random_.choice([-1, 1]) * 10**random_.uniform(-3, 1.5))
    if df < 0.1:
        t = short(random_.choice([-1, 1]) * math.sqrt(df) * 10**random_.uniform(-2, 1))
    elif index % 3:
        t = short(delta + deviate(random_) / 2 * math.sqrt(1 + delta * delta / 2 / df))
    else:
        t = short(random_.choice([-1, 1]) * 10**random_.uniform(-3, 2))
    if t == 0 or t * t / df > 100:
        return
    # The lower tail of a negative t comes from 1 minus another one.
    step = mpf(10)**-15
    for mp.dps in (90,) if t > 0 else (120, 420):
        def lower_at(delta):
            return t_series(t, df, delta) if t > 0 else 1 - t_series(-t, df, -delta)
        lower = lower_at(mpf(delta))
        # The slope by delta, of which four digits are enough, from a difference.
        by_delta = abs(lower_at(mpf(delta) + step) - lower) / step
        if lower > mpf(10)**(60 - mp.dps):
            break
    density = t_density(t, df, delta)
    mp.dps = DIGITS
    if lower > 0:
        points.add([t, df, delta], [lower, density], [density, by_delta])


def t_density(t, df, delta):
    """Johnson, Kotz and Balakrishnan (1995), 31.13, with digits for what cancels."""
    mp.dps = 60 + int(abs(delta) * math.sqrt(df + delta * delta) if t * delta < 0 else 0)
    t, df, delta = mpf(t), mpf(df), mpf(delta)
    ratio = delta * t * sqrt(2 / (df + t * t))
    total, power, j = mpf(0), mpf(1), 0
    gammas = [mp.gamma((df + 1) / 2), mp.gamma((df + 2) / 2)]
    while True:
        term = gammas[j % 2] * power
        total += term
        if j > 2 * abs(ratio) * abs(delta) + 50 and abs(term) < abs(total) * mpf(10)**-(mp.dps - 5):
            break
        gammas[j % 2] *= (df + j + 1) / 2
        j += 1
        power *= ratio / j
    return exp(df / 2 * log(df) - delta**2 / 2 - log(pi) / 2 - loggamma(df / 2) - (df + 1) / 2 * log(df + t * t)) * total


FILES = {
    "normal": ("x : CdfStdNorm PdfNormalStandard : slopes", normal),
    "general_normal": ("x mean sd : CdfNorm PdfNormal : slopes", general_normal),
    "error_functions": ("x : derf derfc : slope of both", error_function),
    "normal_quantile": ("p : IdfStdNorm : slope", normal_quantile),
    "log_gamma": ("x : dnlgam : slope", log_gamma),
    "log_binomial": ("n k : dnlbnc", log_binomial),
    "exponential": ("x rate : cdfexp : slope", exponential),
    "cauchy": ("t : CdfT SigT with df 1 : slope of both", cauchy),
    "gamma": ("x shape : lower upper density : slopes of tails and density", gamma),
    "beta": ("x a b : lower upper : slope of both", beta),
    "f": ("x df1 df2 : lower upper : slope of both", f_distribution),
    "t": ("t df : lower upper density : slopes of tails and density", student),
    "binomial": ("k n p : CdfBin PdfBin", binomial_distribution),
    "negative_binomial": ("x r p : PdfNegBin", negative_binomial),
    "hypergeometric": ("x total sample successes : CDFHyper PdfHyper", hypergeometric),
    "noncentral_chi": ("x df lambda : NonCentralCdfChi : slopes by x and lambda", noncentral_chi),
    "noncentral_f": ("x df1 df2 lambda : NonCentralCdfF : slopes by x and lambda", noncentral_f),
    "noncentral_t": ("t df delta : NonCentralCdfT NonCentralPdfT : slopes by t and delta", noncentral_t),
    "gamma_quantile": ("p shape : x : min(p, 1 - p) / density", quantile("gamma")),
    "beta_quantile": ("p a b : x : min(p, 1 - p) / density", quantile("beta")),
    "f_quantile": ("p df1 df2 : x : min(p, 1 - p) / density", quantile("f")),
    "t_quantile": ("p df : t : min(p, 1 - p) / density", quantile("t")),
}


def write(name):
    mp.dps = DIGITS
    columns, add_one = FILES[name]
    if name.endswith("_quantile") and name != "normal_quantile":
        points = Points()
        add_one(points, (REFERENCE / f"{name.removesuffix('_quantile')}.txt").read_text().splitlines()[1:])
    else:
        points = generate(name, add_one)
    (REFERENCE / f"{name}.txt").write_text(f"# {columns}\n" + "".join(f"{line}\n" for line in points.rows.values()))
    print(name, len(points), flush=True)


if __name__ == "__main__":
    REFERENCE.mkdir(parents=True, exist_ok=True)
    for file_name in sys.argv[1:] or FILES:
        write(file_name)
