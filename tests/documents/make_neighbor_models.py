#!/usr/bin/env python3
"""Makes the nearest-neighbour models of this folder and writes, for each, a PMML document, the rows and the answers
that other programs give for them.

    python3 make_neighbor_models.py            (Debian: python3-sklearn, python3-scipy)

The files are named as those of make_regression_models.py.  NAME.training.csv holds the instances where the document
does not.  The rows lie between the instances, so that no two instances are equally near where the training program
leaves the choice to chance; what the programs do not compute (ranks, medians, ties of counts) is arithmetic here.
"""

import numpy
from scipy.spatial import distance
from sklearn.datasets import load_breast_cancer, load_diabetes, load_iris, load_wine
from sklearn.metrics.pairwise import nan_euclidean_distances
from sklearn.neighbors import KNeighborsClassifier, KNeighborsRegressor
from sklearn.pipeline import make_pipeline
from sklearn.preprocessing import StandardScaler
from xml.sax.saxutils import escape, quoteattr

from make_regression_models import HERE, number, table_file


def cell(value):
    if isinstance(value, str):
        return value
    return "" if numpy.isnan(value) else number(value)


def data_field(name, values):
    if values is None:
        return [f'    <DataField name={quoteattr(name)} optype="continuous" dataType="double"/>']
    lines = [f'    <DataField name={quoteattr(name)} optype="categorical" dataType="string">']
    lines += [f"      <Value value={quoteattr(v)}/>" for v in values]
    return lines + ["    </DataField>"]


class Document:
    """Fields are pairs of a name and its listed values, None for a number."""

    def __init__(self, name, function, neighbors, fields, targets, measure, attributes="", kind="distance"):
        self.name, self.function, self.neighbors = name, function, neighbors
        self.fields, self.targets, self.measure = fields, targets, measure
        self.attributes, self.kind = attributes, kind
        self.inputs = [f'<KNNInput field={quoteattr(f)}/>' for f, _ in fields]
        self.outputs, self.transformations, self.id = [], [], None
        self.is_in_file = False

    def training_columns(self):
        names = [f for f, _ in self.fields] + [t for t, _ in self.targets]
        return ([self.id] if self.id else []) + names

    def write(self, instances):
        columns = self.training_columns()
        tags = [f"c{i}" for i in range(len(columns))]
        if self.is_in_file:
            tags = columns
            table_file(HERE / f"{self.name}.training.csv", tags, [[cell(v) for v in row] for row in instances])
        lines = [
            '<?xml version="1.0" encoding="UTF-8"?>',
            '<PMML version="4.4" xmlns="http://www.dmg.org/PMML-4_4">',
            '  <Header copyright="generated from a bundled data set"/>',
            f'  <DataDictionary numberOfFields="{len(self.fields) + len(self.targets)}">',
        ]
        for name, values in self.fields + self.targets:
            lines += data_field(name, values)
        id_variable = f' instanceIdVariable="{self.id}"' if self.id else ""
        lines += [
            "  </DataDictionary>",
            f'  <NearestNeighborModel modelName="{self.name}" functionName="{self.function}"'
            f' numberOfNeighbors="{self.neighbors}"{id_variable}{self.attributes}>',
            "    <MiningSchema>",
        ]
        lines += [f"      <MiningField name={quoteattr(f)}/>" for f, _ in self.fields]
        lines += [f'      <MiningField name={quoteattr(t)} usageType="target"/>' for t, _ in self.targets]
        lines.append("    </MiningSchema>")
        if self.outputs:
            lines += ["    <Output>"] + [f"      <OutputField {o}/>" for o in self.outputs] + ["    </Output>"]
        if self.transformations:
            lines += ["    <LocalTransformations>"] + self.transformations + ["    </LocalTransformations>"]
        lines += [f'    <TrainingInstances isTransformed="false" recordCount="{len(instances)}"'
                  f' fieldCount="{len(columns)}">', "      <InstanceFields>"]
        lines += [f"        <InstanceField field={quoteattr(c)} column={quoteattr(t)}/>" for c, t in zip(columns, tags)]
        lines.append("      </InstanceFields>")
        if self.is_in_file:
            lines.append("      <TableLocator/>")
        else:
            lines.append("      <InlineTable>")
            for row in instances:
                cells = [f"<{t}>{escape(cell(v))}</{t}>" for t, v in zip(tags, row) if cell(v) != ""]
                lines.append("        <row>" + "".join(cells) + "</row>")
            lines.append("      </InlineTable>")
        lines += ["    </TrainingInstances>",
                  f'    <ComparisonMeasure kind="{self.kind}"><{self.measure}/></ComparisonMeasure>',
                  "    <KNNInputs>"] + [f"      {i}" for i in self.inputs]
        lines += ["    </KNNInputs>", "  </NearestNeighborModel>", "</PMML>", ""]
        (HERE / f"{self.name}.pmml").write_text("\n".join(lines), encoding="utf-8")


def numbers(names):
    return [(str(name), None) for name in names]


def between(rows, random, count):
    """Rows between two others each."""
    left, right = random.randint(0, len(rows), size=(2, count))
    share = random.uniform(0.2, 0.8, size=(count, 1))
    return rows[left] * share + rows[right] * (1 - share)


def write_asked(name, fields, rows):
    table_file(HERE / f"{name}.csv", [f for f, _ in fields], [[cell(v) for v in row] for row in rows])


def write_classes(name, target, categories, predictions, probabilities):
    rows = [[categories[p]] + [number(x) for x in q] for p, q in zip(predictions, probabilities)]
    table_file(HERE / f"{name}.expected.csv", [target] + [f"probability({c})" for c in categories], rows)


def assert_unique_votes(probabilities):
    best = numpy.sort(probabilities, axis=1)
    assert (best[:, -1] > best[:, -2] + 1e-9).all()


def iris():
    """Majority vote, the instances in the document."""
    data, random = load_iris(), numpy.random.RandomState(1)
    categories = [str(c) for c in data.target_names]
    fields = numbers(data.feature_names)
    asked = between(data.data, random, 150)
    model = KNeighborsClassifier(n_neighbors=5).fit(data.data, data.target)
    probabilities = model.predict_proba(asked)
    asked = asked[numpy.sort(probabilities, axis=1)[:, -1] > 0.5]  # majorities only
    probabilities = model.predict_proba(asked)
    assert_unique_votes(probabilities)
    document = Document("iris_neighbors", "classification", 5, fields, [("species", categories)], "euclidean")
    document.write([list(row) + [categories[c]] for row, c in zip(data.data, data.target)])
    write_asked(document.name, fields, asked)
    write_classes(document.name, "species", categories, model.predict(asked), probabilities)


def breast_cancer():
    """Votes weighted by distance, on derived fields: instances and rows are standardised on the way."""
    data, random = load_breast_cancer(), numpy.random.RandomState(2)
    categories = [str(c) for c in data.target_names]
    names, rows = list(data.feature_names[:8]), data.data[:, :8]
    fields = numbers(names)
    training, asked = rows[:250], between(rows, random, 150)
    scaler = StandardScaler().fit(training)
    model = make_pipeline(scaler, KNeighborsClassifier(n_neighbors=7, weights="distance", metric="manhattan"))
    model.fit(training, data.target[:250])
    document = Document("breast_cancer_neighbors", "classification", 7, fields, [("diagnosis", categories)],
                        "cityBlock", ' categoricalScoringMethod="weightedMajorityVote" threshold="0"')
    for name, mean, scale in zip(names, scaler.mean_, scaler.scale_):
        document.transformations += [
            f'      <DerivedField name={quoteattr("z " + name)} optype="continuous" dataType="double">',
            '        <Apply function="/"><Apply function="-">'
            f'<FieldRef field={quoteattr(name)}/><Constant dataType="double">{number(mean)}</Constant></Apply>'
            f'<Constant dataType="double">{number(scale)}</Constant></Apply>',
            "      </DerivedField>",
        ]
    document.inputs = [f'<KNNInput field={quoteattr("z " + n)}/>' for n in names]
    document.write([list(row) + [categories[c]] for row, c in zip(training, data.target)])
    write_asked(document.name, fields, asked)
    write_classes(document.name, "diagnosis", categories, model.predict(asked), model.predict_proba(asked))


def diabetes():
    """A weighted average, the instances in a file."""
    data, random = load_diabetes(), numpy.random.RandomState(3)
    fields = numbers(data.feature_names)
    asked = between(data.data, random, 150)
    model = KNeighborsRegressor(n_neighbors=9, weights="distance", metric="minkowski", p=3)
    model.fit(data.data[:300], data.target[:300])
    document = Document("diabetes_neighbors", "regression", 9, fields, [("progression", None)],
                        'minkowski p-parameter="3"', ' continuousScoringMethod="weightedAverage" threshold="0"')
    document.is_in_file = True
    document.write([list(row) + [y] for row, y in zip(data.data[:300], data.target)])
    write_asked(document.name, fields, asked)
    table_file(HERE / f"{document.name}.expected.csv", ["progression"], [[number(y)] for y in model.predict(asked)])


def wine():
    """Two targets, ranks and distances; a tenth of the cells is missing on both sides."""
    data, random = load_wine(), numpy.random.RandomState(4)
    categories = [str(c) for c in data.target_names]
    names, rows = list(data.feature_names[1:]), data.data[:, 1:] / data.data[:, 1:].std(axis=0)
    fields, neighbors = numbers(names), 5
    asked = between(rows, random, 150)
    rows[random.uniform(size=rows.shape) < 0.1] = numpy.nan
    asked[random.uniform(size=asked.shape) < 0.1] = numpy.nan
    distances = nan_euclidean_distances(asked, rows)
    order = numpy.argsort(distances, axis=1, kind="stable")[:, :neighbors]
    counts = numpy.bincount(data.target)
    expected = []
    for row, nearest in enumerate(order):
        votes = numpy.bincount(data.target[nearest], minlength=len(categories))
        # Of equal votes the category with the most instances wins.
        winner = max(range(len(categories)), key=lambda c: (votes[c], counts[c]))
        median = numpy.median(data.data[nearest, 0])
        expected.append([categories[winner]] + [number(v / neighbors) for v in votes] + [number(median)]
                        + [f"wine {nearest[0] + 1}", f"wine {nearest[4] + 1}", number(distances[row, nearest[4]])])
    document = Document("wine_neighbors", "mixed", neighbors, fields, [("class", categories), ("alcohol", None)],
                        "euclidean", ' continuousScoringMethod="median"')
    document.id = "id"
    document.outputs = [
        'name="its alcohol" optype="continuous" dataType="double" feature="predictedValue" targetField="alcohol"',
        'name="nearest" optype="categorical" dataType="string" feature="entityId"',
        'name="fifth" optype="categorical" dataType="string" feature="entityId" rank="5"',
        'name="distance of the fifth" optype="continuous" dataType="double" feature="affinity" rank="5"',
    ]
    document.write([[f"wine {i + 1}"] + list(row) + [categories[c], alcohol]
                    for i, (row, c, alcohol) in enumerate(zip(rows, data.target, data.data[:, 0]))])
    write_asked(document.name, fields, asked)
    header = ["class"] + [f"probability({c})" for c in categories] + ["its alcohol", "nearest", "fifth",
                                                                    "distance of the fifth"]
    table_file(HERE / f"{document.name}.expected.csv", header, expected)


def similarities():
    """Neighbours alone, by measures that count equal bits.  Of equal similarities the first instance is nearer."""
    random = numpy.random.RandomState(5)
    bits = random.randint(0, 2, size=(120, 12))
    asked = random.randint(0, 2, size=(120, 12))
    fields, neighbors = numbers(f"b{i}" for i in range(12)), 3
    coefficients = [f"{side}{pair}-parameter=\"%s\"" for side in "cd" for pair in ("11", "10", "01", "00")]
    dice = "binarySimilarity " + " ".join(coefficients) % (2, 0, 0, 0, 2, 1, 1, 0)
    measures = [
        ("simpleMatching", "simpleMatching", "hamming"),
        ("jaccard", "jaccard", "jaccard"),
        ("tanimoto", "tanimoto", "rogerstanimoto"),
        ("dice", dice, "dice"),
    ]
    for name, measure, metric in measures:
        affinities = 1 - distance.cdist(asked.astype(bool), bits.astype(bool), metric)
        order = numpy.argsort(-affinities.round(12), axis=1, kind="stable")[:, :neighbors]
        document = Document(f"{name}_neighbors", "clustering", neighbors, fields, [], measure, kind="similarity")
        document.id = "id"
        document.outputs = []
        for rank in range(1, neighbors + 1):
            document.outputs += [f'name="id {rank}" dataType="string" feature="entityId" rank="{rank}"',
                                 f'name="similarity {rank}" dataType="double" feature="affinity" rank="{rank}"']
        document.write([[f"bits {i + 1}"] + [float(b) for b in row] for i, row in enumerate(bits)])
        write_asked(document.name, fields, asked.astype(float))
        expected = []
        for row, nearest in enumerate(order):
            cells = [[f"bits {n + 1}", number(affinities[row, n])] for n in nearest]
            expected.append([cells[0][0]] + [c for pair in cells for c in pair])
        header = ["predicted"] + [f"{what} {rank}" for rank in range(1, neighbors + 1) for what in ("id", "similarity")]
        table_file(HERE / f"{document.name}.expected.csv", header, expected)


if __name__ == "__main__":
    iris()
    breast_cancer()
    diabetes()
    wine()
    similarities()
