"""The program as it is shipped: hardened, and static without a difference in any locale."""
import tempfile
import unittest

from program import BUILD, form, output_of, run


class Shipped(unittest.TestCase):
    def test_hardening(self):
        headers = output_of('readelf', '-hldW', BUILD / 'frontend/dnzcnf')
        for expected in (r'Type: +DYN \(Position-Independent', 'GNU_RELRO', r'GNU_STACK .* RW ',
                         r'FLAGS_1\) +Flags: NOW PIE'):
            self.assertRegex(headers, expected)
        self.assertNotRegex(headers, 'INTERP|LOAD .* RWE ')
        # The C library inside the program has such calls too, so its own objects are asked.
        needed = output_of('nm', '-u', *BUILD.glob('*/**/lib*.a'))
        self.assertRegex(needed, r' U __stack_chk_fail\n(.*\n)* +U __vsnprintf_chk\n')
        self.assertNotRegex(needed, r' U v?snprintf\n')

    def test_static_program_answers_as_a_dynamic_one(self):
        expected = {'de_DE.UTF-8': 'Leerzeichen', 'de_DE': 'Leerzeichen', 'C': 'a space', 'xx_YY': '',
                    'C.UTF-8': '', '': ''}
        fields = {'dnzhidefile': 'x', 'dnzINIsave': 'x', 'dnzSave': '', 'dnzNumPairs': 0,
                  'dnzNewName': 'two words'}
        with tempfile.TemporaryDirectory() as folder:
            output_of('localedef', '-i', 'de_DE', '-f', 'UTF-8', f'{folder}/de_DE.UTF-8')
            catalogues = ':'.join(f'{BUILD}/install/{name}' for name in (
                'messages/%L/%N', 'messages/%l_%t/%N', '%N.cat'))
            for language, text in expected.items():
                variables = {'LOCPATH': folder, 'NLSPATH': catalogues, 'LANG': language}
                static, dynamic = (run(BUILD / name, folder, form(fields), variables).output.decode()
                                   for name in ('frontend/dnzcnf', 'tests/faults/dnzcnf_with_faults'))
                self.assertEqual(static, dynamic, language)
                self.assertIn(text, static)
