# SPDX-License-Identifier: MIT
"""Brings the programs and the plug-ins."""
import hashlib
import json
import os
import shutil
import tarfile

from basics import Trouble, write_whole


def signature(folder, names):
    """Changes when somebody touches what was brought."""
    digest = hashlib.sha256()
    for name in sorted(names):
        top = os.path.join(folder, name)
        paths = [top]
        for parent, folders, files in os.walk(top):
            folders.sort()
            paths += [os.path.join(parent, file) for file in sorted(files)]
        for path in paths:
            if os.path.isdir(path):
                continue
            about = os.lstat(path) if os.path.lexists(path) else None
            digest.update(repr((path, about and (about.st_size, about.st_mtime_ns))).encode())
    return digest.hexdigest()


def archives_needed(target):
    stamp = target.stamp()
    return [kind for kind, archive in sorted(target.request["archives"].items())
            if stamp.get(kind, {}).get("sha256") != archive["sha256"]
            or stamp[kind]["signature"] != signature(target.folder, stamp[kind]["names"])]


def harmless(member):
    """A file, a folder or a link that stays inside; made writable for its owner."""
    names = member.name.split("/")
    if member.issym():
        names = os.path.normpath(os.path.join(os.path.dirname(member.name),
                                              member.linkname)).split("/")
    if member.name.startswith("/") or ".." in names or member.linkname.startswith("/") \
            or not (member.isfile() or member.isdir() or member.issym()):
        raise Trouble("The archive holds what is neither file nor folder below it: %s"
                      % member.name)
    member.mode = member.mode & 0o755 | (0o700 if member.isdir() else 0o600)
    return member


def unpack(archive, folder, landmark):
    """Returns the folder in which \"landmark\" finds what it looks for: the top, or the one in it."""
    os.makedirs(folder)
    try:
        with tarfile.open(archive) as tar:
            tar.extraction_filter = lambda member, _path: member
            tar.extractall(folder, [harmless(member) for member in tar])
    except (OSError, tarfile.TarError) as error:
        # Not to leave a full disk full.
        shutil.rmtree(folder, ignore_errors=True)
        raise Trouble("The archive %s cannot be unpacked in %s: %s"
                      % (os.path.basename(archive), folder,
                         getattr(error, "strerror", None) or error)) from error
    inner = [os.path.join(folder, name) for name in os.listdir(folder)]
    for top in [folder] + (inner if len(inner) == 1 else []):
        if os.path.isdir(top) and landmark(top):
            return top
    raise Trouble("This is not the archive that it should be: %s" % os.path.basename(archive))


def holds_programs(folder):
    names = set(os.listdir(folder))
    return {"drask-installer", "drask-status"} <= names and not names & {"plugins", "settings.ini"}


def holds_plugins(folder):
    return any(os.path.isfile(os.path.join(folder, name, "version.txt"))
               for name in os.listdir(folder))


def unpack_archive(target, kind, folder):
    return unpack(os.path.join(target.request["incoming"], kind), folder,
                  holds_programs if kind == "program" else holds_plugins)


def bring(target, kind):
    """Unpacks beside what is there, and only then puts the new in the place of the old."""
    new = os.path.join(target.area, "new")
    old = os.path.join(target.area, "old")
    for folder in (new, old):
        shutil.rmtree(folder, ignore_errors=True)
    top = unpack_archive(target, kind, new)
    stamp = target.stamp()
    stamp.pop(kind, None)
    write_whole(target.stamp_file, json.dumps(stamp).encode())
    os.makedirs(old)
    names = os.listdir(top) if kind == "program" else ["plugins"]
    for name in names:
        place = os.path.join(target.folder, name)
        if os.path.lexists(place):
            os.rename(place, os.path.join(old, name))
        os.rename(os.path.join(top, name) if kind == "program" else top, place)
    stamp[kind] = {"sha256": target.request["archives"][kind]["sha256"], "names": names,
                   "signature": signature(target.folder, names)}
    write_whole(target.stamp_file, json.dumps(stamp).encode())
    for folder in (new, old):
        shutil.rmtree(folder, ignore_errors=True)
