"""Runs the installed program in every language.

Usage: Requests_test.py SOURCE BUILD. The build is staged into a temporary folder.
"""
import glob
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import urllib.parse
import urllib.request

from sources import ENGLISH, PAGES, TRANSLATIONS, Sources

SOURCE, BUILD = sys.argv[1:3]
sys.path.append(SOURCE + '/tests/support')
from staging import served, stage

OPEN = {'dnzcnf': 'open', 'dnzINIfile': 'new.ini'}
REFUSED = {'dnzhidefile': 'new.ini', 'dnzINIsave': 'new.ini', 'dnzSave': 'save',
           'dnzNumPairs': '0', 'dnzNewName': 'two words'}
FORM_TYPE = 'application/x-www-form-urlencoded'

# What the sanitizers read goes to the program; nothing else does that a request doesn't name.
HANDED_ON = {name: value for name, value in os.environ.items() if name.endswith('SAN_OPTIONS')}

# The languages that other values of LANG get, None for an environment without it.
LANGUAGE_OF = {'de_AT.UTF-8': 'de_DE', 'es_MX': 'es_ES', 'fr_CA@euro': 'fr_FR', 'zh': 'zh_CN',
               'en_GB.UTF-8': ENGLISH, 'C': ENGLISH, 'POSIX': ENGLISH, None: ENGLISH}
for own in [ENGLISH] + TRANSLATIONS:
    LANGUAGE_OF.update({own: own, own + '.UTF-8': own})


class Language:
    """What the program has to answer in a language."""

    def __init__(self, code):
        sources = Sources(SOURCE)
        self.messages = sources.finished_messages(code)
        self.entry, self.head, self.tail = (sources.page(code, name) for name in PAGES)

    def check_form(self, test, page):
        test.assertTrue(page.startswith(self.head), page)
        test.assertTrue(page.endswith(self.tail + '\n'), page)
        for number in (1004, 1018, 1019, 1020, 1021):
            test.assertIn('>' + self.messages[number] + '<', page.replace('\n', ''))

    def check_refusal(self, test, page):
        fault = self.messages[1013].replace('%3', 'two words')
        test.assertEqual(page, f'{self.messages[1005]}\n{fault}\n{self.messages[1012]}\n')


class Requests(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix='dnzcnf-languages-')
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        stage(BUILD, cls.folder)

    def post(self, fields, **environment):
        """The page of a request to the program itself, in the folder of the ini files."""
        body = urllib.parse.urlencode(fields).encode()
        environment.update(HANDED_ON, REQUEST_METHOD='POST', CONTENT_TYPE=FORM_TYPE,
                           CONTENT_LENGTH=str(len(body)))
        answer = subprocess.run([self.folder + '/opt/nzm/bin/dnzcnf'], input=body, env=environment,
                                cwd=self.folder + '/var/nzm', stdout=subprocess.PIPE, check=False)
        return answer.stdout.decode().split('\n\n', 1)[1]

    def template_folder(self, environment):
        """The last folder in which the program looks for a template, taken from a trace."""
        self.post(OPEN, DNZ_TRACE='ON', **environment)
        trace, = glob.glob(self.folder + '/var/nzm/*.TRC')
        with open(trace, encoding='latin-1') as records:
            tried = re.findall(r'! (/.*)/dnzcnf2\.htm', records.read())
        os.remove(trace)
        return self.folder + tried[-1]

    def test_lang_alone_chooses_the_language(self):
        # Where the C library looks by itself, and where the program looks, below the stage.
        locale = self.folder + '/usr/share/locale/'
        catalogues = ':'.join([locale + '%L/LC_MESSAGES/%N', locale + '%l/LC_MESSAGES/%N',
                               self.folder + '/opt/nzm/bin/%N.cat'])
        for lang, code in LANGUAGE_OF.items():
            with self.subTest(LANG=lang):
                environment = {'LANG': lang} if lang else {}
                environment.update(NLSPATH=catalogues, PATH=self.template_folder(environment))
                language = Language(code)
                language.check_form(self, self.post(OPEN, **environment))
                language.check_refusal(self, self.post(REFUSED, **environment))

    def test_server_speaks_the_language_it_is_set_to(self):
        for code in [ENGLISH] + TRANSLATIONS:
            with self.subTest(code), served(SOURCE, self.folder, DNZCNF_LANGUAGE=code) as address:
                def fetch(path, fields=None):
                    body = fields and urllib.parse.urlencode(fields).encode()
                    with urllib.request.urlopen(address + path, body) as answer:
                        return answer.read().decode()

                language = Language(code)
                self.assertEqual(fetch('/dnzgate/'), language.entry)
                language.check_form(self, fetch('/cgi-bin/dnzcnf', OPEN))
                language.check_refusal(self, fetch('/cgi-bin/dnzcnf', REFUSED))

    def test_nothing_is_installed_in_front_of_every_language(self):
        self.assertFalse(os.path.exists(self.folder + '/usr/lib/locale'))


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1], verbosity=2)
