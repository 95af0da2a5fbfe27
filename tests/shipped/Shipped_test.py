"""The program as it is shipped: hardened, and static without a difference in any locale."""
import tempfile
import unittest
from subprocess import check_call, check_output

from program import BUILD, run

REFUSED = b'dnzhidefile=x&dnzINIsave=x&dnzSave=&dnzNumPairs=0&dnzNewName=two+words'
LANGUAGES = 'de_DE.UTF-8', 'de_DE', 'C', 'C.UTF-8', 'xx_YY', ''


class Shipped(unittest.TestCase):
    def test_hardening(self):
        headers = check_output(['readelf', '-hldW', BUILD / 'frontend/dnzcnf'], text=True)
        for expected in (r'Type: +DYN \(Position-Independent', 'GNU_RELRO', r'GNU_STACK .* RW ',
                         r'FLAGS_1\) +Flags: NOW PIE'):
            self.assertRegex(headers, expected)
        self.assertNotRegex(headers, 'INTERP|LOAD .* RWE ')
        # The C library inside the program has such calls too, so its own objects are asked.
        needed = check_output(['nm', '-u', *BUILD.glob('*/**/lib*.a')], text=True)
        self.assertRegex(needed, r' U __stack_chk_fail\n(.*\n)* +U __vsnprintf_chk\n')
        self.assertNotRegex(needed, r' U v?snprintf\n')

    def test_static_program_answers_as_a_dynamic_one(self):
        with tempfile.TemporaryDirectory() as folder:
            check_call(['localedef', '-i', 'de_DE', '-f', 'UTF-8', f'{folder}/de_DE.UTF-8'])
            catalogues = ':'.join(f'{BUILD}/install/{name}' for name in (
                'messages/%L/%N', 'messages/%l_%t/%N', '%N.cat'))
            for language in LANGUAGES:
                variables = {'LOCPATH': folder, 'NLSPATH': catalogues, 'LANG': language}
                static, dynamic = (run(BUILD / name, folder, REFUSED, variables).output.decode()
                                   for name in ('frontend/dnzcnf', 'tests/faults/dnzcnf_with_faults'))
                self.assertEqual(static, dynamic, language)
                self.assertEqual('Leerzeichen' in static, 'de' in language)
