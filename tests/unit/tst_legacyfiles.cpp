// SPDX-License-Identifier: MIT
#include "uninstaller/legacyfiles.h"

#include <QMap>
#include <QStringList>
#include <QtTest>

namespace {

struct LegacyName {
    int position;
    const char *name;
};

// clang-format off
constexpr LegacyName legacyNames[] = {
    {  1, "manager.cfg"},
    {  2, "drask.mse"},
    {  3, "drask_main.ms"},
    {  4, "dummy.jpg"},
    {  5, "c4d_symbols.h"},
    {  6, "dlg_drask.res"},
    {  7, "dlg_about.res"},
    {  8, "c4d_strings.str"},
    {  9, "dlg_about.str"},
    { 10, "dlg_drask.str"},
    { 11, "grex.pyc"},
    { 12, "grex_old.pyc"},
    { 13, "grex_old2.pyc"},
    { 14, "logo.jpg"},
    { 15, "utils.pyc"},
    { 16, "utils_old.pyc"},
    { 17, "utils_old2.pyc"},
    { 18, "validator.pyc"},
    { 19, "validator_old.pyc"},
    { 20, "validator_old.pyc"},
    { 21, "val_general.pyc"},
    { 22, "val_general_old.pyc"},
    { 23, "val_general_old2.pyc"},
    { 24, "val_rendersettings.pyc"},
    { 25, "val_rendersettings_old.pyc"},
    { 26, "val_rendersettings_old2.pyc"},
    { 27, "val_texture.pyc"},
    { 28, "val_texture_old.pyc"},
    { 29, "val_texture_old2.pyc"},
    { 30, "val_vray.pyc"},
    { 31, "val_vray_old.pyc"},
    { 32, "val_vray_old2.pyc"},
    { 33, "__init__.py"},
    { 34, "Grex.cdl"},
    { 35, "Grex.cdl64"},
    { 36, "Grex10.dylib"},
    { 37, "Grex11.cdl"},
    { 38, "Grex11.cdl64"},
    { 39, "Grex11.dylib"},
    { 40, "Grex12.cdl"},
    { 41, "Grex12.cdl64"},
    { 42, "Grex12.dylib"},
    { 43, "grex.p"},
    { 44, "grex64.p"},
    { 45, "dummy.jpg"},
    { 46, "dummy.vrmesh"},
    { 47, "drask.py"},
    { 48, "drask.xpm"},
    { 49, "draskdlg.pyc"},
    { 50, "draskdlg_old.pyc"},
    { 51, "draskdlg_old2.pyc"},
    { 52, "drasklive.pyc"},
    { 53, "drasklive_old.pyc"},
    { 54, "drasklive_old2.pyc"},
    { 55, "drask_userSetup.py"},
    { 56, "draskutils.pyc"},
    { 57, "draskutils_old.pyc"},
    { 58, "draskutils_old2.pyc"},
    { 59, "validator.pyc"},
    { 60, "validator_old.pyc"},
    { 61, "validator_old2.pyc"},
    { 62, "val_arnold.pyc"},
    { 63, "val_arnold_old.pyc"},
    { 64, "val_arnold_old2.pyc"},
    { 65, "val_fr.pyc"},
    { 66, "val_fr_old.pyc"},
    { 67, "val_fr_old2.pyc"},
    { 68, "val_general.pyc"},
    { 69, "val_general_old.pyc"},
    { 70, "val_general_old2.pyc"},
    { 71, "val_maxwell.pyc"},
    { 72, "val_maxwell_old.pyc"},
    { 73, "val_maxwell_old2.pyc"},
    { 74, "val_mental.pyc"},
    { 75, "val_mental_old.pyc"},
    { 76, "val_mental_old2.pyc"},
    { 77, "val_rendersettings.pyc"},
    { 78, "val_rendersettings_old.pyc"},
    { 79, "val_rendersettings_old2.pyc"},
    { 80, "val_texture.pyc"},
    { 81, "val_texture_old.pyc"},
    { 82, "val_tex"},
    { 83, "ure_old2.pyc"},
    { 84, "val_vray.pyc"},
    { 85, "val_vray_old.pyc"},
    { 86, "val_vray_old2.pyc"},
    { 87, "drask.py"},
    { 88, "grex.pyc"},
    { 89, "grex_old.pyc"},
    { 90, "modo.jpg"},
    { 91, "modofiletools.pyc"},
    { 92, "modofiletools_old.pyc"},
    { 93, "utils.pyc"},
    { 94, "utils_old.pyc"},
    { 95, "validator.pyc"},
    { 96, "validator_old.pyc"},
    { 97, "val_general.pyc"},
    { 98, "val_general_old.pyc"},
    { 99, "val_rendersettings.pyc"},
    {100, "val_rendersettings_old.pyc"},
    {101, "val_texture.pyc"},
    {102, "val_texture_old.pyc"},
    {103, "grex.js"},
    {104, "drask.js"},
    {105, "drask_main.js"},
};
// clang-format on

QStringList entries()
{
    return QString(legacyFileList).split(',');
}

} // namespace

/// The list is compared with a copy of its own, so that no name changes unseen.
class tst_LegacyFiles : public QObject {
    Q_OBJECT

private slots:
    void listHasAsManyEntriesAsItsCopy();
    void everyNameStandsInItsPosition_data();
    void everyNameStandsInItsPosition();
    void entriesAreBareFileNames();
    void namesThatRecurAreKept();
    void validatorStandsTwiceInARow();
    void commaInAFileNameMakesTwoEntries();
};

void tst_LegacyFiles::listHasAsManyEntriesAsItsCopy()
{
    QCOMPARE(entries().size(), 105);
    QCOMPARE(std::size(legacyNames), size_t(105));
}

void tst_LegacyFiles::everyNameStandsInItsPosition_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("name");

    for (const LegacyName &row : legacyNames) {
        QTest::newRow(qPrintable(QString("%1 %2").arg(row.position).arg(row.name)))
            << row.position << row.name;
    }
}

void tst_LegacyFiles::everyNameStandsInItsPosition()
{
    QFETCH(int, position);

    QTEST(entries().value(position - 1), "name");
}

void tst_LegacyFiles::entriesAreBareFileNames()
{
    for (const QString &name : entries()) {
        QVERIFY(!name.isEmpty());
        QCOMPARE(name.trimmed(), name);
        QVERIFY2(!name.contains('/'), qPrintable(name));
    }
}

void tst_LegacyFiles::namesThatRecurAreKept()
{
    QMap<QString, int> counts;
    for (const QString &name : entries()) {
        ++counts[name];
    }

    QCOMPARE(counts.size(), 77);
    QCOMPARE(counts.value("dummy.jpg"), 2);
    QCOMPARE(counts.value("grex.pyc"), 2);
    QCOMPARE(counts.value("grex_old.pyc"), 2);
    QCOMPARE(counts.value("utils.pyc"), 2);
    QCOMPARE(counts.value("utils_old.pyc"), 2);
    QCOMPARE(counts.value("validator.pyc"), 3);
    QCOMPARE(counts.value("validator_old.pyc"), 4);
    QCOMPARE(counts.value("val_general.pyc"), 3);
    QCOMPARE(counts.value("val_general_old.pyc"), 3);
    QCOMPARE(counts.value("val_general_old2.pyc"), 2);
    QCOMPARE(counts.value("val_rendersettings.pyc"), 3);
    QCOMPARE(counts.value("val_rendersettings_old.pyc"), 3);
    QCOMPARE(counts.value("val_rendersettings_old2.pyc"), 2);
    QCOMPARE(counts.value("val_texture.pyc"), 3);
    QCOMPARE(counts.value("val_texture_old.pyc"), 3);
    QCOMPARE(counts.value("val_vray.pyc"), 2);
    QCOMPARE(counts.value("val_vray_old.pyc"), 2);
    QCOMPARE(counts.value("val_vray_old2.pyc"), 2);
    QCOMPARE(counts.value("drask.py"), 2);
}

void tst_LegacyFiles::validatorStandsTwiceInARow()
{
    QCOMPARE(entries().mid(17, 4),
             QStringList(
                 {"validator.pyc", "validator_old.pyc", "validator_old.pyc", "val_general.pyc"}));
}

void tst_LegacyFiles::commaInAFileNameMakesTwoEntries()
{
    QCOMPARE(entries().mid(80, 4),
             QStringList({"val_texture_old.pyc", "val_tex", "ure_old2.pyc", "val_vray.pyc"}));
    QCOMPARE(entries().count("val_texture_old2.pyc"), 1);
}

QTEST_GUILESS_MAIN(tst_LegacyFiles)
#include "tst_legacyfiles.moc"
