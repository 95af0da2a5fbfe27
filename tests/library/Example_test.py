"""Builds the example program against the installed services, and runs it.

Usage: Example_test.py SOURCE BUILD COMPILER SANITIZERS. The build is staged into a temporary
folder; the program is built with the sanitizers of the library, which may be none.
"""
import glob
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE, BUILD, COMPILER, SANITIZERS = sys.argv[1:5]
sys.path.append(SOURCE + '/tests/support')
from staging import stage

FLAGS = '-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror'
if SANITIZERS:
    FLAGS += ' -fsanitize=' + SANITIZERS

CONVERTED = 'Grüße'.encode('latin-1')
MESSAGE = b'The name "two words" of the new entry holds a blank. A name is one word.'


class Example(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix='dnzcnf-library-')
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        stage(BUILD, cls.folder)
        cls.root = cls.folder + '/opt/nzm'
        cls.build = cls.folder + '/build'
        for command in (
                ['cmake', '-G', 'Ninja', '-S', SOURCE + '/examples/services', '-B', cls.build,
                 '-DCMAKE_PREFIX_PATH=' + cls.root, '-DCMAKE_CXX_COMPILER=' + COMPILER,
                 '-DCMAKE_CXX_FLAGS=' + FLAGS],
                ['cmake', '--build', cls.build]):
            subprocess.run(command, check=True)

    def run_program(self, **environment):
        return subprocess.run(
            [self.build + '/convert_text'], capture_output=True, check=False, cwd=self.folder,
            env={'NLSPATH': self.root + '/bin/dnz.cat', 'DNZ_PATH': self.folder, **environment})

    def test_text_is_converted_and_dumped(self):
        done = self.run_program(DNZ_XLAT_PATH=self.folder + '/var/nzm/conv/table', DNZ_TRACE='ON')
        self.assertEqual((done.returncode, done.stdout, done.stderr),
                         (0, CONVERTED + b'\n' + MESSAGE + b'\n', b''))
        trace, = glob.glob(self.folder + '/*.TRC')
        with open(trace, encoding='latin-1') as records:
            lines = records.read().splitlines()
        places = [next(place for place, line in enumerate(lines) if mark in line) for mark in (
            '-->xxxInitialize', '<--xcsConvertString (rc= OK)', '0000  47 72 FC DF 65',
            '<--xnzGetMessage (rc= OK)', '-->xnzTermCommonServices', '! Trace termination')]
        self.assertEqual(places, sorted(places), lines)

    def test_without_tables_only_the_conversion_fails(self):
        done = self.run_program()
        self.assertEqual((done.returncode, done.stdout), (1, MESSAGE + b'\n'))
        self.assertIn(b"The text can't be converted: ", done.stderr)

    def test_every_header_stands_alone(self):
        headers = glob.glob(self.root + '/include/dnz/*.h')
        self.assertTrue(headers)
        for header in headers:
            with self.subTest(header):
                subprocess.run([COMPILER, '-std=c++20', '-fsyntax-only', '-x', 'c++', '-include',
                                header, '/dev/null'], check=True)


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1], verbosity=2)
