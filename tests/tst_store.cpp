#include "device/devicerecord.h"
#include "store/accountstore.h"
#include "store/database.h"
#include "store/portnamestore.h"
#include "logcapture.h"

#include <QDir>
#include <QFile>
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
    QStringList found;
    for (const QString &message : qAsConst(capturedLog())) {
        if (message.contains(QLatin1String("exe sqlstatement failure!")) || message.startsWith(QString::fromUtf8("执行错误")))
            found << message;
    }
    return found;
}

const QString Admin = QStringLiteral("1|ADMIN|0|tulip908");
const QStringList PortTables = {"InPortName", "InAudioName", "OutPortName", "OutAudioPortName", "OutInfarePortName"};

// Writes and reads port names by a short code: "kind<N>", "outAudio" or "outInfare".
void savePort(const QString &how, int port, const QString &name)
{
    if (how == "outAudio")
        PortNameStore::saveOutAudioPortName(port, name);
    else if (how == "outInfare")
        PortNameStore::saveOutInfarePortName(port, name);
    else
        PortNameStore::savePortName(port, name, how.mid(4).toInt());
}

QMap<int, QString> loadPorts(const QString &how)
{
    if (how == "outAudio")
        return PortNameStore::loadOutAudioPortNames();
    if (how == "outInfare")
        return PortNameStore::loadOutInfarePortNames();
    return PortNameStore::loadPortNames(how.mid(4).toInt());
}

} // namespace

class tst_Store : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void createTables_onEmptyFolder_seedsAdminOnly();
    void createTablesAgain_keepsOneAdmin_data();
    void createTablesAgain_keepsOneAdmin();
    void findUser_matchesExactNameAndPasswordOnly_data();
    void findUser_matchesExactNameAndPasswordOnly();
    void emptyHandle_reachesTheStore();
    void loginModel_onFreshDatabase_createsRowWithZero();
    void setLoginModel_isReadBack_data();
    void setLoginModel_isReadBack();
    void rememberMe_leavesRowState_data();
    void rememberMe_leavesRowState();
    void addUser_storesNewNamesExactly_data();
    void addUser_storesNewNamesExactly();
    void updateUser_changesOnlyItsRow_data();
    void updateUser_changesOnlyItsRow();
    void deleteUser_succeedsEvenForMissingId_data();
    void deleteUser_succeedsEvenForMissingId();
    void failure_isLoggedWithStatementButNoPassword_data();
    void failure_isLoggedWithStatementButNoPassword();

    void portName_roundTripsExactly_data();
    void portName_roundTripsExactly();
    void savingPortTwice_keepsSecondName();
    void savePortName_writesOnlyItsTable_data();
    void savePortName_writesOnlyItsTable();
    void loadPortNames_readsTableOfKind_data();
    void loadPortNames_readsTableOfKind();

    void unusableDatabase_failsQuietlyWithoutCrash_data();
    void unusableDatabase_failsQuietlyWithoutCrash();

    void deviceRecord_startsAsLargestModelWithEmptyState();
    void settingMap_replacesItWhole_data();
    void settingMap_replacesItWhole();

private:
    // Rows of a statement on the test's own connection, one "a|b|NULL" text per row.
    QStringList rowsOf(const QString &sql) const;

    QScopedPointer<QTemporaryDir> m_dir;
    QString m_path;
};

QStringList tst_Store::rowsOf(const QString &sql) const
{
    QStringList rows;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "check");
        db.setDatabaseName(m_path);
        if (!db.open())
            return {"cannot open"};
        QSqlQuery query(db);
        if (!query.exec(sql))
            rows << "error: " + query.lastError().text();
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

void tst_Store::createTables_onEmptyFolder_seedsAdminOnly()
{
    QCOMPARE(rowsOf("select name from sqlite_master where type='table' order by name"),
             QStringList({"InAudioName", "InPortName", "OutAudioPortName", "OutInfarePortName", "OutPortName",
                          "PasswordTable", "loginmodel", "user"}));
    QCOMPARE(rowsOf("select * from user"), QStringList{Admin});
    QCOMPARE(rowsOf("select * from loginmodel"), QStringList());
    QCOMPARE(rowsOf("select * from PasswordTable"), QStringList());
    QCOMPARE(AccountStore::allUsers(), RowList({{1, "ADMIN", 0, "tulip908"}}));
    QCOMPARE(failures(), QStringList());
}

void tst_Store::createTablesAgain_keepsOneAdmin_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("admin");

    QTest::newRow("second start") << "" << Admin;
    QTest::newRow("changed password is kept") << "change" << "1|ADMIN|0|changed";
    QTest::newRow("deleted ADMIN returns with default password") << "delete" << Admin;
}

void tst_Store::createTablesAgain_keepsOneAdmin()
{
    QFETCH(QString, before);
    QFETCH(QString, admin);

    if (before == "change")
        QVERIFY(AccountStore::updateUser(1, "ADMIN", "changed"));
    if (before == "delete")
        QVERIFY(AccountStore::deleteUser(1));
    AccountStore::createTables();
    QCOMPARE(rowsOf("select * from user"), QStringList{admin});
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
    QTest::newRow("always-true condition as both") << "' OR '1'='1" << "' OR '1'='1" << false;
    QTest::newRow("always-true condition as password") << "ADMIN" << "' OR '1'='1" << false;
    QTest::newRow("comment after name") << "ADMIN'--" << "anything" << false;
    QTest::newRow("comment after name, empty password") << "ADMIN'--" << "" << false;
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

// The login dialog keeps an AccountStore pointer that is never assigned.
void tst_Store::emptyHandle_reachesTheStore()
{
    AccountStore *store = nullptr;
    QVERIFY(store->findUser("ADMIN", "tulip908"));
}

void tst_Store::loginModel_onFreshDatabase_createsRowWithZero()
{
    QCOMPARE(AccountStore::loginModel(), 0);
    QCOMPARE(rowsOf("select * from loginmodel"), QStringList{"1|0"});
    QCOMPARE(AccountStore::loginModel(), 0);
    QCOMPARE(rowsOf("select * from loginmodel"), QStringList{"1|0"});
}

void tst_Store::setLoginModel_isReadBack_data()
{
    QTest::addColumn<bool>("rowExists");
    QTest::addColumn<int>("model");
    QTest::addColumn<int>("expected");

    QTest::newRow("skip login") << true << 1 << 1;
    QTest::newRow("show login again") << true << 0 << 0;
    QTest::newRow("any other value skips too") << true << 7 << 7;
    QTest::newRow("before the first read nothing is stored") << false << 1 << 0;
}

void tst_Store::setLoginModel_isReadBack()
{
    QFETCH(bool, rowExists);
    QFETCH(int, model);
    QFETCH(int, expected);

    if (rowExists)
        AccountStore::setLoginModel(AccountStore::loginModel() == 0 ? 1 : 0);
    QVERIFY(AccountStore::setLoginModel(model));
    QCOMPARE(AccountStore::loginModel(), expected);
}

void tst_Store::rememberMe_leavesRowState_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<bool>("remembered");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QStringList>("rows");

    QTest::newRow("nothing stored yet") << QStringList() << false << "" << QStringList();
    QTest::newRow("ticked with password") << QStringList{"tick", "save:x"} << true << "x" << QStringList{"1|1|x"};
    QTest::newRow("unticking forgets the password")
        << QStringList{"tick", "save:x", "untick"} << false << "" << QStringList{"1|0|NULL"};
    QTest::newRow("ticked without password") << QStringList{"tick"} << true << "" << QStringList{"1|1|NULL"};
    QTest::newRow("password with quotes")
        << QStringList{"tick", "save:x'),(2,1,'y"} << true << "x'),(2,1,'y" << QStringList{"1|1|x'),(2,1,'y"};
}

void tst_Store::rememberMe_leavesRowState()
{
    QFETCH(QStringList, steps);
    QFETCH(bool, remembered);
    QFETCH(QString, password);
    QFETCH(QStringList, rows);

    for (const QString &step : steps) {
        if (step.startsWith("save:"))
            QVERIFY(AccountStore::savePassword(step.mid(5)));
        else
            QVERIFY(AccountStore::setRemember(step == "tick"));
    }
    QCOMPARE(AccountStore::isRemember(), remembered);
    QCOMPARE(AccountStore::rememberedPassword(), password);
    QCOMPARE(rowsOf("select * from PasswordTable"), rows);
}

void tst_Store::addUser_storesNewNamesExactly_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("added");
    QTest::addColumn<bool>("logged");

    QTest::newRow("new user") << "bob" << "pw" << true << false;
    QTest::newRow("empty name") << "" << "pw" << false << false;
    QTest::newRow("null name") << QString() << "pw" << false << false;
    QTest::newRow("empty password") << "bob" << "" << false << false;
    QTest::newRow("name taken") << "ADMIN" << "pw" << false << true;
    QTest::newRow("name differing only in case") << "admin" << "pw" << true << false;
    QTest::newRow("quotes") << "O'Brien" << "it's" << true << false;
    QTest::newRow("statement break-out") << "x','y'); DROP TABLE user;--" << "pw" << true << false;
    QTest::newRow("comment after taken name") << "ADMIN'--" << "pw" << true << false;
    QTest::newRow("Chinese") << QString::fromUtf8("管理员") << QString::fromUtf8("密码") << true << false;
}

void tst_Store::addUser_storesNewNamesExactly()
{
    QFETCH(QString, name);
    QFETCH(QString, password);
    QFETCH(bool, added);
    QFETCH(bool, logged);

    QCOMPARE(AccountStore::addUser(name, password), added);
    QStringList users{Admin};
    if (added)
        users << QString("2|%1|NULL|%2").arg(name, password);
    QCOMPARE(rowsOf("select * from user"), users);
    QCOMPARE(failures().size(), logged ? 1 : 0);
}

void tst_Store::updateUser_changesOnlyItsRow_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("bob");

    QTest::newRow("rename") << 2 << "robert" << "new" << true << "2|robert|NULL|new";
    QTest::newRow("onto another row's name") << 2 << "ADMIN" << "x" << false << "2|bob|NULL|pw";
    QTest::newRow("missing id") << 99 << "ghost" << "x" << true << "2|bob|NULL|pw";
    QTest::newRow("quotes") << 2 << "O'Brien" << "it's" << true << "2|O'Brien|NULL|it's";
    QTest::newRow("break-out aimed at ADMIN")
        << 2 << "x',password='owned' where id=1--" << "pw" << true << "2|x',password='owned' where id=1--|NULL|pw";
    QTest::newRow("null password as empty text") << 2 << "bob" << QString() << true << "2|bob|NULL|";
}

void tst_Store::updateUser_changesOnlyItsRow()
{
    QFETCH(int, id);
    QFETCH(QString, name);
    QFETCH(QString, password);
    QFETCH(bool, ok);
    QFETCH(QString, bob);

    QVERIFY(AccountStore::addUser("bob", "pw"));
    QCOMPARE(AccountStore::updateUser(id, name, password), ok);
    QCOMPARE(rowsOf("select * from user"), QStringList({Admin, bob}));
    QCOMPARE(failures().size(), ok ? 0 : 1);
}

void tst_Store::deleteUser_succeedsEvenForMissingId_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QStringList>("users");

    QTest::newRow("existing id") << 2 << QStringList{Admin};
    QTest::newRow("missing id") << 99 << QStringList{Admin, "2|bob|NULL|pw"};
    QTest::newRow("negative id") << -1 << QStringList{Admin, "2|bob|NULL|pw"};
}

void tst_Store::deleteUser_succeedsEvenForMissingId()
{
    QFETCH(int, id);
    QFETCH(QStringList, users);

    QVERIFY(AccountStore::addUser("bob", "pw"));
    QVERIFY(AccountStore::deleteUser(id));
    QCOMPARE(rowsOf("select * from user"), users);
}

void tst_Store::failure_isLoggedWithStatementButNoPassword_data()
{
    QTest::addColumn<bool>("write");
    QTest::addColumn<QStringList>("parts");

    QTest::newRow("write") << true
                           << QStringList{" exe sqlstatement failure!\n detail:\ndbPath: \"<path>\"",
                                          "\n error: \"UNIQUE constraint failed: user.username",
                                          "\n sql statement: \"INSERT INTO user (username,password) VALUES (?,?)\""};
    QTest::newRow("read") << false
                          << QStringList{QString::fromUtf8("执行错误"),
                                         "\"Select * from user where username=? and password=?\"", "  ",
                                         "\"no such table: user"};
}

void tst_Store::failure_isLoggedWithStatementButNoPassword()
{
    QFETCH(bool, write);
    QFETCH(QStringList, parts);

    if (write) {
        QVERIFY(!AccountStore::addUser("ADMIN", "secret"));
    } else {
        QCOMPARE(rowsOf("drop table user"), QStringList());
        QVERIFY(!AccountStore::findUser("ADMIN", "secret"));
    }
    QCOMPARE(failures().size(), 1);
    const QString message = failures().first();
    int from = 0;
    for (QString part : parts) {
        from = message.indexOf(part.replace("<path>", m_path), from);
        QVERIFY2(from >= 0, qPrintable(part + " missing or out of order in: " + message));
    }
    QVERIFY(!message.contains("secret"));
}

void tst_Store::portName_roundTripsExactly_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("plain") << "Camera 1";
    QTest::newRow("empty") << "";
    QTest::newRow("null as empty text") << QString();
    QTest::newRow("Chinese") << QString::fromUtf8("会议室投影");
    QTest::newRow("quote") << "Bob's desk";
    QTest::newRow("statement break-out") << "x'); DROP TABLE InPortName;--";
    QTest::newRow("surrounding blanks") << "  padded  ";
}

void tst_Store::portName_roundTripsExactly()
{
    QFETCH(QString, name);

    PortNameStore::savePortName(3, name, PortNameStore::VideoInput);
    QCOMPARE(PortNameStore::loadPortNames(PortNameStore::VideoInput), (QMap<int, QString>{{3, name}}));
    QCOMPARE(rowsOf("select Port, typeof(PortName), PortName from InPortName"), QStringList{"3|text|" + name});
    QCOMPARE(failures(), QStringList());
}

void tst_Store::savingPortTwice_keepsSecondName()
{
    PortNameStore::savePortName(3, "first", PortNameStore::VideoOutput);
    PortNameStore::savePortName(3, "second", PortNameStore::VideoOutput);
    QCOMPARE(rowsOf("select * from OutPortName"), QStringList{"3|second"});
}

void tst_Store::savePortName_writesOnlyItsTable_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("table");

    QTest::newRow("kind 0: video inputs") << "kind0" << "InPortName";
    QTest::newRow("kind 1: video outputs") << "kind1" << "OutPortName";
    QTest::newRow("kind 2: audio inputs") << "kind2" << "InAudioName";
    QTest::newRow("audio outputs") << "outAudio" << "OutAudioPortName";
    QTest::newRow("infrared outputs") << "outInfare" << "OutInfarePortName";
    QTest::newRow("kind 5: nothing") << "kind5" << "";
    QTest::newRow("kind -1: nothing") << "kind-1" << "";
}

void tst_Store::savePortName_writesOnlyItsTable()
{
    QFETCH(QString, how);
    QFETCH(QString, table);

    savePort(how, 4, "named");
    for (const QString &each : PortTables)
        QCOMPARE(rowsOf("select * from " + each), each == table ? QStringList{"4|named"} : QStringList());
    QCOMPARE(failures(), QStringList());
}

void tst_Store::loadPortNames_readsTableOfKind_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("table");

    QTest::newRow("kind 0") << "kind0" << "InPortName";
    QTest::newRow("kind 1") << "kind1" << "OutPortName";
    QTest::newRow("kind 2") << "kind2" << "InAudioName";
    QTest::newRow("kind 7 reads video outputs") << "kind7" << "OutPortName";
    QTest::newRow("kind -1 reads video outputs") << "kind-1" << "OutPortName";
    QTest::newRow("audio outputs") << "outAudio" << "OutAudioPortName";
    QTest::newRow("infrared outputs") << "outInfare" << "OutInfarePortName";
}

void tst_Store::loadPortNames_readsTableOfKind()
{
    QFETCH(QString, how);
    QFETCH(QString, table);

    for (const QString &each : PortTables) {
        QCOMPARE(rowsOf(QString("insert into %1 values(2, '%1')").arg(each)), QStringList());
        QCOMPARE(rowsOf(QString("insert into %1 values(1, '%1 first')").arg(each)), QStringList());
    }
    const QMap<int, QString> names = loadPorts(how);
    QCOMPARE(names, (QMap<int, QString>{{1, table + " first"}, {2, table}}));
}

void tst_Store::unusableDatabase_failsQuietlyWithoutCrash_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<bool>("logged");

    QTest::newRow("folder does not exist") << "missing/project.db" << false;
    QTest::newRow("path is a folder") << "folder" << false;
    QTest::newRow("file is not a database") << "garbage.db" << true;
}

void tst_Store::unusableDatabase_failsQuietlyWithoutCrash()
{
    QFETCH(QString, setup);
    QFETCH(bool, logged);

    const QString path = m_dir->filePath(setup);
    if (setup == "folder")
        QVERIFY(QDir(m_dir->path()).mkdir(setup));
    const QByteArray garbage(4096, 'x');
    if (setup == "garbage.db") {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(garbage);
    }
    setDatabasePath(path);
    capturedLog().clear();

    AccountStore::createTables();
    PortNameStore::createPortNameTables();
    QVERIFY(!AccountStore::addUser("bob", "pw"));
    QVERIFY(!AccountStore::updateUser(1, "bob", "pw"));
    QVERIFY(!AccountStore::deleteUser(1));
    QVERIFY(!AccountStore::setRemember(true));
    QVERIFY(!AccountStore::savePassword("pw"));
    QVERIFY(!AccountStore::setLoginModel(1));
    QCOMPARE(AccountStore::allUsers(), RowList());
    QVERIFY(!AccountStore::findUser("ADMIN", "tulip908"));
    QCOMPARE(AccountStore::loginModel(), 0);
    QVERIFY(!AccountStore::isRemember());
    QCOMPARE(AccountStore::rememberedPassword(), QString());
    PortNameStore::savePortName(1, "name", PortNameStore::VideoInput);
    PortNameStore::saveOutAudioPortName(1, "name");
    QCOMPARE(PortNameStore::loadPortNames(PortNameStore::VideoInput), (QMap<int, QString>()));
    QCOMPARE(PortNameStore::loadOutInfarePortNames(), (QMap<int, QString>()));

    QCOMPARE(!failures().isEmpty(), logged);
    QVERIFY(!QFile::exists(m_dir->filePath("missing")));
    if (setup == "garbage.db") {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), garbage);
    }
}

void tst_Store::deviceRecord_startsAsLargestModelWithEmptyState()
{
    QCOMPARE(deviceRecord(), deviceRecord());
    const DeviceRecord &record = *deviceRecord();
    QCOMPARE(record.modelFlag(), 1);
    QCOMPARE(record.joinMode(), 6);
    QCOMPARE(record.devicePort(), 0);
    QVERIFY(record.modelType().isEmpty() && record.fpgaVersion().isEmpty() && record.deviceIp().isEmpty());
    QVERIFY(record.videoMap().isEmpty() && record.inputSignalMap().isEmpty() && record.osdRecords().isEmpty());

    const OverlayRecord caption = record.captionRecord();
    QCOMPARE(caption.enabled, false);
    QCOMPARE(caption.speed, 0);
    QCOMPARE(caption.textColor, QString("255,255,255"));
    QCOMPARE(caption.positionX + caption.positionY, 0);
    QCOMPARE(caption.backgroundEnabled, false);
    QCOMPARE(caption.backgroundColor, QString("255,255,255"));
    QCOMPARE(caption.direction, QString("left"));
}

void tst_Store::settingMap_replacesItWhole_data()
{
    QTest::addColumn<QString>("map");

    QTest::newRow("video") << "video";
    QTest::newRow("audio") << "audio";
    QTest::newRow("IR") << "ir";
    QTest::newRow("volume") << "volume";
}

void tst_Store::settingMap_replacesItWhole()
{
    QFETCH(QString, map);

    using Get = QMap<int, int> (DeviceRecord::*)() const;
    using Set = void (DeviceRecord::*)(const QMap<int, int> &);
    const QHash<QString, QPair<Get, Set>> fields{
        {"video", {&DeviceRecord::videoMap, &DeviceRecord::setVideoMap}},
        {"audio", {&DeviceRecord::audioMap, &DeviceRecord::setAudioMap}},
        {"ir", {&DeviceRecord::irMap, &DeviceRecord::setIrMap}},
        {"volume", {&DeviceRecord::volumeMap, &DeviceRecord::setVolumeMap}},
    };
    const Get get = fields.value(map).first;
    const Set set = fields.value(map).second;

    DeviceRecord record;
    (record.*set)({{1, 1}, {2, 2}, {9, 9}});
    (record.*set)({{1, 5}});
    QMap<int, int> copy = (record.*get)();
    copy.insert(7, 7);
    QCOMPARE((record.*get)(), (QMap<int, int>{{1, 5}}));
}

QTEST_GUILESS_MAIN(tst_Store)
#include "tst_store.moc"
