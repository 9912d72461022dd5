#!/usr/bin/env python3
"""Trains the regression models of this folder and writes, for each, a PMML document, the rows and the
training program's own answers for them.

    python3 make_regression_models.py          (Debian: python3-sklearn)

NAME.pmml           the model
NAME.csv            the rows
NAME.expected.csv   that program's predictions and, for classifiers, its probabilities

The files are checked in, so that neither tests nor demo need python.  Numbers are written with all their
digits (repr), so that the document holds the very coefficients that made the expected answers.
"""

import csv
import pathlib
from xml.sax.saxutils import quoteattr

from sklearn.datasets import load_breast_cancer, load_diabetes, load_iris
from sklearn.linear_model import LinearRegression, LogisticRegression

HERE = pathlib.Path(__file__).parent


def number(value):
    return repr(float(value))


def regression_table(features, coefficients, intercept, category=None):
    target = "" if category is None else f" targetCategory={quoteattr(category)}"
    rows = [f'    <RegressionTable intercept="{number(intercept)}"{target}>']
    rows += [
        f'      <NumericPredictor name={quoteattr(name)} coefficient="{number(value)}"/>'
        for name, value in zip(features, coefficients)
    ]
    rows.append("    </RegressionTable>")
    return rows


def document(name, features, target, categories, function, normalization, tables):
    lines = [
        '<?xml version="1.0" encoding="UTF-8"?>',
        '<PMML version="4.4" xmlns="http://www.dmg.org/PMML-4_4">',
        '  <Header copyright="generated from a bundled data set"/>',
        f'  <DataDictionary numberOfFields="{len(features) + 1}">',
    ]
    lines += [f'    <DataField name={quoteattr(f)} optype="continuous" dataType="double"/>' for f in features]
    if categories is None:
        lines.append(f'    <DataField name="{target}" optype="continuous" dataType="double"/>')
    else:
        lines.append(f'    <DataField name="{target}" optype="categorical" dataType="string">')
        lines += [f"      <Value value={quoteattr(c)}/>" for c in categories]
        lines.append("    </DataField>")
    lines.append("  </DataDictionary>")
    lines.append(
        f'  <RegressionModel modelName="{name}" functionName="{function}"'
        f' normalizationMethod="{normalization}">'
    )
    lines.append("    <MiningSchema>")
    lines += [f"      <MiningField name={quoteattr(f)}/>" for f in features]
    lines.append(f'      <MiningField name="{target}" usageType="target"/>')
    lines.append("    </MiningSchema>")
    lines += [line for table in tables for line in table]
    lines += ["  </RegressionModel>", "</PMML>", ""]
    (HERE / f"{name}.pmml").write_text("\n".join(lines), encoding="utf-8")


def table_file(path, header, rows):
    with open(path, "w", newline="", encoding="utf-8") as out:
        writer = csv.writer(out, lineterminator="\n")
        writer.writerow(header)
        writer.writerows(rows)


def write_rows(name, features, data):
    table_file(HERE / f"{name}.csv", features, [[number(x) for x in row] for row in data])


def diabetes():
    data = load_diabetes()
    features = list(data.feature_names)
    model = LinearRegression().fit(data.data, data.target)
    document("diabetes", features, "progression", None, "regression", "none",
             [regression_table(features, model.coef_, model.intercept_)])
    write_rows("diabetes", features, data.data)
    table_file(HERE / "diabetes.expected.csv", ["progression"],
               [[number(y)] for y in model.predict(data.data)])


def classifier(name, data, target, normalization, tables_of):
    features = list(data.feature_names)
    categories = [str(c) for c in data.target_names]
    model = LogisticRegression(max_iter=100000).fit(data.data, data.target)
    document(name, features, target, categories, "classification", normalization,
             tables_of(features, categories, model))
    write_rows(name, features, data.data)
    rows = [
        [categories[p]] + [number(x) for x in q]
        for p, q in zip(model.predict(data.data), model.predict_proba(data.data))
    ]
    table_file(HERE / f"{name}.expected.csv", [target] + [f"probability({c})" for c in categories], rows)


def binary_tables(features, categories, model):
    # The program models the second category; the first is what is left.
    return [
        regression_table(features, model.coef_[0], model.intercept_[0], categories[1]),
        regression_table([], [], 0, categories[0]),
    ]


def multinomial_tables(features, categories, model):
    return [
        regression_table(features, coefficients, intercept, category)
        for coefficients, intercept, category in zip(model.coef_, model.intercept_, categories)
    ]


if __name__ == "__main__":
    diabetes()
    classifier("breast_cancer", load_breast_cancer(), "diagnosis", "logit", binary_tables)
    classifier("iris", load_iris(), "species", "softmax", multinomial_tables)
