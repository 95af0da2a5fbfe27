"""The program as it is shipped: hardened, and static without a difference in any locale.

Usage: Shipped_test.py BUILD.
"""
import os
import subprocess
import sys
import tempfile
import unittest

BUILD = sys.argv[1]
PROGRAM = BUILD + '/frontend/dnzcnf'
PROBES = [f'{BUILD}/tests/shipped/locale_probe_{probe}' for probe in ('shipped', 'shared')]


def output_of(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


class Hardening(unittest.TestCase):
    def test_program(self):
        header = output_of('readelf', '-hW', PROGRAM)
        self.assertRegex(header, r'Type: +DYN \(Position-Independent')
        segments = output_of('readelf', '-lW', PROGRAM)
        self.assertNotIn('INTERP', segments)
        self.assertIn('GNU_RELRO', segments)
        self.assertRegex(segments, r'GNU_STACK .* RW ')
        self.assertNotRegex(segments, r'LOAD .* RWE ')
        self.assertRegex(output_of('readelf', '-dW', PROGRAM), r'FLAGS_1\) +Flags: NOW PIE')

    def test_code(self):
        """The C library inside the program has such calls too, so its own objects are asked."""
        needed = output_of('nm', '--undefined-only', BUILD + '/services/types/libservices_types.a',
                           BUILD + '/frontend/libfrontend.a')
        self.assertIn(' U __stack_chk_fail', needed)
        self.assertIn(' U __vsnprintf_chk', needed)
        self.assertNotRegex(needed, r' U v?snprintf\n')


class Locales(unittest.TestCase):
    def test_static_program_answers_as_a_dynamic_one(self):
        with tempfile.TemporaryDirectory(prefix='dnzcnf-locales-') as folder:
            for name in ('de_DE', 'ja_JP'):
                output_of('localedef', '-i', name, '-f', 'UTF-8', f'{folder}/{name}.UTF-8')
            answers = {}
            for language in (None, 'C', 'POSIX', 'C.UTF-8', 'de_DE.UTF-8', 'de_DE', 'ja_JP.UTF-8',
                             'xx_YY', ''):
                environment = {'LOCPATH': folder, 'NLSPATH': BUILD + '/install/messages/%L/%N:'
                               + BUILD + '/install/messages/%l_%t/%N:' + BUILD + '/install/%N.cat'}
                if language is not None:
                    environment['LANG'] = language
                static, dynamic = (output_of(probe, env=environment) for probe in PROBES)
                self.assertEqual(static, dynamic, language)
                answers[language] = static
        self.assertIn('Di 09 Mär 2021', answers['de_DE.UTF-8'])
        self.assertIn('Leerzeichen', answers['de_DE.UTF-8'])
        self.assertIn('火曜日', answers['ja_JP.UTF-8'])
        self.assertIn('Tue Mar  9', answers['C'])


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1], verbosity=2)
