"""The conversion tables: every entry is what the C library makes of the character that it stands
for, and mktables reports what it can't make."""
import ctypes
import itertools
import pathlib
import re
import tempfile
import unittest

import program

PAGE_PAIRS = program.ROOT / 'tools/page-pairs.txt'
BYTES = [bytes([value]) for value in range(256)]
PAIRS = [first + second for first in BYTES for second in BYTES]
SHIFT_OUT, SHIFT_IN = b'\x0e', b'\x0f'
LIBC = ctypes.CDLL(None)
LIBC.iconv_open.restype = ctypes.c_void_p


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


class Ccsid:
    def __init__(self, line):
        *numbers, self.converter = line.split()
        self.dbcs_page, self.sbcs_page, width, encoding = map(int, numbers[1:5])
        self.is_mixed, self.is_host = width == 3, encoding == 1


def table(one, other, codes):
    """What each code becomes, or the substitute of the other side."""
    size = len(codes[0])
    before, shift = (SHIFT_OUT if each.is_host and size == 2 else b'' for each in (one, other))
    characters = converted(one.converter, 'UTF-32LE', [before + code for code in codes])
    single = {character for character in characters.values() if len(character) == 4}
    back = converted('UTF-32LE', other.converter, single)
    never = (SHIFT_OUT, SHIFT_IN) if other.is_mixed and other.is_host else ()
    for code in codes:
        found = back.get(characters.get(before + code), b'')
        fits = len(found) == len(shift) + size and found.startswith(shift) and found not in never
        yield found[len(shift):] if fits else (b'\x3f' if other.is_host else b'\x1a') * size


class Tables(unittest.TestCase):
    def test_every_entry(self):
        text = PAGE_PAIRS.read_text()
        ccsids = {line.split()[0]: Ccsid(line) for line in re.findall('(?m)^ccsid(.*)', text)}
        made = {path.name: path.read_bytes() for path in (program.BUILD / 'conv/table').iterdir()}
        self.assertEqual(re.findall(r'\d+', made.pop('ccsid.tbl').decode()),
                         re.findall(r' (\d+)(?= )', ''.join(re.findall('(?m)^ccsid.* ', text))))
        for line in re.findall('(?m)^group(.*)', text):
            group = [ccsids[number] for number in line.split()]
            for one, other in itertools.permutations(group, 2):
                found = made.pop(f'{one.sbcs_page:04x}{other.sbcs_page:04x}.tbl', None)
                if found:
                    self.assertEqual(found, b''.join(table(one, other, BYTES)))
                rows = one.is_mixed and other.is_mixed and made.pop(
                    f'{one.dbcs_page:04x}{other.dbcs_page:04x}.tbl', None)
                if rows:
                    places = [512 * rows[first] + 2 * second for first, second in PAIRS]
                    self.assertEqual([rows[place:place + 2] for place in places],
                                     list(table(one, other, PAIRS)))
        self.assertEqual(made, {})

    def test_reports(self):
        misfit = '{}: 188 pairs with the first byte 9f are read as single bytes'
        single = ''.join(f'5: the single byte {byte:02x} is read as a first byte\n'
                         for byte in range(0xA1, 0xE0))
        unknown = 'ccsid 1 0 1 1 1 0 none\nccsid 2 0 2 1 1 0 IBM037\ngroup 2 1'
        for text, folder, reported, code in (
                (PAGE_PAIRS.read_text(), '.', f'{misfit}\n{misfit}\n'.format(932, 943), 0),
                ('ccsid 5 301 897 3 2 5 IBM932', '.', single, 0),
                ('# remark\n \nfile 1', '.', 'unknown line: file\n', 1),
                ('ccsid 1 0 1 1 2 IBM850', '.', 'unknown line: ccsid\n', 1),
                ('group 5', '.', 'a group names CCSID 5, which has no line\n', 1),
                (unknown, '.', 'the C library has no converter from IBM037 to none\n', 1),
                ('', 'none', "can't write none/ccsid.tbl\n", 1),
                (None, '.', "can't open pairs\n", 1),
                ('', None, 'the arguments are PAGE-PAIRS-FILE DIRECTORY\n', 1)):
            with self.subTest(reported), tempfile.TemporaryDirectory() as directory:
                if text is not None:
                    pathlib.Path(directory, 'pairs').write_text(text)
                command = [program.BUILD / 'tools/mktables', 'pairs', *[folder] * bool(folder)]
                answer = program.run(command, directory)
                lines = re.sub('(?m)^mktables: ', '', answer.errors.decode())
                self.assertEqual((lines, answer.code), (reported, code))
