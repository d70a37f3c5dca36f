#!/usr/bin/env python3
"""Shows Doxygen the comments of a header, or the text of a document: doxygen-filter.py HEADER-OR-DOCUMENT.

The headers have plain comments, and one comment can stand above several declarations. Doxygen wants a mark on each
comment and a comment on each declaration:
  - a comment above a declaration, and one behind it, becomes Doxygen's;
  - declarations that follow without a blank line share the comment above the first of them, but for overrides, which
    have that of what they override, and for destructors; a comment behind a getter serves the setter below it as well;
  - others have the heading of their part of the class, and members of a struct what stands above it;
  - what is deleted or defaulted, a macro that the header takes back, and the body of a function are left out;
  - the comment at the head of the file goes to the file, and to the class that the file is named after as well.

Comments are plain text but for `code`, lists and links; lines that stand further in than a list's are shown as they
are. In documents it is `code` that Doxygen would read commands in."""
import re
import sys
from pathlib import Path

COMMENT = re.compile(r"^(\s*)//(?: (.*))?$")
TRAILING = re.compile(r"^(\s*\S.*?)\s+// (.*)$")
HEADING = re.compile(r"^\s*// ---- (.*?)(?: ----)?$")
NAMESPACE = re.compile(r"^(inline )?namespace\b|^extern \"C\"")
TYPE = re.compile(r"^\s*(template\s*<.*>\s*)?(class|struct|union|enum)\b[^;()]*\{$")
STRUCT = re.compile(r"^\s*struct\b[^;()]*\{$")
ACCESS = re.compile(r"^\s*(public|protected|private):")
GIVEN = re.compile(r"= (delete|default);$")
TEMPLATE = re.compile(r"^\s*template\s*<.*>$")
DECLARATION = re.compile(r"^\s*(#define\b.*|[A-Za-z_~\[].*[;{,(})])\s*$")
NAME = re.compile(r"(\w+)\s*\(")
SEVERAL = re.compile(r"^(\s*[\w:]+) (\w+(?:\{[^}]*\})?(?:, \w+(?:\{[^}]*\})?)+);(.*)$")
LIST_ITEM = re.compile(r"\s*(-|\d+\.) ")
SPECIAL = re.compile(r"[\\<>#@%&\"]|(?<![\w>])::")


def escaped(text):
    return SPECIAL.sub(r"\\\g<0>", text)


def plain(words):
    """A comment's lines, so that Doxygen finds no commands and no HTML in them."""
    lines, as_is, in_list, in_code = [], False, False, False
    for line in words:
        indent = len(line) - len(line.lstrip())
        if not indent and line:
            in_list = False
        in_list = in_list or bool(not as_is and LIST_ITEM.match(line))
        if line and as_is != (indent > 1 and not in_list):
            as_is = not as_is
            lines.append("@verbatim" if as_is else "@endverbatim")
        if not as_is:
            pieces = line.split("`")
            for i, piece in enumerate(pieces):
                if i:
                    in_code = not in_code
                if not in_code:
                    pieces[i] = escaped(piece)
            line = "`".join(pieces)
        lines.append(line)
    return lines + (["@endverbatim"] if as_is else [])


def comment_lines(words, command=""):
    """A comment of Doxygen's; none for no words."""
    words = [command, *plain(words)] if command else plain(words)
    return ["/**", *(re.sub(r"/(?=\*)|\*(?=/)", r"\g<0>&zwnj;", line) for line in words), "*/"] if words else []


def goes_with(line, getter):
    """Whether a line declares the setter of what the line above it gets, or the same with more arguments."""
    names = [match[1] if (match := NAME.search(each)) else "" for each in (line, getter)]
    stems = [re.sub(r"^([sg]et|[SG]et)(?=[A-Z])", "", name).split("_")[0].lower() for name in names]
    return bool(names[1]) and names[0] != names[1] and stems[0] == stems[1]


def without_undefined(lines):
    """The lines without the macros that are undefined again, and what stands between."""
    undefined = {line.split()[1] for line in lines if line.startswith("#undef")}
    output, inside = [], None
    for line in lines:
        if match := re.match(r"#define (\w+)", line):
            inside = match[1] if match[1] in undefined else None
        if inside is None:
            output.append(line)
        else:
            output.append("")
            if line == f"#undef {inside}":
                inside = None
    return output


class Filter:
    def __init__(self, path, lines):
        self.stem = path.stem
        self.lines = without_undefined(lines)
        self.output = []
        self.words = []  # the comment above the next declaration
        self.shared = None  # the comment that declarations without one of their own share, and its indent
        self.sections = {}  # what declarations without any comment above them have, by their indent
        self.behind = None  # the comment behind the line above, and what that line declares
        self.open_depth = 0  # of a declaration that goes on
        self.body = None  # how the line begins that ends the body of a function
        self.goes_on = False  # whether the line above is the beginning of a declaration
        self.head = []

    def run(self):
        while self.lines and (match := COMMENT.match(self.lines[0])):
            self.head.append(match[2] or "")
            self.lines.pop(0)
        self.output += comment_lines(self.head, "@file")
        in_heading = False
        for line in self.apart():
            if match := HEADING.match(line):
                self.forget()
                self.sections[self.indent(line)] = heading = [match[1]]
                in_heading = True
            elif in_heading and (match := COMMENT.match(line)):
                self.forget()
                heading.append(match[2] or "")
            else:
                in_heading = False
                self.take(line)
        print("\n".join(self.output))

    def apart(self):
        """The lines, with one line for each of several variables that share one."""
        for line in self.lines:
            if match := SEVERAL.match(line):
                for variable in re.findall(r"\w+(?:\{[^}]*\})?", match[2]):
                    yield f"{match[1]} {variable};{match[3]}"
            else:
                yield line

    @staticmethod
    def indent(line):
        return re.match(r"\s*", line)[0]

    def forget(self):
        self.words, self.shared, self.behind = [], None, None
        self.output.append("")

    def take(self, line):
        indent = self.indent(line)
        if self.body is not None:
            self.output.append(line)
            if line.startswith(self.body):
                self.body = None
        elif self.open_depth > 0:
            self.go_on(line)
        elif not line.strip():
            self.forget()
        elif GIVEN.search(line):
            self.words = []
            self.output.append("")
        elif match := COMMENT.match(line):
            self.words.append(match[2] or "")
        else:
            if ACCESS.match(line) or line.lstrip().startswith("}"):
                self.sections = {at: words for at, words in self.sections.items() if len(at) <= len(indent)}
            if NAMESPACE.match(line) and not self.words or re.match(r"\}(?:;|  // namespace.*)?$", line):
                self.output.append(line.split("//")[0].rstrip())
            else:
                self.declare(line, indent)

    def comment_for(self, line, indent, trailing):
        """What is written above a declaration."""
        name = re.match(rf"\s*(?:template\s*<.*>\s*)?(?:class|struct)\s+(?:\[\[\w+\]\]\s*)?{self.stem}\b[^;]*$", line)
        if name:
            return self.head + ([""] + self.words if self.words else [])
        if self.words:
            self.shared = (self.words, indent)
            return self.words
        if trailing or self.goes_on or "override" in line or "~" in line:
            return []
        if not (DECLARATION.match(line) or TEMPLATE.match(line)):
            return []
        if self.behind and goes_with(line, self.behind[1]):
            return self.behind[0]
        if self.shared and self.shared[1] == indent:
            return self.shared[0]
        return self.sections.get(indent, [])

    def declare(self, line, indent):
        trailing = TRAILING.match(line)
        code = trailing[1] if trailing else line
        words = self.comment_for(line, indent, trailing)
        if not ACCESS.match(line):
            self.output += comment_lines(words)
        if STRUCT.match(code) and words:
            self.sections[indent + "    "] = words
        if trailing:
            self.output.append(f"{code}  ///< {' '.join(plain([trailing[2]]))}")
            self.behind = ([trailing[2]], code)
        else:
            self.output.append(line)
            if self.behind and words is not self.behind[0]:
                self.behind = None
        self.words = []
        self.goes_on = not code.startswith("#") and not code.endswith((";", "{", "}", ",", ":", "("))
        self.open_depth = max(0, code.count("(") - code.count(")"))
        if not self.open_depth:
            self.begin_body(code, indent)

    def go_on(self, line):
        self.output.append(line)
        code = line.split(" // ")[0]
        self.open_depth = max(0, self.open_depth + code.count("(") - code.count(")"))
        if not self.open_depth:
            self.begin_body(code, None)

    def begin_body(self, code, indent):
        """A line that opens a block which is no type and no namespace opens the body of a function."""
        if not code.endswith("{") or TYPE.match(code) or NAMESPACE.match(code):
            return
        if indent is None:
            indent = next(self.indent(before) for before in reversed(self.output[:-1]) if before.count("(") > before.count(")"))
        self.body = indent + "}"


def document(text):
    """A document, so that Doxygen finds no commands in its `code`."""
    blocks = re.split(r"(^```.*?^```$)", text, flags=re.MULTILINE | re.DOTALL)
    span = re.compile(r"(?<!`)`((?:::|[^`\n]*@)[^`\n]*)`(?!`)")
    for i in range(0, len(blocks), 2):
        blocks[i] = span.sub(lambda match: f"<code>{escaped(match[1])}</code>", blocks[i])
    return "".join(blocks)


def main(path):
    if path.suffix == ".md":
        return print(document(path.read_text(encoding="utf-8")), end="")
    Filter(path, path.read_text(encoding="utf-8").splitlines()).run()


if __name__ == "__main__":
    main(Path(sys.argv[1]))
