"""A person with Chromium, driven through Debian's chromedriver, at an installation that is served on
a free port by the script that ./run uses. The tests are called with SOURCE and BUILD; the build is
staged into a temporary folder.
"""
import contextlib
import os
import shutil
import sys
import tempfile
import unittest

from selenium import webdriver
from selenium.common.exceptions import WebDriverException
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.support.wait import WebDriverWait

SOURCE, BUILD = sys.argv[1:3]
sys.path.append(SOURCE + '/tests/support')
from staging import served, stage

BROWSER_OPTIONS = (
    '--headless --no-sandbox --disable-gpu --disable-quic --no-first-run --disable-sync'
    ' --disable-background-networking --disable-component-update --window-size=1280,1000')

class BrowserTest(unittest.TestCase):
    pages_left = 0

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix='dnzcnf-browser-')
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        cls.ini = cls.folder + '/var/nzm/'
        stage(BUILD, cls.folder)
        address = cls.enterClassContext(served(SOURCE, cls.folder))
        cls.program = address + '/cgi-bin/dnzcnf'
        cls.entry_page = address + '/dnzgate/'

        options = webdriver.ChromeOptions()
        for option in BROWSER_OPTIONS.split():
            options.add_argument(option)
        options.add_argument(f'--user-data-dir={cls.folder}/profile')
        cls.browser = webdriver.Chrome(options=options, service=Service('/usr/bin/chromedriver'))
        cls.addClassCleanup(cls.browser.quit)

    def setUp(self):
        for name in os.listdir(self.ini):
            if os.path.isfile(self.ini + name):
                os.remove(self.ini + name)
        self.browser.get(self.entry_page)

    def tearDown(self):
        with open(self.folder + '/server/program.log', encoding='utf-8') as errors:
            self.assertEqual(errors.read(), '', 'the program wrote to standard error')

    def put(self, name, contents):
        with open(self.ini + name, 'wb') as file:
            file.write(contents)

    def saved(self, name):
        with open(self.ini + name, 'rb') as file:
            return file.read()

    def field(self, name):
        return self.browser.find_element(By.NAME, name)

    def fill(self, name, text):
        self.field(name).clear()
        self.field(name).send_keys(text)

    @contextlib.contextmanager
    def next_page(self):
        """What is done inside leads to another page: waits until that one is whole."""
        self.pages_left += 1
        self.browser.execute_script('document.left = arguments[0]', self.pages_left)
        yield
        arrived = 'return document.left != arguments[0] && document.readyState == "complete"'
        # Between two pages the driver may know neither.
        WebDriverWait(self.browser, 30, ignored_exceptions=[WebDriverException]).until(
            lambda browser: browser.execute_script(arrived, self.pages_left))

    def button(self, label):
        return self.browser.find_element(By.XPATH, f'//button[.="{label}"]')

    def press(self, label):
        with self.next_page():
            self.button(label).click()

    def page_text(self):
        return self.browser.find_element(By.TAG_NAME, 'body').text

    def names_shown(self):
        return [cell.text for cell in
                self.browser.find_elements(By.CSS_SELECTOR, '.entries tbody td:first-child')]
