"""The program as it is shipped: hardened, and static without a difference in any locale."""
import tempfile
import unittest

from staging import BUILD, output_of


class Shipped(unittest.TestCase):
    def test_hardening(self):
        headers = output_of('readelf', '-hldW', BUILD / 'frontend/dnzcnf')
        for expected in (r'Type: +DYN \(Position-Independent', 'GNU_RELRO', r'GNU_STACK .* RW ',
                         r'FLAGS_1\) +Flags: NOW PIE'):
            self.assertRegex(headers, expected)
        self.assertNotRegex(headers, 'INTERP|LOAD .* RWE ')
        # The C library inside the program has such calls too, so its own objects are asked.
        needed = output_of('nm', '-u', *BUILD.glob('services/base/*.a'), *BUILD.glob('frontend/*.a'))
        self.assertRegex(needed, r' U __stack_chk_fail\n(.*\n)* +U __vsnprintf_chk\n')
        self.assertNotRegex(needed, r' U v?snprintf\n')

    def test_static_program_answers_as_a_dynamic_one(self):
        expected = {'de_DE.UTF-8': 'Di 09 Mär 2021', 'C': 'Tue Mar  9',
                    'de_DE': 'Leerzeichen', 'C.UTF-8': '', 'xx_YY': '', '': ''}
        with tempfile.TemporaryDirectory() as folder:
            output_of('localedef', '-i', 'de_DE', '-f', 'UTF-8', f'{folder}/de_DE.UTF-8')
            catalogues = ':'.join(f'{BUILD}/install/{name}' for name in (
                'messages/%L/%N', 'messages/%l_%t/%N', '%N.cat'))
            for language, text in expected.items():
                environment = {'LOCPATH': folder, 'NLSPATH': catalogues, 'LANG': language}
                static, dynamic = (output_of(BUILD / f'tests/shipped/locale_probe_{probe}',
                                             env=environment) for probe in ('shipped', 'shared'))
                self.assertEqual(static, dynamic, language)
                self.assertIn(text, static)
