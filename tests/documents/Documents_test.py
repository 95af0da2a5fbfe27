"""What the documents say against what they describe."""
import re
import unittest

from program import ROOT, messages

LINK = re.compile(r'\]\((?!https?:)([^)#]*)#?([^)]*)\)')
MESSAGE = re.compile(r'^### (.*)\n\n    (.*)\n\n\*When:\* \S[^*]*\n\n\*What to do:\* \S', re.MULTILINE)


class Documents(unittest.TestCase):
    def test_links_lead_to_files_and_headings(self):
        for path in *ROOT.glob('*.md'), *ROOT.glob('docs/*.md'):
            for name, heading in LINK.findall(path.read_text('utf-8')):
                target = path.parent / name if name else path
                self.assertTrue(target.exists(), f'{path} links to {name}')
                if heading:
                    found = re.findall(r'^#+ (.*)', target.read_text('utf-8'), re.MULTILINE)
                    self.assertIn(heading, [re.sub(r'[^\w -]', '', text.lower()).replace(' ', '-')
                                            for text in found], path)

    def test_messages_are_those_of_the_catalogue(self):
        document = (ROOT / 'docs/messages.md').read_text('utf-8')
        catalogue = [(f'{number} ({number:04X})', text.replace('\n', r'\n').lstrip('\ufeff'))
                     for number, text in messages().items()]
        self.assertEqual(sorted(MESSAGE.findall(document)), sorted(catalogue))
