"""Compares docs/messages.md with the English message catalogue.

Usage: Messages_test.py SOURCE. A message of the document is a heading with the number in decimal and
hexadecimal, below it the text, and below that when it appears and what to do.
"""
import pathlib
import re
import sys
import unittest

SOURCE = pathlib.Path(sys.argv[1])
sys.path.append(str(SOURCE / 'tests/languages'))
from sources import ENGLISH, Sources

HEADING = re.compile(r'^### (.*)\n', re.MULTILINE)
ENTRY = re.compile(r'\n    (.*)\n\n\*When:\* \S[^*]*\n\n\*What to do:\* \S')


def documented():
    """The heading and the text of each message, in the order of the document."""
    parts = HEADING.split((SOURCE / 'docs/messages.md').read_text(encoding='utf-8'))[1:]
    for heading, body in zip(parts[::2], parts[1::2]):
        entry = ENTRY.match(body)
        yield heading, entry and entry[1]


class Messages(unittest.TestCase):
    maxDiff = None

    def test_document_has_the_messages_of_the_catalogue(self):
        catalogue = {f'{int(number)} ({int(number):04X})': text.lstrip('\ufeff')
                     for number, text in Sources(SOURCE).message_lines(ENGLISH)}
        entries = list(documented())
        self.assertEqual(dict(entries), catalogue)
        self.assertEqual(len(entries), len(catalogue), 'a message stands twice')


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1], verbosity=2)
