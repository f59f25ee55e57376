#include "app/appsettings.h"
#include "device/devicerecord.h"
#include "device/messagedistance.h"
#include "fakedevice.h"
#include "login/logindialog.h"
#include "login/loginsettingdialog.h"
#include "login/usermanagerdialog.h"
#include "resources/guiresources.h"
#include "store/accountstore.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

class tst_Login : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void firstStart_prefillsAdminWithEmptyPassword();
    void enterLogsIn_whetherOrNotADeviceAnswers_data();
    void enterLogsIn_whetherOrNotADeviceAnswers();
    void wrongPassword_showsMessageThatClearsAfterTwoSeconds();
    void injectionText_logsNobodyIn_data();
    void injectionText_logsNobodyIn();
    void escape_doesNotCloseTheDialog();
    void rememberMe_roundTripsAcrossDialogs();
    void unreachableDevice_showsConnectFail();
    void lettersAsPort_giveZeroInMemory();

    void adminRow_leavesEditAndDeleteDisabled();
    void addingADuplicate_showsTheMessage();
    void differentPasswords_writeNothing();
    void deletingTheOnlyOtherAccount_leavesAdminAlone();

private:
    template<typename T>
    T *child(QWidget *parent, const char *name)
    {
        T *widget = parent->findChild<T *>(name);
        if (!widget)
            qFatal("no child %s", name);
        return widget;
    }
    QStringList tableNames(Usermanagerdialog &dialog);

    QTemporaryDir *m_dir = nullptr;
};

void tst_Login::initTestCase()
{
    initGuiResources();
}

void tst_Login::init()
{
    m_dir = new QTemporaryDir;
    setDatabasePath(m_dir->filePath("project.db"));
    AccountStore::createTables();
    QSettings(AppSettings::instance()->fileName(), QSettings::IniFormat).clear();
    AppSettings::instance()->setUsername("ADMIN");
    // Nothing listens on this address: connections fail at once.
    deviceRecord()->setDeviceIp("127.0.0.61");
    deviceRecord()->setDevicePort(1);
}

void tst_Login::cleanup()
{
    delete m_dir;
}

void tst_Login::firstStart_prefillsAdminWithEmptyPassword()
{
    LoginDialog dialog;
    QCOMPARE(child<QLineEdit>(&dialog, "usernameEdit")->text(), QString("ADMIN"));
    QCOMPARE(child<QLineEdit>(&dialog, "passwordEdit")->text(), QString());
    QVERIFY(!child<QCheckBox>(&dialog, "checkBox_memory")->isChecked());
    QCOMPARE(child<QLabel>(&dialog, "labelTip")->text(), QString());
    QCOMPARE(dialog.windowTitle(), QString("ORVEXMATRIX CONTORL"));
}

void tst_Login::enterLogsIn_whetherOrNotADeviceAnswers_data()
{
    QTest::addColumn<bool>("deviceUp");
    QTest::addColumn<int>("key");
    QTest::newRow("device up, Return") << true << int(Qt::Key_Return);
    QTest::newRow("no device, keypad Enter") << false << int(Qt::Key_Enter);
}

void tst_Login::enterLogsIn_whetherOrNotADeviceAnswers()
{
    QFETCH(bool, deviceUp);
    QFETCH(int, key);

    FakeDevice device(QHostAddress("127.0.0.62"), false);
    if (deviceUp) {
        deviceRecord()->setDeviceIp(device.host());
        deviceRecord()->setDevicePort(device.port());
    }
    LoginDialog dialog;
    dialog.open();
    QLineEdit *password = child<QLineEdit>(&dialog, "passwordEdit");
    QTest::keyClicks(password, "tulip908");
    QTest::keyClick(password, Qt::Key(key));
    QCOMPARE(dialog.result(), 1);
    QVERIFY(!dialog.isVisible());

    const QSettings ini(AppSettings::instance()->fileName(), QSettings::IniFormat);
    QCOMPARE(ini.value("NetWork/Ip").toString(), deviceRecord()->deviceIp());
    QCOMPARE(ini.value("NetWork/Port").toInt(), deviceRecord()->devicePort());
    QCOMPARE(ini.value("User/Username").toString(), QString("ADMIN"));
    QCOMPARE(AppSettings::instance()->currentUser(), QString("ADMIN"));
    if (deviceUp)
        QTRY_VERIFY(device.hasClient());
}

void tst_Login::wrongPassword_showsMessageThatClearsAfterTwoSeconds()
{
    FakeDevice device(QHostAddress("127.0.0.63"), false);
    deviceRecord()->setDeviceIp(device.host());
    deviceRecord()->setDevicePort(device.port());
    LoginDialog dialog;
    dialog.open();
    QLabel *tip = child<QLabel>(&dialog, "labelTip");
    QTest::keyClicks(child<QLineEdit>(&dialog, "passwordEdit"), "wrong");
    QTest::mouseClick(child<QPushButton>(&dialog, "btnLogin"), Qt::LeftButton);
    QCOMPARE(tip->text(), QString("username or password error!"));
    QCOMPARE(dialog.result(), 0);
    // The connection attempt goes on and reports itself; then the line clears.
    QTRY_COMPARE(tip->text(), QString("connect successful but software error!"));
    QTRY_COMPARE_WITH_TIMEOUT(tip->text(), QString(), 3000);
    QVERIFY(dialog.isVisible());
}

void tst_Login::injectionText_logsNobodyIn_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("password");
    QTest::newRow("or-true password") << "ADMIN" << "' OR '1'='1";
    QTest::newRow("or-true both") << "' OR '1'='1" << "' OR '1'='1";
    QTest::newRow("comment after name") << "ADMIN'--" << "x";
    QTest::newRow("lower-case admin") << "admin" << "tulip908";
    QTest::newRow("empty") << "" << "";
}

void tst_Login::injectionText_logsNobodyIn()
{
    QFETCH(QString, name);
    QFETCH(QString, password);

    LoginDialog dialog;
    dialog.open();
    child<QLineEdit>(&dialog, "usernameEdit")->setText(name);
    child<QLineEdit>(&dialog, "passwordEdit")->setText(password);
    QTest::mouseClick(child<QPushButton>(&dialog, "btnLogin"), Qt::LeftButton);
    QVERIFY(dialog.isVisible());
    QCOMPARE(dialog.result(), 0);
}

void tst_Login::escape_doesNotCloseTheDialog()
{
    LoginDialog dialog;
    dialog.open();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QTest::keyClick(child<QLineEdit>(&dialog, "passwordEdit"), Qt::Key_Escape);
    QVERIFY(dialog.isVisible());
    QCOMPARE(dialog.result(), 0);
}

void tst_Login::rememberMe_roundTripsAcrossDialogs()
{
    {
        LoginDialog dialog;
        dialog.open();
        child<QCheckBox>(&dialog, "checkBox_memory")->setChecked(true);
        child<QLineEdit>(&dialog, "passwordEdit")->setText("tulip908");
        QTest::mouseClick(child<QPushButton>(&dialog, "btnLogin"), Qt::LeftButton);
        QCOMPARE(dialog.result(), 1);
    }
    {
        LoginDialog dialog;
        QVERIFY(child<QCheckBox>(&dialog, "checkBox_memory")->isChecked());
        QCOMPARE(child<QLineEdit>(&dialog, "passwordEdit")->text(), QString("tulip908"));
        dialog.open();
        child<QCheckBox>(&dialog, "checkBox_memory")->setChecked(false);
        QTest::mouseClick(child<QPushButton>(&dialog, "btnLogin"), Qt::LeftButton);
        QCOMPARE(dialog.result(), 1);
    }
    LoginDialog dialog;
    QVERIFY(!child<QCheckBox>(&dialog, "checkBox_memory")->isChecked());
    QCOMPARE(child<QLineEdit>(&dialog, "passwordEdit")->text(), QString());
}

void tst_Login::unreachableDevice_showsConnectFail()
{
    LoginDialog dialog;
    dialog.open();
    child<QLineEdit>(&dialog, "passwordEdit")->setText("nope");
    QTest::mouseClick(child<QPushButton>(&dialog, "btnLogin"), Qt::LeftButton);
    QTRY_COMPARE(dialog.tipText(), QString("connect fail!"));
}

void tst_Login::lettersAsPort_giveZeroInMemory()
{
    deviceRecord()->setDeviceIp("10.1.2.3");
    deviceRecord()->setDevicePort(5000);
    LoginSettingDialog dialog;
    QCOMPARE(child<QLineEdit>(&dialog, "DeviceIP")->text(), QString("10.1.2.3"));
    QCOMPARE(child<QLineEdit>(&dialog, "DevicePort")->text(), QString("5000"));
    dialog.open();
    child<QLineEdit>(&dialog, "DeviceIP")->setText("not an address");
    child<QLineEdit>(&dialog, "DevicePort")->setText("abc");
    QTest::mouseClick(child<QPushButton>(&dialog, "btnOK"), Qt::LeftButton);
    QCOMPARE(dialog.result(), 1);
    QCOMPARE(deviceRecord()->devicePort(), 0);
    QCOMPARE(deviceRecord()->deviceIp(), QString("not an address"));
    // Nothing reaches config.ini until the next login.
    QVERIFY(!QSettings(AppSettings::instance()->fileName(), QSettings::IniFormat).contains("NetWork/Port"));
}

QStringList tst_Login::tableNames(Usermanagerdialog &dialog)
{
    auto *table = child<QTableWidget>(&dialog, "tableWidget");
    QStringList names;
    for (int row = 0; row < table->rowCount(); ++row)
        names << table->item(row, 1)->text();
    return names;
}

void tst_Login::adminRow_leavesEditAndDeleteDisabled()
{
    QVERIFY(AccountStore::addUser("op", "pw"));
    Usermanagerdialog dialog;
    dialog.show();
    auto *table = child<QTableWidget>(&dialog, "tableWidget");
    QCOMPARE(tableNames(dialog), (QStringList{"ADMIN", "op"}));

    emit table->cellClicked(1, 1);
    QVERIFY(child<QPushButton>(&dialog, "btnEdit")->isEnabled());
    QVERIFY(child<QPushButton>(&dialog, "btnDel")->isEnabled());
    QCOMPARE(child<QLineEdit>(&dialog, "usernameEdit")->text(), QString("op"));

    emit table->cellClicked(0, 0);
    QVERIFY(!child<QPushButton>(&dialog, "btnEdit")->isEnabled());
    QVERIFY(!child<QPushButton>(&dialog, "btnDel")->isEnabled());
    QVERIFY(!child<QPushButton>(&dialog, "btnSave")->isEnabled());
    QVERIFY(child<QPushButton>(&dialog, "btnAdd")->isEnabled());
    QCOMPARE(child<QLineEdit>(&dialog, "usernameEdit")->text(), QString());
}

void tst_Login::addingADuplicate_showsTheMessage()
{
    Usermanagerdialog dialog;
    dialog.show();
    for (int round = 0; round < 2; ++round) {
        QTest::mouseClick(child<QPushButton>(&dialog, "btnAdd"), Qt::LeftButton);
        QVERIFY(child<QLineEdit>(&dialog, "usernameEdit")->isEnabled());
        QTest::keyClicks(child<QLineEdit>(&dialog, "usernameEdit"), "O'Brien");
        QTest::keyClicks(child<QLineEdit>(&dialog, "passwordEdit"), "pw");
        QTest::keyClicks(child<QLineEdit>(&dialog, "repeatEdit"), "pw ");
        QTest::mouseClick(child<QPushButton>(&dialog, "btnSave"), Qt::LeftButton);
    }
    QCOMPARE(child<QLabel>(&dialog, "tipLabel")->text(), QString("user have exsits!"));
    QCOMPARE(tableNames(dialog), (QStringList{"ADMIN", "O'Brien"}));
    QVERIFY(AccountStore::findUser("O'Brien", "pw"));
    QTRY_COMPARE_WITH_TIMEOUT(child<QLabel>(&dialog, "tipLabel")->text(), QString(), 3500);
}

void tst_Login::differentPasswords_writeNothing()
{
    Usermanagerdialog dialog;
    dialog.show();
    QTest::mouseClick(child<QPushButton>(&dialog, "btnAdd"), Qt::LeftButton);
    QTest::keyClicks(child<QLineEdit>(&dialog, "usernameEdit"), "op");
    QTest::keyClicks(child<QLineEdit>(&dialog, "passwordEdit"), "one");
    QTest::keyClicks(child<QLineEdit>(&dialog, "repeatEdit"), "two");
    QTest::mouseClick(child<QPushButton>(&dialog, "btnSave"), Qt::LeftButton);
    QCOMPARE(child<QLabel>(&dialog, "tipLabel")->text(), QString("two password not equation!"));
    QCOMPARE(AccountStore::allUsers().size(), 1);
}

void tst_Login::deletingTheOnlyOtherAccount_leavesAdminAlone()
{
    QVERIFY(AccountStore::addUser("op", "pw"));
    Usermanagerdialog dialog;
    dialog.show();
    auto *table = child<QTableWidget>(&dialog, "tableWidget");
    table->setCurrentCell(1, 1);
    emit table->cellClicked(1, 1);
    QTest::mouseClick(child<QPushButton>(&dialog, "btnDel"), Qt::LeftButton);
    QCOMPARE(tableNames(dialog), QStringList{"ADMIN"});
    QCOMPARE(AccountStore::allUsers().size(), 1);
    QVERIFY(AccountStore::findUser("ADMIN", "tulip908"));
}

QTEST_MAIN(tst_Login)
#include "tst_login.moc"
