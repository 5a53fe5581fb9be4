"""What a browser would make of the manual: its elements, addresses and texts."""

import dataclasses
import html.parser

_VOID = {'meta', 'link', 'img', 'br', 'hr', 'col', 'wbr', 'input'}


@dataclasses.dataclass
class Element:
    tag: str
    attributes: dict
    line: int
    path: tuple  # the elements around it, from the outermost on
    text: str = ''  # of the element and all within it


class ManualPage(html.parser.HTMLParser):
    """Reads a page strictly: what is opened is closed again, in order. `faults` tells where it is not."""

    def __init__(self, text):
        super().__init__(convert_charrefs=True)
        self.elements = []
        self.faults = []
        self._open = []
        self.feed(text)
        self.close()
        for element in self._open:
            self.faults.append(f'line {element.line}: <{element.tag}> is not closed')

    def handle_starttag(self, tag, attrs):
        line = self.getpos()[0]
        names = [name for name, _ in attrs]
        if len(set(names)) != len(names):
            self.faults.append(f'line {line}: <{tag}> has an attribute twice')
        element = Element(tag, dict(attrs), line, tuple(self._open))
        self.elements.append(element)
        if tag not in _VOID:
            self._open.append(element)

    def handle_endtag(self, tag):
        if self._open and self._open[-1].tag == tag:
            self._open.pop()
        else:
            self.faults.append(f'line {self.getpos()[0]}: </{tag}> closes nothing')

    def handle_data(self, data):
        for element in self._open:
            element.text += data

    def all(self, tag):
        return [element for element in self.elements if element.tag == tag]

    def with_id(self, name):
        found = [element for element in self.elements if element.attributes.get('id') == name]
        return found[0] if found else None

    def inside(self, tag, outer):
        """The elements of a tag that stand within the element `outer`."""
        return [element for element in self.all(tag) if any(around is outer for around in element.path)]
