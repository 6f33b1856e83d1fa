# SPDX-License-Identifier: MIT
"""What the programs say, and what follows from it."""
import json
import os
import shutil
import tempfile

from archives import unpack_archive
from basics import Trouble, read_text, write_whole
from programs import ask
from settings import settings_for

# What a run would do harm with, or in vain: nothing is touched then.
STOPS = {
    "atValue", "diskFull", "notUtf8", "pluginMissing", "settingsMissing", "settingsUnreadable",
    "sharedFolder", "shippedReadOnly", "shippedUnreadable", "sizeMissing", "sizeWrong",
    "templateMissing", "unknownHost", "unquotedList",
}
# What any run mends, also one that copies nothing.
MENDED_BY_ANY_RUN = {"configDiffers", "configMissing"}
TO_DO = {"install", "update", "copyAgain", "configuration"}


class Scratch:
    """The manager's folder as it would be: a look goes there when the real one is not to change."""

    def __init__(self, target, needed):
        self.home = os.path.realpath(tempfile.mkdtemp(prefix="drask-look-"))
        self.programs = target.folder
        try:
            self.fill(target, needed)
        except BaseException:
            self.close()
            raise

    def fill(self, target, needed):
        real = target.folder
        plugins = os.path.join(self.home, "plugins")
        if "plugins" in needed:
            os.rename(unpack_archive(target, "plugins", os.path.join(self.home, "new")), plugins)
        else:
            os.symlink(os.path.join(real, "plugins"), plugins)
        if "program" in needed:
            self.programs = unpack_archive(target, "program", os.path.join(self.home, "program"))
        for name in ("version.txt", "cputype"):
            if os.path.isfile(os.path.join(real, name)):
                shutil.copy2(os.path.join(real, name), self.home)
        write_whole(os.path.join(self.home, "settings.ini"), settings_for(target, plugins))

    def ask(self, target, command, *options):
        """The answer, as if the scratch folder lay where the real one does."""
        answer = ask(self.programs, command, self.home, *options)
        for host in answer["hosts"]:
            forget_config_of_scratch(target, host, answer["installer"])
        return json.loads(json.dumps(answer).replace(json.dumps(self.home)[1:-1],
                                                     json.dumps(target.folder)[1:-1]))

    def close(self):
        shutil.rmtree(self.home, ignore_errors=True)


def forget_config_of_scratch(target, host, installer):
    """manager.cfg names the manager's folder. If that is all that differs, nothing does."""
    request = target.request
    try:
        text = read_text(os.path.join(host["target"], "manager.cfg"))
    except OSError:
        return
    lines = (text.replace("\r", "").split("\n") + [""] * 7)[:7]
    if lines != [request["username"], request["projects_folder"], target.folder + "/DraskDrop",
                 installer, lines[4], "1", "1" if request["copy_textures"] else "0"]:
        return
    for change in host["changes"]:
        change["differs"] &= os.path.basename(change["path"]) != "manager.cfg"
    host["problems"] = [each for each in host["problems"] if each["kind"] != "configDiffers"]
    if not host["problems"] and not differing(host):
        host["state"] = {"damaged": "whole", "configuration": "upToDate"}.get(host["state"],
                                                                             host["state"])


def sentence(problem):
    return "%s: %s" % (problem["text"].rstrip("."), problem["path"])


def describe(host):
    lines = ["  " + sentence(problem) for problem in host["problems"][:5]]
    if len(host["problems"]) > 5:
        lines.append("  and %d more" % (len(host["problems"]) - 5))
    return "\n".join(["%s %s: %s" % (host["key"], host["target"], host["state"])] + lines)


def differing(host):
    return [change for change in host["changes"] if change["differs"]]


def is_to_do(answer):
    return bool(differing(answer)) or any(host["state"] in TO_DO or differing(host)
                                          for host in answer["hosts"])


def stops(doctor):
    """What the doctor finds that a run must not meet."""
    found = [each for each in doctor["problems"] if each["kind"] in STOPS | {"folderNotWritable"}]
    for host in doctor["hosts"]:
        found += [each for each in host["problems"] if each["kind"] in STOPS]
    return found


def choose_mode(plan, verify, report):
    """The word for the installer; none if there is nothing to do."""
    copied = {host["target"] for host in plan["hosts"] if host["state"] in TO_DO - {"configuration"}}
    damage = any(problem["kind"] not in MENDED_BY_ANY_RUN
                 for host in verify["hosts"] if host["state"] == "damaged"
                 and host["target"] not in copied
                 for problem in host["problems"])
    if damage or report["result"] in ("changes", "problems"):
        return "reinstall"
    return "install" if is_to_do(plan) or plan["result"] == "problems" else "none"


def hold_hosts(request, verify):
    """The programs read out of settings.ini what was put there, or all else is about other hosts."""
    read = {(host["key"], host["path"]) for host in verify["hosts"]}
    asked = {(host["application"], host["path"]) for host in request["hosts"]}
    if read != asked:
        raise Trouble("settings.ini is not read as it was written: %s"
                      % ", ".join(sorted("(%s) %s" % each for each in read ^ asked)))


class Look:
    """All that the programs can say before a run."""

    def __init__(self, target, inquire):
        self.doctor = inquire("doctor")
        self.verify = inquire("verify")
        hold_hosts(target.request, self.verify)
        self.report = inquire("report")
        self.plan = inquire("plan")
        self.mode = choose_mode(self.plan, self.verify, self.report)
        if self.mode == "reinstall":
            self.plan = inquire("plan", "--mode", "reinstall")

    def files(self):
        changes = differing(self.plan)
        for host in self.plan["hosts"]:
            changes += differing(host)
        return ["%s %s" % (change["action"], change["path"]) for change in changes]
