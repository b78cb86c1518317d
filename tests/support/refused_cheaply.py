"""Has the program refuse a file that is made to harm, and sees what that costs."""
import os
import pathlib
import subprocess
import tempfile
import time

REFUSED = 2


def is_sanitized(program):
    """The address sanitizer keeps what was freed, puts guards around all of it, and takes its time."""
    return b"__asan_init" in pathlib.Path(program).read_bytes()


def refused_cheaply(test, program, file, fault="", seconds=20):
    """`show` refuses the file with the fault, in little memory. A second of a quick machine's; others share this one."""
    began = time.monotonic()
    with tempfile.TemporaryFile("w+") as said:
        child = subprocess.Popen([program, "show", file], stdout=subprocess.DEVNULL, stderr=said)
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        said.seek(0)
        test.assertEqual(child.returncode, REFUSED, file)
        test.assertIn(fault, said.read())
    test.assertLess(usage.ru_maxrss >> 10, 800 if is_sanitized(program) else 200, "megabytes")
    test.assertLess(time.monotonic() - began, seconds, file)
