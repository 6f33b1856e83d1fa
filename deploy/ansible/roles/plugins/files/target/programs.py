# SPDX-License-Identifier: MIT
"""Starts the two programs, one run at a time."""
import contextlib
import fcntl
import json
import os
import subprocess
import time

from basics import Trouble

PATIENCE = 60  # seconds that a run waits for another one on the same target


def environment():
    # Qt takes the names of files and the operands to be in the encoding of the locale.
    words = {name: value for name, value in os.environ.items()
             if not name.startswith(("QT_", "LC_")) and name != "LANG"}
    return dict(words, LC_ALL="C.UTF-8")


def ask(programs, command, home, *options):
    words = [os.path.join(programs, "drask-status"), command, "--folder", home, "--json", *options]
    try:
        done = subprocess.run(words, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, env=environment(), check=False)
        return json.loads(done.stdout.decode("utf-8"))
    except (OSError, ValueError) as error:
        raise Trouble("drask-status %s gave no answer: %s" % (command, error)) from error


def run_installer(target, *words):
    """Returns the exit code. The lock is handed on: if only this script is killed, it still holds."""
    words = [os.path.join(target.folder, "drask-installer"), *words]
    return subprocess.run(words, cwd=target.folder, env=environment(), stdin=subprocess.DEVNULL,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                          pass_fds=[target.lock], check=False).returncode


@contextlib.contextmanager
def locked(target):
    """One run at a time. A look makes no lock, and waits for the run that has one."""
    path = os.path.join(target.area, "lock")
    if target.check and not os.path.exists(path):
        yield
        return
    if not target.check:
        os.makedirs(target.area, exist_ok=True)
    target.lock = os.open(path, os.O_RDONLY if target.check else os.O_RDWR | os.O_CREAT, 0o600)
    end = time.monotonic() + PATIENCE
    while True:
        try:
            fcntl.flock(target.lock, fcntl.LOCK_NB | (fcntl.LOCK_SH if target.check
                                                      else fcntl.LOCK_EX))
            break
        except BlockingIOError:
            if time.monotonic() > end:
                raise Trouble("Another run is at work in %s." % target.folder) from None
            time.sleep(0.2)
    try:
        yield
    finally:
        os.close(target.lock)
