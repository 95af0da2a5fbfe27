"""Compares the messages and the pages of every language with the English ones.

Usage: Sources_test.py SOURCE BUILD. All of a text that is not wording has to be the same: numbers,
insert markers, sections, markup, and the names that the program knows.
"""
import html.parser
import re
import sys
import unittest

from sources import ENGLISH, PAGES, TRANSLATIONS, Sources

SOURCES = Sources(sys.argv[1])

# Markup, markers, escapes such as the section byte, the byte order mark, numbers, and names.
FIXED = re.compile(
    r'<[^>]*>|%[1-8]|\\(?:\d{3}|.)|^\ufeff|-?\d+|\b(?:None|All)\b|NZIGw\w+|[A-Z_]{4,}'
    r'|\bdnz\w*(?:\.\w+)*|/opt[\w/]*|application/[\w-]+', re.ASCII)
SHORT = 15  # below this a word may be the same in two languages


def fixed_parts(text, language):
    return sorted(part.replace(language, ENGLISH) for part in FIXED.findall(text))


def has_wording(text):
    return bool(re.search(r'\w', FIXED.sub('', text)))


class PageEvents(html.parser.HTMLParser):
    """A page as the list of its tags with their attributes, and of its texts."""

    def __init__(self, page, language):
        super().__init__()
        self.language = language
        self.tags = []
        self.texts = []
        self.feed(page)
        self.close()

    def handle_starttag(self, tag, attributes):
        own = ('lang', self.language.replace('_', '-'))
        self.tags.append((tag, [('lang', 'its own') if attribute == own else attribute
                                for attribute in attributes]))

    def handle_endtag(self, tag):
        self.tags.append('/' + tag)

    def handle_data(self, data):
        if data.strip():
            self.tags.append('a text')
            self.texts.append((self.tags[-2], ' '.join(data.split())))


class LanguageSources(unittest.TestCase):
    maxDiff = None

    def compare_wording(self, english, text, language):
        self.assertEqual(fixed_parts(text, language), fixed_parts(english, ENGLISH))
        self.assertTrue(has_wording(text) or not has_wording(english), 'no text')
        if len(english) >= SHORT:
            self.assertNotEqual(text, english, 'not translated')

    def test_every_language_has_messages_and_pages(self):
        for found in SOURCES.languages():
            self.assertEqual(found, sorted([ENGLISH] + TRANSLATIONS))

    def test_messages(self):
        english_lines = SOURCES.message_lines(ENGLISH)
        numbers = [number for number, _ in english_lines]
        for language in TRANSLATIONS:
            lines = SOURCES.message_lines(language)
            self.assertEqual([number for number, _ in lines], numbers, language)
            for (number, english), (_, text) in zip(english_lines, lines):
                with self.subTest(language=language, message=number):
                    self.compare_wording(english, text, language)

    def test_pages(self):
        for name in PAGES:
            english = PageEvents(SOURCES.page(ENGLISH, name), ENGLISH)
            for language in TRANSLATIONS:
                with self.subTest(language=language, page=name):
                    page = PageEvents(SOURCES.page(language, name), language)
                    self.assertEqual(page.tags, english.tags)
                    self.compare_texts(english.texts, page.texts, language)

    def compare_texts(self, english_texts, texts, language):
        for (english_tag, english), (_, text) in zip(english_texts, texts):
            if english_tag[0] in ('b', 'code'):
                self.assertEqual(text, english)
            else:
                self.compare_wording(english, text, language)


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1], verbosity=2)
