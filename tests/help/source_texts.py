"""The texts that stand in the program's sources: string literals of C++ and of resource scripts."""

import re

_LITERAL = re.compile(
    r'//[^\n]*|/\*.*?\*/'  # comments are passed over
    r"|'(?:\\.|[^'\\\n])*'"  # and characters
    r'|(?P<raw>\b(?:u8|[LuU])?R"(?P<mark>[^(\s]*)\((?P<rawtext>.*?)\)(?P=mark)")'
    r'|(?P<plain>(?:\b(?:u8|[LuU]))?"(?P<text>(?:\\.|[^"\\\n])*)")',
    re.DOTALL)

_ESCAPE = re.compile(r'\\(?:u([0-9a-fA-F]{4})|x([0-9a-fA-F]+)|(.))', re.DOTALL)
_SIGNS = {'n': '\n', 'r': '\r', 't': '\t', '0': '\0'}


def cpp_texts(source):
    """The string literals of a C++ source, those that stand beside each other joined; not those of #include."""
    source = re.sub(r'^\s*#\s*include.*$', '', source, flags=re.MULTILINE)
    texts = []
    end = None
    for match in _LITERAL.finditer(source):
        if match['raw'] is not None:
            text = match['rawtext']
        elif match['plain'] is not None:
            text = _plain(match['text'])
        else:
            continue
        if end is not None and _joins(source[end:match.start()]):
            texts[-1] += text
        else:
            texts.append(text)
        end = match.end()
    return texts


def _joins(between):
    return not re.sub(r'//[^\n]*|/\*.*?\*/|\\\n|\s', '', between, flags=re.DOTALL)


def _plain(text):
    def sign(match):
        if match[1] or match[2]:
            return chr(int(match[1] or match[2], 16))
        return _SIGNS.get(match[3], match[3])

    return _ESCAPE.sub(sign, text)


def resource_texts(script):
    """The texts of menus, captions and controls in a resource script, without the marks of access keys."""
    texts = []
    for line in script.splitlines():
        match = re.match(r'\s*(?:POPUP|MENUITEM|CAPTION|\w*TEXT|\w*BUTTON|AUTOCHECKBOX|GROUPBOX)\s+"((?:[^"]|"")*)"', line)
        if match:
            text = match[1].replace('""', '"').replace('\\n', '\n')
            texts.append(text.replace('&', ''))
    return texts
