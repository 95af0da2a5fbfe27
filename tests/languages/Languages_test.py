"""The messages and pages of every language against the English ones, and the program in each."""
import os
import re
import urllib.request

from program import ROOT, StagedTest, messages

LANGUAGES = sorted(folder.name for folder in (ROOT / 'install/messages').iterdir())
# What is no wording: tags, and in any order markers, special bytes, numbers and known names.
TAG = re.compile(r'(<[^>]*>)')
FIXED = re.compile(r'%[1-8]|[\n\ufeff\x14]|-?\d+|\b(?:None|All)\b|NZIGw\w+|[A-Z_]{4,}'
                   r'|\bdnz\w*(?:\.\w+)*|/opt[\w/]*|application/[\w-]+', re.ASCII)
PROGRAM = '/cgi-bin/dnzcnf'
OPEN = b'dnzcnf=open&dnzINIfile=new.ini'
REFUSED = b'dnzhidefile=x&dnzINIsave=x&dnzSave=save&dnzNumPairs=0&dnzNewName=two+words'


def pages(language):
    return [(ROOT / f'install/html/{language}/dnzcnf{number}.htm').read_text('utf-8')
            for number in (1, 2, 3)]


def parts(text, language):
    """The tags, what else is fixed, and the wording between the tags."""
    text = text.replace(language, 'en_US').replace(language.replace('_', '-'), 'en-US')
    wording, tags = TAG.split(text)[::2], TAG.findall(re.sub(' title="[^"]*"', '', text))
    return tags, sorted(FIXED.findall(' '.join(wording))), wording


class Languages(StagedTest):
    def test_sources_differ_from_english_in_their_wording_only(self):
        for language in set(LANGUAGES) - {'en_US'}:
            self.assertEqual(list(messages(language)), list(messages()))
            english, translated = (
                [page.replace('\n', ' ') for page in pages(name)] + list(messages(name).values())
                for name in ('en_US', language))
            for original, text in zip(english, translated):
                with self.subTest(language, original=original):
                    *expected, english_wording = parts(original, 'en_US')
                    *fixed, wording = parts(text, language)
                    self.assertEqual(fixed, expected)
                    for pair in zip(english_wording, wording):
                        words, own = (re.findall(r'\w+', FIXED.sub('', part)) for part in pair)
                        self.assertTrue(len(words) < 4 or own not in ([], words), pair)

    def test_installed_program_answers_in_every_language(self):
        self.assertEqual(LANGUAGES, sorted(path.name for path in (ROOT / 'install/html').glob('??_??')))
        for language in LANGUAGES:
            (entry, head, tail), texts = pages(language), messages(language)
            variables = os.environ | {'DNZCNF_LANGUAGE': language}
            with self.subTest(language), self.running(env=variables):
                shown, form_page, refusal = (
                    urllib.request.urlopen(self.address + path, fields).read().decode()
                    for path, fields in (('/dnzgate/', None), (PROGRAM, OPEN), (PROGRAM, REFUSED)))
                self.assertIn(re.search('<h1>.*', entry)[0], shown)
                self.assertTrue(form_page.startswith(head) and form_page.endswith(tail + '\n'))
                for number in (1004, 1018, 1019, 1020, 1021):
                    self.assertIn(f'>{texts[number]}<', form_page.replace('\n', ''))
                self.assertEqual(refusal, '\n'.join(
                    [texts[1005], texts[1013].replace('%3', 'two words'), texts[1012], '']))
