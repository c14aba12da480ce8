"""Runs the dqtool that a test program is given as its first argument."""

import os
import subprocess
import sys

DQTOOL = os.path.realpath(sys.argv[1])


def dqtool(*words, **options):
    """(exit status, standard output, standard error) as bytes, for lines are 8-bit."""
    result = subprocess.run([DQTOOL, *words], stdin=subprocess.DEVNULL, capture_output=True,
                            timeout=60, **options)
    return result.returncode, result.stdout, result.stderr
