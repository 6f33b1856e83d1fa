# SPDX-License-Identifier: MIT
"""The plug-ins are to be there, or to be looked at."""
import hashlib
import os
import shutil
import tempfile

from archives import archives_needed, bring
from basics import read_text, write_whole
from looks import Look, Scratch, describe, differing, is_to_do, sentence, stops
from programs import ask, run_installer
from settings import settings_for

START_UP_FILES = {"userSetup.py", "houdini.env"}


def result(look, changed, trouble, hosts):
    return {
        "changed": changed, "failed": bool(trouble), "message": "\n".join(trouble),
        "mode": look.mode, "files": look.files(), "last_run": look.report.get("run"),
        "hosts": [{name: host[name] for name in ("key", "path", "target", "state", "installed",
                                                 "wanted", "problems")} for host in hosts],
    }


def look_only(target, needed):
    """Check mode, and the state verified."""
    scratch = Scratch(target, needed)
    programs = scratch.programs
    try:
        look = Look(target, lambda command, *options:
                    ask(programs, command, target.folder) if command == "report"
                    else scratch.ask(target, command, *options))
        same = os.path.exists(os.path.join(target.folder, "settings.ini")) and \
            read_text(os.path.join(scratch.home, "settings.ini")) == \
            read_text(os.path.join(target.folder, "settings.ini"))
    finally:
        scratch.close()
    changed = bool(needed) or not same or is_to_do(look.plan) or look.mode != "none"
    if target.request["state"] == "verified":
        broken = [host for host in look.verify["hosts"] if host["state"] in ("damaged", "unknown")]
        return result(look, changed, [describe(host) for host in broken], look.verify["hosts"])
    trouble = [sentence(each) for each in stops(look.doctor)]
    trouble += [describe(host) for host in look.plan["hosts"]
                if host["state"] in ("fails", "skipped", "unknown")]
    if not trouble and look.plan["result"] in ("problems", "unknown"):
        trouble = [sentence(each) for each in look.plan["problems"]]
    return result(look, changed, trouble, look.plan["hosts"])


def keep_aside(target, plan):
    """Copies start-up scripts that the run will change, beside the last few."""
    for change in [each for host in plan["hosts"] for each in differing(host)]:
        path, count = change["path"], target.request["keep_aside"]
        if change["action"] != "replace" or os.path.basename(path) not in START_UP_FILES or not count:
            continue
        folder = os.path.join(target.area, "aside", hashlib.sha256(path.encode()).hexdigest()[:12])
        os.makedirs(folder, exist_ok=True)
        kept = sorted(os.listdir(folder))
        number = int(kept[-1].split("-")[0]) + 1 if kept else 1
        shutil.copy2(path, os.path.join(folder, "%06d-%s" % (number, os.path.basename(path))))
        for name in kept[:max(len(kept) + 1 - count, 0)]:
            os.remove(os.path.join(folder, name))


def remove_left_overs(verify):
    """No run takes these away; they are no plug-in's."""
    for problem in [each for host in verify["hosts"] for each in host["problems"]]:
        if problem["kind"] == "leftOver" and os.path.basename(problem["path"]).startswith("qt_temp."):
            os.remove(problem["path"])


def judge_run(target, code):
    """What keeps a run from being called good: nothing, or lines for the administrator."""
    report = ask(target.folder, "report", target.folder)
    verify = ask(target.folder, "verify", target.folder)
    incomplete = [host for host in verify["hosts"] if host["state"] != "whole"]
    incomplete += [host for host in report["hosts"] if host["state"] in ("failed", "interrupted")
                   and host["target"] not in {each["target"] for each in incomplete}]
    trouble = []
    if code:
        trouble.append("drask-installer was ended by signal %d." % -code if code < 0
                       else "drask-installer ended with %d." % code)
        trouble.append(read_text(os.path.join(target.folder, "pluginError.txt")).rstrip("\n"))
    elif code == 0 and report["result"] != "nothing" and not incomplete:
        trouble += ["The run did not end well."] + [sentence(each) for each in report["problems"]]
    if incomplete:
        trouble += ["Incomplete:"] + [describe(host) for host in incomplete]
    elif verify["result"] != "nothing":
        trouble += [sentence(each) for each in verify["problems"]]
    return [line for line in trouble if line], verify["hosts"]


def present(target):
    needed = archives_needed(target)
    if needed and not target.request.get("incoming"):
        return {"need": needed, "incoming": incoming_folder(target)}
    if target.check:
        return look_only(target, needed)
    for kind in needed:
        bring(target, kind)
    settings = settings_for(target, os.path.join(target.folder, "plugins"))
    path = os.path.join(target.folder, "settings.ini")
    same = os.path.exists(path) and read_text(path).encode("utf-8", "surrogateescape") == settings
    if not same:
        write_whole(path, settings)
    look = Look(target, lambda command, *options:
                ask(target.folder, command, target.folder, *options))
    changed = bool(needed) or not same or look.mode != "none"
    trouble = [sentence(each) for each in stops(look.doctor)]
    if trouble:
        return result(look, bool(needed) or not same, trouble, look.verify["hosts"])
    code = None
    if look.mode != "none":
        keep_aside(target, look.plan)
        remove_left_overs(look.verify)
        code = run_installer(target, *([] if look.mode == "install" else [look.mode]))
    trouble, hosts = judge_run(target, code)
    return result(look, changed, trouble, hosts)


def incoming_folder(target):
    """Where the controller is to put the archives."""
    if target.check:
        return tempfile.mkdtemp(prefix="drask-incoming-")
    folder = os.path.join(target.area, "incoming")
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    return folder


def verified(target):
    return look_only(target, [])
