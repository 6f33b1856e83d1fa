# SPDX-License-Identifier: MIT
"""Writes what the targets told into a folder of the controller.

    report.py FOLDER    (made if it is not there)

Reads from the standard input, in base64, a JSON list of objects: a "target", the manager's "folder"
there and what it "told", the JSON text of its answer, which is empty for one that was not reached.
Writes TARGET.json for each that told something, and table.md with a line for each host of all.
"""
import base64
import json
import os
import sys


def row(*cells):
    return "| %s |\n" % " | ".join(str("-" if cell is None else cell).replace("|", "\\|")
                                   .replace("\n", " ") for cell in cells)


def rows(target, answer):
    if answer is None:
        return row(target, "", "not reached", "", "", "")
    if not answer.get("hosts"):
        return row(target, "", answer.get("message") or "no hosts", "", "", "")
    return "".join(row(target, *[host.get(name) for name in ("key", "state", "installed", "wanted",
                                                             "target")])
                   for host in answer["hosts"])


def main():
    folder = sys.argv[1]
    os.makedirs(folder, exist_ok=True)
    table = row("Target", "Host", "State", "There", "Wanted", "Folder") + "|---|---|---|---:|---:|---|\n"
    for each in json.loads(base64.b64decode(sys.stdin.read()).decode("utf-8")):
        answer = json.loads(each["told"]) if each["told"] else None
        table += rows(each["target"], answer)
        if answer is not None:
            with open(os.path.join(folder, each["target"] + ".json"), "w", encoding="utf-8",
                      errors="surrogateescape") as file:
                json.dump(dict(answer, target=each["target"], folder=each["folder"]), file,
                          ensure_ascii=False, indent=4, sort_keys=True)
    with open(os.path.join(folder, "table.md"), "w", encoding="utf-8",
              errors="surrogateescape") as file:
        file.write(table)


main()
