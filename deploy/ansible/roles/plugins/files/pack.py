# SPDX-License-Identifier: MIT
"""Says which archives the controller has for the targets.

    pack.py PROGRAM PLUGINS    (the archive of the programs; a folder or an archive of the plug-ins)

Prints a JSON object: for "program" and "plugins" the "path" of an archive and its "sha256", or
"error" with what is wrong. A folder is packed into the user's cache, and again only when a file in
it has changed. The same files give the same bytes.
"""
import fcntl
import gzip
import hashlib
import json
import os
import sys
import tarfile


def checksum(path):
    digest = hashlib.sha256()
    with open(path, "rb") as file:
        for block in iter(lambda: file.read(1 << 20), b""):
            digest.update(block)
    return digest.hexdigest()


def visible(folder):
    """Every file and folder below it, sorted, but the hidden ones, which no install copies."""
    for parent, folders, files in os.walk(folder):
        folders[:] = sorted(name for name in folders if not name.startswith("."))
        for name in sorted(folders + [each for each in files if not each.startswith(".")]):
            yield os.path.join(parent, name)


def signature(folder):
    digest = hashlib.sha256()
    for path in visible(folder):
        about = os.lstat(path)
        digest.update(repr((path, about.st_size, about.st_mode, about.st_mtime_ns,
                            about.st_ctime_ns)).encode())
    return digest.hexdigest()


def nobody(member):
    member.uid = member.gid = member.mtime = 0
    member.uname = member.gname = ""
    return member


def pack(folder, archive):
    unfinished = archive + ".unfinished"
    with open(unfinished, "wb") as raw, \
            gzip.GzipFile(filename="", mode="wb", compresslevel=6, fileobj=raw, mtime=0) as packed, \
            tarfile.open(fileobj=packed, mode="w", format=tarfile.PAX_FORMAT) as tar:
        for path in visible(folder):
            tar.add(path, os.path.relpath(path, folder), recursive=False, filter=nobody)
    os.replace(unfinished, archive)


def packed(folder):
    """The archive of a folder, from the cache if nothing has changed."""
    cache = os.path.join(os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache"),
                         "drask-fleet")
    os.makedirs(cache, exist_ok=True)
    archive = os.path.join(cache, hashlib.sha256(os.path.realpath(folder).encode())
                           .hexdigest()[:16] + ".tar.gz")
    with open(archive + ".lock", "w", encoding="utf-8") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        current = signature(folder)
        try:
            with open(archive + ".json", encoding="utf-8") as file:
                known = json.load(file)
        except (OSError, ValueError):
            known = {}
        if known.get("signature") != current or not os.path.exists(archive):
            pack(folder, archive)
            known = {"signature": current, "sha256": checksum(archive)}
            with open(archive + ".json", "w", encoding="utf-8") as file:
                json.dump(known, file)
    return {"path": archive, "sha256": known["sha256"]}


def offer(path):
    path = os.path.abspath(os.path.expanduser(path))
    return packed(path) if os.path.isdir(path) else {"path": path, "sha256": checksum(path)}


def main():
    try:
        program, plugins = sys.argv[1:]
        if not program or not plugins:
            raise OSError("drask_program and drask_plugins are needed for the state present.")
        answer = {"program": offer(program), "plugins": offer(plugins)}
    except (OSError, tarfile.TarError) as error:
        answer = {"error": str(error)}
    print(json.dumps(answer))


main()
