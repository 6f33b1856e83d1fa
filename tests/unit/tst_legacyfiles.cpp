// SPDX-License-Identifier: MIT
#include "uninstaller/legacyfiles.h"
#include "unitcase.h"

#include <QStringList>

namespace {

// clang-format off
/// A copy of its own, so that no name changes unseen; each row begins with the place of its first.
constexpr char copyOfTheList[] =
    /*   1 */ "manager.cfg drask.mse drask_main.ms dummy.jpg c4d_symbols.h "
    /*   6 */ "dlg_drask.res dlg_about.res c4d_strings.str dlg_about.str dlg_drask.str "
    /*  11 */ "grex.pyc grex_old.pyc grex_old2.pyc logo.jpg utils.pyc "
    /*  16 */ "utils_old.pyc utils_old2.pyc validator.pyc validator_old.pyc validator_old.pyc "
    /*  21 */ "val_general.pyc val_general_old.pyc val_general_old2.pyc val_rendersettings.pyc val_rendersettings_old.pyc "
    /*  26 */ "val_rendersettings_old2.pyc val_texture.pyc val_texture_old.pyc val_texture_old2.pyc val_vray.pyc "
    /*  31 */ "val_vray_old.pyc val_vray_old2.pyc __init__.py Grex.cdl Grex.cdl64 "
    /*  36 */ "Grex10.dylib Grex11.cdl Grex11.cdl64 Grex11.dylib Grex12.cdl "
    /*  41 */ "Grex12.cdl64 Grex12.dylib grex.p grex64.p dummy.jpg "
    /*  46 */ "dummy.vrmesh drask.py drask.xpm draskdlg.pyc draskdlg_old.pyc "
    /*  51 */ "draskdlg_old2.pyc drasklive.pyc drasklive_old.pyc drasklive_old2.pyc drask_userSetup.py "
    /*  56 */ "draskutils.pyc draskutils_old.pyc draskutils_old2.pyc validator.pyc validator_old.pyc "
    /*  61 */ "validator_old2.pyc val_arnold.pyc val_arnold_old.pyc val_arnold_old2.pyc val_fr.pyc "
    /*  66 */ "val_fr_old.pyc val_fr_old2.pyc val_general.pyc val_general_old.pyc val_general_old2.pyc "
    /*  71 */ "val_maxwell.pyc val_maxwell_old.pyc val_maxwell_old2.pyc val_mental.pyc val_mental_old.pyc "
    /*  76 */ "val_mental_old2.pyc val_rendersettings.pyc val_rendersettings_old.pyc val_rendersettings_old2.pyc val_texture.pyc "
    /*  81 */ "val_texture_old.pyc val_tex ure_old2.pyc val_vray.pyc val_vray_old.pyc "
    /*  86 */ "val_vray_old2.pyc drask.py grex.pyc grex_old.pyc modo.jpg "
    /*  91 */ "modofiletools.pyc modofiletools_old.pyc utils.pyc utils_old.pyc validator.pyc "
    /*  96 */ "validator_old.pyc val_general.pyc val_general_old.pyc val_rendersettings.pyc val_rendersettings_old.pyc "
    /* 101 */ "val_texture.pyc val_texture_old.pyc grex.js drask.js drask_main.js";
// clang-format on

} // namespace

class tst_LegacyFiles : public QObject {
    Q_OBJECT
private slots:
    void everyNameStandsInItsPosition()
    {
        QCOMPARE(QString(legacyFileList).split(','), QString(copyOfTheList).split(' '));
    }

    void flawsAreKept()
    {
        QStringList entries = QString(legacyFileList).split(',');
        QCOMPARE(entries.size(), 105);
        VERIFY_LINES(entries.mid(18, 2), "validator_old.pyc", "validator_old.pyc");
        VERIFY_LINES(entries.mid(81, 2), "val_tex", "ure_old2.pyc");
        QCOMPARE(entries.removeDuplicates(), 28);
    }
};

DRASK_TEST(tst_LegacyFiles)
#include "tst_legacyfiles.moc"
