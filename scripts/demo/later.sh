# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Chapters 2 to 5: what a manager does with plug-ins that are installed.

chapter_again() {
    heading '2  Again: everything is installed'
    run_tool
    snapshot again
    check 'no file of any host changed' same_text "$(changes installed again)" ''
    claim 'no file of any host changed; the log calls 20 plug-in folders up to date' \
        same_text "$(copied) $(up_to_date)" '0 20'
}

chapter_update() {
    local plugin="$HOUDINI/Plugins/drask"
    heading '3  Update: the manager brings version 23 of the Houdini plug-in, with one more file'
    make_plugin houdini 23 scripts/python/drask.py scripts/python/draskcache.py toolbar/drask.shelf
    make_settings
    run_tool
    snapshot updated
    say "new (+) and changed (~) in $plugin:"
    changes again updated | below "$plugin" | paint
    check 'the new plug-in is complete' carries_plugin "$plugin" houdini
    check 'one plug-in was copied and 19 were not' same_text "$(copied) $(up_to_date)" '1 19'
    check 'houdini has version 23' same_text "$(cat "$SAMPLE/$plugin/version.txt")" 23
    claim 'Houdini has version 23; nothing else changed, houdini.env included' \
        same_text "$(changes again updated | below "$plugin" | count_lines)" \
        "$(changes again updated | count_lines)"
}

chapter_remove() {
    heading '4  Remove: the plug-in of Maya, which has made its shelf in the meantime'
    echo 'the shelf with the buttons of Drask' | put "$MAYA/prefs/shelves/shelf_DraskGrex.mel"
    snapshot before_removal
    run_tool uninstallPlugin "(maya) $SAMPLE/$MAYA"
    snapshot removed
    say "what went (-) and what stayed in $MAYA:"
    compare before_removal removed | below "$MAYA" | paint
    check 'what the install added went, but for the backup, and so did the shelf' \
        same_text "$(changes before_removal removed)" \
        "$(changes fresh before_removal | grep "^+$MAYA/" | grep -v draskbackup | sed 's/^+/-/')"
    claim 'every folder stayed, empty or not, and every file of the other hosts' \
        same_folders before_removal removed
    claim 'userSetup.py keeps the lines that the install added' \
        holds "$MAYA/scripts/userSetup.py" '#drask_installed'
}

# Plug-ins of an earlier generation have no manifest; the tool knows their files by name.
list_old_files() {
    cat <<'ROWS'
-Applications/Autodesk/maya2012/scripts/Drask/drask.py
-Applications/Autodesk/maya2012/scripts/Drask/manager.cfg
 Applications/Autodesk/maya2012/scripts/Drask/my_notes.txt
 Applications/Blender/2.59/scripts/startup/adrask/drask.py
-Applications/Blender/2.68/scripts/startup/adrask/__init__.py
 Applications/Blender/2.68/scripts/startup/adrask/presets/glass.py
-Applications/Blender/2.68/scripts/startup/adrask/validator.pyc
-Applications/MAXON/CINEMA 4D R12/Plugins/Drask/Grex12.dylib
 Applications/MAXON/CINEMA 4D R12/Plugins/Drask/Manager.cfg
-Applications/MAXON/CINEMA 4D R12/Plugins/Drask/res/c4d_symbols.h
ROWS
}

make_old_plugins() {
    local row
    list_old_files | while IFS= read -r row; do
        echo 'of an earlier plug-in, or of the user' | put "${row#?}"
    done
    put "$TOOL/oldhosts.txt" <<TEXT
path=$SAMPLE/Applications/MAXON/CINEMA 4D R12/CINEMA 4D.app
pathMaya = $SAMPLE/Applications/Autodesk/maya2012/Maya.app
pathBlender=$SAMPLE/Applications/Blender/blender.app
TEXT
}

old_plugins() {
    grep -E '^.Applications/(Autodesk/maya2012|Blender|MAXON/CINEMA 4D R12)/' || true
}

chapter_legacy() {
    heading '5  Clean up: plug-ins of an earlier generation, in the hosts that a list names'
    make_old_plugins
    snapshot before_cleanup
    shorten <"$SAMPLE/$TOOL/oldhosts.txt" | sed "s/^/   $DIM|$PLAIN /"
    run_tool ov3uninstall "$SAMPLE/$TOOL/oldhosts.txt"
    snapshot cleaned
    say 'what went (-) and what stayed:'
    compare before_cleanup cleaned | old_plugins | paint
    check 'the files that the tool knows went, and the others stayed' \
        same_text "$(compare before_cleanup cleaned | old_plugins)" "$(list_old_files)"
    check 'every folder stayed' same_folders before_cleanup cleaned
    claim 'only files known by name went; of Blender only the newest version was searched' \
        same_text "$(changes before_cleanup cleaned)" "$(list_old_files | signed -)"
}
