# SPDX-License-Identifier: MIT
"""The plug-ins are to be gone."""
import contextlib
import os
import shutil

from basics import read_text
from looks import Scratch, sentence
from programs import run_installer

# Without a complete manifest an uninstall would leave files, or delete other people's.
BLOCKS_REMOVAL = {
    "fileNotListed", "manifestIncomplete", "manifestMissing", "manifestUnreadable", "outsideFolder",
    "unknownHost",
}


def listed(manifest):
    """What an uninstall would delete."""
    paths = [line.rstrip("\r") for line in read_text(manifest).split("\n") if line]
    return [path for path in paths + [manifest] if os.path.lexists(path)]


def undeletable(manifest):
    """The listed files that an uninstall could not delete."""
    return [path for path in listed(manifest)
            if os.path.isdir(path) and not os.path.islink(path)
            or not os.access(os.path.dirname(path), os.W_OK | os.X_OK)]


def obstacles(host):
    found = [sentence(each) for each in host["problems"] if each["kind"] in BLOCKS_REMOVAL]
    if ")" in host["path"]:
        found.append("uninstallPlugin would cut the folder at its bracket: " + host["path"])
    return found + ["This file cannot be deleted: " + path
                    for path in undeletable(os.path.join(host["target"], "uninstall.ini"))]


def shipped_names(target, key):
    top = os.path.join(target.folder, "plugins", target.request["shipped"][key][0])
    return {os.path.relpath(os.path.join(parent, file), top)
            for parent, _, files in os.walk(top) for file in files}


def left_behind(target, host):
    """What is still there after an uninstall, and whether that is the plug-in's own."""
    shipped = shipped_names(target, host["key"])
    left = []
    for parent, folders, files in os.walk(host["target"]):
        folders[:] = folders if host["target"] != host["path"] or parent != host["target"] else \
            [name for name in folders if any(each.startswith(name + "/") for each in shipped)]
        left += [os.path.join(parent, file) for file in files]
    own = [path for path in left if os.path.relpath(path, host["target"]) in shipped
           and "drask_uninstall" not in path]
    if host["target"] == host["path"]:
        left = own
    scripts = {"maya": os.path.join(os.path.dirname(host["target"]), "userSetup.py"),
               "houdini": os.path.join(host["path"], "houdini.env")}
    script = scripts.get(host["key"])
    if script and "#drask_installed" in read_text(script):
        left.append(script)
    return left, own


def uninstall(target, installed):
    """Removes host by host; returns what went wrong."""
    trouble = []
    for operand in dict.fromkeys("(%s) %s" % (host["key"], host["path"]) for host in installed):
        if run_installer(target, "uninstallPlugin", operand):
            trouble.append("uninstallPlugin left files behind: %s" % operand)
    return trouble


def purge(target):
    """Takes away what the role and the installer put into the manager's folder."""
    names = {"settings.ini", "plugin.log", "pluginError.txt", "version.txt", ".drask-fleet",
             "plugins"}
    for brought in target.stamp().values():
        names.update(brought["names"])
    for name in sorted(names):
        path = os.path.join(target.folder, name)
        if os.path.isdir(path) and not os.path.islink(path):
            shutil.rmtree(path)
        elif os.path.lexists(path):
            os.remove(path)
    with contextlib.suppress(OSError):
        os.rmdir(target.folder)
    return [os.path.join(target.folder, name) for name in os.listdir(target.folder)] \
        if os.path.isdir(target.folder) else []


def absent(target):
    answer = {"changed": False, "failed": False, "message": "", "mode": "none", "files": [],
              "hosts": [], "left": []}
    scratch = Scratch(target, [])
    try:
        hosts = scratch.ask(target, "verify")["hosts"]
    finally:
        scratch.close()
    there = [host for host in hosts if host["state"] not in ("notInstalled", "skipped")]
    blocked = {host["path"]: obstacles(host) for host in there if obstacles(host)}
    free = [host for host in there if host["path"] not in blocked]
    trouble = [line for lines in blocked.values() for line in lines]
    for host in free:
        answer["files"] += ["remove " + path for path in
                            dict.fromkeys(listed(os.path.join(host["target"], "uninstall.ini")))]
    answer["changed"] = bool(free)
    if not target.check:
        trouble += uninstall(target, free)
        for host in hosts:
            left, own = left_behind(target, host)
            answer["left"] += left
            trouble += ["This file of the plug-in is still there: " + path for path in own
                        if host["path"] not in blocked]
    if target.request["purge"] and not trouble:
        answer["changed"] = True
        if not target.check:
            answer["left"] += purge(target)
    answer["hosts"] = [{name: host[name] for name in ("key", "path", "target", "state")}
                       for host in there]
    answer["failed"], answer["message"] = bool(trouble), "\n".join(trouble)
    return answer
