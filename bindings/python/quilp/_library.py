"""The functions of quilp.h that the binding calls."""

from ctypes import CDLL, CFUNCTYPE, c_char_p, c_int, c_long, c_void_p
from typing import Any

OBSERVER = CFUNCTYPE(None, c_void_p, c_int, c_char_p, c_long)

_shared = CDLL("libquilp.so.1")


def _function(name: str, result: Any, *arguments: Any) -> Any:
    function = getattr(_shared, name)
    function.restype = result
    function.argtypes = arguments
    return function


quilp_version = _function("quilp_version", c_char_p)
quilp_request_new = _function("quilp_request_new", c_void_p, c_int)
quilp_request_set_text = _function("quilp_request_set_text", c_int, c_void_p, c_int, c_char_p)
quilp_request_set_number = _function("quilp_request_set_number", c_int, c_void_p, c_int, c_long)
quilp_request_set_observer = _function("quilp_request_set_observer", c_int, c_void_p, OBSERVER,
                                       c_void_p)
quilp_request_cancel = _function("quilp_request_cancel", None, c_void_p)
quilp_request_free = _function("quilp_request_free", None, c_void_p)
quilp_run = _function("quilp_run", c_void_p, c_void_p)
quilp_read_name = _function("quilp_read_name", c_void_p, c_char_p, c_int)
quilp_answer_reason = _function("quilp_answer_reason", c_int, c_void_p)
quilp_answer_number = _function("quilp_answer_number", c_long, c_void_p)
quilp_answer_json = _function("quilp_answer_json", c_char_p, c_void_p)
quilp_answer_free = _function("quilp_answer_free", None, c_void_p)
