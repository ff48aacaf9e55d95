#!/usr/bin/env python3
"""Keeps the prescribed fields of a tavrelle-batch JSON report, as the golden reports hold them.

Usage: prescribed_fields.py REPORT.json > GOLDEN.json

The likelihood estimates sit beside the prescribed fields in every report; the golden reports
hold the prescribed fields alone (GoldenReportTest checks the additions' shape and takes them
out the same way). The report's own text is kept byte for byte: members are cut out of it, so
that numbers keep the program's spelling.
"""
import sys

ADDED_TO_POPULATION = ("status", "inbreeding")
ADDED_TO_LOCUS = ("estimate_intervals", "failure_rate", "failure_rate_interval")
ADDED_TO_ESTIMATES = ("em", "em_missing", "joint", "em_failure")
ADDED_TO_CHECK = ("half_missing", "index_like_alleles")


class Value:
    """A parsed value with its place in the text: members (object) or items (array)."""

    def __init__(self, start):
        self.start = start
        self.end = start
        self.members = None  # [(key, value, lead, comma_before, comma_after)]
        self.items = None
        self.text = None


class Parser:
    def __init__(self, text):
        self.text = text
        self.at = 0

    def space(self):
        while self.at < len(self.text) and self.text[self.at] in " \t\r\n":
            self.at += 1

    def expect(self, char):
        self.space()
        if self.text[self.at] != char:
            raise ValueError(f"expected {char!r} at {self.at}")
        self.at += 1

    def string(self):
        self.expect('"')
        begin = self.at
        while self.text[self.at] != '"':
            self.at += 2 if self.text[self.at] == "\\" else 1
        self.at += 1
        return self.text[begin:self.at - 1]

    def value(self):
        self.space()
        value = Value(self.at)
        char = self.text[self.at]
        if char == "{":
            self.at += 1
            value.members = []
            self.space()
            if self.text[self.at] == "}":
                self.at += 1
            else:
                comma_before = None
                while True:
                    lead = self.at
                    key = self.string()
                    self.expect(":")
                    member = self.value()
                    self.space()
                    value.members.append([key, member, lead, comma_before, None])
                    if self.text[self.at] == ",":
                        value.members[-1][4] = self.at
                        comma_before = self.at
                        self.at += 1
                        continue
                    self.expect("}")
                    break
        elif char == "[":
            self.at += 1
            value.items = []
            self.space()
            if self.text[self.at] == "]":
                self.at += 1
            else:
                while True:
                    value.items.append(self.value())
                    self.space()
                    if self.text[self.at] == ",":
                        self.at += 1
                        continue
                    self.expect("]")
                    break
        elif char == '"':
            value.text = self.string()
        else:
            while self.at < len(self.text) and self.text[self.at] not in ",]} \t\r\n":
                self.at += 1
            value.text = self.text[value.start:self.at]
        value.end = self.at
        return value


def member(value, key):
    for m in value.members:
        if m[0] == key:
            return m
    raise KeyError(key)


def cut(value, keys, spans):
    """The text spans that take the members `keys` out of the object `value`."""
    kept = [m for m in value.members if m[0] not in keys]
    if not kept:
        raise ValueError("an object would be left empty")
    leading = True  # every member so far taken out
    for key, child, lead, comma_before, comma_after in value.members:
        if key not in keys:
            leading = False
        elif leading:
            spans.append((lead, comma_after + 1))
        else:
            spans.append((comma_before, child.end))


def prescribed(text):
    report = Parser(text).value()
    spans = []
    for population in member(report, "populations")[1].items:
        cut(population, ADDED_TO_POPULATION, spans)
        check = [m for m in population.members if m[0] == "check"]
        if check and check[0][1].members is not None:
            cut(check[0][1], ADDED_TO_CHECK, spans)
        if member(population, "inbreeding")[1].text == "null":
            continue
        for locus in member(population, "loci")[1].items:
            cut(locus, ADDED_TO_LOCUS, spans)
            cut(member(locus, "estimates")[1], ADDED_TO_ESTIMATES, spans)
    for begin, end in sorted(spans, reverse=True):
        text = text[:begin] + text[end:]
    return text


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit("usage: prescribed_fields.py REPORT.json > GOLDEN.json")
    with open(sys.argv[1], encoding="utf-8", newline="") as report:
        sys.stdout.write(prescribed(report.read()))
