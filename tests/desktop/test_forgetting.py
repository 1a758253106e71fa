#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What was never stored, or is forgotten, is found nowhere: each way on the built program."""

import hashlib
import os
import pathlib
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from desktop import HERE, QuilloTest, ReplayOwner, key, noise_png, wait_for  # noqa: E402

PLACES = ("HOME", "XDG_RUNTIME_DIR", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME",
          "XDG_STATE_HOME")
# Written by the display server and by other programs, which may know the clipboard.
OTHERS = (".Xauthority",)


def forms_of(secret):
    """Every way in which a secret could lie in a file: as it is, and as its digest."""
    digest = hashlib.sha256(secret).digest()
    forms = {"bytes": secret, "digest": digest, "digest in hexadecimal": digest.hex().encode()}
    try:
        text = secret.decode()
    except UnicodeDecodeError:
        forms["bytes"] = secret[-600:-100]  # Of a picture a part: its pages are not neighbours.
        return forms
    return {**forms, "UTF-16LE": text.encode("utf-16-le"), "UTF-16BE": text.encode("utf-16-be")}


class ForgettingTest(QuilloTest):
    SETTINGS = '{"maxHistoryItems": 4}'

    def found(self, secret):
        """Where the secret is, in which form; the log counts as a file."""
        roots = {pathlib.Path(os.environ[name]) for name in PLACES} | {self.desktop.folder}
        files = {f for root in roots for f in root.rglob("*")
                 if f.is_file() and f.name not in OTHERS}
        self.assertIn(self.quillo.log_path, files)
        self.assertIn(self.quillo.data / "Quillo.sqlite", files)
        hits = []
        for file in sorted(files):
            contents = file.read_bytes()
            hits += [(file.name, form) for form, b in forms_of(secret).items() if b in contents]
        return hits

    def store_tool(self, *arguments):
        subprocess.run([os.environ["QUILLO_STORE_TOOL"], os.environ["XDG_DATA_HOME"], *arguments],
                       check=True, stderr=subprocess.DEVNULL, timeout=60)

    def plant(self, secret, target=None):
        """Copies the secret; it must be found in the store, with its digest."""
        self.copy(secret, target)
        stored = secret
        if target == "image/png":
            stored = self.quillo.rows("SELECT imageData FROM ClipHeavy ORDER BY rowid DESC")[0][
                "imageData"]
        forms = {form for _, form in self.found(stored)}
        self.assertLessEqual({"bytes", "digest"}, forms, "the search finds what is there")
        return stored

    def assert_forgotten(self, secret, way):
        wait_for(lambda: not self.found(secret), f"{way}: {self.found(secret)} to be forgotten")

    def test_a_search_finds_each_form_wherever_it_lies(self):
        secret = b"planted-for-the-search"
        for place in PLACES:
            for form, contents in forms_of(secret).items():
                file = pathlib.Path(os.environ[place]) / "planted"
                file.write_bytes(b"before" + contents + b"after")
                self.assertIn(("planted", form), self.found(secret), f"{form} in {place}")
                file.unlink()

    def test_what_is_never_stored(self):
        for text in ("password=hunter2-Xq", "918273", "otpauth://totp/Someone?secret=JBSW",
                     "AUTHORIZATION: Bearer abcXYZ", "my Api_Key=k-77-k"):
            mark = self.quillo.mark()
            self.desktop.copy(text)
            self.quillo.wait_for_log("Skipping sensitive content", mark)
        mark = self.quillo.mark()
        owner = ReplayOwner(self.desktop, "--manifest",
                            HERE.parent / "data" / "clipboard" / "keepassxc-password")
        self.quillo.wait_for_log("Skipping sensitive content", mark)
        self.desktop.end(owner.process)
        for secret in ("hunter2-Xq", "918273", "JBSW", "abcXYZ", "k-77-k", "s3cret-ünï"):
            self.assertEqual(self.found(secret.encode()), [], secret)

    def test_no_clip_comes_to_the_log(self):
        document = self.desktop.folder / "Kontoauszug.txt"
        document.write_text("Umsatz")
        ordinary = {("a needle-like text", None): "needle-like",
                    ("https://needle.example.org/haystack", None): "needle.example",
                    ("<p>bold <b>html-needle</b></p>", "text/html"): "html-needle",
                    (r"{\rtf1 rtf-needle}", "text/rtf"): "rtf-needle",
                    (document.as_uri(), "text/uri-list"): "Kontoauszug"}
        for data, target in ordinary:
            self.copy(data, target)
        self.quillo.show_panel()
        key("2")
        self.quillo.wait_until_hidden()
        for needle in ordinary.values():
            self.assertNotIn(needle, self.quillo.log())

    def test_what_is_deleted_by_hand(self):
        secret = self.plant(b"deleted-by-hand-8152")
        self.store_tool("delete", secret.decode())
        self.assert_forgotten(secret, "deleted by hand")

    def test_what_the_limit_pushes_out(self):
        secrets = [self.plant(b"pushed-out-9263"), self.plant(noise_png(60, 40), "image/png")]
        for number in range(4):
            self.copy(f"ordinary {number}")
        for secret in secrets:
            self.assert_forgotten(secret, "pushed out by the limit")

    def test_what_delete_all_wipes_even_where_a_store_was_set_aside(self):
        secrets = [self.plant(b"wiped-7374"), self.plant(noise_png(60, 40), "image/png")]
        aside = self.quillo.data / "set-aside-20250101-000000-000"
        aside.mkdir()
        (aside / "Quillo.sqlite").write_bytes(b"an old store with wiped-7374")
        self.assertIn(("Quillo.sqlite", "bytes"), self.found(secrets[0]))
        self.store_tool("delete-all")
        for secret in secrets:
            self.assert_forgotten(secret, "wiped")
        self.assertFalse(aside.exists())
        self.copy("the program goes on")
        self.assertEqual(len(self.quillo.rows()), 1)


if __name__ == "__main__":
    unittest.main(verbosity=2)
