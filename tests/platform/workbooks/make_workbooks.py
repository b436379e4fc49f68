#!/usr/bin/env python3
"""Makes small workbooks by hand, part by part: FOLDER/book.xlsx, old.xlsx (counts days from 1904) and book.ods."""
import sys
import zipfile

folder = sys.argv[1]
MAIN = 'xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"'
OFFICE = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
PACKAGE = "http://schemas.openxmlformats.org/package/2006"
HEAD = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'
TYPES = "application/vnd.openxmlformats-officedocument.spreadsheetml."


def xlsx(name, properties):
    cells = [
        '<row r="1"><c r="A1" t="s"><v>0</v></c><c r="B1" t="s"><v>1</v></c><c r="C1" t="inlineStr"><is><t>Flag</t></is></c>'
        '<c r="D1" t="s"><v>2</v></c><c r="E1" t="str"><v>Sum</v></c></row>',
        '<row r="2"><c r="A2"><v>1042</v></c><c r="B2" s="1"><v>38138</v></c><c r="C2" t="b"><v>1</v></c>'
        '<c r="D2"><v>121.726</v></c><c r="E2"><f>A2*2</f><v>2084</v></c></row>',
        '<row r="4"><c r="A4" t="s"><v>3</v></c><c r="B4" s="2"><v>38138.5</v></c><c r="C4" t="b"><v>0</v></c>'
        '<c r="D4" t="e"><v>#DIV/0!</v></c><c r="E4" t="str"><f>"a"</f><v>text</v></c></row>',
        '<row r="5"><c r="A5" s="3"><v>0.5</v></c><c r="B5" s="4"><v>7</v></c><c r="C5" t="d"><v>2004-05-31T00:00:00</v></c></row>',
    ]
    parts = {
        "[Content_Types].xml": f'<Types xmlns="{PACKAGE}/content-types">'
        '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
        '<Default Extension="xml" ContentType="application/xml"/>'
        f'<Override PartName="/xl/workbook.xml" ContentType="{TYPES}sheet.main+xml"/>'
        f'<Override PartName="/xl/worksheets/sheet1.xml" ContentType="{TYPES}worksheet+xml"/>'
        f'<Override PartName="/xl/worksheets/sheet2.xml" ContentType="{TYPES}worksheet+xml"/>'
        f'<Override PartName="/xl/styles.xml" ContentType="{TYPES}styles+xml"/>'
        f'<Override PartName="/xl/sharedStrings.xml" ContentType="{TYPES}sharedStrings+xml"/></Types>',
        "_rels/.rels": f'<Relationships xmlns="{PACKAGE}/relationships">'
        f'<Relationship Id="rId1" Type="{OFFICE}/officeDocument" Target="xl/workbook.xml"/></Relationships>',
        "xl/workbook.xml": f'<workbook {MAIN} xmlns:r="{OFFICE}">{properties}<sheets>'
        '<sheet name="Jobs" sheetId="1" r:id="rId1"/><sheet name="Büro$" sheetId="2" r:id="rId2"/></sheets></workbook>',
        "xl/_rels/workbook.xml.rels": f'<Relationships xmlns="{PACKAGE}/relationships">'
        f'<Relationship Id="rId1" Type="{OFFICE}/worksheet" Target="worksheets/sheet1.xml"/>'
        f'<Relationship Id="rId2" Type="{OFFICE}/worksheet" Target="worksheets/sheet2.xml"/>'
        f'<Relationship Id="rId3" Type="{OFFICE}/styles" Target="styles.xml"/>'
        f'<Relationship Id="rId4" Type="{OFFICE}/sharedStrings" Target="sharedStrings.xml"/></Relationships>',
        "xl/styles.xml": f'<styleSheet {MAIN}><numFmts count="2"><numFmt numFmtId="164" formatCode="yyyy\\-mm\\-dd hh:mm"/>'
        '<numFmt numFmtId="165" formatCode="0.0 &quot;days&quot;"/></numFmts>'
        '<fonts count="1"><font><sz val="11"/><name val="Calibri"/></font></fonts>'
        '<fills count="1"><fill><patternFill patternType="none"/></fill></fills>'
        "<borders count=\"1\"><border><left/><right/><top/><bottom/><diagonal/></border></borders>"
        '<cellStyleXfs count="1"><xf numFmtId="0" fontId="0" fillId="0" borderId="0"/></cellStyleXfs>'
        '<cellXfs count="5"><xf numFmtId="0" fontId="0" fillId="0" borderId="0" xfId="0"/>'
        '<xf numFmtId="14" fontId="0" fillId="0" borderId="0" xfId="0" applyNumberFormat="1"/>'
        '<xf numFmtId="164" fontId="0" fillId="0" borderId="0" xfId="0" applyNumberFormat="1"/>'
        '<xf numFmtId="21" fontId="0" fillId="0" borderId="0" xfId="0" applyNumberFormat="1"/>'
        '<xf numFmtId="165" fontId="0" fillId="0" borderId="0" xfId="0" applyNumberFormat="1"/></cellXfs>'
        '<cellStyles count="1"><cellStyle name="Normal" xfId="0" builtinId="0"/></cellStyles></styleSheet>',
        "xl/sharedStrings.xml": f'<sst {MAIN} count="4" uniqueCount="4"><si><t>Id</t></si><si><t>Day</t></si>'
        "<si><r><t>Si</t></r><r><t>ze</t></r></si><si><t>Müller &amp; Söhne</t></si></sst>",
        "xl/worksheets/sheet1.xml": f'<worksheet {MAIN}><sheetData>{"".join(cells)}</sheetData></worksheet>',
        "xl/worksheets/sheet2.xml": f'<worksheet {MAIN}><sheetData/></worksheet>',
    }
    with zipfile.ZipFile(f"{folder}/{name}", "w", zipfile.ZIP_DEFLATED) as archive:
        for part, content in parts.items():
            archive.writestr(part, HEAD + content)


def ods(name):
    spaces = " ".join(
        f'xmlns:{prefix}="urn:oasis:names:tc:opendocument:xmlns:{space}:1.0"'
        for prefix, space in [("office", "office"), ("table", "table"), ("text", "text"), ("style", "style")])
    cell = "table:table-cell office:value-type"
    content = (
        f'<office:document-content {spaces} office:version="1.2"><office:body><office:spreadsheet>'
        '<table:table table:name="Jobs"><table:table-column table:number-columns-repeated="4"/>'
        f'<table:table-row><{cell}="string"><text:p>Id</text:p></table:table-cell>'
        f'<{cell}="string"><text:p>Day</text:p></table:table-cell><{cell}="string"><text:p>Size</text:p></table:table-cell>'
        "</table:table-row>"
        f'<table:table-row><{cell}="float" office:value="1042"><text:p>1042</text:p></table:table-cell>'
        f'<{cell}="date" office:date-value="2004-05-31"><text:p>05/31/04</text:p></table:table-cell>'
        f'<{cell}="float" office:value="121.726"><text:p>121.7</text:p></table:table-cell></table:table-row>'
        '<table:table-row table:number-rows-repeated="2">'
        f'<{cell}="float" office:value="7"><text:p>7</text:p></table:table-cell>'
        f'<{cell}="string" table:number-columns-repeated="2"><text:p>x</text:p></table:table-cell></table:table-row>'
        '<table:table-row table:number-rows-repeated="1000000"><table:table-cell/></table:table-row>'
        "</table:table></office:spreadsheet></office:body></office:document-content>")
    kind = "application/vnd.oasis.opendocument.spreadsheet"
    manifest = (
        '<manifest:manifest xmlns:manifest="urn:oasis:names:tc:opendocument:xmlns:manifest:1.0" manifest:version="1.2">'
        f'<manifest:file-entry manifest:full-path="/" manifest:media-type="{kind}"/>'
        '<manifest:file-entry manifest:full-path="content.xml" manifest:media-type="text/xml"/></manifest:manifest>')
    with zipfile.ZipFile(f"{folder}/{name}", "w") as archive:
        archive.writestr("mimetype", kind)
        archive.writestr("content.xml", HEAD + content)
        archive.writestr("META-INF/manifest.xml", HEAD + manifest)


xlsx("book.xlsx", "")
xlsx("old.xlsx", '<workbookPr date1904="1"/>')
ods("book.ods")
