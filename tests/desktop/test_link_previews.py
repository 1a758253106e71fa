#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A copied link gets the title and the picture of its page from a real server, and nothing asks
for anything when the person does not want that."""

import contextlib
import http.server
import json
import os
import pathlib
import ssl
import subprocess
import sys
import threading
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import HERE, Desktop, Quillo, wait_for  # noqa: E402

TLS = HERE.parent / "data" / "tls"
RESULT = "OG result"
LARGEST = 4_999_999
TITLE = b'<meta property="og:title" content="%s">'


class Server(http.server.ThreadingHTTPServer):
    """Answers as the paths say and counts who comes."""

    daemon_threads = True

    def __init__(self, context=None):
        self.accepted, self.paths, self.pages = 0, [], {}
        super().__init__(("127.0.0.1", 0), Handler)
        if context:
            self.socket = context.wrap_socket(self.socket, server_side=True,
                                              do_handshake_on_connect=False)
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def end(self):
        self.shutdown()
        self.server_close()

    def get_request(self):
        connection = super().get_request()
        self.accepted += 1
        return connection

    def handle_error(self, request, client_address):
        """Who closes early is no fault of the server."""

    def address(self, path, host="127.0.0.1", scheme="http"):
        return f"{scheme}://{host}:{self.server_port}{path}"


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *_):
        pass

    def do_GET(self):
        self.server.paths.append(self.path)
        page = self.server.pages.get(self.path)
        if callable(page):
            page(self)
            return
        self.send_response(200 if page is not None else 404)
        self.send_header("Content-Length", str(len(page or b"")))
        self.end_headers()
        self.wfile.write(page or b"")


def redirect_to_itself(handler):
    handler.send_response(302)
    handler.send_header("Location", handler.path)
    handler.send_header("Content-Length", "0")
    handler.end_headers()


def never_ends(handler):
    handler.send_response(200)
    handler.end_headers()
    with contextlib.suppress(OSError):
        for _ in range(300):
            handler.wfile.write(b"<title>s")
            time.sleep(0.1)


def fifty_megabytes(handler):
    handler.send_response(200)
    handler.end_headers()
    with contextlib.suppress(OSError):
        handler.wfile.write(b"<title>The start of much</title>")
        for _ in range(500):
            handler.wfile.write(b" " * 100_000)


def closes(handler):
    handler.close_connection = True


class LinkPreviewsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop()
        cls.addClassCleanup(cls.desktop.__exit__)
        cls.network = cls.desktop.folder / "network"
        cls.network.write_text("70 4")
        manager = cls.desktop.start("/usr/bin/python3", str(HERE / "fake_network_manager.py"),
                                    str(cls.network), stdout=subprocess.PIPE)
        cls.addClassCleanup(manager.stdout.close)
        manager.stdout.readline()
        cls.server = Server()
        cls.addClassCleanup(cls.server.end)
        cls.quillo = Quillo(cls.desktop, os.environ["QUILLO_PROGRAM"])
        cls.quillo.forget()
        cls.start()

    @classmethod
    def start(cls):
        cls.quillo.start(env={"DBUS_SYSTEM_BUS_ADDRESS": os.environ["DBUS_SESSION_BUS_ADDRESS"],
                              "http_proxy": "", "https_proxy": ""})

    def tearDown(self):
        self.configure({})
        self.network.write_text("70 4")

    def configure(self, settings):
        path = self.quillo.config
        path.parent.mkdir(parents=True, exist_ok=True)
        new = path.with_suffix(".new")
        new.write_text(json.dumps(settings))
        os.replace(new, path)
        # It is looked at within a quarter of a second.
        time.sleep(0.6)

    def store(self, address):
        """Copies a link; returns when it is stored, with the place in the log before that."""
        mark = self.quillo.mark()
        self.desktop.copy(address)
        self.quillo.wait_for_text(address)
        return mark

    def preview(self, address, deadline=15):
        """Title and picture of a link that is copied."""
        mark = self.store(address)
        log = self.quillo.wait_for_log(RESULT, mark, deadline)
        line = next(x for x in log.splitlines() if RESULT in x)
        self.assertNotIn("127.0.0.1", line)
        if "title: nil, hasImage: false" not in line:
            wait_for(lambda: self.row(address)["linkTitle"] or self.row(address)["linkImageData"],
                     "the preview in the store")
        row = self.row(address)
        return row["linkTitle"], row["linkImageData"]

    def row(self, address):
        return next(r for r in self.quillo.rows(
            "SELECT Clip.*, h.linkImageData FROM Clip LEFT JOIN ClipHeavy h USING (id)")
            if r["urlString"] == address)

    def test_pages_of_all_kinds_give_what_they_have(self):
        largest, larger = os.urandom(LARGEST), os.urandom(LARGEST + 1)
        inside = f"http://127.0.0.2:{self.server.server_port}/largest".encode()
        image = b'<meta property="og:image" content="%s">'
        self.server.pages = {
            "/both": TITLE % b"A title" + image % b"/largest", "/largest": largest,
            "/larger": larger, "/too-large": TITLE % b"Large" + image % b"larger",
            "/no-image": TITLE % b"None" + image % b"missing",
            "/elsewhere": TITLE % b"Inside" + image % inside,
            "/cyrillic": "<meta charset=windows-1251><title>При</title>".encode("cp1251"),
            "/huge": fifty_megabytes, "/loop": redirect_to_itself, "/closes": closes,
            "/empty": b""}
        rows = (("/both", "A title", largest, 2), ("/too-large", "Large", None, 2),
                ("/no-image", "None", None, 2), ("/elsewhere", "Inside", None, 1),
                ("/cyrillic", "При", None, 1), ("/huge", "The start of much", None, 1),
                ("/loop", None, None, 6), ("/empty", None, None, 1), ("/missing", None, None, 1))
        for path, title, picture, requests in rows:
            with self.subTest(path):
                self.server.paths.clear()
                self.assertEqual(self.preview(self.server.address(path)), (title, picture))
                self.assertEqual(len(self.server.paths), requests, self.server.paths)
        self.assertEqual(self.preview(self.server.address("/closes")), (None, None))
        self.server.paths.clear()
        self.desktop.copy(self.server.address("/both"))
        self.quillo.wait_for_log("Duplicate URL clip found", 0)
        self.assertEqual(self.server.paths, [], "a link that only moves to the front")
        log = self.quillo.log()
        for secret in ("A title", "/both", "og:"):
            self.assertNotIn(secret, log)

    def test_a_page_without_end_is_given_up_and_holds_up_nothing(self):
        self.server.pages = {"/slow": never_ends, "/quick": b"<title>Quick</title>"}
        mark = self.store(self.server.address("/slow"))
        self.assertEqual(self.preview(self.server.address("/quick"))[0], "Quick")
        begin = time.monotonic()
        self.quillo.wait_for_log("title: nil", mark, 15)
        self.assertLess(time.monotonic() - begin, 12)

    def test_a_server_whose_certificate_is_not_in_order_is_told_nothing(self):
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(TLS / "page.pem", TLS / "page.key")
        server = Server(context)
        self.addCleanup(server.end)
        server.pages = {"/": b"<title>Trust me</title>"}
        self.assertEqual(self.preview(server.address("/", scheme="https")), (None, None))
        self.assertEqual((server.accepted, server.paths), (1, []))

    def test_without_the_setting_or_a_network_nobody_is_asked(self):
        self.server.pages = {f"/{n}": b"<title>T</title>" for n in range(8)}
        before = self.server.accepted
        self.configure({"fetchLinkPreviews": False})
        for number in range(3):
            self.store(self.server.address(f"/{number}"))
        self.configure({"fetchLinkPreviews": True})
        # What would have been asked for before comes before this.
        self.assertEqual(self.preview(self.server.address("/4"))[0], "T")
        self.assertEqual(self.server.accepted - before, 1)
        # Behind a log-in page.
        self.network.write_text("70 2")
        mark = self.store(self.server.address("/5"))
        self.quillo.wait_for_log("No network connection, skipping link preview fetch", mark)
        self.network.write_text("70 4")
        self.configure({"fetchLinkPreviews": "no"})
        self.assertEqual(self.preview(self.server.address("/6"))[0], "T")
        self.assertEqual(self.server.accepted - before, 2)

    def test_quitting_does_not_wait_for_a_page(self):
        self.addCleanup(self.start)
        self.server.pages = {"/hanging": never_ends}
        self.store(self.server.address("/hanging"))
        wait_for(lambda: "/hanging" in self.server.paths, "the request")
        begin = time.monotonic()
        self.assertEqual(self.quillo.stop(), 0)
        self.assertLess(time.monotonic() - begin, 3)


if __name__ == "__main__":
    unittest.main(verbosity=2)
