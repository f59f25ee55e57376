#include "store/accountstore.h"

StoreState AccountStore::createTables()
{
    const QString path = databasePath();
    // Every statement would fail on such a file, each after its own wait.
    const StoreState state = probeDatabase(path);
    if (state != StoreState::Readable)
        return state;
    // Each statement runs even if the one before failed. The seeding is ignored
    // while a row named ADMIN exists: a changed password survives restarts, a
    // deleted ADMIN comes back with the default one.
    executeSql(QStringLiteral("create table if not exists user("
                              " id integer primary key,"
                              " username text unique,"
                              " type integer,"
                              " password text not null)"),
               path);
    executeSql(QStringLiteral("INSERT OR  IGNORE INTO user (username,password,type) VALUES ('ADMIN','tulip908',0)"),
               path);
    executeSql(QStringLiteral("create table if not exists loginmodel("
                              " id integer primary key,"
                              " model integer not null)"),
               path);
    executeSql(QStringLiteral("create table if not exists PasswordTable("
                              " id integer primary key,"
                              " isRemember integer,"
                              " password text )"),
               path);
    return state;
}

bool AccountStore::addUser(const QString &name, const QString &password)
{
    if (name.isEmpty() || password.isEmpty())
        return false;
    return executeSql(QStringLiteral("INSERT INTO user (username,password) VALUES (?,?)"), {name, password},
                      databasePath());
}

bool AccountStore::deleteUser(int id)
{
    return executeSql(QStringLiteral("delete from user where id=%1").arg(id), databasePath());
}

bool AccountStore::updateUser(int id, const QString &name, const QString &password)
{
    return executeSql(QStringLiteral("Update user set username=?,password=? where id=%1").arg(id), {name, password},
                      databasePath());
}

bool AccountStore::setRemember(bool remember)
{
    return executeSql(QStringLiteral("INSERT OR REPLACE INTO PasswordTable (id,isRemember) values(1,%1)")
                          .arg(remember ? 1 : 0),
                      databasePath());
}

bool AccountStore::savePassword(const QString &password)
{
    return executeSql(QStringLiteral("INSERT OR REPLACE INTO PasswordTable (id,isRemember,password) values(1,1,?)"),
                      {password}, databasePath());
}

bool AccountStore::setLoginModel(int model)
{
    return executeSql(QStringLiteral("update loginmodel set model=%1 where id=1").arg(model), databasePath());
}

RowList AccountStore::allUsers()
{
    return selectRows(QStringLiteral("Select * from user "), {}, 4, databasePath());
}

bool AccountStore::findUser(const QString &name, const QString &password)
{
    return !selectRows(QStringLiteral("Select * from user where username=? and password=?"), {name, password}, 4,
                       databasePath())
                .isEmpty();
}

int AccountStore::loginModel()
{
    const RowList rows = selectRows(QStringLiteral("Select * from loginmodel where id=1 "), {}, 2, databasePath());
    if (rows.isEmpty()) {
        // First start, or unreadable: fall back to showing the login dialog.
        executeSql(QStringLiteral("Insert into loginmodel(id,model) values(1,0)"), databasePath());
        return 0;
    }
    return rows.first().value(1).toInt();
}

bool AccountStore::isRemember()
{
    const RowList rows = selectRows(QStringLiteral("select isRemember from PasswordTable where id=1"), {}, 1,
                                    databasePath());
    return !rows.isEmpty() && rows.first().value(0).toInt() != 0;
}

QString AccountStore::rememberedPassword()
{
    const RowList rows = selectRows(QStringLiteral("select password from PasswordTable where id=1"), {}, 1,
                                    databasePath());
    return rows.isEmpty() ? QString() : rows.first().value(0).toString();
}
