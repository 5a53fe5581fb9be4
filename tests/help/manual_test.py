#!/usr/bin/env python3
"""Tests the manual: that its links, anchors and pictures are there, and that what the program says is in it."""

import pathlib
import re
import struct
import unittest

import manual_page
import source_texts

ROOT = pathlib.Path(__file__).resolve().parents[2]
MANUAL = ROOT / 'help' / 'Quivane.htm'

# Every text of these is meant for the user, but for those below.
SHOWING_FOLDERS = ('app', 'dialogs', 'views', 'records', 'data')
# Of these only whole sentences are. What only the command line says is told by itself.
SPEAKING_FOLDERS = ('base', 'platform/help', 'platform/pocketshell', 'platform/store/automation',
                    'platform/store/rows', 'platform/store/sql', 'platform/store/sqlite', 'platform/store/dsn',
                    'platform/store/odbc', 'platform/store/exchange')

# Texts of several words that nobody is shown: names of window classes and keys, filters of the file dialogs, SQL.
NOT_SHOWN = {
    'All (*.cdb)\0*.cdb\0', 'Databases (*.cdb)\0*.cdb\0', 'Calender ctrl', 'Edit window', 'Form Wrapper Wnd',
    'Record List View',
    'Separated values (*.csv)\0*.csv\0JSON (*.json)\0*.json\0Web page (*.html)\0*.html\0SQL (*.sql)\0*.sql\0',
    'Separated values (*.csv)\0*.csv\0', 'All files (*.*)\0*.*\0',
    'Pictures (*.png; *.jpg; *.gif; *.bmp)\0*.png;*.jpg;*.jpeg;*.gif;*.bmp\0All files (*.*)\0*.*\0',
    'CSV and JSON (*.csv; *.tsv; *.txt; *.json; *.jsonl)\0*.csv;*.tsv;*.txt;*.json;*.jsonl\0All files (*.*)\0*.*\0',
    'Select * from [', 'Select * from QuivaneQueries ORDER BY QueryName',
    "CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text)", 'Software\\MorvaleSoftware\\Pocket Shell',
}
# What Windows itself shows or names: the type of the file, and titles of the file dialogs.
SYSTEM_TEXTS = {'Quivane Document', 'Quivane Pocket PC.exe', 'New Database', 'Open Database', 'Delete Database',
                'Save Database As', 'Save List'}
# What is written for those who make the program.
NOT_FOR_USERS = {'app/recovery/fault_report.cpp',
                 # statements
                 'records/arrangement/column_statement.cpp', 'records/arrangement/server_column_statement.cpp'}
# What resource scripts name and nobody sees: a button that is hidden when its dialog opens.
HIDDEN_CONTROLS = {'Filter'}


def plain(text):
    """With one blank for each run of blanks and line ends, without the marks of access keys."""
    return ' '.join(re.sub(r'&(?=\w)', '', text).split())


def is_words(text):
    return re.search(r'[A-Za-z]\S* \S*[a-z]{2,}', plain(text)) is not None


def is_sentence(text):
    """Whole sentences, and what begins or ends one that a name is put into: " could not be opened.". What has an
    access key is a command or a label."""
    if re.search(r'&\w', text):
        return False
    text = plain(text)
    return is_words(text) and re.match(r"^([A-Z][a-z']*|['\"]? ?[a-z']+|;) ", text) is not None and text[-1] in '.!?:'


def sources(*folders):
    for folder in folders:
        for path in sorted((ROOT / folder).rglob('*')):
            if path.suffix in ('.cpp', '.h') and path.relative_to(ROOT).as_posix() not in NOT_FOR_USERS:
                yield path, source_texts.cpp_texts(path.read_text(encoding='utf-8'))


def png_size(path):
    data = path.read_bytes()
    if data[:8] != b'\x89PNG\r\n\x1a\n':
        raise ValueError(f'{path} is no PNG')
    return struct.unpack('>II', data[16:24])


class ManualTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.page = manual_page.ManualPage(MANUAL.read_text(encoding='utf-8'))
        cls.text = plain(''.join(element.text for element in cls.page.all('body')))

    def setUp(self):
        self.maxDiff = None

    def test_the_page_is_well_formed(self):
        self.assertEqual(self.page.faults, [])
        self.assertEqual([html.attributes.get('lang') for html in self.page.all('html')], ['en'])

    def test_the_topics_of_the_program_are_there(self):
        topics = set()
        for path, texts in sources('app', 'dialogs'):
            topics.update(text.partition('Quivane.htm#')[2] for text in texts if 'Quivane.htm#' in text)
        self.assertEqual(topics, {'Main_Contents', 'Queries'})
        for topic in topics:
            self.assertIsNotNone(self.page.with_id(topic), topic)

    def test_every_anchor_is_there_once(self):
        names = [element.attributes['id'] for element in self.page.elements if 'id' in element.attributes]
        self.assertEqual(sorted(names), sorted(set(names)))

    def test_every_link_leads_somewhere_on_the_page(self):
        for link in self.page.all('a'):
            address = link.attributes.get('href', '')
            self.assertTrue(address.startswith('#'), f'line {link.line}: {address}')
            self.assertIsNotNone(self.page.with_id(address[1:]), f'line {link.line}: {address}')

    def test_the_contents_name_every_chapter(self):
        contents = self.page.with_id('Main_Contents')
        listed = [link.attributes['href'][1:] for link in self.page.inside('a', contents)]
        chapters = [section.attributes.get('id') for section in self.page.all('section')]
        self.assertEqual(listed, chapters)

    def test_every_picture_is_there_with_its_size_and_a_text(self):
        for picture in self.page.all('img'):
            where = f'line {picture.line}'
            path = MANUAL.parent / picture.attributes['src']
            self.assertTrue(path.is_file(), f'{where}: {path}')
            width, height = int(picture.attributes['width']), int(picture.attributes['height'])
            self.assertEqual(png_size(path), (width, height), where)
            self.assertGreater(len(picture.attributes.get('alt', '')), 10, where)

    def test_every_picture_is_shown(self):
        shown = {picture.attributes['src'] for picture in self.page.all('img')}
        there = {f'pictures/{path.name}' for path in (MANUAL.parent / 'pictures').iterdir()}
        self.assertEqual(there, shown)

    def test_nothing_is_fetched_from_elsewhere(self):
        for element in self.page.elements:
            for name in ('src', 'href', 'srcset', 'data', 'action'):
                self.assertNotRegex(element.attributes.get(name, ''), '^[a-z]+:|^//', f'line {element.line}')
        self.assertNotRegex(MANUAL.read_text(encoding='utf-8'), r'url\(|@import|<script')

    def test_every_message_has_a_heading_that_is_followed_by_what_to_do(self):
        chapter = [self.page.with_id(name) for name in ('Messages', 'Scripts')]
        headings = [plain(dt.text) for section in chapter for dt in self.page.inside('dt', section)]
        missing = {}
        for path, texts in sources(*SHOWING_FOLDERS, *SPEAKING_FOLDERS):
            for text in texts:
                if is_sentence(text) and text not in NOT_SHOWN | SYSTEM_TEXTS and not self.is_a_heading(text, headings):
                    missing.setdefault(str(path.relative_to(ROOT)), []).append(plain(text))
        self.assertEqual(missing, {}, 'please say in help/Quivane.htm, chapter Messages, what to do then')

    def is_a_heading(self, text, headings):
        """Whether a heading has the text; each of its paragraphs by itself, since a name may stand between."""
        return all(any(plain(part) in heading for heading in headings) for part in text.split('\n\n') if part.strip())

    def test_headings_of_messages_have_an_explanation(self):
        for name in ('Messages', 'Scripts'):
            section = self.page.with_id(name)
            entries = [element for element in self.page.elements
                       if element.tag in ('dt', 'dd', 'dl') and any(around is section for around in element.path)]
            for entry, following in zip(entries, entries[1:] + [None]):
                if entry.tag == 'dt':
                    self.assertIsNotNone(following, entry.text)
                    self.assertIn(following.tag, ('dt', 'dd'), f'line {entry.line}: {entry.text} is not explained')
                if entry.tag == 'dd':
                    self.assertTrue(entry.text.strip(), f'line {entry.line}')

    def test_every_other_text_of_the_windows_is_in_the_manual(self):
        missing = {}
        for path, texts in sources(*SHOWING_FOLDERS):
            for text in texts:
                if is_words(text) and text not in NOT_SHOWN | SYSTEM_TEXTS:
                    for part in text.split('\n\n'):
                        if plain(part) not in self.text:
                            missing.setdefault(str(path.relative_to(ROOT)), []).append(plain(part))
        self.assertEqual(missing, {}, 'please describe these in help/Quivane.htm')

    def test_every_menu_dialog_and_control_is_in_the_manual(self):
        missing = {}
        for folder in ('resources', 'dialogs', 'views'):
            scripts = sorted((ROOT / folder).rglob('*.rc'))
            self.assertNotEqual(scripts, [], folder)
            for path in scripts:
                for text in source_texts.resource_texts(path.read_text(encoding='utf-8')):
                    if text not in HIDDEN_CONTROLS and plain(text) not in self.text:
                        missing.setdefault(str(path.relative_to(ROOT)), []).append(plain(text))
        self.assertEqual(missing, {}, 'please describe these in help/Quivane.htm')


class SourceTextsTest(unittest.TestCase):
    """The tests above are worth as much as what finds the texts."""

    def test_texts_of_all_kinds_are_found(self):
        source = r'''
            #include "not/this.h"
            // "nor this"   /* "nor this" */
            const char quote = '"';
            auto a = L"One \"quoted\" text\n" /* joined */
                     L"in two parts";
            auto b = u8"\u2019" R"x(raw "text")x";
        '''
        self.assertEqual(source_texts.cpp_texts(source),
                         ['One "quoted" text\nin two parts', '\u2019raw "text"'])

    def test_sentences_are_told_from_other_texts(self):
        for text in ('The file is empty.', ' could not be opened.\n', "' could not be stored.", 'Delete this record?',
                     'Another file has taken the place of the one that is open:\n', '; the provider is CEDB.'):
            self.assertTrue(is_sentence(text), text)
        for text in ('PRAGMA synchronous=FULL', 'Quivane', 'SELECT 1 FROM main.sqlite_schema LIMIT 1', 'OK.'):
            self.assertFalse(is_sentence(text), text)

    def test_texts_of_resource_scripts_are_found(self):
        script = 'CAPTION "Find"\n  LTEXT "Find &what:", -1, 3\n    POPUP "&Goto"\n  AUTOCHECKBOX "a ""b""", X\n'
        self.assertEqual(source_texts.resource_texts(script), ['Find', 'Find what:', 'Goto', 'a "b"'])


if __name__ == '__main__':
    unittest.main()
