// The login, device-address and user-management dialogs on a fresh project.db and
// config.ini, against a fake device on a loopback address of this suite's own.
#include "app/appsettings.h"
#include "device/devicerecord.h"
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

namespace {

template<typename T = QLineEdit>
T *child(QWidget *parent, const char *name)
{
    T *widget = parent->findChild<T *>(name);
    return widget ? widget : (qFatal("no child %s", name), nullptr);
}

void click(QWidget *parent, const char *button)
{
    QTest::mouseClick(child<QPushButton>(parent, button), Qt::LeftButton);
}

// config.ini as the next start of the application reads it.
QVariant iniValue(const QString &key)
{
    return QSettings(AppSettings::instance()->fileName(), QSettings::IniFormat).value(key);
}

// After a refused save the form stays open (Add disabled): the texts are replaced, not typed on.
void fillAndSave(QWidget *dialog, const char *button, const QString &name, const QString &password, const QString &repeat)
{
    click(dialog, button);
    child(dialog, "usernameEdit")->setText(name);
    child(dialog, "passwordEdit")->setText(password);
    child(dialog, "repeatEdit")->setText(repeat);
    click(dialog, "btnSave");
}

} // namespace

class tst_Login : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initGuiResources(); }

    void init()
    {
        m_dir.reset(new QTemporaryDir);
        setDatabasePath(m_dir->filePath("project.db"));
        AccountStore::createTables();
        QSettings(AppSettings::instance()->fileName(), QSettings::IniFormat).clear();
        AppSettings::instance()->setUsername("ADMIN");
        // Nothing listens on this address: connections fail at once.
        deviceRecord()->setDeviceIp("127.0.0.61");
        deviceRecord()->setDevicePort(1);
    }

    void cleanup() { m_dir.reset(); }

    void login_acceptsOnlyTheExactAccount_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("password");
        QTest::addColumn<int>("key"); // 0: the login button
        QTest::addColumn<bool>("deviceUp");
        QTest::addColumn<QString>("tip"); // once the connection attempt is answered; empty: logged in
        const QString answered = "connect successful but software error!";
        QTest::newRow("Return") << "ADMIN" << "tulip908" << int(Qt::Key_Return) << true << "";
        QTest::newRow("keypad Enter, no device") << "ADMIN" << "tulip908" << int(Qt::Key_Enter) << false << "";
        QTest::newRow("wrong password") << "ADMIN" << "tulip909" << 0 << true << answered;
        QTest::newRow("or-true password") << "ADMIN" << "' OR '1'='1" << 0 << true << answered;
        QTest::newRow("comment after name") << "ADMIN'--" << "x" << int(Qt::Key_Return) << false << "connect fail!";
        QTest::newRow("lower-case name") << "admin" << "tulip908" << 0 << false << "connect fail!";
    }

    void login_acceptsOnlyTheExactAccount()
    {
        QFETCH(QString, name);
        QFETCH(QString, password);
        QFETCH(int, key);
        QFETCH(bool, deviceUp);
        QFETCH(QString, tip);
        const bool accepted = tip.isEmpty();
        FakeDevice device(QHostAddress("127.0.0.62"), false);
        if (deviceUp) {
            // The address dialog changes only memory; config.ini waits for the login.
            LoginSettingDialog settings;
            QCOMPARE(child(&settings, "DeviceIP")->text(), QString("127.0.0.61"));
            child(&settings, "DeviceIP")->setText(device.host());
            child(&settings, "DevicePort")->setText(QString::number(device.port()));
            click(&settings, "btnOK");
            QVERIFY(!iniValue("NetWork/Port").isValid());
        }
        LoginDialog dialog;
        dialog.open();
        child(&dialog, "usernameEdit")->setText(name);
        QTest::keyClicks(child(&dialog, "passwordEdit"), password);
        QTest::keyClick(child(&dialog, "passwordEdit"), Qt::Key_Escape); // ignored: only the close button closes
        key ? QTest::keyClick(child(&dialog, "passwordEdit"), Qt::Key(key)) : click(&dialog, "btnLogin");
        QCOMPARE(dialog.result(), int(accepted));
        QCOMPARE(dialog.isVisible(), !accepted);
        if (accepted) {
            QCOMPARE(iniValue("NetWork/Ip").toString(), deviceRecord()->deviceIp());
            QCOMPARE(iniValue("NetWork/Port").toInt(), deviceRecord()->devicePort());
            QCOMPARE(iniValue("User/Username").toString(), name);
            QCOMPARE(AppSettings::instance()->currentUser(), name);
        } else {
            // Credentials are checked locally; the device is dialled either way.
            QCOMPARE(dialog.tipText(), QString("username or password error!"));
            QTRY_COMPARE(dialog.tipText(), tip);
        }
        if (deviceUp)
            QTRY_VERIFY(device.hasClient());
        // The tip clears after 2 s; an unreachable device repeats its failure every reconnect round.
        if (deviceUp && !accepted)
            QTRY_COMPARE_WITH_TIMEOUT(dialog.tipText(), QString(), 3000);
    }

    // The remembered password must come back exactly, quotes included, and only while remembered.
    void rememberMe_roundTripsAcrossDialogs()
    {
        const QString secret = "x'),(2,1,'y";
        QVERIFY(AccountStore::addUser("O'Brien", secret));
        AppSettings::instance()->setUsername("O'Brien");
        bool remembered = false; // as the previous login left it
        for (bool remember : {true, false, false}) {
            LoginDialog dialog;
            QCOMPARE(child(&dialog, "usernameEdit")->text(), QString("O'Brien"));
            QCOMPARE(child<QCheckBox>(&dialog, "checkBox_memory")->isChecked(), remembered);
            QCOMPARE(child(&dialog, "passwordEdit")->text(), remembered ? secret : QString());
            dialog.open();
            child<QCheckBox>(&dialog, "checkBox_memory")->setChecked(remembered = remember);
            child(&dialog, "passwordEdit")->setText(secret);
            click(&dialog, "btnLogin");
            QCOMPARE(dialog.result(), 1);
        }
    }

    void userManager_addsEditsAndDeletes_butNeverAdmin()
    {
        Usermanagerdialog dialog;
        dialog.show();
        auto *table = child<QTableWidget>(&dialog, "tableWidget");
        auto clickRow = [table](int row) { QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                                                             table->visualItemRect(table->item(row, 1)).center()); };
        // Blanks around the repeated password do not count; the quote reaches project.db intact.
        fillAndSave(&dialog, "btnAdd", "O'Brien", "it's", " it's ");
        fillAndSave(&dialog, "btnAdd", "O'Brien", "pw", "pw");
        QCOMPARE(child<QLabel>(&dialog, "tipLabel")->text(), QString("user have exsits!"));
        fillAndSave(&dialog, "btnAdd", "op", "one", "two");
        QCOMPARE(child<QLabel>(&dialog, "tipLabel")->text(), QString("two password not equation!"));
        QCOMPARE(table->rowCount(), 2);
        QVERIFY(AccountStore::findUser("O'Brien", "it's"));

        clickRow(0);
        QVERIFY(!child<QPushButton>(&dialog, "btnEdit")->isEnabled() && !child<QPushButton>(&dialog, "btnDel")->isEnabled());
        clickRow(1);
        fillAndSave(&dialog, "btnEdit", "O'Neil", "new", "new");
        QCOMPARE(table->item(1, 1)->text(), QString("O'Neil"));
        QVERIFY(AccountStore::findUser("O'Neil", "new"));
        clickRow(1);
        click(&dialog, "btnDel");
        QCOMPARE(table->rowCount(), 1);
        QCOMPARE(AccountStore::allUsers().size(), 1);
        QVERIFY(AccountStore::findUser("ADMIN", "tulip908"));
    }

    // Add, Edit, Delete, Save, Cancel are enabled only when they can act; the fields show the selected row.
    void userManager_buttonsAndFieldsFollowTheSelection()
    {
        Usermanagerdialog dialog;
        dialog.show();
        auto state = [&dialog] {
            QString text;
            for (const char *name : {"btnAdd", "btnEdit", "btnDel", "btnSave", "btnCancel"})
                text += child<QPushButton>(&dialog, name)->isEnabled() ? '1' : '0';
            return text + ' ' + child(&dialog, "usernameEdit")->text() + child(&dialog, "passwordEdit")->text();
        };
        fillAndSave(&dialog, "btnAdd", "op", "pw", "pw");
        QCOMPARE(state(), QString("11100 op"));
        fillAndSave(&dialog, "btnEdit", "op2", "pw2", "pw2"); // Edit right after Save edits the saved account
        QVERIFY(AccountStore::findUser("op2", "pw2"));
        click(&dialog, "btnAdd");
        child(&dialog, "passwordEdit")->setText("typed");
        QCOMPARE(state(), QString("00011 typed"));
        click(&dialog, "btnCancel");
        QCOMPARE(state(), QString("11100 op2"));
        child<QTableWidget>(&dialog, "tableWidget")->setCurrentCell(0, 1);
        QCOMPARE(state(), QString("10000 "));
    }

private:
    QScopedPointer<QTemporaryDir> m_dir;
};

QTEST_MAIN(tst_Login)
#include "tst_login.moc"
