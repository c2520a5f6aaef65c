# SPDX-License-Identifier: MIT
"""Generates mutants of the library's sources by rule: one operator at one place is one mutant.

The sources must be formatted with .clang-format: each statement starts on a new line, function bodies are in braces, and
binary operators have spaces around them."""
import re
from collections import Counter, namedtuple

# offset and end delimit the text that "becomes" replaces; number distinguishes identical mutants.
Mutant = namedtuple("Mutant", "file function operator offset end becomes removed added number")

# Each of a pair can replace the other.
TWINS = [
    ("DFB_CHECK", "DFB_CHECK_BRIEF"), ("TEXTDISP_ENTER", "TEXTDISP_EXIT"), ("LEVEL_ERROR", "LEVEL_LOG"),
    ("TEXTDISP_ERROR_RECORD", "TEXTDISP_TRACE"),
    ("bColor32", "bTextDisp_Palette"), ("UnpackColor", "PaletteColor"),
    ("pBaseSurface", "pActiveSurface"), ("pBackupSurface", "pBaseSurface"),
    ("ucFgColorIndex", "ucEdgeColorIndex"), ("siFgColor", "siBgColor"), ("bShow", "bFlip"),
    ("KOVA_GRAPHIC_LAYER1", "KOVA_GRAPHIC_LAYER2"), ("DSPF_LUT8", "DSPF_ARGB"), ("DSPF_LUT8", "DSPF_RGB32"),
    ("DLSCL_EXCLUSIVE", "DLSCL_SHARED"), ("DLBM_BACKVIDEO", "DLBM_BACKSYSTEM"), ("DSCAPS_DOUBLE", "DSCAPS_NONE"),
    ("DSDRAW_DST_COLORKEY", "DSDRAW_NOFX"), ("DSLF_WRITE", "DSLF_READ"), ("DWSC_LOWER", "DWSC_MIDDLE"),
    ("DSTF_TOPLEFT", "DSTF_TOPRIGHT"), ("DSBLIT_NOFX", "DSBLIT_BLEND_ALPHACHANNEL"),
    ("DFB_TEMPUNAVAIL", "DFB_UNSUPPORTED"), ("DFB_OK", "DFB_TEMPUNAVAIL"), ("DFB_DESTROYED", "DFB_OK"),
    ("DFENUM_OK", "DFENUM_CANCEL"), ("PTHREAD_MUTEX_RECURSIVE", "PTHREAD_MUTEX_NORMAL"),
    ("RTLD_NOW", "RTLD_LAZY"), ("RTLD_GLOBAL", "RTLD_LOCAL"),
    ("KOVA_TEXT_UNICODE", "KOVA_TEXT_ASCII"), ("KOVA_TEXT_UTF8", "KOVA_TEXT_ASCII"),
    ("ShowInternal", "HideInternal"), ("SetClip", "GetClip"), ("max", "min"),
    ("true", "false"), ("MAX_FONTS", "MAX_CONTEXTS"), ("MAX_PLANE_WIDTH", "MAX_PLANE_HEIGHT"),
    ("uiWidth", "uiHeight"), ("uiPlaneWidth", "uiPlaneHeight"), ("sLayerSize", "sWindowSize"),
    ("sWindowSize", "sWindowSurfaceSize"), ("sWindowSurfaceSize", "sLayerSize"),
    ("uiTextWindowWidth", "uiTextWindowHeight"), ("uiDisplayWindowX", "uiDisplayWindowY"),
    ("uiDisplayWindowWidth", "uiDisplayWindowHeight"), ("iWidth", "iHeight"), ("w", "h"),
    ("uiX", "uiY"), ("x", "y"), ("uiStartX", "uiStartY"), ("uiDstX", "uiDstY"), ("x1", "y1"), ("x2", "y2"),
    ("x1", "x2"), ("y1", "y2"), ("uiLeft", "uiTop"), ("iLeft", "iTop"), ("ucHeight", "ucWidth"), ("width", "height"),
    ("plane_x", "plane_y"), ("plane_w", "plane_h"), ("crop_x", "crop_y"), ("crop_w", "crop_h"),
    ("hz", "vz"), ("psiPos", "psiThick"), ("flip_thread_stop", "bFlipPosted"),
    ("has_flipping_req", "bFlipPosted"), ("clip", "flip_clip"),
]
COMPARISONS = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">"}
ARITHMETIC = {"+": "-", "-": "+", "*": "+", "/": "*", "%": "/", "<<": ">>", ">>": "<<", "+=": "-=", "|": "&",
              "&": "|", "^": "|"}

OPERATORS = {
    "delete": "a statement is left out",
    "check": "a check with its way out is left out",
    "swap": "two neighbouring checks or calls change places",
    "exit-drop": "one of the things that happen on a way out is left out: a report, an unlock, an exit trace",
    "exit-swap": "two of them change places",
    "result": "0 becomes -1, a result of a way out",
    "negate": "a condition becomes its opposite, or loses its opposite",
    "compare": "a comparison includes its bound, excludes it, or becomes its opposite",
    "logic": "and becomes or, or becomes and",
    "arithmetic": "an operator becomes another one",
    "number": "a number is one more or one less",
    "flag": "a flag is missing",
    "words": "a text differs by a letter",
    "arguments": "two neighbouring arguments change places",
    "twin": "a name stands where its twin should: another colour mode, surface, coordinate, result",
    "written": "thought of by a person: written.txt",
}

DECLARATION = re.compile(r"(const|static|constexpr|auto|struct|class|enum|typedef|using|extern|template|public|private)\b"
                         r"|(unsigned |struct )?[\w:<>]+(\s*[*&]+\s*|\s+)(const\s+)?\w+(\[[^\]]*\])*\s*([=;,{(]|$)")


def mask(text):
    """The text with comments, the insides of strings, and directives other than #define blanked out."""
    def blank(match):
        found = match.group(0)
        if found[0] == '"':
            return '"' + "\x01" * (len(found) - 2) + '"'
        return re.sub(r"[^\n]", " ", found)
    return re.sub(r'"(?:\\.|[^"\\\n])*"|//[^\n]*|/\*.*?\*/|^[ \t]*#(?![ \t]*define)[^\n]*|static_assert\([^;]*;', blank, text,
                  flags=re.S | re.M)


def closing(masked, opening):
    depth = 0
    for at in range(opening, len(masked)):
        depth += (masked[at] in "([{") - (masked[at] in ")]}")
        if depth == 0:
            return at
    return -1


def split(masked, start, end):
    """The spans between the commas that belong to no inner brackets, without surrounding space."""
    spans, depth, begin = [], 0, start
    for at in range(start, end + 1):
        if at == end or (masked[at] == "," and depth == 0):
            piece = masked[begin:at]
            spans.append((begin + len(piece) - len(piece.lstrip()), begin + len(piece.rstrip())))
            begin = at + 1
        else:
            depth += (masked[at] in "([{") - (masked[at] in ")]}")
    return spans


def functions(text, masked):
    """(name, start of the body, its end) of each function; what lies between them has the name of the file part."""
    found = []
    for match in re.finditer(r"^( {0,4}|KEEPS_DISPLAY )[^\s#{}/].*(?:\n [^\n{}]*)*\n( *)\{\n", masked, flags=re.M):
        name = re.search(r"([\w~]+)\(", match.group(0))
        if name and ";" not in match.group(0) and not re.match(r"\s*(class|struct|namespace|enum)\b", match.group(0)):
            found.append((name.group(1), match.end(), closing(masked, match.end() - 2)))
    return found


def statements(masked, start, end):
    """(start, end) of each statement on lines of its own."""
    at = start
    while at < end:
        line_end = masked.find("\n", at)
        if line_end < 0 or line_end > end:
            break
        if not masked[at:line_end].strip():
            at = line_end + 1
            continue
        stop = line_end
        while True:
            piece = masked[at:stop].rstrip()
            balanced = all(piece.count(a) == piece.count(b) for a, b in ("()", "[]"))
            if piece and balanced and (piece[-1] in ";{}" or re.search(r"\b(case [^?]*|default):$", piece)):
                break
            following = masked.find("\n", stop + 1)
            if following < 0 or following > end:
                break
            stop = following
        first = at + len(masked[at:stop]) - len(masked[at:stop].lstrip())
        yield first, at + len(masked[at:stop].rstrip())
        at = stop + 1


class Collector:
    def __init__(self, file, text):
        self.file, self.text, self.found, self.seen = file, text, [], Counter()
        self.masked = mask(text)
        self.bodies = functions(text, self.masked)

    def function_at(self, offset):
        inside = [body for body in self.bodies if body[1] <= offset <= body[2]]
        return inside[-1][0] if inside else "-"

    def add(self, operator, offset, end, becomes):
        text = self.text
        if text[offset:end] == becomes:
            return
        first, last = text.rfind("\n", 0, offset) + 1, text.find("\n", end)
        removed = tuple(line.strip() for line in text[first:last].split("\n"))
        added = tuple(line.strip() for line in (text[first:offset] + becomes + text[end:last]).split("\n"))
        key = (self.function_at(offset), operator, removed, added)
        self.seen[key] += 1
        self.found.append(Mutant(self.file, key[0], operator, offset, end, becomes, removed, added, self.seen[key]))

    def tokens(self):
        masked, text = self.masked, self.text
        code = re.sub(r"^[ \t]*template <.*$", lambda match: " " * len(match.group(0)), masked, flags=re.M)
        for match in re.finditer(r"(?<= )(==|!=|<=|>=|<|>)(?= )", code):
            self.add("compare", *match.span(), COMPARISONS[match.group()])
            if match.group() in "<=>=":
                opposite = {"<": ">=", "<=": ">", ">": "<=", ">=": "<"}.get(match.group())
                if opposite:
                    self.add("compare", *match.span(), opposite)
        for match in re.finditer(r"(?<=[ \n])(&&|\|\|)(?=[ \n])", code):
            self.add("logic", *match.span(), "||" if match.group() == "&&" else "&&")
        for match in re.finditer(r"(?<=[\w)\]] )(\+=|<<|>>|[-+*/%|&^])(?= [\w(~!&])", code):
            after, before = code[match.end():].lstrip(), code[:match.start()].rstrip()
            if not (match.group() == "|" and (re.match(r"[A-Z]{3}", after) or re.search(r"\b[A-Z]{3}\w+$", before))):
                self.add("arithmetic", *match.span(), ARITHMETIC[match.group()])
        for match in re.finditer(r"\b[A-Z]{3}\w+(?:\s*\|\s*[A-Z]{3}\w+)+", code):
            for flag in re.finditer(r"\w+(\s*\|\s*)?", match.group()):
                begin, end = match.start() + flag.start(), match.start() + flag.end()
                if not flag.group(1):
                    begin = match.start() + re.search(r"\s*\|\s*\w+$", match.group()).start()
                self.add("flag", begin, end, "")
        for match in re.finditer(r"(?<![\w.\x01])(0x[0-9A-Fa-f]+|\d+)u?\b(?![\w.\x01])", code):
            value = int(match.group(1), 0)
            if not re.search(r"(?<![\w)\]] )-$", code[:match.start()]):
                self.add("number", *match.span(1), str(value + 1))
            if value > 0:
                self.add("number", *match.span(1), str(value - 1))
        for match in re.finditer(r"(?<![\w)])!(?=[\w(])", code):
            self.add("negate", *match.span(), "")
        for match in re.finditer(r"\b(?:if|while) \(", code):
            end = closing(code, match.end() - 1)
            if code[match.end()] != "!" or re.search(r"&&|\|\|", code[match.end():end]):
                self.add("negate", match.end(), end, "!(" + text[match.end():end] + ")")
        for match in re.finditer(r"(?<= )\?(?=[ \n])", code):
            # The arms change places; a chain of them and one inside brackets end where their surroundings do.
            arms = re.match(r"\?\s+((?:[^?:;,()]|\([^()]*\)|::)+?)\s+:\s+((?:[^?:;,()]|\([^()]*\)|::|\{[^}]*\})+)",
                            code[match.start():])
            if arms:
                (a, b), (c, d) = [[match.start() + x for x in arms.span(i)] for i in (1, 2)]
                self.add("negate", a, d, text[c:d] + text[b:c] + text[a:b])
        for match in re.finditer(r'"\x01+"', masked):
            literal = text[match.start():match.end()]
            letter = re.search(r"[A-Za-z]", self.plain(literal))
            if letter and literal != '"C"':
                at = match.start() + letter.start()
                self.add("words", at, at + 1, text[at].swapcase())
        for one, other in TWINS:
            for name, becomes in ((one, other), (other, one)):
                for match in re.finditer(r"(?<![\w\x01])%s\b" % name, code):
                    if self.function_at(match.start()) != "-":
                        self.add("twin", *match.span(), becomes)

    @staticmethod
    def plain(literal):
        """The literal with conversions and escapes blanked, for those are no words."""
        return re.sub(r"%[-#0]*\d*l?[a-z]|\\.", lambda match: " " * len(match.group(0)), literal)

    def calls(self):
        masked, text = self.masked, self.text
        for _, start, end in self.bodies:
            for match in re.finditer(r"(\w+)(?:<[\w, ]+>)?\(", masked[start:end]):
                if match.group(1) in ("if", "for", "while", "switch", "sizeof", "decltype"):
                    continue
                opening = start + match.end() - 1
                spans = split(masked, opening + 1, closing(masked, opening))
                for (a, b), (c, d) in zip(spans, spans[1:]):
                    if self.may_change_places(text[a:b], text[c:d]):
                        self.add("arguments", a, d, text[c:d] + text[b:c] + text[a:b])

    @staticmethod
    def may_change_places(one, other):
        """Leaves out what never compiles: a method, a text or a pointer in the place of something else."""
        def kind(argument):
            return "pointer" if re.match(r"p[A-Z]\w*$|pc[A-Z]|&|this\b", argument) else "value"
        return kind(one) == kind(other) and not re.search(r'"|&IDirectFB|&Surface::|^method$', one + other)

    def ways_out(self, start, end):
        masked, text = self.masked, self.text
        match = re.search(r"\breturn\b ?", masked[start:end])
        if not match or masked[end - 1] != ";":
            return
        begin = start + match.end()
        spans = split(masked, begin, end - 1)
        is_void = masked[spans[-1][0]:spans[-1][1]].endswith(")") and not re.match(
            r"kova_|int\(", masked[spans[-1][0]:])
        for index, (a, b) in enumerate(spans):
            if index < len(spans) - 1:
                self.add("exit-drop", a, spans[index + 1][0], "")
            elif is_void and len(spans) > 1:
                self.add("exit-drop", spans[index - 1][1], b, "")
            elif is_void:
                self.add("exit-drop", begin - 1, b, "")
        done = spans if is_void else spans[:-1]
        for (a, b), (c, d) in zip(done, done[1:]):
            self.add("exit-swap", a, d, text[c:d] + text[b:c] + text[a:b])
        a, b = spans[-1]
        if text[a:b] == "0":
            self.add("result", a, b, "-1")

    def structure(self):
        masked, text = self.masked, self.text
        for _, start, end in self.bodies:
            previous = None
            for a, b in statements(masked, start, end):
                piece = masked[a:b]
                kind = None
                if piece.endswith(";"):
                    if re.match(r"if \(.*\breturn\b", piece, flags=re.S):
                        kind = "check"
                        self.add("check", a, b, ";")
                    elif not piece.startswith(("return", "} ")) and not DECLARATION.match(piece):
                        # A store under the lock is seen from nowhere, and so is its place among its neighbours.
                        kind = "call" if re.match(r"(?!Poke\b)\w+\(", piece) else None
                        self.add("delete", a, b, ";")
                    self.ways_out(a, b)
                indent = a - text.rfind("\n", 0, a)
                if kind and previous and previous[0] == indent and text[previous[2]:a].strip() == "":
                    self.add("swap", previous[1], b, text[a:b] + text[previous[2]:a] + text[previous[1]:previous[2]])
                previous = (indent, a, b) if kind else None


def of_source(file, text):
    collector = Collector(file, text)
    collector.structure()
    collector.calls()
    collector.tokens()
    return collector.found


Entry = namedtuple("Entry", "file function operator number removed added words where")


def read_list(path):
    """Blocks of a heading, "- " lines as the source has them, "+ " lines as the mutant has them, "# " why."""
    entries, block = [], []
    for number, line in enumerate(path.read_text().split("\n") + [""], 1):
        if line.strip():
            block.append(line)
            continue
        if block and not all(line.startswith("#") for line in block):
            heading = re.fullmatch(r"(\S+): (\S+): ([\w-]+)(?: #(\d+))?", block[0])
            removed, added, words = (tuple(line[1:].strip() for line in block[1:] if line[0] == sign) for sign in "-+#")
            if not heading or not removed or not added or not words:
                raise ValueError("%s:%d: not a heading \"FILE: FUNCTION: OPERATOR\" with lines \"- \", \"+ \" and \"# \" "
                                 "under it" % (path, number - len(block)))
            entries.append(Entry(*heading.group(1, 2, 3), int(heading.group(4) or 1), removed, added, " ".join(words),
                                 "%s:%d" % (path.name, number - len(block))))
        block = []
    return entries


def written(entries, sources):
    """The mutants of written.txt, and the entries whose text stands nowhere, or at several places, in their function."""
    found, lost = [], []
    for entry in entries:
        text = sources.get(entry.file)
        places = []
        if text is not None:
            pattern = r"\n[ \t]*".join(re.escape(line) for line in entry.removed)
            collector = Collector(entry.file, text)
            places = [match for match in re.finditer(pattern, text)
                      if collector.function_at(match.start()) == entry.function]
        if len(places) != 1:
            lost.append(entry)
            continue
        found.append(Mutant(entry.file, entry.function, "written", places[0].start(), places[0].end(),
                            "\n".join(entry.added), entry.removed, entry.added, 1))
    return found, lost
