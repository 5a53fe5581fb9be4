#!/usr/bin/env python3
"""manual_browser.py MANUAL FOLDER

The manual as a real browser shows it: what it says of the page, and pictures of it. As a program it writes into the folder
a sheet of pictures of the page, from left to right, at three widths, in light and in dark.
"""

import dataclasses
import json
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import urllib.parse

# Debian's package of this name is the browser without what it takes to have windows.
BROWSER = 'chromium-headless-shell'
WIDTHS = (240, 480, 1280)
_HEIGHT = 1000  # of the window that the page is asked in
_COLUMN_HEIGHT = 2000  # of a sheet of pictures
_COLUMN_GAP = 8


class BrowserFault(Exception):
    """The browser isn't there, or does not answer."""


@dataclasses.dataclass
class View:
    """What the browser says of a page at a width."""
    width: int
    height: int  # of the whole page
    anchors: list  # all that has a name on the page
    links: int  # how many there are
    pictures: int
    faults: list  # a sentence for each


# What runs in the browser, beside a frame with the page: it leaves its answer in the title.
_QUESTIONS = r'''
const describe = element =>
  `<${element.tagName.toLowerCase()}> ${JSON.stringify((element.id || element.textContent).trim().slice(0, 40))}`;

// What the browser has to fetch by itself; fetch() knows nothing of files.
const isThere = address => {
  const request = new XMLHttpRequest();
  request.open('GET', address, false);
  try { request.send(); return true; } catch { return false; }
};

const settled = () => new Promise(done => setTimeout(done, 20));

async function leadsIntoView(frame, anchor) {
  const view = frame.contentWindow, page = frame.contentDocument;
  view.scrollTo(0, 0);
  view.location.hash = '';
  view.location.hash = anchor;
  await settled();
  const target = page.querySelector(':target');
  if (!target) return false;
  const place = target.getBoundingClientRect();
  return place.height > 0 && place.top >= -1 && place.top < view.innerHeight;
}

async function examine(frame) {
  const view = frame.contentWindow, page = frame.contentDocument, root = page.documentElement, faults = [];
  const home = new URL('.', page.location).href, here = page.location.href.split('#')[0];

  if (root.scrollWidth > root.clientWidth) {
    const wide = [...page.body.querySelectorAll('*')].find(
      element => element.getBoundingClientRect().right > root.clientWidth + 0.5);
    faults.push(`the page has to be scrolled sideways${wide ? ', for ' + describe(wide) : ''}`);
  }
  for (const box of page.body.querySelectorAll('*')) {
    if (box.scrollWidth > box.clientWidth + 1 && /auto|scroll|hidden|clip/.test(view.getComputedStyle(box).overflowX))
      faults.push(`${describe(box)} shows only a part of what is in it`);
  }

  const pictures = [...page.images];
  for (const picture of pictures) {
    const place = picture.getBoundingClientRect();
    if (!picture.complete || picture.naturalWidth === 0)
      faults.push(`the picture ${picture.getAttribute('src')} is not shown`);
    else if (place.width < 16 || place.height < 16)
      faults.push(`the picture ${picture.getAttribute('src')} has no room`);
  }
  for (const {name} of view.performance.getEntriesByType('resource'))
    if (!name.startsWith(home)) faults.push(`${name} is fetched from elsewhere`);

  const links = [...page.querySelectorAll('a[href], area[href]')], anchors = new Set();
  for (const named of page.querySelectorAll('[id], a[name]')) anchors.add(named.id || named.name);
  const wanted = new Map([...anchors].map(name => [name, `the anchor #${name} is not shown`]));
  for (const link of links) {
    const [address, anchor] = link.href.split('#');
    const written = link.getAttribute('href'), name = decodeURIComponent(anchor || '');
    if (address !== here) {
      if (!address.startsWith(home)) faults.push(`the link ${written} leads to elsewhere`);
      else if (!isThere(address)) faults.push(`the link ${written} leads to no file`);
    } else if (!wanted.has(name)) {
      wanted.set(name, `the link ${written} leads nowhere`);
    }
  }
  for (const [name, fault] of wanted)
    if (!(name && await leadsIntoView(frame, name))) faults.push(fault);

  // A picture of the whole page has no bar for scrolling.
  root.style.overflow = 'hidden';
  return {height: root.scrollHeight, anchors: [...anchors], links: links.length, pictures: pictures.length, faults};
}

window.onload = async () => {
  const answers = [];
  for (const frame of document.querySelectorAll('iframe')) {
    try { answers.push(await examine(frame)); } catch (fault) { answers.push({fault: String(fault)}); }
  }
  document.title = 'answer ' + encodeURIComponent(JSON.stringify(answers));
};
'''


class ManualBrowser:
    """A browser without anything of the user's own, and with no way to any network. To be used in a `with`."""

    def __init__(self, manual):
        self._manual = pathlib.Path(manual).resolve()

    def __enter__(self):
        self._folder = tempfile.TemporaryDirectory(prefix='manual.', ignore_cleanup_errors=True)
        self._work = pathlib.Path(self._folder.name)
        return self

    def __exit__(self, *_):
        self._folder.cleanup()

    def views(self, widths):
        """A View for each of the widths."""
        frames = ''.join(f'<iframe src="{self._address()}" style="width:{width}px;height:{_HEIGHT}px;border:0"></iframe>'
                         for width in widths)
        page = self._write('questions.htm', f'<title>waiting</title>{frames}<script>{_QUESTIONS}</script>')
        # The page's own time, which goes on as soon as it waits for nothing but that.
        shown = self._browse('--virtual-time-budget=60000', '--dump-dom', page.as_uri())
        answer = re.search('<title>answer (.*?)</title>', shown)
        if not answer:
            raise BrowserFault(f'the browser does not show the manual: {self._complaint()}')
        views = []
        for width, said in zip(widths, json.loads(urllib.parse.unquote(answer[1]))):
            if 'fault' in said:
                raise BrowserFault(f'the manual could not be examined at a width of {width} pixels: {said["fault"]}')
            views.append(View(width, **said))
        return views

    def photograph(self, view, picture, dark=False, columns=None):
        """Writes the page at the width of the view into the file `picture`: all of it, cut into columns, or so many columns
        of it, from its beginning to its end. Gives the place of each column in it: (x, y, width, height)."""
        tops = list(range(0, view.height, _COLUMN_HEIGHT))
        if columns and columns < len(tops):
            tops = [(view.height - _COLUMN_HEIGHT) * index // (columns - 1) for index in range(columns)]
        page = self._write('sheet.htm', '<body style="margin:0;display:flex;gap:{}px;background:#888">{}'.format(
            _COLUMN_GAP, ''.join(
                f'<div style="width:{view.width}px;height:{_COLUMN_HEIGHT}px;overflow:hidden;flex:none">'
                f'<iframe src="{self._address()}" style="width:{view.width}px;height:{view.height}px;border:0;'
                f'margin-top:-{top}px"></iframe></div>' for top in tops)))
        stride = view.width + _COLUMN_GAP
        picture.unlink(missing_ok=True)
        self._browse('--hide-scrollbars', *(['--blink-settings=preferredColorScheme=0'] if dark else []),
                     f'--window-size={stride * len(tops)},{_COLUMN_HEIGHT}', f'--screenshot={picture}', page.as_uri())
        if not picture.exists():
            raise BrowserFault(f'the browser takes no picture: {self._complaint()}')
        return [(index * stride, 0, view.width, min(_COLUMN_HEIGHT, view.height - top)) for index, top in enumerate(tops)]

    def _address(self):
        return self._manual.as_uri()

    def _write(self, name, body):
        page = self._work / name
        page.write_text(f'<!DOCTYPE html><meta charset="utf-8">{body}\n', encoding='utf-8')
        return page

    def _browse(self, *arguments):
        # Root has no sandbox, and a container little shared memory.
        command = [BROWSER, '--no-sandbox', '--disable-gpu', '--disable-dev-shm-usage', '--no-first-run',
                   '--disable-background-networking', '--host-resolver-rules=MAP * ~NOTFOUND',
                   f'--user-data-dir={self._work / "user"}', '--allow-file-access-from-files', *arguments]
        environment = os.environ | {'HOME': str(self._work), 'TMPDIR': str(self._work)}
        with open(self._work / 'log', 'wb') as log:
            try:
                running = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=log, text=True,
                                           encoding='utf-8', env=environment, start_new_session=True)
            except FileNotFoundError as missing:
                raise BrowserFault(f'{BROWSER} is not installed; it is in the Debian package of that name') from missing
            try:
                return running.communicate(timeout=60)[0]
            except subprocess.TimeoutExpired as late:
                raise BrowserFault(f'the browser does not end: {self._complaint()}') from late
            finally:
                # The browser is several processes, behind a script.
                try:
                    os.killpg(running.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
                running.wait()

    def _complaint(self):
        lines = (self._work / 'log').read_text(encoding='utf-8', errors='replace').splitlines()
        return lines[-1] if lines else 'it says nothing'


def main(manual, folder):
    folder = pathlib.Path(folder)
    with ManualBrowser(manual) as browser:
        views = browser.views(WIDTHS)
        faults = [f'{view.width} pixels wide: {fault}' for view in views for fault in view.faults]
        if faults:
            raise BrowserFault('\n'.join(faults))
        folder.mkdir(parents=True, exist_ok=True)
        for old in folder.glob('*.png'):
            old.unlink()
        for view in views:
            for dark in (False, True):
                picture = folder / f'{view.width}-{"dark" if dark else "light"}.png'
                browser.photograph(view, picture.resolve(), dark)
                print(f'wrote {picture} ({view.height} pixels high)')


if __name__ == '__main__':
    try:
        main(*sys.argv[1:])
    except BrowserFault as fault:
        sys.exit(str(fault))
