# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Makes the sample workstation: the tool's folder with its plug-ins, the manager's settings, and
# the fifteen hosts with files of their own. Wants SAMPLE (the workstation) and TOOL (the tool's
# folder below it).

# A row for each host: key, folder of the host, folder of the plug-in inside it (XXX for a language),
# name of the plug-in below plugins/, name of its version in the settings.
list_hosts() {
    awk -F ' *[|] *' '/^[^#]/ {
        sub(/^\//, "", $2)
        sub(/LANGUAGE/, "XXX", $2)
        print $1 "|" $5 "|" $2 "|" $3 "|" $4
    }' data/hosts.txt
}

# A row a plug-in: name below plugins/, version, files beside its version.txt.
list_plugins() {
    cat <<'ROWS'
Cinema4D|31|drask.pyp res/c4d_symbols.h res/dialogs/dlg_drask.res res/strings_us/c4d_strings.str
Cinema4D14|33|drask.pyp res/c4d_symbols.h res/dialogs/dlg_drask.res res/strings_us/c4d_strings.str
Cinema4D21|12|drask.pyp res/c4d_symbols.h res/dialogs/dlg_drask.res res/strings_us/c4d_strings.str
Blender|27|__init__.py draskpanel.py draskexport.py
Blender28|18|__init__.py draskpanel.py draskexport.py
xsi|9|grex.js drask.js drask_main.js
lightwave|14|drask.p drask_lib.ls
maya|41|drask_userSetup.py drask.py draskshelf.py icons/drask.png validators/val_arnold.py
modo|11|drask.py drask.cfg kit/index.cfg
rhino|6|Drask.rhp Drask_tb.rui
revit|5|DraskRevitUpload.dll DraskRevitUpload.addin
houdini|22|scripts/python/drask.py toolbar/drask.shelf
sketchup|8|drask.rb drask/uploader.rb drask/logo.png
clarisse|4|drask.py drask_menu.py
3ds|52|drask_main.ms drask.mse icons/drask_24i.bmp
ROWS
}

# What the user and the hosts had before the manager came.
list_own_files() {
    cat <<'ROWS'
Applications/MAXON/CINEMA 4D R13/CINEMA 4D.app/Contents/Info.plist
Applications/MAXON/CINEMA 4D R13/plugins/Grex12.cdl64
Applications/MAXON/CINEMA 4D R13/plugins/Grex12.dylib
Applications/MAXON/CINEMA 4D R16/plugins/hairtools/hairtools.pyp
Applications/MAXON/Cinema 4D R21/Cinema 4D.app/Contents/Info.plist
Library/Application Support/Blender/2.79/config/startup.blend
Library/Application Support/Blender/2.83/scripts/addons/rigging.py
Applications/Autodesk/Softimage 2015/Application/Plugins/curves.js
Applications/LightWave 2019/Plugins/scripts/dust.ls
Library/Preferences/Autodesk/maya/2022/prefs/shelves/shelf_Rigging.mel
Library/Application Support/Modo/Scripts/rename.py
Applications/Rhino 5/Plug-ins/sections.rhp
Applications/Autodesk/Revit 2020/Revit.addin
Library/Preferences/houdini/18.0/toolbar/pyro.shelf
Library/Application Support/SketchUp 2020/Plugins/stairs.rb
Library/Application Support/Clarisse 4/clarisse.env
Applications/Autodesk/3ds Max 2020/ENU/scripts/startup/units.ms
ROWS
}

# put PATH < text: PATH is taken below the workstation.
put() {
    mkdir -p "$(dirname "$SAMPLE/$1")"
    cat >"$SAMPLE/$1"
}

# make_plugin NAME VERSION FILE...
make_plugin() {
    local name=$1 version=$2 file
    shift 2
    for file in "$@"; do
        printf '%s of the Drask plug-in %s, version %s\n' "$file" "$name" "$version" \
            | put "$TOOL/plugins/$name/$file"
    done
    printf '%s\n' "$version" | put "$TOOL/plugins/$name/version.txt"
}

# The template is what Maya runs at its start; the installer fills in its place-holder.
make_maya_template() {
    put "$TOOL/plugins/maya/drask_userSetup.py" <<'TEXT'
#drask_installed
import sys, maya.utils
def importable_path(path):
	return path if sys.version_info[0] > 2 else path.encode('utf-8')
def searchTab():
	sys.path.append( importable_path(u'__scriptpath__'))
	import draskshelf
	draskshelf.init()
maya.utils.executeDeferred("searchTab()")
TEXT
}

make_own_files() {
    local file
    list_own_files | while read -r file; do
        printf 'a file of the host or its user\n' | put "$file"
    done
    put 'Library/Preferences/Autodesk/maya/2022/scripts/userSetup.py' <<'TEXT'
import maya.cmds as cmds

# my units: centimetres, 25 frames a second
cmds.currentUnit(linear='cm', time='pal')
TEXT
    put 'Library/Preferences/houdini/18.0/houdini.env' <<'TEXT'
# my own settings
HOUDINI_BUFFEREDSAVE = 1
JOB = "$HOME/jobs/lighthouse"
TEXT
}

# The program that ships beside the tool; its output reaches the plug-ins through manager.cfg.
make_cpu_type() {
    put "$TOOL/cputype" <<'TEXT'
#!/bin/sh
echo 'GenuineIntel 16 threads?'
TEXT
    chmod +x "$SAMPLE/$TOOL/cputype"
}

# The versions wanted are those of the plug-ins that the manager has just put below plugins/.
make_settings() {
    local key folder plugin setting number=0
    {
        printf '[UserData]\nusername=Zoë Lindqvist\nloggedOut=false\n\n'
        printf '[PathOptions]\nlocalProjectsFolder="%s/Projects"\n\n' "$SAMPLE"
        printf '[Settings]\ncopyTexFiles=true\n\n[plugins]\n'
        while IFS='|' read -r key folder _ plugin setting; do
            printf '%s=%s\n' "$setting" "$(cat "$SAMPLE/$TOOL/plugins/$plugin/version.txt")"
        done < <(list_hosts)
        printf '\n[pluginpaths]\n'
        while IFS='|' read -r key folder _; do
            number=$((number + 1))
            printf '%d\\application=%s\n' "$number" "$key"
            printf '%d\\path="%s/%s"\n' "$number" "$SAMPLE" "$folder"
        done < <(list_hosts)
        printf 'size=%d\n' "$number"
    } | put "$TOOL/settings.ini"
}

# make_workstation PROGRAM: PROGRAM is copied, since it looks for its files beside itself.
make_workstation() {
    local name version files
    while IFS='|' read -r name version files; do
        # shellcheck disable=SC2086 # a list of names without blanks
        make_plugin "$name" "$version" $files
    done < <(list_plugins)
    make_maya_template
    make_own_files
    make_cpu_type
    make_settings
    cp "$1" "$SAMPLE/$TOOL/drask-installer"
}
