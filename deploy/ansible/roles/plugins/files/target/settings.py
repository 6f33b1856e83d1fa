# SPDX-License-Identifier: MIT
"""settings.ini, by the rules of docs/formats.md."""
import os
import re

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


def plain(value):
    """What a value in the file says; None where that takes more than this to understand."""
    value = value.strip()
    if len(value) > 1 and value.startswith('"') and value.endswith('"'):
        value = value[1:-1]
    elif set(value) & set('",;'):
        return None
    text = re.sub(r'\\(["\\])', r"\1", value)
    return text[1:] if text.startswith("@@") else None if text.startswith("@") else text


def parsed(text):
    """The lines of each section; those before the first belong to None."""
    sections = {None: []}
    name = None
    for line in text.splitlines():
        words = line.strip()
        if words.startswith("[") and words.endswith("]"):
            name = words[1:-1].strip()
            sections.setdefault(name, [])
        elif words:
            sections[name].append(line)
    return sections


def key_of(line):
    return line.split("=")[0].strip()


def says_already(sections, wanted):
    """Whether the manager, who writes in a style of its own, has all that is wanted in there."""
    for name, entries in wanted.items():
        there = {key_of(line): plain(line.partition("=")[2]) for line in sections.get(name, [])}
        if any(there.get(key) != plain(value) for key, value in entries.items()) \
                or name == "pluginpaths" and set(there) != set(entries):
            return False
    return True


def merged_settings(old, wanted, version_keys):
    """The wanted settings, and of the old ones what the role knows nothing of."""
    sections = parsed(old)
    if says_already(sections, wanted):
        return old
    lines = sections.pop(None)
    for name in list(sections) + [name for name in wanted if name not in sections]:
        own = wanted.get(name, {})
        ours = set(own) | (version_keys if name == "plugins" else set())
        lines += ["[%s]" % name] + ["%s=%s" % entry for entry in own.items()]
        if name != "pluginpaths":
            lines += [line for line in sections.get(name, []) if key_of(line) not in ours]
        lines.append("")
    return "\n".join(lines)


def settings_for(target, plugins):
    request = target.request
    text = merged_settings(read_text(os.path.join(target.folder, "settings.ini")),
                           wanted_settings(request, plugins),
                           {version for _, version in request["shipped"].values()})
    return text.encode("utf-8", "surrogateescape")
