// SPDX-License-Identifier: MIT
#include "disk/attributes.h"

#include "filelooks.h"
#include "unitcase.h"

#include <unistd.h>

namespace {

/// Two files, of which the second is to become like the first.
class TwoFiles : public test::Sandbox {
public:
    TwoFiles()
    {
        write("old", "old");
        write("new", "new");
    }

    bool copy() const
    {
        QFile from(path("old"));
        QFile to(path("new"));
        if (!from.open(QIODevice::ReadOnly) || !to.open(QIODevice::ReadWrite)) {
            qFatal("The files cannot be opened");
        }
        return copyAttributes(from.handle(), to.handle());
    }
};

} // namespace

class tst_Attributes : public QObject {
    Q_OBJECT
private slots:
    void rightsAreCopied_data()
    {
        QTest::addColumn<unsigned>("rights");
        for (const unsigned rights : {0400U, 0600U, 0644U, 0666U, 0755U, 02664U, 07777U}) {
            QTest::addRow("%o", rights) << rights;
        }
    }

    void rightsAreCopied()
    {
        QFETCH(unsigned, rights);
        const TwoFiles files;
        test::setRights(files.path("old"), rights);
        QVERIFY(files.copy());
        QCOMPARE(test::looksOf(files.path("new")), test::looksOf(files.path("old")));
        QCOMPARE(files.read("new"), QByteArray("new"));
    }

    void ownerAndGroupAreCopied()
    {
        const TwoFiles files;
        if (geteuid() != 0) {
            QSKIP("only root may give a file away");
        }
        test::giveTo(files.path("old"), 4321, 1234);
        test::setRights(files.path("old"), 04640);
        QVERIFY(files.copy());
        QCOMPARE(test::looksOf(files.path("new")), test::looksOf(files.path("old")));
    }

    void attributesAndAccessListAreCopied()
    {
        const TwoFiles files;
        if (!test::setAttribute(files.path("old"), "user.colour", "blue")
            || !test::setAttribute(files.path("old"), "user.empty", "")
            || !test::setAccessList(files.path("old"))) {
            QSKIP("the disk has no extended attributes or access lists");
        }
        QVERIFY(files.copy());
        QCOMPARE(test::looksOf(files.path("new")), test::looksOf(files.path("old")));
    }

    void attributesBeyondAreTakenAway()
    {
        const TwoFiles files;
        test::setRights(files.path("old"), 0664);
        if (!test::setAttribute(files.path("new"), "user.colour", "blue")
            || !test::setAccessList(files.path("new"))) {
            QSKIP("the disk has no extended attributes or access lists");
        }
        QVERIFY(files.copy());
        QCOMPARE(test::looksOf(files.path("new")), test::looksOf(files.path("old")));
    }

    void ownerThatCannotBeGivenIsTold()
    {
        const TwoFiles files;
        test::setRights(files.path("old"), 0666);
        test::giveToOrdinaryUser(files.path("new"));
        BECOME_ORDINARY_USER_OR_SKIP();
        QVERIFY(!files.copy());
    }

    void closedFileIsTold()
    {
        QVERIFY(!copyAttributes(-1, -1));
    }

    void attributeThatCannotBeGivenIsTold()
    {
        const TwoFiles files;
        test::setRights(files.path("old"), 0666);
        if (!test::setAttribute(files.path("old"), "security.drask", "kept")) {
            QSKIP("only root may set such an attribute");
        }
        test::giveToOrdinaryUser(files.path("old"));
        test::giveToOrdinaryUser(files.path("new"));
        BECOME_ORDINARY_USER_OR_SKIP();

        QVERIFY(!files.copy());
    }
};

DRASK_TEST(tst_Attributes)
#include "tst_attributes.moc"
