"""A person with Chromium edits an ini file; then files and pages attack. A second server is the
place where nothing may be fetched from or sent to."""
import http.server
import re
import threading
import urllib.request

from selenium import webdriver
from selenium.common.exceptions import TimeoutException, WebDriverException
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.expected_conditions import alert_is_present
from selenium.webdriver.support.wait import WebDriverWait

from program import StagedTest

OPTIONS = '--headless', '--no-sandbox', '--disable-gpu', '--disable-background-networking'
PHONE = {'width': 390, 'height': 844, 'deviceScaleFactor': 1, 'mobile': False}
FILE = 'NZIGwContext None #None or All\nNZIGwQueue GATE.IN #requests\n' + 'Z' * 99 + ' z #\n'

# Each breaks out of its field; %s is the other server. A refresh and a dialog come after the rest.
MARKUP = '''A x #"><script>fetch("%s/script")</script>
B x #"><img src=%s/image onerror='fetch("%s/handler")'>
C x #"><iframe src=%s/framed></iframe>
D x #"><link rel=stylesheet href=%s/style><script src=%s/fetched></script>
E x #" autofocus onfocus='fetch("%s/focus")' x="
F x #"><iframe src='javascript:fetch("%s/address")'></iframe>
G x #"><meta http-equiv=refresh content="1;url=%s/refresh">
H x #"><script>setTimeout(alert, 500)</script>
'''


class Elsewhere(http.server.BaseHTTPRequestHandler):
    """Another origin, which has one page and remembers what it was asked for."""
    page, asked = b'', set()

    def do_GET(self):
        self.send_response(200)
        self.send_header('Content-Type', 'text/html; charset=utf-8')
        self.end_headers()
        self.wfile.write(self.page if self.path == '/form' else b'')

    def log_message(self, *_):
        self.asked.add(self.path)


class Browser(StagedTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.enterClassContext(cls.running())
        options = webdriver.ChromeOptions()
        options.arguments.extend(OPTIONS)
        cls.browser = cls.enterClassContext(
            webdriver.Chrome(options=options, service=Service('/usr/bin/chromedriver')))
        cls.browser.execute_cdp_cmd('Emulation.setDeviceMetricsOverride', PHONE)
        server = cls.enterClassContext(http.server.ThreadingHTTPServer(('127.0.0.1', 0), Elsewhere))
        threading.Thread(target=server.serve_forever, daemon=True).start()
        cls.addClassCleanup(server.shutdown)
        cls.elsewhere = f'http://127.0.0.1:{server.server_port}'

    def open(self, contents):
        """Opens a file, with an eye on what is fetched then."""
        self.ini.write_text(contents.replace('%s', self.elsewhere), 'utf-8')
        self.browser.get(self.address)
        Elsewhere.asked.clear()
        self.press('dnz.ini')

    def fill(self, **texts):
        for name, text in texts.items():
            self.browser.find_element('name', name).clear()
            self.browser.find_element('name', name).send_keys(text)

    def wait(self, condition, seconds=20):
        # Between two pages the driver may know neither.
        return WebDriverWait(self.browser, seconds, 0.05, [WebDriverException]).until(condition)

    def leave(self, step, *arguments):
        """Takes a step that leads to another page."""
        self.browser.execute_script('document.left = true')
        step(*arguments)
        self.wait(lambda browser: browser.execute_script(
            'return !document.left && document.readyState == "complete"'))

    def press(self, label):
        self.leave(self.browser.find_element('xpath', f'//button[.="{label}"]').click)

    def test_edit_is_refused_then_saved_then_discarded(self):
        self.open(FILE)
        page = self.browser.find_element('tag name', 'html')
        self.assertEqual(page.get_property('scrollWidth'), page.get_property('clientWidth'))
        self.fill(v0='aLL', v1='GATE-IN', d1='Aufträge, 50% "neu" & <b>', dnzNewName='Extra')
        self.browser.find_element('name', 'e2').click()
        self.press('Save')
        self.assertIn('Entry NZIGwQueue, value "GATE-IN"', self.browser.page_source)
        self.assertEqual(self.ini.read_text(), FILE)
        self.leave(self.browser.back)
        self.fill(v1='GATE.NEW')
        self.leave(self.browser.switch_to.active_element.send_keys, Keys.ENTER)
        saved = 'Extra\nNZIGwContext All #None or All\nNZIGwQueue GATE.NEW #Aufträge, 50% "neu" & <b>\n'
        self.assertEqual(self.ini.read_text('utf-8'), saved)
        self.assertTrue(self.browser.find_element('id', 'saved').is_displayed())
        self.fill(v2='LOST')
        self.press('Discard changes')
        self.assertFalse(self.browser.find_element('id', 'saved').is_displayed())
        self.assertIn('value="GATE.NEW"', self.browser.page_source)
        self.assertEqual(self.ini.read_text('utf-8'), saved)

    def test_markup_in_values_fetches_and_runs_nothing_and_the_form_saves(self):
        self.open(MARKUP + FILE)
        with self.assertRaises(TimeoutException):
            self.wait(lambda browser: Elsewhere.asked or alert_is_present()(browser), 2)
        self.fill(v9='GATE.NEW')
        self.press('Save')
        self.assertIn('NZIGwQueue GATE.NEW #requests\n', self.ini.read_text())
        self.assertEqual(Elsewhere.asked, set())
        self.ini.write_text(MARKUP.replace('%s', self.elsewhere))
        # The other server shows the same form without the policy of the first.
        program, fields = self.address + '/cgi-bin/dnzcnf', b'dnzcnf=open&dnzINIfile=dnz.ini'
        Elsewhere.page = urllib.request.urlopen(program, fields).read()
        self.browser.get(self.elsewhere + '/form')
        self.wait(alert_is_present()).accept()
        self.wait(lambda _: Elsewhere.asked >= set(re.findall(r'%s(/\w+)', MARKUP)))
