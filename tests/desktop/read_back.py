# SPDX-License-Identifier: MIT
"""Reads back what a program made of a paste: documents as blocks and styled runs, whatever the
format, and a page of ours in a browser."""

import base64
import html.parser
import http.server
import json
import re
import threading
import urllib.parse
import xml.etree.ElementTree as xml

BLOCKS = {"p", "li", "td", "th", "div", "h1", "h2", "table", "ul", "ol"}
STYLE_TAGS = {"b": "bold", "strong": "bold", "i": "italic", "em": "italic"}
HIDDEN = {"style", "title", "script"}
VOID = {"br", "img", "meta", "hr", "link", "input"}


class Document:
    """blocks: (kind, text) in order, empty ones left out; a kind is p, td, or li with its depth.
    runs: (text, flags), where a flag is bold, italic, a colour as #rrggbb, or a link's address."""

    def __init__(self):
        self.blocks = []
        self.runs = []
        self.images = []
        self._open = None

    def block(self, kind):
        self._open = kind

    def text(self, text, flags=frozenset(), default="p"):
        if self._open is not None or not self.blocks:
            self.blocks.append((self._open or default, ""))
            self._open = None
        kind, before = self.blocks[-1]
        self.blocks[-1] = (kind, before + text)
        if self.runs and self.runs[-1][1] == flags:
            text = self.runs.pop()[0] + text
        self.runs.append((text, flags))

    def finish(self):
        kept = [(kind, text.strip(" \n\u00a0")) for kind, text in self.blocks]
        self.blocks = [(kind, text.replace("\u00a0", " ")) for kind, text in kept if text]
        return self

    def flags_of(self, text):
        """The flags that every part of a text carries; none when it is not there."""
        whole = "".join(run for run, _ in self.runs).replace("\u00a0", " ")
        start = whole.find(text)
        if start < 0:
            return None
        found, position = [], 0
        for run, flags in self.runs:
            if position < start + len(text) and position + len(run) > start:
                found.append(flags)
            position += len(run)
        return frozenset.intersection(*found)

    @property
    def plain(self):
        return "\n".join(text for _, text in self.blocks)


def style_flags(css, flags):
    values = dict(re.findall(r"(?<![-\w])([-\w]+)\s*:\s*([^;]+)", css))
    flags = set(flags)
    for name, flag, on in (("font-weight", "bold", ("bold", "600", "700")),
                           ("font-style", "italic", ("italic", "oblique"))):
        if name in values:
            (flags.add if values[name].strip() in on else flags.discard)(flag)
    colour = values.get("color", "").strip()
    numbers = re.fullmatch(r"rgb\((\d+), (\d+), (\d+)\)", colour)
    if numbers:
        colour = "#%02x%02x%02x" % tuple(map(int, numbers.groups()))
    if colour.startswith("#"):
        flags = {flag for flag in flags if not flag.startswith("#")} | {colour.lower()}
    return frozenset(flags)


class HtmlReader(html.parser.HTMLParser):
    """HTML as editors write it: white space between blocks is layout, inside it is text."""

    def __init__(self):
        super().__init__()
        self.document = Document()
        self.stack = [("", frozenset())]

    def kind(self):
        tags = [tag for tag, _ in self.stack]
        if "td" in tags or "th" in tags:
            return "td"
        depth = sum(tag in ("ul", "ol") for tag in tags)
        return f"li{depth}" if depth else "p"

    def handle_starttag(self, tag, attributes):
        values = {name: value or "" for name, value in attributes}
        if tag == "br":
            self.document.text("\n", self.stack[-1][1], self.kind())
        elif tag == "img":
            self.document.images.append(values)
        if tag in VOID:
            return
        flags = style_flags(values.get("style", ""), self.stack[-1][1] | (
            {STYLE_TAGS[tag]} if tag in STYLE_TAGS else set()) | (
            {values["href"]} if values.get("href") else set()) | (
            {values["color"].lower()} if values.get("color") else set()))
        self.stack.append((tag, flags))
        if tag in BLOCKS:
            self.document.block(self.kind())

    def handle_endtag(self, tag):
        if any(open_tag == tag for open_tag, _ in self.stack):
            while self.stack.pop()[0] != tag:
                pass
            if tag in BLOCKS:
                self.document.block(self.kind())

    def handle_data(self, data):
        tags = {tag for tag, _ in self.stack}
        inside = tags & {"p", "li", "td", "th", "div", "h1", "h2", "span", "b", "a"}
        if tags & HIDDEN or (not data.strip() and ("\n" in data or not inside)):
            return
        self.document.text(data, self.stack[-1][1], self.kind())


def read_html(text):
    reader = HtmlReader()
    reader.feed(text)
    reader.close()
    return reader.document.finish()


def local(name):
    return name.rpartition("}")[2]


def attribute(element, name):
    return next((v for k, v in element.attrib.items() if local(k) == name), None)


class OpenDocumentReader:
    """A flat OpenDocument text or spreadsheet."""

    def __init__(self, path):
        root = xml.parse(path).getroot()
        self.document = Document()
        self.styles = {}
        self.parents = {}
        for style in (e for e in root.iter() if local(e.tag) == "style"):
            name = attribute(style, "name")
            self.parents[name] = attribute(style, "parent-style-name")
            self.styles[name] = [p for p in style if local(p.tag) == "text-properties"]
        self.body = next(e for e in root.iter() if local(e.tag) == "body")

    def flags(self, style, before):
        if style not in self.styles:
            return before
        flags = self.flags(self.parents[style], before)
        for properties in self.styles[style]:
            css = ";".join(f"{name}:{attribute(properties, name)}"
                           for name in ("font-weight", "font-style", "color")
                           if attribute(properties, name))
            flags = style_flags(css, flags)
        return flags

    def walk(self, element, kind, flags):
        tag = local(element.tag)
        if tag in ("p", "h"):
            self.document.block(kind)
            flags = self.flags(attribute(element, "style-name"), flags)
        elif tag == "span":
            flags = self.flags(attribute(element, "style-name"), flags)
        elif tag == "a":
            flags = flags | {attribute(element, "href")}
        elif tag == "list":
            kind = f"li{int(kind[2:] or 0) + 1 if kind.startswith('li') else 1}"
        elif tag == "table-cell":
            kind = "td"
        elif tag == "frame":
            self.frame(element)
            return
        elif tag in ("tab", "line-break", "s"):
            sign = {"tab": "\t", "line-break": "\n"}.get(tag, " ")
            self.document.text(sign * int(attribute(element, "c") or 1), flags)
        is_inline = tag in ("p", "h", "span", "a")
        if is_inline and element.text:
            self.document.text(element.text, flags)
        for child in element:
            self.walk(child, kind, flags)
            if is_inline and child.tail:
                self.document.text(child.tail, flags)

    def frame(self, element):
        for data in (e for e in element.iter() if local(e.tag) == "binary-data"):
            self.document.images.append({
                "bytes": base64.b64decode(data.text),
                "width": attribute(element, "width"), "height": attribute(element, "height")})

    def read(self):
        for child in self.body:
            self.walk(child, "p", frozenset())
        return self.document.finish()

    def links(self):
        """The addresses of the sections that are linked to files."""
        return [urllib.parse.unquote(attribute(e, "href")) for e in self.body.iter()
                if local(e.tag) == "section-source"]

    def rows(self):
        """A spreadsheet's cells as texts, empty rows and cells at the end left out."""
        rows = []
        for row in (e for e in self.body.iter() if local(e.tag) == "table-row"):
            cells = []
            for cell in (e for e in row if local(e.tag) == "table-cell"):
                cells += ["".join(cell.itertext()).strip()] * min(
                    int(attribute(cell, "number-columns-repeated") or 1), 20)
            while cells and not cells[-1]:
                cells.pop()
            rows += [cells] if cells else []
        return rows


PAGE = """<!DOCTYPE html><meta charset="utf-8"><title>copy-back page</title>
<textarea id="area" rows="12" cols="80"></textarea>
<div id="rich" contenteditable style="border:1px solid;min-height:200px"></div>
<script>
const area = document.getElementById('area'), rich = document.getElementById('rich');
let round = 0;
function pictures() {
  return [...rich.querySelectorAll('img')].filter(i => i.complete && i.naturalWidth).map(i => {
    const canvas = document.createElement('canvas');
    canvas.width = i.naturalWidth; canvas.height = i.naturalHeight;
    const context = canvas.getContext('2d');
    context.drawImage(i, 0, 0);
    const data = context.getImageData(0, 0, canvas.width, canvas.height).data;
    return {width: canvas.width, height: canvas.height, rgba: [...data]};
  });
}
async function turn() {
  const focus = document.hasFocus() ? document.activeElement.id : '';
  const state = {round, focus, text: area.value, html: rich.innerHTML, images: pictures()};
  const body = JSON.stringify(state);
  const answer = await (await fetch('/state', {method: 'POST', body})).json();
  if (answer.round !== round) {
    round = answer.round; area.value = ''; rich.innerHTML = '';
    document.getElementById(answer.focus).focus();
  }
  setTimeout(turn, 60);
}
turn();
</script>
"""


class Page:
    """A page with a text area and a rich editor, which tells what is in them."""

    def __init__(self):
        page = self
        self.wanted = {"round": 0, "focus": "area"}
        self.state = {}

        class Handler(http.server.BaseHTTPRequestHandler):
            def answer(self, kind, body):
                self.send_response(200)
                self.send_header("Content-Type", kind)
                self.end_headers()
                self.wfile.write(body.encode())

            def do_GET(self):
                self.answer("text/html", PAGE)

            def do_POST(self):
                page.state = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
                self.answer("application/json", json.dumps(page.wanted))

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.address = f"http://127.0.0.1:{self.server.server_port}/"
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def ask_for(self, field):
        """Asks the page to empty itself and to focus a field."""
        self.wanted = {"round": self.wanted["round"] + 1, "focus": field}

    def is_ready(self):
        return (self.state.get("round") == self.wanted["round"]
                and self.state["focus"] == self.wanted["focus"])

    def close(self):
        self.server.shutdown()
        self.server.server_close()
