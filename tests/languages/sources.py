"""The sources of the languages: message texts and pages, as they lie in install/."""
import pathlib
import re

ENGLISH = 'en_US'
TRANSLATIONS = 'de_DE es_ES fr_FR it_IT ja_JP ko_KR pt_BR zh_CN'.split()
PAGES = ('dnzcnf1.htm', 'dnzcnf2.htm', 'dnzcnf3.htm')


class Sources:
    def __init__(self, source):
        self.messages = pathlib.Path(source, 'install/messages')
        self.pages = pathlib.Path(source, 'install/html')

    def languages(self):
        """What has a folder of messages, and what has a folder of pages."""
        return [sorted(path.name for path in root.iterdir() if path.is_dir())
                for root in (self.messages, self.pages)]

    def message_lines(self, language):
        """Number and text of each message, in the order of the file."""
        text = (self.messages / language / 'dnz.msg').read_text(encoding='utf-8')
        return re.findall(r'^(\d+) (.*)$', text, re.MULTILINE)

    def finished_messages(self, language):
        """The texts by number, as gencat compiles them."""
        return {int(number): text.replace(r'\n', '\n')
                for number, text in self.message_lines(language)}

    def page(self, language, name):
        return (self.pages / language / name).read_text(encoding='utf-8')
