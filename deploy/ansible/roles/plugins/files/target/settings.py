# SPDX-License-Identifier: MIT
"""settings.ini, by the rules of docs/formats.md."""
import os

from basics import Trouble, read_text


def quoted(text):
    """A text as QSettings reads it back; it takes a single @ in front for a value of a type."""
    text = "@" + text if text.startswith("@") else text
    return '"%s"' % text.replace("\\", "\\\\").replace('"', '\\"')


def version_of(plugins, folder):
    path = os.path.join(plugins, folder, "version.txt")
    first = read_text(path).split("\n")[0].rstrip("\r")
    if not (first.isascii() if hasattr(first, "isascii") else True) or not first.isdigit():
        raise Trouble("The plug-in has no version.txt with a number: %s" % path)
    return first


def wanted_settings(request, plugins):
    versions = {}
    paths = {}
    for number, host in enumerate(request["hosts"], 1):
        folder, version = request["shipped"][host["application"]]
        versions[version] = version_of(plugins, folder)
        paths["%d\\application" % number] = host["application"]
        paths["%d\\path" % number] = quoted(host["path"])
    paths["size"] = str(len(request["hosts"]))
    return {
        "UserData": {"username": quoted(request["username"])},
        "PathOptions": {"localProjectsFolder": quoted(request["projects_folder"])},
        "Settings": {"copyTexFiles": "true" if request["copy_textures"] else "false"},
        "plugins": versions,
        "pluginpaths": paths,
    }


def merged_settings(old, wanted, version_keys):
    """The wanted settings, and of the old ones what the role knows nothing of."""
    sections = {None: []}
    name = None
    for line in old.splitlines():
        words = line.strip()
        key = words.split("=")[0].strip()
        if words.startswith("[") and words.endswith("]"):
            name = words[1:-1].strip()
            sections.setdefault(name, [])
        elif words and name != "pluginpaths" and key not in wanted.get(name, {}) \
                and not (name == "plugins" and key in version_keys):
            sections[name].append(line)
    for name in wanted:
        sections.setdefault(name, [])
    lines = sections.pop(None)
    for name, foreign in sections.items():
        own = ["%s=%s" % entry for entry in wanted.get(name, {}).items()]
        lines += ["[%s]" % name] + own + foreign + [""]
    return "\n".join(lines)


def settings_for(target, plugins):
    request = target.request
    text = merged_settings(read_text(os.path.join(target.folder, "settings.ini")),
                           wanted_settings(request, plugins),
                           {version for _, version in request["shipped"].values()})
    return text.encode("utf-8", "surrogateescape")
