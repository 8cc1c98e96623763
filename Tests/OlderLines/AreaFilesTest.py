#!/usr/bin/env python3
"""Has the bundle of an older line look at files of administrative areas, as that line's Subversion would.

usage: AreaFilesTest.py BUNDLE
"""

import ctypes
import pathlib
import sys
import tempfile

ITEM = "10\n\n{kind}\n2\n\f\n{name}\n{item}\n" + "\n" * 13 + "{conflict}\n\f\n"
SOUND = {"kind": "dir", "name": "a", "item": "file", "conflict": ""}
XML = '<wc-entries xmlns="svn:"><entry name="" kind="dir"/><entry name="a" {}/></wc-entries>'
ROWS = [("entries", ITEM.format(**SOUND), True),
        *(("entries", ITEM.format(**SOUND | wrong), False) for wrong in (
            {"name": ".."}, {"name": "b/a"}, {"name": r"\x2e\x2e\x2fa"}, {"conflict": "../a"}, {"kind": ""}, {"item": ""})),
        ("entries", XML.format('kind="file"'), True), ("entries", XML.format(""), False),
        ("entries", XML.format('kind="file" prejfile="../a"'), False),
        ("log", '<rm name="a"/>', True), ("log", '<rm name="../a"/>', False), ("log", '<mv name="a" dest="/a"/>', False)]


def main():
    bundle = ctypes.CDLL(pathlib.Path(sys.argv[1]) / "HSVNBundle.so")
    bundle.svn_pool_create_ex.restype = bundle.svn_wc__open_adm_stream.restype = ctypes.c_void_p
    bundle.apr_initialize()
    pool = ctypes.c_void_p(bundle.svn_pool_create_ex(None, None))
    failures = 0
    for name, text, is_sound in ROWS:
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder, ".svn", name)
            file.parent.mkdir()
            file.write_text(text, encoding="utf-8")
            error = bundle.svn_wc__open_adm_stream(ctypes.byref(ctypes.c_void_p()), folder.encode(), name.encode(), pool,
                                                   pool)
        if (error is None) != is_sound:
            print("refused:" if is_sound else "taken:", repr(text))
            failures += 1
    return failures != 0


if __name__ == "__main__":
    sys.exit(main())
