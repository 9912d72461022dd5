#!/usr/bin/env python3
"""Writes large inputs for `veyra score` to standard output, always the same ones.

  make_large_inputs.py document MB    a regression model: 4 numeric fields and a categorical one at a time
  make_large_inputs.py small          a model with 20 numeric and 5 categorical predictors
  make_large_inputs.py rows MB        rows for the small model
"""

import random
import sys

NUMBERS = 4  # a group of fields: so many numbers and one category
CATEGORIES = 12


def write_document(groups, write):
    rng = random.Random(1)
    write('<?xml version="1.0" encoding="UTF-8"?>\n<PMML version="4.4">\n')
    write(f'<DataDictionary numberOfFields="{groups * (NUMBERS + 1) + 1}">\n')
    for group in range(groups):
        for i in range(NUMBERS):
            write(f'  <DataField name="number {group} {i}" optype="continuous" dataType="double"/>\n')
        write(f'  <DataField name="class {group}" optype="categorical" dataType="string">\n')
        for i in range(CATEGORIES):
            write(f'    <Value value="category {i}"/>\n')
        write('  </DataField>\n')
    write('  <DataField name="answer" optype="continuous" dataType="double"/>\n</DataDictionary>\n')
    write('<RegressionModel functionName="regression">\n<MiningSchema>\n')
    for group in range(groups):
        for i in range(NUMBERS):
            write(f'  <MiningField name="number {group} {i}" missingValueReplacement="0.5"/>\n')
        write(f'  <MiningField name="class {group}" missingValueReplacement="category 0"/>\n')
    write('  <MiningField name="answer" usageType="target"/>\n</MiningSchema>\n<RegressionTable intercept="1">\n')
    for group in range(groups):
        for i in range(NUMBERS):
            write(f'  <NumericPredictor name="number {group} {i}" coefficient="{rng.uniform(-2, 2)!r}"/>\n')
        for i in range(CATEGORIES):
            write(f'  <CategoricalPredictor name="class {group}" value="category {i}" '
                  f'coefficient="{rng.uniform(-2, 2)!r}"/>\n')
    write('</RegressionTable>\n</RegressionModel>\n</PMML>\n')


def write_rows(limit, write):
    rng = random.Random(2)
    names = [f'number {group} {i}' for group in range(5) for i in range(NUMBERS)]
    names += [f'class {group}' for group in range(5)]
    write(','.join(names) + '\n')
    # A block of random rows, over and over.
    rows = []
    for _ in range(10000):
        cells = [f'{rng.uniform(-100, 100):.6g}' for _ in range(20)]
        cells += [f'category {rng.randrange(CATEGORIES)}' for _ in range(5)]
        rows.append(','.join(cells) + '\n')
    block = ''.join(rows)
    for _ in range(max(1, limit // len(block))):
        write(block)


def main():
    what, size = sys.argv[1], int(sys.argv[2]) * 1000000 if len(sys.argv) > 2 else 0
    write = sys.stdout.write
    if what == 'document':
        counted = []
        write_document(10, lambda text: counted.append(len(text)))
        write_document(max(1, 10 * size // sum(counted)), write)
    elif what == 'small':
        write_document(5, write)
    else:
        write_rows(size, write)


main()
