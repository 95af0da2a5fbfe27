"""Edits ini files as a person does, and looks at the bytes that were saved.

Usage: EditFile_test.py SOURCE BUILD.
"""
import sys
import unittest

from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

from browser import BrowserTest

FILE = b"""NZIGwContext None #None or All
NZIGwQueue GATE.IN #requests
NZIGwReplyQueue  #none yet
NZIGwWaitInterval 30 #time limit
"""


class EditFile(BrowserTest):
    def setUp(self):
        super().setUp()
        self.put('dnz.ini', FILE)

    def test_change_add_and_leave_out(self):
        self.press('dnz.ini')
        self.assertEqual(self.names_shown(), ['NZIGwContext', 'NZIGwQueue', 'NZIGwReplyQueue',
                                              'NZIGwWaitInterval'])
        self.fill('v0', 'aLL')
        self.fill('d1', 'Aufträge, 50% "neu" & <b>')
        self.field('e3').click()
        self.fill('dnzNewName', 'Extra')
        self.fill('dnzNewValue', 'a+b=c')
        self.press('Save')
        self.assertEqual(self.names_shown(), ['Extra', 'NZIGwContext', 'NZIGwQueue',
                                              'NZIGwReplyQueue'])
        self.assertEqual(self.field('v1').get_attribute('value'), 'All')
        self.assertEqual(self.saved('dnz.ini'), 'Extra a+b=c # \n'
                         'NZIGwContext All #None or All\n'
                         'NZIGwQueue GATE.IN #Aufträge, 50% "neu" & <b>\n'
                         'NZIGwReplyQueue  #none yet\n'.encode())

    def test_save_under_another_name_keeps_what_that_file_has(self):
        self.put('other.ini', b'NZIGwQueue OLD #old\nNZIGwReplyQueue GATE.OUT #kept out\nZ z #mine\n')
        self.press('dnz.ini')
        self.field('e2').click()
        self.fill('dnzINIsave', 'other.ini')
        self.press('Save')
        self.assertEqual(self.field('dnzINIsave').get_attribute('value'), 'other.ini')
        self.assertEqual(self.saved('other.ini'), b'NZIGwContext None #None or All\n'
                         b'NZIGwQueue GATE.IN #requests\n'
                         b'NZIGwWaitInterval 30 #time limit\nZ z #mine\n')
        self.assertEqual(self.saved('dnz.ini'), FILE)

    def test_fault_is_told_and_the_input_comes_back(self):
        self.press('dnz.ini')
        self.fill('v1', 'GATE-IN')
        self.fill('v3', 'soon')
        self.press('Save')
        for text in ('refused', 'percent sign, slash, period and underscore',
                     'Entry NZIGwQueue, value "GATE-IN"', 'digits and the minus sign',
                     'Entry NZIGwWaitInterval, value "soon"', 'Nothing was saved'):
            self.assertIn(text, self.page_text())
        self.assertEqual(self.saved('dnz.ini'), FILE)

        with self.next_page():
            self.browser.back()
        self.assertEqual(self.field('v1').get_attribute('value'), 'GATE-IN')
        self.fill('v1', 'GATE.NEW')
        self.fill('v3', '-1')
        self.press('Save')
        self.assertEqual(self.saved('dnz.ini'),
                         FILE.replace(b'GATE.IN', b'GATE.NEW').replace(b' 30 ', b' -1 '))

    def test_discard_shows_the_file_again(self):
        self.press('dnz.ini')
        self.fill('v1', 'GATE.NEW')
        self.press('Discard changes')
        self.assertEqual(self.field('v1').get_attribute('value'), 'GATE.IN')
        self.assertEqual(self.saved('dnz.ini'), FILE)

    def test_new_file_is_made_by_its_first_save(self):
        with self.next_page():
            self.browser.find_element(By.ID, 'file').send_keys('new.ini' + Keys.ENTER)
        self.assertEqual(self.field('dnzNumPairs').get_attribute('value'), '0')
        with self.next_page():
            self.fill('dnzNewName', 'First' + Keys.ENTER)
        self.assertEqual(self.names_shown(), ['First'])
        self.assertEqual(self.saved('new.ini'), b'First\n')

    def test_phone_has_no_sideways_scrolling(self):
        self.put('dnz.ini', FILE + b'N' * 90 + b' ' + b'v' * 90 + b' #' + b'd' * 60 + b'\n')
        self.browser.execute_cdp_cmd('Emulation.setDeviceMetricsOverride', {
            'width': 390, 'height': 844, 'deviceScaleFactor': 1, 'mobile': True})
        self.addCleanup(self.browser.execute_cdp_cmd, 'Emulation.clearDeviceMetricsOverride', {})
        width = 'return document.documentElement.scrollWidth'
        self.browser.get(self.entry_page)
        self.assertEqual(self.browser.execute_script(width), 390)
        self.press('dnz.ini')
        self.assertEqual(self.browser.execute_script(width), 390)

    def test_tab_key_goes_through_the_form_in_reading_order(self):
        self.put('dnz.ini', b'A a #\nB b #\n')
        self.press('dnz.ini')
        self.browser.find_element(By.TAG_NAME, 'summary').send_keys(Keys.TAB)
        for name in ('v0 d0 e0 v1 d1 e1 dnzNewName dnzNewValue dnzNewDesc dnzINIsave'
                     ' dnzSave').split():
            control = self.browser.switch_to.active_element
            self.assertEqual(control.get_attribute('name'), name)
            self.assertEqual(control.value_of_css_property('outline-style'), 'solid', name)
            control.send_keys(Keys.TAB)


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1], verbosity=2)
