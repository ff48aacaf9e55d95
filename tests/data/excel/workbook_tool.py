#!/usr/bin/env python3
"""Workbooks for Tavrelle's tests, made and read without Tavrelle's own code: xlwt writes and
xlrd reads .xls; .xlsx packages are written and read with the standard library's zipfile and
ElementTree straight from the XML.

  workbook_tool.py make OUT DESCRIPTION.json   writes OUT (.xls or .xlsx by its ending)
  workbook_tool.py dump FILE                   prints every sheet's cells as JSON

A description is {"sheets": [{"name": "Sheet1", "cells": [[row, column, value], ...]}]} with
rows and columns from 0. A value is a number, a string, true or false, null (an empty cell that carries a
format, as "Clear Contents" leaves one), {"formula": "1+1", "value": 2}, {"error": "#N/A"}, or
for .xlsx {"inline": "text"}. "prefixed": true writes the .xlsx XML with namespace prefixes.

The dump is {"sheets": [{"name": ..., "cells": [[row, column, type, value], ...]}]}, type "n"
(number), "s" (string), "b" (boolean) or "e" (error), empty cells left out.
"""
import json
import sys
import zipfile
from xml.etree import ElementTree
from xml.sax.saxutils import escape, quoteattr

MAIN = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
REL = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
PKG_REL = "http://schemas.openxmlformats.org/package/2006/relationships"


def column_name(column):
    name = ""
    column += 1
    while column:
        column, rest = divmod(column - 1, 26)
        name = chr(ord("A") + rest) + name
    return name


def make_xls(path, description):
    import xlwt

    book = xlwt.Workbook(encoding="utf-8")
    for sheet in description["sheets"]:
        ws = book.add_sheet(sheet["name"], cell_overwrite_ok=True)
        for row, column, value in sheet["cells"]:
            if value is None:
                ws.write(row, column, None, xlwt.easyxf("font: bold on"))
            elif isinstance(value, dict) and "formula" in value:
                ws.write(row, column, xlwt.Formula(value["formula"]))
            elif isinstance(value, dict) and "error" in value:
                ws.write(row, column, xlwt.Formula("NA()"))
            else:
                ws.write(row, column, value)
    book.save(path)


def make_xlsx(path, description):
    p = "x:" if description.get("prefixed") else ""
    ns = ('xmlns:x="%s"' % MAIN) if p else ('xmlns="%s"' % MAIN)
    strings = []
    sheets_xml = []
    for sheet in description["sheets"]:
        rows = {}
        for row, column, value in sheet["cells"]:
            rows.setdefault(row, []).append((column, value))
        parts = []
        for row in sorted(rows):
            cells = []
            for column, value in sorted(rows[row], key=lambda cell: cell[0]):
                ref = "%s%d" % (column_name(column), row + 1)
                if value is None:
                    cells.append('<%sc r="%s" s="1"/>' % (p, ref))
                elif isinstance(value, bool):
                    cells.append('<%sc r="%s" t="b"><%sv>%d</%sv></%sc>' % (p, ref, p, value, p, p))
                elif isinstance(value, (int, float)):
                    cells.append('<%sc r="%s"><%sv>%r</%sv></%sc>' % (p, ref, p, value, p, p))
                elif isinstance(value, dict) and "formula" in value:
                    cells.append('<%sc r="%s"><%sf>%s</%sf><%sv>%r</%sv></%sc>'
                                 % (p, ref, p, escape(value["formula"]), p, p, value["value"], p, p))
                elif isinstance(value, dict) and "error" in value:
                    cells.append('<%sc r="%s" t="e"><%sv>%s</%sv></%sc>'
                                 % (p, ref, p, escape(value["error"]), p, p))
                elif isinstance(value, dict) and "inline" in value:
                    cells.append('<%sc r="%s" t="inlineStr"><%sis><%st xml:space="preserve">%s'
                                 '</%st></%sis></%sc>'
                                 % (p, ref, p, p, escape(value["inline"]), p, p, p))
                else:
                    strings.append(value)
                    cells.append('<%sc r="%s" t="s"><%sv>%d</%sv></%sc>'
                                 % (p, ref, p, len(strings) - 1, p, p))
            parts.append('<%srow r="%d">%s</%srow>' % (p, row + 1, "".join(cells), p))
        sheets_xml.append('<?xml version="1.0" encoding="UTF-8"?>\n<%sworksheet %s><%ssheetData>'
                          '%s</%ssheetData></%sworksheet>'
                          % (p, ns, p, "".join(parts), p, p))

    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as package:
        package.writestr("[Content_Types].xml",
                         '<?xml version="1.0" encoding="UTF-8"?>\n'
                         '<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">'
                         '<Default Extension="rels" ContentType="application/'
                         'vnd.openxmlformats-package.relationships+xml"/>'
                         '<Default Extension="xml" ContentType="application/xml"/></Types>')
        package.writestr("_rels/.rels",
                         '<?xml version="1.0" encoding="UTF-8"?>\n<Relationships xmlns="%s">'
                         '<Relationship Id="rId1" Type="http://schemas.openxmlformats.org/'
                         'officeDocument/2006/relationships/officeDocument" '
                         'Target="xl/workbook.xml"/></Relationships>' % PKG_REL)
        sheet_list = "".join('<%ssheet name=%s sheetId="%d" r:id="rId%d"/>'
                             % (p, quoteattr(sheet["name"]), i + 1, i + 1)
                             for i, sheet in enumerate(description["sheets"]))
        package.writestr("xl/workbook.xml",
                         '<?xml version="1.0" encoding="UTF-8"?>\n<%sworkbook %s xmlns:r="%s">'
                         '<%ssheets>%s</%ssheets></%sworkbook>'
                         % (p, ns, REL, p, sheet_list, p, p))
        rels = "".join('<Relationship Id="rId%d" Type="%s/worksheet" '
                       'Target="worksheets/sheet%d.xml"/>' % (i + 1, REL, i + 1)
                       for i in range(len(description["sheets"])))
        rels += ('<Relationship Id="rId%d" Type="%s/sharedStrings" Target="/xl/sharedStrings.xml"/>'
                 % (len(description["sheets"]) + 1, REL))
        package.writestr("xl/_rels/workbook.xml.rels",
                         '<?xml version="1.0" encoding="UTF-8"?>\n<Relationships xmlns="%s">%s'
                         '</Relationships>' % (PKG_REL, rels))
        items = "".join('<%ssi><%st xml:space="preserve">%s</%st></%ssi>'
                        % (p, p, escape(text), p, p) for text in strings)
        package.writestr("xl/sharedStrings.xml",
                         '<?xml version="1.0" encoding="UTF-8"?>\n<%ssst %s count="%d" '
                         'uniqueCount="%d">%s</%ssst>' % (p, ns, len(strings), len(strings), items, p))
        for i, xml in enumerate(sheets_xml):
            package.writestr("xl/worksheets/sheet%d.xml" % (i + 1), xml)


def dump_xls(path):
    import xlrd

    # formatting_info makes xlrd read every FONT, FORMAT and XF record as well.
    book = xlrd.open_workbook(path, formatting_info=True)
    kinds = {xlrd.XL_CELL_NUMBER: "n", xlrd.XL_CELL_TEXT: "s", xlrd.XL_CELL_BOOLEAN: "b",
             xlrd.XL_CELL_ERROR: "e", xlrd.XL_CELL_DATE: "n"}
    sheets = []
    for sheet in book.sheets():
        cells = []
        for row in range(sheet.nrows):
            for column in range(sheet.ncols):
                cell = sheet.cell(row, column)
                if cell.ctype in kinds:
                    value = cell.value
                    if cell.ctype == xlrd.XL_CELL_BOOLEAN:
                        value = bool(value)
                    cells.append([row, column, kinds[cell.ctype], value])
        sheets.append({"name": sheet.name, "cells": cells})
    return sheets


def local(tag):
    return tag.rsplit("}", 1)[-1]


def dump_xlsx(path):
    with zipfile.ZipFile(path) as package:
        workbook = ElementTree.fromstring(package.read("xl/workbook.xml"))
        rels = ElementTree.fromstring(package.read("xl/_rels/workbook.xml.rels"))
        targets = {rel.get("Id"): rel.get("Target") for rel in rels}
        strings = []
        if "xl/sharedStrings.xml" in package.namelist():
            for item in ElementTree.fromstring(package.read("xl/sharedStrings.xml")):
                strings.append("".join(t.text or "" for t in item.iter()
                                       if local(t.tag) == "t"))
        sheets = []
        for sheet in workbook.iter():
            if local(sheet.tag) != "sheet":
                continue
            rid = sheet.get("{%s}id" % REL)
            target = targets[rid].lstrip("/")
            if not target.startswith("xl/"):
                target = "xl/" + target
            cells = []
            for cell in ElementTree.fromstring(package.read(target)).iter():
                if local(cell.tag) != "c":
                    continue
                ref = cell.get("r")
                letters = "".join(ch for ch in ref if ch.isalpha())
                row = int(ref[len(letters):]) - 1
                column = 0
                for ch in letters:
                    column = column * 26 + ord(ch) - ord("A") + 1
                column -= 1
                kind = cell.get("t", "n")
                v = next((child.text for child in cell if local(child.tag) == "v"), None)
                if kind == "s":
                    cells.append([row, column, "s", strings[int(v)]])
                elif kind == "inlineStr":
                    text = "".join(t.text or "" for t in cell.iter() if local(t.tag) == "t")
                    cells.append([row, column, "s", text])
                elif kind == "str":
                    cells.append([row, column, "s", v or ""])
                elif kind == "b":
                    cells.append([row, column, "b", v == "1"])
                elif kind == "e":
                    cells.append([row, column, "e", v])
                elif v is not None:
                    cells.append([row, column, "n", float(v)])
            sheets.append({"name": sheet.get("name"), "cells": cells})
        return sheets


def main(arguments):
    if len(arguments) == 3 and arguments[0] == "make":
        with open(arguments[2], encoding="utf-8") as description_file:
            description = json.load(description_file)
        if arguments[1].lower().endswith(".xlsx"):
            make_xlsx(arguments[1], description)
        else:
            make_xls(arguments[1], description)
        return 0
    if len(arguments) == 2 and arguments[0] == "dump":
        path = arguments[1]
        sheets = dump_xlsx(path) if path.lower().endswith(".xlsx") else dump_xls(path)
        json.dump({"sheets": sheets}, sys.stdout, ensure_ascii=False)
        return 0
    sys.stderr.write(__doc__)
    return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
