// SPDX-License-Identifier: MIT
#include "commandline.h"

#include "localecodec.h"
#include "pages.h"
#include "unitcase.h"

#include <set>

Q_DECLARE_METATYPE(RunMode)

using Words = std::vector<QByteArray>;
Q_DECLARE_METATYPE(Words)

namespace {

CommandLine read(const Words &words)
{
    std::vector<const char *> arguments{"drask-installer"};
    for (const QByteArray &word : words) {
        arguments.push_back(word.constData());
    }
    return readCommandLine(arguments);
}

void addRow(const char *name, const Words &words, RunMode mode, const QString &operand = QString())
{
    QTest::newRow(name) << words << mode << operand;
}

void addWordsBehindWords()
{
    addRow("an argument behind onlyWriteConfig", {"onlyWriteConfig", "x"},
           RunMode::OnlyWriteConfig);
    addRow("an argument behind reinstall", {"reinstall", "x"}, RunMode::Reinstall);
    addRow("an argument behind the quoted reinstall", {"\"reinstall\"", "x"}, RunMode::Reinstall);
    addRow("arguments behind uninstallAllPlugins", {"uninstallAllPlugins", "x", "y"},
           RunMode::UninstallAll);
    addRow("an argument behind an operand", {"uninstallPlugin", "(xsi) /x", "y"},
           RunMode::UninstallPlugin, "(xsi) /x");
    addRow("two mode words: the first counts", {"onlyWriteConfig", "reinstall"},
           RunMode::OnlyWriteConfig);
    addRow("a mode word behind an unknown word", {"x", "reinstall"}, RunMode::Install);
    addRow("an operand word behind an unknown word", {"x", "uninstallPlugin", "(xsi) /x"},
           RunMode::Install);
}

void addWordsThatAreNoMode()
{
    addRow("an empty word", {""}, RunMode::Install);
    addRow("capital letters", {"REINSTALL"}, RunMode::Install);
    addRow("one capital letter", {"OnlyWriteConfig"}, RunMode::Install);
    addRow("a capital letter before an operand", {"UninstallPlugin", "(xsi) /x"}, RunMode::Install);
    addRow("a small letter before a list file", {"Ov3uninstall", "/list"}, RunMode::Install);
    addRow("a word cut short", {"reinstal"}, RunMode::Install);
    addRow("a word with more behind it", {"reinstalls"}, RunMode::Install);
    addRow("a word with a blank before it", {" reinstall"}, RunMode::Install);
    addRow("a word with a blank behind it", {"uninstallAllPlugins "}, RunMode::Install);
    addRow("a word with dashes", {"--reinstall"}, RunMode::Install);
    addRow("one opening quote", {"\"reinstall"}, RunMode::Install);
    addRow("one closing quote", {"reinstall\""}, RunMode::Install);
    addRow("single quotes", {"'reinstall'"}, RunMode::Install);
    addRow("another word in double quotes", {"\"onlyWriteConfig\""}, RunMode::Install);
}

} // namespace

class tst_CommandLine : public QObject {
    Q_OBJECT
private slots:
    void wordsChooseTheMode_data()
    {
        QTest::addColumn<Words>("words");
        QTest::addColumn<RunMode>("mode");
        QTest::addColumn<QString>("operand");

        addRow("no argument", {}, RunMode::Install);
        addRow("only write config", {"onlyWriteConfig"}, RunMode::OnlyWriteConfig);
        addRow("reinstall", {"reinstall"}, RunMode::Reinstall);
        addRow("reinstall in double quotes", {"\"reinstall\""}, RunMode::Reinstall);
        addRow("uninstall all plug-ins", {"uninstallAllPlugins"}, RunMode::UninstallAll);
        addRow("uninstall a plug-in", {"uninstallPlugin", "(maya) /m"}, RunMode::UninstallPlugin,
               "(maya) /m");
        addRow("remove legacy plug-ins", {"ov3uninstall", "/list"}, RunMode::Ov3Uninstall, "/list");

        addRow("an empty operand is an operand", {"uninstallPlugin", ""}, RunMode::UninstallPlugin);
        addRow("an empty list file is an operand", {"ov3uninstall", ""}, RunMode::Ov3Uninstall);
        addRow("uninstallPlugin without its operand", {"uninstallPlugin"}, RunMode::Install);
        addRow("ov3uninstall without its operand", {"ov3uninstall"}, RunMode::Install);
        addWordsBehindWords();
        addWordsThatAreNoMode();
    }

    void wordsChooseTheMode()
    {
        QFETCH(Words, words);
        QFETCH(RunMode, mode);
        QFETCH(QString, operand);
        const CommandLine commandLine = read(words);
        QCOMPARE(commandLine.mode, mode);
        QCOMPARE(commandLine.operand, operand);
    }

    void operandIsReadInTheLocalEncoding()
    {
        USE_LATIN1_LOCALE_OR_SKIP();
        const CommandLine commandLine = read({"uninstallPlugin", "(maya) /h\xf6st"});
        QCOMPARE(commandLine.operand, QString::fromUtf8("(maya) /höst"));
    }

    void noWordAtAllInstalls()
    {
        const CommandLine commandLine = readCommandLine({});
        QCOMPARE(commandLine.mode, RunMode::Install);
        QCOMPARE(commandLine.operand, QString());
    }

    void pageNamesEveryMode_data()
    {
        const test::Table<QString> table("name");
        table.row("the first page", "README.md");
        table.row("the manager's page", "docs/integration.md");
        table.row("the manual page", "docs/drask-installer.1");
    }

    void pageNamesEveryMode()
    {
        QFETCH(QString, name);
        std::set<RunMode> named;
        const QStringList words = test::page(name).split(QRegularExpression("\\W+"));
        for (const QString &word : words) {
            named.insert(read({word.toLocal8Bit(), "operand"}).mode);
        }
        QCOMPARE(named.size(), static_cast<std::size_t>(RunMode::Ov3Uninstall) + 1);
    }
};

DRASK_TEST(tst_CommandLine)
#include "tst_commandline.moc"
