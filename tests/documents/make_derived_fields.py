#!/usr/bin/env python3
"""Writes a document whose derived fields use every built-in function, every kind of expression and every rule
for missing and invalid values, rows for it, and the values that this script computes for them by itself.

    python3 make_derived_fields.py          (Debian: python3-mpmath)

derived_fields.pmml, derived_fields.csv, derived_fields.expected.csv

The files are checked in, so that tests need no python.  Nothing here calls the library: dates come from
datetime, regular expressions from re, texts from str, the normal distribution from mpmath.
"""

import csv
import datetime
import math
import pathlib
import random
import re
import statistics
from xml.sax.saxutils import escape, quoteattr

import mpmath

mpmath.mp.dps = 40
HERE = pathlib.Path(__file__).parent
EPOCH = datetime.datetime(1970, 1, 1)
MISSING = None

# --- Fields: name, optype, dataType, and how their values count ------------------------------------------------

CONTENT = {
    "z": '<Value value="-9" property="missing"/><Value value="0"/><Value value="50"/><Value value="100"/>',
    "c": '<Value value="?" property="missing"/><Value value="a"/><Value value="b"/>',
    "g": '<Value value="1"/><Value value="2"/><Value value="3"/>',
}
FIELDS = [
    ("x", "continuous", "double"),
    ("y", "continuous", "double"),
    ("p", "continuous", "double"),
    ("z", "categorical", "double"),
    ("g", "ordinal", "integer"),
    ("s", "categorical", "string"),
    ("t", "categorical", "string"),
    ("c", "categorical", "string"),
    ("day", "continuous", "date"),
    ("moment", "continuous", "dateTime"),
    ("clock", "continuous", "time"),
]
TYPE = {name: data_type for name, _, data_type in FIELDS}
LISTED = {"z": [0.0, 50.0, 100.0], "c": ["a", "b"], "g": [1.0, 2.0, 3.0]}
USER_MISSING = {"z": -9.0, "c": "?"}


class Date:
    """Seconds since 1970 (since midnight for a time of day) and a kind."""

    def __init__(self, seconds, kind):
        self.seconds, self.kind = seconds, kind

    def moment(self):
        return EPOCH + datetime.timedelta(seconds=self.seconds)

    def text(self):
        at = self.moment()
        date, time = f"{at.year}-{at.month}-{at.day}", f"{at.hour}:{at.minute}:{at.second}"
        return {"date": date, "time": time, "dateTime": f"{date}T{time}"}[self.kind]


# --- Functions ---------------------------------------------------------------------------------------------------


class DomainError(Exception):
    pass


def same(a, b):
    return a == b or (abs(a - b) < 2.22045e-14 * max(abs(a), abs(b)))


def equal(a, b):
    if isinstance(a, Date) or isinstance(b, Date):
        return isinstance(a, Date) and isinstance(b, Date) and (a.seconds, a.kind) == (b.seconds, b.kind)
    if isinstance(a, str) != isinstance(b, str):
        return False
    return a.rstrip(" ") == b.rstrip(" ") if isinstance(a, str) else same(a, b)


def less(a, b):
    if isinstance(a, str):
        return a.rstrip(" ").encode() < b.rstrip(" ").encode()
    a, b = (v.seconds if isinstance(v, Date) else v for v in (a, b))
    return a - b <= -1e-14


def cdf(x):
    return float(mpmath.ncdf(x))


def quantile(p):
    if not 0 < p < 1:
        raise DomainError
    return float(mpmath.sqrt(2) * mpmath.erfinv(2 * mpmath.mpf(p) - 1))


def positive(value):
    if not value > 0:
        raise DomainError
    return value


def trunc(x):
    return float(int(x)) if -2147483648 < x < 2147483647 else MISSING


def rounded(x):
    whole = trunc(x)
    if whole is MISSING:
        return MISSING
    return whole if abs(x) - abs(whole) < 0.5 else whole + math.copysign(1, x)


def mod(a, b):
    if b == 0 or trunc(a / b) is MISSING:
        raise DomainError
    return math.fmod(a, b) if abs(a / b) < 1e6 else a - b * trunc(a / b)


def exp(x):
    if x > 709:
        raise DomainError
    return math.exp(x) if x > -708 else 0.0


def density(x, mean=0.0, deviation=1.0):
    z = (x - mean) / positive(deviation)
    return 0.0 if abs(z) > 37.61 else math.exp(-z * z / 2) * 0.3989422804014327 / deviation


def deviation(values):
    return statistics.stdev(values) if len(values) > 1 else MISSING


def some(function):
    return lambda values: function(values) if values else MISSING


def part(name, divide=False):
    return lambda at: float(getattr(at.moment(), name))


def difference(unit):
    return lambda a, b: (a.seconds - b.seconds) / unit


def substr(text, start):
    data = text.encode()
    return data[int(start) - 1 :].decode() if 1 <= start < len(data) else ""


def substring(text, start, count):
    units = text.encode("utf-16-le")
    if not 1 <= start < len(units) // 2 + 1 or count <= 0:
        return ""
    first = int(start) - 1
    return units[2 * first : 2 * (first + int(count))].decode("utf-16-le")


def outlier(x, method, centre, a, b, c):
    half = a * b / math.sqrt(c)
    if centre - half <= x <= centre + half:
        return x
    if method != 2:
        return MISSING
    return centre - half if x < centre else centre + half


def upper(text):
    return "".join(ch.upper() if ch.isascii() else ch for ch in text)


def lower(text):
    return "".join(ch.lower() if ch.isascii() else ch for ch in text)


SQUARE = {"day": 86400.0, "month": 30.4375 * 86400, "year": 365.25 * 86400, "hour": 3600.0, "minute": 60.0}
STRICT = {
    "+": lambda a, b: a + b,
    "-": lambda a, b: a - b,
    "*": lambda a, b: a * b,
    "/": lambda a, b: a / b if b else positive(0),
    "pow": lambda a, b: a**b if a > 0 or (a == 0 and b >= 0) or (a and float(b).is_integer()) else positive(0),
    "abs": abs,
    "exp": exp,
    "log10": lambda x: math.log10(positive(x)),
    "lg10": lambda x: math.log10(positive(x)),
    "ln": lambda x: math.log(positive(x)),
    "mod": mod,
    "round": rounded,
    "sqrt": lambda x: math.sqrt(x) if x >= 0 else positive(0),
    "trunc": trunc,
    "floor": lambda x: float(math.floor(x)),
    "ceil": lambda x: float(math.ceil(x)),
    "cdf.normal": lambda x, m, s: cdf((mpmath.mpf(x) - m) / positive(s)),
    "normalCDF": lambda x, m, s: cdf((mpmath.mpf(x) - m) / positive(s)),
    "cdfnorm": cdf,
    "stdNormalCDF": cdf,
    "idf.normal": lambda p, m, s: m + positive(s) * quantile(p),
    "normalIDF": lambda p, m, s: m + positive(s) * quantile(p),
    "stdNormalIDF": quantile,
    "pdf.normal": density,
    "normalPDF": density,
    "stdNormalPDF": lambda x: math.exp(-x * x / 2) / 2.5066282731988805,
    "erf": lambda x: 2 * cdf(x * 1.4142135623730951) - 1,
    "date_years_difference": difference(SQUARE["year"]),
    "date_months_difference": difference(SQUARE["month"]),
    "date_days_difference": difference(SQUARE["day"]),
    "time_hours_difference": difference(SQUARE["hour"]),
    "time_minutes_difference": difference(SQUARE["minute"]),
    "time_seconds_difference": difference(1.0),
    "year-from-date": part("year"),
    "month-from-date": part("month"),
    "day-from-date": part("day"),
    "hour-from-time": part("hour"),
    "minute-from-time": part("minute"),
    "second-from-time": part("second"),
    "equal": lambda a, b: float(equal(a, b)),
    "notEqual": lambda a, b: float(not equal(a, b)),
    "lessThan": lambda a, b: float(less(a, b)),
    "lessOrEqual": lambda a, b: float(not less(b, a)),
    "greaterThan": lambda a, b: float(less(b, a)),
    "greaterOrEqual": lambda a, b: float(not less(a, b)),
    "not": lambda x: float(x == 0),
    "matches": lambda text, pattern: float(re.search(pattern, text) is not None),
    "lowercase": lower,
    "lower": lower,
    "uppercase": upper,
    "concat": lambda *texts: "".join(texts),
    "replace": lambda text, pattern, by: re.sub(pattern, by.replace("$", "\\"), text),
    "ltrim": lambda text: text.lstrip(" \t"),
    "rtrim": lambda text: text.rstrip(" "),
    "trimend": lambda text: text.rstrip(" "),
    "substr": substr,
    "substring": substring,
    "length": lambda text: float(len(text.encode())),
    "value": lambda value: value,
    "recast_to_ordinal": lambda value: value,
    "recast_to_scale": lambda value: value,
    "threshold": lambda x, t: float(x > t),
    "outlierHandle": outlier,
}
LISTS = {
    "product": some(math.prod),
    "min": some(min),
    "max": some(max),
    "mean": some(lambda v: math.fsum(v) / len(v)),
    "avg": some(lambda v: math.fsum(v) / len(v)),
    "median": some(statistics.median),
    "sum": some(math.fsum),
    "sd": deviation,
    "variance": lambda v: deviation(v) ** 2 if len(v) > 1 else MISSING,
}

# --- Expressions: how they are written, and their value for a row --------------------------------------------------


class Value:
    def __init__(self, value, counted=None, invalid=False):
        self.value = value
        self.counted = value is MISSING if counted is None else counted  # missing by the field's own account
        self.invalid = invalid


class Ref:
    def __init__(self, name, missing=None):
        self.name, self.missing = name, missing

    def xml(self):
        extra = "" if self.missing is None else f" mapMissingTo={quoteattr(shown(self.missing))}"
        return f'<FieldRef field="{self.name}"{extra}/>'

    def get(self, row, derived):
        if self.name in derived:
            value, counted, invalid = derived[self.name], derived[self.name] is MISSING, False
        else:
            value = row[self.name]
            counted = value is MISSING or value == USER_MISSING.get(self.name)
            invalid = not counted and self.name in LISTED and value not in LISTED[self.name]
        if counted and self.missing is not None:
            return Value(self.missing)
        return Value(value, counted, invalid)


class Const:
    def __init__(self, value):
        self.value = value

    def xml(self):
        data_type = "string" if isinstance(self.value, str) else "double"
        return f'<Constant dataType="{data_type}">{escape(shown(self.value))}</Constant>'

    def get(self, row, derived):
        return Value(self.value)


def as_number(value):
    if not isinstance(value, str):
        return value
    try:
        return float(value.strip(" ")) if "_" not in value else MISSING
    except ValueError:
        return MISSING


class Apply:
    def __init__(self, function, *operands, missing=None, default=None, treatment=None, arrays=()):
        self.function, self.operands, self.arrays = function, operands, arrays
        self.missing, self.default, self.treatment = missing, default, treatment

    def xml(self):
        extra = "".join(
            f" {name}={quoteattr(shown(value))}"
            for name, value in (
                ("mapMissingTo", self.missing),
                ("defaultValue", self.default),
                ("invalidValueTreatment", self.treatment),
            )
            if value is not None
        )
        arrays = "".join(
            f'<Extension><Array type="real" n="{len(a)}">{" ".join(map(repr, a))}</Array></Extension>'
            for a in self.arrays
        )
        inner = "".join(operand.xml() for operand in self.operands) + arrays
        return f'<Apply function="{escape(self.function)}"{extra}>{inner}</Apply>'

    def get(self, row, derived):
        return Value(self.settle([operand.get(row, derived) for operand in self.operands]))

    def settle(self, given):
        if self.function in ("isMissing", "isNotMissing"):
            return float(given[0].counted == (self.function == "isMissing"))
        if self.function == "sysmis":
            return float(given[0].value is MISSING)
        if self.function == "imputeCatFieldMissingAgainstConTarget":
            return self.impute(*given)
        values = [v.value for v in given]
        if self.function in ("and", "or", "not") or (self.function == "if"):
            values = [as_number(v) if self.function != "if" or i == 0 else v for i, v in enumerate(values)]
        if_missing = self.missing if self.missing is not None else self.default
        as_missing = self.treatment == "asMissing"
        invalid = any(v.invalid for v in given)
        if self.function == "if":
            if values[0] is MISSING:
                return if_missing
            branch = 1 if values[0] == 1 else 2
            if branch < len(values) and values[branch] is MISSING:
                return if_missing
            taken = [given[0]] + given[branch : branch + 1]
            if as_missing and any(v.invalid for v in taken):
                return self.default
            return values[branch] if branch < len(values) else self.default
        if self.function in ("isIn", "isNotIn"):
            if values[0] is MISSING:
                return if_missing
            if as_missing and invalid:
                return self.default
            found = any(v is not MISSING and equal(values[0], v) for v in values[1:])
            return float(found == (self.function == "isIn"))
        if self.function in ("and", "or"):
            decisive = [v for v in values if v is not MISSING and (v == 0) == (self.function == "and")]
            if MISSING in values:
                if self.missing is not None:
                    return self.missing
                return float(self.function == "or") if decisive else self.default
            if as_missing and invalid:
                return self.default
            return float(bool(decisive) == (self.function == "or"))
        if MISSING in values and (self.function not in LISTS or self.missing is not None):
            return if_missing
        if as_missing and invalid:
            return self.default
        return self.compute(values, as_missing)

    def compute(self, values, as_missing):
        try:
            if self.function in LISTS:
                result = LISTS[self.function]([v for v in values if v is not MISSING])
            else:
                result = STRICT[self.function](*values)
        except (DomainError, OverflowError):
            return self.default if as_missing else MISSING
        if result is MISSING:
            return self.default
        if isinstance(result, float) and not math.isfinite(result):
            return self.default if as_missing else MISSING
        return result

    def impute(self, category, target):
        if not category.counted:
            return category.value
        if target.value is MISSING:
            return self.default
        means, variances = self.arrays
        nearest = min(range(len(means)), key=lambda i: abs(target.value - means[i]) / math.sqrt(variances[i]))
        return LISTED["g"][nearest]


class Norm:
    def __init__(self, field, points, outliers=None, missing=None):
        self.field, self.points, self.outliers, self.missing = field, points, outliers, missing

    def xml(self):
        extra = ("" if self.outliers is None else f' outliers="{self.outliers}"') + (
            "" if self.missing is None else f' mapMissingTo="{shown(self.missing)}"'
        )
        points = "".join(f'<LinearNorm orig="{o!r}" norm="{n!r}"/>' for o, n in self.points)
        return f'<NormContinuous field="{self.field}"{extra}>{points}</NormContinuous>'

    def get(self, row, derived):
        x = row[self.field]
        if x is MISSING:
            return Value(self.missing)
        points = self.points
        outside = x < points[0][0] or x > points[-1][0]
        if outside and self.outliers == "asMissingValues":
            return Value(self.missing)
        if outside and self.outliers == "asExtremeValues":
            return Value(points[0][1] if x < points[0][0] else points[-1][1])
        at = next((i for i in range(1, len(points)) if x <= points[i][0]), len(points) - 1)
        (x0, y0), (x1, y1) = points[at - 1], points[at]
        return Value(y0 + (x - x0) * (y1 - y0) / (x1 - x0))


class Indicator:
    def __init__(self, field, value, missing=None):
        self.field, self.value, self.missing = field, value, missing

    def xml(self):
        extra = "" if self.missing is None else f' mapMissingTo="{shown(self.missing)}"'
        return f'<NormDiscrete field="{self.field}" value={quoteattr(shown(self.value))}{extra}/>'

    def get(self, row, derived):
        source = Ref(self.field).get(row, derived)
        return Value(self.missing if source.counted else float(equal(source.value, self.value)))


class Bins:
    def __init__(self, field, bins, default=None, missing=None, copy=False):
        self.field, self.bins, self.default, self.missing, self.copy = field, bins, default, missing, copy

    def xml(self):
        extra = "".join(
            f" {name}={quoteattr(shown(value))}"
            for name, value in (("mapMissingTo", self.missing), ("defaultValue", self.default))
            if value is not None
        )
        inner = ""
        for value, closure, low, high in self.bins:
            margins = "".join(
                f' {name}="{margin!r}"'
                for name, margin in (("leftMargin", low), ("rightMargin", high))
                if margin is not None
            )
            inner += f'<DiscretizeBin binValue={quoteattr(shown(value))}><Interval closure="{closure}"{margins}/></DiscretizeBin>'
        if self.copy:
            inner += '<Extension name="recodeElseCopy"/>'
        return f'<Discretize field="{self.field}"{extra}>{inner}</Discretize>'

    def get(self, row, derived):
        x = row[self.field]
        if x is MISSING:
            return Value(self.missing)
        for value, closure, low, high in self.bins:
            above = low is None or x > low or (closure.startswith("closed") and x == low)
            below = high is None or x < high or (closure.endswith("Closed") and x == high)
            if above and below:
                return Value(value)
        return Value(x if self.copy else self.default)


class Map:
    def __init__(self, fields, rows, default=None, missing=None):
        self.fields, self.rows, self.default, self.missing = fields, rows, default, missing

    def xml(self):
        extra = "".join(
            f" {name}={quoteattr(shown(value))}"
            for name, value in (("mapMissingTo", self.missing), ("defaultValue", self.default))
            if value is not None
        )
        pairs = "".join(f'<FieldColumnPair field="{f}" column="in{i}"/>' for i, f in enumerate(self.fields))
        rows = ""
        for *key, output in self.rows:
            cells = "".join(f"<in{i}>{escape(shown(k))}</in{i}>" for i, k in enumerate(key))
            rows += f"<row>{cells}<out>{escape(shown(output))}</out></row>"
        return f'<MapValues outputColumn="out"{extra}>{pairs}<InlineTable>{rows}</InlineTable></MapValues>'

    def get(self, row, derived):
        key = [Ref(field).get(row, derived) for field in self.fields]
        if any(k.counted for k in key):
            return Value(self.missing)
        for *wanted, output in self.rows:
            if all(equal(k.value, w) for k, w in zip(key, wanted)):
                return Value(output)
        return Value(self.default)


class Lag:
    def __init__(self, field, n=1, blocks=()):
        self.field, self.n, self.blocks, self.history = field, n, blocks, []

    def xml(self):
        inner = "".join(f'<BlockIndicator field="{block}"/>' for block in self.blocks)
        return f'<Lag field="{self.field}" n="{self.n}">{inner}</Lag>'

    def get(self, row, derived):
        self.history.append((row[self.field], [row[block] for block in self.blocks]))
        if len(self.history) <= self.n:
            return Value(MISSING)
        value, blocks = self.history[-1 - self.n]
        now = self.history[-1][1]
        unchanged = all(
            (a is MISSING) == (b is MISSING) and (a is MISSING or equal(a, b)) for a, b in zip(blocks, now)
        )
        return Value(value if unchanged else MISSING)


# --- The document -------------------------------------------------------------------------------------------------

X, Y, P, Z, S, T, C = (Ref(name) for name in "xypzstc")
DAY, MOMENT, CLOCK = Ref("day"), Ref("moment"), Ref("clock")
A = Apply


def shown(value):
    if isinstance(value, Date):
        return value.text()
    if isinstance(value, str):
        return value
    return repr(value)


def derived_fields():
    """Yields (name, dataType, expression)."""
    number = 0

    def field(expression, data_type="double"):
        nonlocal number
        number += 1
        return f"v{number:03}", data_type, expression

    ops = {"two": (X, Y), "one": (X,)}
    for function in ("+", "-", "*", "/", "pow", "mod", "threshold", "equal", "notEqual", "lessThan", "lessOrEqual",
                     "greaterThan", "greaterOrEqual"):
        yield field(A(function, *ops["two"]))
    for function in ("abs", "exp", "log10", "lg10", "ln", "round", "sqrt", "trunc", "floor", "ceil", "cdfnorm",
                     "stdNormalCDF", "stdNormalPDF", "erf", "isMissing", "isNotMissing", "sysmis", "not", "value",
                     "recast_to_scale"):
        yield field(A(function, X))
    yield field(A("recast_to_ordinal", Ref("g")), "integer")
    yield field(A("stdNormalIDF", P))
    for function in LISTS:
        yield field(A(function, X, Y, Z))
        yield field(A(function, X, Y, Z, missing=7.0))
        yield field(A(function, X, Y, Z, default=8.0))
    for function in ("cdf.normal", "normalCDF", "pdf.normal", "normalPDF"):
        yield field(A(function, X, Const(1.0), Const(2.5)))
    for function in ("idf.normal", "normalIDF"):
        yield field(A(function, P, Const(1.0), Const(2.5)))
        yield field(A(function, P, X, Y, default=8.0, treatment="asMissing"))
    for function in ("date_years_difference", "date_months_difference", "date_days_difference",
                     "time_hours_difference", "time_minutes_difference", "time_seconds_difference"):
        yield field(A(function, MOMENT, DAY))
    for function in ("year-from-date", "month-from-date", "day-from-date"):
        yield field(A(function, DAY))
        yield field(A(function, MOMENT))
    for function in ("hour-from-time", "minute-from-time", "second-from-time"):
        yield field(A(function, CLOCK))
        yield field(A(function, MOMENT))
    for function in ("isIn", "isNotIn"):
        yield field(A(function, S, T, Const("a"), Const("12")))
        yield field(A(function, X, Y, Const(2.0), missing=7.0, default=8.0))
    for function in ("and", "or"):
        for extra in ({}, {"missing": 7.0}, {"default": 8.0}):
            yield field(A(function, X, Y, **extra))
            yield field(A(function, A("greaterThan", X, Const(0.0)), A("isMissing", Y), Z, **extra))
    for pattern in ("^a", "b+", "[0-9]+", "(a|z).$"):
        yield field(A("matches", S, Const(pattern)))
    for function in ("lowercase", "lower", "uppercase", "ltrim", "rtrim", "trimend"):
        yield field(A(function, S), "string")
    yield field(A("concat", S, Const("-"), T), "string")
    yield field(A("concat", A("uppercase", S), A("substring", T, Const(1.0), Const(2.0)), missing="none"), "string")
    yield field(A("replace", S, Const("[aeiou]"), Const("_")), "string")
    yield field(A("replace", S, Const("(b)(c)?"), Const("$1$1")), "string")
    for start in (-1.0, 1.0, 2.0, 3.7):
        yield field(A("substr", S, Const(start)), "string")
        for count in (-2.0, 1.0, 3.0, 99.0):
            yield field(A("substring", S, Const(start), Const(count)), "string")
    yield field(A("substring", S, A("abs", X), Const(2.0), default="none"), "string")
    yield field(A("length", S))
    yield field(A("length", A("concat", S, T)))
    for method in ("asIs", "asMissingValues", "asExtremeValues"):
        yield field(Outlier(X, method, 0.0, 2.0, 3.0, 4.0))
    yield field(A("imputeCatFieldMissingAgainstConTarget", Ref("g"), X, arrays=([-3.0, 0.5, 40.0], [4.0, 1.0, 900.0])))
    # Missing, invalid and failing operands of a function that takes a fixed number of them.
    for extra in ({"missing": 7.0}, {"default": 8.0}, {"missing": 7.0, "default": 8.0}):
        for treatment in (None, "asIs", "asMissing", "returnInvalid"):
            yield field(A("+", Z, X, treatment=treatment, **extra))
            yield field(A("/", X, Y, treatment=treatment, **extra))
            yield field(A("trunc", A("*", X, Const(1e9)), treatment=treatment, **extra))
            yield field(A("if", A("greaterThan", X, Const(0.0)), Z, Y, treatment=treatment, **extra))
            yield field(A("if", X, Z, treatment=treatment, **extra))
    yield field(A("uppercase", C, missing="none", default="other", treatment="asMissing"), "string")
    yield field(A("+", Ref("z", 5.0), Ref("x", 1.0)))
    yield field(A("isMissing", Ref("z", 5.0)))
    yield field(A("isMissing", Z))
    yield field(A("isMissing", A("concat", S, T)))
    yield field(A("isNotMissing", A("ln", X)))
    yield field(A("equal", S, T))
    yield field(A("lessThan", S, T))
    yield field(A("lessThan", DAY, MOMENT))
    yield field(A("if", A("equal", C, Const("a")), Const("first"), S), "string")
    yield field(A("if", A("isIn", Z, Const(0.0), Const(50.0)), A("sqrt", Z), A("*", X, X)))
    # Other kinds.
    for data_type, source in (("double", "x"), ("string", "s"), ("date", "day"), ("dateTime", "moment"), ("time", "clock")):
        yield field(Ref(source), data_type)
    yield field(Ref("z", 4.0))
    yield field(Ref("c", "none"), "string")
    yield field(Const(2.5))
    yield field(Const("a text"), "string")
    points = [(-2.0, 0.0), (0.0, 0.25), (1.5, 0.5), (10.0, 4.0)]
    for outliers in (None, "asIs", "asMissingValues", "asExtremeValues"):
        yield field(Norm("x", points, outliers))
        yield field(Norm("x", points, outliers, missing=99.0))
    for value in ("a", "b"):
        yield field(Indicator("c", value))
        yield field(Indicator("c", value, missing=0.5))
    yield field(Indicator("z", 50.0))
    closures = ("openClosed", "openOpen", "closedOpen", "closedClosed")
    for closure in closures:
        bins = [("low", "openOpen", None, -1.0), ("mid", closure, 0.0, 2.0), ("high", "openOpen", 3.0, None)]
        yield field(Bins("x", bins), "string")
        yield field(Bins("x", bins, default="other", missing="none"), "string")
        numbers = [(float(i), c, low, high) for i, (_, c, low, high) in enumerate(bins)]
        yield field(Bins("x", numbers, default=-1.0, missing=-2.0))
        yield field(Bins("x", numbers, copy=True))
    table = [("a", 1.0), ("b", 2.0), ("12", 3.0), (" ab ", 4.0)]
    yield field(Map(["s"], table))
    yield field(Map(["s"], table, default=-1.0, missing=-2.0))
    two = [(0.0, "a", "left"), (50.0, "a", "right"), (100.0, "b", "both"), (0.0, "b", "none")]
    yield field(Map(["z", "c"], two, default="other", missing="missing"), "string")
    yield field(Map(["z"], [(0.0, 5.0), (50.0, 6.0)]))
    yield field(Lag("x"))
    yield field(Lag("s", 2), "string")
    yield field(Lag("x", 3, ("c",)))
    # Fields that read fields.
    yield field(A("+", Ref("v001"), Ref("v002")))
    yield field(A("isMissing", Ref("v004")))


class Outlier(Apply):
    """The method is written as a text and counts as a number."""

    NUMBERS = {"asIs": 0, "asMissingValues": 1, "asExtremeValues": 2}

    def __init__(self, x, method, *numbers):
        super().__init__("outlierHandle", x, Const(method), *map(Const, numbers))
        self.method = method

    def get(self, row, derived):
        values = [operand.get(row, derived) for operand in self.operands]
        values[1] = Value(self.NUMBERS[self.method])
        return Value(self.settle(values))


def make_rows():
    random.seed(940)
    numbers = [0.0, 1.0, 2.0, -1.0, 0.5, -3.25, 3.0, 12.0, 1e-7, 2.5, 1234.5, 711.0, -2.0, 10.0, 1.5]
    texts = ["", "a", "b", "abc", " ab ", "12", "bcbc", "abc\u00e4\u20ac", "\tx", "Zebra", "a long text, with a comma"]
    choices = {
        "x": numbers,
        "y": numbers,
        "p": [0.0, 1e-12, 0.025, 0.5, 0.75, 0.999999, 1.0, -0.5],
        "z": [0.0, 50.0, 100.0, -9.0, 51.0],
        "g": [1.0, 2.0, 3.0],
        "s": texts,
        "t": texts,
        "c": ["a", "b", "?", "x"],
    }
    rows = []
    for _ in range(120):
        row = {name: random.choice(values) if random.random() < 0.85 else MISSING for name, values in choices.items()}
        day = random.randint(-800, 20000)
        row["day"] = Date(day * 86400, "date") if random.random() < 0.85 else MISSING
        row["moment"] = Date(random.randint(-10**8, 10**9), "dateTime") if random.random() < 0.85 else MISSING
        row["clock"] = Date(random.randint(0, 86399), "time") if random.random() < 0.85 else MISSING
        # An empty cell is a missing value: the empty text cannot be told from it in a file.
        for name in ("s", "t"):
            if row[name] == "":
                row[name] = MISSING
        rows.append(row)
    return rows


def converted(value, data_type):
    """The value in the type of the field, as the file shows it."""
    if value is MISSING:
        return ""
    if data_type == "string":
        if isinstance(value, float):
            return f"{value:g}"
        return shown(value)
    if isinstance(value, Date):
        return Date(value.seconds, data_type).text()
    value = as_number(value)
    return "" if value is MISSING else repr(float(value))


def main():
    fields = list(derived_fields())
    unused = set(STRICT) | set(LISTS) | {"isMissing", "isNotMissing", "sysmis", "isIn", "isNotIn", "and", "or", "if",
                                         "imputeCatFieldMissingAgainstConTarget"}
    text = "".join(expression.xml() for _, _, expression in fields)
    unused = {name for name in unused if f'function="{escape(name)}"' not in text}
    assert not unused, unused
    lines = ['<?xml version="1.0" encoding="UTF-8"?>', '<PMML version="4.4" xmlns="http://www.dmg.org/PMML-4_4">',
             "  <Header/>", f'  <DataDictionary numberOfFields="{len(FIELDS)}">']
    for name, optype, data_type in FIELDS:
        lines.append(f'    <DataField name="{name}" optype="{optype}" dataType="{data_type}">{CONTENT.get(name, "")}</DataField>')
    lines += ["  </DataDictionary>", "  <TransformationDictionary>"]
    for name, data_type, expression in fields:
        optype = "categorical" if data_type == "string" else "continuous"
        lines.append(f'    <DerivedField name="{name}" optype="{optype}" dataType="{data_type}">{expression.xml()}</DerivedField>')
    lines += ["  </TransformationDictionary>", "</PMML>", ""]
    (HERE / "derived_fields.pmml").write_text("\n".join(lines), encoding="utf-8")

    rows = make_rows()
    with open(HERE / "derived_fields.csv", "w", newline="", encoding="utf-8") as out:
        writer = csv.writer(out, lineterminator="\n")
        writer.writerow(name for name, _, _ in FIELDS)
        for row in rows:
            writer.writerow("" if row[name] is MISSING else shown(row[name]) for name, _, _ in FIELDS)
    with open(HERE / "derived_fields.expected.csv", "w", newline="", encoding="utf-8") as out:
        writer = csv.writer(out, lineterminator="\n")
        writer.writerow(name for name, _, _ in fields)
        for row in rows:
            derived = {}
            cells = []
            for name, data_type, expression in fields:
                value = expression.get(row, derived).value
                cells.append(converted(value, data_type))
                derived[name] = as_number(value) if data_type in ("double", "integer") else value
            writer.writerow(cells)


if __name__ == "__main__":
    main()
