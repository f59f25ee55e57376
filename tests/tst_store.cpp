// The SQLite stores on a real project.db in a temporary folder, read back through a
// connection of the test's own: typed text comes back literally and outlives the next
// start. A locked or garbage file is tst_hardening_store's.
#include "store/accountstore.h"
#include "store/database.h"
#include "store/portnamestore.h"
#include "logcapture.h"

#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QTest>

namespace {

// The store's own failure reports, without Qt's chatter around them.
QStringList failures()
{
    return capturedLog().filter(QRegularExpression(QString::fromUtf8("exe sqlstatement failure!|^执行错误")));
}

const QString Admin = QStringLiteral("1|ADMIN|0|tulip908");

} // namespace

class tst_Store : public QObject
{
    Q_OBJECT

private slots:
    // Every test starts as the application does on a fresh folder.
    void init()
    {
        m_dir.reset(new QTemporaryDir);
        m_path = m_dir->filePath("project.db");
        setDatabasePath(m_path);
        capturedLog().clear();
        qInstallMessageHandler(captureLog);
        AccountStore::createTables();
        PortNameStore::createPortNameTables();
    }

    void cleanup()
    {
        qInstallMessageHandler(nullptr);
        QVERIFY2(QSqlDatabase::connectionNames().isEmpty(), "a connection stayed behind");
        m_dir.reset();
    }

    // What was typed is stored as typed and kept by the next start, which seeds ADMIN
    // again only when no row of that name exists.
    void accountWrite_storesTextLiterally_data()
    {
        QTest::addColumn<int>("id"); // 0: add; else update that row, with "bob" added as row 2
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("password");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QStringList>("rows");
        QTest::addColumn<bool>("logged");
        auto row = [](const char *tag, int id, const QString &name, const QString &password, bool ok,
                      const QStringList &rows, bool logged = false) {
            QTest::newRow(tag) << id << name << password << ok << rows << logged;
        };
        row("add: empty name", 0, "", "pw", false, {Admin});
        row("add: empty password", 0, "bob", "", false, {Admin});
        row("add: name taken", 0, "ADMIN", "s3cret!", false, {Admin}, true);
        row("add: quotes", 0, "O'Brien", "it's", true, {Admin, "2|O'Brien|NULL|it's"});
        row("add: statement break-out", 0, "x','y'); DROP TABLE user;--", "pw", true,
            {Admin, "2|x','y'); DROP TABLE user;--|NULL|pw"});
        row("update: break-out aimed at ADMIN", 2, "x',password='owned' where id=1--", "pw", true,
            {Admin, "2|x',password='owned' where id=1--|NULL|pw"});
        row("update: ADMIN's new password", 1, "ADMIN", "changed", true, {"1|ADMIN|0|changed", "2|bob|NULL|pw"});
        row("update: ADMIN renamed comes back", 1, "root", "pw2", true,
            {"1|root|0|pw2", "2|bob|NULL|pw", "3|ADMIN|0|tulip908"});
    }

    void accountWrite_storesTextLiterally()
    {
        QFETCH(int, id);
        QFETCH(QString, name);
        QFETCH(QString, password);
        QFETCH(bool, logged);

        QVERIFY(!id || AccountStore::addUser("bob", "pw"));
        QTEST(id ? AccountStore::updateUser(id, name, password) : AccountStore::addUser(name, password), "ok");
        AccountStore::createTables();
        QTEST(rowsOf("select * from user"), "rows");
        QCOMPARE(failures().size(), logged ? 1 : 0);
        // A failed statement is reported with its text, never with the password.
        QVERIFY(!logged || !capturedLog().join('\n').contains(password));
    }

    void portName_roundTripsExactly_data()
    {
        QTest::addColumn<int>("kind"); // 0-2: savePortName's kinds; 3: audio outputs; 4: infrared outputs
        QTest::addColumn<QString>("name");
        QTest::newRow("video input: null as empty text") << 0 << QString();
        QTest::newRow("video input: statement break-out") << 0 << "x'); DROP TABLE InPortName;--";
        QTest::newRow("video output: Chinese") << 1 << QString::fromUtf8("会议室投影");
        QTest::newRow("audio input: quote") << 2 << "Bob's desk";
        QTest::newRow("audio output: surrounding blanks") << 3 << "  padded  ";
        QTest::newRow("infrared output: quotes") << 4 << "'';--";
    }

    void portName_roundTripsExactly()
    {
        QFETCH(int, kind);
        QFETCH(QString, name);
        for (const QString &text : {QString("earlier name"), name})
            kind == 3   ? PortNameStore::saveOutAudioPortName(3, text)
            : kind == 4 ? PortNameStore::saveOutInfarePortName(3, text)
                        : PortNameStore::savePortName(3, text, kind);
        const QMap<int, QString> loaded = kind == 3   ? PortNameStore::loadOutAudioPortNames()
                                          : kind == 4 ? PortNameStore::loadOutInfarePortNames()
                                                      : PortNameStore::loadPortNames(kind);
        QCOMPARE(loaded, (QMap<int, QString>{{3, name}}));
        // Each kind keeps to its own table.
        QCOMPARE(PortNameStore::loadPortNames(PortNameStore::VideoInput), (kind ? QMap<int, QString>() : loaded));
        QCOMPARE(rowsOf("select count(*) from InPortName where PortName is null"), QStringList{"0"});
        QCOMPARE(failures(), QStringList());
    }

private:
    // Rows of a statement on the test's own connection, one "a|b|NULL" text per row.
    QStringList rowsOf(const QString &sql) const
    {
        QStringList rows;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "check");
            db.setDatabaseName(m_path);
            QSqlQuery query(db.open() ? sql : QString(), db);
            for (QStringList values; query.next(); rows << values.join('|'), values.clear())
                for (int i = 0; i < query.record().count(); ++i)
                    values << (query.isNull(i) ? QStringLiteral("NULL") : query.value(i).toString());
        }
        QSqlDatabase::removeDatabase("check");
        return rows;
    }

    QScopedPointer<QTemporaryDir> m_dir;
    QString m_path;
};

QTEST_GUILESS_MAIN(tst_Store)
#include "tst_store.moc"
