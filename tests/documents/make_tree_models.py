#!/usr/bin/env python3
"""Trains the decision trees of this folder and writes, for each, a PMML document, the rows and the training
program's own answers for them.

    python3 make_tree_models.py                (Debian: python3-sklearn)

The files are named as those of make_regression_models.py.  The training program compares numbers of 32 bits with
thresholds of 64, so rows are written as numbers that 32 bits hold exactly.  The wide trees have 10,000 leaves; to
keep them small, their numbers are whole and their right children simply true.
"""

import numpy
from sklearn.datasets import load_diabetes, load_iris
from sklearn.tree import DecisionTreeClassifier, DecisionTreeRegressor
from xml.sax.saxutils import quoteattr

from make_regression_models import HERE, number, table_file

LEAVES = 10000


class TreeWriter:
    """Writes the nodes of a trained tree, children behind their parents, without recursion."""

    def __init__(self, model, features, categories, is_compact):
        self.tree = model.tree_
        self.features = features
        self.categories = categories
        self.is_compact = is_compact

    def lines(self):
        lines = []
        stack = [(0, "<True/>", 2)]
        while stack:
            node, condition, depth = stack.pop()
            indent = "" if self.is_compact else "  " * depth
            if node is None:
                lines.append(f"{indent}</Node>")
                continue
            left, right = self.tree.children_left[node], self.tree.children_right[node]
            is_leaf = left < 0
            start = f"<Node{self.attributes(node, is_leaf)}>{condition}{self.shares(node, is_leaf)}"
            lines.append(indent + start + ("</Node>" if is_leaf else ""))
            if is_leaf:
                continue
            field = quoteattr(self.features[self.tree.feature[node]])
            threshold = number(self.tree.threshold[node])
            test = f'<SimplePredicate field={field} operator="%s" value="{threshold}"/>'
            stack.append((None, None, depth))
            stack.append((right, "<True/>" if self.is_compact else test % "greaterThan", depth + 1))
            stack.append((left, test % "lessOrEqual", depth + 1))
        return lines

    def attributes(self, node, is_leaf):
        if self.is_compact and not is_leaf:
            return ""
        values = self.tree.value[node][0]
        score = number(values[0]) if self.categories is None else self.categories[values.argmax()]
        count = "" if self.is_compact else f' recordCount="{self.tree.n_node_samples[node]}"'
        return f" score={quoteattr(score)}{count}"

    def shares(self, node, is_leaf):
        if self.categories is None or (self.is_compact and not is_leaf):
            return ""
        return "".join(
            f'<ScoreDistribution value={quoteattr(category)} recordCount="{count:.0f}"/>'
            for category, count in zip(self.categories, self.tree.value[node][0])
        )


def document(name, model, features, target, categories, is_compact):
    lines = [
        '<?xml version="1.0" encoding="UTF-8"?>',
        '<PMML version="4.4" xmlns="http://www.dmg.org/PMML-4_4">',
        '  <Header copyright="generated"/>',
        f'  <DataDictionary numberOfFields="{len(features) + 1}">',
    ]
    lines += [f'    <DataField name={quoteattr(f)} optype="continuous" dataType="double"/>' for f in features]
    if categories is None:
        lines.append(f'    <DataField name="{target}" optype="continuous" dataType="double"/>')
    else:
        lines.append(f'    <DataField name="{target}" optype="categorical" dataType="string">')
        lines += [f"      <Value value={quoteattr(c)}/>" for c in categories]
        lines.append("    </DataField>")
    function = "regression" if categories is None else "classification"
    lines += [
        "  </DataDictionary>",
        f'  <TreeModel modelName="{name}" functionName="{function}" splitCharacteristic="binarySplit">',
        "    <MiningSchema>",
    ]
    lines += [f"      <MiningField name={quoteattr(f)}/>" for f in features]
    lines += [f'      <MiningField name="{target}" usageType="target"/>', "    </MiningSchema>"]
    lines += TreeWriter(model, features, categories, is_compact).lines()
    lines += ["  </TreeModel>", "</PMML>", ""]
    (HERE / f"{name}.pmml").write_text("\n".join(lines), encoding="utf-8")


def write(name, model, features, target, categories, rows, is_compact=False):
    document(name, model, features, target, categories, is_compact)
    table_file(HERE / f"{name}.csv", features, [[f"{x:.0f}" if is_compact else number(x) for x in r] for r in rows])
    predictions = model.predict(rows)
    if categories is None:
        table_file(HERE / f"{name}.expected.csv", [target], [[number(y)] for y in predictions])
        return
    table = [[categories[p]] + [number(x) for x in q] for p, q in zip(predictions, model.predict_proba(rows))]
    table_file(HERE / f"{name}.expected.csv", [target] + [f"probability({c})" for c in categories], table)


def exact(data):
    return data.astype(numpy.float32)


def shallow():
    iris = load_iris()
    rows = exact(iris.data)
    model = DecisionTreeClassifier(max_depth=3, random_state=1).fit(rows, iris.target)
    write("iris_tree", model, list(iris.feature_names), "species", [str(c) for c in iris.target_names], rows)
    diabetes = load_diabetes()
    rows = exact(diabetes.data)
    model = DecisionTreeRegressor(max_depth=5, random_state=1).fit(rows, diabetes.target)
    write("diabetes_tree", model, list(diabetes.feature_names), "progression", None, rows)


def wide():
    random = numpy.random.RandomState(20)
    rows = random.randint(0, 4096, size=(80000, 4)).astype(numpy.float32)
    signal = rows[:, 0] * 0.5 + rows[:, 1] * (rows[:, 2] > 2048) + random.normal(0, 300, len(rows))
    features = ["a", "b", "c", "d"]
    asked = random.randint(-10, 4106, size=(1500, 4)).astype(numpy.float32)
    regressor = DecisionTreeRegressor(max_leaf_nodes=LEAVES, random_state=1).fit(rows, signal)
    classes = numpy.digitize(signal, [1500]) ^ (random.uniform(size=len(rows)) < 0.3)
    classifier = DecisionTreeClassifier(max_leaf_nodes=LEAVES, min_samples_leaf=2, random_state=1).fit(rows, classes)
    assert regressor.get_n_leaves() == LEAVES and classifier.get_n_leaves() == LEAVES
    write("wide_regression_tree", regressor, features, "y", None, asked, True)
    write("wide_classification_tree", classifier, features, "k", ["low", "high"], asked, True)


if __name__ == "__main__":
    shallow()
    wide()
