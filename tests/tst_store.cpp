// The SQLite stores on a real project.db in a temporary folder: typed text comes back
// literally, logins match exactly, an unusable file fails every operation quietly.
#include "store/accountstore.h"
#include "store/database.h"
#include "store/portnamestore.h"
#include "logcapture.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
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

// Port names by a short code: "kind<N>", "outAudio" or "outInfare".
void savePort(const QString &how, int port, const QString &name)
{
    how == "outAudio"    ? PortNameStore::saveOutAudioPortName(port, name)
    : how == "outInfare" ? PortNameStore::saveOutInfarePortName(port, name)
                         : PortNameStore::savePortName(port, name, how.mid(4).toInt());
}

QMap<int, QString> loadPorts(const QString &how)
{
    return how == "outAudio"    ? PortNameStore::loadOutAudioPortNames()
           : how == "outInfare" ? PortNameStore::loadOutInfarePortNames()
                                : PortNameStore::loadPortNames(how.mid(4).toInt());
}

} // namespace

class tst_Store : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void accountWrite_storesTextLiterally_data();
    void accountWrite_storesTextLiterally();
    void findUser_matchesExactNameAndPasswordOnly_data();
    void findUser_matchesExactNameAndPasswordOnly();
    void portName_roundTripsExactly_data();
    void portName_roundTripsExactly();
    void unusableDatabase_failsQuietlyWithoutCrash_data();
    void unusableDatabase_failsQuietlyWithoutCrash();

private:
    QStringList rowsOf(const QString &sql) const;

    QScopedPointer<QTemporaryDir> m_dir;
    QString m_path;
};

// Rows of a statement on the test's own connection, one "a|b|NULL" text per row.
QStringList tst_Store::rowsOf(const QString &sql) const
{
    QStringList rows;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "check");
        db.setDatabaseName(m_path);
        QSqlQuery query(db);
        if (!db.open() || !query.exec(sql))
            rows << "error: " + query.lastError().text() + db.lastError().text();
        while (query.next()) {
            QStringList values;
            for (int i = 0; i < query.record().count(); ++i)
                values << (query.isNull(i) ? QStringLiteral("NULL") : query.value(i).toString());
            rows << values.join('|');
        }
    }
    QSqlDatabase::removeDatabase("check");
    return rows;
}

// Every test starts as the application does on a fresh folder.
void tst_Store::init()
{
    m_dir.reset(new QTemporaryDir);
    m_path = m_dir->filePath("project.db");
    setDatabasePath(m_path);
    capturedLog().clear();
    qInstallMessageHandler(captureLog);
    AccountStore::createTables();
    PortNameStore::createPortNameTables();
}

void tst_Store::cleanup()
{
    qInstallMessageHandler(nullptr);
    QVERIFY2(QSqlDatabase::connectionNames().isEmpty(), "a connection stayed behind");
    m_dir.reset();
}

void tst_Store::accountWrite_storesTextLiterally_data()
{
    QTest::addColumn<QString>("op"); // add, update (of row 2, "bob"), remember
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("stored"); // the user row beside ADMIN, or the remember-me row
    QTest::addColumn<bool>("logged");
    auto row = [](const char *tag, const char *op, const QString &name, const QString &password, bool ok,
                  const QString &stored, bool logged = false) {
        QTest::newRow(tag) << QString(op) << name << password << ok << stored << logged;
    };

    row("add: new user", "add", "bob", "pw", true, "2|bob|NULL|pw");
    row("add: empty name", "add", "", "pw", false, "");
    row("add: empty password", "add", "bob", "", false, "");
    row("add: name taken", "add", "ADMIN", "s3cret!", false, "", true);
    row("add: quotes", "add", "O'Brien", "it's", true, "2|O'Brien|NULL|it's");
    row("add: statement break-out", "add", "x','y'); DROP TABLE user;--", "pw", true,
        "2|x','y'); DROP TABLE user;--|NULL|pw");
    row("add: Chinese", "add", QString::fromUtf8("管理员"), QString::fromUtf8("密码"), true,
        QString::fromUtf8("2|管理员|NULL|密码"));
    row("update: rename", "update", "robert", "new", true, "2|robert|NULL|new");
    row("update: onto another row's name", "update", "ADMIN", "s3cret!", false, "2|bob|NULL|pw", true);
    row("update: break-out aimed at ADMIN", "update", "x',password='owned' where id=1--", "pw", true,
        "2|x',password='owned' where id=1--|NULL|pw");
    row("remember: password with quotes", "remember", "", "x'),(2,1,'y", true, "1|1|x'),(2,1,'y");
}

void tst_Store::accountWrite_storesTextLiterally()
{
    QFETCH(QString, op);
    QFETCH(QString, name);
    QFETCH(QString, password);
    QFETCH(bool, ok);
    QFETCH(QString, stored);
    QFETCH(bool, logged);

    if (op == "add") {
        QCOMPARE(AccountStore::addUser(name, password), ok);
    } else if (op == "update") {
        QVERIFY(AccountStore::addUser("bob", "pw"));
        QCOMPARE(AccountStore::updateUser(2, name, password), ok);
    } else {
        QVERIFY(AccountStore::setRemember(true));
        QCOMPARE(AccountStore::savePassword(password), ok);
        QCOMPARE(AccountStore::rememberedPassword(), password);
        QCOMPARE(rowsOf("select * from PasswordTable"), QStringList{stored});
        return;
    }
    QCOMPARE(rowsOf("select * from user"), (stored.isEmpty() ? QStringList{Admin} : QStringList{Admin, stored}));
    QCOMPARE(failures().size(), logged ? 1 : 0);
    // A failed statement is reported with its text, never with the password.
    QVERIFY(!logged || !capturedLog().join('\n').contains(password));
}

void tst_Store::findUser_matchesExactNameAndPasswordOnly_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("found");

    QTest::newRow("exact name and password") << "ADMIN" << "tulip908" << true;
    QTest::newRow("name in lower case") << "admin" << "tulip908" << false;
    QTest::newRow("wrong password") << "ADMIN" << "tulip909" << false;
    QTest::newRow("empty name and password") << "" << "" << false;
    QTest::newRow("always-true condition as password") << "ADMIN" << "' OR '1'='1" << false;
    QTest::newRow("comment after name") << "ADMIN'--" << "anything" << false;
    QTest::newRow("quotes in stored name and password") << "O'Brien" << "it's" << true;
    QTest::newRow("quotes doubled as in SQL") << "O''Brien" << "it''s" << false;
}

void tst_Store::findUser_matchesExactNameAndPasswordOnly()
{
    QFETCH(QString, name);
    QFETCH(QString, password);
    QFETCH(bool, found);

    QVERIFY(AccountStore::addUser("O'Brien", "it's"));
    QCOMPARE(AccountStore::findUser(name, password), found);
    QCOMPARE(failures(), QStringList());
}

void tst_Store::portName_roundTripsExactly_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("name");

    QTest::newRow("video input: plain") << "kind0" << "Camera 1";
    QTest::newRow("video input: null as empty text") << "kind0" << QString();
    QTest::newRow("video input: statement break-out") << "kind0" << "x'); DROP TABLE InPortName;--";
    QTest::newRow("video output: Chinese") << "kind1" << QString::fromUtf8("会议室投影");
    QTest::newRow("audio input: quote") << "kind2" << "Bob's desk";
    QTest::newRow("audio output: surrounding blanks") << "outAudio" << "  padded  ";
    QTest::newRow("infrared output: quotes") << "outInfare" << "'';--";
}

void tst_Store::portName_roundTripsExactly()
{
    QFETCH(QString, how);
    QFETCH(QString, name);

    savePort(how, 3, "earlier name");
    savePort(how, 3, name);
    QCOMPARE(loadPorts(how), (QMap<int, QString>{{3, name}}));
    if (how != "kind0")
        QCOMPARE(PortNameStore::loadPortNames(PortNameStore::VideoInput), (QMap<int, QString>()));
    QCOMPARE(rowsOf("select count(*) from InPortName where PortName is null"), QStringList{"0"});
    QCOMPARE(failures(), QStringList());
}

void tst_Store::unusableDatabase_failsQuietlyWithoutCrash_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QByteArray>("content"); // written to the file when not empty
    QTest::addColumn<bool>("logged");

    QTest::newRow("folder does not exist") << "missing/project.db" << QByteArray() << false;
    QTest::newRow("path is a folder") << "folder" << QByteArray() << false;
    QTest::newRow("garbage file") << "garbage.db" << QByteArray(4096, 'x') << true;
    QTest::newRow("unreadable file") << "unreadable.db" << QByteArray() << true;
}

void tst_Store::unusableDatabase_failsQuietlyWithoutCrash()
{
    QFETCH(QString, setup);
    QFETCH(QByteArray, content);
    QFETCH(bool, logged);

    const QString path = m_dir->filePath(setup);
    QFile file(path);
    if (setup == "folder")
        QVERIFY(QDir(m_dir->path()).mkdir(setup));
    if (!content.isEmpty())
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();
    if (setup == "unreadable.db") {
        QVERIFY(QFile::copy(m_path, path));
        QVERIFY(QFile::setPermissions(path, QFileDevice::Permissions()));
        if (QFile(path).open(QIODevice::ReadOnly))
            QSKIP("file permissions do not stop this user (root?)");
    }
    setDatabasePath(path);
    capturedLog().clear();

    AccountStore::createTables();
    PortNameStore::createPortNameTables();
    QVERIFY(!AccountStore::addUser("bob", "pw"));
    QVERIFY(!AccountStore::savePassword("pw"));
    QCOMPARE(AccountStore::allUsers(), RowList());
    QVERIFY(!AccountStore::findUser("ADMIN", "tulip908"));
    QCOMPARE(AccountStore::loginModel(), 0);
    PortNameStore::savePortName(1, "name", PortNameStore::VideoInput);
    QCOMPARE(PortNameStore::loadPortNames(PortNameStore::VideoInput), (QMap<int, QString>()));

    QCOMPARE(!failures().isEmpty(), logged);
    QVERIFY(!QFile::exists(m_dir->filePath("missing")));
    if (!content.isEmpty()) {
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), content);
    }
}

QTEST_GUILESS_MAIN(tst_Store)
#include "tst_store.moc"
