"""The library through a foreign-function interface. Usage: foreign.py LIBRARY FOLDER SAMPLES"""
import ctypes
import json
import pathlib
import sys

library = ctypes.CDLL(sys.argv[1])
for name in "wexpol_version", "wexpol_error":
    getattr(library, name).restype = ctypes.c_char_p
library.wexpol_free.argtypes = [ctypes.c_void_p]
library.wexpol_error.argtypes = library.wexpol_close.argtypes = [ctypes.c_void_p]


def ask(operation, *arguments):
    """The code of an operation, and the JSON that it hands out."""
    text = ctypes.c_void_p()
    code = getattr(library, operation)(session, *arguments, ctypes.byref(text))
    value = json.loads(ctypes.string_at(text)) if text else None
    library.wexpol_free(text)
    return code, value


session = ctypes.c_void_p()
assert library.wexpol_redirect_machine(sys.argv[2].encode()) == 0
assert library.wexpol_open(ctypes.byref(session), b"60718", None, 0, 2000) == 0
assert library.wexpol_is_provisioned(session) == 1
assert library.wexpol_begin(session) == 0
for document in sorted(pathlib.Path(sys.argv[3]).glob("*.json")):
    code = library.wexpol_replace_table(session, document.stem.encode(), document.read_bytes())
    assert code == 0, (document, library.wexpol_error(session))
assert library.wexpol_commit(session) == 0
assert ask("wexpol_this_device")[1]["id"] == 70001
code, logins = ask("wexpol_list_table", b"logins", None, ctypes.c_int64(0))
assert code == 0 and [login["id"] for login in logins] == [9001, 9002, 9003]
assert ask("wexpol_decide_program", b"OFFICE\\anna", b"patience.exe", None)[0] == 1
assert ask("wexpol_occurred", ctypes.c_int16(4), None) == (0, [202])
assert library.wexpol_add_to_table(session, b"logins", b"[{}]") != 0
assert json.loads(library.wexpol_error(session))["desc"]
for operation in "wexpol_replace_table", "wexpol_add_to_table":
    for text in None, b"", b"\xff\xfe", b"[" * 100000:
        assert getattr(library, operation)(session, text, text) != 0
library.wexpol_close(session)
print("good", library.wexpol_version().decode())
