#!/usr/bin/env python3
"""Damaged workbooks made from a good export of the program (.xls or .xlsx).

    damaged_workbooks.py one KIND GOOD OUT [ARG]   one workbook of a kind (the tests' cases)
    damaged_workbooks.py campaign GOOD_XLS GOOD_XLSX OUTDIR COUNT SEED
                                                   COUNT workbooks of every kind, at random

Nothing large is stored: a "bomb" is a few kilobytes that would unpack to many megabytes.
The .xls side knows the layout the program writes: the header sector, then the workbook
stream in sectors in order, then the directory and the allocation table.
"""
import random
import struct
import sys
import zipfile
import io

SECTOR = 512


# ---- .xls ----

def records(data):
    """(file offset, type, length) of each record of the workbook stream, as laid out."""
    out = []
    at = SECTOR
    size = stream_size(data)
    end = SECTOR + size
    while at + 4 <= end:
        t, n = struct.unpack_from('<HH', data, at)
        out.append((at, t, n))
        at += 4 + n
    return out


def directory_at(data):
    return (struct.unpack_from('<I', data, 48)[0] + 1) * SECTOR


def stream_size(data):
    return struct.unpack_from('<I', data, directory_at(data) + 128 + 120)[0]


def fat_at(data):
    return (struct.unpack_from('<I', data, 76)[0] + 1) * SECTOR


def opening_label(data):
    """The first shared-text cell of an entry row (row 4 on) of the first sheet."""
    for at, t, n in records(data):
        if t == 0x00FD and n == 10 and struct.unpack_from('<H', data, at + 4)[0] >= 3:
            return at
    raise SystemExit('no text cell in an entry row')


def other_writer(data):
    """The same workbook as if another program wrote it: it goes to the other reader."""
    at = bytes(data).index(b'Brenlow')
    data[at:at + 7] = b'Another'
    return data


def xls_label_length(data, length=0):
    at = opening_label(data)
    struct.pack_into('<H', data, at + 2, length)
    return data


def xls_fat_loop(data, huge=False, sector=None):
    """The workbook stream's chain turned back on itself part-way."""
    sectors = stream_size(data) // SECTOR
    k = sector if sector is not None else max(1, sectors // 2)
    struct.pack_into('<I', data, fat_at(data) + 4 * k, max(0, k - 3))
    if huge:
        struct.pack_into('<I', data, directory_at(data) + 128 + 120, 0xFFFFFF00)
    return data


def xls_stream_size(data, size):
    struct.pack_into('<I', data, directory_at(data) + 128 + 120, size)
    return data


def xls_number(data, value, row=3, col=4):
    """The number of a cell written as a NUMBER record, set to `value`."""
    for at, t, n in records(data):
        if t == 0x0203 and n == 14 and struct.unpack_from('<HH', data, at + 4) == (row, col):
            struct.pack_into('<d', data, at + 10, value)
            return data
    raise SystemExit('no number cell at row %d, column %d' % (row + 1, col + 1))


# ---- .xlsx ----

def members(raw):
    with zipfile.ZipFile(io.BytesIO(bytes(raw))) as z:
        return [(i, z.read(i.filename)) for i in z.infolist()]


def rezip(parts, replace):
    out = io.BytesIO()
    with zipfile.ZipFile(out, 'w', zipfile.ZIP_DEFLATED) as z:
        names = set()
        for info, body in parts:
            body = replace.get(info.filename, body)
            z.writestr(info.filename, body)
            names.add(info.filename)
        # A part the workbook did not have is added (the program writes no shared texts).
        for name, body in replace.items():
            if name not in names:
                z.writestr(name, body)
    return bytearray(out.getvalue())


def sheet_xml(raw, name='xl/worksheets/sheet1.xml'):
    return dict((i.filename, b) for i, b in members(raw))[name].decode()


def with_sheet(raw, xml, name='xl/worksheets/sheet1.xml'):
    return rezip(members(raw), {name: xml.encode()})


def cell_span(xml, ref):
    start = xml.index('<c r="%s"' % ref)
    gt = xml.index('>', start)
    end = gt + 1 if xml[gt - 1] == '/' else xml.index('</c>', start) + 4
    return start, end


def xlsx_ref(raw, ref='ZZZZZZ4', old='B4'):
    xml = sheet_xml(raw)
    return with_sheet(raw, xml.replace('<c r="%s"' % old, '<c r="%s"' % ref, 1))


def xlsx_number(raw, text, ref='E4'):
    """The cell's value as the given number text; text with a comma goes in as text."""
    xml = sheet_xml(raw)
    s, e = cell_span(xml, ref)
    if ',' in text:
        cell = '<c r="%s" t="inlineStr"><is><t>%s</t></is></c>' % (ref, text)
    else:
        cell = '<c r="%s"><v>%s</v></c>' % (ref, text)
    return with_sheet(raw, xml[:s] + cell + xml[e:])


def central(raw, name):
    """Offsets of the local and central headers of a member."""
    data = bytes(raw)
    eocd = data.rindex(b'PK\x05\x06')
    count, size, offset = struct.unpack_from('<HII', data, eocd + 10)
    at = offset
    for _ in range(count):
        n, m, k = struct.unpack_from('<HHH', data, at + 28)
        if data[at + 46:at + 46 + n].decode() == name:
            return struct.unpack_from('<I', data, at + 42)[0], at
        at += 46 + n + m + k
    raise SystemExit('no member ' + name)


def xlsx_crc(raw, name='xl/worksheets/sheet1.xml'):
    local, cen = central(raw, name)
    for at in (local + 14, cen + 16):
        raw[at] ^= 0x55
    return raw


def xlsx_declared_size(raw, size, name='xl/worksheets/sheet1.xml'):
    local, cen = central(raw, name)
    struct.pack_into('<I', raw, local + 22, size)
    struct.pack_into('<I', raw, cen + 24, size)
    return raw


def xlsx_bomb(raw, megabytes=40, part='xl/sharedStrings.xml'):
    """A part that unpacks to many megabytes of one letter."""
    body = (b'<?xml version="1.0"?><sst xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main">'
            b'<si><t>' + b'A' * (megabytes << 20) + b'</t></si></sst>')
    return rezip(members(raw), {part: body})


def xlsx_rows_bomb(raw, rows=70000):
    """A sheet of many rows of one cell each: more rows with cells than a sheet may hold."""
    xml = sheet_xml(raw)
    s = xml.index('<sheetData>') + len('<sheetData>')
    e = xml.index('</sheetData>')
    body = ''.join('<row r="%d"><c r="A%d"><v>1</v></c></row>' % (r, r) for r in range(4, 4 + rows))
    return with_sheet(raw, xml[:s] + body + xml[e:])


def xlsx_long_text(raw, chars=40000):
    xml = sheet_xml(raw)
    s, e = cell_span(xml, 'C4')
    return with_sheet(raw, xml[:s] + '<c r="C4" t="inlineStr"><is><t>%s</t></is></c>' % ('X' * chars) + xml[e:])


def xlsx_laughs(raw):
    lol = ('<?xml version="1.0"?><!DOCTYPE l [<!ENTITY a "aaaaaaaaaa">' +
           ''.join('<!ENTITY %s "%s">' % (chr(98 + i), ('&%s;' % chr(97 + i)) * 10) for i in range(8)) +
           ']><sst xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><si><t>&i;</t></si></sst>')
    return rezip(members(raw), {'xl/sharedStrings.xml': lol.encode()})


def xlsx_deep(raw, depth=200000):
    xml = sheet_xml(raw)
    s = xml.index('<sheetData>') + len('<sheetData>')
    return with_sheet(raw, xml[:s] + '<x>' * depth + '</x>' * depth + xml[s:])


def xlsx_string_index(raw, index='99999'):
    xml = sheet_xml(raw)
    s, e = cell_span(xml, 'B4')
    return with_sheet(raw, xml[:s] + '<c r="B4" t="s"><v>%s</v></c>' % index + xml[e:])


# ---- the campaign ----

REFS = ['ZZZZZZ4', 'XFE4', 'A1048577', 'B99999999999999999999', 'AAAAAAAAAAAAAAAAAAAAAAAA4', 'B-4', 'B0',
        '4B', 'b4', 'XFD1048576', 'B4294967297', 'AB4']
NUMBERS = ['inf', '-inf', 'nan', '1e400', '-1e400', '0x1p20', '1e308', '-1e308', '8,0,0000', '1e18', '9e17',
           '1,00,000', '', ' ', '1.5E-3', '1e-400', '+5', '--5', '5e', 'Infinity']


def flip(raw, rng, count):
    for _ in range(count):
        raw[rng.randrange(len(raw))] ^= 1 << rng.randrange(8)
    return raw


def campaign(good_xls, good_xlsx, outdir, count, seed):
    import os
    rng = random.Random(seed)
    xls = bytearray(open(good_xls, 'rb').read())
    xlsx = bytearray(open(good_xlsx, 'rb').read())
    recs = [r for r in records(xls)]
    kinds = []

    def add(name, maker):
        kinds.append((name, maker))

    # Every fixed kind once, then random ones.
    fixed = [
        ('xls-label-length-0', lambda: xls_label_length(bytearray(xls), 0)),
        ('xls-other-label-length-0', lambda: xls_label_length(other_writer(bytearray(xls)), 0)),
        ('xls-other-label-length-9', lambda: xls_label_length(other_writer(bytearray(xls)), 9)),
        ('xls-fat-loop', lambda: xls_fat_loop(bytearray(xls))),
        ('xls-fat-loop-huge', lambda: xls_fat_loop(bytearray(xls), huge=True)),
        ('xls-stream-size-huge', lambda: xls_stream_size(bytearray(xls), 0x7FFFFFFF)),
        ('xls-stream-size-short', lambda: xls_stream_size(bytearray(xls), 4096)),
        ('xls-empty', lambda: bytearray()),
        ('xls-header-only', lambda: bytearray(xls[:SECTOR])),
        ('xlsx-crc', lambda: xlsx_crc(bytearray(xlsx))),
        ('xlsx-crc-workbook', lambda: xlsx_crc(bytearray(xlsx), 'xl/workbook.xml')),
        ('xlsx-size-small', lambda: xlsx_declared_size(bytearray(xlsx), 100)),
        ('xlsx-size-huge', lambda: xlsx_declared_size(bytearray(xlsx), 0xFFFFFFF0)),
        ('xlsx-bomb-strings', lambda: xlsx_bomb(xlsx, 40)),
        ('xlsx-bomb-sheet', lambda: xlsx_bomb(xlsx, 40, 'xl/worksheets/sheet1.xml')),
        ('xlsx-rows-bomb', lambda: xlsx_rows_bomb(xlsx)),
        ('xlsx-long-text', lambda: xlsx_long_text(xlsx)),
        ('xlsx-laughs', lambda: xlsx_laughs(xlsx)),
        ('xlsx-deep', lambda: xlsx_deep(xlsx)),
        ('xlsx-string-index', lambda: xlsx_string_index(xlsx)),
        ('xlsx-string-index-huge', lambda: xlsx_string_index(xlsx, '99999999999999999999999')),
    ]
    fixed += [('xlsx-ref-%d' % i, (lambda r: lambda: xlsx_ref(xlsx, r))(r)) for i, r in enumerate(REFS)]
    fixed += [('xlsx-number-%d' % i, (lambda t: lambda: xlsx_number(xlsx, t))(t)) for i, t in enumerate(NUMBERS)]

    other = other_writer(bytearray(xls))

    def random_kind(i):
        k = rng.randrange(9)
        # A third of the .xls ones as another program's, read by freexl once found sound.
        base = other if rng.randrange(3) == 0 else xls
        if k == 0:
            return 'xls-flip', flip(bytearray(base), rng, rng.randint(1, 8))
        if k == 1:
            return 'xls-truncate', bytearray(base[:rng.randrange(len(base))])
        if k == 2:
            raw = bytearray(base)
            at, _, n = rng.choice(recs)
            struct.pack_into('<H', raw, at + 2, rng.choice([0, 1, n - 1, n + 1, 0xFFFF, rng.randrange(0x10000)]) & 0xFFFF)
            return 'xls-record-length', raw
        if k == 3:
            raw = bytearray(base)
            sectors = len(raw) // SECTOR - 1
            struct.pack_into('<I', raw, fat_at(raw) + 4 * rng.randrange(sectors), rng.randrange(sectors + 4))
            return 'xls-fat-entry', raw
        if k == 4:
            return 'xlsx-flip', flip(bytearray(xlsx), rng, rng.randint(1, 8))
        if k == 5:
            return 'xlsx-truncate', bytearray(xlsx[:rng.randrange(len(xlsx))])
        if k == 6:
            return 'xlsx-ref', xlsx_ref(xlsx, rng.choice(REFS), rng.choice(['A4', 'B4', 'C4', 'E4']))
        if k == 7:
            return 'xlsx-number', xlsx_number(xlsx, rng.choice(NUMBERS), rng.choice(['E4', 'F4', 'D4', 'M4']))
        raw = bytearray(base)
        struct.pack_into('<I', raw, directory_at(raw) + 128 + 116, rng.randrange(1 << 32))
        return 'xls-stream-start', raw

    made = []
    for i in range(count):
        if i < len(fixed):
            name, raw = fixed[i][0], fixed[i][1]()
        else:
            name, raw = random_kind(i)
        ext = '.xls' if name.startswith('xls-') else '.xlsx'
        path = os.path.join(outdir, '%04d-%s%s' % (i, name, ext))
        with open(path, 'wb') as f:
            f.write(raw)
        made.append(path)
    return made


ONE = {
    'label-length-0': lambda raw, arg: xls_label_length(raw, int(arg or 0)),
    'other-label-length-0': lambda raw, arg: xls_label_length(other_writer(raw), int(arg or 0)),
    'fat-loop': lambda raw, arg: xls_fat_loop(raw),
    'fat-loop-huge': lambda raw, arg: xls_fat_loop(raw, huge=True),
    'xls-number': lambda raw, arg: xls_number(raw, float(arg)),
    'crc': lambda raw, arg: xlsx_crc(raw),
    'ref': lambda raw, arg: xlsx_ref(raw, arg),
    'number': lambda raw, arg: xlsx_number(raw, arg),
    'bomb': lambda raw, arg: xlsx_bomb(raw, int(arg or 40)),
}

if __name__ == '__main__':
    if sys.argv[1] == 'one':
        kind, good, out = sys.argv[2], sys.argv[3], sys.argv[4]
        arg = sys.argv[5] if len(sys.argv) > 5 else None
        raw = ONE[kind](bytearray(open(good, 'rb').read()), arg)
        open(out, 'wb').write(raw)
    elif sys.argv[1] == 'campaign':
        for p in campaign(sys.argv[2], sys.argv[3], sys.argv[4], int(sys.argv[5]), int(sys.argv[6])):
            print(p)
    else:
        raise SystemExit(__doc__)
