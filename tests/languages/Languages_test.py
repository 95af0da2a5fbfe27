"""The messages and pages of every language against the English ones, and the program in each."""
import re
import urllib.request

from program import ROOT, StagedTest, form, messages, served

LANGUAGES = sorted(folder.name for folder in (ROOT / 'install/messages').iterdir())
# What is no wording: tags, and in any order markers, special bytes, numbers and known names.
TAG = re.compile(r'(<[^>]*>)')
FIXED = re.compile(r'%[1-8]|[\n\ufeff\x14]|-?\d+|\b(?:None|All)\b|NZIGw\w+|[A-Z_]{4,}'
                   r'|\bdnz\w*(?:\.\w+)*|/opt[\w/]*|application/[\w-]+', re.ASCII)
OPEN = {'dnzcnf': 'open', 'dnzINIfile': 'new.ini'}
REFUSED = {'dnzhidefile': 'new.ini', 'dnzINIsave': 'new.ini', 'dnzSave': 'save', 'dnzNumPairs': '0',
           'dnzNewName': 'two words'}


def pages(language):
    return [(ROOT / f'install/html/{language}/dnzcnf{number}.htm').read_text('utf-8')
            for number in (1, 2, 3)]


class Languages(StagedTest):
    maxDiff = None

    def compare(self, english, text, language):
        text = text.replace(language, 'en_US').replace(language.replace('_', '-'), 'en-US')
        english, text = (re.sub(' title="[^"]*"', '', page) for page in (english, text))
        self.assertEqual(TAG.findall(text), TAG.findall(english))
        english, text = (TAG.split(page)[::2] for page in (english, text))
        fixed, expected = (sorted(FIXED.findall(' '.join(page))) for page in (text, english))
        self.assertEqual(fixed, expected)
        for original, wording in zip(english, text):
            words, translated = (re.findall(r'\w+', FIXED.sub('', part)) for part in (original, wording))
            self.assertTrue(len(words) < 4 or translated not in ([], words), wording)

    def test_sources_differ_from_english_in_their_wording_only(self):
        for language in set(LANGUAGES) - {'en_US'}:
            self.assertEqual(list(messages(language)), list(messages()))
            for english, text in zip(pages('en_US'), pages(language)):
                with self.subTest(language):
                    self.compare(english.replace('\n', ' '), text.replace('\n', ' '), language)
            for number, text in messages(language).items():
                with self.subTest(language, number=number):
                    self.compare(messages()[number], text, language)

    def test_installed_program_answers_in_every_language(self):
        self.assertEqual(LANGUAGES, sorted(path.name for path in (ROOT / 'install/html').glob('??_??')))
        for language in LANGUAGES:
            entry, head, tail = pages(language)
            texts = messages(language)
            with self.subTest(language), served(
                    self.folder, DNZCNF_LANGUAGE=language) as address:
                def fetch(path, body=None):
                    with urllib.request.urlopen(address + path, body) as answer:
                        return answer.read().decode()

                self.assertIn(re.search('<h1>.*', entry)[0], fetch('/dnzgate/'))
                form_page = fetch('/cgi-bin/dnzcnf', form(OPEN))
                self.assertTrue(form_page.startswith(head) and form_page.endswith(tail + '\n'))
                for number in (1004, 1018, 1019, 1020, 1021):
                    self.assertIn(f'>{texts[number]}<', form_page.replace('\n', ''))
                self.assertEqual(fetch('/cgi-bin/dnzcnf', form(REFUSED)), '\n'.join(
                    [texts[1005], texts[1013].replace('%3', 'two words'), texts[1012], '']))
