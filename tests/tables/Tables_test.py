"""The conversion tables: every entry is what the C library makes of the character that it stands
for, and mktables reports what it can't make."""
import collections
import ctypes
import itertools
import pathlib
import re
import tempfile
import unittest

from program import BUILD, ROOT, run

PAGE_PAIRS = (ROOT / 'tools/page-pairs.txt').read_text()
BYTES = [bytes([value]) for value in range(256)]
PAIRS = [first + second for first in BYTES for second in BYTES]
SHIFTS = SHIFT_OUT, _ = b'\x0e', b'\x0f'
LIBC = ctypes.CDLL(None)
LIBC.iconv_open.restype = ctypes.c_void_p
Ccsid = collections.namedtuple('Ccsid', 'dbcs sbcs width encoding leads converter')
MIXED, HOST = '3', '1'  # width, encoding
MISFIT = '{}: 188 pairs with the first byte 9f are read as single bytes\n'
SINGLES = ''.join(f'5: the single byte {byte:02x} is read as a first byte\n'
                  for byte in range(0xA1, 0xE0))
REPORTS = {  # what mktables makes of a file
    PAGE_PAIRS: MISFIT.format(932) + MISFIT.format(943),
    'ccsid 5 301 897 3 2 5 IBM932': SINGLES,
    '# remark\n \nfile 1': 'unknown line: file\n',
    'ccsid 1 0 1 1 2 IBM850': 'unknown line: ccsid\n',
    'group 5': 'a group names CCSID 5, which has no line\n',
    'ccsid 1 0 1 1 1 0 none\nccsid 2 0 2 1 1 0 IBM037\ngroup 2 1':
        'the C library has no converter from IBM037 to none\n'}


def converted(source, target, texts):
    """What each text becomes; one that can't be converted is missing."""
    handle, results = ctypes.c_void_p(LIBC.iconv_open(target.encode(), source.encode())), {}
    for text in texts:
        arrays = ctypes.create_string_buffer(text), ctypes.create_string_buffer(8)
        places = [ctypes.pointer(ctypes.c_void_p(ctypes.addressof(array))) for array in arrays]
        left = [ctypes.pointer(ctypes.c_size_t(size)) for size in (len(text), 8)]
        LIBC.iconv(handle, None, None, None, None)
        if LIBC.iconv(handle, places[0], left[0], places[1], left[1]) != -1:
            results[text] = arrays[1].raw[:8 - left[1][0]]
    return results


def table(one, other, codes):
    """What each code becomes, or the substitute of the other side."""
    size = len(codes[0])
    before, shift = (SHIFT_OUT if each.encoding == HOST and size == 2 else b'' for each in (one, other))
    characters = converted(one.converter, 'UTF-32LE', [before + code for code in codes])
    single = {character for character in characters.values() if len(character) == 4}
    back = converted('UTF-32LE', other.converter, single)
    never = SHIFTS if (other.width, other.encoding) == (MIXED, HOST) else ()
    for code in codes:
        found = back.get(characters.get(before + code), b'')
        fits = len(found) == len(shift) + size and found.startswith(shift) and found not in never
        yield found[len(shift):] if fits else (b'\x3f' if other.encoding == HOST else b'\x1a') * size


class Tables(unittest.TestCase):
    def test_every_entry(self):
        lines = [line.split() for line in re.findall('(?m)^ccsid(.*)', PAGE_PAIRS)]
        ccsids = {number: Ccsid(*fields) for number, *fields in lines}
        made = {path.name: path.read_bytes() for path in (BUILD / 'conv/table').iterdir()}
        self.assertEqual([line.split() for line in made.pop('ccsid.tbl').decode().split('\n')[1:-1]],
                         [line[:6] for line in lines])
        for group in re.findall('(?m)^group(.*)', PAGE_PAIRS):
            for one, other in itertools.permutations(map(ccsids.get, group.split()), 2):
                name = f'{int(one.sbcs):04x}{int(other.sbcs):04x}.tbl'
                if name in made:
                    self.assertEqual(made.pop(name), b''.join(table(one, other, BYTES)))
                name = f'{int(one.dbcs):04x}{int(other.dbcs):04x}.tbl'
                if name in made and one.width == other.width == MIXED:
                    rows = made.pop(name)
                    places = [512 * rows[first] + 2 * second for first, second in PAIRS]
                    self.assertEqual([rows[place:place + 2] for place in places],
                                     list(table(one, other, PAIRS)))
        self.assertEqual(made, {})

    def test_reports(self):
        for text, reported in REPORTS.items():
            with self.subTest(reported), tempfile.TemporaryDirectory() as folder:
                pathlib.Path(folder, 'pairs').write_text(text)
                answer = run([BUILD / 'tools/mktables', 'pairs', '.'], folder)
                self.assertEqual(re.sub('(?m)^mktables: ', '', answer.errors.decode()), reported)
                self.assertEqual(answer.code, reported.count('\n') == 1)  # the reason of a failure
