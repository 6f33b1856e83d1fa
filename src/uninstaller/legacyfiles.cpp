// SPDX-License-Identifier: MIT
#include "uninstaller/legacyfiles.h"

#include "literals.h"

// Deliberate (legacy-names): the repetitions and the comma inside "val_tex,ure_old2.pyc" stay.
// clang-format off
const QLatin1String legacyFileList =
    "manager.cfg,drask.mse,drask_main.ms,dummy.jpg,c4d_symbols.h,dlg_drask.res,"
    "dlg_about.res,c4d_strings.str,dlg_about.str,dlg_drask.str,grex.pyc,grex_old.pyc,"
    "grex_old2.pyc,logo.jpg,utils.pyc,utils_old.pyc,utils_old2.pyc,validator.pyc,"
    "validator_old.pyc,validator_old.pyc,val_general.pyc,val_general_old.pyc,"
    "val_general_old2.pyc,val_rendersettings.pyc,val_rendersettings_old.pyc,"
    "val_rendersettings_old2.pyc,val_texture.pyc,val_texture_old.pyc,"
    "val_texture_old2.pyc,val_vray.pyc,val_vray_old.pyc,val_vray_old2.pyc,__init__.py,"
    "Grex.cdl,Grex.cdl64,Grex10.dylib,Grex11.cdl,Grex11.cdl64,Grex11.dylib,Grex12.cdl,"
    "Grex12.cdl64,Grex12.dylib,grex.p,grex64.p,dummy.jpg,dummy.vrmesh,drask.py,drask.xpm,"
    "draskdlg.pyc,draskdlg_old.pyc,draskdlg_old2.pyc,drasklive.pyc,drasklive_old.pyc,"
    "drasklive_old2.pyc,drask_userSetup.py,draskutils.pyc,draskutils_old.pyc,"
    "draskutils_old2.pyc,validator.pyc,validator_old.pyc,validator_old2.pyc,"
    "val_arnold.pyc,val_arnold_old.pyc,val_arnold_old2.pyc,val_fr.pyc,val_fr_old.pyc,"
    "val_fr_old2.pyc,val_general.pyc,val_general_old.pyc,val_general_old2.pyc,"
    "val_maxwell.pyc,val_maxwell_old.pyc,val_maxwell_old2.pyc,val_mental.pyc,"
    "val_mental_old.pyc,val_mental_old2.pyc,val_rendersettings.pyc,"
    "val_rendersettings_old.pyc,val_rendersettings_old2.pyc,val_texture.pyc,"
    "val_texture_old.pyc,val_tex,ure_old2.pyc,val_vray.pyc,val_vray_old.pyc,"
    "val_vray_old2.pyc,drask.py,grex.pyc,grex_old.pyc,modo.jpg,modofiletools.pyc,"
    "modofiletools_old.pyc,utils.pyc,utils_old.pyc,validator.pyc,validator_old.pyc,"
    "val_general.pyc,val_general_old.pyc,val_rendersettings.pyc,"
    "val_rendersettings_old.pyc,val_texture.pyc,val_texture_old.pyc,grex.js,drask.js,"
    "drask_main.js"_l1;
// clang-format on
