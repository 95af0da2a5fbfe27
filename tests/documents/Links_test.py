"""Looks whether what the documents link to is there.

Usage: Links_test.py SOURCE. A link leads to a file, to a heading of one, or to another site, which
isn't looked at.
"""
import pathlib
import re
import sys
import unittest

SOURCE = pathlib.Path(sys.argv[1])
DOCUMENTS = [*SOURCE.glob('*.md'), *SOURCE.glob('docs/*.md')]
LINK = re.compile(r'\]\((?!https?:)([^)#]*)#?([^)]*)\)')


def headings(path):
    """The headings as links spell them: in lower case, of letters, digits and hyphens."""
    found = re.findall(r'^#+ (.*)', path.read_text(encoding='utf-8'), re.MULTILINE)
    return {re.sub(r'[^\w -]', '', heading.lower()).replace(' ', '-') for heading in found}


class Links(unittest.TestCase):
    def test_targets_are_there(self):
        self.assertTrue(LINK.search((SOURCE / 'README.md').read_text(encoding='utf-8')))
        for document in DOCUMENTS:
            for name, heading in LINK.findall(document.read_text(encoding='utf-8')):
                with self.subTest(document.name, name=name, heading=heading):
                    target = document.parent / name if name else document
                    self.assertTrue(target.exists())
                    if heading:
                        self.assertIn(heading, headings(target))


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1], verbosity=2)
