# SPDX-License-Identifier: MIT
"""What all parts share."""
import json
import os


class Trouble(Exception):
    """Ends the work; its text is for the administrator."""


class Target:
    """The manager's folder on this machine, and what is asked of it."""

    def __init__(self, request):
        self.request = request
        self.check = request["check"] or request["state"] == "verified"
        self.folder = os.path.realpath(request["folder"])
        self.area = os.path.join(self.folder, ".drask-fleet")
        self.stamp_file = os.path.join(self.area, "brought.json")
        self.lock = None

    def stamp(self):
        try:
            with open(self.stamp_file, encoding="utf-8") as file:
                return json.load(file)
        except (OSError, ValueError):
            return {}


def write_whole(path, content):
    """The old content or the new one, whatever happens."""
    with open(path + ".new", "wb") as file:
        file.write(content)
        file.flush()
        os.fsync(file.fileno())
    os.replace(path + ".new", path)


def read_text(path):
    try:
        with open(path, encoding="utf-8", errors="surrogateescape", newline="") as file:
            return file.read()
    except FileNotFoundError:
        return ""
