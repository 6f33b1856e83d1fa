# SPDX-License-Identifier: MIT
"""What the role does on a target, in one go.

    python3 - REQUEST    (the role sends these files through the standard input, as one)

REQUEST is a JSON object in base64: the role's variables without their prefix, "check", the table of
hosts as "shipped", the controller's "archives" with their checksums and, once they have been brought, the
folder "incoming" that holds them. Prints one JSON object: "need" names the archives that are to be
brought to "incoming" first; otherwise "changed", "failed", "message", "mode" and "hosts" say what
was done, or would be.
"""
import base64
import json
import os
import pwd
import shutil
import sys
import tarfile

from absent import absent
from basics import Target, Trouble
from present import present, verified
from programs import locked


def refuse_nonsense(request):
    if os.geteuid() == 0:
        raise Trouble("The role never works as root: drask_user must be the artist's account.")
    if pwd.getpwuid(os.geteuid()).pw_name != request["user"]:
        raise Trouble("This is %s, not %s; become_user does not work here."
                      % (pwd.getpwuid(os.geteuid()).pw_name, request["user"]))
    if "error" in request["archives"]:
        raise Trouble(request["archives"]["error"])
    if not isinstance(request["hosts"], list):
        raise Trouble("drask_hosts is no list.")
    for host in request["hosts"]:
        host["path"] = host["path"].rstrip("/")
    paths = [request["folder"]] + [host["path"] for host in request["hosts"]]
    for text in paths + [request["username"], request["projects_folder"]]:
        if any(ord(each) < 32 or ord(each) == 127 or 0xD800 <= ord(each) < 0xE000 for each in text):
            raise Trouble("A text has a line break or another control character: %r" % text)
    for path in paths:
        if not path.startswith("/"):
            raise Trouble("This folder does not begin with a slash: %r" % path)


def has_programs(target):
    return os.path.isfile(os.path.join(target.folder, "drask-status"))


def nothing_there(request):
    is_lacking = request["state"] == "verified"
    return {"changed": is_lacking, "failed": False, "mode": "install" if is_lacking else "none",
            "message": "Nothing was rolled out here.", "files": [], "hosts": [], "last_run": None}


def main():
    request = json.loads(base64.b64decode(sys.argv[1]).decode("utf-8"))
    try:
        refuse_nonsense(request)
        target = Target(request)
        if request["state"] != "present" and not has_programs(target):
            answer = nothing_there(request)
        else:
            with locked(target):
                answer = {"present": present, "absent": absent, "verified": verified}[
                    request["state"]](target)
    except (Trouble, OSError, tarfile.TarError) as error:
        answer = {"changed": False, "failed": True, "message": str(error), "mode": "none",
                  "files": [], "hosts": []}
    if request.get("incoming"):
        shutil.rmtree(request["incoming"], ignore_errors=True)
    print(json.dumps(answer))


main()
