#!/usr/bin/env bats
# SPDX-License-Identifier: MIT
# What docs/integration.md gives to managers is taken out of the page and tried.
# shellcheck disable=SC2154 # support.bash sets them
load support

setup() {
    want_tools python3
    manager="$BATS_TEST_TMPDIR/Mänager of Drask"
    make_manager "$manager"
    cd "$manager" || return 1
    # recipe.py: the blocks of Python that define something for managers.
    awk '/^```/ {inside = 0} inside; /^```python$/ {getline; inside = /^(def|import) /; if (inside) print}' \
        "$repository/docs/integration.md" >"$BATS_TEST_TMPDIR/recipe.py"
    export PYTHONPATH=$BATS_TEST_TMPDIR PYTHONDONTWRITEBYTECODE=1
}

@test "settings that the recipe wrote are read as they were meant, whatever is in them" {
    run -0 python3 - "$BATS_TEST_TMPDIR" <<'TEXT'
import json, os, subprocess, sys
from recipe import run_installer, write_settings

odd = ["plain", "back\\slash", "\\n", 'quo"te', ";,=%41[x]#", "@home", "@@", "@Invalid()", " both ends ", "tab\tin it",
       "Löwe 日本", "line\nfeed", "carriage\rreturn\r\n", "\u200b.", "ends with \\", '"', "'", "%", "\\x41"]
root = sys.argv[1] + "/hösts "
for text in odd:
    hosts = [("modo", root + text + "/modo"), ("sketchup", text + "/")]
    write_settings("settings.ini", text, text + "/projects", {"versionModo": 7}, hosts)
    plan = json.loads(subprocess.run(["./drask-status", "plan", "--json"], stdout=subprocess.PIPE).stdout.decode())
    assert [(host["key"], host["path"]) for host in plan["hosts"]] == hosts, (text, plan)
    write_settings("settings.ini", text, text + "/projects", {"versionModo": 7}, hosts[:1])
    assert run_installer(".") == 0, text
    drask = root + text + "/modo/Scripts/drask"
    assert os.path.exists(drask + "/icons/dräsk.png"), text
    with open(drask + "/manager.cfg", encoding="utf-8", newline="") as config:
        assert config.read().startswith(text + "\n" + text + "/projects\n"), text
try:
    write_settings("settings.ini", "", "", {}, [("modo", os.fsdecode(b"/L\xf6we"))])
    raise AssertionError("a name that is no UTF-8 was written")
except UnicodeEncodeError:
    assert os.path.getsize("settings.ini") > 0
TEXT
}

@test "the log has its texts escaped as the page says" {
    run -0 python3 - <<'TEXT'
from recipe import run_installer, write_settings

write_settings("settings.ini", "", "", {}, [("modo", 'a"b\\c\td\u200be\nf\rg')])
assert run_installer(".", "onlyWriteConfig") == 0
with open("plugin.log", encoding="utf-8") as log:
    assert 'Debug: path "a\\"b\\\\c\\td\\u200Be\\nf\\rg"\n' in log.readlines()
TEXT
}

@test "the recipe for a start ends what cputype left, and leaves no file of the run before" {
    put cputype <<<$'#!/bin/sh\nsleep 3599 &\necho $! >child'
    chmod +x cputype
    echo old >pluginError.txt
    echo old >plugin.log
    run -0 python3 -c 'from recipe import *
write_settings("settings.ini", "", "", {}, [])
assert run_installer(".") == 0'
    same "the log's first line" "$(head -n 1 plugin.log)" "Debug: settings loaded"
    [ ! -e pluginError.txt ]
    # A process that was killed may still wait to be buried.
    case $(ps -o stat= -p "$(cat child)") in "" | Z*) ;; *) fail "cputype's child lives" ;; esac
}

@test "the recipe for a start waits for the one before, and refuses files that it cannot delete" {
    printf '[pluginpaths]\nsize=0\n' >settings.ini
    run -0 python3 - <<'TEXT'
import fcntl, os, threading
from recipe import run_installer

with open("manager.lock", "w") as lock:
    fcntl.flock(lock, fcntl.LOCK_EX)
    second = threading.Thread(target=run_installer, args=(".",))
    second.start()
    second.join(0.5)
    assert second.is_alive() and not os.path.exists("plugin.log")
second.join()
assert os.path.exists("plugin.log")
os.mkdir("pluginError.txt")
try:
    run_installer(".")
    raise AssertionError("it started")
except OSError:
    pass
TEXT
}

# Qt may ask the locale which encoding file names and operands have; the program is told UTF-8.
@test "operands and lists are UTF-8 where the locale is ISO 8859-1" {
    want_tools localedef
    mkdir "$BATS_TEST_TMPDIR/locales"
    localedef -i de_DE -f ISO-8859-1 "$BATS_TEST_TMPDIR/locales/de_DE.ISO-8859-1" 2>/dev/null \
        || skip "the sources of the locales are not on this machine"
    in_latin1() {
        env LOCPATH="$BATS_TEST_TMPDIR/locales" LC_ALL=de_DE.ISO-8859-1 "$@"
    }
    same "the encoding" "$(in_latin1 locale charmap)" ISO-8859-1
    put "$BATS_TEST_TMPDIR/höst/scripts/Drask/logo.jpg" </dev/null
    put "$BATS_TEST_TMPDIR/höst/Scripts/drask/a.py" </dev/null
    put "$BATS_TEST_TMPDIR/höst/Scripts/drask/uninstall.ini" <<<"$BATS_TEST_TMPDIR/höst/Scripts/drask/a.py"
    run -0 in_latin1 ./drask-installer uninstallPlugin "(modo) $BATS_TEST_TMPDIR/höst"
    same "the folder in the log" "$(sed -n 2p plugin.log)" "Debug: path \"$BATS_TEST_TMPDIR/höst\""
    [ ! -e "$BATS_TEST_TMPDIR/höst/Scripts/drask/a.py" ]
    put list <<<"path=$BATS_TEST_TMPDIR/höst/Maya.app"
    run -0 in_latin1 ./drask-installer ov3uninstall list
    [ ! -e "$BATS_TEST_TMPDIR/höst/scripts/Drask/logo.jpg" ]
}
