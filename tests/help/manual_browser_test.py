#!/usr/bin/env python3
"""manual_browser_test.py FOLDER

Tests the manual in a real browser, as wide as the handheld's screen and on a wide one: that every link leads into view and
every picture is shown, that nothing has to be scrolled sideways, and that there is something to be seen, of which it
leaves pictures in the folder.
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / 'tools'))

import manual_browser  # noqa: E402

MANUAL = ROOT / 'help' / 'Quivane.htm'
WIDTHS = (240, 1280)
PHOTOGRAPHED_COLUMNS = 4

# Nothing of it is right, but for the links to `here` and to good.htm, and the picture good.png.
BAD_PAGE = '''<!DOCTYPE html>
<html lang="en"><meta charset="utf-8"><title>Bad</title>
<body style="margin:0">
<h1 id="here">Here</h1>
<p><a href="#here">good</a> <a href="#nowhere">bad anchor</a> <a href="good.htm">good file</a>
<a href="missing.htm">bad file</a> <a href="https://example.invalid/">elsewhere</a> <a href="#">no name</a></p>
<p id="hidden" style="display:none">Hidden</p>
<p><img src="good.png" alt="good" width="20" height="20"> <img src="missing.png" alt="missing">
<img src="good.png" alt="squeezed" width="3" height="20">
<img src="https://example.invalid/other.png" alt="of somebody else's"></p>
<table id="wide"><tr><td><div style="width:1500px">wide</div></td></tr></table>
<div id="cut" style="width:100px;overflow:hidden"><div style="width:200px">cut off</div></div>
</body></html>
'''


def colours(picture, place):
    """How many colours are in a part of a picture."""
    x, y, width, height = place
    told = subprocess.run(['convert', str(picture), '-crop', f'{width}x{height}+{x}+{y}', '-format', '%k', 'info:'],
                          check=True, stdout=subprocess.PIPE, text=True)
    return int(told.stdout)


class ManualBrowserTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.browser = cls.enterClassContext(manual_browser.ManualBrowser(MANUAL))
        cls.views = cls.browser.views(WIDTHS)

    def test_all_is_shown_and_every_link_leads_into_view(self):
        for view in self.views:
            with self.subTest(width=view.width):
                self.assertEqual(view.faults, [])

    def test_all_of_the_page_was_looked_at(self):
        text = MANUAL.read_text(encoding='utf-8')
        for view in self.views:
            with self.subTest(width=view.width):
                self.assertLessEqual({'Main_Contents', 'Queries'}, set(view.anchors))
                self.assertEqual(len(view.anchors), text.count(' id="'))
                self.assertEqual(view.links, text.count('<a href='))
                self.assertEqual(view.pictures, text.count('<img '))

    def test_the_pictures_of_it_are_not_blank(self):
        for view in self.views:
            picture = folder / f'{view.width}.png'
            places = self.browser.photograph(view, picture, columns=PHOTOGRAPHED_COLUMNS)
            self.assertEqual(len(places), PHOTOGRAPHED_COLUMNS)
            for place in places:
                with self.subTest(width=view.width, place=place):
                    self.assertEqual(place[2:], (view.width, 2000))
                    # Letters alone have as many shades; an empty page has one.
                    self.assertGreater(colours(picture, place), 30)


class BadPageTest(unittest.TestCase):
    """The tests above are worth as much as what finds the faults."""

    def test_every_fault_is_told(self):
        home = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        page = home / 'bad.htm'
        page.write_text(BAD_PAGE, encoding='utf-8')
        (home / 'good.htm').write_text('<!DOCTYPE html><title>Good</title>', encoding='utf-8')
        (home / 'good.png').write_bytes((MANUAL.parent / 'pictures' / 'form.png').read_bytes())
        with manual_browser.ManualBrowser(page) as browser:
            views = browser.views(WIDTHS)
        for view in views:
            with self.subTest(width=view.width):
                self.assertEqual(view.faults, [
                    'the page has to be scrolled sideways, for <table> "wide"',
                    '<div> "cut" shows only a part of what is in it',
                    'the picture missing.png is not shown',
                    'the picture good.png has no room',
                    'the picture https://example.invalid/other.png is not shown',
                    'https://example.invalid/other.png is fetched from elsewhere',
                    'the link missing.htm leads to no file',
                    'the link https://example.invalid/ leads to elsewhere',
                    'the anchor #hidden is not shown',
                    'the link #nowhere leads nowhere',
                    'the link # leads nowhere',
                ])

    def test_a_page_that_is_missing_is_told(self):
        with manual_browser.ManualBrowser(ROOT / 'help' / 'missing.htm') as browser:
            with self.assertRaisesRegex(manual_browser.BrowserFault, 'not be examined'):
                browser.views(WIDTHS)


if __name__ == '__main__':
    folder = pathlib.Path(sys.argv.pop(1))
    folder.mkdir(parents=True, exist_ok=True)
    unittest.main()
